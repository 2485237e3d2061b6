# What the scripts share that run a command with servers of their own: a folder, servers on sockets in it, and
# their end by their own process ids. Sourced, not run; it starts nothing by itself.

programas=$(ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -1)
[ -n "$programas" ] || { echo "Falta el servidor de PostgreSQL" >&2; exit 1; }

# The server refuses to run as the administrator.
como=()
if [ "$(id -u)" -eq 0 ]; then como=(setpriv --reuid=postgres --regid=postgres --clear-groups); fi

carpeta=
arrancados=()  # in the order of their beginning

termina() {
  for ((i = ${#arrancados[@]} - 1; i >= 0; i--)); do
    kill -INT "${arrancados[i]}" 2>/dev/null || true
    wait "${arrancados[i]}" 2>/dev/null || true
  done
  if [ -n "$carpeta" ]; then rm -rf "$carpeta"; fi
}
trap termina EXIT
trap 'exit 130' INT TERM

# In memory where there is room: nothing here outlives the run.
haz_carpeta() {
  local donde=${TMPDIR:-/tmp} libre=0
  # ... unless what is measured is the disk.
  [ -n "${TARVIK_DISK:-}" ] || libre=$(df --output=avail -k /dev/shm 2>/dev/null | tail -1 || true)
  if [ -w /dev/shm ] && [ "${libre:-0}" -gt 2000000 ]; then donde=/dev/shm; fi
  carpeta=$(mktemp -d "$donde/tarvik-servidor-XXXXXX")
  [ ${#como[@]} -eq 0 ] || chown postgres "$carpeta"
  chmod 711 "$carpeta"
}

# haz_base NOMBRE: a new cluster in the folder NOMBRE.
haz_base() {
  (cd "$carpeta" && "${como[@]}" "$programas/initdb" -D "$carpeta/$1" -U tarvik -A trust -E UTF8 \
    --locale=C.UTF-8 --no-sync >"$1.initdb.txt" 2>&1) || { cat "$carpeta/$1.initdb.txt" >&2; exit 1; }
}

# arranca NOMBRE [OPTIONS]: its server, on a socket in the folder NOMBRE.s; waits until it answers.
arranca() {
  local nombre=$1
  shift
  mkdir -p "$carpeta/$nombre.s"
  [ ${#como[@]} -eq 0 ] || chown postgres "$carpeta/$nombre.s"
  (cd "$carpeta" && exec "${como[@]}" "$programas/postgres" -D "$carpeta/$nombre" -k "$carpeta/$nombre.s" \
    -c fsync=off -c full_page_writes=off -c max_connections=200 -c autovacuum=off "$@" \
    >"$carpeta/$nombre.txt" 2>&1) &
  arrancados+=($!)
  espera "$nombre" $!
}

espera() {
  for _ in $(seq 200); do
    "$programas/pg_isready" -q -h "$carpeta/$1.s" -p "${puerto:-5432}" -U tarvik -d postgres && return
    kill -0 "$2" 2>/dev/null || break
    sleep 0.1
  done
  cat "$carpeta/$1.txt" >&2
  exit 1
}
