// The contract is enough: a program that has nothing of the stand-alone host opens the door and receives a
// line. It is built into an executable of its own, which links neither host/ nor anything above the door.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "goods_in/frm_entradas_wizard.h"
#include "service/door/entradas_salidas.h"
#include "tests/service/ajeno/anfitrion_ajeno.h"

namespace tarvik::ajeno {
namespace {

const data::Rows kUna{{"1"}, {{1}}};
const data::Rows kEntrada{{"entrada", "tipo_doc", "almacen", "estado", "f_emision"},
                          {{1, "COM", 1, "PE", data::Date{2024, 3, 5}}}};

class ProgramaAjeno : public ::testing::Test {
 protected:
  ProgramaAjeno() {
    host.plataforma.clock = [] { return data::DateTime{{2024, 3, 5}, {14, 15, 0}}; };
    host.plataforma.on_box = [this](forms::BoxKind, const std::string& text, int) {
      cajas.push_back(text);
      return true;
    };
    host.plataforma.on_unhandled = [this](forms::Form*, const std::string& text) { cajas.push_back(text); };
    movimientos.Ambiente = &ambiente;
    ambiente.ruta = (std::filesystem::temp_directory_path() / ("ajeno-" + std::to_string(getpid()))).string();
    ambiente.conexion.respuestas = {
        {"FROM prods INNER JOIN impuestos",
         {{"descrip", "unidad", "precio1", "valor"}, {{"Cinta", "PZA", 10, 16}}}},
        {"FROM PRODS WHERE ARTICULO = 'A-100'", kUna},
        {"FROM almacen WHERE almacen = '1'", kUna},
        {"FROM tipominv WHERE tipo_movim = 'COM'", {{"tipo_movim", "descrip"}, {{"COM", "Compra"}}}},
        {"FROM entradas WHERE entrada = 1", kEntrada},
        {"FROM entradas WHERE (((entrada) = 1", kEntrada},
        {"FROM entpart WHERE (((entrada)=1",
         {{"articulo", "cantidad", "precio", "id_entrada", "claveadd"}, {{"A-100", 3, 11.6, 2, ""}}}},
    };
  }
  ~ProgramaAjeno() override { std::filesystem::remove_all(ambiente.ruta); }

  // A new document with three of A-100 on it, typed.
  frmEntradasWizard& ConUnRenglon() {
    movimientos.NuevaEntrada();
    auto& f = dynamic_cast<frmEntradasWizard&>(*host.plataforma.Screens().at(0));
    const forms::Key enter{forms::kKeyEnter, 0, forms::kKeyEnter};
    f.Type(f.txtFields(campo::Concepto), "com");
    f.Type(f.txtFields(campo::Articulo), "A-100");
    f.Press(enter);
    EXPECT_TRUE(f.txtFields(campo::Cantidad).HasFocus());
    f.Type(f.txtFields(campo::Cantidad), "3");
    f.Press(enter);
    f.Press(enter);
    return f;
  }
  int CajasCon(const std::string& parte) {
    return static_cast<int>(std::count_if(cajas.begin(), cajas.end(), [&](const std::string& text) {
      return text.find(parte) != std::string::npos;
    }));
  }
  // What stands in the statement that begins so; "" if there is none.
  std::string Escrito(const std::string& principio) {
    for (const auto& text : ambiente.conexion.escrito) {
      if (text.starts_with(principio)) return text;
    }
    return "";
  }

  std::vector<std::string> cajas;
  Ambiente ambiente;
  Host host;
  EntradasSalidas movimientos{host};
};

TEST_F(ProgramaAjeno, ReceivesALineThroughTheDoor) {
  auto& f = ConUnRenglon();
  EXPECT_EQ(cajas, std::vector<std::string>{});
  EXPECT_EQ(f.fg2.TextMatrix(1, 0), "A-100");
  EXPECT_EQ(f.fg2.TextMatrix(1, 1), "3");
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "34.8");
  EXPECT_NE(Escrito("INSERT INTO entradas ").find("'COM'"), std::string::npos);
  EXPECT_NE(Escrito("INSERT INTO entpart ").find("'A-100', 3, 11.6, 'Cinta'"), std::string::npos)
      << Escrito("INSERT INTO entpart ");
  f.Close();
  host.plataforma.Advance(100);
  EXPECT_TRUE(host.plataforma.Screens().empty());
  EXPECT_EQ(Escrito("UPDATE entradas SET ocupado = 0"), "UPDATE entradas SET ocupado = 0 WHERE entrada = 1");
}

// What the contract says of a program that can't post: the screen goes on to its end, with a box for each
// step.
TEST_F(ProgramaAjeno, WithoutPostingTheDocumentIsClosedWithNoLineMoved) {
  auto& f = ConUnRenglon();
  f.Check2.Value(0);
  f.Enter(f.txtFields(campo::Articulo));
  f.Press({forms::kKeyF5, 0, 0});
  EXPECT_EQ(CajasCon("726"), 1);
  EXPECT_EQ(CajasCon("Este programa no tiene afectación"), 1);
  // Ten properties of the header, six of the line, and Afecta.
  EXPECT_EQ(CajasCon("La variable de objeto no está establecida"), 17);
  EXPECT_EQ(cajas.size(), 19u);
  EXPECT_NE(Escrito("UPDATE entradas SET tipo_doc").find("estado = 'CO'"), std::string::npos);
  EXPECT_TRUE(host.plataforma.Screens().empty());
}

}  // namespace
}  // namespace tarvik::ajeno
