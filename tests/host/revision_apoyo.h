// A shop whose books are sound, entered and posted through the screens, and the eyes that look through them.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "host/bitacora.h"
#include "host/revision.h"
#include "tests/goods_out/support.h"

namespace tarvik::tests {

class Libros : public EscenarioDeSalidas {
 protected:
  using Observaciones = std::vector<host::Observacion>;

  // No stock but what the screens will have received.
  Libros() { Sql("DELETE FROM existenciaalmacen"); }

  // A day: goods-in 1 (20 and 10), goods-out 1 (3), transfer 2 to warehouse 2 (4 and 1), goods-in 2 pending.
  // Lines 1 and 2 of goods-in; 1, 2 and 3 of goods-out. The ledger's rows 1 to 7.
  void Dia() {
    Entrada({{"A-100", "20"}, {"A-200", "10"}});
    Finaliza(Salida({{"A-100", "3"}}));
    Traspaso();
    ConRenglones({{"A-100", "5"}}).Unload();
    ASSERT_TRUE(plataforma.Screens().empty());
    ASSERT_EQ(Uno("SELECT COUNT(*) FROM movsinv"), "7");
  }
  void Entrada(std::initializer_list<std::pair<std::string, std::string>> renglones) {
    frmEntradasWizard& f = ConRenglones(renglones);
    bitacora.respuestas = {true};
    Tecla(f, "F5", f.txtFields(campo::Concepto));
  }
  void Traspaso() {
    frmSalidasWizard& f = ConConcepto();
    f.SSCheck1.Value(1);
    f.txtFields(campo::AlmacenDestino).Text("2");
    Linea(f, "A-100", "4");
    Linea(f, "A-200", "1");
    Finaliza(f);
  }

  host::Revisor Quien() {
    return {.conexion = anfitrion->Conexion(),
            .ahora = reloj,
            .usuario = "ANA",
            .estacion = "E1",
            .completa = [this](host::Tipo tipo, std::int32_t n) { return anfitrion->Completa(tipo, n); }};
  }
  Observaciones Revisa(bool repara = false, bool huecos = false) {
    return host::Revisa(Quien(), repara, huecos);
  }
  // The only one; says what there is if it is not alone.
  host::Observacion Una(bool repara = false) {
    const Observaciones found = Revisa(repara);
    EXPECT_EQ(found.size(), 1U) << Dichas(found);
    return found.empty() ? host::Observacion{} : found.front();
  }
  // Class, kind, document, line, article, warehouse: "distinto|Entrada|1|2|A-100|1"; "-" where it is not set.
  static std::string Ficha(const host::Observacion& one) {
    const auto text = [](const auto& value) {
      if (!value) return std::string("-");
      return data::ToText(data::Value(*value));
    };
    return one.clase + "|" + text(one.tipo) + "|" + text(one.documento) + "|" + text(one.renglon) + "|" +
           text(one.articulo) + "|" + text(one.almacen);
  }
  static Textos Fichas(const Observaciones& found) {
    Textos all;
    for (const auto& one : found) all.push_back(Ficha(one));
    return all;
  }
  static std::string Dichas(const Observaciones& found) {
    std::string all;
    for (const auto& one : found) all += Ficha(one) + ": " + one.texto + "\n";
    return all;
  }
  bool EnServidor() { return anfitrion->Conexion().Kind() == data::Dialect::Postgresql; }
  // As nobody should: behind the base's own rules.
  void SinReglas(const std::string& text) {
    Sql(EnServidor() ? "SET session_replication_role = replica" : "PRAGMA foreign_keys = OFF");
    Sql(text);
    Sql(EnServidor() ? "SET session_replication_role = origin" : "PRAGMA foreign_keys = ON");
  }
  Textos Reparaciones() {
    Textos acts;
    for (const auto& act : host::LeeBitacora(anfitrion->Conexion())) {
      if (act.acto == "repara") acts.push_back(act.texto);
    }
    return acts;
  }
};

}  // namespace tarvik::tests
