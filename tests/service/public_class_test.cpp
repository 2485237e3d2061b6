// The public class, opening documents: new, for change, for reading; goods-in and goods-out alike.
#include "goods_out/frm_salidas_wizard.h"
#include "stations/frm_mov_estaciones.h"
#include "tests/service/documents.h"

namespace tarvik::tests {
namespace {

class Opening : public DocumentStory {};
INSTANTIATE_TEST_SUITE_P(Both, Opening, ::testing::Values(kEntradas, kSalidas), SideName());

TEST_P(Opening, ANewDocumentHasModeEmptyRecordAndNoRow) {
  side().nueva(*movimientos, false);
  ASSERT_FALSE(bitacora.sentencias.empty());
  EXPECT_EQ(bitacora.sentencias.front(), std::string(side().lee) + "0");
  ASSERT_EQ(plataforma.Screens().size(), 1u);
  EXPECT_EQ(Modo(), "ALTA");
  EXPECT_EQ(Numero(), 0);
  ASSERT_TRUE(Registro());
  EXPECT_TRUE(Registro()->Eof());
  EXPECT_FALSE(Registro()->All().columns.empty());
  EXPECT_EQ(Uno(std::string("SELECT COUNT(*) FROM ") + side().tabla), "0");
  EXPECT_TRUE(bitacora.mensajes.empty());
}

TEST_P(Opening, EachCallMakesAScreenOfItsOwnAndReturnsAtOnce) {
  side().nueva(*movimientos, false);
  side().nueva(*movimientos, false);
  ASSERT_EQ(plataforma.Screens().size(), 2u);
  EXPECT_TRUE(plataforma.Screens()[0]->Visible());
  EXPECT_TRUE(plataforma.Screens()[1]->Visible());
}

TEST_P(Opening, AModalCallReturnsWhenItsScreenHasClosed) {
  Documento(7);
  int veces = 0;
  plataforma.on_modal = [&](forms::Form& forma) { veces += forma.Visible() ? 1 : 0; };
  side().nueva(*movimientos, true);
  EXPECT_TRUE(plataforma.Screens().empty());
  side().modifica(*movimientos, 7, true);
  EXPECT_TRUE(plataforma.Screens().empty());
  EXPECT_EQ(veces, 2);
  side().consulta(*movimientos, 7);
  EXPECT_EQ(plataforma.Screens().size(), 1u);
  EXPECT_EQ(veces, 2);
}

TEST_P(Opening, ForChangeTheScreenGetsRecordNumberModeAndCaption) {
  Documento(7);
  side().modifica(*movimientos, 7, false);
  EXPECT_EQ(bitacora.sentencias.front(), std::string(side().lee) + "7");
  EXPECT_EQ(Modo(), "MODIFICACION");
  EXPECT_EQ(Numero(), 7);
  EXPECT_EQ(Pantalla().Caption(), side().titulo_modifica);
  EXPECT_EQ(Registro()->CursorType(), 1);
  EXPECT_EQ(Registro()->LockType(), 3);
  EXPECT_EQ(data::ToText(Registro()->Fields(side().clave)), "7");
  EXPECT_TRUE(bitacora.mensajes.empty());
}

TEST_P(Opening, ForChangeADocumentThatIsNotThereIsToldWithAStop) {
  side().modifica(*movimientos, 99, false);
  ExpectMessage({side().no_existe}, MensajeDeLaBase(side().no_existe), 16);
  EXPECT_TRUE(plataforma.Screens().empty());
}

TEST_P(Opening, ForChangeAPostedDocumentIsToldAndOpensReadOnly) {
  Documento(7, "CO");
  side().modifica(*movimientos, 7, false);
  ExpectMessage({side().afectado}, MensajeDeLaBase(side().afectado), 64);
  EXPECT_EQ(Modo(), "CONSULTA");
  EXPECT_EQ(Pantalla().Caption(), side().titulo_modifica);
}

TEST_P(Opening, APostedDocumentIsNeverRefusedForALock) {
  Documento(7, "CO", 1, "LUIS");
  side().modifica(*movimientos, 7, false);
  EXPECT_EQ(Numeros(), std::vector<int>{side().afectado});
  EXPECT_EQ(Modo(), "CONSULTA");
  EXPECT_EQ(Ocupado(7), "1");
}

TEST_P(Opening, ADocumentHeldByOneselfStaysClosed) {
  Documento(7, "PE", 1, "ANA");
  side().modifica(*movimientos, 7, false);
  ExpectMessage({side().propio}, MensajeDeLaBase(side().propio), 64);
  EXPECT_TRUE(plataforma.Screens().empty());
}

TEST_P(Opening, ADocumentHeldByAnotherNamesTheHolderBehindOneBlank) {
  Documento(7, "PE", 1, "LUIS");
  side().modifica(*movimientos, 7, false);
  ExpectMessage({side().ajeno, side().ajeno_fin},
                MensajeDeLaBase(side().ajeno) + " LUIS" + MensajeDeLaBase(side().ajeno_fin), 64);
  EXPECT_TRUE(plataforma.Screens().empty());
  EXPECT_EQ(Ocupado(7), "1");
}

TEST_P(Opening, AnyLockOtherThanZeroHolds) {
  Documento(7, "PE", 2, "LUIS");
  side().modifica(*movimientos, 7, false);
  EXPECT_EQ(Numeros(), (std::vector<int>{side().ajeno, side().ajeno_fin}));
  EXPECT_TRUE(plataforma.Screens().empty());
}

TEST_P(Opening, ANullLockIsFree) {
  Documento(7, "PE", data::Value(), "LUIS");
  side().modifica(*movimientos, 7, false);
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_EQ(Modo(), "MODIFICACION");
}

TEST_P(Opening, AnyStateButPostedIsOpenToChange) {
  Documento(7, "XX");
  Documento(8, data::Value());
  side().modifica(*movimientos, 7, false);
  EXPECT_EQ(Modo(), "MODIFICACION");
  side().modifica(*movimientos, 8, false);
  EXPECT_EQ(Modo(), "MODIFICACION");
}

TEST_P(Opening, ForReadingTheScreenGetsTheDocumentWhoeverHoldsIt) {
  Documento(7, "PE", 1, "LUIS");
  side().consulta(*movimientos, 7);
  EXPECT_EQ(bitacora.sentencias.front(), std::string(side().lee_condicion) + "7))");
  EXPECT_EQ(Modo(), "CONSULTA");
  EXPECT_EQ(Numero(), 7);
  EXPECT_EQ(Pantalla().Caption(), side().titulo_consulta);
  EXPECT_EQ(Registro()->CursorType(), 1);
  EXPECT_EQ(Registro()->LockType(), 3);
  EXPECT_EQ(Ocupado(7), "1");
  EXPECT_EQ(CuentaSentencias("UPDATE"), 0);
  EXPECT_TRUE(bitacora.mensajes.empty());
}

TEST_P(Opening, ForReadingADocumentThatIsNotThereIsToldWithAStop) {
  side().consulta(*movimientos, 99);
  ExpectMessage({side().no_existe_consulta}, MensajeDeLaBase(side().no_existe_consulta), 16);
  EXPECT_TRUE(plataforma.Screens().empty());
}

TEST_P(Opening, TheScreenGetsTheClassesOwnContextAndForm) {
  Documento(7);
  side().modifica(*movimientos, 7, false);
  EXPECT_EQ(AmbienteDePantalla(), &anfitrion->Ambiente());
  EXPECT_EQ(ParentDePantalla(), &anfitrion->Parent());
  side().consulta(*movimientos, 7);
  EXPECT_EQ(AmbienteDePantalla(), &anfitrion->Ambiente());
  side().nueva(*movimientos, false);
  EXPECT_EQ(ParentDePantalla(), &anfitrion->Parent());
}

TEST_P(Opening, ADocumentIsReadByTheClassItselfAndNotByTheHelper) {
  bitacora.FallaServicio("AbreRecordset", 1, "ayudante");
  side().modifica(*movimientos, 99, false);
  side().consulta(*movimientos, 99);
  EXPECT_TRUE(Reportes().empty());
  side().nueva(*movimientos, false);
  EXPECT_EQ(Reportes(), std::vector<std::string>{Reporte(side().fn_nueva, "ayudante", "EntradasSalidas")});
}

// ---- each step made to fail ----

TEST_P(Opening, ANewDocumentWhoseReadingFailsIsShownAllTheSame) {
  bitacora.Falla(std::string("WHERE ") + side().clave + " = 0$", 1, "no se lee");
  side().nueva(*movimientos, false);
  EXPECT_EQ(Reportes(), std::vector<std::string>{Reporte(side().fn_nueva, "no se lee", "EntradasSalidas")});
  EXPECT_EQ(ArchivoDelDia(), bitacora.mensajes[0].texto);
  ASSERT_EQ(plataforma.Screens().size(), 1u);
  EXPECT_FALSE(Registro());
  EXPECT_EQ(Modo(), "ALTA");
}

TEST_P(Opening, ForChangeADocumentThatCannotBeReadIsNotFound) {
  Documento(7);
  bitacora.Falla(std::string("WHERE ") + side().clave + " = 7$", 1, "no se lee");
  side().modifica(*movimientos, 7, false);
  const auto reportes = Reportes();
  ASSERT_EQ(reportes.size(), 2u);  // the reading, and the test on what was not read
  EXPECT_EQ(reportes[0], Reporte(side().fn_modifica, "no se lee", "EntradasSalidas"));
  EXPECT_EQ(reportes[1].find("Module: EntradasSalidas\r\nFunction: " + std::string(side().fn_modifica)), 0u);
  EXPECT_EQ(ArchivoDelDia(), bitacora.mensajes[0].texto + bitacora.mensajes[1].texto);
  EXPECT_EQ(Numeros(), std::vector<int>{side().no_existe});
  EXPECT_TRUE(plataforma.Screens().empty());
}

TEST_P(Opening, ForReadingADocumentThatCannotBeReadIsNotFound) {
  Documento(7);
  bitacora.Falla("WHERE \\(\\(\\(", 1, "no se lee");
  side().consulta(*movimientos, 7);
  EXPECT_EQ(Reportes().size(), 2u);
  EXPECT_EQ(Reportes()[0], Reporte(side().fn_consulta, "no se lee", "EntradasSalidas"));
  EXPECT_EQ(Numeros(), std::vector<int>{side().no_existe_consulta});
  EXPECT_TRUE(plataforma.Screens().empty());
}

TEST_P(Opening, AMessageThatCannotBeFetchedIsShownEmptyAndTheDocumentOpens) {
  Documento(7, "CO");
  bitacora.FallaServicio("TraeMensaje", 1, "sin mensajes");
  side().modifica(*movimientos, 7, false);
  EXPECT_EQ(Reportes(),
            std::vector<std::string>{Reporte(side().fn_modifica, "sin mensajes", "EntradasSalidas")});
  ASSERT_EQ(bitacora.mensajes.size(), 2u);
  EXPECT_EQ(bitacora.mensajes[1].clase, "mensaje");
  EXPECT_EQ(bitacora.mensajes[1].texto, "");
  EXPECT_EQ(Modo(), "CONSULTA");
}

TEST_P(Opening, AMessageThatCannotBeShownIsReportedAndTheDocumentOpens) {
  Documento(7, "CO");
  bitacora.FallaServicio("MuestraMensaje", 1, "sin caja");
  side().modifica(*movimientos, 7, false);
  EXPECT_EQ(Reportes(), std::vector<std::string>{Reporte(side().fn_modifica, "sin caja", "EntradasSalidas")});
  EXPECT_EQ(Modo(), "CONSULTA");
}

TEST_P(Opening, WhenOneselfCannotBeToldTheLockIsTakenForOnesOwn) {
  Documento(7, "PE", 1, "LUIS");
  bitacora.FallaServicio("Usuario", 1, "sin usuario");
  side().modifica(*movimientos, 7, false);
  EXPECT_EQ(Reportes(),
            std::vector<std::string>{Reporte(side().fn_modifica, "sin usuario", "EntradasSalidas")});
  EXPECT_EQ(Numeros(), std::vector<int>{side().propio});
  EXPECT_TRUE(plataforma.Screens().empty());
}

TEST_P(Opening, AHalfOfTheLocksTextThatFailsLeavesTheRest) {
  Documento(7, "PE", 1, "LUIS");
  bitacora.FallaServicio("TraeMensaje", 1, "sin mensajes");
  side().modifica(*movimientos, 7, false);
  EXPECT_EQ(Reportes().size(), 1u);
  EXPECT_EQ(bitacora.mensajes.back().texto, " LUIS" + MensajeDeLaBase(side().ajeno_fin));
}

TEST_P(Opening, WithoutAContextAReadingShowsItsBoxesWritesNoLogAndRaisesNothing) {
  movimientos->Ambiente = nullptr;
  EXPECT_NO_THROW(side().modifica(*movimientos, 7, false));
  EXPECT_NO_THROW(side().consulta(*movimientos, 7));
  EXPECT_NO_THROW(side().elimina(*movimientos, 7));
  // Reading, its test, and the two steps of a message, for each of the three.
  const auto reportes = Reportes();
  ASSERT_EQ(reportes.size(), 12u);
  for (const auto& reporte : reportes) EXPECT_EQ(reporte.find("Module: EntradasSalidas\r\n"), 0u) << reporte;
  EXPECT_NE(reportes[0].find(side().fn_modifica), std::string::npos);
  EXPECT_NE(reportes[4].find(side().fn_consulta), std::string::npos);
  EXPECT_NE(reportes[8].find(side().fn_elimina), std::string::npos);
  EXPECT_TRUE(plataforma.Screens().empty());
  EXPECT_FALSE(std::filesystem::exists(ruta / "web"));
  EXPECT_TRUE(no_atrapados.empty());
}

TEST_P(Opening, WithoutAContextANewDocumentShowsItsBoxAndRaisesNothing) {
  movimientos->Ambiente = nullptr;
  EXPECT_NO_THROW(side().nueva(*movimientos, false));
  ASSERT_FALSE(Reportes().empty());
  EXPECT_EQ(Reportes()[0].find("Module: EntradasSalidas\r\nFunction: " + std::string(side().fn_nueva)), 0u);
  EXPECT_FALSE(std::filesystem::exists(ruta / "web"));
}

TEST_P(Opening, WithoutAFormOfTheHostEverythingButTheListWorks) {
  movimientos->Parent = nullptr;
  Documento(7);
  side().modifica(*movimientos, 7, false);
  EXPECT_EQ(ParentDePantalla(), nullptr);
  EXPECT_TRUE(Pantalla().Unload());
  EXPECT_TRUE(bitacora.mensajes.empty());
}

class Station : public Escenario {};

TEST_F(Station, ATransferGetsContextAndNumberAndReadsNothing) {
  movimientos->movimientoEstacion(12, false);
  ASSERT_EQ(plataforma.Screens().size(), 1u);
  auto& f = dynamic_cast<frmMovEstaciones&>(*plataforma.Screens().back());
  EXPECT_EQ(f.Id, 12);
  EXPECT_EQ(f.Ambiente.Get(), &anfitrion->Ambiente());
  EXPECT_TRUE(f.Visible());
}

TEST_F(Station, AModalTransferReturnsWhenItHasClosed) {
  bool vista = false;
  plataforma.on_modal = [&](forms::Form& forma) { vista = forma.Visible(); };
  movimientos->movimientoEstacion(12, true);
  EXPECT_TRUE(vista);
  EXPECT_TRUE(plataforma.Screens().empty());
}

TEST_F(Station, AnErrorPassesToTheCallerUnreported) {
  plataforma.on_modal = [](forms::Form&) { throw data::Error("sin ventana"); };
  EXPECT_THROW(movimientos->movimientoEstacion(12, true), data::Error);
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_EQ(ArchivoDelDia(), "");
}

}  // namespace
}  // namespace tarvik::tests
