// The numbered messages of a new base, and a deployer's right to change them.
#include "host/textos.h"

#include "data/text.h"
#include "tests/host/apoyo.h"

namespace tarvik::host {
namespace {

class Mensajes : public Banco {};

TEST_F(Mensajes, ANewBaseHasATextForEachNumberOfTheModule) {
  const std::vector<int> numbers = {1,   72,  73,  74,  75,  76,  77,  78,  79,  80,  81,  110, 111, 147, 148,
                                    149, 150, 151, 152, 153, 154, 213, 224, 234, 235, 236, 238, 240, 241, 253,
                                    338, 339, 340, 341, 342, 343, 433, 434, 436, 437, 713, 726, 829};
  for (const int number : numbers) {
    const std::string text = LeeMensaje(anfitrion->Conexion(), number);
    EXPECT_NE(text, std::to_string(number));
    EXPECT_GT(data::Length(text), 3U) << number;
    EXPECT_TRUE(data::ValidUtf8(text)) << number;
    EXPECT_EQ(text.find("!"), std::string::npos) << number;
  }
  EXPECT_EQ(data::ToNumber(Dato("SELECT COUNT(*) FROM mensajes")), numbers.size());
  EXPECT_EQ(TextosDeFabrica().size(), numbers.size());
}

// The text of a lock message around a user's name, joined as the screens join it.
TEST_F(Mensajes, TheNameOfTheHolderStandsApartFromBothHalves) {
  const auto text = [&](int number) { return LeeMensaje(anfitrion->Conexion(), number); };
  EXPECT_EQ(text(75) + " ANA" + text(76), "La entrada está ocupada por el usuario ANA. Intente más tarde.");
  EXPECT_EQ(text(80) + " ANA" + text(81), "La salida está ocupada por el usuario ANA. Intente más tarde.");
  EXPECT_EQ(text(149) + "ANA" + text(150),
            "La entrada está ocupada por el usuario ANA. No se puede eliminar.");
  EXPECT_EQ(text(153) + "ANA" + text(154),
            "La salida está ocupada por el usuario ANA. No se puede eliminar.");
}

TEST_F(Mensajes, AFigureBehindAStockTextStandsApartFromIt) {
  EXPECT_EQ(LeeMensaje(anfitrion->Conexion(), 434).back(), ' ');
  EXPECT_EQ(LeeMensaje(anfitrion->Conexion(), 436).back(), ' ');
}

TEST_F(Mensajes, ANumberWithoutATextShowsItself) {
  EXPECT_EQ(LeeMensaje(anfitrion->Conexion(), 9999), "9999");
  Sql("UPDATE mensajes SET texto = NULL WHERE numero = 234");
  EXPECT_EQ(LeeMensaje(anfitrion->Conexion(), 234), "234");
}

TEST_F(Mensajes, ADeployersTextIsNeverOverwritten) {
  Sql("UPDATE mensajes SET texto = 'Falta el artículo' WHERE numero = 234");
  SiembraMensajes(anfitrion->Conexion());
  EXPECT_EQ(LeeMensaje(anfitrion->Conexion(), 234), "Falta el artículo");
}

}  // namespace
}  // namespace tarvik::host
