// From a base to one that has the schema of this version. It fills no table but the one of versions: texts,
// settings and catalogues are the host's.
#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <set>
#include <string_view>
#include <system_error>

#include "data/backup.h"
#include "data/error.h"
#include "data/schema.h"
#include "data/text.h"

namespace tarvik::data {
namespace {

constexpr std::string_view kVersionTable = "version_esquema";
// Stations that come at once queue at this lock on a server; the number is our own choice.
constexpr std::string_view kTurnLock = "SELECT pg_advisory_lock(7402180)";
constexpr std::string_view kTurnUnlock = "SELECT pg_advisory_unlock(7402180)";
// How many times an act's patience we wait for the station before us: five minutes.
constexpr int kTurns = 60;

using Names = std::set<std::string, std::less<>>;

Names NamesOf(EngineConnection& connection, std::string_view text) {
  Names names;
  for (const auto& row : connection.Run(text, {}).rows) names.insert(LowerAscii(ToText(row[0])));
  return names;
}

// On a server the schema where our tables are, or are to be.
constexpr const char* kOurs =
    "COALESCE((SELECT v.relnamespace FROM pg_catalog.pg_class v WHERE v.oid = "
    "to_regclass('version_esquema')), "
    "(SELECT n.oid FROM pg_catalog.pg_namespace n WHERE n.nspname = current_schema()))";

// Tables and views of a base, in lower case. Tables of an extension are not counted.
Names TableNames(EngineConnection& connection) {
  if (connection.Kind() == Dialect::Sqlite) {
    return NamesOf(connection,
                   "SELECT name FROM sqlite_master WHERE type IN ('table', 'view') AND substr(name, 1, 7) <> "
                   "'sqlite_'");
  }
  return NamesOf(
      connection,
      "SELECT c.relname FROM pg_catalog.pg_class c WHERE c.relkind IN ('r', 'p', 'v', 'm', 'f') AND "
      "c.relnamespace = " +
          std::string(kOurs) +
          " AND NOT EXISTS (SELECT 1 FROM pg_catalog.pg_depend d WHERE d.objid = c.oid AND "
          "d.deptype = 'e')");
}

// Indexes and triggers, in lower case.
Names RuleNames(EngineConnection& connection) {
  if (connection.Kind() == Dialect::Sqlite) {
    return NamesOf(connection, "SELECT name FROM sqlite_master WHERE type IN ('index', 'trigger')");
  }
  const std::string ours = kOurs;
  return NamesOf(connection,
                 "SELECT c.relname FROM pg_catalog.pg_class c WHERE c.relkind IN ('i', 'I') AND "
                 "c.relnamespace = " +
                     ours +
                     " UNION ALL SELECT t.tgname FROM pg_catalog.pg_trigger t JOIN pg_catalog.pg_class c ON "
                     "c.oid = t.tgrelid WHERE NOT t.tgisinternal AND c.relnamespace = " +
                     ours);
}

struct Rule {
  const Table* table;
  const Once* once;
};

struct Findings {
  bool empty = false;
  int version = 0;                      // of the base; 0 for an empty one
  std::vector<std::string> statements;  // that make what is missing
  std::vector<Rule> rules;              // missing on tables that are there
  std::vector<std::string> guards;      // for Define
  std::vector<std::string> tables;      // that are made

  [[nodiscard]] bool NewVersion() const { return version < kSchemaVersion; }
  [[nodiscard]] bool Older() const { return !empty && NewVersion(); }
  [[nodiscard]] bool Nothing() const {
    return !NewVersion() && statements.empty() && rules.empty() && guards.empty();
  }
};

int VersionOf(EngineConnection& connection, const Names& tables) {
  if (!tables.contains(kVersionTable)) {
    throw Error(connection.Kind() == Dialect::Sqlite ? "El archivo no es una base de este programa"
                                                     : "La base no es de este programa");
  }
  const Rows rows = connection.Select("SELECT MAX(version) AS version FROM version_esquema");
  const int version = static_cast<int>(ToNumber(rows.rows.at(0).at(0)));
  if (version > kSchemaVersion) {
    throw Error("La base es de una versión más nueva (" + std::to_string(version) + ") que este programa (" +
                std::to_string(kSchemaVersion) + ")");
  }
  return version;
}

// What a table lacks that is there.
void InspectTable(EngineConnection& connection, const Table& table, const Names& rules, Findings& found) {
  const std::vector<std::string> columns = connection.Columns(table.name);
  for (const Column& column : table.columns) {
    if (std::find(columns.begin(), columns.end(), LowerAscii(column.name)) != columns.end()) continue;
    for (std::string& text : AddColumnTexts(table, column, connection.Kind())) {
      found.statements.push_back(std::move(text));
    }
  }
  // An index that a deployer took away stays away, but not a rule.
  const std::vector<std::string> texts = IndexTexts(table);
  for (std::size_t i = 0; found.NewVersion() && i < texts.size(); ++i) {
    if (!rules.contains(IndexName(table, table.indexes[i]))) found.statements.push_back(texts[i]);
  }
  for (const Once& once : table.once) {
    if (!rules.contains(once.name)) found.rules.push_back({&table, &once});
  }
}

// Compares a base with the schema. Throws Error for one that must not be touched.
Findings Inspect(EngineConnection& connection) {
  Findings found;
  const Names tables = TableNames(connection);
  found.empty = tables.empty();
  if (!found.empty) found.version = VersionOf(connection, tables);
  const Names rules = found.empty ? Names{} : RuleNames(connection);
  for (const Table& table : Schema()) {
    const bool there = tables.contains(LowerAscii(table.name));
    if (there) {
      InspectTable(connection, table, rules, found);
    } else {
      found.tables.emplace_back(table.name);
      for (std::string& text : Ddl(table, connection.Kind())) found.statements.push_back(std::move(text));
    }
    for (Guard& guard : Guards(table, connection.Kind())) {
      if (there && rules.contains(guard.name)) continue;
      for (std::string& text : guard.texts) found.guards.push_back(std::move(text));
    }
  }
  return found;
}

// Rows that were brought from elsewhere with their own numbers are ahead of a server's counters, and the
// next row would be refused. Counters that this role may not set are left alone.
void AdvanceCounters(EngineConnection& connection) {
  if (connection.Kind() == Dialect::Sqlite) return;
  std::string names;
  for (const Table& table : Schema()) {
    const std::string column(table.counted_key ? table.key.at(0) : table.stored);
    if (column.empty()) continue;
    names += (names.empty() ? "('" : ", ('") + LowerAscii(table.name) + "', '" + LowerAscii(column) + "')";
  }
  const Rows counters = connection.Run(
      "SELECT c.name, c.col, c.counter FROM (SELECT t.name, t.col, CASE WHEN EXISTS (SELECT 1 FROM "
      "pg_catalog.pg_attribute a WHERE a.attrelid = to_regclass(t.name) AND a.attname = t.col AND NOT "
      "a.attisdropped) THEN pg_get_serial_sequence(t.name, t.col) END AS counter FROM (VALUES " +
          names +
          ") AS t (name, col)) AS c WHERE CASE WHEN c.counter IS NULL THEN FALSE ELSE "
          "has_sequence_privilege(c.counter, 'UPDATE') AND has_table_privilege(c.name, 'SELECT') END",
      {});
  for (const auto& row : counters.rows) {
    connection.Run("SELECT setval(?::text::regclass, m.n) FROM (SELECT MAX(" + ToText(row[1]) +
                       ") AS n FROM " + ToText(row[0]) +
                       ") m WHERE m.n > COALESCE(pg_sequence_last_value(?::text::regclass), 0)",
                   {row[2], row[2]});
  }
}

// --- Who may ------------------------------------------------------------------------------------

std::string OwnerFirst(int version, const std::string& owner) {
  return "La base es de la versión " + std::to_string(version) + " y este programa usa la " +
         std::to_string(kSchemaVersion) + ". Debe abrirla primero con este programa su dueño" +
         (owner.empty() ? "" : " (" + owner + ")") + ", que es quien puede actualizarla";
}

// Throws Error for a role of the server that may use the tables and not change them.
void RequireOwner(EngineConnection& connection, const Findings& found) {
  if (connection.Kind() == Dialect::Sqlite || found.empty) return;
  const Rows rows = connection.Run(
      "SELECT pg_catalog.pg_get_userbyid(c.relowner) AS dueno, pg_catalog.pg_has_role(c.relowner, 'USAGE') "
      "AS "
      "puede FROM pg_catalog.pg_class c WHERE c.oid = to_regclass('version_esquema')",
      {});
  if (rows.rows.empty() || IsNonZero(rows.rows[0][1])) return;
  const std::string owner = ToText(rows.rows[0][0]);
  if (found.Older()) throw Error(OwnerFirst(found.version, owner));
  throw Error("A la base le faltan tablas o reglas. Debe abrirla primero con este programa su dueño (" +
              owner + "), que es quien puede ponerlas");
}

// Tries until the station before us has finished, and throws what the last try said.
template <class Try>
void InTurn(EngineConnection& connection, Try attempt) {
  for (int turn = 1;; ++turn) {
    connection.Waiting().ActBegins();
    try {
      attempt();
      connection.Waiting().ActEnds();
      return;
    } catch (const Error& error) {
      connection.Waiting().ActEnds();
      if (error.Kind() != Trouble::kBusy || turn == kTurns) throw;
    }
  }
}

// One station at a time on a server. In a file the write lock is enough.
class Turn {
 public:
  explicit Turn(EngineConnection& connection)
      : connection_(connection.Kind() == Dialect::Postgresql ? &connection : nullptr) {
    if (connection_ != nullptr) InTurn(connection, [&] { connection.Run(kTurnLock, {}); });
  }
  ~Turn() {
    if (connection_ == nullptr) return;
    try {
      connection_->Run(kTurnUnlock, {});
    } catch (const Error&) {  // it ends with the session
    }
  }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

 private:
  EngineConnection* connection_;
};

// Takes the write lock, once the station before us has finished. A file that can't be written says who can.
class Writing {
 public:
  Writing(EngineConnection& connection, const Findings& found) {
    try {
      InTurn(connection, [&] { transaction_.emplace(connection); });
      // Of a file that can only be read the embedded engine gives no write lock, and says nothing.
      if (!found.empty) connection.Execute("DELETE FROM version_esquema WHERE version IS NULL");
    } catch (const Error& error) {
      if (error.Passing() || !found.Older()) throw;
      bool is_us = false;
      const std::string file = FileOf(connection);
      const std::string owner = file.empty() ? "" : OwnerOf(file, is_us);
      throw Error(OwnerFirst(found.version, owner) + ": " + error.what());
    }
  }
  void Commit() { transaction_->Commit(); }

 private:
  std::optional<Transaction> transaction_;
};

std::unique_ptr<Backup> BackUpOf(EngineConnection& connection, int version) {
  try {
    return BackUp(connection, version);
  } catch (const Error& error) {
    std::string text = "No se pudo respaldar la base antes de actualizarla de la versión " +
                       std::to_string(version) + " a la " + std::to_string(kSchemaVersion) +
                       ", y quedó como estaba: " + error.what();
    bool is_us = true;
    const std::string file = FileOf(connection);
    const std::string owner = file.empty() ? "" : OwnerOf(file, is_us);
    if (!is_us && !owner.empty()) text += ". Puede abrirla primero su dueño (" + owner + ")";
    throw Error(text, error.Kind());
  }
}

// --- The making ---------------------------------------------------------------------------------

void MakeRule(EngineConnection& connection, const Rule& rule) {
  const std::string table{rule.table->name};
  // Nobody adds a duplicate between the check and the rule.
  if (connection.Kind() == Dialect::Postgresql) {
    connection.Execute("LOCK TABLE " + table + " IN SHARE ROW EXCLUSIVE MODE");
  }
  std::string columns;
  for (const auto column : rule.once->columns) columns += (columns.empty() ? "" : ", ") + std::string(column);
  const Rows doubles =
      connection.Run("SELECT COUNT(*) AS cuantos FROM (SELECT 1 FROM " + table + " WHERE " +
                         std::string(rule.once->where) + " GROUP BY " + columns + " HAVING COUNT(*) > 1) d",
                     {});
  std::int64_t since = 0;
  if (IsNonZero(doubles.rows.at(0).at(0))) {
    const Rows last =
        connection.Run("SELECT MAX(" + std::string(rule.table->key.at(0)) + ") AS ultimo FROM " + table, {});
    since = static_cast<std::int64_t>(ToNumber(last.rows.at(0).at(0)));
  }
  connection.Execute(OnceText(*rule.table, *rule.once, since));
  // A search for an older movement of a line still finds it by an index.
  if (since > 0) {
    connection.Execute("CREATE INDEX IF NOT EXISTS " + std::string(rule.once->name) + "_de_antes ON " +
                       table + " (" + columns + ") WHERE " + std::string(rule.once->where));
  }
}

// Whoever worked on a server's base can go on: the new tables are granted to the roles that could use the
// rows of who holds a document, or the number series.
void GrantLikeBefore(EngineConnection& connection, const std::vector<std::string>& tables) {
  if (connection.Kind() == Dialect::Sqlite) return;
  const std::string like = connection.Columns("retenciones").empty() ? "series" : "retenciones";
  const Rows rights = connection.Run(
      "SELECT a.privilege_type AS derecho, CASE WHEN a.grantee = 0 THEN 'PUBLIC' ELSE "
      "quote_ident(pg_catalog.pg_get_userbyid(a.grantee)) END AS quien FROM pg_catalog.pg_class c, "
      "pg_catalog.aclexplode(c.relacl) a WHERE c.oid = to_regclass(?) AND a.grantee <> c.relowner ORDER BY "
      "2, 1",
      {like});
  for (const std::string& table : tables) {
    for (const auto& right : rights.rows) {
      std::string may = ToText(right[0]);
      // Nobody takes a series away, but whoever begins a lease must be able to end it.
      if (may == "INSERT" && !EqualsNoCase(table, "bitacora")) may += ", DELETE";
      connection.Execute("GRANT " + may + " ON " + table + " TO " + ToText(right[1]));
    }
  }
}

void Make(EngineConnection& connection, const Findings& found) {
  for (const std::string& text : found.statements) connection.Execute(text);
  for (const Rule& rule : found.rules) MakeRule(connection, rule);
  for (const std::string& text : found.guards) connection.Define(text);
  if (found.Older()) GrantLikeBefore(connection, found.tables);
  if (found.NewVersion()) {
    connection.Run("INSERT INTO version_esquema (version) VALUES (?)", {Value(kSchemaVersion)});
  }
}

}  // namespace

bool PrepareSchema(EngineConnection& connection) {
  // A base that lacks nothing is not written to, so that one that can only be read opens too.
  const Findings before = Inspect(connection);
  AdvanceCounters(connection);
  if (before.Nothing()) return false;
  RequireOwner(connection, before);

  const Turn only(connection);
  // Looked at again: another station may have made the tables since.
  Findings found = Inspect(connection);
  if (found.Nothing()) return false;
  std::unique_ptr<Backup> backup;
  const bool in_file = connection.Kind() == Dialect::Sqlite;
  if (!in_file && found.Older()) backup = BackUpOf(connection, found.version);
  Writing transaction(connection, found);
  if (in_file) {
    found = Inspect(connection);
    if (found.Nothing()) return false;
    // With the write lock held, so that nothing is written between the copy and the change.
    if (found.Older()) backup = BackUpOf(connection, found.version);
  }
  Make(connection, found);
  transaction.Commit();
  if (backup != nullptr) backup->Keep();
  return found.empty;
}

namespace {

// The number that a rule's condition has the key above. Each engine repeats the condition in its own way:
// "AND id > 5", "AND (id > '5')".
std::optional<std::int64_t> NumberAbove(std::string_view condition, std::string_view key) {
  const std::string above = std::string(key) + " > ";
  for (std::size_t at = condition.find(above); at != std::string_view::npos;
       at = condition.find(above, at + 1)) {
    if (at == 0 || (condition[at - 1] != ' ' && condition[at - 1] != '(')) continue;
    std::size_t begin = at + above.size();
    if (begin < condition.size() && condition[begin] == '\'') ++begin;
    std::int64_t number = 0;
    const char* const end = condition.data() + condition.size();
    if (std::from_chars(condition.data() + begin, end, number).ec == std::errc{}) return number;
  }
  return {};
}

}  // namespace

std::vector<RuleWithPast> RulesWithPast(EngineConnection& connection) {
  const std::string_view text =
      connection.Kind() == Dialect::Sqlite
          ? "SELECT sql AS texto FROM sqlite_master WHERE type = 'index' AND name = ?"
          : "SELECT pg_catalog.pg_get_indexdef(to_regclass(?)) AS texto";
  std::vector<RuleWithPast> rules;
  for (const Table& table : Schema()) {
    for (const Once& once : table.once) {
      const Rows rows = connection.Run(text, {std::string(once.name)});
      const std::string made = rows.rows.empty() ? "" : ToText(rows.rows[0][0]);
      if (const auto since = NumberAbove(made, table.key.at(0))) {
        rules.push_back({std::string(once.name), *since});
      }
    }
  }
  return rules;
}

}  // namespace tarvik::data
