#!/usr/bin/env bash
# As con_servidor.sh, with a pooler (pgbouncer, a server session for each client session) between the command
# and its server.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/servidores.sh"
pooler=$(PATH=$PATH:/usr/sbin command -v pgbouncer) || { echo "Falta pgbouncer" >&2; exit 1; }

haz_carpeta
haz_base base
arranca base -c listen_addresses= -c synchronous_commit=off
mkdir "$carpeta/pooler.s"
cat >"$carpeta/pooler.ini" <<FIN
[databases]
* = host=$carpeta/base.s user=tarvik
[pgbouncer]
listen_addr =
listen_port = 6432
unix_socket_dir = $carpeta/pooler.s
auth_type = any
pool_mode = session
max_client_conn = 200
default_pool_size = 100
# The stories drop their bases and copy from one: a session of the pooler's own would hold them.
server_lifetime = 0
ignore_startup_parameters = extra_float_digits
FIN
[ ${#como[@]} -eq 0 ] || chown -R postgres "$carpeta/pooler.s" "$carpeta/pooler.ini"
(cd "$carpeta" && exec "${como[@]}" "$pooler" -q "$carpeta/pooler.ini" >"$carpeta/pooler.txt" 2>&1) &
arrancados+=($!)
for _ in $(seq 100); do
  "$programas/pg_isready" -q -h "$carpeta/pooler.s" -p 6432 -U tarvik -d postgres && break
  sleep 0.1
done
TARVIK_TEST_BASE="postgresql://tarvik@:6432/postgres?host=$carpeta/pooler.s" "$@" || { cat "$carpeta/pooler.txt" >&2; exit 1; }
