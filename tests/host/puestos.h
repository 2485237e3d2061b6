// Two stations on one base: ANA at E1 and LUIS at E2, each a host with hands of its own, in one process.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "data/error.h"
#include "forms/headless_platform.h"
#include "goods_in/frm_entradas_wizard.h"
#include "goods_out/frm_salidas_wizard.h"
#include "host/anfitrion.h"
#include "host/peticiones.h"
#include "service/door/entradas_salidas.h"
#include "tests/host/apoyo.h"
#include "tests/support/base_de_prueba.h"
#include "tests/support/escenario.h"

namespace tarvik::host {

// The shop of the stories: concepts COM and VTA, warehouses 1 and 2, A-100 (with second key 7501, a box of
// 12) and A-200, of each 1,000 in stock.
inline void PonCatalogo(data::EngineConnection& base) {
  for (const char* text :
       {"INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES ('COM', 'E', 'Compra')",
        "INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES ('VTA', 'S', 'Venta')",
        "INSERT INTO ALMACEN (almacen) VALUES (1)", "INSERT INTO ALMACEN (almacen) VALUES (2)",
        "INSERT INTO impuestos (impuesto, valor) VALUES ('IVA', 16)",
        "INSERT INTO prods (articulo, descrip, unidad, precio1, impuesto, costo_u) VALUES ('A-100', "
        "'Martillo', "
        "'PZA', 100, 'IVA', 61.5)",
        "INSERT INTO prods (articulo, descrip, unidad, precio1, impuesto, costo_u) VALUES ('A-200', 'Clavo', "
        "'KG', "
        "43.1, 'IVA', 20)",
        "INSERT INTO clavesadd (clave, articulo, cantidad, Dato1, Dato2, unidad) VALUES ('7501', 'A-100', "
        "12, "
        "'Caja', 'Roja', 'CJ')",
        "INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (1, 'A-100', 1000)",
        "INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (1, 'A-200', 1000)"}) {
    base.Run(text, {});
  }
}

// The text of whatever leaves a procedure that a script calls; empty if nothing does.
template <class F>
std::string SaleDe(F&& procedure) {
  try {
    procedure();
  } catch (const std::exception& error) {
    return error.what();
  }
  return "";
}

// One station.
struct Puesto {
  Puesto(const std::string& base, const std::string& usuario, const std::string& estacion,
         const data::DateTime& reloj) {
    plataforma.clock = [&reloj] { return reloj; };
    plataforma.on_box = [this](forms::BoxKind kind, const std::string& text, int style) {
      cajas.push_back({kind, text, style});
      if (al_mostrar) al_mostrar();
      return kind != forms::BoxKind::Question || respuesta;
    };
    plataforma.on_unhandled = [this](forms::Form*, const std::string& text) { no_atrapados.push_back(text); };
    plataforma.on_screen_loaded = [this](forms::Form& screen) {
      vivas_.push_back(screen.shared_from_this());
    };
    Opciones opciones;
    opciones.base = base;
    opciones.usuario = usuario;
    opciones.estacion = estacion;
    opciones.ruta = carpeta.Ruta("datos").string();
    opciones.plataforma = &plataforma;
    opciones.testigo = &testigo;
    anfitrion = std::make_unique<Anfitrion>(opciones);
    puerta = std::make_unique<EntradasSalidas>(*anfitrion);
    puerta->Ambiente = &anfitrion->Ambiente();
    puerta->Parent = &anfitrion->Parent();
  }
  ~Puesto() { Termina(); }
  Puesto(const Puesto&) = delete;
  Puesto& operator=(const Puesto&) = delete;

  // The program is gone, with nothing closed: its leases and flags stay behind.
  void Termina() {
    puerta.reset();
    anfitrion.reset();
    const auto open = plataforma.Screens();
    for (const auto& screen : open) screen->Discard();
  }

  // A goods-in document with these lines of A-100, its screen open.
  frmEntradasWizard& Entrada(std::initializer_list<const char*> cantidades) {
    puerta->NuevaEntrada();
    auto& f = dynamic_cast<frmEntradasWizard&>(*plataforma.Screens().back());
    tests::Escenario::Teclea(f, f.txtFields(campo::Concepto), "COM");
    tests::Escenario::Tecla(f, "Enter");
    for (const char* cantidad : cantidades) tests::Escenario::Renglon(f, "A-100", cantidad);
    return f;
  }
  frmSalidasWizard& Salida(std::initializer_list<const char*> cantidades) {
    puerta->NuevaSalida();
    auto& f = dynamic_cast<frmSalidasWizard&>(*plataforma.Screens().back());
    tests::Escenario::Teclea(f, f.txtFields(campo::Concepto), "VTA");
    for (const char* cantidad : cantidades) RenglonDeSalida(f, "A-100", cantidad);
    return f;
  }
  static void RenglonDeSalida(frmSalidasWizard& f, const std::string& articulo, const std::string& cantidad) {
    f.Enter(f.txtFields(campo::Articulo));
    tests::Escenario::Teclea(f, f.txtFields(campo::Articulo), articulo);
    tests::Escenario::Tecla(f, "Enter");
    tests::Escenario::Teclea(f, f.txtFields(campo::Cantidad), cantidad);
    tests::Escenario::Tecla(f, "F9");
  }
  [[nodiscard]] std::string UltimaCaja() const { return cajas.empty() ? "" : cajas.back().texto; }
  [[nodiscard]] int Cuenta(const std::string& beginning) const {
    return static_cast<int>(
        std::count_if(testigo.sentencias.begin(), testigo.sentencias.end(),
                      [&](const std::string& sent) { return sent.starts_with(beginning); }));
  }

  CarpetaTemporal carpeta;
  std::vector<Caja> cajas;
  std::vector<std::string> no_atrapados;
  std::function<void()> al_mostrar;
  bool respuesta = true;
  forms::HeadlessPlatform plataforma;
  TestigoDePrueba testigo;
  std::unique_ptr<Anfitrion> anfitrion;
  std::unique_ptr<EntradasSalidas> puerta;

 private:
  std::vector<std::shared_ptr<forms::Form>> vivas_;  // one that was closed can still be read
};

class DosPuestos : public ::testing::Test {
  tests::BaseDePrueba base_;  // outlives the hosts
  CarpetaTemporal carpeta_;

 protected:
  // A base in memory is one host's alone; two share a file.
  [[nodiscard]] std::string Direccion() const {
    return base_.EnServidor() ? base_.Direccion() : "sqlite:" + carpeta_.Ruta("tienda.db").string();
  }
  [[nodiscard]] bool EnServidor() const { return base_.EnServidor(); }
  data::Rows Sql(const std::string& text, std::vector<data::Value> values = {}) {
    return aparte->Run(text, values);
  }
  std::string Uno(const std::string& text, std::vector<data::Value> values = {}) {
    const auto rows = Sql(text, std::move(values));
    if (rows.rows.empty()) return "(nada)";
    return rows.rows[0][0].IsNull() ? "(nulo)" : data::ToText(rows.rows[0][0]);
  }
  // Something that is written elsewhere, and the word of it: a server sends it a moment later.
  template <class F>
  void YLoSabe(Puesto& station, F&& act) {
    auto& connection = station.anfitrion->Conexion();
    const auto before = connection.Changes();
    act();
    for (int turn = 0; turn < 500 && connection.Changes() == before; ++turn) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
  }
  // The station's program is gone, and the server has noticed.
  void SeVa(Puesto& station) {
    data::Value session;
    if (EnServidor()) session = station.anfitrion->Conexion().Run("SELECT pg_backend_pid()", {}).rows[0][0];
    station.Termina();
    for (int turn = 0; EnServidor() && turn < 500; ++turn) {
      if (Sql("SELECT 1 FROM pg_stat_activity WHERE pid = ?", {session}).rows.empty()) return;
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
  }
  // A pending document that nobody has open, its lines of A-100.
  std::int32_t Dejada(std::initializer_list<const char*> cantidades = {"5"}) {
    auto& f = ana.Entrada(cantidades);
    const std::int32_t number = f.Entrada;
    f.Unload();
    return number;
  }

  data::DateTime reloj{{2024, 3, 5}, {14, 15, 0}};
  Puesto ana{Direccion(), "ANA", "E1", reloj};
  Puesto luis{Direccion(), "LUIS", "E2", reloj};
  std::unique_ptr<data::EngineConnection> aparte = [this] {
    auto made = ana.anfitrion->Base().Connect();
    PonCatalogo(*made);
    return made;
  }();
};

}  // namespace tarvik::host
