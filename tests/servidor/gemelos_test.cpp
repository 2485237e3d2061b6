// The same statement on both engines over the same rows: the same rows come, or both refuse it.
//   TARVIK_GEMELOS_VECES     how many statements (25,000)
//   TARVIK_GEMELOS_SEMILLA   the seed
//   TARVIK_GEMELOS_MUESTRA   how many differences are told before it gives up (10)
//   TARVIK_GEMELOS_CON       kinds of difference that are made all the same, parted by commas
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <sstream>

#include "data/engine.h"
#include "data/error.h"
#include "data/postgresql/dialect.h"
#include "data/schema.h"
#include "tests/data/support.h"
#include "tests/servidor/gemelos.h"
#include "tests/support/base_de_prueba.h"

namespace tarvik::tests {
namespace {

using data::EngineConnection;
using data::Rows;
using data::Value;

std::string Dada(const char* variable, const char* usual) {
  const char* dada = std::getenv(variable);
  return dada != nullptr ? dada : usual;
}

std::set<std::string> Partida(const std::string& lista) {
  std::set<std::string> partes;
  std::istringstream resto(lista);
  for (std::string parte; std::getline(resto, parte, ',');) partes.insert(parte);
  return partes;
}

std::string Rotulo(const Value& value) { return value.IsNull() ? "NULL" : "'" + data::ToText(value) + "'"; }

// The columns' names, then the rows, sorted where their order is not promised.
std::string Contado(const Rows& rows, bool en_orden) {
  std::string todo;
  for (const std::string& column : rows.columns) todo += column + " ";
  std::vector<std::string> lines;
  for (const auto& row : rows.rows) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      // What counts is the order of these numbers; a server skips some.
      if (rows.columns[i] != "orden_alta") line += Rotulo(row[i]) + ",";
    }
    lines.push_back(std::move(line));
  }
  if (!en_orden) std::sort(lines.begin(), lines.end());
  for (const std::string& line : lines) todo += "\n  " + line;
  return todo;
}

class Gemelos : public testing::Test {
 protected:
  Gemelos()
      : archivo_(data::OpenBase("sqlite:" + carpeta_.File("gemela.db"))->Connect()),
        servidor_(data::OpenBase(direccion_.Direccion())->Connect()) {
    for (EngineConnection* motor : {archivo_.get(), servidor_.get()}) data::PrepareSchema(*motor);
  }

  void Llena(unsigned semilla) {
    Generador generador(semilla, {});
    std::mt19937 dice(semilla);
    for (const Muestra& muestra : Muestras()) {
      for (int fila = 0; fila < 14; ++fila) {
        std::string columnas;
        std::string marcas;
        std::vector<Value> valores;
        for (const std::string& columna : muestra.columnas) {
          const auto tipo = data::FindColumn(muestra.tabla, columna)->type;
          Value valor = generador.Valor(tipo);
          if (tipo == data::ColumnType::Number) valor = data::ToNumber(valor);
          if (tipo == data::ColumnType::Flag || tipo == data::ColumnType::Integer)
            valor = static_cast<std::int64_t>(data::ToNumber(valor));
          if (tipo == data::ColumnType::Date) valor = *data::ToDate(valor);
          if (columnas.empty() && tipo == data::ColumnType::Integer) valor = fila + 1;
          if (muestra.tabla == "entpart" && columna == "entrada") valor = 1 + static_cast<int>(dice() % 4);
          if (!columnas.empty() && columna != "entrada" && muestra.tabla != "existenciaalmacen" &&
              dice() % 5 == 0)
            valor = Value();
          columnas += (columnas.empty() ? "" : ", ") + columna;
          marcas += marcas.empty() ? "?" : ", ?";
          valores.push_back(valor);
        }
        const std::string texto =
            "INSERT INTO " + muestra.tabla + " (" + columnas + ") VALUES (" + marcas + ")";
        const std::string uno = ErrorOf([&] { archivo_->Run(texto, valores); });
        const std::string otro = ErrorOf([&] { servidor_->Run(texto, valores); });
        ASSERT_EQ(uno == "no error", otro == "no error") << texto << uno << otro;
      }
    }
  }

  // What one engine answers.
  static std::string Respuesta(EngineConnection& motor, const Sentencia& sentencia,
                               std::string* error = nullptr) {
    try {
      if (!sentencia.valores.empty()) return Contado(motor.Run(sentencia.texto, sentencia.valores), false);
      if (sentencia.tabla.empty()) return Contado(motor.Execute(sentencia.texto), sentencia.en_orden);
      data::Transaction undone(motor);
      motor.Execute(sentencia.texto);
      return Contado(motor.Execute("SELECT * FROM " + sentencia.tabla), false);
    } catch (const data::Error& failed) {
      if (error != nullptr) *error = failed.what();
      return "no";
    }
  }

  TempFolder carpeta_;
  BaseDePrueba direccion_{BaseDePrueba::Con::kNada};
  std::unique_ptr<EngineConnection> archivo_;
  std::unique_ptr<EngineConnection> servidor_;
};

TEST_F(Gemelos, BothEnginesAnswerAlike) {
  const long veces = std::atol(Dada("TARVIK_GEMELOS_VECES", "25000").c_str());
  const auto semilla = static_cast<unsigned>(std::atol(Dada("TARVIK_GEMELOS_SEMILLA", "20240305").c_str()));
  const long mostradas = std::atol(Dada("TARVIK_GEMELOS_MUESTRA", "10").c_str());
  Llena(semilla);
  if (HasFatalFailure()) return;
  Generador generador(semilla, Partida(Dada("TARVIK_GEMELOS_CON", "")));
  long distintas = 0;
  long rechazadas = 0;
  long con_filas = 0;
  for (long i = 0; i < veces; ++i) {
    const Sentencia sentencia = generador.Siguiente();
    std::string del_archivo;
    std::string del_servidor;
    const std::string uno = Respuesta(*archivo_, sentencia, &del_archivo);
    const std::string otro = Respuesta(*servidor_, sentencia, &del_servidor);
    rechazadas += uno == "no" ? 1 : 0;
    con_filas += uno.find('\n') != std::string::npos ? 1 : 0;
    if (uno == otro) continue;
    if (++distintas > mostradas) break;
    std::string valores;
    for (const Value& valor : sentencia.valores) valores += " " + Rotulo(valor);
    ADD_FAILURE() << sentencia.texto << valores << "\n  said as " << data::ForPostgresql(sentencia.texto).text
                  << "\n--- file " << del_archivo << "\n"
                  << uno << "\n--- server " << del_servidor << "\n"
                  << otro;
  }
  std::cout << veces << " statements, " << con_filas << " with rows, " << rechazadas << " refused by both\n";
  // Dice that ask for nothing prove nothing.
  EXPECT_GT(con_filas, veces / 3);
  EXPECT_LT(rechazadas, veces / 5);
}

// Each kind of difference is still one, and is the one that is written down.
TEST_F(Gemelos, WhatDiffersIsWhatIsKnown) {
  for (EngineConnection* motor : {archivo_.get(), servidor_.get()}) {
    motor->Execute(
        "INSERT INTO entradas (entrada, f_emision, almacen, costo, estado, ocupado, observ) VALUES (1, "
        "'2024-03-06', 1, 2, 'PE', 1, 'uno'), (2, '2024-03-05', 7, 2, 'PE', 0, 'dos')");
    motor->Execute("INSERT INTO entpart (id_entrada, entrada, partida) VALUES (1, 1, 0)");
    motor->Execute(
        "INSERT INTO prods (articulo, modelo, color, talla) VALUES ('P1', 'M', 'R', '1'), ('P2', 'M', 'A', "
        "'2')");
    motor->Execute("INSERT INTO clavesadd (clave, articulo) VALUES ('Z9', 'A'), ('B1', 'A')");
  }
  const auto dice = [](EngineConnection& motor, const std::string& sentencias) -> std::string {
    std::string filas;
    try {
      data::Transaction undone(motor);
      std::istringstream resto(sentencias);
      for (std::string una; std::getline(resto, una, ';');) {
        filas.clear();
        const std::size_t marca = una.find("?:");  // and the value for it
        const Rows rows = marca == std::string::npos
                              ? motor.Execute(una)
                              : motor.Run(una.substr(0, marca + 1), {Value(una.substr(marca + 2))});
        for (const auto& fila : rows.rows) {
          if (!filas.empty()) filas += '|';
          for (std::size_t i = 0; i < fila.size(); ++i) filas += (i > 0 ? "," : "") + Rotulo(fila[i]);
        }
      }
    } catch (const data::Error&) {
      return "no";
    }
    return filas;
  };
  std::set<std::string> clases;
  for (const Diferencia& una : Diferencias()) {
    EXPECT_TRUE(clases.insert(una.clase).second) << una.clase;
    EXPECT_NE(std::string_view(una.archivo), una.servidor) << una.clase;
    EXPECT_EQ(dice(*archivo_, una.sentencia), una.archivo) << una.clase << ": " << una.sentencia;
    EXPECT_EQ(dice(*servidor_, una.sentencia), una.servidor) << una.clase << ": " << una.sentencia;
  }
}

}  // namespace
}  // namespace tarvik::tests
