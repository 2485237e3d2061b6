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
  std::string_view nombre;  // as above
  bool en_entradas;
  bool en_salidas;
};

// Every field of the two wizards; a number that means two things is listed twice.
inline constexpr std::array kCampos{
    CampoDeDocumento{campo::Concepto, "Concepto", true, true},
    CampoDeDocumento{campo::Descripcion, "Descripcion", true, true},
    CampoDeDocumento{campo::AlmacenDestino, "AlmacenDestino", false, true},
    CampoDeDocumento{campo::Sucursal, "Sucursal", false, true},
    CampoDeDocumento{campo::Articulo, "Articulo", true, true},
    CampoDeDocumento{campo::Cantidad, "Cantidad", true, true},
    CampoDeDocumento{campo::Precio, "Precio", true, true},
    CampoDeDocumento{campo::EntradaRemota, "EntradaRemota", false, true},
    CampoDeDocumento{campo::Unidades, "Unidades", false, true},
    CampoDeDocumento{campo::ImporteDelRenglon, "ImporteDelRenglon", true, false},
    CampoDeDocumento{campo::EstacionDestino, "EstacionDestino", false, true},
    CampoDeDocumento{campo::Renglones, "Renglones", false, true},
    CampoDeDocumento{campo::Total, "Total", true, true},
    CampoDeDocumento{campo::Compra, "Compra", false, true},
    CampoDeDocumento{campo::Cliente, "Cliente", false, true},
    CampoDeDocumento{campo::Almacen, "Almacen", true, true},
    CampoDeDocumento{campo::NombreDelCliente, "NombreDelCliente", false, true},
    CampoDeDocumento{campo::Empleado, "Empleado", false, true},
    CampoDeDocumento{campo::DireccionDeEmbarque, "DireccionDeEmbarque", false, true},
    CampoDeDocumento{campo::SegundaClave, "SegundaClave", true, true},
    CampoDeDocumento{campo::Dato1, "Dato1", true, true},
    CampoDeDocumento{campo::Dato2, "Dato2", true, true},
    CampoDeDocumento{campo::Unidad, "Unidad", true, true},
    CampoDeDocumento{campo::Presentaciones, "Presentaciones", true, true},
    CampoDeDocumento{campo::UnidadDePresentacion, "UnidadDePresentacion", true, true},
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
