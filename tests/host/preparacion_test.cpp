// What a new base holds at first, and that a base in use is left alone.
#include "host/preparacion.h"

#include "data/schema.h"
#include "host/textos.h"
#include "tests/host/apoyo.h"

namespace tarvik::host {
namespace {

class Preparacion : public Banco {};

TEST_F(Preparacion, ANewBaseHasTextsFormatsSignalSettingsAndNothingElse) {
  const auto formats = Sql("SELECT Entradas, Salidas FROM defform");
  ASSERT_EQ(formats.rows.size(), 1U);
  EXPECT_EQ(formats.rows[0], (std::vector<data::Value>{"entrada", "salida"}));
  const auto signal = Sql("SELECT controlproc FROM ControlProc");
  ASSERT_EQ(signal.rows.size(), 1U);
  EXPECT_EQ(data::ToNumber(signal.rows[0][0]), 1);

  const std::vector<std::string> filled = {"mensajes", "defform", "ControlProc", "parametros",
                                           "version_esquema"};
  for (const auto& table : data::Schema()) {
    const bool expected = std::find(filled.begin(), filled.end(), table.name) != filled.end();
    const double count = data::ToNumber(Dato("SELECT COUNT(*) FROM " + std::string(table.name)));
    EXPECT_EQ(count > 0, expected) << table.name;
  }
}

TEST_F(Preparacion, TheSettingsStartWithWarehouseOneAndAllElseOff) {
  EXPECT_EQ(Ambiente().NombresDeParametros(),
            (std::vector<std::string>{"Almacen", "EnVenta", "Lector", "PorSurt", "SoloTarvik"}));
  EXPECT_EQ(Ambiente().Parametro("Almacen"), data::Value(1));
  for (const char* name : {"EnVenta", "Lector", "PorSurt"})
    EXPECT_EQ(Ambiente().Parametro(name), data::Value(0));
  EXPECT_EQ(Ambiente().Parametro("SoloTarvik"), data::Value(1)) << "no other program has worked here";
}

TEST_F(Preparacion, ABaseThatWasThereBeforeIsNotTakenForOnesOwnAlone) {
  Sql("DELETE FROM parametros WHERE nombre = 'SoloTarvik'");
  PonPrimerosContenidos(anfitrion->Conexion());
  EXPECT_TRUE(Ambiente().Parametro("SoloTarvik").IsNull());
}

TEST_F(Preparacion, ATextThatTheBaseHasIsNeverOverwritten) {
  Sql("UPDATE mensajes SET texto = 'Texto propio' WHERE numero = 234");
  Sql("DELETE FROM mensajes WHERE numero = 341");
  SiembraMensajes(anfitrion->Conexion());
  EXPECT_EQ(Dato("SELECT texto FROM mensajes WHERE numero = 234"), data::Value("Texto propio"));
  EXPECT_EQ(data::ToNumber(Dato("SELECT COUNT(*) FROM mensajes WHERE numero = 341")), 1);
}

TEST_F(Preparacion, ABaseInUseIsLeftAsItIs) {
  Sql("DELETE FROM mensajes WHERE numero = 234");
  Sql("DELETE FROM defform");
  PonPrimerosContenidos(anfitrion->Conexion());
  EXPECT_EQ(data::ToNumber(Dato("SELECT COUNT(*) FROM mensajes WHERE numero = 234")), 0);
  EXPECT_EQ(data::ToNumber(Dato("SELECT COUNT(*) FROM defform")), 0);
}

TEST_F(Preparacion, ABaseWhoseMakingBrokeOffIsCompleted) {
  for (const char* table : {"mensajes", "defform", "ControlProc", "parametros"}) {
    Sql(std::string("DELETE FROM ") + table);
  }
  PonPrimerosContenidos(anfitrion->Conexion());
  EXPECT_EQ(data::ToNumber(Dato("SELECT COUNT(*) FROM defform")), 1);
  EXPECT_EQ(data::ToNumber(Dato("SELECT COUNT(*) FROM parametros")), 5);
}

TEST_F(Preparacion, AFailureHalfWayLeavesNothing) {
  for (const char* table : {"mensajes", "defform", "ControlProc", "parametros"}) {
    Sql(std::string("DELETE FROM ") + table);
  }
  Sql("ALTER TABLE parametros RENAME COLUMN valor TO otra");  // the settings come last
  EXPECT_NE(ErrorDe([&] { PonPrimerosContenidos(anfitrion->Conexion()); }), "(ningún error)");
  EXPECT_EQ(data::ToNumber(Dato("SELECT COUNT(*) FROM mensajes")), 0);
  EXPECT_EQ(data::ToNumber(Dato("SELECT COUNT(*) FROM defform")), 0);
}

}  // namespace
}  // namespace tarvik::host
