// Posting, one line at a time: whole or not at all, and once.
#include "host/movimientos.h"

#include <cmath>

#include "data/error.h"
#include "data/number.h"
#include "host/conexion_observada.h"
#include "host/paciencia.h"

namespace tarvik::host {

void MovimientoLocal::Afecta(double& amount) {
  testigo_.Servicio("Afecta");
  if (ambiente_ == nullptr) throw data::Error("El movimiento no tiene ambiente");
  ExigeCompleto(asiento_);
  data::EngineConnection& connection = MotorDe(ambiente_->Conexion());
  if (!libro_) libro_.emplace(connection, regla_);
  const bool applies = asiento_.aplica.IsNull() || data::IsNonZero(asiento_.aplica);
  const double worth = applies ? Mueve(connection, *libro_) : libro_->Importe(asiento_);
  testigo_.Movimiento(asiento_.Puestas(), worth);
  amount = worth;
}

double MovimientoLocal::Mueve(data::EngineConnection& connection, Libro& libro) {
  const bool of_a_line = asiento_.ColumnaDelRenglon() != nullptr;
  if (of_a_line && permiso_) {
    permiso_(data::ToText(asiento_.operacion) == "EN" ? Tipo::Entrada : Tipo::Salida,
             static_cast<std::int32_t>(data::ToNumber(asiento_.Renglon())));
  }
  return ConPaciencia(connection, [&] {
    try {
      libro.Prepara();
      data::Transaction whole(connection);
      if (cierres_ != nullptr) cierres_->Empieza(asiento_);
      const double worth = libro.Asienta(asiento_, platform_.Now().time.Text());
      whole.Commit();
      if (cierres_ != nullptr) cierres_->Empezado();
      return worth;
    } catch (const data::Error& error) {
      // Nobody knows whether it was carried out: only for a line's movement can that be told the next time.
      if (error.Kind() == data::Trouble::kLost && !of_a_line) throw data::Error(error.what());
      if (error.Kind() != data::Trouble::kDuplicate || !of_a_line) throw;
    }
    const auto before = libro.Anterior(asiento_);
    if (!before) throw data::Error("El movimiento choca con otro registro del libro y no se escribió");
    return ComoEntonces(*before);
  });
}

double MovimientoLocal::ComoEntonces(const AsientoDeAntes& before) const {
  const std::string line = "El renglón " + data::ToText(asiento_.Renglon()) + " ";
  if (before.articulo != data::ToText(asiento_.articulo) ||
      before.almacen != data::ToNumber(asiento_.almacen)) {
    throw data::Error(line + "ya se movió con el documento " + before.documento + ": artículo " +
                      before.articulo + ", almacén " + data::PlainNumber(before.almacen) +
                      ". No se movió otra vez; revise la serie de los renglones");
  }
  const double quantity = data::ToNumber(asiento_.cantidad);
  if (aviso_ && before.cantidad != quantity) {
    aviso_(line + "(" + before.articulo + ") ya se había movido con cantidad " +
           data::PlainNumber(before.cantidad) + "; ahora dice " + data::PlainNumber(quantity) +
           ". La existencia quedó con la cantidad de entonces");
  }
  return before.importe;
}

}  // namespace tarvik::host
