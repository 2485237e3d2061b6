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
#include "host/textos.h"
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

// The names that a header gives to a number, with the name of their enum in front.
std::vector<std::string> NamesOf(int number, const char* header, const std::string& where) {
  std::ostringstream text;
  text << std::ifstream(fs::path(TARVIK_SOURCE_DIR) / header).rdbuf();
  const std::string code = text.str();
  std::vector<std::string> names;
  const std::string end = " = " + std::to_string(number) + ",";
  for (std::size_t at = code.find(end); at != std::string::npos; at = code.find(end, at + 1)) {
    const std::size_t begin = code.find_last_of(" \n", at - 1) + 1;
    names.push_back(where + "::" + code.substr(begin, at - begin));
  }
  return names;
}

// Whether a text stands in the stories as a word of its own.
bool Says(const std::string& stories, const std::string& word) {
  const auto part_of_a_word = [](char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
  };
  for (std::size_t at = stories.find(word); at != std::string::npos; at = stories.find(word, at + 1)) {
    const std::size_t end = at + word.size();
    const bool begins = at == 0 || !part_of_a_word(stories[at - 1]) || !part_of_a_word(word.front());
    const bool ends = end == stories.size() || !part_of_a_word(stories[end]) || !part_of_a_word(word.back());
    if (begins && ends) return true;
  }
  return false;
}

// Whether a control stands in the stories: a single one by its name; an array's member by its index, by a
// name of its index, or by the array walked with a variable.
bool MentionsControl(const std::string& stories, const forms::Control& control) {
  if (!control.Index()) return Says(stories, control.Name());
  const std::vector<std::string> names = NamesOf(*control.Index(), "wizard/campos.h", "campo");
  for (const std::string& name : names) {
    if (Says(stories, control.Name() + "(" + name)) return true;
  }
  const std::string& array = control.Name();
  const std::string number = std::to_string(*control.Index());
  for (std::size_t at = stories.find(array); at != std::string::npos; at = stories.find(array, at + 1)) {
    const std::string behind = stories.substr(at + array.size(), 60);
    static const std::regex place("^[([,{ ]\\s*(([0-9]+)\\b|(\\w+\\.)?[a-z_]+\\))");
    std::smatch match;
    if (std::regex_search(behind, match, place) && (!match[2].matched || match[2] == number)) return true;
  }
  return false;
}

TEST(Coverage, EveryHookHasAStory) {
  const std::string stories = Stories("");
  std::set<std::string_view> seen;
  for (const auto& clave : service::kClaves) {
    EXPECT_TRUE(seen.insert(clave.clave).second) << clave.clave << " stands twice";
    EXPECT_TRUE(Says(stories, "\"" + std::string(clave.clave) + "\"")) << clave.clave;
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
    bool told = Says(stories, std::to_string(mensaje.numero));
    for (const std::string& name : NamesOf(mensaje.numero, "service/contract/mensajes.h", "mensaje")) {
      told = told || Says(stories, name);
    }
    EXPECT_TRUE(told) << mensaje.numero;
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
    EXPECT_TRUE(MentionsControl(stories, *control)) << control->FullName() << " has no story";
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
