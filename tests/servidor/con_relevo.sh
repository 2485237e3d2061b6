#!/usr/bin/env bash
# Runs a command with two servers of its own: a primary, and a standby that has every commit before it is
# acknowledged. TARVIK_TEST_BASE names both; the program in TARVIK_RELEVO kills the primary in the middle of
# whatever it does, and promotes the standby.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/servidores.sh"

haz_carpeta
haz_base uno
arranca uno -c listen_addresses= -c dynamic_shared_memory_type=mmap -c synchronous_standby_names='*'
primario=${arrancados[0]}
"${como[@]}" "$programas/pg_basebackup" -h "$carpeta/uno.s" -U tarvik -D "$carpeta/dos" -R -c fast --no-sync \
  >"$carpeta/copia.txt" 2>&1 || { cat "$carpeta/copia.txt" >&2; exit 1; }
arranca dos -c listen_addresses=

cat >"$carpeta/relevo.sh" <<FIN
#!/bin/sh
kill -9 $primario
sleep 0.2
# What a killed server leaves in the system's memory.
ipcrm -m $(sed -n 7p "$carpeta/uno/postmaster.pid" | awk '{print $2}') 2>/dev/null
cd "$carpeta" && ${como[*]} $programas/pg_ctl -s -w -D $carpeta/dos promote >/dev/null
FIN
chmod 755 "$carpeta/relevo.sh"
en=
for _ in $(seq 100); do
  en=$("$programas/psql" -At -h "$carpeta/uno.s" -U tarvik -d postgres \
    -c "SELECT COUNT(*) FROM pg_stat_replication WHERE sync_state = 'sync'")
  [ "$en" = 1 ] && break
  sleep 0.1
done
[ "$en" = 1 ] || { cat "$carpeta/dos.txt" >&2; exit 1; }
TARVIK_RELEVO="$carpeta/relevo.sh" \
  TARVIK_TEST_BASE="postgresql://tarvik@/postgres?host=$carpeta/uno.s,$carpeta/dos.s" "$@"
