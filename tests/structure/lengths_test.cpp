// No source file is over 450 lines and no function over 60: what is longer has more than one subject. The
// exceptions are below, each with its reason; one that is no longer needed fails too.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace tarvik::tests {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLongestFile = 450;
constexpr std::size_t kLongestFunction = 60;

// Whoever reads a table reads one row of it.
constexpr const char* kTable = "a table of data";
constexpr const char* kPage = "the text of a page";

struct Exception {
  const char* file;
  const char* function;  // its name; empty for the file itself
  const char* reason;
};

const Exception kExceptions[] = {
    {"data/schema.cpp", "Movements", kTable},
    {"data/schema.cpp", "Catalogues", kTable},
    {"data/schema_host.cpp", "HostTables", kTable},
    {"host/formato_de_fabrica.cpp", "PlantillaDeFabrica", kPage},
    {"tests/goods_in/write_failures_test.cpp", "", kTable},
    {"tests/servidor/gemelos_diferencias.cpp", "Diferencias", kTable},
};

// ---- what is in a text ----

// Where a literal or a comment that begins here ends; the same place if none begins here.
std::size_t Behind(const std::string& code, std::size_t at) {
  const auto past = [&](std::size_t found, std::size_t length) {
    return found == std::string::npos ? code.size() : found + length;
  };
  if (code.compare(at, 2, "//") == 0) return past(code.find('\n', at), 0);
  if (code.compare(at, 2, "/*") == 0) return past(code.find("*/", at + 2), 2);
  if (code.compare(at, 2, "R\"") == 0) {
    const std::size_t opens = code.find('(', at);
    if (opens == std::string::npos) return code.size();
    const std::string end = ")" + code.substr(at + 2, opens - at - 2) + "\"";
    return past(code.find(end, opens), end.size());
  }
  const char quote = code[at];
  if (quote != '"' && quote != '\'') return at;
  // 30'000
  if (quote == '\'' && at > 0 && std::isxdigit(static_cast<unsigned char>(code[at - 1])) != 0) return at;
  std::size_t end = at + 1;
  while (end < code.size() && code[end] != quote) end += code[end] == '\\' ? 2 : 1;
  return past(end, 1);
}

// The code alone: literals and comments are blanks, line ends stay.
std::string Bare(std::string code) {
  for (std::size_t at = 0; at < code.size();) {
    const std::size_t end = Behind(code, at);
    if (end == at) {
      ++at;
      continue;
    }
    for (; at < end && at < code.size(); ++at) {
      if (code[at] != '\n') code[at] = ' ';
    }
  }
  return code;
}

struct Function {
  std::string head;
  std::size_t line;
  std::size_t lines;
};

// What a brace opens, by the code in front of it.
enum class Opens { kContainer, kFunction, kOther };

Opens WhatOpens(const std::string& head, bool in_container) {
  static const std::regex container("\\b(namespace|extern|class|struct|union|enum)\\b[^(){}=]*$");
  static const std::regex function(
      "\\)\\s*(const|noexcept|override|final|mutable|\\s)*(->[^{};]*)?(:[^;]*)?$");
  if (std::regex_search(head, container)) return Opens::kContainer;
  // No head: the body behind a member that was begun with braces.
  if (std::regex_search(head, function) || (head.empty() && in_container)) return Opens::kFunction;
  return Opens::kOther;
}

// The functions of a C++ file, the lambdas of its tables among them; not those inside a function.
std::vector<Function> Functions(const std::string& text) {
  struct Open {
    Opens what;
    Function function;
  };
  std::vector<Function> found;
  std::vector<Open> open;
  std::string head;
  std::size_t line = 1;
  std::size_t depth = 0;  // of functions
  bool in_directive = false;
  const std::string code = Bare(text);
  for (std::size_t at = 0; at < code.size(); ++at) {
    const char c = code[at];
    if (c == '\n') {
      ++line;
      in_directive = in_directive && code[at - 1] == '\\';
    }
    in_directive = in_directive || c == '#';
    if (in_directive) continue;
    if (c == '{') {
      const std::size_t first = head.find_first_not_of(" \n");
      head = first == std::string::npos ? "" : head.substr(first, head.find_last_not_of(" \n") - first + 1);
      const bool in_container = open.empty() || open.back().what == Opens::kContainer;
      const Opens what = depth > 0 ? Opens::kOther : WhatOpens(head, in_container);
      depth += what == Opens::kFunction ? 1 : 0;
      open.push_back({what, {head, line, 0}});
    } else if (c == '}' && !open.empty()) {
      Open closed = std::move(open.back());
      open.pop_back();
      if (closed.what == Opens::kFunction) {
        --depth;
        closed.function.lines = line - closed.function.line + 1;
        found.push_back(std::move(closed.function));
      }
    }
    if (c == '{' || c == '}' || c == ';') {
      head.clear();
    } else {
      head += c;
    }
  }
  return found;
}

// The functions of a script, by their indentation.
std::vector<Function> FunctionsOfScript(const std::string& text) {
  std::vector<Function> found;
  std::vector<std::string> lines;
  std::istringstream all(text);
  for (std::string line; std::getline(all, line);) lines.push_back(line);
  const auto indent = [&](std::size_t at) { return lines[at].find_first_not_of(" \t"); };
  for (std::size_t at = 0; at < lines.size(); ++at) {
    if (indent(at) == std::string::npos || lines[at].compare(indent(at), 4, "def ") != 0) continue;
    std::size_t last = at;
    for (std::size_t next = at + 1; next < lines.size(); ++next) {
      if (indent(next) == std::string::npos) continue;
      if (indent(next) <= indent(at) && lines[next].find(')') != indent(next)) break;
      last = next;
    }
    found.push_back({lines[at], at + 1, last - at + 1});
  }
  return found;
}

// ---- the repository ----

struct Source {
  std::string name;  // from the root
  std::string text;
};

std::vector<Source> Sources() {
  std::vector<Source> sources;
  const fs::path root = TARVIK_SOURCE_DIR;
  for (const auto& folder : fs::directory_iterator(root)) {
    const std::string name = folder.path().filename();
    if (!folder.is_directory() || name[0] == '.' || name == "build" || name == "datos") continue;
    for (const auto& entry : fs::recursive_directory_iterator(folder.path())) {
      const std::string extension = entry.path().extension();
      if (extension != ".h" && extension != ".cpp" && extension != ".py" && extension != ".sh") continue;
      std::ostringstream text;
      text << std::ifstream(entry.path()).rdbuf();
      sources.push_back({fs::relative(entry.path(), root).generic_string(), text.str()});
    }
  }
  return sources;
}

// Notes which exceptions are needed.
class Lengths : public ::testing::Test {
 protected:
  bool Excepted(const std::string& file, const std::string& function_head) {
    for (const Exception& exception : kExceptions) {
      const std::string name = exception.function;
      const bool same = name.empty() ? function_head.empty()
                                     : std::regex_search(function_head, std::regex("\\b" + name + "\\b"));
      if (exception.file != file || !same) continue;
      needed_.insert(&exception);
      return true;
    }
    return false;
  }
  void ExpectAllNeeded(bool of_functions) const {
    for (const Exception& exception : kExceptions) {
      if ((exception.function[0] != '\0') != of_functions) continue;
      EXPECT_TRUE(needed_.contains(&exception))
          << exception.file << ' ' << exception.function << " is no longer too long: take its exception out";
    }
  }

 private:
  std::set<const Exception*> needed_;
};

TEST_F(Lengths, NoFileHasMoreThanOneSubject) {
  std::size_t seen = 0;
  for (const Source& source : Sources()) {
    const auto lines = static_cast<std::size_t>(std::count(source.text.begin(), source.text.end(), '\n'));
    ++seen;
    if (lines <= kLongestFile || Excepted(source.name, "")) continue;
    ADD_FAILURE() << source.name << " has " << lines << " lines: cut it by subject";
  }
  EXPECT_GT(seen, 400u);
  ExpectAllNeeded(false);
}

TEST_F(Lengths, NoFunctionIsLongerThanAScreen) {
  std::size_t seen = 0;
  for (const Source& source : Sources()) {
    const bool script = source.name.ends_with(".py");
    if (source.name.ends_with(".sh")) continue;
    for (const Function& function : script ? FunctionsOfScript(source.text) : Functions(source.text)) {
      ++seen;
      if (function.lines <= kLongestFunction || Excepted(source.name, function.head)) continue;
      ADD_FAILURE() << source.name << ':' << function.line << " has " << function.lines
                    << " lines: " << function.head.substr(0, 80);
    }
  }
  EXPECT_GT(seen, 5000u);
  ExpectAllNeeded(true);
}

// That a long function is seen, whatever stands in it or around it.
TEST_F(Lengths, AFunctionIsMeasuredFromBraceToBrace) {
  const std::string text =
      "namespace a {\n"
      "const char* kBrace = \"{\";  // {\n"
      "const int kThousands[] = {30'000, '{'};\n"
      "struct B {\n"
      "  B() : c_{1}, d_{2} {\n"
      "  }\n"
      "  int C() const {\n"
      "    const auto e = [] { return R\"x(}\n"
      "}\")x\"; };\n"
      "    return 1;\n"
      "  }\n"
      "};\n"
      "TEST(F, G) {\n"
      "}\n"
      "}  // namespace a\n";
  std::vector<std::size_t> lines;
  for (const Function& function : Functions(text)) {
    if (function.head.find("c_") == std::string::npos) lines.push_back(function.lines);
  }
  EXPECT_EQ(lines, (std::vector<std::size_t>{2, 5, 2}));
  const auto in_script = FunctionsOfScript("def a(\n    b,\n):\n    return b\n\n\ndef c():\n    pass\n");
  ASSERT_EQ(in_script.size(), 2u);
  EXPECT_EQ(in_script[0].lines, 4u);
  EXPECT_EQ(in_script[1].lines, 2u);
}

}  // namespace
}  // namespace tarvik::tests
