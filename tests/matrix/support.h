// EscenarioDeMalla: the colour and size matrix of a story. A matrix by itself, of any size and with any
// cells blocked, and the operator's hands on it; and a shop that sells a shirt in colours and sizes.
#pragma once

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "matrix/frm_malla_modelos.h"
#include "tests/support/escenario.h"

namespace tarvik::tests {

class EscenarioDeMalla : public Escenario {
 public:
  using Textos = std::vector<std::string>;
  using Casilla = std::pair<int, int>;  // row, column

  static constexpr int kPrimera = 3;  // the first colour's row, the first size's column
  static constexpr int kRojo = 0x0000C0;
  static constexpr int kRojoOscuro = 0x000080;
  static constexpr int kVerde = 0x008000;

  // ---- a matrix by itself ----
  // With so many colours and sizes, shown, the cursor on the first cell. The spacers around are blocked.
  frmMallaModelos& Malla(int colores, int tallas, const std::string& cantidad = "10",
                         std::initializer_list<Casilla> bloqueadas = {}) {
    if (malla_) malla_->Discard();
    malla_ = std::make_shared<frmMallaModelos>(*anfitrion);
    malla_->Load();
    forms::FlexGrid& g = malla_->fg2;
    g.CellEvents(false);
    g.Rows(colores + 4);
    g.Cols(tallas + 4);
    g.FixedRows(2);
    g.FixedCols(2);
    for (int fila = 2; fila < g.Rows(); ++fila) {
      for (int columna = 2; columna < g.Cols(); ++columna) {
        const bool espacio = fila == 2 || fila == g.Rows() - 1 || columna == 2 || columna == g.Cols() - 1;
        if (espacio) g.Blocked(fila, columna, true);
      }
    }
    for (auto [fila, columna] : bloqueadas) g.Blocked(fila, columna, true);
    g.MoveTo(kPrimera, kPrimera);
    g.CellEvents(true);
    malla_->Tag(cantidad);
    malla_->txtRemanente.Text(cantidad);
    malla_->Show(false);
    return *malla_;
  }

  // ---- hands ----
  // A quantity typed on the current cell and confirmed, which moves the cursor on.
  static void Pon(frmMallaModelos& m, const std::string& cantidad) {
    Teclea(m, m.fg2, cantidad);
    Tecla(m, "Enter");
  }
  static void Pon(frmMallaModelos& m, Casilla celda, const std::string& cantidad) {
    m.ClickCell(m.fg2, celda.first, celda.second);
    Pon(m, cantidad);
  }
  static Casilla Cursor(const frmMallaModelos& m) { return {m.fg2.Row(), m.fg2.Col()}; }

  // ---- a shop with a model ----
  // Over the usual shop: the model CAM, "Camisa", in blue and red and in three sizes. There is no red one in
  // the largest size. The shirts cost 61.5 and are taxed with IVA; the price of the line is the cost.
  void Camisas() {
    Catalogo();
    Sql("INSERT INTO modelos (modelo, descrip) VALUES ('CAM', 'Camisa')");
    Color("AZ", " Azul ", 0xFF0000);
    Color("RO", "Rojo", 0x0000FF);
    Talla("1CH", " Chica ");
    Talla("2MD", "Mediana");
    Talla("3GD", "Grande");
    for (const char* articulo : {"AZ-1CH", "AZ-2MD", "AZ-3GD", "RO-1CH", "RO-2MD"}) Articulo("CAM", articulo);
  }
  void Color(const std::string& clave, const std::string& nombre, const data::Value& visual) {
    Sql("INSERT INTO colores (color, descrip, visualcolor) VALUES (?, ?, ?)", {clave, nombre, visual});
  }
  void Talla(const std::string& clave, const std::string& nombre) {
    Sql("INSERT INTO tallas (talla, descrip) VALUES (?, ?)", {clave, nombre});
  }
  // "AZ-1CH" of the model "CAM" is the article "CAM-AZ-1CH".
  void Articulo(const std::string& modelo, const std::string& color_y_talla, const std::string& clave = "") {
    const auto guion = color_y_talla.find('-');
    Sql("INSERT INTO prods (articulo, descrip, unidad, precio1, impuesto, costo_u, modelo, color, talla) "
        "VALUES (?, 'Camisa', 'PZA', 100, 'IVA', 61.5, ?, ?, ?)",
        {clave.empty() ? modelo + "-" + color_y_talla : clave, modelo, color_y_talla.substr(0, guion),
         color_y_talla.substr(guion + 1)});
  }

  // A new document whose entry row holds this key and quantity, the cursor in the price. Forgets what was
  // seen.
  frmEntradasWizard& ConClave(const std::string& clave, const std::string& cantidad) {
    frmEntradasWizard& f = Nueva();
    viva_ = f.shared_from_this();
    Teclea(f, f.txtFields(campo::Concepto), "COM");
    Tecla(f, "Enter");
    Teclea(f, f.txtFields(campo::Articulo), clave);
    Tecla(f, "Enter");
    Teclea(f, f.txtFields(campo::Cantidad), cantidad);
    Tecla(f, "Enter");
    Olvida();
    return f;
  }
  // What the operator does while a matrix is shown.
  void Ante(std::function<void(frmMallaModelos&)> acto) {
    plataforma.on_modal = [this, acto = std::move(acto)](forms::Form& forma) {
      ++mostradas;
      acto(dynamic_cast<frmMallaModelos&>(forma));
    };
  }
  static void Acepta(frmMallaModelos& m) { m.Click(m.cmdAceptar); }
  int mostradas = 0;  // matrices shown

 private:
  std::shared_ptr<frmMallaModelos> malla_;
  std::shared_ptr<forms::Form> viva_;
};

}  // namespace tarvik::tests
