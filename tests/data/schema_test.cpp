// The schema: its tables and columns, and its statements. How a base gets it: prepare_schema_test.cpp.
#include "data/schema.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "data/text.h"

namespace tarvik::data {
namespace {

std::vector<std::string> Names(std::string_view table) {
  std::vector<std::string> names;
  for (const Column& column : FindTable(table)->columns) names.emplace_back(column.name);
  return names;
}

std::vector<std::string> NamesOfType(std::string_view table, ColumnType type) {
  std::vector<std::string> names;
  for (const Column& column : FindTable(table)->columns) {
    if (column.type == type) names.emplace_back(column.name);
  }
  return names;
}

using List = std::vector<std::string>;

TEST(SchemaTables, AreThoseOfTheSuiteAndOfTheHost) {
  List suite;
  List host;
  for (const Table& table : Schema()) (table.of_host ? host : suite).emplace_back(table.name);
  EXPECT_EQ(suite, (List{"entradas",          "entpart",   "salidas",     "salpart",     "movsinv",
                         "compras2sucursal",  "compra2",   "compra2part", "diremb",      "prods",
                         "existenciaalmacen", "impuestos", "clavesadd",   "tipominv",    "ALMACEN",
                         "ESTACIONES",        "empleados", "sucursal",    "clients",     "vends",
                         "monedas",           "usuarios",  "defform",     "ControlProc", "modelos",
                         "colores",           "tallas"}));
  EXPECT_EQ(host, (List{"mensajes", "series", "parametros", "version_esquema", "mallaparam", "mallacelda",
                        "tenencias", "vidas", "peticiones", "bitacora", "lecturas", "cierres"}));
}

TEST(SchemaTables, GoodsIn) {
  EXPECT_EQ(Names("entradas"),
            (List{"entrada", "tipo_doc", "f_emision", "almacen", "importe", "costo", "estado", "ocupado",
                  "observ", "datos", "tipo_cam", "moneda", "usuario", "usufecha", "usuhora"}));
  EXPECT_EQ(Names("entpart"), (List{"id_entrada", "entrada", "no_referen", "tipo_doc", "articulo", "cantidad",
                                    "precio", "impuesto", "observ", "partida", "claveadd", "prcantidad",
                                    "prdescrip", "usuario", "usufecha", "Usuhora"}));
  EXPECT_EQ(NamesOfType("entradas", ColumnType::Number), (List{"almacen", "importe", "costo", "tipo_cam"}));
  EXPECT_EQ(NamesOfType("entradas", ColumnType::Flag), List{"ocupado"});
  EXPECT_EQ(NamesOfType("entradas", ColumnType::Date), (List{"f_emision", "usufecha"}));
  EXPECT_EQ(NamesOfType("entpart", ColumnType::Number),
            (List{"cantidad", "precio", "impuesto", "prcantidad"}));
  EXPECT_EQ(NamesOfType("entpart", ColumnType::Integer),
            (List{"id_entrada", "entrada", "no_referen", "partida"}));
}

TEST(SchemaTables, GoodsOut) {
  EXPECT_EQ(Names("salidas"), (List{"salida",
                                    "folio",
                                    "estacion",
                                    "tipo_doc",
                                    "f_emision",
                                    "almacen",
                                    "importe",
                                    "costo",
                                    "estado",
                                    "ocupado",
                                    "observ",
                                    "datos",
                                    "usuario",
                                    "usufecha",
                                    "usuhora",
                                    "cliente",
                                    "direccionembarque",
                                    "estraspaso",
                                    "traspaso",
                                    "almt",
                                    "traspasoaestacion",
                                    "estaciontraspaso",
                                    "esparasucursal",
                                    "sucursal",
                                    "EntSuc",
                                    "paraempleado",
                                    "empleado",
                                    "fecharetorno"}));
  EXPECT_EQ(Names("salpart"),
            (List{"id_salida", "salida", "tipo_doc", "articulo", "cantidad", "precio", "impuesto", "observ",
                  "partida", "claveadd", "prcantidad", "prdescrip", "usuario", "usufecha", "usuhora"}));
  EXPECT_EQ(NamesOfType("salidas", ColumnType::Flag),
            (List{"ocupado", "estraspaso", "traspasoaestacion", "esparasucursal", "paraempleado"}));
  EXPECT_EQ(NamesOfType("salidas", ColumnType::Number), (List{"almacen", "importe", "costo", "almt"}));
  EXPECT_EQ(NamesOfType("salidas", ColumnType::Integer), (List{"salida", "folio", "traspaso"}));
  EXPECT_EQ(NamesOfType("salidas", ColumnType::Date), (List{"f_emision", "usufecha", "fecharetorno"}));
  EXPECT_EQ(NamesOfType("salpart", ColumnType::Number),
            (List{"cantidad", "precio", "impuesto", "prcantidad"}));
}

TEST(SchemaTables, LedgerAndPurchases) {
  EXPECT_EQ(Names("movsinv"),
            (List{"operacion",        "movimiento", "articulo",   "cantidad",   "Precio",    "Observ",
                  "id_entrada",       "id_salida",  "PrDescrip",  "PrCantidad", "claveadd",  "f_movim",
                  "cerrado",          "ent_sal",    "almacen",    "tipo_doc",   "documento", "usuario",
                  "estaciontraspaso", "importe",    "clavelocal", "usuhora",    "id",        "saldo"}));
  EXPECT_EQ(NamesOfType("movsinv", ColumnType::Number),
            (List{"cantidad", "Precio", "PrCantidad", "almacen", "importe", "saldo"}));
  EXPECT_EQ(Names("compras2sucursal"), (List{"id_partida", "cantidad", "sucursal", "tipo", "id"}));
  EXPECT_EQ(Names("compra2"), List{"id"});
  EXPECT_EQ(Names("compra2part"), (List{"Id", "articulo", "compra"}));
  EXPECT_EQ(Names("diremb"), (List{"id", "direccion", "cliente"}));
}

TEST(SchemaTables, Catalogues) {
  EXPECT_EQ(Names("prods"),
            (List{"articulo", "descrip", "unidad", "precio1", "impuesto", "costo_u", "ubicacion", "linea",
                  "modelo",   "color",   "talla",  "Invent",  "Por_Surt", "ALM1",    "ALM2",      "ALM3",
                  "ALM4",     "ALM5",    "ALM6",   "ALM7",    "ALM8",     "ALM9",    "orden_alta"}));
  EXPECT_EQ(NamesOfType("prods", ColumnType::Flag), List{"Invent"});
  EXPECT_EQ(NamesOfType("prods", ColumnType::Number).size(), 12U);
  EXPECT_EQ(Names("existenciaalmacen"), (List{"almacen", "articulo", "existencia"}));
  EXPECT_EQ(Names("impuestos"), (List{"impuesto", "valor", "descrip"}));
  EXPECT_EQ(Names("clavesadd"), (List{"clave", "articulo", "cantidad", "Dato1", "Dato2", "unidad", "Libre"}));
  EXPECT_EQ(Names("tipominv"), (List{"tipo_movim", "ent_sal", "descrip"}));
  EXPECT_EQ(Names("ALMACEN"), (List{"almacen", "descrip"}));
  EXPECT_EQ(FindColumn("ALMACEN", "almacen")->type, ColumnType::Number);
  EXPECT_EQ(Names("ESTACIONES"), (List{"ESTACION", "descrip"}));
  EXPECT_EQ(Names("empleados"), (List{"empleado", "nombre"}));
  EXPECT_EQ(Names("sucursal"), (List{"sucursal", "descrip"}));
  EXPECT_EQ(Names("clients"), (List{"cliente", "nombre"}));
  EXPECT_EQ(Names("vends"), (List{"vend", "Nombre"}));
  EXPECT_EQ(Names("monedas"), (List{"moneda", "Tc", "Base"}));
  EXPECT_EQ(Names("usuarios"), (List{"usuario", "existsalidas"}));
  EXPECT_EQ(Names("defform"), (List{"Entradas", "Salidas", "id"}));
  EXPECT_EQ(Names("ControlProc"), (List{"controlproc", "id"}));
  EXPECT_EQ(Names("modelos"), (List{"modelo", "descrip"}));
  EXPECT_EQ(Names("colores"), (List{"color", "descrip", "visualcolor"}));
  EXPECT_EQ(Names("tallas"), (List{"talla", "descrip"}));
}

TEST(SchemaTables, Keys) {
  const auto key = [](std::string_view table) {
    const auto& names = FindTable(table)->key;
    return List(names.begin(), names.end());
  };
  EXPECT_EQ(key("entradas"), List{"entrada"});
  EXPECT_EQ(key("entpart"), List{"id_entrada"});
  EXPECT_EQ(key("salidas"), List{"salida"});
  EXPECT_EQ(key("salpart"), List{"id_salida"});
  EXPECT_EQ(key("existenciaalmacen"), (List{"almacen", "articulo"}));
  EXPECT_EQ(key("prods"), List{"articulo"});
  EXPECT_EQ(key("clavesadd"), List{"clave"});
  EXPECT_EQ(key("mallaparam"), (List{"documento", "origen"}));
  EXPECT_EQ(key("cierres"), (List{"tipo", "documento"}));
  List counted;
  for (const Table& table : Schema()) {
    if (table.counted_key) counted.emplace_back(table.name);
  }
  EXPECT_EQ(counted, (List{"movsinv", "compras2sucursal", "defform", "ControlProc", "mallacelda", "tenencias",
                           "vidas", "peticiones", "bitacora", "lecturas"}));
  List positive;
  for (const Table& table : Schema()) {
    if (table.positive_key) positive.emplace_back(table.name);
  }
  EXPECT_EQ(positive, (List{"entradas", "salidas"}));
}

TEST(SchemaTables, AreSoundInThemselves) {
  std::set<std::string> tables;
  for (const Table& table : Schema()) {
    EXPECT_TRUE(tables.insert(LowerAscii(table.name)).second) << table.name;
    EXPECT_FALSE(table.meaning.empty()) << table.name;
    EXPECT_FALSE(table.key.empty()) << table.name;
    std::set<std::string> columns;
    for (const Column& column : table.columns) {
      EXPECT_TRUE(columns.insert(LowerAscii(column.name)).second) << table.name << '.' << column.name;
      EXPECT_FALSE(column.meaning.empty()) << table.name << '.' << column.name;
    }
    const auto has = [&](std::string_view name) {
      return std::any_of(table.columns.begin(), table.columns.end(),
                         [&](const Column& c) { return c.name == name; });
    };
    for (const auto name : table.key) EXPECT_TRUE(has(name)) << table.name << '.' << name;
    for (const auto& index : table.indexes) {
      for (const auto name : index) EXPECT_TRUE(has(name)) << table.name << '.' << name;
    }
    for (const ForeignKey& foreign : table.foreign_keys) {
      EXPECT_TRUE(has(foreign.column));
      ASSERT_NE(FindTable(foreign.table), nullptr);
      EXPECT_EQ(FindTable(foreign.table)->key, std::vector<std::string_view>{foreign.column});
    }
    EXPECT_TRUE(!table.counted_key || table.key.size() == 1) << table.name;
    for (const Once& once : table.once) {
      for (const auto name : once.columns) EXPECT_TRUE(has(name)) << table.name << '.' << name;
      EXPECT_TRUE(table.counted_key) << "so that the rule can hold for rows behind one: " << table.name;
    }
    EXPECT_TRUE(!table.positive_key || table.key.size() == 1) << table.name;
  }
}

TEST(SchemaSearch, IsWithoutRegardToCase) {
  ASSERT_NE(FindTable("almacen"), nullptr);
  EXPECT_EQ(FindTable("almacen")->name, "ALMACEN");
  EXPECT_EQ(FindColumn("PRODS", "PRECIO1")->name, "precio1");
  EXPECT_EQ(FindTable("nada"), nullptr);
  EXPECT_EQ(FindColumn("nada", "precio1"), nullptr);
  EXPECT_EQ(FindColumn("prods", "ALM10"), nullptr);
}

TEST(SchemaDdl, OnTheEmbeddedEngine) {
  EXPECT_EQ(
      Ddl(*FindTable("existenciaalmacen"), Dialect::Sqlite),
      (List{"CREATE TABLE IF NOT EXISTS existenciaalmacen (almacen REAL NOT NULL, articulo TEXT NOT NULL, "
            "existencia REAL, PRIMARY KEY (almacen, articulo))",
            "CREATE INDEX IF NOT EXISTS idx_existenciaalmacen_articulo ON existenciaalmacen (articulo)"}));
  EXPECT_EQ(
      Ddl(*FindTable("compra2part"), Dialect::Sqlite),
      (List{"CREATE TABLE IF NOT EXISTS compra2part (Id INTEGER NOT NULL, articulo TEXT, compra INTEGER, "
            "PRIMARY KEY (Id)) WITHOUT ROWID",
            "CREATE INDEX IF NOT EXISTS idx_compra2part_articulo_compra ON compra2part (articulo, compra)"}));
  EXPECT_EQ(Ddl(*FindTable("ControlProc"), Dialect::Sqlite),
            List{"CREATE TABLE IF NOT EXISTS ControlProc (controlproc INTEGER, id INTEGER PRIMARY KEY)"});
}

TEST(SchemaDdl, ARuleHoldsForAllRowsOrForThoseBehindOne) {
  const Table& ledger = *FindTable("movsinv");
  const std::string rule =
      "CREATE UNIQUE INDEX IF NOT EXISTS una_vez_entrada ON movsinv (id_entrada, operacion) WHERE id_entrada "
      ">= "
      "1 AND operacion = 'EN' AND (claveadd IS NULL OR claveadd <> '999' OR almacen IS NOT NULL)";
  EXPECT_EQ(OnceText(ledger, ledger.once.at(0)), rule);
  EXPECT_EQ(OnceText(ledger, ledger.once.at(0), 41), rule + " AND id > 41");
  EXPECT_EQ(Ddl(ledger, Dialect::Sqlite).at(1), rule);
  EXPECT_TRUE(Guards(ledger, Dialect::Sqlite).empty());
}

TEST(SchemaDdl, OnTheServer) {
  EXPECT_EQ(
      Ddl(*FindTable("existenciaalmacen"), Dialect::Postgresql),
      (List{"CREATE TABLE IF NOT EXISTS existenciaalmacen (almacen DOUBLE PRECISION NOT NULL, "
            "articulo TEXT COLLATE \"C\" NOT NULL, existencia DOUBLE PRECISION, PRIMARY KEY (almacen, "
            "articulo))",
            "CREATE INDEX IF NOT EXISTS idx_existenciaalmacen_articulo ON existenciaalmacen (articulo)"}));
  EXPECT_EQ(Ddl(*FindTable("ControlProc"), Dialect::Postgresql),
            List{"CREATE TABLE IF NOT EXISTS ControlProc (controlproc BIGINT, "
                 "id BIGINT GENERATED BY DEFAULT AS IDENTITY PRIMARY KEY)"});
  const std::string lines = Ddl(*FindTable("entpart"), Dialect::Postgresql).at(0);
  EXPECT_NE(lines.find("FOREIGN KEY (entrada) REFERENCES entradas (entrada)"), std::string::npos);
  EXPECT_EQ(lines.find("CASCADE"), std::string::npos);
  EXPECT_EQ(lines.find("ROWID"), std::string::npos);
  EXPECT_NE(Ddl(*FindTable("entradas"), Dialect::Postgresql).at(0).find("ocupado SMALLINT"),
            std::string::npos);
}

}  // namespace
}  // namespace tarvik::data
