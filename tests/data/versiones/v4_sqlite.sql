CREATE TABLE IF NOT EXISTS entradas (entrada INTEGER NOT NULL, tipo_doc TEXT, f_emision DATE, almacen REAL, importe REAL, costo REAL, estado TEXT, ocupado SMALLINT, observ TEXT, datos TEXT, tipo_cam REAL, moneda TEXT, usuario TEXT, usufecha DATE, usuhora TEXT, PRIMARY KEY (entrada)) WITHOUT ROWID
CREATE INDEX IF NOT EXISTS idx_entradas_estado ON entradas (estado)
CREATE INDEX IF NOT EXISTS idx_entradas_f_emision ON entradas (f_emision)
CREATE INDEX IF NOT EXISTS idx_entradas_ocupado ON entradas (ocupado)
CREATE TABLE IF NOT EXISTS entpart (id_entrada INTEGER NOT NULL, entrada INTEGER, no_referen INTEGER, tipo_doc TEXT, articulo TEXT, cantidad REAL, precio REAL, impuesto REAL, observ TEXT, partida INTEGER, claveadd TEXT, prcantidad REAL, prdescrip TEXT, usuario TEXT, usufecha DATE, Usuhora TEXT, PRIMARY KEY (id_entrada), FOREIGN KEY (entrada) REFERENCES entradas (entrada)) WITHOUT ROWID
CREATE INDEX IF NOT EXISTS idx_entpart_entrada ON entpart (entrada)
CREATE TABLE IF NOT EXISTS salidas (salida INTEGER NOT NULL, folio INTEGER, estacion TEXT, tipo_doc TEXT, f_emision DATE, almacen REAL, importe REAL, costo REAL, estado TEXT, ocupado SMALLINT, observ TEXT, datos TEXT, usuario TEXT, usufecha DATE, usuhora TEXT, cliente TEXT, direccionembarque TEXT, estraspaso SMALLINT, traspaso INTEGER, almt REAL, traspasoaestacion SMALLINT, estaciontraspaso TEXT, esparasucursal SMALLINT, sucursal TEXT, EntSuc TEXT, paraempleado SMALLINT, empleado TEXT, fecharetorno DATE, PRIMARY KEY (salida)) WITHOUT ROWID
CREATE INDEX IF NOT EXISTS idx_salidas_estado ON salidas (estado)
CREATE INDEX IF NOT EXISTS idx_salidas_f_emision ON salidas (f_emision)
CREATE INDEX IF NOT EXISTS idx_salidas_ocupado ON salidas (ocupado)
CREATE TABLE IF NOT EXISTS salpart (id_salida INTEGER NOT NULL, salida INTEGER, tipo_doc TEXT, articulo TEXT, cantidad REAL, precio REAL, impuesto REAL, observ TEXT, partida INTEGER, claveadd TEXT, prcantidad REAL, prdescrip TEXT, usuario TEXT, usufecha DATE, usuhora TEXT, PRIMARY KEY (id_salida), FOREIGN KEY (salida) REFERENCES salidas (salida)) WITHOUT ROWID
CREATE INDEX IF NOT EXISTS idx_salpart_salida ON salpart (salida)
CREATE TABLE IF NOT EXISTS movsinv (operacion TEXT, movimiento INTEGER, articulo TEXT, cantidad REAL, Precio REAL, Observ TEXT, id_entrada INTEGER, id_salida INTEGER, PrDescrip TEXT, PrCantidad REAL, claveadd TEXT, f_movim DATE, cerrado SMALLINT, ent_sal TEXT, almacen REAL, tipo_doc TEXT, documento TEXT, usuario TEXT, estaciontraspaso TEXT, importe REAL, clavelocal TEXT, usuhora TEXT, id INTEGER PRIMARY KEY, saldo REAL)
CREATE UNIQUE INDEX IF NOT EXISTS una_vez_entrada ON movsinv (id_entrada, operacion) WHERE id_entrada >= 1 AND operacion = 'EN' AND (claveadd IS NULL OR claveadd <> '999' OR almacen IS NOT NULL)
CREATE UNIQUE INDEX IF NOT EXISTS una_vez_salida ON movsinv (id_salida, operacion) WHERE id_salida >= 1 AND operacion IN ('SA', 'T+') AND (claveadd IS NULL OR claveadd <> '999' OR almacen IS NOT NULL)
CREATE INDEX IF NOT EXISTS idx_movsinv_operacion_movimiento ON movsinv (operacion, movimiento)
CREATE INDEX IF NOT EXISTS idx_movsinv_articulo_almacen ON movsinv (articulo, almacen)
CREATE INDEX IF NOT EXISTS idx_movsinv_f_movim ON movsinv (f_movim)
CREATE TABLE IF NOT EXISTS compras2sucursal (id_partida INTEGER, cantidad REAL, sucursal TEXT, tipo TEXT, id INTEGER PRIMARY KEY)
CREATE TABLE IF NOT EXISTS compra2 (id INTEGER NOT NULL, PRIMARY KEY (id)) WITHOUT ROWID
CREATE TABLE IF NOT EXISTS compra2part (Id INTEGER NOT NULL, articulo TEXT, compra INTEGER, PRIMARY KEY (Id)) WITHOUT ROWID
CREATE INDEX IF NOT EXISTS idx_compra2part_articulo_compra ON compra2part (articulo, compra)
CREATE TABLE IF NOT EXISTS diremb (id INTEGER NOT NULL, direccion TEXT, cliente TEXT, PRIMARY KEY (id)) WITHOUT ROWID
CREATE TABLE IF NOT EXISTS prods (articulo TEXT NOT NULL, descrip TEXT, unidad TEXT, precio1 REAL, impuesto TEXT, costo_u REAL, ubicacion TEXT, linea TEXT, modelo TEXT, color TEXT, talla TEXT, Invent SMALLINT, Por_Surt REAL, ALM1 REAL, ALM2 REAL, ALM3 REAL, ALM4 REAL, ALM5 REAL, ALM6 REAL, ALM7 REAL, ALM8 REAL, ALM9 REAL, orden_alta INTEGER, PRIMARY KEY (articulo))
CREATE INDEX IF NOT EXISTS idx_prods_modelo_color_talla ON prods (modelo, color, talla)
CREATE INDEX IF NOT EXISTS idx_prods_descrip ON prods (descrip)
CREATE INDEX IF NOT EXISTS idx_prods_orden_alta ON prods (orden_alta)
CREATE TABLE IF NOT EXISTS existenciaalmacen (almacen REAL NOT NULL, articulo TEXT NOT NULL, existencia REAL, PRIMARY KEY (almacen, articulo))
CREATE INDEX IF NOT EXISTS idx_existenciaalmacen_articulo ON existenciaalmacen (articulo)
CREATE TABLE IF NOT EXISTS impuestos (impuesto TEXT NOT NULL, valor REAL, descrip TEXT, PRIMARY KEY (impuesto))
CREATE TABLE IF NOT EXISTS clavesadd (clave TEXT NOT NULL, articulo TEXT, cantidad REAL, Dato1 TEXT, Dato2 TEXT, unidad TEXT, Libre SMALLINT, PRIMARY KEY (clave))
CREATE INDEX IF NOT EXISTS idx_clavesadd_articulo ON clavesadd (articulo)
CREATE TABLE IF NOT EXISTS tipominv (tipo_movim TEXT NOT NULL, ent_sal TEXT, descrip TEXT, PRIMARY KEY (tipo_movim))
CREATE TABLE IF NOT EXISTS ALMACEN (almacen REAL NOT NULL, descrip TEXT, PRIMARY KEY (almacen))
CREATE TABLE IF NOT EXISTS ESTACIONES (ESTACION TEXT NOT NULL, descrip TEXT, PRIMARY KEY (ESTACION))
CREATE TABLE IF NOT EXISTS empleados (empleado TEXT NOT NULL, nombre TEXT, PRIMARY KEY (empleado))
CREATE TABLE IF NOT EXISTS sucursal (sucursal TEXT NOT NULL, descrip TEXT, PRIMARY KEY (sucursal))
CREATE TABLE IF NOT EXISTS clients (cliente TEXT NOT NULL, nombre TEXT, PRIMARY KEY (cliente))
CREATE TABLE IF NOT EXISTS vends (vend TEXT NOT NULL, Nombre TEXT, PRIMARY KEY (vend))
CREATE TABLE IF NOT EXISTS monedas (moneda TEXT NOT NULL, Tc REAL, Base SMALLINT, PRIMARY KEY (moneda))
CREATE TABLE IF NOT EXISTS usuarios (usuario TEXT NOT NULL, existsalidas SMALLINT, PRIMARY KEY (usuario))
CREATE TABLE IF NOT EXISTS defform (Entradas TEXT, Salidas TEXT, id INTEGER PRIMARY KEY)
CREATE TABLE IF NOT EXISTS ControlProc (controlproc INTEGER, id INTEGER PRIMARY KEY)
CREATE TABLE IF NOT EXISTS modelos (modelo TEXT NOT NULL, descrip TEXT, PRIMARY KEY (modelo))
CREATE TABLE IF NOT EXISTS colores (color TEXT NOT NULL, descrip TEXT, visualcolor REAL, PRIMARY KEY (color))
CREATE TABLE IF NOT EXISTS tallas (talla TEXT NOT NULL, descrip TEXT, PRIMARY KEY (talla))
CREATE TABLE IF NOT EXISTS mensajes (numero INTEGER NOT NULL, texto TEXT, PRIMARY KEY (numero)) WITHOUT ROWID
CREATE TABLE IF NOT EXISTS series (nombre TEXT NOT NULL, valor INTEGER, PRIMARY KEY (nombre))
CREATE TABLE IF NOT EXISTS parametros (nombre TEXT NOT NULL, valor TEXT, PRIMARY KEY (nombre))
CREATE TABLE IF NOT EXISTS version_esquema (version INTEGER NOT NULL, PRIMARY KEY (version)) WITHOUT ROWID
CREATE TABLE IF NOT EXISTS mallaparam (usuario TEXT, modelo TEXT, concepto TEXT, documento TEXT NOT NULL, origen TEXT NOT NULL, PRIMARY KEY (documento, origen))
CREATE TABLE IF NOT EXISTS mallacelda (documento TEXT, origen TEXT, articulo TEXT, cantidad REAL, precio REAL, observ TEXT, prdescrip TEXT, prcantidad REAL, claveadd TEXT, id INTEGER PRIMARY KEY)
CREATE INDEX IF NOT EXISTS idx_mallacelda_documento_origen ON mallacelda (documento, origen)
CREATE TABLE IF NOT EXISTS tenencias (tipo TEXT, documento INTEGER, usuario TEXT, estacion TEXT, desde TEXT, vida INTEGER, id INTEGER PRIMARY KEY)
CREATE INDEX IF NOT EXISTS idx_tenencias_tipo_documento ON tenencias (tipo, documento)
CREATE INDEX IF NOT EXISTS idx_tenencias_vida ON tenencias (vida)
CREATE TABLE IF NOT EXISTS vidas (usuario TEXT, estacion TEXT, desde TEXT, id INTEGER PRIMARY KEY)
CREATE TABLE IF NOT EXISTS peticiones (tipo TEXT, documento INTEGER, usuario TEXT, estacion TEXT, vida INTEGER, mensaje TEXT, cuando TEXT, estado TEXT, motivo TEXT, renglon TEXT, abierta SMALLINT, id INTEGER PRIMARY KEY)
CREATE INDEX IF NOT EXISTS idx_peticiones_tipo_documento ON peticiones (tipo, documento)
CREATE INDEX IF NOT EXISTS idx_peticiones_estado ON peticiones (estado)
CREATE TABLE IF NOT EXISTS bitacora (cuando TEXT, usuario TEXT, estacion TEXT, acto TEXT, tipo TEXT, documento INTEGER, texto TEXT, id INTEGER PRIMARY KEY)
CREATE INDEX IF NOT EXISTS idx_bitacora_cuando ON bitacora (cuando)
CREATE TABLE IF NOT EXISTS cierres (tipo TEXT NOT NULL, documento INTEGER NOT NULL, usuario TEXT, estacion TEXT, cuando TEXT, imprime SMALLINT, hecho TEXT, PRIMARY KEY (tipo, documento))
CREATE TRIGGER entradas_numero_nuevo BEFORE INSERT ON entradas WHEN NEW.entrada < 1 BEGIN SELECT RAISE(ABORT, 'un documento no puede llevar un número menor que 1'); END
CREATE TRIGGER entradas_numero_cambiado BEFORE UPDATE ON entradas WHEN NEW.entrada < 1 AND NEW.entrada <> OLD.entrada BEGIN SELECT RAISE(ABORT, 'un documento no puede llevar un número menor que 1'); END
CREATE TRIGGER salidas_numero_nuevo BEFORE INSERT ON salidas WHEN NEW.salida < 1 BEGIN SELECT RAISE(ABORT, 'un documento no puede llevar un número menor que 1'); END
CREATE TRIGGER salidas_numero_cambiado BEFORE UPDATE ON salidas WHEN NEW.salida < 1 AND NEW.salida <> OLD.salida BEGIN SELECT RAISE(ABORT, 'un documento no puede llevar un número menor que 1'); END
CREATE TRIGGER prods_orden_alta AFTER INSERT ON prods WHEN NEW.orden_alta IS NULL BEGIN UPDATE prods SET orden_alta = COALESCE((SELECT MAX(orden_alta) FROM prods), 0) + 1 WHERE rowid = NEW.rowid; END
