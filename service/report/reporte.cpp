#include "service/report/reporte.h"

namespace tarvik::service {

std::string TextoDelReporte(const data::Time& hora, const std::string& modulo, const std::string& funcion,
                            const std::string& descripcion) {
  return hora.Text() + " Ocurrió un error:\r\nModule: " + modulo + "\r\nFunction: " + funcion +
         "\r\nDescription: " + descripcion + "\r\n";
}

bool ReportaEnCajaYBitacora(Host& host, const std::function<std::string()>& ruta_base,
                            const std::string& modulo, const std::string& funcion,
                            const std::string& descripcion) {
  forms::Platform& plataforma = host.Plataforma();
  const std::string texto = TextoDelReporte(plataforma.Now().time, modulo, funcion, descripcion);
  plataforma.ShowBox(forms::BoxKind::Plain, texto, forms::kBoxPlain);
  if (!ruta_base) return true;
  try {
    // The date is read here, after the box: an error whose box stays open over midnight goes
    // to the file of the day on which it is written.
    const std::string archivo =
        ruta_base() + "\\web\\TarvikError" + plataforma.Now().date.DayFirst() + ".Log";
    host.Funciones().AgregaArchivoLog(archivo, texto);
  } catch (const std::exception& error) {
    throw FallaDelReporte(error.what());
  }
  return true;
}

}  // namespace tarvik::service
