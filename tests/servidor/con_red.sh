#!/usr/bin/env bash
# Runs a command with a server of its own and a machine of its own beside it: a network namespace that reaches
# the server over a cable. TARVIK_TEST_BASE is the server's address as both see it, TARVIK_EQUIPO what to put
# before a command so that it runs over there, TARVIK_CABLE what to put before "up" or "down".
# Ends with 77 where no namespace can be made: that needs the administrator.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/servidores.sh"

export PATH=$PATH:/usr/sbin:/sbin
equipo=tarvik-$$
if ! ip netns add "$equipo" 2>/dev/null || ! ip netns exec "$equipo" true 2>/dev/null; then
  ip netns delete "$equipo" 2>/dev/null || true
  echo "Aquí no se puede hacer un equipo aparte (ip netns): no se prueba" >&2
  exit 77
fi
quita() {
  ip netns pids "$equipo" | xargs -r kill -KILL 2>/dev/null || true
  ip link delete "c$$" 2>/dev/null || true
  ip netns delete "$equipo" || true
  termina
}
trap quita EXIT
red=10.$((RANDOM % 100 + 100)).$((RANDOM % 250))
ip link add "c$$" type veth peer name cable netns "$equipo"
ip address add "$red.1/24" dev "c$$"
ip link set "c$$" up
ip netns exec "$equipo" ip address add "$red.2/24" dev cable
ip netns exec "$equipo" ip link set cable up
ip netns exec "$equipo" ip link set lo up

haz_carpeta
haz_base base
echo "host all all $red.0/24 trust" >>"$carpeta/base/pg_hba.conf"
arranca base -c listen_addresses="$red.1" -c port=5432 -c synchronous_commit=off
TARVIK_EQUIPO="ip netns exec $equipo" TARVIK_CABLE="ip link set c$$" \
  TARVIK_TEST_BASE="postgresql://tarvik@$red.1/postgres" "$@"
