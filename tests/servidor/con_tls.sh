#!/usr/bin/env bash
# Runs a command with a server of its own on a loopback port that is free, which takes encrypted connections
# only and shows a certificate of an authority that is made here and thrown away. TARVIK_TEST_BASE is an
# address that verifies the server's name; TARVIK_TLS names the folder with the authorities' files and the
# port: authority.crt, other.crt.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/servidores.sh"

haz_carpeta
haz_base base
llaves=$carpeta/llaves
mkdir "$llaves"
autoridad() {
  openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj "/CN=$1" -keyout "$llaves/$1.key" -out "$llaves/$1.crt" 2>/dev/null
}
autoridad authority
autoridad other
openssl req -newkey rsa:2048 -nodes -subj "/CN=servidor.prueba" -keyout "$llaves/servidor.key" \
  -out "$llaves/servidor.csr" 2>/dev/null
openssl x509 -req -in "$llaves/servidor.csr" -CA "$llaves/authority.crt" -CAkey "$llaves/authority.key" \
  -CAcreateserial -days 2 -extfile <(echo "subjectAltName=DNS:servidor.prueba") -out "$llaves/servidor.crt" 2>/dev/null
cp "$llaves/servidor.crt" "$llaves/servidor.key" "$carpeta/base/"
chmod 600 "$carpeta/base/servidor.key"
[ ${#como[@]} -eq 0 ] || chown postgres "$carpeta/base/servidor.crt" "$carpeta/base/servidor.key"
chmod 644 "$llaves"/*.crt
cat >"$carpeta/base/pg_hba.conf" <<FIN
local all all trust
hostssl all ana 127.0.0.1/32 scram-sha-256
hostssl all all 127.0.0.1/32 trust
FIN

# A port that nobody has: the first of some drawn ones that refuses.
puerto=
for _ in $(seq 50); do
  puerto=$((20000 + RANDOM % 20000))
  (exec 3<>"/dev/tcp/127.0.0.1/$puerto") 2>/dev/null || break
done
arranca base -c listen_addresses=127.0.0.1 -c port="$puerto" -c synchronous_commit=off -c ssl=on \
  -c ssl_cert_file=servidor.crt -c ssl_key_file=servidor.key
TARVIK_TLS="$llaves" TARVIK_TLS_PUERTO="$puerto" \
  TARVIK_TEST_BASE="postgresql://tarvik@servidor.prueba:$puerto/postgres?hostaddr=127.0.0.1&sslmode=verify-full&sslrootcert=$llaves/authority.crt" "$@"
