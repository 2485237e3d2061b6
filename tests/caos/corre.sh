#!/usr/bin/env bash
# Corre por más tiempo las pruebas que rompen cosas desde fuera, con los programas ya construidos.
#   tests/caos/corre.sh muertes [CUÁNTAS]      mata al programa CUÁNTAS veces (500) en cada motor
#   tests/caos/corre.sh cortes [CUÁNTOS]       corta sesiones y enlaces, y para el servidor (500 y 60)
#   tests/caos/corre.sh carreras [CUÁNTAS]     dos estaciones sobre un documento (600) en cada motor
#   tests/caos/corre.sh eventos [CUÁNTOS]      actos al azar en todas las pantallas (1000000), vigilados
#   tests/caos/corre.sh disco                  llena el disco a la mitad de una afectación
# SEMILLA=n empieza con otra semilla. PRESET=release|asan elige lo construido (eventos: asan; lo demás: release).
set -euo pipefail

raiz=$(cd "$(dirname "$0")/../.." && pwd)
uso() { sed -n 's/^#   //p' "$0" >&2; exit 2; }
que=${1:-}
cuantos=${2:-}
[[ "$cuantos" =~ ^[0-9]*$ ]] || uso
export TARVIK_CAOS_SEMILLA=${SEMILLA:-1}

pruebas() {  # PRESET
  local programa="$raiz/build/${PRESET:-$1}/tests/tarvik_caos_tests"
  [ -x "$programa" ] || { echo "Falta $programa: cmake --build --preset ${PRESET:-$1} --target tarvik_caos_tests" >&2; exit 1; }
  echo "$programa"
}
en_los_dos_motores() {  # FILTRO
  local programa
  programa=$(pruebas release)
  echo "== En un archivo"
  "$programa" --gtest_filter="$1"
  echo "== En un servidor"
  "$raiz/tests/con_servidor.sh" "$programa" --gtest_filter="$1"
}

case $que in
  muertes)
    export TARVIK_CAOS_MUERTES=${cuantos:-500}
    export TARVIK_CAOS_MUERTES_ENTRE_VARIOS=$((TARVIK_CAOS_MUERTES / 5 + 1))
    en_los_dos_motores 'Muertes.*'
    ;;
  cortes)
    export TARVIK_CAOS_CORTES=${cuantos:-500}
    export TARVIK_CAOS_PAROS=$((TARVIK_CAOS_CORTES / 9 + 5))
    "$(pruebas release)" --gtest_filter='Cortes.*:UnSegundo.*'
    ;;
  carreras)
    export TARVIK_CAOS_CARRERAS=${cuantos:-600}
    en_los_dos_motores 'Carreras.*'
    ;;
  eventos)
    export TARVIK_CAOS_EVENTOS=${cuantos:-1000000}
    "$(pruebas asan)" --gtest_filter='Eventos.*'
    ;;
  disco)
    "$(pruebas release)" --gtest_filter='Disco.*'
    ;;
  *) uso ;;
esac
