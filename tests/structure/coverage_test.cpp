// Nothing of the tables is without a story: every hook, every numbered message, every control of a
// screen stands in a test by its name.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include "forms/flex_grid.h"
#include "host/mensajes.h"
#include "matrix/frm_malla_modelos.h"
#include "service/contract/claves.h"
#include "service/contract/mensajes.h"
#include "tests/support/escenario.h"

namespace tarvik::tests {
namespace {

namespace fs = std::filesystem;

// The text of all stories in a folder of tests/.
std::string Stories(const std::string& folder) {
  std::ostringstream text;
  for (const auto& entry : fs::recursive_directory_iterator(fs::path(TARVIK_SOURCE_DIR) / "tests" / folder)) {
    if (entry.path().extension() != ".cpp" && entry.path().extension() != ".h") continue;
    if (entry.path().filename() == "coverage_test.cpp") continue;
    text << std::ifstream(entry.path()).rdbuf();
  }
  return text.str();
}

// The names that a header gives to a number, as a pattern: "SinAlmacen|..."; "-" for none.
std::string NamesOf(int number, const char* header, const std::string& where) {
  std::ostringstream text;
  text << std::ifstream(fs::path(TARVIK_SOURCE_DIR) / header).rdbuf();
  const std::string code = text.str();
  std::string names;
  const std::regex row("\\n  ([A-Z][A-Za-z0-9]+) = " + std::to_string(number) + ",");
  for (std::sregex_iterator match(code.begin(), code.end(), row), end; match != end; ++match) {
    names += (names.empty() ? "" : "|") + where + "::" + (*match)[1].str() + "\\b";
  }
  return names.empty() ? "-" : names;
}

bool Mentions(const std::string& stories, const std::string& pattern) {
  return std::regex_search(stories, std::regex(pattern));
}

TEST(Coverage, EveryHookHasAStory) {
  const std::string stories = Stories("");
  std::set<std::string_view> seen;
  for (const auto& clave : service::kClaves) {
    EXPECT_TRUE(seen.insert(clave.clave).second) << clave.clave << " stands twice";
    EXPECT_TRUE(Mentions(stories, "\"" + std::string(clave.clave) + "\"")) << clave.clave;
  }
}

TEST(Coverage, EveryHookFiresInTheCodeAndNoOtherDoes) {
  std::ostringstream text;
  for (const char* folder : {"wizard", "goods_in", "goods_out", "stations", "matrix"}) {
    if (!fs::exists(fs::path(TARVIK_SOURCE_DIR) / folder)) continue;
    for (const auto& entry : fs::recursive_directory_iterator(fs::path(TARVIK_SOURCE_DIR) / folder)) {
      text << std::ifstream(entry.path()).rdbuf();
    }
  }
  const std::string code = text.str();
  std::set<std::string> known;
  for (const auto& clave : service::kClaves) {
    known.emplace(clave.clave);
    EXPECT_NE(code.find("\"" + std::string(clave.clave) + "\""), std::string::npos) << clave.clave;
  }
  const std::regex key("\"((ENTRADAS?|SALIDAS|MOVESTACIONES|TALLASYCOLORES)[0-9]{3}|AYUDA)\"");
  for (std::sregex_iterator match(code.begin(), code.end(), key), end; match != end; ++match) {
    EXPECT_TRUE(known.contains((*match)[1])) << (*match)[1];
  }
}

TEST(Coverage, EveryNumberedMessageHasAStoryAndATextInTheBase) {
  const std::string stories = Stories("goods_in") + Stories("goods_out") + Stories("service");
  std::set<int> seen;
  for (const auto& mensaje : service::kMensajes) {
    EXPECT_TRUE(seen.insert(mensaje.numero).second) << mensaje.numero << " stands twice";
    EXPECT_TRUE(Mentions(stories, NamesOf(mensaje.numero, "service/contract/mensajes.h", "mensaje")) ||
                Mentions(stories, "\\b" + std::to_string(mensaje.numero) + "\\b"))
        << mensaje.numero;
  }
}

class Pantallas : public Escenario {};

TEST_F(Pantallas, EveryMessageOfTheTableHasItsTextInANewBaseAndNoOtherHas) {
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM mensajes"), std::to_string(service::kMensajes.size()));
  for (const auto& mensaje : service::kMensajes) {
    EXPECT_GT(MensajeDeLaBase(mensaje.numero).size(), 6u) << mensaje.numero;
  }
}

// Names, indices and places on the keyboard's way are unique, and every control stands in a story.
// `only_read`: boxes that nobody is meant to type in.
void ExpectWellFormed(forms::Form& form, const std::string& stories,
                      const std::set<std::string>& only_read = {}) {
  std::set<std::string> names;
  std::set<int> tabs;
  for (forms::Control* control : form.Controls()) {
    EXPECT_TRUE(names.insert(control->FullName()).second) << control->FullName();
    EXPECT_EQ(form.Find(control->Name(), control->Index()), control);
    if (control->Focusable() && only_read.contains(control->FullName())) {
      EXPECT_EQ(control->TabIndex(), -1) << control->FullName();
    } else if (control->Focusable()) {
      EXPECT_GE(control->TabIndex(), 0) << control->FullName() << " is not on the keyboard's way";
      EXPECT_TRUE(tabs.insert(control->TabIndex()).second) << control->FullName();
    }
    if (control->IsLabel()) continue;
    // An array's member by its index, or the array walked with a variable.
    const std::string fields =
        control->Index() ? NamesOf(*control->Index(), "wizard/campos.h", "campo") : std::string();
    const std::string place = control->Index() ? "([(,{ ]\\s*(" + std::to_string(*control->Index()) + "\\b|" +
                                                     fields + ")|\\((\\w+\\.)?[a-z_]+\\))"
                                               : "\\b";
    EXPECT_TRUE(Mentions(stories, "\\b" + control->Name() + place)) << control->FullName() << " has no story";
  }
}

TEST_F(Pantallas, EveryControlOfGoodsInIsWellFormedAndHasAStory) {
  ExpectWellFormed(Nueva(), Stories("goods_in"));
}

TEST_F(Pantallas, EveryControlOfGoodsOutIsWellFormedAndHasAStory) {
  movimientos->NuevaSalida();
  ExpectWellFormed(*plataforma.Screens().back(), Stories("goods_out"));
}

TEST_F(Pantallas, EveryControlOfTheMatrixIsWellFormedAndHasAStory) {
  frmMallaModelos malla(*anfitrion);
  ExpectWellFormed(malla, Stories("matrix"), {"txtDescrip", "txtRemanente"});
}

TEST_F(Pantallas, EveryControlOfTheStationTransferIsWellFormedAndHasAStory) {
  movimientos->movimientoEstacion(1, false);
  ExpectWellFormed(*plataforma.Screens().back(), Stories("stations"));
}

}  // namespace
}  // namespace tarvik::tests
