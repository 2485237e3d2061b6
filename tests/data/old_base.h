// A base of an earlier version, as its program made it, with rows in it: in a file, or on the server that
// TARVIK_TEST_BASE names.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "data/schema.h"
#include "data/text.h"
#include "tests/data/support.h"
#include "tests/support/base_de_prueba.h"

namespace tarvik::data {

using tests::BaseDePrueba;
using tests::ErrorOf;
using tests::TempFolder;

class OldBase : public testing::Test {
 protected:
  OldBase()
      : on_server_(server_.EnServidor()),
        address_(on_server_ ? server_.Direccion() : "sqlite:" + folder_.File("tienda.db")) {}

  void Fill(int version, const std::string& rows = "filas.sql") {
    base_ = OpenBase(address_);
    old_ = base_->Connect();
    const std::string folder = TARVIK_SOURCE_DIR "/tests/data/versiones/";
    Load(folder + "v" + std::to_string(version) + (on_server_ ? "_postgresql.sql" : "_sqlite.sql"));
    Load(folder + rows);
    old_->Run("INSERT INTO version_esquema (version) VALUES (?)", {version});
  }
  void Load(const std::string& file) {
    std::ifstream lines(file);
    ASSERT_TRUE(lines.good()) << file;
    for (std::string line; std::getline(lines, line);) old_->Define(line);
  }

  EngineConnection& Old() { return *old_; }
  static Value Single(EngineConnection& connection, std::string_view text) {
    return connection.Run(text, {}).rows.at(0).at(0);
  }
  Value Single(std::string_view text) { return Single(Old(), text); }
  [[nodiscard]] std::unique_ptr<EngineConnection> Another() const { return base_->Connect(); }

  // All that an earlier version's base holds, as one text.
  static std::string Contents(EngineConnection& connection, const std::string& schema = "") {
    std::string all;
    for (const char* table : {"entradas", "entpart", "salidas", "salpart", "existenciaalmacen", "prods",
                              "series", "mensajes", "parametros", "retenciones"}) {
      all += std::string(table) + "\n";
      const Rows found = connection.Run("SELECT * FROM " + schema + table + " ORDER BY 1, 2", {});
      for (const auto& row : found.rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
          if (found.columns[i] != "orden_alta") all += ToText(row[i]) + "|";  // came with version 4
        }
        all += '\n';
      }
    }
    for (const auto& row :
         connection
             .Run("SELECT id, operacion, articulo, cantidad, id_entrada, id_salida, almacen, "
                  "claveadd FROM " +
                      schema + "movsinv ORDER BY id",
                  {})
             .rows) {
      for (const Value& value : row) all += ToText(value) + "|";
      all += '\n';
    }
    return all;
  }
  // Files beside the base, or schemas on the server, that hold copies of it; sorted.
  [[nodiscard]] std::vector<std::string> Backups() {
    std::vector<std::string> found;
    if (on_server_) {
      for (const auto& row : Old()
                                 .Run("SELECT nspname FROM pg_catalog.pg_namespace WHERE nspname LIKE "
                                      "'respaldo%' ORDER BY nspname",
                                      {})
                                 .rows) {
        found.push_back(ToText(row[0]));
      }
      return found;
    }
    for (const auto& entry : std::filesystem::directory_iterator(folder_.Path())) {
      const std::string name = entry.path().filename().string();
      if (name.find("respaldo") != std::string::npos) found.push_back(name);
    }
    std::sort(found.begin(), found.end());
    return found;
  }
  // Whether the base is as a program of version 2 left it.
  void ExpectOldVersionWhole(const std::string& contents) {
    EXPECT_EQ(Single("SELECT MAX(version) FROM version_esquema"), Value(2));
    EXPECT_EQ(Contents(Old()), contents);
    EXPECT_TRUE(Old().Columns("tenencias").empty());
    const auto columns = Old().Columns("movsinv");
    EXPECT_EQ(std::count(columns.begin(), columns.end(), "saldo"), 0);
    EXPECT_EQ(ErrorOf([&] {
                Old().Run("INSERT INTO entradas (entrada) VALUES (-1)", {});
                Old().Run("DELETE FROM entradas WHERE entrada = -1", {});
              }),
              "no error")
        << "its rules are those of then";
  }
  void ExpectThisVersion() {
    EXPECT_EQ(Single("SELECT MAX(version) FROM version_esquema"), Value(kSchemaVersion));
    for (const Table& table : Schema()) {
      List expected;
      for (const Column& column : table.columns) expected.push_back(LowerAscii(column.name));
      List columns = Old().Columns(table.name);
      std::sort(expected.begin(), expected.end());
      std::sort(columns.begin(), columns.end());
      EXPECT_EQ(columns, expected) << table.name;
    }
  }
  using List = std::vector<std::string>;

  // What a program of version 2 sends to move a goods-in line.
  static void PostAsVersion2(EngineConnection& connection, std::int64_t line, double quantity) {
    Transaction whole(connection);
    connection.Run(
        "INSERT INTO movsinv (ent_sal, clavelocal, f_movim, almacen, movimiento, tipo_doc, usuario, "
        "documento, "
        "operacion, articulo, cantidad, precio, id_entrada, id_salida, claveadd, estaciontraspaso, importe, "
        "cerrado, usuhora) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
        {"E", "", Date{2024, 3, 7}, 1.0, 3, "COM", "ANA", "3", "EN", "A-100", quantity, 61.5, line, Value(),
         "", Value(), quantity * 61.5, 0, "10:00:00"});
    connection.Run(
        "INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (?, ?, ?) ON CONFLICT "
        "(almacen, "
        "articulo) DO UPDATE SET existencia = COALESCE(existenciaalmacen.existencia, 0) + "
        "excluded.existencia",
        {1.0, "A-100", quantity});
    connection.Run("UPDATE prods SET alm1 = COALESCE(alm1, 0) + ? WHERE articulo = ?", {quantity, "A-100"});
    whole.Commit();
  }

  BaseDePrueba server_{BaseDePrueba::Con::kNada};
  TempFolder folder_;
  bool on_server_;
  std::string address_;
  std::unique_ptr<Base> base_;
  std::unique_ptr<EngineConnection> old_;
};

class Version2 : public OldBase {
 protected:
  void SetUp() override { Fill(2); }
};

// With twins: two articles of one model, colour and size, of which the second by key was stored first.
// With articles of a model.
class WithModels : public OldBase {
 protected:
  // The model's articles as the screens ask for them.
  std::string OfModel() {
    std::string keys;
    for (const auto& row : Old().Select("SELECT * FROM prods WHERE modelo = 'CAM'").rows) {
      keys += ToText(row[0]) + " ";
    }
    return keys;
  }
};

class Version3 : public WithModels {
 protected:
  void SetUp() override { Fill(3, "filas_v3.sql"); }
};

class Version4 : public WithModels {
 protected:
  void SetUp() override { Fill(4, "filas_v3.sql"); }
};

}  // namespace tarvik::data
