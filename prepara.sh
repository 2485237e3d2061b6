# What ./run and ./test share: the machine's packages and the build. Sourced, not run.
# Touches nothing outside this folder but the package manager.

raiz=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

dice() { printf '\n== %s\n' "$*"; }

# Packages of the distribution, by name; installs only those that are missing.
instala() {
  local faltan=()
  for paquete in "$@"; do
    dpkg-query -W -f='${Status}' "$paquete" 2>/dev/null | grep -q 'ok installed' || faltan+=("$paquete")
  done
  if [ ${#faltan[@]} -eq 0 ]; then return; fi
  dice "Instalo lo que falta: ${faltan[*]}"
  local como=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "Hacen falta permisos de administrador para instalar: ${faltan[*]}" >&2; exit 1; }
    como=(sudo)
  fi
  export DEBIAN_FRONTEND=noninteractive
  "${como[@]}" apt-get update -qq
  "${como[@]}" apt-get install -y -qq --no-install-recommends "${faltan[@]}" >/dev/null
}

paquetes=(g++ cmake ninja-build pkg-config libsqlite3-dev libpq-dev libkainjow-mustache-dev libcli11-dev pybind11-dev python3-dev
  python3 qt6-base-dev fonts-inter qt6-translations-l10n)
paquetes_de_prueba=(libgtest-dev libgmock-dev libbenchmark-dev postgresql pgbouncer openssl iproute2)
paquetes_de_todo=(git clang libclang-rt-dev clang-tidy clang-format cups-daemon cups-client)

# Builds a preset; the first argument is its name, the rest goes to the configuration.
construye() {
  local preset=$1
  shift
  dice "Construyo ($preset)"
  (cd "$raiz" && cmake --preset "$preset" "$@" >/dev/null && cmake --build --preset "$preset")
}
