-- Papeles para una base de Tarvik en un servidor PostgreSQL: operador, supervisor y lector, cada uno con lo
-- que usa y nada más. Lo corre un administrador del servidor, después de que el dueño abrió la base por
-- primera vez con el programa, y otra vez después de cada versión nueva; correrlo de nuevo no hace daño.
--
--   psql -v ON_ERROR_STOP=1 -d tienda -f docs/servidor.sql
--   psql -d tienda -c "CREATE ROLE ana LOGIN PASSWORD '...' IN ROLE tarvik_operador"
--
-- El dueño de las tablas sigue pudiendo todo: con su usuario se abre la base la primera vez y cuando llega una
-- versión nueva, y no se trabaja con él.

\set ON_ERROR_STOP on
SET client_min_messages = warning;
BEGIN;

DO $$
DECLARE papel text;
BEGIN
  FOREACH papel IN ARRAY ARRAY['tarvik_lector', 'tarvik_operador', 'tarvik_supervisor'] LOOP
    IF NOT EXISTS (SELECT 1 FROM pg_roles WHERE rolname = papel) THEN
      EXECUTE format('CREATE ROLE %I NOLOGIN', papel);
    END IF;
  END LOOP;
END $$;

-- Quien puede más puede también lo de quien puede menos.
GRANT tarvik_lector TO tarvik_operador;
GRANT tarvik_operador TO tarvik_supervisor;

-- ---- La puerta ----
DO $$
DECLARE
  esquema text := (SELECT n.nspname FROM pg_class c JOIN pg_namespace n ON n.oid = c.relnamespace
                   WHERE c.oid = to_regclass('version_esquema'));
BEGIN
  IF esquema IS NULL THEN
    RAISE EXCEPTION 'Esta base no tiene aún las tablas: ábrala primero con el programa, con el usuario que será su dueño';
  END IF;
  EXECUTE format('REVOKE ALL ON DATABASE %I FROM PUBLIC', current_database());
  EXECUTE format('GRANT CONNECT ON DATABASE %I TO tarvik_lector', current_database());
  -- Lo que una consulta puede escribir en disco mientras se resuelve.
  EXECUTE format('ALTER DATABASE %I SET temp_file_limit = %L', current_database(), '4GB');
  EXECUTE format('REVOKE ALL ON SCHEMA %I FROM PUBLIC', esquema);
  EXECUTE format('GRANT USAGE ON SCHEMA %I TO tarvik_lector', esquema);
  EXECUTE format('REVOKE ALL ON ALL TABLES IN SCHEMA %I FROM PUBLIC, tarvik_lector, tarvik_operador, tarvik_supervisor', esquema);
  EXECUTE format('REVOKE ALL ON ALL SEQUENCES IN SCHEMA %I FROM PUBLIC, tarvik_lector, tarvik_operador, tarvik_supervisor', esquema);
END $$;

-- ---- Lector: ve, no escribe nada ----
GRANT SELECT ON
  entradas, entpart, salidas, salpart, movsinv, existenciaalmacen, compras2sucursal, compra2, compra2part,
  prods, clavesadd, modelos, colores, tallas, impuestos, monedas, tipominv, almacen, estaciones, empleados,
  sucursal, clients, diremb, vends, usuarios, defform, controlproc, mensajes, series, parametros,
  version_esquema, mallaparam, mallacelda, tenencias, vidas, peticiones, bitacora, lecturas, cierres
  TO tarvik_lector;

-- ---- Operador: captura y afecta ----
GRANT INSERT, UPDATE ON entradas, salidas TO tarvik_operador;
GRANT INSERT, UPDATE, DELETE ON entpart, salpart TO tarvik_operador;
-- El libro sólo crece; lo único que se quita de él son las marcas de la malla, que no mueven nada.
GRANT INSERT, DELETE ON movsinv TO tarvik_operador;
ALTER TABLE movsinv ENABLE ROW LEVEL SECURITY;
DROP POLICY IF EXISTS tarvik_ve ON movsinv;
DROP POLICY IF EXISTS tarvik_anota ON movsinv;
DROP POLICY IF EXISTS tarvik_marcas ON movsinv;
CREATE POLICY tarvik_ve ON movsinv FOR SELECT TO tarvik_lector USING (true);
CREATE POLICY tarvik_anota ON movsinv FOR INSERT TO tarvik_operador WITH CHECK (true);
CREATE POLICY tarvik_marcas ON movsinv FOR DELETE TO tarvik_operador
  USING (claveadd = '999' AND almacen IS NULL AND importe IS NULL);
-- Una reparación pone el saldo que cada movimiento guarda; el movimiento mismo no lo cambia nadie.
DROP POLICY IF EXISTS tarvik_saldos ON movsinv;
CREATE POLICY tarvik_saldos ON movsinv FOR UPDATE TO tarvik_supervisor USING (true) WITH CHECK (true);
GRANT UPDATE (saldo) ON movsinv TO tarvik_supervisor;
GRANT INSERT, UPDATE ON existenciaalmacen, series, mallaparam TO tarvik_operador;
-- Lo que lee el lector; asignar un código nuevo es del supervisor, como todo el catálogo.
GRANT INSERT, UPDATE ON lecturas TO tarvik_operador;
GRANT INSERT ON compras2sucursal, bitacora TO tarvik_operador;
GRANT UPDATE ON controlproc TO tarvik_operador;
GRANT INSERT, DELETE ON mallacelda TO tarvik_operador;
GRANT INSERT, UPDATE, DELETE ON tenencias, vidas, peticiones, cierres TO tarvik_operador;
-- Del artículo, las existencias por almacén y ninguna otra cosa.
DO $$
DECLARE columnas text := (SELECT string_agg(quote_ident(attname), ', ') FROM pg_attribute
                          WHERE attrelid = 'prods'::regclass AND attname ~ '^alm[0-9]+$' AND NOT attisdropped);
BEGIN
  EXECUTE format('GRANT UPDATE (%s) ON prods TO tarvik_operador', columnas);
END $$;

-- ---- Supervisor: además catálogos, ajustes y la eliminación de documentos ----
GRANT DELETE ON entradas, salidas TO tarvik_supervisor;
GRANT INSERT, UPDATE ON
  prods, clavesadd, modelos, colores, tallas, impuestos, monedas, tipominv, almacen, estaciones, empleados,
  sucursal, clients, diremb, vends, usuarios, compra2, compra2part, defform, mensajes, parametros
  TO tarvik_supervisor;
GRANT DELETE ON clavesadd, diremb, parametros TO tarvik_supervisor;

-- ---- Funciones que ninguna pantalla usa ----
-- Detienen a otros, duermen, leen archivos, cambian ajustes o dan un rodeo a todo lo anterior. El programa no
-- usa ninguna mientras se trabaja; el dueño conserva las que sus respaldos y una versión nueva necesitan.
DO $$
DECLARE
  funcion record;
  dueno name := (SELECT r.rolname FROM pg_class c JOIN pg_roles r ON r.oid = c.relowner
                 WHERE c.oid = to_regclass('version_esquema'));
BEGIN
  FOR funcion IN
    SELECT p.oid::regprocedure AS nombre FROM pg_proc p
    WHERE p.prokind = 'f' AND (p.pronamespace = 'pg_catalog'::regnamespace OR p.proname ~ '^dblink')
      AND p.proname ~ ('^(pg_advisory_|pg_try_advisory_|pg_sleep|pg_read_|pg_ls_|pg_stat_file|lo_|loread|lowrite|'
                       'dblink|query_to_xml|table_to_xml|cursor_to_xml|schema_to_xml|database_to_xml|pg_notify$|'
                       'pg_terminate_backend|pg_cancel_backend|pg_export_snapshot|pg_logical_|pg_log_|'
                       'pg_import_system|pg_switch_wal|pg_reload_conf|pg_rotate_logfile|set_config$)')
  LOOP
    EXECUTE format('REVOKE EXECUTE ON FUNCTION %s FROM PUBLIC', funcion.nombre);
  END LOOP;
  EXECUTE format('GRANT EXECUTE ON FUNCTION pg_catalog.set_config(text, text, boolean), '
                 'pg_catalog.pg_advisory_lock(bigint), pg_catalog.pg_advisory_unlock(bigint) TO %I', dueno);
END $$;

COMMIT;
