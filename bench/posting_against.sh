#!/usr/bin/env bash
# Posting in parallel, this tree against another commit of it, which is built in a temporary folder: on one
# server, in turns, each in a base of its own. Fails if this tree is not the faster one, or its books are
# wrong.
#   posting_against.sh COMMIT [PROCESSES [MOVEMENTS [ROUNDS]]]
# TARVIK_BUILD is this tree's build folder (build/release); TARVIK_DISK=1 lets each commit reach the disk.
set -euo pipefail
raiz=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
commit=$1 estaciones=${2:-16} movimientos=${3:-500} vueltas=${4:-3}
nuevo=${TARVIK_BUILD:-$raiz/build/release}/bench/bench_posting
[ -x "$nuevo" ] || { echo "Falta $nuevo" >&2; exit 1; }
. "$raiz/tests/servidor/servidores.sh"
haz_carpeta

# The other tree, with this program in it.
antes=$carpeta/antes
mkdir "$antes"
git -C "$raiz" archive "$commit" | tar -x -C "$antes"
cp "$raiz/bench/posting.cpp" "$antes/bench/"
cat >>"$antes/CMakeLists.txt" <<FIN
add_executable(bench_posting bench/posting.cpp)
target_link_libraries(bench_posting PRIVATE tarvik_host)
FIN
(cd "$antes" && cmake --preset release -DTARVIK_TESTS=OFF -DTARVIK_BENCH=OFF -DTARVIK_PYTHON=OFF \
  -DTARVIK_DESKTOP=OFF >/dev/null && cmake --build --preset release --target bench_posting >compila.txt 2>&1) ||
  { tail "$antes/compila.txt" >&2; exit 1; }

haz_base base
if [ -n "${TARVIK_DISK:-}" ]; then
  arranca base -c listen_addresses= -c fsync=on
else
  arranca base -c listen_addresses= -c synchronous_commit=off
fi
corre() {
  "$programas/createdb" -h "$carpeta/base.s" -U tarvik "$2"
  "$1" "postgresql://tarvik@/$2?host=$carpeta/base.s" "$estaciones" "$movimientos"
}
de_antes=() de_ahora=()
for ((i = 1; i <= vueltas; i++)); do
  de_antes+=("$(corre "$antes/build/release/bench_posting" "antes_$i")")
  de_ahora+=("$(corre "$nuevo" "ahora_$i")")
done
mediana() { printf '%s\n' "$@" | sort -n | sed -n "$((($# + 1) / 2))p"; }
a=$(mediana "${de_antes[@]}") b=$(mediana "${de_ahora[@]}")
echo "$estaciones procesos, movimientos por segundo: antes ${de_antes[*]} (mediana $a); ahora ${de_ahora[*]} (mediana $b)"
[ "$b" -gt "$a" ]
