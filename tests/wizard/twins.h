// Gemelos: the two wizards side by side. A row of its tables does the same on both screens and tells what
// either one must answer.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "tests/goods_out/support.h"

namespace tarvik::tests {

class Gemelos;
using E = frmEntradasWizard;
using S = frmSalidasWizard;

struct Diferencia {
  std::string nombre;
  std::function<std::string(Gemelos&, E&)> entra;
  std::string entradas;
  std::function<std::string(Gemelos&, S&)> sale;
  std::string salidas;
};

class Gemelos : public EscenarioDeSalidas, public ::testing::WithParamInterface<Diferencia> {
 public:
  Gemelos() {
    Sql("INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES ('EB', 'E', ' Con blancos ')");
    Sql("INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES ('SB', 'S', ' Con blancos ')");
    Sql("INSERT INTO prods (articulo, descrip, unidad, precio1, impuesto) VALUES ('B-1', ' Tornillo ', "
        "'PZA', "
        "0, 'IVA')");
  }
  E& Entrada() {
    frmEntradasWizard& f = Nueva();
    Teclea(f, f.txtFields(campo::Concepto), "COM");
    f.Enter(f.txtFields(campo::Articulo));
    viva_ = f.shared_from_this();
    Olvida();
    return f;
  }
  S& Salida() {
    S& f = ConConcepto();
    Olvida();
    return f;
  }
  std::string Ultima() const { return bitacora.sentencias.empty() ? "" : bitacora.sentencias.back(); }
  std::string Todas() const {
    std::string texto;
    for (const auto& clave : Claves()) texto += (texto.empty() ? "" : " ") + clave;
    return texto;
  }
  std::string Avisos() const {
    std::string texto;
    for (int numero : Numeros()) texto += (texto.empty() ? "" : " ") + std::to_string(numero);
    return texto;
  }
  std::shared_ptr<forms::Form> viva_;
};

// The same act on both screens.
template <class Acto>
Diferencia Igual(const char* nombre, const char* entradas, const char* salidas, Acto acto) {
  return {nombre, [acto](Gemelos& g, E& f) -> std::string { return acto(g, f); }, entradas,
          [acto](Gemelos& g, S& f) -> std::string { return acto(g, f); }, salidas};
}
inline std::string SiNo(bool si) { return si ? "yes" : "no"; }
inline std::string C(DocumentWizard& f, int renglon, int columna) {
  return f.fg2.TextMatrix(renglon, columna);
}
inline std::string T(DocumentWizard& f, int campo) { return f.txtFields(campo).Text(); }
// A line through the entry row.
inline void Uno(DocumentWizard& f, const char* articulo, const char* cantidad) {
  f.txtFields(campo::Articulo).Text(articulo);
  f.PonDescripcion();
  f.txtFields(campo::Cantidad).Text(cantidad);
  f.LlenaPartida();
}
inline std::string Tabla(E&, const char* entradas, const char*) { return entradas; }
inline std::string Tabla(S&, const char*, const char* salidas) { return salidas; }
inline void Crea(E& f) { f.CreaEntrada(); }
inline void Crea(S& f) { f.CreaSalida(); }
inline void Salva(E& f) { f.SalvaEntrada("PE"); }
inline void Salva(S& f) {
  f.Check3.Value(1);
  f.SalvaSalida();
}

inline std::string NombreDeDiferencia(const ::testing::TestParamInfo<Diferencia>& info) {
  return info.param.nombre;
}

}  // namespace tarvik::tests
