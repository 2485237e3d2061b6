// The first contents of a new base.
#include "host/preparacion.h"

#include "host/textos.h"

namespace tarvik::host {
namespace {

bool Tiene(data::EngineConnection& connection, const char* table) {
  return !connection.Run(std::string("SELECT 1 FROM ") + table + " LIMIT 1", {}).rows.empty();
}

bool Intacta(data::EngineConnection& connection) {
  for (const char* table : {"mensajes", "parametros", "defform", "ControlProc"}) {
    if (Tiene(connection, table)) return false;
  }
  return true;
}

}  // namespace

void UnaALaVez(data::EngineConnection& connection) {
  if (connection.Kind() == data::Dialect::Postgresql) {
    connection.Run("LOCK TABLE parametros IN EXCLUSIVE MODE", {});
  }
}

void PonPrimerosContenidos(data::EngineConnection& connection) {
  if (!Intacta(connection)) return;
  data::Transaction all(connection);
  UnaALaVez(connection);
  if (!Intacta(connection)) return;  // another station was faster
  SiembraMensajes(connection);
  connection.Run("INSERT INTO defform (Entradas, Salidas) VALUES (?, ?)", {"entrada", "salida"});
  connection.Run("INSERT INTO ControlProc (controlproc) VALUES (?)", {1});
  // SoloTarvik: no other program ever held a document here, so that a flag without a lease belongs to nobody.
  for (const auto& [name, value] : {std::pair{"Almacen", "1"},
                                    {"Lector", "0"},
                                    {"PorSurt", "0"},
                                    {"EnVenta", "0"},
                                    {"SoloTarvik", "1"}}) {
    connection.Run("INSERT INTO parametros (nombre, valor) VALUES (?, ?)", {name, value});
  }
  all.Commit();
}

}  // namespace tarvik::host
