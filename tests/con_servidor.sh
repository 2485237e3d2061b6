#!/usr/bin/env bash
# Runs a command with a database server of its own: started here on a socket in a new folder, without a
# port, and ended here. The command finds its address in TARVIK_TEST_BASE.
#   con_servidor.sh COMMAND [ARGUMENTS]
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/servidor/servidores.sh"

haz_carpeta
haz_base base
arranca base -c listen_addresses= -c synchronous_commit=off
TARVIK_TEST_BASE="postgresql://tarvik@/postgres?host=$carpeta/base.s" "$@"
