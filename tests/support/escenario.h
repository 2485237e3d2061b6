// Escenario: a warehouse in memory for one story. A host on a base of its own, an operator's hands,
// and a record of what was shown, sent, fired and posted. Every story runs on the engine that
// TARVIK_TEST_BASE names (an address; by default the embedded one in memory).
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "forms/headless_platform.h"
#include "forms/keys.h"
#include "goods_in/frm_entradas_wizard.h"
#include "host/anfitrion.h"
#include "host/testimonio.h"
#include "service/door/entradas_salidas.h"
#include "tests/support/base_de_prueba.h"

namespace tarvik::tests {

// What happened, in order.
class Bitacora final : public host::Testimonio, public host::Selector {
 public:
  std::vector<std::string> sentencias;
  std::vector<host::MensajeVisto> mensajes;
  std::deque<bool> respuestas;  // to the questions to come; none left answers No
  std::vector<std::pair<std::string, data::Value>> ganchos;
  std::vector<std::pair<host::Propiedades, double>> movimientos;
  std::vector<std::pair<std::string, std::int32_t>> impresos;
  std::vector<std::string> presentadas;  // names of screens
  std::vector<std::string> regresadas;   // names handed to RegresaForma
  std::vector<std::string> llamadas;     // "LlenaEntradas(7)"
  std::vector<std::string> selectores;   // "BuscadorCatalogo|Articulos|txtFields(4)"
  std::function<std::optional<std::string>(forms::TextBox&)> elige;
  std::function<void(std::string_view)> al_anotar;  // just before a statement is sent

  void Gancho(const std::string& key, const data::Value& value) override { ganchos.emplace_back(key, value); }
  void Movimiento(const host::Propiedades& properties, double amount) override {
    movimientos.emplace_back(properties, amount);
  }
  void Impreso(const std::string& format, std::int32_t number) override {
    impresos.emplace_back(format, number);
  }
  void Presentada(forms::Form& form) override { presentadas.push_back(form.Name()); }
  void Regresada(forms::Form&, const std::string& name) override { regresadas.push_back(name); }
  void LlamadaDeParent(std::string_view name, const std::vector<data::Value>& arguments) override {
    std::string call = std::string(name) + "(";
    for (const auto& argument : arguments) call += (call.back() == '(' ? "" : ",") + data::ToText(argument);
    llamadas.push_back(call + ")");
  }
  bool Elige(const std::string& clase, const std::string& titulo, forms::TextBox& campo,
             std::string& elegido) override {
    selectores.push_back(clase + "|" + titulo + "|" + campo.FullName());
    auto dado = elige ? elige(campo) : std::nullopt;
    if (dado) elegido = *dado;
    return dado.has_value();
  }

 protected:
  void AnotaSentencia(std::string_view text) override {
    sentencias.emplace_back(text);
    if (const auto oye = al_anotar) oye(text);
  }
  void AnotaMensaje(const host::MensajeVisto& mensaje) override { mensajes.push_back(mensaje); }
  bool SiguienteRespuesta() override {
    if (respuestas.empty()) return false;
    const bool respuesta = respuestas.front();
    respuestas.pop_front();
    return respuesta;
  }
};

class Escenario : public ::testing::Test {
 private:
  BaseDePrueba base_;  // outlives the host

 public:
  Escenario();
  ~Escenario() override;
  // The program begun anew, on its base by another address.
  void Abre(const std::string& direccion);

  // ---- the world ----
  forms::HeadlessPlatform plataforma;
  Bitacora bitacora;
  std::unique_ptr<host::Anfitrion> anfitrion;
  std::unique_ptr<EntradasSalidas> movimientos;
  std::filesystem::path ruta;  // Ambiente.RutaBase
  data::DateTime reloj{{2024, 3, 5}, {14, 3, 22}};
  int pitidos = 0;
  std::vector<std::string> listas;        // fields whose search list was asked for
  std::vector<std::string> no_atrapados;  // errors that left an event with no trap

  [[nodiscard]] const std::string& Direccion() const { return base_.Direccion(); }
  // Runs one statement outside the system, with "?" for each value.
  data::Rows Sql(const std::string& text, std::vector<data::Value> values = {});
  // The first value of the first row, as plain text; "(nada)" for no row, "(nulo)" for null.
  std::string Uno(const std::string& text, std::vector<data::Value> values = {});
  // Sets a routine behind a hook.
  void Gancho(const std::string& clave, std::function<void(frmEntradasWizard&)> rutina);
  std::string MensajeDeLaBase(int numero);

  // The usual shop: concept COM, warehouses 1 and 2, tax IVA of 16 %, articles A-100 (100.00 before tax, PZA)
  // and A-200 (43.10, KG), second key 7501 of A-100 (box of 12, "Caja", "Roja", unit CJ).
  void Catalogo();

  // ---- screens ----
  frmEntradasWizard& Nueva();  // NuevaEntrada, and its screen
  frmEntradasWizard& Modifica(int numero);
  frmEntradasWizard& Consulta(int numero);
  frmEntradasWizard& Ultima();  // the last screen opened

  // ---- hands ----
  static void Teclea(forms::Form& forma, forms::Control& control, const std::string& texto) {
    forma.Type(control, texto);
  }
  static void Tecla(forms::Form& forma, const std::string& nombre) { forma.Press(*forms::KeyNamed(nombre)); }
  static void Tecla(forms::Form& forma, const std::string& nombre, forms::Control& control) {
    forma.Enter(control);
    forma.Press(*forms::KeyNamed(nombre));
  }
  // A whole line by keyboard: article, quantity, price as the catalogue has it.
  static void Renglon(frmEntradasWizard& f, const std::string& articulo, const std::string& cantidad);
  // A new document with concept COM and these lines, its screen still open.
  frmEntradasWizard& ConRenglones(std::initializer_list<std::pair<std::string, std::string>> renglones);
  static std::string Celda(frmEntradasWizard& f, int renglon, int columna) {
    return f.fg2.TextMatrix(renglon, columna);
  }

  // ---- what was seen ----
  // The numbers of all messages shown, in order: {341, 726}.
  [[nodiscard]] std::vector<int> Numeros() const;
  // The texts of the error reports (plain boxes), without their first line's time.
  [[nodiscard]] std::vector<std::string> Reportes() const;
  // Report of a step that a test made to fail, in a procedure of goods-in.
  static std::string Reporte(const std::string& funcion, const std::string& texto = "falla provocada",
                             const std::string& modulo = "frmEntradasWi");
  [[nodiscard]] std::vector<std::string> Claves() const;  // hooks fired, in order
  [[nodiscard]] int CuentaSentencias(const std::string& principio) const;
  [[nodiscard]] std::string ArchivoDelDia() const;  // contents of the day's log, "" if there is none
  void Olvida();                                    // empties the record

 private:
  std::unique_ptr<data::EngineConnection> aparte_;
};

}  // namespace tarvik::tests
