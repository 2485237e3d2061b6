// What a deletion leaves behind: told before, on record after, whatever door it came through.
#include "host/eliminaciones.h"

#include "tests/host/puestos.h"

namespace tarvik::host {
namespace {

using tests::Escenario;

class Eliminacion : public DosPuestos {
 protected:
  std::int32_t Afectada(std::initializer_list<const char*> quantities) {
    auto& f = ana.Entrada(quantities);
    const std::int32_t number = f.Entrada;
    Escenario::Tecla(f, "F5");
    return number;
  }
  std::vector<Acto> Bitacora() { return luis.anfitrion->Bitacora(); }
};

TEST_F(Eliminacion, OfAPostedDocumentSaysItsStateItsLinesAndTheMovementsThatStay) {
  const auto number = Afectada({"5", "6"});
  luis.puerta->EliminaEntrada(number);
  const auto acts = Bitacora();
  ASSERT_EQ(acts.size(), 1U);
  EXPECT_EQ(acts[0].acto, "elimina");
  EXPECT_EQ(acts[0].usuario, "LUIS");
  EXPECT_EQ(acts[0].estacion, "E2");
  EXPECT_EQ(acts[0].documento, (Retenido{Tipo::Entrada, number}));
  EXPECT_EQ(acts[0].texto, "Estado CO, 2 renglones; deja 2 movimientos sin documento");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv"), "2");
  for (const std::string& sent : luis.testigo.sentencias) EXPECT_EQ(sent.find("bitacora"), std::string::npos);
}

TEST_F(Eliminacion, OfAGoodsOutTransferCountsItsArrivalsToo) {
  auto& f = ana.Salida({"5"});
  f.SSCheck1.Value(1);
  f.txtFields(campo::AlmacenDestino).Text("2");
  Escenario::Tecla(f, "F5", f.txtFields(campo::Articulo));
  ASSERT_FALSE(f.Open());
  luis.puerta->EliminaSalida(1);
  ASSERT_EQ(Bitacora().size(), 1U);
  EXPECT_EQ(Bitacora()[0].texto, "Estado CO, 1 renglón; deja 2 movimientos sin documento");
}

TEST_F(Eliminacion, OfAPendingOneLeavesNothing) {
  luis.puerta->EliminaEntrada(Dejada());
  ASSERT_EQ(Bitacora().size(), 1U);
  EXPECT_EQ(Bitacora()[0].texto, "Estado PE, 1 renglón; no deja movimientos");
}

TEST_F(Eliminacion, ThatIsDeclinedFailsOrFindsNothingIsNotOnRecord) {
  const auto number = Dejada();
  luis.respuesta = false;
  luis.puerta->EliminaEntrada(number);
  luis.respuesta = true;
  luis.testigo.falla_sentencia = "DELETE FROM entradas";
  luis.puerta->EliminaEntrada(number);
  luis.testigo.falla_sentencia.clear();
  luis.anfitrion->Ambiente().Conexion().Execute("DELETE FROM entradas WHERE (((entradas.entrada) = 99))");
  EXPECT_TRUE(Bitacora().empty());
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entradas"), "1");
}

TEST_F(Eliminacion, ThatTheBaseRefusesIsNotOnRecord) {
  const auto number = Dejada();
  luis.testigo.falla_sentencia = "DELETE FROM entpart";  // its lines stay, and hold the header
  luis.puerta->EliminaEntrada(number);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entradas"), "1");
  EXPECT_TRUE(Bitacora().empty());
}

TEST_F(Eliminacion, OfWhichOnlyTheLinesWentIsOnRecordAsThat) {
  const auto number = Afectada({"5", "6"});
  Sql("ALTER TABLE bitacora RENAME TO apartada");
  luis.puerta->EliminaEntrada(number);
  Sql("ALTER TABLE apartada RENAME TO bitacora");
  ASSERT_TRUE(Bitacora().empty());
  Sql("INSERT INTO entpart (id_entrada, entrada, articulo) VALUES (90, ?, 'A-100')", {number});
  Sql("CREATE TABLE ajena (entrada BIGINT REFERENCES entradas (entrada))");
  Sql("INSERT INTO ajena VALUES (?)", {number});
  luis.puerta->EliminaEntrada(number);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entradas"), "1");
  ASSERT_EQ(Bitacora().size(), 1U);
  EXPECT_TRUE(Bitacora()[0].texto.starts_with(
      "Se eliminaron sus renglones (1 renglón) y el documento no se pudo eliminar: "))
      << Bitacora()[0].texto;
}

TEST_F(Eliminacion, AndItsRecordHoldTogether) {
  const auto number = Dejada();
  Sql("ALTER TABLE bitacora RENAME TO apartada");
  luis.puerta->EliminaEntrada(number);
  Sql("ALTER TABLE apartada RENAME TO bitacora");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entradas"), "1");
  luis.puerta->EliminaEntrada(number);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entradas"), "0");
  EXPECT_EQ(Bitacora().size(), 1U);
}

TEST_F(Eliminacion, OfARoutineInATransactionOfItsOwnGoesWithIt) {
  const auto number = Dejada();
  auto& connection = luis.anfitrion->Conexion();
  connection.Begin();
  luis.puerta->EliminaEntrada(number);
  connection.Rollback();
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entradas"), "1");
  EXPECT_TRUE(Bitacora().empty());
}

TEST_F(Eliminacion, BeforeItIsToldWhatWouldStayBehind) {
  const auto pending = Dejada();
  EXPECT_EQ(luis.anfitrion->AvisoDeEliminacion(Tipo::Entrada, pending), "");
  EXPECT_EQ(luis.anfitrion->AvisoDeEliminacion(Tipo::Entrada, 99), "");
  const auto posted = Afectada({"5", "6"});
  EXPECT_EQ(
      luis.anfitrion->AvisoDeEliminacion(Tipo::Entrada, posted),
      "La entrada 2 está afectada y tiene 2 renglones con 2 movimientos en el inventario. Si la elimina, las "
      "existencias se quedan como están y esos movimientos quedan sin documento.");
  Sql("UPDATE entradas SET estado = 'PE' WHERE entrada = ?", {posted});
  EXPECT_NE(luis.anfitrion->AvisoDeEliminacion(Tipo::Entrada, posted).find("está pendiente"),
            std::string::npos);
}

TEST_F(Eliminacion, TheRecordIsReadOldestFirstAndFromAMoment) {
  luis.puerta->EliminaEntrada(Dejada());
  reloj.time.hour = 15;
  Acto mine{reloj, "EVA", "E3", "repara", std::nullopt, "existencia"};
  Anota(luis.anfitrion->Conexion(), mine);
  const auto all = Bitacora();
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[0].acto, "elimina");
  EXPECT_EQ(all[1].acto, "repara");
  EXPECT_FALSE(all[1].documento);
  EXPECT_EQ(luis.anfitrion->Bitacora(reloj).size(), 1U);
}

}  // namespace
}  // namespace tarvik::host
