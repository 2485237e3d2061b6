// What did not run behind a posting is made up for: the keys in their order with the document's own screen,
// the page, and nothing twice.
#include "data/error.h"
#include "host/a_medias.h"
#include "host/cierres.h"
#include "tests/goods_out/support.h"

namespace tarvik::tests {
namespace {

using host::Tipo;

class FinDeCierre : public EscenarioDeSalidas {
 protected:
  // A transfer, finished long ago by a program that got no further than this.
  void Traspasada(const std::string& hecho, int imprime = 1) {
    frmSalidasWizard& f = ConConcepto();
    f.SSCheck1.Value(1);
    f.txtFields(campo::AlmacenDestino).Text("2");
    Linea(f, "A-100", "3");
    Finaliza(f);
    Sql("INSERT INTO cierres (tipo, documento, usuario, estacion, cuando, imprime, hecho) VALUES ('Salida', "
        "1, "
        "'LUIS', 'E2', '2024-03-04 10:00:00', ?, ?)",
        {imprime, hecho});
    Olvida();
  }
  std::string Termina(Tipo tipo = Tipo::Salida, std::int32_t documento = 1) {
    try {
      host::TerminaCierre(*anfitrion, tipo, documento);
    } catch (const data::Error& error) {
      return error.what();
    }
    return "";
  }
  // Keys of a finish that fired.
  Textos Corridas() {
    Textos keys;
    for (const std::string& key : Claves()) {
      if (key == "SALIDAS017" || key == "SALIDAS005") keys.push_back(key);
    }
    return keys;
  }
  std::string Hecho() { return Uno("SELECT hecho FROM cierres"); }
};

TEST_F(FinDeCierre, TheKeysRunInTheirOrderWithTheDocumentsScreenThenThePage) {
  Traspasada("");
  std::int32_t seen = 0;
  std::string mode;
  Gancho("SALIDAS017", [&](frmSalidasWizard& f) {
    seen = f.Salida;
    mode = f.Modo;
  });
  EXPECT_EQ(Termina(), "");
  EXPECT_EQ(Corridas(), (Textos{"SALIDAS017", "SALIDAS005"}));
  EXPECT_EQ(seen, 1);
  EXPECT_EQ(mode, "CONSULTA");
  ASSERT_EQ(bitacora.impresos.size(), 1U);
  EXPECT_EQ(bitacora.impresos[0].second, 1);
  EXPECT_TRUE(bitacora.movimientos.empty()) << "nothing is posted";
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM cierres"), "0");
  EXPECT_TRUE(plataforma.Screens().empty());
  Olvida();
  EXPECT_EQ(Termina(), "") << "nothing is missing any more";
  EXPECT_TRUE(Claves().empty());
}

TEST_F(FinDeCierre, WhatHasRunDoesNotRunAgain) {
  Traspasada("SALIDAS017,", 0);
  EXPECT_EQ(Termina(), "");
  EXPECT_EQ(Corridas(), Textos{"SALIDAS005"});
  EXPECT_TRUE(bitacora.impresos.empty());
}

TEST_F(FinDeCierre, AStepThatFailsStaysMissingWithThoseBehindIt) {
  Traspasada("");
  Gancho("SALIDAS005", [](frmSalidasWizard&) { throw data::Error("sin red"); });
  EXPECT_EQ(Termina(), "sin red");
  EXPECT_EQ(Hecho(), "SALIDAS017,");
  EXPECT_TRUE(bitacora.impresos.empty());
  EXPECT_TRUE(plataforma.Screens().empty());
  EXPECT_TRUE(no_atrapados.empty());
  SinGancho("SALIDAS005");
  Olvida();
  EXPECT_EQ(Termina(), "");
  EXPECT_EQ(Corridas(), Textos{"SALIDAS005"});
  EXPECT_EQ(bitacora.impresos.size(), 1U);
}

TEST_F(FinDeCierre, LinesThatAreMissingComeFirst) {
  Traspasada("");
  Sql("DELETE FROM movsinv");
  EXPECT_EQ(Termina(), "La salida 1 está afectada a medias: complétela antes de terminar su cierre");
  EXPECT_TRUE(Claves().empty());
  EXPECT_EQ(anfitrion->Completa(Tipo::Salida, 1), 2);
  EXPECT_EQ(Termina(), "");
  EXPECT_EQ(Corridas(), (Textos{"SALIDAS017", "SALIDAS005"}));
}

TEST_F(FinDeCierre, AWholeFinishHasNothingToRun) {
  frmSalidasWizard& f = ConConcepto();
  Linea(f, "A-100", "1");
  Finaliza(f);
  Olvida();
  EXPECT_EQ(Termina(), "");
  EXPECT_TRUE(Claves().empty());
  EXPECT_EQ(Termina(Tipo::Entrada, 9), "") << "nor has one that is not there";
}

TEST_F(FinDeCierre, WithoutAFormatThePageStaysMissing) {
  Traspasada("SALIDAS017,SALIDAS005,");
  Sql("DELETE FROM defform");
  EXPECT_EQ(Termina(), "No hay formato de impresión definido");
  EXPECT_EQ(Hecho(), "SALIDAS017,SALIDAS005,");
}

}  // namespace
}  // namespace tarvik::tests
