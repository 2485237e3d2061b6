// The distribution sheet of goods-out: how the page is put together, the day's file and the browser.
#include <fstream>
#include <sstream>

#include "goods_out/columnas.h"
#include "tests/goods_out/support.h"

namespace tarvik::tests {
namespace {

class HojaDeDistribucion : public EscenarioDeSalidas {
 protected:
  HojaDeDistribucion() {
    plataforma.on_navigate = [this](forms::WebBrowser&, const std::string& nombre) {
      navegado.push_back(nombre);
    };
  }
  Textos navegado;

  std::string Archivo(const std::string& nombre = "05032024.htm") {
    std::ifstream archivo(ruta / nombre, std::ios::binary);
    std::ostringstream texto;
    texto << archivo.rdbuf();
    return texto.str();
  }
  static std::string Pagina(const std::string& cuerpo, const std::string& titulo) {
    return "<HTML><HEAD><TITLE>Html Tarvik</TITLE></HEAD><BODY>" + cuerpo + "<B><CENTER><H2>" + titulo +
           "</H2></CENTER></B></BODY></HTML>";
  }
};

TEST_F(HojaDeDistribucion, LoadingMakesAnEmptyPageAndShowsIt) {
  frmSalidasWizard& f = NuevaSalida();
  EXPECT_EQ(Archivo(), Pagina("", "") + "\r\n");
  EXPECT_EQ(navegado, (Textos{ruta.string() + "\\05032024.htm"}));
  EXPECT_EQ(f.wb.Location(), ruta.string() + "\\05032024.htm");
  EXPECT_EQ(Claves(), (Textos{"SALIDAS009", "SALIDAS001"}));
  EXPECT_TRUE(Reportes().empty());
}

TEST_F(HojaDeDistribucion, LoadingMakesItAfterTheGridIsFilled) {
  DocumentoGuardado(2);
  std::string visto;
  Gancho("SALIDAS009", [&](frmSalidasWizard& f) {
    visto = Celda(f, 2, columna_salida::Cantidad) + "|" + f.txtFields(campo::Total).Text();
  });
  ModificaSalida(7);
  EXPECT_EQ(visto, "2.5|46.4");
}

TEST_F(HojaDeDistribucion, TheBodyOfARoutineStandsAboveTheHeadingAndNeitherIsEscaped) {
  frmSalidasWizard& f = NuevaSalida();
  Gancho("SALIDAS009", [](frmSalidasWizard& g) { g.Html = "<P>uno & dos</P>"; });
  std::string texto = "<I>Norte</I> & sur";
  f.CreaHTML(texto, "");
  EXPECT_EQ(texto, Pagina("<P>uno & dos</P>", "<I>Norte</I> & sur"));
  EXPECT_EQ(Archivo(), texto + "\r\n");
}

TEST_F(HojaDeDistribucion, TheBodyIsEmptiedEachTimeBeforeTheRoutineRuns) {
  frmSalidasWizard& f = NuevaSalida();
  f.Html = "viejo";
  std::string antes = "?";
  Gancho("SALIDAS009", [&](frmSalidasWizard& g) { antes = g.Html; });
  std::string texto = "Norte";
  f.CreaHTML(texto, "");
  EXPECT_EQ(antes, "");
  EXPECT_EQ(texto, Pagina("", "Norte"));
}

TEST_F(HojaDeDistribucion, AReadyPageReplacesEverythingThoughTheRoutineRuns) {
  frmSalidasWizard& f = NuevaSalida();
  Olvida();
  Gancho("SALIDAS009", [](frmSalidasWizard& g) { g.Html = "cuerpo"; });
  std::string texto = "Norte";
  f.CreaHTML(texto, "<HTML>lista</HTML>");
  EXPECT_EQ(texto, "<HTML>lista</HTML>");
  EXPECT_EQ(Archivo(), "<HTML>lista</HTML>\r\n");
  EXPECT_EQ(Claves(), (Textos{"SALIDAS009"}));
  EXPECT_EQ(f.Html, "cuerpo");
}

TEST_F(HojaDeDistribucion, APageOfBlanksCountsAsNone) {
  frmSalidasWizard& f = NuevaSalida();
  std::string texto = "Norte";
  f.CreaHTML(texto, "   ");
  EXPECT_EQ(texto, Pagina("", "Norte"));
}

TEST_F(HojaDeDistribucion, ALaterPageOfTheDayReplacesTheEarlierAndTheNextDayHasItsOwn) {
  frmSalidasWizard& f = NuevaSalida();
  f.DTPicker1.Value(data::Date{2023, 1, 1});
  std::string texto = "Norte";
  f.CreaHTML(texto, "");
  NuevaSalida();
  EXPECT_EQ(Archivo(), Pagina("", "") + "\r\n");
  reloj = {{2024, 3, 6}, {0, 0, 1}};
  texto = "Sur";
  f.CreaHTML(texto, "");
  EXPECT_EQ(Archivo("06032024.htm"), Pagina("", "Sur") + "\r\n");
  EXPECT_EQ(Archivo(), Pagina("", "") + "\r\n");
  EXPECT_EQ(navegado.back(), ruta.string() + "\\06032024.htm");
}

TEST_F(HojaDeDistribucion, AFileThatCannotBeWrittenIsReportedAndTheLoadingGoesOn) {
  std::filesystem::create_directories(ruta / "05032024.htm" / "ocupada");
  frmSalidasWizard& f = NuevaSalida();
  ASSERT_FALSE(bitacora.mensajes.empty());
  for (const auto& mensaje : bitacora.mensajes) {
    EXPECT_NE(mensaje.texto.find("Module: frmSalidasWiz\r\nFunction: CreaHTML\r\n"), std::string::npos);
  }
  EXPECT_TRUE(f.Open());
  EXPECT_TRUE(f.Acumulado);
  EXPECT_EQ(bitacora.presentadas.size(), 1u);
}

TEST_F(HojaDeDistribucion, EachStepFailsAlone) {
  frmSalidasWizard& f = NuevaSalida();
  for (const char* servicio : {"BuscaCatalogo", "ExisteArchivo", "BorraArchivo"}) {
    Olvida();
    std::filesystem::remove_all(ruta / "web");
    bitacora.FallaServicio(servicio, 1, "falla provocada");
    std::string texto = "Norte";
    navegado.clear();
    f.CreaHTML(texto, "");
    EXPECT_EQ(Reportes(), (Textos{Reporte("CreaHTML")})) << servicio;
    EXPECT_EQ(navegado.size(), 1u) << servicio;
    EXPECT_TRUE(Archivo().ends_with(Pagina("", "Norte") + "\r\n")) << servicio;
  }
}

TEST_F(HojaDeDistribucion, AnEmptinessThatCannotBeToldMakesTheComposedPage) {
  frmSalidasWizard& f = NuevaSalida();
  bitacora.FallaServicio("EstaVacio", 1, "falla provocada");
  std::string texto = "Norte";
  f.CreaHTML(texto, "lista");
  EXPECT_EQ(texto, Pagina("", "Norte"));
  EXPECT_EQ(Reportes(), (Textos{Reporte("CreaHTML")}));
}

}  // namespace
}  // namespace tarvik::tests
