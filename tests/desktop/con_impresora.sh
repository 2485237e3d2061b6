#!/usr/bin/env bash
# Runs a command with a print service of its own: cupsd on the loopback, on a port and in a folder of its own, and
# ended here. It has one queue, "prueba", with no paper behind it: what is sent stays in the folder that
# TARVIK_TEST_COLA names, as it came in.
#   con_impresora.sh COMMAND [ARGUMENTS]
# Ends with 77 where no print service is installed (cups-daemon, cups-client).
set -euo pipefail

PATH=$PATH:/usr/sbin:/sbin
for programa in cupsd lpadmin; do
  command -v "$programa" >/dev/null || { echo "Aquí no hay servicio de impresión ($programa): no se prueba" >&2; exit 77; }
done

carpeta=$(mktemp -d)
servicio=
termina() {
  [ -z "$servicio" ] || { kill "$servicio" 2>/dev/null || true; wait "$servicio" 2>/dev/null || true; }
  rm -rf "$carpeta"
}
trap termina EXIT
mkdir "$carpeta"/{raiz,cola,cache,estado,temporal,casa}

escribe_ajustes() {  # PORT
  cat >"$carpeta/raiz/cupsd.conf" <<FIN
Listen 127.0.0.1:$1
Browsing Off
WebInterface No
DefaultAuthType None
PreserveJobFiles Yes
<Location />
  Order allow,deny
  Allow from 127.0.0.1
</Location>
<Location /admin>
  Order allow,deny
  Allow from 127.0.0.1
</Location>
<Policy default>
  JobPrivateAccess all
  JobPrivateValues none
  SubscriptionPrivateAccess all
  SubscriptionPrivateValues none
  <Limit All>
    Order allow,deny
    Allow from 127.0.0.1
  </Limit>
</Policy>
FIN
  cat >"$carpeta/raiz/cups-files.conf" <<FIN
ServerRoot $carpeta/raiz
RequestRoot $carpeta/cola
CacheDir $carpeta/cache
StateDir $carpeta/estado
TempDir $carpeta/temporal
AccessLog $carpeta/accesos.txt
ErrorLog $carpeta/errores.txt
PageLog $carpeta/paginas.txt
FileDevice Yes
Sandboxing relaxed
FIN
}

# Another program may have the port that was drawn.
for _ in $(seq 5); do
  puerto=$((RANDOM % 20000 + 20000))
  escribe_ajustes "$puerto"
  cupsd -f -c "$carpeta/raiz/cupsd.conf" -s "$carpeta/raiz/cups-files.conf" >"$carpeta/salida.txt" 2>&1 &
  servicio=$!
  export CUPS_SERVER=127.0.0.1:$puerto
  for _ in $(seq 50); do
    kill -0 "$servicio" 2>/dev/null || break
    if lpadmin -p prueba -E -v "file:$carpeta/papel" -m raw 2>"$carpeta/lpadmin.txt"; then
      HOME=$carpeta/casa TARVIK_TEST_COLA=$carpeta/cola "$@"
      exit
    fi
    sleep 0.1
  done
  kill "$servicio" 2>/dev/null || true
  wait "$servicio" 2>/dev/null || true
done
cat "$carpeta"/{salida,lpadmin,errores}.txt >&2
exit 1
