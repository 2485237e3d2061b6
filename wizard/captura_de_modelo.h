// CapturaDeModelo: what the spreading of a model over its colours and sizes needs of a document: the
// entry row that the model's key was typed in, and a way to turn that row into a line. It knows
// neither the document's table nor its grid.
#pragma once

#include "data/recordset.h"
#include "forms/control.h"
#include "service/contract/host_services.h"
#include "service/report/reporte.h"

namespace tarvik {

class CapturaDeModelo {
 public:
  virtual ~CapturaDeModelo() = default;

  virtual service::Host& Anfitrion() = 0;
  // False once the document's screen is gone: nothing may be written for it any more.
  virtual bool Abierta() = 0;
  // Throws data::Error if the document has no context.
  virtual service::Ambiente& Contexto() = 0;
  // Whose failures these are: box and log name this screen.
  virtual service::Reportero& Reporta() = 0;
  // A field of the entry row, by its number (wizard/campos.h): article, quantity, price, amount, unit.
  virtual forms::TextBox& Campo(int indice) = 0;
  // The article last read, which the document's routines may look at.
  virtual data::RecordsetRef& Articulo() = 0;
  // Makes a line of the entry row, with all the checks of one that was typed, and empties the row.
  virtual void HazRenglon() = 0;
  // Moves the focus to the document's field; whatever fails there is ignored.
  virtual void Vuelve(int indice) = 0;
};

}  // namespace tarvik
