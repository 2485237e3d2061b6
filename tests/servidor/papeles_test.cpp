// The roles of docs/servidor.sql: what each must be able to do, and what must be refused to it.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>

#include "data/error.h"
#include "data/schema.h"
#include "data/text.h"
#include "goods_out/frm_salidas_wizard.h"
#include "tests/data/support.h"
#include "tests/support/escenario.h"

namespace tarvik::tests {
namespace {

std::string Guion() { return TARVIK_SOURCE_DIR "/docs/servidor.sql"; }

int Corre(const std::string& address, const char* behind = "") {
  return std::system(("psql -X -q '" + address + "' -f " + Guion() + behind).c_str());
}

std::string Con(std::string address, const std::string& user) {
  return address.replace(address.find("tarvik@"), 6, user);
}

class Papeles : public Escenario {
 protected:
  Papeles() {
    Catalogo();
    EXPECT_EQ(Corre(Direccion()), 0);
    for (const char* papel : {"lector", "operador", "supervisor"}) {
      const std::string user = std::string("prueba_") + papel;
      Sql("DO 'BEGIN CREATE ROLE " + user + " LOGIN IN ROLE tarvik_" + papel +
          "; EXCEPTION WHEN duplicate_object THEN NULL; END'");
    }
  }
  std::unique_ptr<data::EngineConnection> Como(const std::string& papel) {
    return data::OpenBase(Con(Direccion(), "prueba_" + papel))->Connect();
  }
  // The whole program, opened by a role.
  void Trabaja(const std::string& papel) { Abre(Con(Direccion(), "prueba_" + papel)); }
  static void Negado(data::EngineConnection& connection, const std::string& text) {
    const std::string error = ErrorOf([&] { connection.Execute(text); });
    EXPECT_TRUE(error.starts_with("No hay permiso para usar la base: ")) << text << "\n" << error;
  }
  static void Dado(data::EngineConnection& connection, const std::string& text) {
    EXPECT_EQ(ErrorOf([&] { connection.Execute(text); }), "no error") << text;
  }
};

TEST_F(Papeles, EveryTableOfTheSchemaIsDealtWith) {
  const std::string script = ReadFile(Guion());
  for (const data::Table& table : data::Schema()) {
    EXPECT_NE(script.find(data::LowerAscii(table.name)), std::string::npos) << table.name;
  }
}

TEST_F(Papeles, AnOperatorEntersAndPostsGoodsInAndGoodsOut) {
  Trabaja("operador");
  {
    frmEntradasWizard& f = ConRenglones({{"A-100", "5"}, {"A-200", "2"}});
    Renglon(f, "A-200", "1");
    f.Enter(f.fg2);
    f.fg2.MoveTo(3, 0);
    Tecla(f, "Ctrl+Delete");
    bitacora.respuestas = {true, true};
    Tecla(f, "F5", f.txtFields(campo::Concepto));
  }
  EXPECT_TRUE(Reportes().empty()) << Reportes().front();
  EXPECT_EQ(Uno("SELECT estado FROM entradas"), "CO");
  EXPECT_EQ(Uno("SELECT existencia FROM existenciaalmacen WHERE articulo = 'A-100'"), "5");

  movimientos->NuevaSalida();
  auto& s = dynamic_cast<frmSalidasWizard&>(*plataforma.Screens().back());
  Teclea(s, s.txtFields(campo::Concepto), "VTA");
  Tecla(s, "Enter");
  s.Enter(s.txtFields(campo::Articulo));
  Teclea(s, s.txtFields(campo::Articulo), "A-100");
  Tecla(s, "Enter", s.txtFields(campo::Articulo));
  Teclea(s, s.txtFields(campo::Cantidad), "2");
  Tecla(s, "Enter", s.txtFields(campo::Cantidad));
  Tecla(s, "Enter");
  EXPECT_EQ(Uno("SELECT SUM(cantidad) FROM salpart"), "2");
  bitacora.respuestas = {true, true};
  Tecla(s, "F5", s.txtFields(campo::Concepto));
  EXPECT_TRUE(Reportes().empty()) << Reportes().front();
  EXPECT_EQ(Uno("SELECT estado FROM salidas"), "CO");
  EXPECT_EQ(Uno("SELECT existencia FROM existenciaalmacen WHERE articulo = 'A-100'"), "3");
  EXPECT_EQ(Uno("SELECT ALM1 FROM prods WHERE articulo = 'A-100'"), "3");
}

TEST_F(Papeles, AnOperatorCompletesWhatWasPostedInPart) {
  ConRenglones({{"A-100", "5"}, {"A-200", "2"}}).Unload();
  Sql("UPDATE entradas SET estado = 'CO'");
  Trabaja("operador");
  ASSERT_EQ(anfitrion->AMedias().size(), 1U);
  EXPECT_EQ(anfitrion->Completa(host::Tipo::Entrada, 1), 2);
  EXPECT_TRUE(anfitrion->AMedias().empty());
}

TEST_F(Papeles, WhatAnOperatorMustNot) {
  const auto db = Como("operador");
  db->Execute("INSERT INTO movsinv (operacion, claveadd) VALUES ('EN', '999')");
  db->Execute("INSERT INTO movsinv (operacion, almacen, claveadd, importe) VALUES ('EN', 1, '999', 5)");
  for (const char* text : {"UPDATE movsinv SET cantidad = 0",
                           "DELETE FROM entradas",
                           "DELETE FROM salidas",
                           "DELETE FROM prods",
                           "UPDATE prods SET precio1 = 1",
                           "UPDATE prods SET invent = 0",
                           "UPDATE prods SET costo_u = 0",
                           "INSERT INTO prods (articulo) VALUES ('X')",
                           "DELETE FROM existenciaalmacen",
                           "UPDATE usuarios SET nombre = 'x'",
                           "INSERT INTO usuarios (usuario) VALUES ('X')",
                           "UPDATE parametros SET valor = '1'",
                           "UPDATE mensajes SET texto = ''",
                           "UPDATE bitacora SET texto = ''",
                           "DELETE FROM bitacora",
                           "UPDATE version_esquema SET version = 1",
                           "DROP TABLE movsinv",
                           "ALTER TABLE prods ADD COLUMN x TEXT",
                           "CREATE TABLE mia (n BIGINT)",
                           "CREATE TEMP TABLE mia (n BIGINT)",
                           "TRUNCATE movsinv",
                           "CREATE SCHEMA mio",

                           "CREATE FUNCTION f() RETURNS INT LANGUAGE SQL AS 'SELECT 1'",
                           "SELECT setval('movsinv_id_seq', 1)",
                           "SELECT nextval('movsinv_id_seq')",
                           "COPY prods TO PROGRAM 'cat'",
                           "SELECT * FROM pg_authid",
                           "CREATE ROLE otro"}) {
    const std::string error = ErrorOf([&] { db->Execute(text); });
    if (std::string(text).starts_with("UPDATE usuarios")) {
      EXPECT_NE(error, "no error") << text;
      continue;
    }
    EXPECT_TRUE(error.starts_with("No hay permiso para usar la base: ")) << text << "\n" << error;
  }
  {
    data::Transaction unit(*db);
    Negado(*db, "LOCK TABLE version_esquema IN EXCLUSIVE MODE");
  }
  // Of the ledger only a mark goes.
  Dado(*db, "DELETE FROM movsinv");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv"), "1");
}

TEST_F(Papeles, FunctionsThatReachBeyondAreNobodys) {
  for (const char* papel : {"lector", "operador", "supervisor"}) {
    const auto db = Como(papel);
    for (const char* call : {"pg_advisory_lock(1)",
                             "pg_advisory_lock(7, 1)",
                             "pg_advisory_xact_lock(1)",
                             "pg_try_advisory_lock(1)",
                             "pg_advisory_lock_shared(1)",
                             "pg_advisory_unlock_all()",
                             "pg_sleep(1)",
                             "pg_sleep_for('1s')",
                             "pg_read_file('/etc/passwd')",
                             "pg_read_binary_file('/etc/passwd')",
                             "pg_ls_dir('/')",
                             "pg_stat_file('/etc/passwd')",
                             "lo_import('/etc/passwd')",
                             "lo_export(1, '/tmp/x')",
                             "lo_creat(1)",
                             "lo_from_bytea(0, 'x')",
                             "set_config('role', 'tarvik', false)",
                             "set_config('application_name', 'x #1', false)",
                             "pg_notify('tarvik', '')",
                             "pg_terminate_backend(pg_backend_pid())",
                             "pg_cancel_backend(1)",
                             "query_to_xml('SELECT 1', true, true, '')",
                             "pg_reload_conf()"}) {
      Negado(*db, std::string("SELECT ") + call);
      if (std::string(call).starts_with("pg_ls_dir")) continue;  // stands in no condition
      // As it would come from a field.
      Negado(*db,
             std::string("SELECT * FROM prods WHERE articulo = '' OR ") + call + " IS NULL OR 'a' = 'b'");
    }
  }
}

TEST_F(Papeles, AReaderReadsAndWritesNothing) {
  const auto db = Como("lector");
  EXPECT_FALSE(data::PrepareSchema(*db));
  for (const data::Table& table : data::Schema()) {
    const std::string name(table.name);
    Dado(*db, "SELECT * FROM " + name);
    const std::string column(table.columns.front().name);
    Negado(*db, "UPDATE " + name + " SET " + column + " = NULL");
    Negado(*db, "DELETE FROM " + name);
    Negado(*db, "INSERT INTO " + name + " (" + column + ") VALUES (NULL)");
  }
  db->Live(5);
  EXPECT_TRUE(db->Lives(5));
}

TEST_F(Papeles, ASupervisorKeepsCataloguesAndDeletesDocuments) {
  const auto db = Como("supervisor");
  Dado(*db, "INSERT INTO prods (articulo, precio1) VALUES ('N-1', 5)");
  Dado(*db, "UPDATE prods SET precio1 = 6, descrip = 'Nuevo' WHERE articulo = 'N-1'");
  Dado(*db, "INSERT INTO clavesadd (clave) VALUES ('77')");
  Dado(*db, "DELETE FROM clavesadd WHERE clave = '77'");
  Dado(*db, "INSERT INTO entradas (entrada) VALUES (9)");
  Dado(*db, "DELETE FROM entradas WHERE entrada = 9");
  Dado(*db, "UPDATE parametros SET valor = '1' WHERE nombre = 'Lector'");
  Negado(*db, "DELETE FROM prods");
  Negado(*db, "UPDATE movsinv SET cantidad = 0");
  Negado(*db, "DELETE FROM bitacora");
  Negado(*db, "ALTER TABLE prods ADD COLUMN x TEXT");
}

TEST_F(Papeles, OthersLivesAreSeenByEveryRole) {
  const auto one = Como("operador");
  one->Live(31);
  for (const char* papel : {"lector", "supervisor"}) {
    EXPECT_TRUE(Como(papel)->Lives(31)) << papel;
    EXPECT_FALSE(Como(papel)->Lives(32)) << papel;
  }
}

TEST_F(Papeles, AnOwnerWhoIsNoAdministratorMakesTheBaseAndTheScriptRunsTwice) {
  BaseDePrueba nueva(BaseDePrueba::Con::kNada);
  Sql("DO 'BEGIN CREATE ROLE prueba_dueno LOGIN; EXCEPTION WHEN duplicate_object THEN NULL; END'");
  const std::string address = nueva.Direccion();
  const std::string name =
      address.substr(address.find("/tarvik_", 14) + 1, address.find('?') - address.find("/tarvik_", 14) - 1);
  Sql("ALTER DATABASE " + name + " OWNER TO prueba_dueno");
  EXPECT_NE(Corre(address, " 2>/dev/null"), 0) << "no tables yet";
  const auto owner = data::OpenBase(Con(address, "prueba_dueno"))->Connect();
  EXPECT_TRUE(data::PrepareSchema(*owner));
  EXPECT_EQ(Corre(address), 0);
  EXPECT_EQ(Corre(address), 0);
  EXPECT_FALSE(data::PrepareSchema(*owner));
  owner->Execute("ALTER TABLE prods ADD COLUMN propia TEXT");
  owner->Execute("SELECT set_config('search_path', 'public', false)");
  // Rows that brought their own numbers: the owner's counters follow, an operator's look does no harm.
  owner->Execute("INSERT INTO movsinv (id, operacion) VALUES (50, 'EN')");
  const auto operador = data::OpenBase(Con(address, "prueba_operador"))->Connect();
  EXPECT_FALSE(data::PrepareSchema(*operador));
  EXPECT_FALSE(data::PrepareSchema(*owner));
  operador->Execute("INSERT INTO movsinv (operacion) VALUES ('EN')");
  EXPECT_EQ(data::ToNumber(owner->Run("SELECT MAX(id) FROM movsinv", {}).rows.at(0).at(0)), 51);
  // Who has no role has no door.
  Sql("DO 'BEGIN CREATE ROLE prueba_nadie LOGIN; EXCEPTION WHEN duplicate_object THEN NULL; END'");
  EXPECT_NE(ErrorOf([&] { data::OpenBase(Con(address, "prueba_nadie")); }), "no error");
}

}  // namespace
}  // namespace tarvik::tests
