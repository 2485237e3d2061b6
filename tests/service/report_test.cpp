// The report of a failure: the box, the day's log, and what happens where the log can't be written.
#include "service/report/reporte.h"

#include <fstream>

#include "tests/support/escenario.h"

namespace tarvik::tests {
namespace {

class Informe : public Escenario {
 protected:
  static constexpr const char* kNueva = "FROM entradas WHERE entrada = 0";
  std::string Archivo(const std::string& dia) {
    const data::DateTime antes = reloj;
    reloj.date = *data::Date::Parse(dia);
    const std::string texto = ArchivoDelDia();
    reloj = antes;
    return texto;
  }
};

TEST_F(Informe, TheTextHasFourLinesEachEndedByCrLf) {
  EXPECT_EQ(
      service::TextoDelReporte({14, 3, 22}, "frmEntradasWi", "SalvaEntrada", "no hay red código duro: 0"),
      "14:03:22 Ocurrió un error:\r\nModule: frmEntradasWi\r\nFunction: SalvaEntrada\r\n"
      "Description: no hay red código duro: 0\r\n");
  EXPECT_EQ(service::TextoDelReporte({4, 5, 6}, "a", "b", "c").substr(0, 9), "04:05:06 ");
}

TEST_F(Informe, TheBoxIsPlainAndTheLogHoldsItsTextToTheByte) {
  EXPECT_TRUE(movimientos->ReportaError("EntradasSalidas", "NuevaEntrada", "x código duro: 0"));
  ASSERT_EQ(bitacora.mensajes.size(), 1u);
  EXPECT_EQ(bitacora.mensajes[0].clase, "caja");
  EXPECT_EQ(bitacora.mensajes[0].estilo, 0);
  EXPECT_EQ(bitacora.mensajes[0].texto,
            "14:03:22 Ocurrió un error:\r\nModule: EntradasSalidas\r\nFunction: NuevaEntrada\r\n"
            "Description: x código duro: 0\r\n");
  EXPECT_EQ(ArchivoDelDia(), bitacora.mensajes[0].texto);
}

TEST_F(Informe, TheFileStandsInTheWebFolderUnderItsDayFirstName) {
  movimientos->ReportaError("a", "b", "c");
  EXPECT_TRUE(std::filesystem::exists(ruta / "web" / "TarvikError05032024.Log"));
}

TEST_F(Informe, AllEntriesOfADayStandInOneFileInTheirOrder) {
  movimientos->ReportaError("EntradasSalidas", "uno", "a");
  reloj.time = {15, 0, 0};
  movimientos->ReportaError("frmEntradasWi", "dos", "b");
  ASSERT_EQ(bitacora.mensajes.size(), 2u);
  EXPECT_EQ(ArchivoDelDia(), bitacora.mensajes[0].texto + bitacora.mensajes[1].texto);
}

TEST_F(Informe, TwoErrorsOverMidnightGoToTwoFiles) {
  reloj.time = {23, 59, 59};
  movimientos->ReportaError("a", "antes", "x");
  reloj = {{2024, 3, 6}, {0, 0, 1}};
  movimientos->ReportaError("a", "despues", "x");
  EXPECT_NE(Archivo("2024-03-05").find("Function: antes"), std::string::npos);
  EXPECT_EQ(Archivo("2024-03-05").find("despues"), std::string::npos);
  EXPECT_EQ(Archivo("2024-03-06").find("00:00:01 Ocurrió un error:"), 0u);
}

TEST_F(Informe, ABoxLeftOpenOverMidnightIsWrittenOnTheNewDayWithItsOldTime) {
  reloj.time = {23, 59, 59};
  plataforma.on_box = [&](auto, const auto&, int) {
    reloj = {{2024, 3, 6}, {8, 0, 0}};
    return true;
  };
  movimientos->ReportaError("a", "b", "x");
  EXPECT_EQ(Archivo("2024-03-05"), "");
  EXPECT_EQ(Archivo("2024-03-06").find("23:59:59 "), 0u);
}

TEST_F(Informe, LineBreaksInADescriptionStandUnchanged) {
  bitacora.Falla(kNueva, 1, "una\r\ndos\ntres");
  movimientos->NuevaEntrada();
  ASSERT_EQ(bitacora.mensajes.size(), 1u);
  EXPECT_NE(bitacora.mensajes[0].texto.find("Description: una\r\ndos\ntres código duro: 0\r\n"),
            std::string::npos);
  EXPECT_EQ(ArchivoDelDia(), bitacora.mensajes[0].texto);
}

TEST_F(Informe, TheScreensModuleTextIsCutAndThePublicClassesIsWhole) {
  EXPECT_EQ(movimientos->Modulo(), "EntradasSalidas");
  EXPECT_EQ(Nueva().Modulo(), "frmEntradasWi");
}

TEST_F(Informe, ClassAndScreenWriteToTheSameFile) {
  bitacora.Falla(kNueva, 1, "uno");
  bitacora.FallaServicio("NuevoQuery", 1, "dos");
  movimientos->NuevaEntrada();
  const std::string archivo = ArchivoDelDia();
  EXPECT_NE(
      archivo.find("Module: EntradasSalidas\r\nFunction: NuevaEntrada\r\nDescription: uno código duro: 0"),
      std::string::npos);
  EXPECT_NE(archivo.find("Module: frmEntradasWi\r\nFunction: Form_Load\r\nDescription: dos código duro: 0"),
            std::string::npos);
}

TEST_F(Informe, ALogThatFailsEndsTheOperationAfterItsBoxAndTellsThePlatform) {
  bitacora.Falla(kNueva, 1, "no se lee");
  bitacora.FallaServicio("AgregaArchivoLog", 1, "sin bitácora");
  EXPECT_NO_THROW(movimientos->NuevaEntrada());
  EXPECT_EQ(Reportes(), std::vector<std::string>{Reporte("NuevaEntrada", "no se lee", "EntradasSalidas")});
  EXPECT_TRUE(plataforma.Screens().empty());
  EXPECT_EQ(no_atrapados, std::vector<std::string>{"sin bitácora"});
  EXPECT_EQ(ArchivoDelDia(), "");
}

TEST_F(Informe, ABaseFolderThatCannotBeToldIsALogThatFails) {
  bitacora.Falla(kNueva, 1, "no se lee");
  bitacora.FallaServicio("RutaBase", 1, "sin ruta");
  movimientos->NuevaEntrada();
  EXPECT_EQ(Reportes().size(), 1u);
  EXPECT_EQ(no_atrapados, std::vector<std::string>{"sin ruta"});
}

TEST_F(Informe, AFileWhereTheFolderShouldBeIsALogThatFails) {
  std::ofstream(ruta / "web") << "x";
  bitacora.Falla(kNueva, 1, "no se lee");
  movimientos->NuevaEntrada();
  EXPECT_EQ(Reportes().size(), 1u);
  ASSERT_EQ(no_atrapados.size(), 1u);
  EXPECT_EQ(no_atrapados[0].find("No se puede crear el archivo"), 0u);
}

TEST_F(Informe, InAScreensEventTheBoxIsShownTheRestDoesNotRunAndTheScreenStays) {
  Catalogo();
  frmEntradasWizard& f = Nueva();
  f.DTPicker1.Value(data::Date{2024, 1, 15});
  f.RichTextBox3.Text("de antes");
  bitacora.Falla("FROM tipominv", 1, "no se lee");
  bitacora.FallaServicio("AgregaArchivoLog", 1, "sin bitácora");
  Teclea(f, f.txtFields(campo::Concepto), "c");
  EXPECT_EQ(Reportes(), std::vector<std::string>{Reporte("TraeConcepto", "no se lee")});
  EXPECT_EQ(no_atrapados, std::vector<std::string>{"sin bitácora"});
  EXPECT_EQ(f.RichTextBox3.Text(), "de antes");
  EXPECT_TRUE(f.Open());
  Teclea(f, f.txtFields(campo::Concepto), "om");
  EXPECT_EQ(f.txtFields(campo::Concepto).Text(), "COM");
  EXPECT_EQ(f.RichTextBox3.Text(), "Compra a proveedor");
}

TEST_F(Informe, WhileAScreenLoadsTheLoadingEndsAndNoScreenIsLeft) {
  bitacora.FallaServicio("NuevoQuery", 1, "no hay");
  bitacora.FallaServicio("AgregaArchivoLog", 1, "sin bitácora");
  EXPECT_NO_THROW(movimientos->NuevaEntrada());
  EXPECT_EQ(Reportes(), std::vector<std::string>{Reporte("Form_Load", "no hay")});
  EXPECT_EQ(no_atrapados, std::vector<std::string>{"sin bitácora"});
  EXPECT_TRUE(Claves().empty());
}

}  // namespace
}  // namespace tarvik::tests
