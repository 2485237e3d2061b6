// Names and places: the header of a screen says truly where each procedure stands, no field, message, column,
// mode or state goes by its bare number or text in the code, and every name of a table is used.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "service/contract/mensajes.h"
#include "wizard/campos.h"

namespace tarvik::tests {
namespace {

namespace fs = std::filesystem;

const fs::path kRaiz = TARVIK_SOURCE_DIR;

std::string Read(const fs::path& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

// file -> the procedures that the header's list places there.
std::map<std::string, std::set<std::string>> Places(const fs::path& header) {
  std::map<std::string, std::set<std::string>> places;
  const std::regex row("^// {2,3}([a-z_]+\\.cpp) +(.*)$");
  const std::regex more("^// {4,}(.*)$");
  const std::regex word("[A-Za-z_][A-Za-z_0-9]*");
  bool inside = false;
  std::string file;
  for (const std::string& line : Lines(Read(header))) {
    std::smatch match;
    if (line.find("Where to find a procedure") != std::string::npos) {
      inside = true;
    } else if (inside && std::regex_match(line, match, row)) {
      file = match[1];
      const std::string names = match[2];
      for (std::sregex_iterator name(names.begin(), names.end(), word), end; name != end; ++name) {
        places[file].insert(name->str());
      }
    } else if (inside && std::regex_match(line, match, more)) {
      const std::string names = match[1];
      for (std::sregex_iterator name(names.begin(), names.end(), word), end; name != end; ++name) {
        places[file].insert(name->str());
      }
    } else if (inside && !places.empty()) {
      break;
    }
  }
  return places;
}

// file -> the procedures of a class that are defined in it.
std::map<std::string, std::set<std::string>> Definitions(const fs::path& folder, const std::string& screen) {
  std::map<std::string, std::set<std::string>> defined;
  const std::regex definition("^(?:[A-Za-z_:<>0-9]+[&*]? )?" + screen + "::([A-Za-z_0-9]+)\\(");
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (entry.path().extension() != ".cpp") continue;
    for (const std::string& line : Lines(Read(entry.path()))) {
      std::smatch match;
      if (std::regex_search(line, match, definition) && match[1] != screen) {
        defined[entry.path().filename()].insert(match[1]);
      }
    }
  }
  return defined;
}

// The public procedures of a class: what its header declares before the first "protected".
std::set<std::string> Declared(const fs::path& header, const std::string& screen) {
  const std::string text = Read(header);
  const std::size_t begin = text.find("class " + screen);
  const std::string body = text.substr(begin, text.find(" protected:", begin) - begin);
  std::set<std::string> names;
  const std::regex declaration(
      "^  (?:virtual )?[a-z_:A-Z0-9]+(?: [a-z]+)* ([A-Za-z_0-9]+)\\(.*\\)( override)?( = 0)?;");
  for (const std::string& line : Lines(body)) {
    std::smatch match;
    if (std::regex_search(line, match, declaration)) names.insert(match[1]);
  }
  return names;
}

struct Pantalla {
  const char* folder;
  const char* header;
  const char* screen;
};
constexpr Pantalla kPantallas[] = {
    {"wizard", "document_wizard.h", "DocumentWizard"},
    {"goods_in", "frm_entradas_wizard.h", "frmEntradasWizard"},
    {"goods_out", "frm_salidas_wizard.h", "frmSalidasWizard"},
};

TEST(Names, TheHeaderOfAScreenSaysWhereEachProcedureStands) {
  for (const auto& [folder, header, screen] : kPantallas) {
    const auto places = Places(kRaiz / folder / header);
    const auto defined = Definitions(kRaiz / folder, screen);
    const auto declared = Declared(kRaiz / folder / header, screen);
    ASSERT_GE(places.size(), 4u) << header;
    ASSERT_GE(declared.size(), 15u) << header;
    std::set<std::string> listed;
    for (const auto& [file, names] : places) {
      ASSERT_TRUE(defined.contains(file)) << header << " names " << file;
      for (const std::string& name : names) {
        EXPECT_TRUE(defined.at(file).contains(name)) << header << ": " << name << " is not in " << file;
        EXPECT_TRUE(listed.insert(name).second) << header << " names " << name << " twice";
      }
    }
    for (const auto& [file, names] : defined) {
      for (const std::string& name : names) {
        if (declared.contains(name)) {
          EXPECT_TRUE(listed.contains(name)) << header << " doesn't say that " << name << " is in " << file;
        }
      }
    }
  }
}

// The code of the screens, by file, without the headers that give the names.
std::map<std::string, std::vector<std::string>> Code() {
  std::map<std::string, std::vector<std::string>> code;
  for (const char* folder : {"wizard", "matrix", "goods_in", "goods_out", "stations", "service/door"}) {
    for (const auto& entry : fs::directory_iterator(kRaiz / folder)) {
      const std::string name = fs::relative(entry.path(), kRaiz).generic_string();
      if (name == "wizard/modos.h" || name == "wizard/campos.h") continue;
      code[name] = Lines(Read(entry.path()));
    }
  }
  return code;
}

TEST(Names, NoFieldColumnMessageModeOrStateGoesByItsNumberOrText) {
  const std::regex bare(
      "\\b(txtFields|NumeroEn|EstaVacio|PasaA|PasaASeleccionado|celda|rechaza)\\([0-9]"
      "|Index == [0-9]|case [0-9]+:|\\bCol\\(\\) [=!<>]+ [0-9]|TextMatrix\\([^,()]*(\\(\\))?, [0-9]"
      "|(Mensaje|Acepta|SinRenglonesQuedaPendiente)\\(intenta, [0-9]|Ambiente, [0-9]{2,}"
      "|\"(ALTA|MODIFICACION|CONSULTA|PE|CO)\"");
  std::size_t seen = 0;
  for (const auto& [file, lines] : Code()) {
    for (const std::string& line : lines) {
      ++seen;
      const std::string code = line.substr(0, line.find("//"));
      EXPECT_FALSE(std::regex_search(code, bare)) << file << ": " << line;
    }
  }
  EXPECT_GT(seen, 3000u);
}

TEST(Names, EveryFieldAndMessageOfTheTablesIsUsedByName) {
  std::string code;
  for (const auto& [file, lines] : Code()) {
    for (const std::string& line : lines) code += line + "\n";
  }
  const auto names_of = [](const char* header) {
    std::map<std::string, int> names;
    const std::regex name("^  ([A-Z][A-Za-z0-9]+) = ([0-9]+),");
    for (const std::string& line : Lines(Read(kRaiz / header))) {
      std::smatch match;
      if (std::regex_search(line, match, name)) names[match[1]] = std::stoi(match[2]);
    }
    return names;
  };
  const auto fields = names_of("wizard/campos.h");
  const auto messages = names_of("service/contract/mensajes.h");
  for (const auto& [name, number] : fields) {
    EXPECT_NE(code.find("campo::" + name), std::string::npos) << name;
  }
  ASSERT_EQ(messages.size(), service::kMensajes.size());
  for (const auto& [name, number] : messages) {
    const bool of_the_host = number == service::mensaje::PeriodoCerrado;
    EXPECT_TRUE(of_the_host || code.find("mensaje::" + name) != std::string::npos) << name;
  }
}

}  // namespace
}  // namespace tarvik::tests
