// EscenarioDeSalidas: the warehouse of a goods-out story. The usual shop with stock, customers, branches,
// employees, stations and a purchase, and the operator's hands on the goods-out screen.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "goods_out/frm_salidas_wizard.h"
#include "tests/support/escenario.h"

namespace tarvik::tests {

class EscenarioDeSalidas : public Escenario {
 public:
  using Textos = std::vector<std::string>;

  // Over the usual shop: A-100 has 10 in warehouse 1 and A-200 has 4; 7502 is a second key of A-100 with a
  // free quantity (box of 10), 7503 one that fixes none; customers C1 and C2, three addresses, employee M7,
  // station E2, branch NTE, purchase 55 with lines of both articles. No article's stock is controlled.
  EscenarioDeSalidas() {
    Catalogo();
    const std::string existencia =
        "INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (?, ?, ?)";
    Sql(existencia, {1, "A-100", 10});
    Sql(existencia, {1, "A-200", 4});
    const std::string clave =
        "INSERT INTO clavesadd (clave, articulo, cantidad, Dato1, Dato2, unidad, Libre) VALUES (?, ?, ?, ?, "
        "?, ?, ?)";
    Sql(clave, {"7502", "A-100", 10, "Bolsa", "Azul", "BL", 1});
    Sql(clave, {"7503", "A-100", 0, "Suelto", "Gris", "UN", 0});
    Sql("INSERT INTO clients (cliente, nombre) VALUES (?, ?)", {"C1", "Ferretería del Sur"});
    Sql("INSERT INTO clients (cliente, nombre) VALUES (?, ?)", {"C2", "Obras y Caminos"});
    const std::string direccion = "INSERT INTO diremb (id, direccion, cliente) VALUES (?, ?, ?)";
    Sql(direccion, {1, "Calle Uno 1", "C1"});
    Sql(direccion, {2, "Calle Dos 2", "C1"});
    Sql(direccion, {3, "Calle Tres 3", "C2"});
    Sql("INSERT INTO empleados (empleado, nombre) VALUES (?, ?)", {"M7", "Marta"});
    Sql("INSERT INTO ESTACIONES (ESTACION) VALUES (?)", {"E2"});
    Sql("INSERT INTO sucursal (sucursal) VALUES (?)", {"NTE"});
    Sql("INSERT INTO compra2 (id) VALUES (?)", {55});
    const std::string linea = "INSERT INTO compra2part (Id, articulo, compra) VALUES (?, ?, ?)";
    Sql(linea, {551, "A-100", 55});
    Sql(linea, {552, "A-200", 55});
    Sql(linea, {561, "A-100", 56});
    Sql("INSERT INTO usuarios (usuario, existsalidas) VALUES (?, ?)", {"ANA", 0});
  }

  // ---- the world ----
  void Gancho(const std::string& clave, std::function<void(frmSalidasWizard&)> rutina) {
    anfitrion->Gancho(clave, [rutina = std::move(rutina)](forms::Form& forma, host::AmbienteLocal&) {
      rutina(dynamic_cast<frmSalidasWizard&>(forma));
    });
  }
  void SinGancho(const std::string& clave) { anfitrion->Gancho(clave, {}); }
  void ControlaExistencia(const std::string& articulo = "A-100") {
    Sql("UPDATE prods SET Invent = 1 WHERE articulo = ?", {articulo});
  }
  void PermiteSinExistencia() { Sql("UPDATE usuarios SET existsalidas = 1 WHERE usuario = 'ANA'"); }
  // A stored document 7 with so many lines of A-100: 71, 72 ...
  void DocumentoGuardado(int renglones = 0, const char* estado = "PE", int ocupado = 0) {
    Sql("INSERT INTO salidas (salida, folio, tipo_doc, f_emision, almacen, importe, costo, estado, ocupado, "
        "observ, datos, usuario) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
        {7, 70, "VTA", "2024-02-28", 2, 23.2, 0, estado, ocupado, "Frágil", "Venta vieja", "LUIS"});
    for (int i = 1; i <= renglones; ++i) {
      Sql("INSERT INTO salpart (id_salida, salida, tipo_doc, articulo, cantidad, precio, observ, claveadd, "
          "prdescrip, prcantidad) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
          {70 + i, 7, "VTA", "A-100", i + 0.5, 11.6, i == 1 ? data::Value("Martillo") : data::Value(),
           i == 1 ? "" : "7501", "Caja", i});
    }
  }

  // ---- screens; one that was closed can still be read ----
  frmSalidasWizard& UltimaSalida() {
    auto& pantalla = dynamic_cast<frmSalidasWizard&>(*plataforma.Screens().back());
    vivas_.push_back(pantalla.shared_from_this());
    return pantalla;
  }
  frmSalidasWizard& NuevaSalida() {
    movimientos->NuevaSalida();
    return UltimaSalida();
  }
  frmSalidasWizard& ModificaSalida(int numero) {
    movimientos->ModificaSalida(numero);
    return UltimaSalida();
  }
  frmSalidasWizard& ConsultaSalida(int numero) {
    movimientos->ConsultaSalida(numero);
    return UltimaSalida();
  }
  // A new document with concept VTA, ready for its first line.
  frmSalidasWizard& ConConcepto() {
    frmSalidasWizard& f = NuevaSalida();
    Teclea(f, f.txtFields(campo::Concepto), "VTA");
    f.Enter(f.txtFields(campo::Articulo));
    return f;
  }
  // The same with these lines, the record emptied.
  frmSalidasWizard& Salida(std::initializer_list<std::pair<std::string, std::string>> renglones) {
    frmSalidasWizard& f = ConConcepto();
    for (const auto& [articulo, cantidad] : renglones) Linea(f, articulo, cantidad);
    Olvida();
    return f;
  }

  // ---- hands ----
  // A whole line by keyboard: article, quantity, price as the catalogue has it.
  static void Linea(frmSalidasWizard& f, const std::string& articulo, const std::string& cantidad) {
    Teclea(f, f.txtFields(campo::Articulo), articulo);
    Tecla(f, "Enter");
    Teclea(f, f.txtFields(campo::Cantidad), cantidad);
    Tecla(f, "Enter");
    Tecla(f, "Enter");
  }
  // A complete entry row, not yet stored.
  static void Fila(frmSalidasWizard& f, const std::string& articulo, const std::string& cantidad) {
    f.txtFields(campo::Articulo).Text(articulo);
    f.PonDescripcion();
    f.txtFields(campo::Cantidad).Text(cantidad);
  }
  void Finaliza(frmSalidasWizard& f, bool acepta = true) {
    bitacora.respuestas.push_back(acepta);
    Tecla(f, "F5", f.txtFields(campo::Concepto));
  }
  static std::string Celda(frmSalidasWizard& f, int renglon, int columna) {
    return f.fg2.TextMatrix(renglon, columna);
  }

  // ---- what was seen ----
  static std::string Reporte(const std::string& funcion, const std::string& texto = "falla provocada") {
    return Escenario::Reporte(funcion, texto, "frmSalidasWiz");
  }
  [[nodiscard]] int CuentaClaves(const std::string& clave) const {
    int cuantas = 0;
    for (const auto& gancho : bitacora.ganchos) cuantas += gancho.first == clave ? 1 : 0;
    return cuantas;
  }
  // A property that the posting object held at its nth call; "(nada)" if it was never set.
  [[nodiscard]] std::string Movido(std::size_t cual, const std::string& propiedad) const {
    for (const auto& [nombre, valor] : bitacora.movimientos.at(cual).first) {
      if (nombre == propiedad) return data::ToText(valor);
    }
    return "(nada)";
  }

 private:
  std::vector<std::shared_ptr<forms::Form>> vivas_;
};

}  // namespace tarvik::tests
