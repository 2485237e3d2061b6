// The host as a whole: how it starts, and that it leaves nothing behind where it cannot.
#include "host/anfitrion.h"

#include "data/schema.h"
#include "tests/host/apoyo.h"

namespace tarvik::host {
namespace {

class AnfitrionDePrueba : public Banco {
 protected:
  void SetUp() override {}  // each test opens for itself
  std::string Fallo() {
    return ErrorDe([&] { Abre(); });
  }
};

TEST_F(AnfitrionDePrueba, TheFolderIsMadeWithThoseAboveIt) {
  opciones.ruta = carpeta.Ruta("uno/dos/tres/").string();
  Abre();
  EXPECT_TRUE(std::filesystem::is_directory(carpeta.Ruta("uno/dos/tres")));
  EXPECT_EQ(Ambiente().RutaBase(), carpeta.Ruta("uno/dos/tres").string());
}

TEST_F(AnfitrionDePrueba, TheFolderStaysWhenTheHostEnds) {
  Abre();
  anfitrion.reset();
  EXPECT_TRUE(std::filesystem::is_directory(carpeta.Ruta("datos")));
}

TEST_F(AnfitrionDePrueba, ABaseInItsOwnNewFolderOpens) {
  opciones.base = "sqlite:" + carpeta.Ruta("datos/almacen.db").string();
  Abre();
  EXPECT_TRUE(std::filesystem::exists(carpeta.Ruta("datos/almacen.db")));
}

TEST_F(AnfitrionDePrueba, ABaseThatCannotBeOpenedLeavesNoFolder) {
  opciones.base = "sqlite:" + carpeta.Ruta("nada/almacen.db").string();
  opciones.ruta = carpeta.Ruta("uno/dos").string();
  EXPECT_NE(Fallo().find("almacen.db"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(carpeta.Ruta("uno")));
}

TEST_F(AnfitrionDePrueba, AFolderThatWasThereStaysWhereTheBaseCannotBeOpened) {
  std::filesystem::create_directories(carpeta.Ruta("uno"));
  opciones.base = "sqlite:" + carpeta.Ruta("nada/almacen.db").string();
  opciones.ruta = carpeta.Ruta("uno/dos").string();
  EXPECT_NE(Fallo(), "(ningún error)");
  EXPECT_TRUE(std::filesystem::exists(carpeta.Ruta("uno")));
  EXPECT_FALSE(std::filesystem::exists(carpeta.Ruta("uno/dos")));
}

TEST_F(AnfitrionDePrueba, AFolderThatCannotBeMadeLeavesNoBase) {
  Graba(carpeta.Ruta("ocupado"), "un archivo");
  opciones.base = "sqlite:" + carpeta.Ruta("almacen.db").string();
  opciones.ruta = carpeta.Ruta("ocupado/datos").string();
  EXPECT_EQ(Fallo().find("No se puede crear la carpeta " + opciones.ruta), 0U);
  EXPECT_FALSE(std::filesystem::exists(carpeta.Ruta("almacen.db")));
  opciones.ruta = carpeta.Ruta("ocupado").string();
  EXPECT_EQ(Fallo().find("No se puede crear la carpeta " + opciones.ruta), 0U);
}

TEST_F(AnfitrionDePrueba, AFileThatIsNoBaseIsRefusedAndLeftAsItIs) {
  const std::string text(4096, 'x');
  Graba(carpeta.Ruta("almacen.db"), text);
  opciones.base = "sqlite:" + carpeta.Ruta("almacen.db").string();
  EXPECT_NE(Fallo(), "(ningún error)");
  EXPECT_EQ(Lee(carpeta.Ruta("almacen.db")), text);
}

TEST_F(AnfitrionDePrueba, ANewerBaseIsRefused) {
  opciones.base = "sqlite:" + carpeta.Ruta("almacen.db").string();
  Abre();
  Sql("INSERT INTO version_esquema (version) VALUES (?)", {data::kSchemaVersion + 1});
  anfitrion.reset();
  EXPECT_NE(Fallo().find("más nueva"), std::string::npos);
}

TEST_F(AnfitrionDePrueba, AnUnknownAddressIsRefused) {
  opciones.base = "otra:cosa";
  EXPECT_NE(Fallo(), "(ningún error)");
}

TEST_F(AnfitrionDePrueba, WithoutAPlatformThereIsNoHost) {
  opciones.plataforma = nullptr;
  EXPECT_EQ(ErrorDe([&] { Anfitrion host(opciones); }), "El anfitrión necesita una plataforma");
}

TEST_F(AnfitrionDePrueba, ASecondStartFindsWhatTheFirstLeft) {
  opciones.base = "sqlite:" + carpeta.Ruta("almacen.db").string();
  Abre();
  Sql("INSERT INTO prods (articulo) VALUES ('A-100')");
  Sql("UPDATE mensajes SET texto = 'Otro' WHERE numero = 1");
  anfitrion.reset();
  Abre();
  EXPECT_EQ(data::ToNumber(Dato("SELECT COUNT(*) FROM prods")), 1);
  EXPECT_EQ(Dato("SELECT texto FROM mensajes WHERE numero = 1"), data::Value("Otro"));
}

TEST_F(AnfitrionDePrueba, TwoHostsOnOneBaseDrawDifferentNumbers) {
  opciones.base = "sqlite:" + carpeta.Ruta("almacen.db").string();
  Abre();
  Anfitrion other(opciones);
  std::int32_t first = 0;
  std::int32_t second = 0;
  Funciones().NuevoId("Salida", Ambiente().Conexion(), first);
  other.Funciones().NuevoId("Salida", other.Ambiente().Conexion(), second);
  EXPECT_EQ(first, 1);
  EXPECT_EQ(second, 2);
}

TEST_F(AnfitrionDePrueba, ItRunsWithNoneOfTheOptionalPartners) {
  opciones.testigo = nullptr;
  Abre();
  std::string text;
  Funciones().TraeMensaje(1, Ambiente(), text);
  EXPECT_EQ(text, "¿Desea eliminar el documento?");
}

TEST_F(AnfitrionDePrueba, AMemoryBaseIsOneForAllItsConnections) {
  Abre();
  auto other = anfitrion->Base().Connect();
  other->Run("INSERT INTO prods (articulo) VALUES ('A-100')", {});
  EXPECT_EQ(data::ToNumber(Dato("SELECT COUNT(*) FROM prods")), 1);
}

TEST_F(AnfitrionDePrueba, TheProceduresAreReachedThroughTheContextsConnection) {
  Abre();
  Ambiente().Conexion().Execute("exec TKMallaParam 'ANA','CAM','COM','12','EntradasInventario'");
  EXPECT_EQ(data::ToNumber(Dato("SELECT COUNT(*) FROM mallaparam")), 1);
  EXPECT_EQ(testigo.sentencias.size(), 1U);
  EXPECT_NE(ErrorDe([&] { Ambiente().Conexion().Execute("exec Otro '1'"); }), "(ningún error)");
}

}  // namespace
}  // namespace tarvik::host
