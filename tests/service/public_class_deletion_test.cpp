// The public class, deleting documents: refusals, the question, the two deletes, the host's list.
#include "tests/service/documents.h"

namespace tarvik::tests {
namespace {

class Deletion : public DocumentStory {
 protected:
  Deletion() {
    anfitrion->Parent().elementos = {5, 7, 9};
    anfitrion->Parent().seleccionado = 2;
  }
  std::vector<data::Value>& Lista() { return anfitrion->Parent().elementos; }
  void Elimina(int numero, bool acepta) {
    bitacora.respuestas.push_back(acepta);
    side().elimina(*movimientos, numero);
  }
};
INSTANTIATE_TEST_SUITE_P(Both, Deletion, ::testing::Values(kEntradas, kSalidas), SideName());

TEST_P(Deletion, OnYesLinesGoFirstThenTheHeaderThenTheRowOfTheList) {
  Documento(7);
  Documento(8);
  Partida(1, 7);
  Partida(2, 7);
  Partida(3, 8);
  Elimina(7, true);
  EXPECT_EQ(bitacora.sentencias, (std::vector<std::string>{std::string(side().lee_para_borrar) + "7))",
                                                           std::string(side().borra_partidas) + "7))",
                                                           std::string(side().borra) + "7))"}));
  EXPECT_EQ(Cuantos(side().partidas, 7), "0");
  EXPECT_EQ(Cuantos(side().tabla, 7), "0");
  EXPECT_EQ(Cuantos(side().partidas, 8), "1");
  EXPECT_EQ(Cuantos(side().tabla, 8), "1");
  EXPECT_EQ(Lista(), (std::vector<data::Value>{5, 9}));
  EXPECT_TRUE(Reportes().empty());
}

TEST_P(Deletion, TheQuestionIsAPlainOneWithYesNoAndItsIcon) {
  Documento(7);
  Elimina(7, true);
  ASSERT_EQ(bitacora.mensajes.size(), 1u);
  EXPECT_EQ(bitacora.mensajes[0].clase, "pregunta");
  EXPECT_EQ(bitacora.mensajes[0].numeros, std::vector<int>{1});
  EXPECT_EQ(bitacora.mensajes[0].texto, MensajeDeLaBase(mensaje::BorraDocumento));
  EXPECT_EQ(bitacora.mensajes[0].estilo, 36);
}

TEST_P(Deletion, AnyOtherAnswerChangesNothingAndShowsNothing) {
  Documento(7);
  Partida(1, 7);
  Elimina(7, false);
  EXPECT_EQ(bitacora.mensajes.size(), 1u);
  EXPECT_EQ(Cuantos(side().partidas, 7), "1");
  EXPECT_EQ(Cuantos(side().tabla, 7), "1");
  EXPECT_EQ(Lista().size(), 3u);
  EXPECT_EQ(CuentaSentencias("DELETE"), 0);
}

TEST_P(Deletion, ADocumentThatIsNotThereIsTold) {
  Elimina(99, true);
  ExpectMessage({side().no_existe_borra}, MensajeDeLaBase(side().no_existe_borra), 64);
  EXPECT_EQ(Lista().size(), 3u);
}

TEST_P(Deletion, ADocumentHeldByOneselfIsNotDeleted) {
  Documento(7, "PE", 1, "ANA");
  Elimina(7, true);
  ExpectMessage({side().propio_borra}, MensajeDeLaBase(side().propio_borra), 64);
  EXPECT_EQ(Cuantos(side().tabla, 7), "1");
}

TEST_P(Deletion, ADocumentHeldByAnotherNamesTheHolderWithNoBlankAdded) {
  Documento(7, "CO", 1, "LUIS");
  Sql("UPDATE mensajes SET texto = ? WHERE numero = ?", {"antes[", side().ajeno_borra});
  Sql("UPDATE mensajes SET texto = ? WHERE numero = ?", {"]despues", side().ajeno_borra_fin});
  Elimina(7, true);
  ExpectMessage({side().ajeno_borra, side().ajeno_borra_fin}, "antes[LUIS]despues", 64);
  EXPECT_EQ(Cuantos(side().tabla, 7), "1");
}

TEST_P(Deletion, ANullLockIsFree) {
  Documento(7, "PE", data::Value(), "ANA");
  Elimina(7, true);
  EXPECT_EQ(Cuantos(side().tabla, 7), "0");
}

TEST_P(Deletion, APostedDocumentGoesAndItsMovementsStay) {
  Documento(7, "CO");
  Partida(1, 7);
  Sql("INSERT INTO movsinv (operacion, movimiento, articulo, cantidad) VALUES (?, ?, ?, ?)",
      {"EN", 7, "A-100", 2});
  Elimina(7, true);
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::BorraDocumento});
  EXPECT_EQ(Cuantos(side().tabla, 7), "0");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv"), "1");
  EXPECT_TRUE(bitacora.movimientos.empty());
}

TEST_P(Deletion, TheListLosesItsSelectedRowWhateverDocumentItShows) {
  Documento(7);
  anfitrion->Parent().seleccionado = 3;
  Elimina(7, true);
  EXPECT_EQ(Lista(), (std::vector<data::Value>{5, 7}));
}

TEST_P(Deletion, WithoutAHostFormTheRowsGoAndTheListsFailureIsReported) {
  movimientos->Parent = nullptr;
  Documento(7);
  Partida(1, 7);
  Elimina(7, true);
  EXPECT_EQ(Cuantos(side().tabla, 7), "0");
  ASSERT_EQ(Reportes().size(), 1u);
  EXPECT_EQ(Reportes()[0].find("Module: EntradasSalidas\r\nFunction: RemoveItem\r\nDescription: "), 0u);
  EXPECT_EQ(ArchivoDelDia(), bitacora.mensajes.back().texto);
}

TEST_P(Deletion, WithNoRowSelectedTheListsFailureIsReported) {
  anfitrion->Parent().seleccionado = 0;
  Documento(7);
  Elimina(7, true);
  ASSERT_EQ(Reportes().size(), 1u);
  EXPECT_NE(Reportes()[0].find("Function: RemoveItem"), std::string::npos);
  EXPECT_EQ(Lista().size(), 3u);
}

// ---- each step made to fail ----

TEST_P(Deletion, ADocumentThatCannotBeReadIsNotFoundAndNeverDeleted) {
  Documento(7);
  bitacora.Falla("^SELECT", 1, "no se lee");
  Elimina(7, true);
  ASSERT_EQ(Reportes().size(), 2u);
  EXPECT_EQ(Reportes()[0], Reporte(side().fn_elimina, "no se lee", "EntradasSalidas"));
  EXPECT_EQ(Numeros(), std::vector<int>{side().no_existe_borra});
  EXPECT_EQ(Cuantos(side().tabla, 7), "1");
}

TEST_P(Deletion, TheDocumentIsReadByTheHelper) {
  Documento(7);
  bitacora.FallaServicio("AbreRecordset", 1, "ayudante");
  Elimina(7, true);
  EXPECT_EQ(Reportes()[0], Reporte(side().fn_elimina, "ayudante", "EntradasSalidas"));
  EXPECT_EQ(Cuantos(side().tabla, 7), "1");
}

TEST_P(Deletion, AQuestionWithoutItsTextIsPutAllTheSame) {
  Documento(7);
  bitacora.FallaServicio("TraeMensaje", 1, "sin mensajes");
  Elimina(7, true);
  EXPECT_EQ(Reportes(),
            std::vector<std::string>{Reporte(side().fn_elimina, "sin mensajes", "EntradasSalidas")});
  EXPECT_EQ(bitacora.mensajes.back().clase, "pregunta");
  EXPECT_EQ(bitacora.mensajes.back().texto, "");
  EXPECT_EQ(Cuantos(side().tabla, 7), "0");
}

TEST_P(Deletion, LinesThatStayKeepTheirHeader) {
  Documento(7);
  Partida(1, 7);
  bitacora.Falla(std::string("DELETE FROM ") + side().partidas, 1, "no se borra");
  Elimina(7, true);
  const auto reportes = Reportes();
  ASSERT_EQ(reportes.size(), 2u);  // the lines, and the header that the base keeps for them
  EXPECT_EQ(reportes[0], Reporte(side().fn_elimina, "no se borra", "EntradasSalidas"));
  EXPECT_EQ(Cuantos(side().partidas, 7), "1");
  EXPECT_EQ(Cuantos(side().tabla, 7), "1");
  EXPECT_EQ(Lista().size(), 2u);
}

TEST_P(Deletion, AFirstDeleteThatFailsIsOneReportAndTheSecondRuns) {
  Documento(7);
  bitacora.Falla(std::string("DELETE FROM ") + side().partidas, 1, "no se borra");
  Elimina(7, true);
  EXPECT_EQ(Reportes().size(), 1u);
  EXPECT_EQ(Cuantos(side().tabla, 7), "0");
}

TEST_P(Deletion, AHeaderThatStaysIsWithoutLines) {
  Documento(7);
  Partida(1, 7);
  bitacora.Falla(std::string("DELETE FROM ") + side().tabla, 1, "no se borra");
  Elimina(7, true);
  EXPECT_EQ(Reportes(),
            std::vector<std::string>{Reporte(side().fn_elimina, "no se borra", "EntradasSalidas")});
  EXPECT_EQ(Cuantos(side().partidas, 7), "0");
  EXPECT_EQ(Cuantos(side().tabla, 7), "1");
  EXPECT_EQ(Lista().size(), 2u);
}

TEST_P(Deletion, ThreeFailuresAreThreeBoxesAndThreeEntries) {
  Documento(7);
  movimientos->Parent = nullptr;
  bitacora.Falla("^DELETE", 2, "no se borra");
  Elimina(7, true);
  ASSERT_EQ(Reportes().size(), 3u);
  std::string todo;
  for (const auto& mensaje : bitacora.mensajes) {
    if (mensaje.clase == "caja") todo += mensaje.texto;
  }
  EXPECT_EQ(ArchivoDelDia(), todo);
  EXPECT_EQ(CuentaSentencias("DELETE"), 2);
}

}  // namespace
}  // namespace tarvik::tests
