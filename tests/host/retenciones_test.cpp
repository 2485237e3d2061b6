// Who holds a document: taking, letting go, reading, and the right to free what was left behind.
#include "host/retenciones.h"

#include "service/entradas_salidas.h"
#include "tests/host/apoyo.h"

namespace tarvik::host {
namespace {

class RetencionesDePrueba : public Banco {
 protected:
  void SetUp() override {
    Banco::SetUp();
    Sql("INSERT INTO entradas (entrada, estado, ocupado, usuario) VALUES (7, 'PE', 1, 'BETO')");
    Sql("INSERT INTO salidas (salida, estado, ocupado, usuario) VALUES (7, 'PE', 1, 'CARLA')");
  }
  data::EngineConnection& Base() { return anfitrion->Conexion(); }
  void Liberadores(const std::string& users) { Ambiente().Parametro("Liberadores", users); }
};

TEST_F(RetencionesDePrueba, WhoTookItWhereAndSinceWhenIsReadBack) {
  EXPECT_FALSE(Lee(Base(), Tipo::Entrada, 7));
  Toma(Base(), Tipo::Entrada, 7, "ANA", "E1", ahora);
  const auto held = Lee(Base(), Tipo::Entrada, 7);
  ASSERT_TRUE(held);
  EXPECT_EQ(held->usuario, "ANA");
  EXPECT_EQ(held->estacion, "E1");
  EXPECT_EQ(held->desde, ahora);
  EXPECT_EQ(Dato("SELECT tipo FROM retenciones"), data::Value("Entrada"));
}

TEST_F(RetencionesDePrueba, ALaterHolderReplacesAnEarlierOne) {
  Toma(Base(), Tipo::Entrada, 7, "ANA", "E1", ahora);
  Toma(Base(), Tipo::Entrada, 7, "BETO", "E2", {{2024, 3, 6}, {8, 0, 1}});
  EXPECT_EQ(Dato("SELECT COUNT(*) FROM retenciones"), data::Value(1));
  EXPECT_EQ(Lee(Base(), Tipo::Entrada, 7)->usuario, "BETO");
  EXPECT_EQ(Lee(Base(), Tipo::Entrada, 7)->desde.Iso(), "2024-03-06 08:00:01");
}

TEST_F(RetencionesDePrueba, GoodsInAndGoodsOutOfOneNumberAreTwoDocuments) {
  Toma(Base(), Tipo::Entrada, 7, "ANA", "E1", ahora);
  Toma(Base(), Tipo::Salida, 7, "BETO", "E2", ahora);
  Suelta(Base(), Tipo::Entrada, 7);
  EXPECT_FALSE(Lee(Base(), Tipo::Entrada, 7));
  ASSERT_TRUE(Lee(Base(), Tipo::Salida, 7));
  EXPECT_EQ(Lee(Base(), Tipo::Salida, 7)->usuario, "BETO");
  Suelta(Base(), Tipo::Entrada, 7);  // nothing held: nothing happens
}

TEST_F(RetencionesDePrueba, WithNobodyNamedEverybodyMayFree) {
  EXPECT_TRUE(PuedeLiberar(Base(), "ANA"));
  Liberadores("  ");
  EXPECT_TRUE(PuedeLiberar(Base(), "ANA"));
}

TEST_F(RetencionesDePrueba, OfSeveralNamedOnlyThoseMayFree) {
  Liberadores("BETO, ana ,");
  EXPECT_TRUE(PuedeLiberar(Base(), "ANA"));
  EXPECT_TRUE(PuedeLiberar(Base(), "BETO"));
  EXPECT_FALSE(PuedeLiberar(Base(), "CARLA"));
  EXPECT_FALSE(PuedeLiberar(Base(), "AN"));
  EXPECT_FALSE(PuedeLiberar(Base(), ""));
}

TEST_F(RetencionesDePrueba, FreeingClearsFlagAndRowOfThatDocumentAlone) {
  Toma(Base(), Tipo::Entrada, 7, "BETO", "E2", ahora);
  Toma(Base(), Tipo::Salida, 7, "CARLA", "E3", ahora);
  Libera(Base(), Tipo::Entrada, 7, "ANA");
  EXPECT_EQ(Dato("SELECT ocupado FROM entradas WHERE entrada = 7"), data::Value(0));
  EXPECT_FALSE(Lee(Base(), Tipo::Entrada, 7));
  EXPECT_EQ(Dato("SELECT ocupado FROM salidas WHERE salida = 7"), data::Value(1));
  EXPECT_TRUE(Lee(Base(), Tipo::Salida, 7));
  Libera(Base(), Tipo::Salida, 7, "ANA");
  EXPECT_EQ(Dato("SELECT ocupado FROM salidas WHERE salida = 7"), data::Value(0));
}

TEST_F(RetencionesDePrueba, AFlagWithoutARowIsFreedToo) {
  Libera(Base(), Tipo::Entrada, 7, "ANA");
  EXPECT_EQ(Dato("SELECT ocupado FROM entradas WHERE entrada = 7"), data::Value(0));
}

TEST_F(RetencionesDePrueba, WhoMayNotFreeChangesNothing) {
  Liberadores("BETO");
  Toma(Base(), Tipo::Entrada, 7, "BETO", "E2", ahora);
  EXPECT_EQ(ErrorDe([&] { Libera(Base(), Tipo::Entrada, 7, "ANA"); }),
            "El usuario ANA no tiene permiso para liberar documentos");
  EXPECT_EQ(Dato("SELECT ocupado FROM entradas WHERE entrada = 7"), data::Value(1));
  EXPECT_TRUE(Lee(Base(), Tipo::Entrada, 7));
}

TEST_F(RetencionesDePrueba, ADocumentThatIsGoneIsAnErrorAndItsRowStays) {
  Toma(Base(), Tipo::Salida, 9, "BETO", "E2", ahora);
  EXPECT_EQ(ErrorDe([&] { Libera(Base(), Tipo::Salida, 9, "ANA"); }), "No existe la salida 9");
  EXPECT_TRUE(Lee(Base(), Tipo::Salida, 9));
}

TEST_F(RetencionesDePrueba, AFailureInBetweenLeavesTheFlagAsItWas) {
  Toma(Base(), Tipo::Entrada, 7, "BETO", "E2", ahora);
  Sql("ALTER TABLE retenciones RENAME TO apartadas");
  const std::string error = ErrorDe([&] { Libera(Base(), Tipo::Entrada, 7, "ANA"); });
  EXPECT_TRUE(error.starts_with("La tabla no existe: ")) << error;
  Sql("ALTER TABLE apartadas RENAME TO retenciones");
  EXPECT_EQ(Dato("SELECT ocupado FROM entradas WHERE entrada = 7"), data::Value(1));
  EXPECT_TRUE(Lee(Base(), Tipo::Entrada, 7));
}

TEST_F(RetencionesDePrueba, AScreenHoldsItsDocumentOnlyInChange) {
  Sql("UPDATE entradas SET ocupado = 0, tipo_doc = 'COM'");
  Sql("UPDATE salidas SET ocupado = 0, folio = 70, tipo_doc = 'VTA'");
  EntradasSalidas door(*anfitrion);
  door.Ambiente = &Ambiente();
  const auto held = [&](auto&& open) {
    open();
    const auto screen = plataforma.Screens().at(0);
    const auto result = RetenidoPor(*screen);
    screen->Unload();
    EXPECT_FALSE(RetenidoPor(*screen)) << "the screen is gone";
    return result;
  };
  EXPECT_EQ(held([&] { door.ModificaEntrada(7); }), (Retenido{Tipo::Entrada, 7}));
  EXPECT_EQ(held([&] { door.ModificaSalida(7); }), (Retenido{Tipo::Salida, 7}));
  EXPECT_FALSE(held([&] { door.ConsultaEntrada(7); }));
  EXPECT_FALSE(held([&] { door.ConsultaSalida(7); }));
  EXPECT_FALSE(held([&] { door.NuevaEntrada(); }));
  EXPECT_FALSE(RetenidoPor(*forma));
}

}  // namespace
}  // namespace tarvik::host
