// A bench for the windows: a host on a base in memory, an office and a door, with documents to list.
#pragma once

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QSettings>
#include <QTemporaryDir>
#include <memory>
#include <string>
#include <vector>

#include "desktop/office.h"
#include "desktop/reading/paged_model.h"
#include "desktop/style/theme.h"
#include "forms/headless_platform.h"
#include "host/anfitrion.h"
#include "service/door/entradas_salidas.h"
#include "tests/desktop/support.h"
#include "tests/support/base_de_prueba.h"

namespace tarvik::desktop {

class Oficina : public ::testing::Test {
  tests::BaseDePrueba base_{tests::BaseDePrueba::Con::kNada};  // outlives the host

 protected:
  void SetUp() override {
    App();
    plataforma.clock = [] { return data::DateTime{{2026, 11, 21}, {12, 31, 0}}; };
    plataforma.on_box = [this](forms::BoxKind, const std::string& text, int) {
      cajas.push_back(text);
      return respuesta;
    };
    host::Opciones opciones;
    opciones.base = base_.Direccion();
    opciones.usuario = "ANA";
    opciones.estacion = "E1";
    opciones.ruta = carpeta.path().toStdString();
    opciones.demo = true;
    opciones.plataforma = &plataforma;
    anfitrion = std::make_unique<host::Anfitrion>(opciones);
    ajustes =
        std::make_unique<QSettings>(carpeta.filePath(QStringLiteral("ajustes.ini")), QSettings::IniFormat);
    lector = std::make_unique<Reader>(anfitrion->Base());
    oficina = std::make_unique<Office>(Office{*anfitrion, tema, *ajustes, *lector});
    puerta = std::make_unique<EntradasSalidas>(*anfitrion);
    puerta->Ambiente = &anfitrion->Ambiente();
    puerta->Parent = &anfitrion->Parent();
  }

  void Sql(const std::string& text, std::initializer_list<data::Value> values = {}) {
    anfitrion->Conexion().Run(text, values);
  }
  data::Value Dato(const std::string& text, std::initializer_list<data::Value> values = {}) {
    const auto rows = anfitrion->Conexion().Run(text, values);
    return rows.rows.empty() ? data::Value("(sin renglón)") : rows.rows.front().front();
  }
  void Entrada(int number, const std::string& state = "CO", const std::string& concept_key = "COM",
               const std::string& remarks = "", data::Date date = {2026, 11, 20}, double amount = 100) {
    Sql("INSERT INTO entradas (entrada, tipo_doc, f_emision, almacen, importe, estado, ocupado, observ, "
        "usuario, moneda) "
        "VALUES (?, ?, ?, 1, ?, ?, 0, ?, 'BETO', 'MXN')",
        {number, concept_key, date, amount, state, remarks});
  }
  void Salida(int number, const std::string& state = "CO") {
    Sql("INSERT INTO salidas (salida, folio, tipo_doc, f_emision, almacen, importe, estado, ocupado, "
        "usuario) "
        "VALUES (?, ?, 'VTA', '2026-11-20', 1, 50, ?, 0, 'BETO')",
        {number, number, state});
  }
  // Many posted documents, 1 to `last`, of 10 each.
  void Entradas(int last) {
    Sql("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < ?) INSERT INTO entradas "
        "(entrada, tipo_doc, f_emision, almacen, importe, estado, ocupado) SELECT i, 'COM', '2026-11-20', 1, "
        "10, "
        "'CO', 0 FROM n",
        {last});
  }

  // Lets the window's thread work until it is so; false after ten seconds.
  template <class Condition>
  static bool Until(Condition&& condition) {
    QElapsedTimer clock;
    clock.start();
    while (!condition() && clock.elapsed() < 10000) QCoreApplication::processEvents();
    return condition();
  }
  static bool Rests(const PagedModel& model) {
    return Until([&] { return !model.Busy(); });
  }
  static bool SumsReady(const PagedModel& model) {
    return Until([&] { return !model.Busy() && model.Total().has_value(); });
  }

  QTemporaryDir carpeta;
  Theme tema{Theme::Mode::Light};
  forms::HeadlessPlatform plataforma;
  std::vector<std::string> cajas;
  bool respuesta = false;
  std::unique_ptr<host::Anfitrion> anfitrion;
  std::unique_ptr<QSettings> ajustes;
  std::unique_ptr<Reader> lector;
  std::unique_ptr<Office> oficina;
  std::unique_ptr<EntradasSalidas> puerta;
};

}  // namespace tarvik::desktop
