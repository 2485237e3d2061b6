// Bases of earlier versions: how they come to this one, and what stays of them when it goes wrong. In a file,
// or on the server that TARVIK_TEST_BASE names.
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <regex>
#include <thread>

#include "tests/data/old_base.h"

namespace tarvik::data {
namespace {

// A connection whose n-th statement of a change fails, or is the last thing that its process does.
class Broken final : public EngineConnection {
 public:
  Broken(EngineConnection& behind, int at, bool dies = false) : behind_(behind), at_(at), dies_(dies) {}

  Rows Select(std::string_view text) override { return behind_.Select(text); }
  Rows Execute(std::string_view text) override {
    Count(text);
    return behind_.Execute(text);
  }
  using EngineConnection::Run;
  Rows Run(std::string_view text, std::span<const Value> values) override {
    if (text.starts_with("INSERT")) Count(text);
    return behind_.Run(text, values);
  }
  void Define(const std::string& text) override {
    Count(text);
    behind_.Define(text);
  }
  void Begin() override { behind_.Begin(); }
  void Commit() override {
    Count("COMMIT");
    behind_.Commit();
  }
  void Rollback() noexcept override { behind_.Rollback(); }
  [[nodiscard]] bool InTransaction() const override { return behind_.InTransaction(); }
  void Close() noexcept override { behind_.Close(); }
  [[nodiscard]] Dialect Kind() const override { return behind_.Kind(); }
  std::vector<std::string> Columns(std::string_view table) override { return behind_.Columns(table); }
  std::int64_t Changes() override { return behind_.Changes(); }
  void Notify() override { behind_.Notify(); }
  void Live(std::int64_t number) override { behind_.Live(number); }
  bool Lives(std::int64_t number) override { return behind_.Lives(number); }

  [[nodiscard]] int Seen() const { return seen_; }

 private:
  void Count(std::string_view text) {
    if (text.starts_with("DROP SCHEMA") || text.starts_with("SET ")) return;  // clearing up, and back
    if (++seen_ != at_) return;
    if (dies_) ::_exit(9);
    throw Error("falla provocada");
  }

  EngineConnection& behind_;
  int at_;
  int seen_ = 0;
  bool dies_;
};

class OfVersion : public OldBase, public testing::WithParamInterface<int> {};

TEST_P(OfVersion, ItOpensWithAllItsRows) {
  Fill(GetParam());
  const std::string before = Contents(Old());
  EXPECT_FALSE(PrepareSchema(Old()));
  ExpectThisVersion();
  EXPECT_EQ(Contents(Old()), before);
  EXPECT_EQ(Single("SELECT COUNT(*) FROM movsinv WHERE saldo IS NOT NULL"), Value(0));
  EXPECT_EQ(Single("SELECT COUNT(*) FROM version_esquema"), Value(2)) << "its own, and this";
  EXPECT_EQ(Backups().size(), 1U);

  EXPECT_FALSE(PrepareSchema(Old()));
  EXPECT_EQ(Backups().size(), 1U) << "nothing is copied where nothing is to be done";
}

TEST_P(OfVersion, ItsDoublesStayAndNoNewOneComes) {
  Fill(GetParam());
  PrepareSchema(Old());
  const auto rules = RulesWithPast(Old());
  ASSERT_EQ(rules.size(), 1U);
  EXPECT_EQ(rules[0].name, "una_vez_entrada");
  EXPECT_EQ(Value(rules[0].since), Single("SELECT MAX(id) FROM movsinv"));
  EXPECT_EQ(Single("SELECT COUNT(*) FROM movsinv WHERE id_entrada = 3"), Value(2));

  PostAsVersion2(Old(), 4, 1);
  try {
    PostAsVersion2(Old(), 4, 1);
    ADD_FAILURE() << "a line moved twice";
  } catch (const Error& error) {
    EXPECT_EQ(error.Kind(), Trouble::kDuplicate) << error.what();
  }
  EXPECT_EQ(Single("SELECT existencia FROM existenciaalmacen WHERE almacen = 1 AND articulo = 'A-100'"),
            Value(25.0));
  const std::string again =
      "INSERT INTO movsinv (operacion, id_salida, articulo, almacen) VALUES ('T+', 1, 'A-100', 2)";
  EXPECT_NE(ErrorOf([&] { Old().Run(again, {}); }), "no error") << "of goods-out there were none";
}

TEST_P(OfVersion, ANumberBelowOneIsRefusedAndARowThatHasOneCanChange) {
  Fill(GetParam());
  PrepareSchema(Old());
  EXPECT_EQ(ErrorOf([&] { Old().Run("UPDATE entradas SET observ = 'sin número' WHERE entrada = 0", {}); }),
            "no error");
  EXPECT_EQ(
      ErrorOf([&] { Old().Run("UPDATE entradas SET entrada = 0, estado = 'PE' WHERE entrada = 0", {}); }),
      "no error");
  EXPECT_NE(ErrorOf([&] { Old().Run("UPDATE entradas SET entrada = -1 WHERE entrada = 3", {}); }),
            "no error");
  EXPECT_NE(ErrorOf([&] { Old().Run("INSERT INTO salidas (salida) VALUES (0)", {}); }), "no error");
}

INSTANTIATE_TEST_SUITE_P(Earlier, OfVersion, testing::Values(1, 2),
                         [](const auto& of) { return "Version" + std::to_string(of.param); });

TEST_F(Version2, ItsBackupHoldsAllOfIt) {
  const std::string before = Contents(Old());
  PrepareSchema(Old());
  Old().Run("DELETE FROM movsinv", {});
  ASSERT_EQ(Backups().size(), 1U);
  const std::string name = Backups()[0];
  if (on_server_) {
    EXPECT_TRUE(std::regex_match(name, std::regex("respaldo_v2_\\d{8}_\\d{6}"))) << name;
    EXPECT_EQ(Contents(Old(), name + "."), before);
    EXPECT_EQ(Single("SELECT MAX(version) FROM " + name + ".version_esquema"), Value(2));
    EXPECT_EQ(Single("SELECT has_schema_privilege('public', '" + name + "', 'USAGE')"), Value(0));
    return;
  }
  EXPECT_TRUE(std::regex_match(name, std::regex("tienda\\.db\\.v2-\\d{8}-\\d{6}\\.respaldo"))) << name;
  struct stat about {};
  ASSERT_EQ(::stat(folder_.File(name).c_str(), &about), 0);
  EXPECT_EQ(about.st_mode & 07, 0U) << "nobody else reads it";
  const auto copy = OpenBase("sqlite:" + folder_.File(name))->Connect();
  EXPECT_EQ(Contents(*copy), before);
  EXPECT_FALSE(PrepareSchema(*copy)) << "it is a base like any other";
}

TEST_F(Version2, AStatementThatFailsLeavesItWholeWhicheverItIs) {
  const std::string before = Contents(Old());
  int failures = 0;
  for (int at = 1;; ++at) {
    Broken broken(Old(), at);
    const std::string error = ErrorOf([&] { PrepareSchema(broken); });
    if (error == "no error") break;
    ++failures;
    EXPECT_NE(error.find("falla provocada"), std::string::npos) << error;
    ExpectOldVersionWhole(before);
    EXPECT_TRUE(Backups().empty()) << "of an upgrade that did not happen nothing stays";
    ASSERT_LT(at, 200);
  }
  EXPECT_GT(failures, 20);
  ExpectThisVersion();
  EXPECT_EQ(Contents(Old()), before);
}

TEST_F(Version2, AProgramThatDiesInTheMiddleLeavesItWhole) {
  const std::string before = Contents(Old());
  int deaths = 0;
  for (int at = 1;; at += on_server_ ? 7 : 1) {
    // No session of ours in the child but its own.
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      const auto connection = OpenBase(address_)->Connect();
      Broken broken(*connection, at, true);
      PrepareSchema(broken);
      ::_exit(0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    if (WEXITSTATUS(status) == 0) break;
    ++deaths;
    ExpectOldVersionWhole(before);
    ASSERT_LT(at, 200);
  }
  EXPECT_GT(deaths, 5);
  ExpectThisVersion();
  EXPECT_EQ(Contents(Old()), before);
}

TEST_F(Version2, OfManyStationsAtOnceOneUpgradesItAndTheOthersFindItDone) {
  std::vector<std::thread> stations;
  std::vector<std::string> errors(6);
  for (std::string& error : errors) {
    stations.emplace_back([&error, this] {
      error = ErrorOf([&] {
        const auto connection = OpenBase(address_)->Connect();
        EXPECT_FALSE(PrepareSchema(*connection));
        EXPECT_EQ(Single(*connection, "SELECT MAX(version) FROM version_esquema"), Value(kSchemaVersion));
      });
    });
  }
  for (std::thread& station : stations) station.join();
  for (const std::string& error : errors) EXPECT_EQ(error, "no error");
  EXPECT_EQ(Backups().size(), 1U);
  ExpectThisVersion();
}

TEST_F(Version2, AProgramOfVersion2ThatHasItOpenGoesOn) {
  Old().Run("UPDATE series SET valor = 100 WHERE nombre = 'entpart'", {});
  PostAsVersion2(Old(), 10, 2);
  const auto newer = Another();
  PrepareSchema(*newer);
  PostAsVersion2(Old(), 11, 3);
  EXPECT_NE(ErrorOf([&] { PostAsVersion2(Old(), 11, 3); }), "no error");
  EXPECT_EQ(ErrorOf([&] {
              Old().Run(
                  "INSERT INTO retenciones (tipo, numero, usuario, estacion, desde) VALUES (?, ?, ?, ?, ?) "
                  "ON CONFLICT (tipo, numero) DO UPDATE SET usuario = excluded.usuario, estacion = "
                  "excluded.estacion, desde = excluded.desde",
                  {"Entrada", 4, "ANA", "E1", "2024-03-07 10:00:00"});
              Old().Run("DELETE FROM retenciones WHERE tipo = ? AND numero = ?", {"Entrada", 4});
              Old().Run("UPDATE entradas SET ocupado = 0 WHERE entrada = 3", {});
            }),
            "no error");
  EXPECT_EQ(Single("SELECT existencia FROM existenciaalmacen WHERE almacen = 1 AND articulo = 'A-100'"),
            Value(29.0));
  EXPECT_EQ(Single("SELECT alm1 FROM prods WHERE articulo = 'A-100'"), Value(29.0));
  EXPECT_EQ(Single("SELECT COUNT(*) FROM movsinv WHERE id_entrada IN (10, 11)"), Value(2));
}

TEST_F(Version2, WhatAProgramOfVersion2PostsMeanwhileIsNeitherLostNorDoubled) {
  std::atomic<bool> done = false;
  std::atomic<int> posted = 0;
  std::string error;
  std::thread station([&] {
    error = ErrorOf([&] {
      const auto connection = Another();
      for (int line = 1000; !done || posted < 5; ++line) {
        PostAsVersion2(*connection, line, 1);
        ++posted;
      }
    });
  });
  while (posted < 3 && error.empty()) std::this_thread::yield();
  PrepareSchema(Old());
  done = true;
  station.join();
  EXPECT_EQ(error, "no error");
  EXPECT_EQ(Single("SELECT COUNT(*) FROM movsinv WHERE id_entrada >= 1000"), Value(posted.load()));
  EXPECT_EQ(
      ToNumber(Single("SELECT existencia FROM existenciaalmacen WHERE almacen = 1 AND articulo = 'A-100'")),
      24 + posted);
  ExpectThisVersion();
}

TEST_F(Version2, ARuleThatSomebodyTookAwayIsPutBack) {
  PrepareSchema(Old());
  Old().Execute("DROP INDEX una_vez_salida");
  Old().Execute(std::string("DROP TRIGGER salidas_numero_nuevo") + (on_server_ ? " ON salidas" : ""));
  PrepareSchema(Old());
  EXPECT_NE(ErrorOf([&] { Old().Run("INSERT INTO salidas (salida) VALUES (0)", {}); }), "no error");
  EXPECT_NE(ErrorOf([&] {
              Old().Run(
                  "INSERT INTO movsinv (operacion, id_salida, articulo, almacen) VALUES ('SA', 1, 'A', 1)",
                  {});
            }),
            "no error");
  EXPECT_EQ(Backups().size(), 1U) << "no version changed";
}

// --- A base of version 3: articles get the order in which they were stored -------------------------

TEST_F(Version3, ItOpensWithAllItsRowsAndTheirOrder) {
  EXPECT_FALSE(PrepareSchema(Old()));
  ExpectThisVersion();
  ASSERT_EQ(Backups().size(), 1U);
  EXPECT_NE(Backups()[0].find("v3"), std::string::npos) << Backups()[0];
  EXPECT_EQ(Single("SELECT SUM(ALM1) FROM prods"), Value(32.0));
  EXPECT_EQ(Single("SELECT COUNT(*) FROM movsinv"), Value(1));
  // A server has kept nothing else of the order in which rows were stored than their keys.
  EXPECT_EQ(OfModel(), on_server_ ? "C-2 C-1 C-3 " : "C-2 C-3 C-1 ");
  EXPECT_EQ(Single("SELECT COUNT(DISTINCT orden_alta) FROM prods"), Value(4));
  EXPECT_FALSE(PrepareSchema(Old()));
  EXPECT_EQ(Backups().size(), 1U);
}

TEST_F(Version3, AnArticleThatIsStoredLaterComesBehindItsTwins) {
  PrepareSchema(Old());
  const std::string twins = OfModel();
  Old().Execute(
      "INSERT INTO prods (articulo, modelo, color, talla) VALUES ('B-1', 'CAM', 'R', 'G'), ('B-0', 'CAM', "
      "'R', 'G')");
  Old().Execute("UPDATE prods SET descrip = 'corregida' WHERE articulo = 'C-3'");
  EXPECT_EQ(OfModel(), twins + "B-1 B-0 ");
  Old().Execute("INSERT INTO prods (articulo, modelo, color, talla) VALUES ('A-1', 'CAM', 'A', 'G')");
  EXPECT_EQ(OfModel(), "A-1 " + twins + "B-1 B-0 ") << "first by colour";
}

TEST_F(Version3, AStatementThatFailsLeavesItWholeWhicheverItIs) {
  int failures = 0;
  for (int at = 1;; ++at) {
    Broken broken(Old(), at);
    const std::string error = ErrorOf([&] { PrepareSchema(broken); });
    if (error == "no error") break;
    ++failures;
    EXPECT_NE(error.find("falla provocada"), std::string::npos) << error;
    EXPECT_EQ(Single("SELECT MAX(version) FROM version_esquema"), Value(3));
    EXPECT_EQ(Old().Columns("prods").back(), "alm9");
    EXPECT_TRUE(Backups().empty());
    ASSERT_LT(at, 200);
  }
  EXPECT_GT(failures, 4);
  ExpectThisVersion();
  EXPECT_EQ(OfModel(), on_server_ ? "C-2 C-1 C-3 " : "C-2 C-3 C-1 ");
}

TEST_F(Version3, ItsBackupIsABaseThatCanBeUpgradedAgain) {
  if (on_server_) GTEST_SKIP() << "a file";
  PrepareSchema(Old());
  Old().Execute("DELETE FROM prods WHERE articulo = 'C-2'");
  const auto copy = OpenBase("sqlite:" + folder_.File(Backups().at(0)))->Connect();
  EXPECT_FALSE(PrepareSchema(*copy));
  EXPECT_EQ(copy->Select("SELECT * FROM prods WHERE modelo = 'CAM'").rows.size(), 3U);
}

// --- A base of version 4: readings of scanners are kept ---------------------------------------------

TEST_F(Version4, ItOpensWithAllItsRowsInTheirOrderAndKeepsReadings) {
  const std::string twins = OfModel();
  EXPECT_FALSE(PrepareSchema(Old()));
  ExpectThisVersion();
  EXPECT_EQ(Single("SELECT SUM(ALM1) FROM prods"), Value(32.0));
  EXPECT_EQ(Single("SELECT COUNT(*) FROM movsinv"), Value(1));
  EXPECT_EQ(OfModel(), twins);
  ASSERT_EQ(Backups().size(), 1U);
  EXPECT_NE(Backups()[0].find("v4"), std::string::npos) << Backups()[0];
  Old().Run("INSERT INTO lecturas (texto, estado) VALUES ('7501', 'espera')", {});
  EXPECT_EQ(Single("SELECT id FROM lecturas"), Value(1));
  EXPECT_FALSE(PrepareSchema(Old()));
  EXPECT_EQ(Backups().size(), 1U);
}

// --- A base of this version ------------------------------------------------------------------------

class NewBase : public testing::Test {
 protected:
  NewBase() : base_(OpenBase(server_.Direccion())), db_(base_->Connect()) { PrepareSchema(*db_); }
  BaseDePrueba server_{BaseDePrueba::Con::kNada};
  std::unique_ptr<Base> base_;
  std::unique_ptr<EngineConnection> db_;
};

TEST_F(NewBase, ItsRulesHoldForAllRows) {
  EXPECT_TRUE(RulesWithPast(*db_).empty());
  const std::string move =
      "INSERT INTO movsinv (operacion, id_entrada, articulo, almacen) VALUES ('EN', ?, 'A', 1)";
  db_->Run(move, {7});
  EXPECT_NE(ErrorOf([&] { db_->Run(move, {7}); }), "no error");
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(ErrorOf([&] {
                db_->Run(move, {0});
                db_->Run(move, {Value()});
                db_->Run("INSERT INTO movsinv (operacion, id_entrada, claveadd) VALUES ('EN', 7, '999')", {});
                db_->Run(
                    "INSERT INTO movsinv (operacion, id_entrada, articulo, almacen) VALUES ('TE', 7, 'A', 1)",
                    {});
              }),
              "no error")
        << "lines that could not be numbered, marks, and what routines move are free";
  }
}

TEST_F(NewBase, NoDocumentBearsANumberBelowOne) {
  const std::string refusal =
      "El registro no cumple una regla de la base: un documento no puede llevar un número menor que 1";
  for (const char* table : {"entradas", "salidas"}) {
    const std::string name = table;
    const std::string key = name.substr(0, name.size() - 1);
    for (const int number : {0, -5}) {
      EXPECT_EQ(ErrorOf([&] { db_->Run("INSERT INTO " + name + " (" + key + ") VALUES (?)", {number}); }),
                refusal);
    }
    db_->Run("INSERT INTO " + name + " (" + key + ", estado) VALUES (?, ?)", {1, "PE"});
    EXPECT_EQ(ErrorOf([&] {
                db_->Run("UPDATE " + name + " SET " + key + " = ? WHERE " + key + " = ?", {0, 1});
              }),
              refusal);
    EXPECT_EQ(ErrorOf([&] { db_->Run("UPDATE " + name + " SET estado = 'CO', " + key + " = 2", {}); }),
              "no error");
  }
}

TEST_F(NewBase, AModelsArticlesComeByColourSizeAndAsTheyWereStored) {
  const auto keys = [&](const std::string& text) {
    std::string all;
    for (const auto& row : db_->Select(text).rows) all += ToText(row[0]) + " ";
    return all;
  };
  for (const auto& [key, color, talla] : std::vector<std::array<const char*, 3>>{
           {"Z", "R", "G"}, {"M", "R", "CH"}, {"A", "R", "G"}, {"Q", "B", "G"}, {"K", "R", "G"}}) {
    db_->Run("INSERT INTO prods (articulo, modelo, color, talla) VALUES (?, ?, ?, ?)",
             {key, "CAM", color, talla});
  }
  db_->Run("INSERT INTO prods (articulo, modelo) VALUES (?, ?)", {"W", "CAM"});
  db_->Execute("UPDATE prods SET descrip = 'corregida' WHERE articulo IN ('Z', 'M')");
  EXPECT_EQ(keys("SELECT * FROM prods WHERE modelo = 'CAM'"), "W Q M Z A K ") << "no colour comes first";
  EXPECT_EQ(keys("SELECT articulo FROM prods WHERE modelo='CAM' AND color='R' AND talla='G'"), "Z A K ");
  EXPECT_EQ(keys("SELECT articulo FROM prods"), "A K M Q W Z ");
  EXPECT_EQ(keys("SELECT articulo, COUNT(*) AS n FROM prods GROUP BY modelo"), "W ");
  // What is deleted and stored again was stored last; a copy of the file, where rows are numbered anew,
  // changes nothing.
  db_->Execute("DELETE FROM prods WHERE articulo = 'Z'");
  if (db_->Kind() == Dialect::Sqlite) db_->Run("VACUUM", {});
  db_->Run("INSERT INTO prods (articulo, modelo, color, talla) VALUES (?, ?, ?, ?)", {"Z", "CAM", "R", "G"});
  EXPECT_EQ(keys("SELECT articulo FROM prods WHERE modelo='CAM' AND color='R' AND talla='G'"), "A K Z ");
}

TEST_F(NewBase, ItIsNotWrittenToWhenItIsOpenedAgain) {
  const auto other = base_->Connect();
  const std::int64_t before = other->Changes();
  const std::string rows = "SELECT COUNT(*) FROM version_esquema";
  EXPECT_FALSE(PrepareSchema(*db_));
  EXPECT_EQ(other->Changes(), before);
  EXPECT_EQ(other->Select(rows).rows[0][0], Value(1));
}

}  // namespace
}  // namespace tarvik::data
