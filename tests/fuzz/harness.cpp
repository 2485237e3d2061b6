#include "tests/fuzz/harness.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <optional>

#include "data/engine.h"
#include "data/error.h"
#include "data/lexer.h"
#include "data/number.h"
#include "data/postgresql/dialect.h"
#include "data/select.h"
#include "data/statement.h"
#include "data/text.h"

namespace tarvik::tests {
namespace {

using data::Error;

// A base with rows that no text may change, and a table of the suite's.
class Canary {
 public:
  Canary() : connection_(data::OpenBase("sqlite::memory:")->Connect()) {
    connection_->Execute("CREATE TABLE prods (articulo TEXT, descrip TEXT, ALM1 REAL)");
    connection_->Execute("INSERT INTO prods VALUES ('A-100', 'Martillo', 5)");
    connection_->Execute("CREATE TABLE canario (canta TEXT)");
    connection_->Execute("INSERT INTO canario VALUES ('pío')");
  }
  data::EngineConnection& Connection() { return *connection_; }
  [[nodiscard]] bool Sings() {
    return !connection_->InTransaction() &&
           data::ToText(
               connection_
                   ->Run("SELECT MAX(canta) || COUNT(*) || (SELECT COUNT(*) FROM prods) FROM canario", {})
                   .rows.at(0)
                   .at(0)) == "pío11";
  }

 private:
  std::unique_ptr<data::EngineConnection> connection_;
};

Canary& TheCanary() {
  static Canary canary;
  return canary;
}

template <class Call>
bool Refuses(Call&& call) {
  try {
    call();
    return false;
  } catch (const Error&) {
    return true;
  }
}

// The parts in single quotes, those that touch joined.
std::vector<std::string> Texts(std::string_view statement) {
  std::vector<std::string> texts;
  data::Lexer lexer(statement);
  std::size_t behind = std::string_view::npos;
  for (data::Part part = lexer.Next(); part.kind != data::PartKind::kEnd; part = lexer.Next()) {
    if (part.kind != data::PartKind::kText) continue;
    if (part.at == behind) {
      texts.back() += part.text;
    } else {
      texts.emplace_back(part.text);
    }
    behind = part.Behind();
  }
  return texts;
}

// The same as a server reads a statement, by its own rules: comments that nest, escapes behind an E, texts
// between dollars, and no quote in a bracket. Nothing where it would find a comment or a text without an end.
std::optional<std::vector<std::string>> TextsOfAServer(std::string_view statement) {
  std::vector<std::string> texts;
  std::size_t behind = std::string_view::npos;
  std::string_view last;  // word
  const auto word = [](char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' ||
           static_cast<unsigned char>(c) >= 0x80;
  };
  for (std::size_t at = 0; at < statement.size();) {
    const std::string_view rest = statement.substr(at);
    const char c = rest[0];
    if (rest.starts_with("--") || rest.starts_with("/*")) return {};
    if (c == '$') {
      std::size_t tag = 1;
      while (tag < rest.size() && word(rest[tag])) ++tag;
      if (tag < rest.size() && rest[tag] == '$') return {};
    }
    if (c == '\'' || c == '"') {
      const bool escapes = c == '\'' && (last == "E" || last == "e") && last.data() + 1 == rest.data();
      std::size_t end = 1;
      while (end < rest.size() && rest[end] != c) end += escapes && rest[end] == '\\' ? 2 : 1;
      if (end >= rest.size()) return {};
      const std::string_view part = rest.substr(0, end + 1);
      if (c == '\'') {
        if (at == behind) {
          texts.back() += part;
        } else {
          texts.emplace_back(part);
        }
        behind = at + part.size();
      }
      at += part.size();
    } else if (word(c)) {  // a word may go on with dollars
      std::size_t end = 1;
      while (end < rest.size() && (word(rest[end]) || rest[end] == '$')) ++end;
      last = rest.substr(0, end);
      at += end;
    } else {
      ++at;
    }
  }
  return texts;
}

// A question that is joined together as a screen does, with these bytes as what was typed.
std::string AskJoined(const std::string& question) {
  Canary& canary = TheCanary();
  if (Refuses([&] { data::RequireOneStatement(question); })) return "";
  if (!Refuses([&] { data::RequireHarmless(question); }) && TextsOfAServer(question) != Texts(question)) {
    return "a server would read other texts than the gate did";
  }
  const data::Fence fence(canary.Connection(), std::chrono::milliseconds{100});
  try {
    canary.Connection().Select(question);
  } catch (const Error& error) {
    // The engine itself reads where a statement ends; it must agree with the gate.
    const bool second = std::string(error.what()).starts_with("La sentencia contiene otra detrás");
    if (second) return "the engine finds a second statement that the gate did not";
  }
  return canary.Sings() ? "" : "typed text has changed the base";
}

std::string FuzzCall(std::string_view bytes) {
  const std::string_view first = bytes.substr(0, bytes.size() / 2);
  const std::string_view second = bytes.substr(first.size());
  const std::string call = "exec P " + data::Quoted(first) + "," + data::Quoted(second);
  const auto parsed = data::ParseExec(call);
  if (!parsed || parsed->arguments != std::vector<std::string>{std::string(first), std::string(second)}) {
    return "a quoted argument does not come back";
  }
  Refuses([&] { data::ParseExec(bytes); });
  Refuses([&] { data::ParseExec("exec " + std::string(bytes)); });
  return "";
}

double NumberOf(std::string_view bytes) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, bytes.data(), std::min(bytes.size(), sizeof bits));
  double number = 0;
  std::memcpy(&number, &bits, sizeof number);
  return number;
}

}  // namespace

std::string FuzzGate(std::string_view bytes) {
  const std::string typed(bytes);
  for (const std::string& question :
       {"SELECT articulo,descrip FROM prods WHERE articulo = '" + typed + "'",
        "SELECT * FROM prods WHERE ALM1 = " + typed, "SELECT " + typed + " FROM prods"}) {
    if (auto wrong = AskJoined(question); !wrong.empty()) return wrong + ": " + question;
  }
  Refuses([&] { data::RequireOneStatement(bytes); });
  Refuses([&] { data::RequireHarmless(bytes); });
  if (data::ValidUtf8(bytes) && bytes.find('\0') == std::string_view::npos) {
    // A quoted text is one value, whatever it holds, and harms nobody.
    const std::string quoted = "SELECT " + data::Quoted(bytes) + " FROM prods";
    const data::Fence fence(TheCanary().Connection(), std::chrono::milliseconds{0});
    try {
      const auto rows = TheCanary().Connection().Select(quoted);
      if (data::ToText(rows.rows.at(0).at(0)) != bytes) return "a quoted text does not come back";
    } catch (const Error& error) {
      return std::string("a quoted text is refused: ") + error.what();
    }
  }
  return FuzzCall(bytes);
}

std::string FuzzNumbers(std::string_view bytes) {
  const double number = NumberOf(bytes);
  const std::string_view rest = bytes.substr(std::min<std::size_t>(bytes.size(), 8));
  data::Val(bytes);
  data::ParseNumber(bytes);
  if (!std::isfinite(data::Val(rest))) return "Val gives what is no number: " + std::string(rest);
  const std::string pattern(rest.substr(0, 40));
  const std::string shown = data::FormatNumber(number, pattern);
  if (shown.size() > 2000) return "a pattern makes a text without end: " + pattern;
  if (!std::isfinite(number)) return "";
  const std::string plain = data::PlainNumber(number);
  if (plain == "-0" || plain.empty() || plain.back() == '.') return "no plain number: " + plain;
  const auto read = data::ParseNumber(plain);
  // 15 digits hold a number but for its last places.
  const double allowed = std::max(std::abs(number) * 1e-14, std::numeric_limits<double>::min());
  if (std::abs(number) < 1e300 && (!read || std::abs(*read - number) > allowed)) {
    return "a plain number does not come back: " + plain;
  }
  const bool plain_pattern = pattern.find_first_not_of("#0,.") == std::string::npos &&
                             pattern.find_first_of("#0") != std::string::npos &&
                             pattern.find('.') == pattern.rfind('.');
  if (plain_pattern) {
    if (!shown.empty() && shown.back() == '.') return "a bare decimal mark: " + pattern;
    if (!shown.empty() && shown.front() == '-' && shown.find_first_of("123456789") == std::string::npos)
      return "a minus nothing: " + shown;
  }
  return "";
}

// A text that is compared with a number may be read as one, and a group's may be said again in its order;
// what is there is what was there, but for what the dialect itself adds.
std::string NewText(const std::vector<std::string>& before, std::string_view told) {
  for (const std::string& text : Texts(told)) {
    if (text == "''" || text == "'Infinity'" || text == "'-Infinity'") continue;
    const bool number = text.find_first_not_of("'+-.0123456789e") == std::string::npos;
    if (!number && std::find(before.begin(), before.end(), text) == before.end())
      return "a text has changed: ";
  }
  return "";
}

std::string FuzzDialect(std::string_view bytes) {
  for (const std::string& statement :
       {std::string(bytes), "SELECT * FROM entpart WHERE " + std::string(bytes),
        "UPDATE prods SET descrip = 'O''Hara ?', ALM1 = ? WHERE " + std::string(bytes)}) {
    if (Refuses([&] { data::RequireOneStatement(statement); })) continue;
    const auto before = Texts(statement);
    for (const data::From from : {data::From::kSuite, data::From::kHost}) {
      const std::string told = data::ForPostgresql(statement, from).text;
      if (auto wrong = NewText(before, told); !wrong.empty()) return wrong + statement + "\n  " + told;
      // What engines would read in different ways is not touched at all.
      const bool same = told == statement || from == data::From::kHost;
      if (!data::TakenApart(statement).ReadAlike() && !same) return "odd quotes are read: " + statement;
    }
    if (auto wrong = NewText(before, data::InReadingOrder(statement)); !wrong.empty())
      return wrong + statement;
    std::vector<std::string> names = {"articulo", "id_entrada"};
    data::SpellColumns(statement, names);
  }
  return "";
}

const std::vector<Harness>& Harnesses() {
  static const std::vector<Harness> harnesses = {
      {"gate",
       FuzzGate,
       {"A-100", "O'Hara", "zz' OR '1'='1", "' UNION SELECT * FROM canario WHERE ''='",
        "a'; DELETE FROM canario; --", "x' OR PG_SLEEP(5) IS NULL OR 'a'='b", "1) OR (1=1", "\"x\" [y] `z`",
        "('{1}'::INT[])[/*] ' */1]=5 OR /* ' */ 1", "E'\\''", "$$x$$", "ñandú 😀"},
       {"'",           "''",       "\"",      "`",
        "[",           "]",        "(",       ")",
        ";",           "--",       "/*",      "*/",
        "$$",          "SELECT ",  " UNION ", " FROM canario",
        "WITH ",       " OR ",     "COUNT(",  "load_extension(",
        "randomblob(", "E'",       "U&'",     "exec ",
        ",",           "\xC3\xB1", "\n",      std::string(1, '\0')}},
      {"numbers",
       FuzzNumbers,
       {std::string("\x9a\x99\x99\x99\x99\x99\xb9\x3f", 8) + "###,###,###0.##",
        std::string("\0\0\0\0\0\0\xf0\x3f", 8) + "######", std::string("\0\0\0\0\0\0\xf0\x7f", 8) + "0.00",
        "1,234.50", "-.5e300", "12a", "  +7  ", "$ #,##0.00 M.N."},
       {"#", "0", ",", ".", "-", "+", "e", "E", "999999999999999", "###,", "0.00", " ", "1e308", "inf", "nan",
        "0x1p3"}},
      {"dialect",
       FuzzDialect,
       {"SELECT articulo, SUM(cantidad) As cantidad FROM salpart WHERE salida = 4",
        "almacen = 'X1' AND articulo = 'A''B'",
        "SELECT prods.descrip,unidad FROM prods INNER JOIN impuestos ON prods.impuesto = impuestos.impuesto "
        "WHERE "
        "articulo = 'A'",
        "UPDATE entradas SET f_emision = '' WHERE entrada = '7'",
        "INSERT INTO entpart (id_entrada, cantidad) VALUES "
        "('1', 'x')",
        "SELECT * FROM (SELECT 1) q WHERE a <> '5' ORDER BY 1 LIMIT 3"},
       {"SELECT ", " FROM ",  " WHERE ",  " GROUP BY ", " ORDER BY ", " JOIN ", " ON ", " AS ",  "entpart",
        "prods",   "almacen", "cantidad", "f_emision",  "=",          "<>",     ">=",   "'",     "''",
        "\"",      "(",       ")",        ",",          ".",          "?",      " IN ", " SET ", " VALUES ",
        " LIMIT ", "*",       ";",        "[",          "]",          "`",      "$1",   "E'"}}};
  return harnesses;
}

}  // namespace tarvik::tests
