// The three procedures of the colour and size matrix.
#include "host/procedimientos.h"

#include <cmath>
#include <string>
#include <vector>

#include "data/error.h"
#include "data/number.h"
#include "host/numeracion.h"

namespace tarvik::host {
namespace {

using Argumentos = std::vector<std::string>;

void Exige(const char* name, const Argumentos& arguments, std::size_t count) {
  if (arguments.size() == count) return;
  throw data::Error("El procedimiento " + std::string(name) + " espera " + std::to_string(count) +
                    " argumentos y recibió " + std::to_string(arguments.size()));
}

void MallaParam(data::EngineConnection& connection, const Argumentos& arguments) {
  Exige("TKMallaParam", arguments, 5);
  connection.Run(
      "INSERT INTO mallaparam (usuario, modelo, concepto, documento, origen) VALUES (?, ?, ?, ?, ?) "
      "ON CONFLICT (documento, origen) DO UPDATE "
      "SET usuario = excluded.usuario, modelo = excluded.modelo, concepto = excluded.concepto",
      {arguments[0], arguments[1], arguments[2], arguments[3], arguments[4]});
}

// What differs between the two directions.
struct Sentido {
  const char* procedimiento;
  const char* origen;
  const char* operacion;
  const char* documento;  // for the operator: "la entrada"
  const char* encabezado;
  const char* partidas;  // also the series of the line numbers
  const char* numero;    // column of the document
  const char* id;        // column of the line
  bool con_referencia;   // whether its lines name the document once more
};
constexpr Sentido kEntrada = {"TKCreaEntradaTYC", "EntradasInventario", "EN",
                              "la entrada",       "entradas",           "entpart",
                              "entrada",          "id_entrada",         true};
constexpr Sentido kSalida = {"TKCreaSalidaTYC", "SalidasInventario", "SA", "la salida", "salidas", "salpart",
                             "salida",          "id_salida",         false};

std::int32_t Numero(const std::string& document) {
  const auto number = data::ParseNumber(document);
  if (!number || *number != std::trunc(*number) || std::abs(*number) > 2147483647.0) {
    throw data::Error("El número de documento \"" + document + "\" no es válido");
  }
  return static_cast<std::int32_t>(*number);
}

std::int32_t NumeroDePartida(data::EngineConnection& connection, const Sentido& way) {
  const std::string query =
      std::string("SELECT 1 FROM ") + way.partidas + " WHERE " + way.id + " = ? LIMIT 1";
  for (;;) {
    const std::int32_t id = SiguienteNumero(connection, way.partidas);
    if (connection.Run(query, {id}).rows.empty()) return id;
  }
}

// A screen looks for the marks of the other direction. Marks that a matrix has left for a document of that
// direction with the same number would be taken for its own. They are a message that was delivered long
// ago, and moved no stock.
void OlvidaMarcas(data::EngineConnection& connection, const Sentido& way, std::int32_t number) {
  const std::string id = way.id;
  connection.Run(
      "DELETE FROM movsinv WHERE operacion = ? AND movimiento = ? AND claveadd = '999' AND importe IS "
      "NULL AND EXISTS (SELECT 1 FROM " +
          std::string(way.partidas) + " p WHERE p." + id + " = movsinv." + id + " AND p." + way.numero +
          " = movsinv.movimiento)",
      {way.operacion, number});
}

void CreaPartidas(data::EngineConnection& connection, forms::Platform& platform, const Sentido& way,
                  const Argumentos& arguments) {
  Exige(way.procedimiento, arguments, 1);
  const std::string& document = arguments.front();
  const std::int32_t number = Numero(document);
  const data::DateTime now = platform.Now();

  data::Transaction whole(connection);
  const auto header = connection.Run(std::string("SELECT tipo_doc, almacen, f_emision, usuario FROM ") +
                                         way.encabezado + " WHERE " + way.numero + " = ?",
                                     {number});
  if (header.rows.empty()) throw data::Error("No existe " + std::string(way.documento) + " " + document);
  const auto& head = header.rows.front();
  const auto asked = connection.Run("SELECT usuario FROM mallaparam WHERE documento = ? AND origen = ?",
                                    {document, way.origen});
  const data::Value user = asked.rows.empty() ? head[3] : asked.rows.front()[0];

  const auto cells = connection.Run(
      "SELECT articulo, cantidad, precio, observ, prdescrip, prcantidad, claveadd FROM mallacelda "
      "WHERE documento = ? AND origen = ? ORDER BY id",
      {document, way.origen});
  OlvidaMarcas(connection, &way == &kEntrada ? kSalida : kEntrada, number);
  for (const auto& cell : cells.rows) {
    const std::int32_t id = NumeroDePartida(connection, way);
    const std::string referencia = way.con_referencia ? ", no_referen" : "";
    std::vector<data::Value> line = {id, number, head[0],  cell[0],         cell[1], cell[2], cell[3],
                                     0,  user,   now.date, now.time.Text(), cell[5], cell[4], cell[6]};
    std::string marks = "?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?";
    if (!referencia.empty()) {
      line.emplace_back(number);
      marks += ", ?";
    }
    connection.Run(std::string("INSERT INTO ") + way.partidas + " (" + way.id + ", " + way.numero +
                       ", tipo_doc, articulo, cantidad, precio, observ, partida, usuario, usufecha, usuhora, "
                       "prcantidad, prdescrip, claveadd" +
                       referencia + ") VALUES (" + marks + ")",
                   line);
    // The mark '999' is how the screen finds again what the matrix left. It names no warehouse and no
    // direction, so that it counts in nobody's stock.
    connection.Run(
        std::string("INSERT INTO movsinv (operacion, movimiento, articulo, cantidad, Precio, Observ, ") +
            way.id +
            ", PrDescrip, PrCantidad, claveadd, f_movim, cerrado, tipo_doc, documento, usuario, usuhora) "
            "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, '999', ?, 0, ?, ?, ?, ?)",
        {way.operacion, number, cell[0], cell[1], cell[2], cell[3], id, cell[4], cell[5], head[2], head[0],
         document, user, now.time.Text()});
  }
  connection.Run("DELETE FROM mallacelda WHERE documento = ? AND origen = ?", {document, way.origen});
  whole.Commit();
}

}  // namespace

void RegistraProcedimientos(data::EngineConnection& connection, forms::Platform& platform) {
  connection.Register("TKMallaParam", MallaParam);
  connection.Register("TKCreaEntradaTYC",
                      [&platform](data::EngineConnection& own, const Argumentos& arguments) {
                        CreaPartidas(own, platform, kEntrada, arguments);
                      });
  connection.Register("TKCreaSalidaTYC",
                      [&platform](data::EngineConnection& own, const Argumentos& arguments) {
                        CreaPartidas(own, platform, kSalida, arguments);
                      });
}

}  // namespace tarvik::host
