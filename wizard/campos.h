// The text fields of the document wizards by what they hold, and as a table. A field's number is its Index
// in txtFields. It never changes, since the deployers' routines know the fields by it.
#pragma once

#include <array>
#include <string_view>
#include <vector>

namespace tarvik {

namespace campo {

// txtFields(campo::Articulo).Text("A-100");
enum Campo : int {
  // Both wizards: the header.
  Concepto = 0,
  Almacen = 14,
  // Both wizards: the entry row.
  Articulo = 4,  // its key; a second key or a model's key is taken too
  Descripcion = 1,
  Cantidad = 5,  // always in units of the article
  Precio = 6,    // of one unit, tax included where it comes from the catalogue
  Unidad = 27,
  SegundaClave = 24,
  Dato1 = 25,
  Dato2 = 26,
  Presentaciones = 28,  // how many
  UnidadDePresentacion = 29,
  // Both wizards: the foot.
  Total = 11,

  // Goods-in alone.
  ImporteDelRenglon = 9,

  // Goods-out alone.
  AlmacenDestino = 2,
  Sucursal = 3,
  EntradaRemota = 7,
  Unidades = 8,
  EstacionDestino = 9,
  Renglones = 10,
  Compra = 12,
  Cliente = 13,
  NombreDelCliente = 15,
  Empleado = 16,
  DireccionDeEmbarque = 17,

  // Numbers that shared procedures and routines use, though neither wizard has these fields: where a wizard
  // has the number at all, it is another field.
  Impuesto = 8,
  Moneda = 15,
  TipoDeCambio = 16,
};

}  // namespace campo

// The labels of Label10, which act on the boxes beside them.
namespace letrero {
enum Letrero : int { Observaciones, Pendiente, Imprimir };
}  // namespace letrero

struct CampoDeDocumento {
  int numero;
  bool en_entradas;
  bool en_salidas;
  std::string_view guarda;  // what it holds, for whoever writes routines
};

// Every field of the two wizards; a number that means two things is listed twice.
inline constexpr std::array kCampos{
    CampoDeDocumento{campo::Concepto, true, true, "clave del concepto"},
    CampoDeDocumento{campo::Descripcion, true, true, "descripción del artículo; no se escribe en él"},
    CampoDeDocumento{campo::AlmacenDestino, false, true, "almacén al que llega un traspaso"},
    CampoDeDocumento{campo::Sucursal, false, true, "sucursal a la que se envía"},
    CampoDeDocumento{campo::Articulo, true, true, "clave del artículo, segunda clave o modelo"},
    CampoDeDocumento{campo::Cantidad, true, true, "cantidad, en unidades del artículo"},
    CampoDeDocumento{campo::Precio, true, true, "precio de una unidad, con impuesto"},
    CampoDeDocumento{campo::EntradaRemota, false, true, "entrada de la sucursal que recibió; sólo se ve"},
    CampoDeDocumento{campo::Unidades, false, true, "suma de las cantidades; sólo se ve"},
    CampoDeDocumento{campo::ImporteDelRenglon, true, false, "importe del renglón en captura"},
    CampoDeDocumento{campo::EstacionDestino, false, true, "estación a la que llega un traspaso"},
    CampoDeDocumento{campo::Renglones, false, true, "cuántos renglones hay; sólo se ve"},
    CampoDeDocumento{campo::Total, true, true, "total del documento; sólo se ve"},
    CampoDeDocumento{campo::Compra, false, true, "número de la compra que se surte"},
    CampoDeDocumento{campo::Cliente, false, true, "clave del cliente"},
    CampoDeDocumento{campo::Almacen, true, true, "clave del almacén"},
    CampoDeDocumento{campo::NombreDelCliente, false, true, "nombre del cliente, para verlo"},
    CampoDeDocumento{campo::Empleado, false, true, "empleado al que se asigna"},
    CampoDeDocumento{campo::DireccionDeEmbarque, false, true, "dirección de embarque"},
    CampoDeDocumento{campo::SegundaClave, true, true, "segunda clave"},
    CampoDeDocumento{campo::Dato1, true, true, "primer dato de la segunda clave"},
    CampoDeDocumento{campo::Dato2, true, true, "segundo dato de la segunda clave"},
    CampoDeDocumento{campo::Unidad, true, true, "unidad del artículo"},
    CampoDeDocumento{campo::Presentaciones, true, true, "cuántas presentaciones"},
    CampoDeDocumento{campo::UnidadDePresentacion, true, true, "unidad de la presentación"},
};

// The numbers of one wizard's fields, in ascending order: CamposCon(&CampoDeDocumento::en_entradas).
inline std::vector<int> CamposCon(bool CampoDeDocumento::*en) {
  std::vector<int> numeros;
  for (const CampoDeDocumento& campo : kCampos) {
    if (campo.*en) numeros.push_back(campo.numero);
  }
  return numeros;
}

}  // namespace tarvik
