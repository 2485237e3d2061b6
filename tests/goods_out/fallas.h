// A table of provoked failures of goods-out, as tests/goods_in/fallas.h has one of goods-in. It holds no
// case.
#pragma once

#include "goods_out/columnas.h"
#include "tests/goods_out/support.h"

namespace tarvik::tests {
namespace fallas_de_salida {

class FallasDeSalida;
using F = frmSalidasWizard;
using Textos = std::vector<std::string>;
using Paso = std::function<void(FallasDeSalida&, F&)>;

struct Caso {
  std::string nombre;
  std::string falla;  // an operation by its name; with ":" in front, a pattern of statements
  int veces = 1;
  Textos reportan;  // the procedures, in order; with "*" one that fails as a consequence
  Paso dado;
  Paso cuando;
  Paso entonces;
};

class FallasDeSalida : public EscenarioDeSalidas, public ::testing::WithParamInterface<Caso> {
 public:
  void Corre() {
    const Caso& caso = GetParam();
    F& f = ConConcepto();
    caso.dado(*this, f);
    ASSERT_TRUE(Reportes().empty());
    Olvida();
    if (caso.falla[0] == ':') {
      bitacora.Falla(caso.falla.substr(1), caso.veces, "falla provocada");
    } else {
      bitacora.FallaServicio(caso.falla, caso.veces, "falla provocada");
    }
    caso.cuando(*this, f);
    Textos vistos;
    std::string diario;
    for (const auto& mensaje : bitacora.mensajes) {
      if (mensaje.texto.find("Ocurrió un error:") == std::string::npos) continue;
      const std::string principio = "14:03:22 Ocurrió un error:\r\nModule: frmSalidasWiz\r\nFunction: ";
      ASSERT_TRUE(mensaje.texto.starts_with(principio)) << mensaje.texto;
      std::string nombre = mensaje.texto.substr(
          principio.size(), mensaje.texto.find("\r\n", principio.size()) - principio.size());
      if (!mensaje.texto.ends_with("\r\nDescription: falla provocada código duro: 0\r\n")) nombre += "*";
      vistos.push_back(nombre);
      EXPECT_EQ(mensaje.clase, "caja");
      EXPECT_EQ(mensaje.estilo, 0);
      diario += mensaje.texto;
    }
    EXPECT_EQ(vistos, caso.reportan);
    EXPECT_EQ(ArchivoDelDia(), diario);
    EXPECT_TRUE(no_atrapados.empty()) << ::testing::PrintToString(no_atrapados);
    caso.entonces(*this, f);
    EXPECT_TRUE(f.Open());
  }
};

inline std::string Nombre(const ::testing::TestParamInfo<Caso>& info) { return info.param.nombre; }

// ---- states to start from ----
inline void Nada(FallasDeSalida&, F&) {}
inline Paso Articulo(const char* clave) {
  return [clave](FallasDeSalida&, F& f) { f.txtFields(campo::Articulo).Text(clave); };
}
inline void Fila(FallasDeSalida& e, F& f) { e.Fila(f, "A-100", "3"); }
inline void FilaControlada(FallasDeSalida& e, F& f) {
  e.ControlaExistencia();
  Fila(e, f);
}
inline void Presentacion(FallasDeSalida&, F& f) {  // two boxes of twelve
  f.txtFields(campo::SegundaClave).Text("7501");
  f.txtFields(campo::Presentaciones).Text("2");
}
inline void Documento(FallasDeSalida& e, F& f) { e.Linea(f, "A-100", "3"); }
inline void OtraFila(FallasDeSalida& e, F& f) {
  Documento(e, f);
  e.Fila(f, "A-200", "2");
}
inline void FilaIgual(FallasDeSalida& e, F& f) {
  Documento(e, f);
  e.Fila(f, "A-100", "2");
}
inline void Leidas(FallasDeSalida& e, F& f) {  // three lines, saved and read for posting
  Documento(e, f);
  e.Linea(f, "A-200", "2");
  e.Linea(f, "A-100", "1");
  f.SalvaSalida();
  bool hay = false;
  f.SalvaPartidas(hay);
}
inline void Traspaso(FallasDeSalida& e, F& f) {
  f.SSCheck1.Value(1);
  f.txtFields(campo::AlmacenDestino).Text("2");
  Leidas(e, f);
}
inline void Compra(FallasDeSalida& e, F& f) {
  f.txtFields(campo::Compra).Text("55");
  f.txtFields(campo::Sucursal).Text("NTE");
  Leidas(e, f);
}
inline void CeldaCorregida(FallasDeSalida& e, F& f) {
  Documento(e, f);
  f.fg2.MoveTo(1, columna_salida::Cantidad);
  f.fg2.Text("9");
}

// ---- what is done ----
inline void Describe(FallasDeSalida&, F& f) { f.PonDescripcion(); }
inline void Resuelve(FallasDeSalida&, F& f) { f.TraeSegundaClave(); }
inline void Multiplica(FallasDeSalida&, F& f) { f.MultiplicaPorPresentacion(); }
inline void Llena(FallasDeSalida&, F& f) { f.LlenaPartida(); }
inline void Linea1(FallasDeSalida&, F& f) { f.NuevaPartida(); }
inline void Crea(FallasDeSalida&, F& f) { f.CreaSalida(); }
inline void Salva(FallasDeSalida&, F& f) { f.SalvaSalida(); }
inline void Afecta(FallasDeSalida&, F& f) { f.AfectaPartidas(); }
inline void Celda1(FallasDeSalida&, F& f) { f.SalvaCambios(); }
inline void Calcula(FallasDeSalida&, F& f) { f.CalculaImportes(); }
inline void Imprime(FallasDeSalida&, F& f) { f.ImprimeSalida(); }
inline void Borra(FallasDeSalida&, F& f) {
  f.fg2.MoveTo(1, columna_salida::Articulo);
  int tecla = forms::kKeyDelete;
  f.fg2_KeyDown(tecla, 0);
}
inline Paso Edita(int tecla) {
  return [tecla](FallasDeSalida&, F& f) {
    f.fg2.MoveTo(1, columna_salida::Cantidad);
    f.MSFlexGridEdit(f.fg2, f.txtEdit, tecla);
  };
}

// ---- what must be there afterwards ----
inline Paso Campo(int campo, const std::string& texto) {
  return [=](FallasDeSalida&, F& f) { EXPECT_EQ(f.txtFields(campo).Text(), texto) << campo; };
}
inline Paso Base(const std::string& consulta, const std::string& valor) {
  return [=](FallasDeSalida& e, F&) { EXPECT_EQ(e.Uno(consulta), valor) << consulta; };
}
inline Paso Cuadricula(int renglon, int columna, const std::string& texto) {
  return [=](FallasDeSalida&, F& f) { EXPECT_EQ(f.fg2.TextMatrix(renglon, columna), texto) << columna; };
}
inline Paso Mensajes(std::vector<int> numeros) {
  return [=](FallasDeSalida& e, F&) { EXPECT_EQ(e.Numeros(), numeros); };
}
inline Paso Movimientos(std::size_t cuantos) {
  return [=](FallasDeSalida& e, F&) { EXPECT_EQ(e.bitacora.movimientos.size(), cuantos); };
}
inline Paso Y(std::initializer_list<Paso> pasos) {
  return [pasos = std::vector<Paso>(pasos)](FallasDeSalida& e, F& f) {
    for (const auto& paso : pasos) paso(e, f);
  };
}
inline Textos Repite(const char* procedimiento, int veces) {
  return Textos(static_cast<std::size_t>(veces), procedimiento);
}
inline constexpr const char* kRenglones = "SELECT COUNT(*) FROM salpart";
inline constexpr const char* kCantidad = "SELECT cantidad FROM salpart WHERE id_salida = 1";

}  // namespace fallas_de_salida
}  // namespace tarvik::tests
