#!/usr/bin/env bash
# Runs a command with a database server of its own: started here on a socket in a new folder, without a
# port, and ended here. The command finds its address in TARVIK_TEST_BASE.
#   con_servidor.sh COMMAND [ARGUMENTS]
set -euo pipefail

programas=$(ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -1)
[ -n "$programas" ] || { echo "Falta el servidor de PostgreSQL" >&2; exit 1; }

# The server refuses to run as the administrator.
como=()
if [ "$(id -u)" -eq 0 ]; then como=(setpriv --reuid=postgres --regid=postgres --clear-groups); fi

# In memory where there is room: nothing here outlives the run.
donde=${TMPDIR:-/tmp}
libre=$(df --output=avail -k /dev/shm 2>/dev/null | tail -1 || true)
if [ -w /dev/shm ] && [ "${libre:-0}" -gt 2000000 ]; then donde=/dev/shm; fi
carpeta=$(mktemp -d "$donde/tarvik-servidor-XXXXXX")
servidor=
termina() {
  if [ -n "$servidor" ]; then
    kill -INT "$servidor" 2>/dev/null || true
    wait "$servidor" 2>/dev/null || true
  fi
  rm -rf "$carpeta"
}
trap termina EXIT
trap 'exit 130' INT TERM
[ ${#como[@]} -eq 0 ] || chown postgres "$carpeta"
cd "$carpeta"

"${como[@]}" "$programas/initdb" -D "$carpeta/base" -U tarvik -A trust -E UTF8 --locale=C.UTF-8 --no-sync >initdb.txt 2>&1 ||
  { cat initdb.txt >&2; exit 1; }
"${como[@]}" "$programas/postgres" -D "$carpeta/base" -k "$carpeta" -c listen_addresses= -c fsync=off \
  -c full_page_writes=off -c synchronous_commit=off -c max_connections=200 -c autovacuum=off \
  >servidor.txt 2>&1 &
servidor=$!
for _ in $(seq 200); do
  "$programas/pg_isready" -q -h "$carpeta" -U tarvik -d postgres && break
  kill -0 "$servidor" 2>/dev/null || { cat servidor.txt >&2; exit 1; }
  sleep 0.1
done
"$programas/pg_isready" -q -h "$carpeta" -U tarvik -d postgres || { cat servidor.txt >&2; exit 1; }

cd "$OLDPWD"
TARVIK_TEST_BASE="postgresql://tarvik@/postgres?host=$carpeta" "$@"
