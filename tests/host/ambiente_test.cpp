// The working context: its properties, the settings in the base, and what a script may write.
#include "host/ambiente_local.h"

#include "tests/host/apoyo.h"

namespace tarvik::host {
namespace {

class AmbienteDePrueba : public Banco {};

TEST_F(AmbienteDePrueba, ItStartsWithWhatTheHostWasGivenAndTheUsualPatterns) {
  EXPECT_EQ(Ambiente().Usuario(), "ANA");
  EXPECT_EQ(Ambiente().Estacion(), "E1");
  EXPECT_EQ(Ambiente().Moneda(), "");
  EXPECT_EQ(Ambiente().ClaveLocal(), "");
  EXPECT_EQ(Ambiente().FormatoImporte(), "###,###,##0.00");
  EXPECT_EQ(Ambiente().FormatoCantidad(), "###,###,##0.####");
  EXPECT_EQ(Ambiente().RutaBase(), carpeta.Ruta("datos").string());
  EXPECT_EQ(Ambiente().ValorFechaA(), 0);
  EXPECT_EQ(Ambiente().ValorFechaB(), 0);
  EXPECT_TRUE(Ambiente().ValorDeGancho().IsNull());
}

TEST_F(AmbienteDePrueba, EachPropertyIsReadByItsNameAndCanBeMadeToFail) {
  const std::vector<std::pair<std::string, std::function<void()>>> reads = {
      {"Conexion", [&] { Ambiente().Conexion(); }},
      {"Usuario", [&] { Ambiente().Usuario(); }},
      {"Estacion", [&] { Ambiente().Estacion(); }},
      {"Moneda", [&] { Ambiente().Moneda(); }},
      {"ClaveLocal", [&] { Ambiente().ClaveLocal(); }},
      {"FormatoImporte", [&] { Ambiente().FormatoImporte(); }},
      {"FormatoCantidad", [&] { Ambiente().FormatoCantidad(); }},
      {"Parametros", [&] { Ambiente().Parametros(); }},
      {"RutaBase", [&] { Ambiente().RutaBase(); }},
      {"ValorFechaA", [&] { Ambiente().ValorFechaA(); }},
      {"ValorFechaB", [&] { Ambiente().ValorFechaB(); }},
      {"ValorDeGancho", [&] { Ambiente().ValorDeGancho(data::Value(4)); }}};
  for (const auto& [name, read] : reads) {
    testigo.falla_servicio = name;
    EXPECT_EQ(ErrorDe(read), "falla provocada") << name;
    EXPECT_EQ(testigo.Veces(name), 1) << name;
  }
  EXPECT_TRUE(Ambiente().ValorDeGancho().IsNull());  // the failed one set nothing
}

TEST_F(AmbienteDePrueba, EveryWritablePropertyTakesItsValue) {
  Ambiente().Pon("Usuario", "BETO");
  Ambiente().Pon("Estacion", "E2");
  Ambiente().Pon("Moneda", "MXN");
  Ambiente().Pon("ClaveLocal", "L1");
  Ambiente().Pon("FormatoImporte", "0.0");
  Ambiente().Pon("FormatoCantidad", "0");
  Ambiente().Pon("RutaBase", "/otra/");
  Ambiente().Pon("ValorFechaA", -3);
  Ambiente().Pon("ValorFechaB", "2");
  Ambiente().Pon("ValorDeGancho", "x");
  EXPECT_EQ(Ambiente().Usuario(), "BETO");
  EXPECT_EQ(Ambiente().Estacion(), "E2");
  EXPECT_EQ(Ambiente().Moneda(), "MXN");
  EXPECT_EQ(Ambiente().ClaveLocal(), "L1");
  EXPECT_EQ(Ambiente().FormatoImporte(), "0.0");
  EXPECT_EQ(Ambiente().FormatoCantidad(), "0");
  EXPECT_EQ(Ambiente().RutaBase(), "/otra");
  EXPECT_EQ(Ambiente().ValorFechaA(), -3);
  EXPECT_EQ(Ambiente().ValorFechaB(), 2);
  EXPECT_EQ(Ambiente().ValorDeGancho(), data::Value("x"));
  EXPECT_EQ(ErrorDe([&] { Ambiente().Pon("Conexion", 1); }), "El ambiente no tiene la propiedad Conexion");
}

TEST_F(AmbienteDePrueba, TheSettingsAreOneRowReadWithoutRegardToCase) {
  Ambiente().Parametro("Empresa", "Ferretería La Unión");
  auto settings = Ambiente().Parametros();
  EXPECT_EQ(settings->RecordCount(), 1);
  EXPECT_EQ(settings->Fields("almacen"), data::Value(1));
  EXPECT_EQ(settings->Fields("PORSURT"), data::Value(0));
  EXPECT_EQ(settings->Fields("Empresa"), data::Value("Ferretería La Unión"));
}

TEST_F(AmbienteDePrueba, ASettingIsChangedUnderTheNameThatItHas) {
  Ambiente().Parametro("almacen", 2);
  EXPECT_EQ(Ambiente().Parametro("ALMACEN"), data::Value(2));
  EXPECT_EQ(Ambiente().NombresDeParametros().size(), 5U);
  EXPECT_EQ(data::ToText(Dato("SELECT valor FROM parametros WHERE nombre = 'Almacen'")), "2");
  EXPECT_EQ(Ambiente().Parametros()->Fields("Almacen"), data::Value(2));
}

TEST_F(AmbienteDePrueba, OnlyATextThatReadsBackTheSameIsANumber) {
  const std::vector<std::pair<const char*, data::Value>> cases = {
      {"2.5", 2.5}, {"-3", -3}, {"007", "007"}, {"1,234", "1,234"}, {"", ""}, {"1e3", "1e3"}};
  for (const auto& [text, expected] : cases) {
    Ambiente().Parametro("Prueba", text);
    EXPECT_EQ(Ambiente().Parametro("Prueba"), expected) << text;
  }
}

TEST_F(AmbienteDePrueba, ASettingThatWasNeverSetIsNullAndNullCanBeSet) {
  EXPECT_TRUE(Ambiente().Parametro("Inventado").IsNull());
  Ambiente().Parametro("Almacen", {});
  EXPECT_TRUE(Ambiente().Parametro("Almacen").IsNull());
  EXPECT_TRUE(Ambiente().Parametros()->Fields("Almacen").IsNull());
}

TEST_F(AmbienteDePrueba, ASettingWithoutANameIsRefused) {
  EXPECT_EQ(ErrorDe([&] { Ambiente().Parametro(" ", 1); }), "El parámetro no tiene nombre");
}

TEST_F(AmbienteDePrueba, SettingsLastInTheBase) {
  opciones.base = "sqlite:" + carpeta.Ruta("base.db").string();
  Abre();
  Ambiente().Parametro("Empresa", "La Unión");
  Ambiente().Parametro("Almacen", 3);
  anfitrion.reset();
  Abre();
  EXPECT_EQ(Ambiente().Parametro("Empresa"), data::Value("La Unión"));
  EXPECT_EQ(Ambiente().Parametro("Almacen"), data::Value(3));
}

TEST(RutaDeAmbiente, TheFolderHasNoSeparatorAtItsEndAndIsNeverEmpty) {
  EXPECT_EQ(SinSeparadorFinal("datos"), "datos");
  EXPECT_EQ(SinSeparadorFinal("datos/"), "datos");
  EXPECT_EQ(SinSeparadorFinal("C:\\datos\\"), "C:\\datos");
  EXPECT_EQ(SinSeparadorFinal("/"), "/");
  EXPECT_EQ(SinSeparadorFinal(""), ".");
}

}  // namespace
}  // namespace tarvik::host
