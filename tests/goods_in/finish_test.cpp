// "&Finalizar (F5)" from its checks to the closing of the screen: what stops it, what is left behind
// when it stops, printing and the host's list. What posting hands over is told in posting_test.cpp.
#include "goods_in/columnas.h"
#include "tests/support/escenario.h"

namespace tarvik::tests {
namespace {

using Textos = std::vector<std::string>;

class Finalizar : public Escenario {
 protected:
  Finalizar() { Catalogo(); }

  frmEntradasWizard& ConDos() {
    frmEntradasWizard& f = ConRenglones({{"A-100", "3"}, {"A-200", "2"}});
    viva_ = f.shared_from_this();
    Olvida();
    return f;
  }
  void Finaliza(frmEntradasWizard& f) {
    viva_ = f.shared_from_this();
    Tecla(f, "F5", f.txtFields(campo::Concepto));
  }
  void Acepta() { bitacora.respuestas.push_back(true); }
  void NadaEscrito(frmEntradasWizard& f) {
    EXPECT_EQ(CuentaSentencias("UPDATE"), 0);
    EXPECT_EQ(CuentaSentencias("INSERT"), 0);
    EXPECT_TRUE(f.Open());
    EXPECT_TRUE(f.Command2.Enabled());
    EXPECT_TRUE(f.Command5.Enabled());
    EXPECT_TRUE(bitacora.movimientos.empty());
    EXPECT_TRUE(bitacora.impresos.empty());
  }

 private:
  std::shared_ptr<forms::Form> viva_;  // a closed screen can still be read
};

TEST_F(Finalizar, AHeaderThatIsRefusedStopsIt) {
  frmEntradasWizard& f = ConDos();
  f.txtFields(campo::Concepto).Text("");
  Finaliza(f);
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::EntradaSinConcepto});
  NadaEscrito(f);
}

TEST_F(Finalizar, InAReadDocumentTheButtonIsAWayOut) {
  ConDos();
  frmEntradasWizard& f = Consulta(1);
  auto viva = f.shared_from_this();
  Olvida();
  f.Click(f.Command5);
  EXPECT_FALSE(f.Open());
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_EQ(CuentaSentencias("UPDATE"), 0);
  EXPECT_EQ(bitacora.regresadas, (Textos{"frmMaster"}));
}

TEST_F(Finalizar, AReadDocumentIsCheckedBeforeItIsLeft) {
  ConDos();
  Sql("DELETE FROM tipominv WHERE tipo_movim = 'COM'");
  frmEntradasWizard& f = Consulta(1);
  Olvida();
  f.Click(f.Command5);
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::EntradaNoExisteConcepto});
  EXPECT_TRUE(f.Open());
}

TEST_F(Finalizar, PostingIsAskedForAndNoLeavesAllAsItWas) {
  frmEntradasWizard& f = ConDos();
  bitacora.respuestas.push_back(false);
  Finaliza(f);
  ASSERT_EQ(bitacora.mensajes.size(), 1u);
  EXPECT_EQ(bitacora.mensajes[0].clase, "pregunta");
  EXPECT_EQ(bitacora.mensajes[0].texto, MensajeDeLaBase(mensaje::AfectaEntrada));
  EXPECT_EQ(bitacora.mensajes[0].estilo, 1);
  NadaEscrito(f);
  EXPECT_EQ(Uno("SELECT estado FROM entradas"), "PE");
  EXPECT_EQ(Uno("SELECT ocupado FROM entradas"), "1");
}

TEST_F(Finalizar, WithoutADateItStopsAtThePicker) {
  frmEntradasWizard& f = ConDos();
  f.DTPicker1.Value(std::nullopt);
  Acepta();
  Finaliza(f);
  EXPECT_EQ(Numeros(), (std::vector<int>{mensaje::AfectaEntrada, mensaje::NoEsFecha}));
  EXPECT_EQ(bitacora.mensajes.back().texto, MensajeDeLaBase(mensaje::NoEsFecha));
  EXPECT_EQ(bitacora.mensajes.back().estilo, 64);
  EXPECT_TRUE(f.DTPicker1.HasFocus());
  NadaEscrito(f);
}

TEST_F(Finalizar, WithoutADateAndWithTheDateBlockedItGoesOn) {
  frmEntradasWizard& f = ConDos();
  f.DTPicker1.Value(std::nullopt);
  f.DTPicker1.Enabled(false);
  f.Check3.Value(1);
  Finaliza(f);
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::NoEsFecha});
  EXPECT_FALSE(f.Open());
  EXPECT_EQ(Uno("SELECT ocupado FROM entradas"), "0");
}

TEST_F(Finalizar, ADateThatTheHostRefusesStopsItWithTheHostsWord) {
  frmEntradasWizard& f = ConDos();
  Sql("INSERT INTO movsinv (f_movim, cerrado) VALUES ('2024-04-01', 1)");
  Acepta();
  Finaliza(f);
  EXPECT_EQ(Numeros(), (std::vector<int>{mensaje::AfectaEntrada, mensaje::PeriodoCerrado}));
  NadaEscrito(f);
  EXPECT_EQ(Uno("SELECT estado FROM entradas"), "PE");
}

TEST_F(Finalizar, TheDateIsCheckedForAPendingDocumentToo) {
  frmEntradasWizard& f = ConDos();
  Sql("INSERT INTO movsinv (f_movim, cerrado) VALUES ('2024-04-01', 1)");
  f.Check3.Value(1);
  Finaliza(f);
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::PeriodoCerrado});
  NadaEscrito(f);
}

TEST_F(Finalizar, TheButtonsAreDisabledBeforePendingEventsRunSoASecondClickFindsNothing) {
  frmEntradasWizard& f = ConDos();
  Acepta();
  Acepta();
  bool corrio = false;
  auto pregunta = plataforma.on_box;
  plataforma.on_box = [&](forms::BoxKind clase, const std::string& texto, int estilo) {
    if (clase == forms::BoxKind::Question) {
      plataforma.Post([&] {
        corrio = true;
        EXPECT_FALSE(f.Command2.Enabled());
        EXPECT_FALSE(f.Command5.Enabled());
        EXPECT_EQ(Uno("SELECT estado FROM entradas"), "PE");
        f.Click(f.Command5);
        f.Click(f.Command2);
      });
    }
    return pregunta(clase, texto, estilo);
  };
  Finaliza(f);
  EXPECT_TRUE(corrio);
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::AfectaEntrada});
  EXPECT_EQ(bitacora.movimientos.size(), 2u);
}

TEST_F(Finalizar, AnEmptyDocumentIsSavedAsPendingAndOnlyTheCloseBoxLeadsOut) {
  frmEntradasWizard& f = Nueva();
  Teclea(f, f.txtFields(campo::Concepto), "COM");
  Acepta();
  Finaliza(f);
  EXPECT_EQ(Numeros(), (std::vector<int>{mensaje::AfectaEntrada, mensaje::EntradaSinRenglones}));
  EXPECT_EQ(bitacora.mensajes.back().estilo, 64);
  EXPECT_EQ(bitacora.mensajes.back().texto, MensajeDeLaBase(mensaje::EntradaSinRenglones));
  EXPECT_EQ(f.Check3.Value(), 1);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entradas"), "1");
  EXPECT_EQ(Uno("SELECT estado FROM entradas"), "PE");
  EXPECT_EQ(Uno("SELECT ocupado FROM entradas"), "0");
  EXPECT_EQ(f.Entrada, 1);
  EXPECT_EQ(f.Modo, "MODIFICACION");
  EXPECT_TRUE(f.Open());
  EXPECT_FALSE(f.Command2.Enabled());
  EXPECT_FALSE(f.Command5.Enabled());
  EXPECT_TRUE(bitacora.impresos.empty());
  EXPECT_TRUE(bitacora.llamadas.empty());
  for (const auto& clave : Claves()) EXPECT_NE(clave, "ENTRADA014");
  f.Click(f.Command2);
  EXPECT_TRUE(f.Open());
  f.Close();
  plataforma.Advance(10);
  EXPECT_FALSE(f.Open());
}

TEST_F(Finalizar, AnEmptyDocumentThatIsToStayPendingIsNotRemarkedOn) {
  frmEntradasWizard& f = Nueva();
  Teclea(f, f.txtFields(campo::Concepto), "COM");
  f.Check3.Value(1);
  Finaliza(f);
  EXPECT_TRUE(Numeros().empty());
  EXPECT_EQ(Uno("SELECT estado FROM entradas"), "PE");
  EXPECT_TRUE(f.Open());
  EXPECT_FALSE(f.Command5.Enabled());
}

TEST_F(Finalizar, ABlockedPendingBoxIsNotTicked) {
  frmEntradasWizard& f = Nueva();
  Teclea(f, f.txtFields(campo::Concepto), "COM");
  f.Check3.Enabled(false);
  Acepta();
  Finaliza(f);
  EXPECT_EQ(Numeros(), (std::vector<int>{mensaje::AfectaEntrada, mensaje::EntradaSinRenglones}));
  EXPECT_EQ(f.Check3.Value(), 0);
  EXPECT_TRUE(bitacora.movimientos.empty());
  EXPECT_TRUE(f.Open());
}

TEST_F(Finalizar, LinesAreCountedInTheGrid) {
  frmEntradasWizard& f = ConDos();
  EXPECT_EQ(f.CuantasPartidas(), 2);
  f.fg2.TextMatrix(4, columna_entrada::Articulo, "X");
  EXPECT_EQ(f.CuantasPartidas(), 2);  // a gap ends the count
  f.fg2.TextMatrix(1, columna_entrada::Articulo, " ");
  EXPECT_EQ(f.CuantasPartidas(), 0);
  for (int renglon = 1; renglon < 5000; ++renglon) f.fg2.TextMatrix(renglon, columna_entrada::Articulo, "X");
  EXPECT_EQ(f.CuantasPartidas(), 4999);
}

TEST_F(Finalizar, LinesThatAreStoredAndNotShownLeaveADocumentPending) {
  frmEntradasWizard& f = ConDos();
  f.fg2.TextMatrix(1, columna_entrada::Articulo, "");
  Acepta();
  Finaliza(f);
  EXPECT_EQ(Numeros(), (std::vector<int>{mensaje::AfectaEntrada, mensaje::EntradaSinRenglones}));
  EXPECT_EQ(Uno("SELECT estado FROM entradas"), "PE");
  EXPECT_TRUE(bitacora.movimientos.empty());
  EXPECT_EQ(bitacora.impresos.size(), 1u);
  EXPECT_FALSE(f.Open());
}

TEST_F(Finalizar, LinesThatAreShownAndNotStoredEndInTheSameDeadEnd) {
  frmEntradasWizard& f = ConDos();
  Sql("DELETE FROM entpart");
  Acepta();
  Finaliza(f);
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::AfectaEntrada});
  EXPECT_EQ(Uno("SELECT estado FROM entradas"), "CO");
  EXPECT_TRUE(bitacora.movimientos.empty());
  EXPECT_TRUE(f.Open());
  EXPECT_FALSE(f.Command2.Enabled());
  EXPECT_FALSE(f.Command5.Enabled());
}

TEST_F(Finalizar, APendingDocumentIsSavedPrintedAndClosedWithoutQuestionOrMovement) {
  frmEntradasWizard& f = ConDos();
  f.Check3.Value(1);
  Finaliza(f);
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_EQ(Uno("SELECT estado FROM entradas"), "PE");
  EXPECT_EQ(Uno("SELECT ocupado FROM entradas"), "0");
  EXPECT_TRUE(bitacora.movimientos.empty());
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv"), "0");
  EXPECT_EQ(bitacora.impresos, (std::vector<std::pair<std::string, std::int32_t>>{{"entrada", 1}}));
  for (const auto& clave : Claves()) {
    EXPECT_NE(clave, "ENTRADA014");
    EXPECT_NE(clave, "ENTRADA010");
  }
  EXPECT_FALSE(f.Open());
  EXPECT_EQ(bitacora.regresadas, (Textos{"frmMaster"}));
}

TEST_F(Finalizar, AnUntickedBoxPrintsNothing) {
  frmEntradasWizard& f = ConDos();
  EXPECT_EQ(f.Check2.Value(), 1);
  f.Check3.Value(1);
  f.Check2.Value(0);
  Finaliza(f);
  EXPECT_TRUE(bitacora.impresos.empty());
  EXPECT_EQ(CuentaSentencias("SELECT * FROM defform"), 0);

  frmEntradasWizard& g = Modifica(1);
  g.Check2.Value(0);
  Acepta();
  Finaliza(g);
  EXPECT_EQ(Uno("SELECT estado FROM entradas"), "CO");
  EXPECT_TRUE(bitacora.impresos.empty());
}

TEST_F(Finalizar, ThePrintFormatIsTheFirstRowsOwn) {
  Sql("UPDATE defform SET Entradas = 'entrada'");
  frmEntradasWizard& f = ConDos();
  Acepta();
  Finaliza(f);
  EXPECT_EQ(CuentaSentencias("SELECT * FROM defform"), 1);
  EXPECT_EQ(bitacora.impresos, (std::vector<std::pair<std::string, std::int32_t>>{{"entrada", 1}}));
}

TEST_F(Finalizar, WithoutAPrintFormatTheDocumentIsPostedAndTheScreenCloses) {
  Sql("DELETE FROM defform");
  frmEntradasWizard& f = ConDos();
  Acepta();
  Finaliza(f);
  EXPECT_EQ(Numeros(), (std::vector<int>{mensaje::AfectaEntrada, mensaje::SinFormato}));
  EXPECT_EQ(bitacora.mensajes.back().estilo, 64);
  EXPECT_EQ(bitacora.mensajes.back().texto, MensajeDeLaBase(mensaje::SinFormato));
  EXPECT_TRUE(bitacora.impresos.empty());
  EXPECT_EQ(Uno("SELECT estado FROM entradas"), "CO");
  EXPECT_EQ(bitacora.movimientos.size(), 2u);
  EXPECT_FALSE(f.Open());
}

TEST_F(Finalizar, TheHostsRoutinesSeeAPostedDocumentThatIsNotYetPrinted) {
  frmEntradasWizard& f = ConDos();
  Acepta();
  std::size_t movidos = 0;
  std::size_t impresos = 99;
  std::string estado;
  Gancho("ENTRADA014", [&](frmEntradasWizard& g) {
    movidos = bitacora.movimientos.size();
    impresos = bitacora.impresos.size();
    estado = data::ToText(g.rstEntrada->Fields("estado"));
    EXPECT_TRUE(g.Open());
  });
  Finaliza(f);
  EXPECT_EQ(movidos, 2u);
  EXPECT_EQ(impresos, 0u);
  EXPECT_EQ(estado, "CO");
  EXPECT_EQ(bitacora.impresos.size(), 1u);
}

TEST_F(Finalizar, AnAdjustmentFiresItsOwnKeyBehindThatOfEveryPosting) {
  frmEntradasWizard& f = ConDos();
  f.txtFields(campo::Concepto).Text("A++");
  Acepta();
  Finaliza(f);
  const Textos claves = Claves();
  ASSERT_GE(claves.size(), 3u);
  EXPECT_EQ(Textos(claves.end() - 3, claves.end()), (Textos{"ENTRADA014", "ENTRADA010", "ENTRADA006"}));
}

TEST_F(Finalizar, OnlyTheExactConceptIsAnAdjustment) {
  for (const char* concepto : {"COM", "a++", " A++", "A++ ", "A+"}) {
    Sql("INSERT INTO tipominv (tipo_movim, ent_sal, descrip) SELECT ?, 'E', 'x' WHERE NOT EXISTS (SELECT 1 "
        "FROM "
        "tipominv WHERE tipo_movim = ?)",
        {concepto, concepto});
    frmEntradasWizard& f = ConRenglones({{"A-100", "1"}});
    f.txtFields(campo::Concepto).Text(concepto);
    Olvida();
    Acepta();
    auto viva = f.shared_from_this();
    f.Command5_Click();
    EXPECT_FALSE(f.Open()) << concepto;
    int finales = 0;
    for (const auto& clave : Claves()) {
      finales += clave == "ENTRADA014" ? 1 : 0;
      EXPECT_NE(clave, "ENTRADA010") << concepto;
    }
    EXPECT_EQ(finales, 1) << concepto;
  }
}

TEST_F(Finalizar, APendingAdjustmentFiresNoKey) {
  frmEntradasWizard& f = ConDos();
  f.txtFields(campo::Concepto).Text("A++");
  f.Check3.Value(1);
  Finaliza(f);
  for (const auto& clave : Claves()) EXPECT_NE(clave, "ENTRADA010");
}

TEST_F(Finalizar, TheHostsListIsFilledAgainWhereItShowsTheDocumentsKind) {
  struct {
    const char* catalogo;
    int pendiente;
    Textos llamadas;
  } const casos[] = {{"Entradas", 0, {"LlenaEntradas(#)", "CreaMenuPopUp()"}},
                     {"EntradasPendientes", 1, {"LlenaEntradasPendientes(#)", "CreaMenuPopUp()"}},
                     {"Entradas", 1, {}},
                     {"EntradasPendientes", 0, {}},
                     {"Salidas", 0, {}},
                     {"", 1, {}}};
  for (const auto& [catalogo, pendiente, llamadas] : casos) {
    anfitrion->Parent().catalogo_activo = catalogo;
    frmEntradasWizard& f = ConDos();
    f.Check3.Value(pendiente);
    const std::string numero = std::to_string(f.Entrada);
    Acepta();
    Finaliza(f);
    bitacora.respuestas.clear();
    Textos esperadas = llamadas;
    for (auto& llamada : esperadas) {
      if (auto lugar = llamada.find('#'); lugar != std::string::npos) llamada.replace(lugar, 1, numero);
    }
    EXPECT_EQ(bitacora.llamadas, esperadas) << catalogo << pendiente;
    EXPECT_FALSE(f.Open());
    EXPECT_TRUE(Reportes().empty());
  }
}

TEST_F(Finalizar, WithoutAHostsFormNothingIsRefreshedAndTheScreenCloses) {
  movimientos->Parent = {};
  anfitrion->Parent().catalogo_activo = "Entradas";
  frmEntradasWizard& f = ConDos();
  Acepta();
  Finaliza(f);
  EXPECT_TRUE(bitacora.llamadas.empty());
  EXPECT_FALSE(f.Open());
  EXPECT_TRUE(Reportes().empty());
}

TEST_F(Finalizar, APendingDocumentOpenedAgainIsPostedThen) {
  frmEntradasWizard& f = ConDos();
  f.Check3.Value(1);
  Finaliza(f);
  frmEntradasWizard& g = Modifica(1);
  EXPECT_EQ(Uno("SELECT ocupado FROM entradas"), "1");
  Olvida();
  Acepta();
  Finaliza(g);
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::AfectaEntrada});
  EXPECT_EQ(Uno("SELECT estado FROM entradas"), "CO");
  EXPECT_EQ(Uno("SELECT ocupado FROM entradas"), "0");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv"), "2");
  EXPECT_EQ(CuentaSentencias("INSERT"), 0);
}

}  // namespace
}  // namespace tarvik::tests
