#include "tests/members/headers.h"

#include <algorithm>
#include <fstream>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace tarvik::tests {

namespace {

std::string WithoutComments(const std::string& text) {
  return std::regex_replace(text, std::regex(R"(//[^\n]*|/\*[^*]*\*/|\[\[\w+\]\])"), "");
}

// "ControlArray<Label> Label10" is "ControlArray Label10".
std::string WithoutAngles(std::string text) {
  for (std::string before; before != text;) {
    before = text;
    text = std::regex_replace(before, std::regex("<[^<>]*>"), "");
  }
  return text;
}

// The text between the braces of a class.
std::string Body(const std::string& text, const std::string& name) {
  std::smatch match;
  if (!std::regex_search(text, match, std::regex("class " + name + "( final)?( :[^{;]*)? \\{"))) {
    throw std::runtime_error("no class " + name);
  }
  const std::size_t begin = static_cast<std::size_t>(match.position(0) + match.length(0));
  int depth = 1;
  std::size_t end = begin;
  for (; depth > 0; ++end) depth += text[end] == '{' ? 1 : text[end] == '}' ? -1 : 0;
  return text.substr(begin, end - begin - 1);
}

// One declaration after the other, without what stands in braces. The access goes along.
struct Declaration {
  std::string access;
  std::string text;
};

std::vector<Declaration> Declarations(const std::string& body) {
  std::vector<Declaration> all;
  std::string access = "private";
  std::string text;
  int depth = 0;
  const auto finish = [&] {
    all.push_back({access, WithoutAngles(std::regex_replace(text, std::regex("\\s+"), " "))});
    text.clear();
  };
  for (std::size_t i = 0; i < body.size(); ++i) {
    const char c = body[i];
    if (c == '{') {
      ++depth;
    } else if (c == '}') {
      // A body ends its declaration; an initialiser's or a type's end waits for its semicolon.
      const auto count = [&](char sign) { return std::count(text.begin(), text.end(), sign); };
      if (--depth == 0 && count('(') > 0 && count('(') == count(')')) finish();
    } else if (depth > 0) {
      continue;
    } else if (c == ';') {
      finish();
    } else {
      text += c;
      const std::size_t start = text.find_first_not_of(" \n");
      for (const char* word : {"public", "protected", "private"}) {
        if (start != std::string::npos && text.substr(start) == std::string(word) + ":") {
          access = word;
          text.clear();
          break;
        }
      }
    }
  }
  return all;
}

std::vector<std::string> Names(const std::string& list, const char* pattern) {
  std::vector<std::string> names;
  std::istringstream items(list);
  const std::regex last(pattern);
  for (std::string item; std::getline(items, item, ',');) {
    std::smatch match;
    if (std::regex_search(item, match, last)) names.push_back(match[1]);
  }
  return names;
}

}  // namespace

PublicMembers MembersInHeader(const std::string& file, const std::string& name) {
  std::ostringstream text;
  text << std::ifstream(std::string(TARVIK_SOURCE_DIR) + "/" + file).rdbuf();
  PublicMembers members;
  const std::regex none(
      "^ ?(using|class|struct|enum|friend|template|explicit|virtual ~|~)|operator| = delete|" +
      ("^ ?" + name + "\\("));
  for (const Declaration& declaration : Declarations(Body(WithoutComments(text.str()), name))) {
    if (declaration.access != "public" || declaration.text.find_first_not_of(' ') == std::string::npos ||
        std::regex_search(declaration.text, none)) {
      continue;
    }
    std::smatch match;
    // "void Place(int left, int top)", and "forms::Label Label4, Label5".
    if (std::regex_search(declaration.text, match, std::regex(R"((\w+)\(([^()]*)\))"))) {
      members[match[1]].push_back(Names(match[2], R"((\w+)( = \w*)?$)"));
    } else {
      for (const auto& variable : Names(declaration.text, R"((\w+)( = [^,]*)?$)")) members[variable];
    }
  }
  return members;
}

}  // namespace tarvik::tests
