// Asking for a document, handing it over, saying no; and the line that was being typed.
#include "host/peticiones.h"

#include "host/renglon_en_curso.h"
#include "tests/host/puestos.h"

namespace tarvik::host {
namespace {

using tests::Escenario;

class Peticiones : public DosPuestos {
 protected:
  Peticion Pide(const frmEntradasWizard& f) {
    return luis.anfitrion->Pide(Tipo::Entrada, f.Entrada, "por favor");
  }
  std::string Cede() {
    auto waiting = ana.anfitrion->Peticiones();
    return waiting.empty() ? "(ninguna)" : ErrorDe([&] { waiting.front().Cede(); });
  }
  std::string Encabezado(const std::string& columns, const char* table = "entradas") {
    std::string all;
    const auto found = Sql("SELECT " + columns + " FROM " + table);
    for (const auto& value : found.rows.at(0)) all += data::ToText(value) + "|";
    return all;
  }
};

constexpr const char* kCedida = "(ningún error)";

TEST_F(Peticiones, ReachTheHolderWithWhoAsksWhereAndWhy) {
  auto& f = ana.Entrada({"5"});
  const Peticion mine = Pide(f);
  EXPECT_EQ(mine.Estado(), "pedida");
  const auto waiting = ana.anfitrion->Peticiones();
  ASSERT_EQ(waiting.size(), 1U);
  EXPECT_EQ(waiting[0].id, mine.id);
  EXPECT_EQ(waiting[0].documento, (Retenido{Tipo::Entrada, f.Entrada}));
  EXPECT_EQ(waiting[0].usuario, "LUIS");
  EXPECT_EQ(waiting[0].estacion, "E2");
  EXPECT_EQ(waiting[0].mensaje, "por favor");
  EXPECT_EQ(waiting[0].cuando, reloj);
  EXPECT_TRUE(luis.anfitrion->Peticiones().empty()) << "it is nothing to who doesn't hold it";
}

TEST_F(Peticiones, ASecondOneIsTheFirstWithOtherWords) {
  auto& f = ana.Entrada({"5"});
  const auto first = Pide(f);
  EXPECT_EQ(luis.anfitrion->Pide(Tipo::Entrada, f.Entrada, "ya").id, first.id);
  ASSERT_EQ(ana.anfitrion->Peticiones().size(), 1U);
  EXPECT_EQ(ana.anfitrion->Peticiones()[0].mensaje, "ya");
}

TEST_F(Peticiones, WithNobodyThereThereIsNobodyToAsk) {
  const auto number = Dejada();
  const auto asks = [&] { return ErrorDe([&] { luis.anfitrion->Pide(Tipo::Entrada, number); }); };
  EXPECT_EQ(asks(), "Nadie tiene abierta la entrada 1: no hay a quién pedirla");
  Sql("UPDATE entradas SET ocupado = 1");
  EXPECT_NE(asks(), kCedida) << "a flag alone answers nobody";
  Sql("UPDATE parametros SET valor = '0' WHERE nombre = 'SoloTarvik'");
  EXPECT_NE(asks(), kCedida);
  Sql("UPDATE entradas SET ocupado = 0");
  ana.puerta->ModificaEntrada(number);
  SeVa(ana);
  EXPECT_NE(asks(), kCedida) << "nor does a dead program";
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM peticiones"), "0");
}

TEST_F(Peticiones, OfAProgramThatIsGoneWaitNoLonger) {
  auto& f = ana.Entrada({"5"});
  Pide(f);
  SeVa(luis);
  EXPECT_TRUE(ana.anfitrion->Peticiones().empty());
}

// The card still stands on the holder's screen when the asker's machine goes off.
TEST_F(Peticiones, NothingIsHandedToWhoIsGone) {
  auto& f = ana.Entrada({"5"});
  f.txtFields(campo::Articulo).Text("A-200");
  Pide(f);
  auto waiting = ana.anfitrion->Peticiones();
  SeVa(luis);
  EXPECT_EQ(ErrorDe([&] { waiting.at(0).Cede(); }),
            "El programa de quien pidió la entrada 1 ya no está abierto; no se cedió");
  EXPECT_TRUE(f.Open());
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "A-200");
  EXPECT_EQ(waiting.at(0).Estado(), "pedida");
}

using Clase = Desenlace::Clase;

TEST_F(Peticiones, WhoAsksIsToldWhatBecameOfIt) {
  auto& f = ana.Entrada({"5"});
  Peticion mine = Pide(f);
  EXPECT_EQ(mine.Mira().clase, Clase::kEspera);
  ana.anfitrion->Peticiones().at(0).Niega("la termino yo");
  EXPECT_EQ(mine.Mira().clase, Clase::kNo);
  EXPECT_EQ(mine.Mira().texto, "No se cedió la entrada 1: la termino yo");
  mine = Pide(f);
  ana.anfitrion->Peticiones().at(0).Cede();
  EXPECT_EQ(mine.Mira().clase, Clase::kAbre);
}

// Nobody need answer who closes a document: whoever asked for it is not to wait for ever.
TEST_F(Peticiones, OneThatItsHolderClosesWithoutAnAnswerCanBeOpenedWhileItIsPending) {
  auto& f = ana.Entrada({"5"});
  const Peticion mine = Pide(f);
  f.Unload();
  EXPECT_EQ(mine.Estado(), "pedida");
  EXPECT_EQ(mine.Mira().clase, Clase::kAbre);
  const auto screen = luis.anfitrion->Abre(Tipo::Entrada, 1);
  ASSERT_NE(screen, nullptr);
  EXPECT_EQ(dynamic_cast<frmEntradasWizard&>(*screen).Modo, "MODIFICACION");
}

TEST_F(Peticiones, OneThatItsHolderFinishesOrDeletesHasNoMoreToBeOpened) {
  auto& f = ana.Entrada({"5"});
  const Peticion mine = Pide(f);
  Escenario::Tecla(f, "F5");
  EXPECT_EQ(mine.Mira().clase, Clase::kNo);
  EXPECT_EQ(mine.Mira().texto, "La entrada 1 ya está finalizada: quien la tenía la cerró sin contestar");
  Sql("DELETE FROM entpart");
  Sql("DELETE FROM entradas");
  EXPECT_EQ(mine.Mira().clase, Clase::kNo);
  EXPECT_EQ(mine.Mira().texto, "La entrada 1 ya no existe");
}

TEST_F(Peticiones, WhoHasItNoLongerSaysNeitherYesNorNo) {
  auto& f = ana.Entrada({"5"});
  const Peticion mine = Pide(f);
  auto waiting = ana.anfitrion->Peticiones();
  f.Unload();
  for (const std::string& said :
       {ErrorDe([&] { waiting.at(0).Niega("no"); }), ErrorDe([&] { waiting.at(0).Cede(); })}) {
    EXPECT_EQ(said, "Este programa ya no tiene abierta la entrada 1");
  }
  EXPECT_EQ(mine.Estado(), "pedida");
}

TEST_F(Peticiones, AHandOverTakesNobodyElsesLease) {
  auto& f = ana.Entrada({"5"});
  Pide(f);
  auto waiting = ana.anfitrion->Peticiones();
  // As her screen has closed somebody else opens another document, and the engine gives his lease her number.
  const int number = std::stoi(Uno("SELECT id FROM tenencias"));
  const auto gone = ana.plataforma.on_form_gone;
  ana.plataforma.on_form_gone = [&](forms::Form& screen) {
    gone(screen);
    Sql("INSERT INTO tenencias (id, tipo, documento, usuario, vida) VALUES (?, 'Entrada', 50, 'EVA', 9)",
        {number});
  };
  waiting.at(0).Cede();
  EXPECT_EQ(waiting.at(0).Estado(), "cedida");
  EXPECT_EQ(Uno("SELECT documento FROM tenencias"), "50");
}

TEST_F(Peticiones, ANoLeavesAllAsItIsAndSaysWhy) {
  auto& f = ana.Entrada({"5"});
  const Peticion mine = Pide(f);
  auto waiting = ana.anfitrion->Peticiones();
  waiting.at(0).Niega("la estoy terminando");
  EXPECT_EQ(mine.Estado(), "negada");
  EXPECT_EQ(mine.Motivo(), "la estoy terminando");
  EXPECT_TRUE(f.Open());
  EXPECT_TRUE(ana.anfitrion->Peticiones().empty());
  EXPECT_EQ(ErrorDe([&] { waiting.at(0).Cede(); }), "La petición de la entrada 1 ya se contestó");
  EXPECT_EQ(ErrorDe([&] { waiting.at(0).Niega(); }), "La petición de la entrada 1 ya se contestó");
}

TEST_F(Peticiones, AYesStoresClosesFreesAndIsOnRecord) {
  auto& f = ana.Entrada({"5", "6"});
  const std::int32_t number = f.Entrada;
  Escenario::Teclea(f, f.RichTextBox2, "urge");
  const Peticion mine = Pide(f);
  ana.testigo.sentencias.clear();
  EXPECT_EQ(Cede(), kCedida);
  EXPECT_FALSE(f.Open());
  EXPECT_EQ(mine.Estado(), "cedida");
  EXPECT_EQ(Encabezado("estado, ocupado, importe, observ"), "PE|0|1276|urge|");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM tenencias"), "0");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv"), "0");
  EXPECT_TRUE(ana.testigo.impresos.empty());
  EXPECT_EQ(ana.Cuenta("INSERT"), 0);
  const auto acts = ana.anfitrion->Bitacora();
  ASSERT_EQ(acts.size(), 1U);
  EXPECT_EQ(acts[0].acto, "cede");
  EXPECT_EQ(acts[0].usuario, "ANA");
  EXPECT_EQ(acts[0].texto, "A LUIS en la estación E2; la tenía ANA en la estación E1.");

  const auto screen = luis.anfitrion->Abre(Tipo::Entrada, number);
  ASSERT_NE(screen, nullptr);
  EXPECT_TRUE(luis.cajas.empty());
  EXPECT_EQ(dynamic_cast<frmEntradasWizard&>(*screen).CuantasPartidas(), 2);
}

TEST_F(Peticiones, AGoodsOutIsStoredWithoutAFolioAndWithTheRestOfItsHeader) {
  auto& f = ana.Salida({"5"});
  f.SSCheck1.Value(1);
  f.txtFields(campo::AlmacenDestino).Text("2");
  f.Check3.Value(0);
  luis.anfitrion->Pide(Tipo::Salida, f.Salida);
  EXPECT_EQ(Cede(), kCedida);
  EXPECT_FALSE(f.Open());
  EXPECT_EQ(Encabezado("estado, ocupado, folio, estacion, almt, estraspaso", "salidas"), "PE|0||E1|2|1|");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM series WHERE nombre = 'E1salida'"), "0");
}

TEST_F(Peticiones, TheSuitesOwnSaveOfAGoodsOutSendsWhatItSent) {
  auto& f = ana.Salida({"5"});
  ana.testigo.sentencias.clear();
  f.SalvaSalida();
  ASSERT_EQ(ana.testigo.sentencias.size(), 1U);
  EXPECT_EQ(
      ana.testigo.sentencias[0],
      "UPDATE salidas SET sucursal = '', esparasucursal = 0, folio = 1, estacion = 'E1', ocupado = 1, "
      "tipo_doc "
      "= 'VTA', f_emision = '2024-03-05', importe = 580, costo = 0, almacen = 1, estado = 'CO', observ = '', "
      "datos = 'Venta', usuario = 'ANA', usufecha = '2024-03-05', usuhora = '14:15:00', estraspaso = 0, "
      "cliente "
      "= '', fecharetorno = '2024-03-05', traspasoaestacion = 0, almt = 0, paraempleado = 0, empleado = '', "
      "direccionembarque = '' WHERE salida = 1");
}

TEST_F(Peticiones, AScreenThatRefusesToCloseKeepsItsDocument) {
  auto& f = ana.Entrada({"5"});
  const Peticion mine = Pide(f);
  ana.anfitrion->Gancho("ENTRADA006", [](forms::Form& form, AmbienteLocal&) {
    dynamic_cast<frmEntradasWizard&>(form).CancelaProceso = true;
  });
  EXPECT_EQ(Cede(), "La entrada 1 no se cedió: su pantalla no se dejó cerrar");
  EXPECT_TRUE(f.Open());
  EXPECT_EQ(mine.Estado(), "pedida");
  EXPECT_EQ(Encabezado("estado, ocupado"), "PE|1|");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM tenencias"), "1");
  EXPECT_TRUE(ana.anfitrion->Bitacora().empty());
  Escenario::Renglon(f, "A-200", "1");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "2") << "and goes on";
  ana.anfitrion->Gancho("ENTRADA006", {});
  EXPECT_EQ(Cede(), kCedida);
}

TEST_F(Peticiones, NobodyGetsADocumentWhoseHeaderCouldNotBeSaved) {
  auto& f = ana.Entrada({"5"});
  const Peticion mine = Pide(f);
  ana.testigo.falla_sentencia = "UPDATE entradas SET tipo_doc";
  EXPECT_EQ(Cede(), "No se pudo guardar la entrada 1 y no se cedió");
  ana.testigo.falla_sentencia.clear();
  EXPECT_TRUE(f.Open());
  EXPECT_EQ(mine.Estado(), "pedida");
  EXPECT_EQ(Encabezado("ocupado"), "1|");
}

TEST_F(Peticiones, InTheMiddleOfAnActNothingIsHandedOver) {
  auto& f = ana.Entrada({"5"});
  Pide(f);
  std::string during;
  ana.anfitrion->Gancho("ENTRADA005", [&](forms::Form&, AmbienteLocal&) { during = Cede(); });
  Escenario::Renglon(f, "A-200", "1");
  EXPECT_EQ(during, "Hay una operación en curso. Ceda la entrada 1 cuando termine");
  EXPECT_TRUE(f.Open());
}

TEST_F(Peticiones, WhatElseWasOpenOnTheDocumentBecomesReadOnly) {
  auto& f = ana.Entrada({"5"});
  Sql("UPDATE entradas SET ocupado = 0");
  Puesto eva(Direccion(), "EVA", "E3", reloj);
  eva.puerta->ModificaEntrada(f.Entrada);
  auto& g = dynamic_cast<frmEntradasWizard&>(*eva.plataforma.Screens().back());
  Pide(f);
  YLoSabe(eva, [&] { EXPECT_EQ(Cede(), kCedida); });
  EXPECT_NE(luis.anfitrion->Abre(Tipo::Entrada, g.Entrada), nullptr);
  Escenario::Tecla(g, "F2");
  EXPECT_EQ(g.Modo, "CONSULTA");
  EXPECT_NE(eva.UltimaCaja().find("ANA, en la estación E1, la cedió"), std::string::npos) << eva.UltimaCaja();
  EXPECT_NE(eva.UltimaCaja().find("A LUIS en la estación E2"), std::string::npos);
}

TEST_F(Peticiones, ADocumentThatItsHolderClosedIsSimplyOpenedAndAskedForNoMore) {
  auto& f = ana.Entrada({"5"});
  const std::int32_t number = f.Entrada;
  Pide(f);
  f.Unload();
  ASSERT_NE(luis.anfitrion->Abre(Tipo::Entrada, number), nullptr);
  luis.plataforma.Screens().back()->Unload();
  ana.puerta->ModificaEntrada(number);
  EXPECT_TRUE(ana.anfitrion->Peticiones().empty());
}

// ---- the line that was being typed ----

class RenglonEnCurso : public Peticiones {
 protected:
  // Hands over, opens on the other side and compares the entry rows, field by field.
  frmEntradasWizard& Pasa(frmEntradasWizard& f) {
    const std::string typed = TomaRenglonEnCurso(f, Tipo::Entrada);
    const std::int32_t number = f.Entrada;
    Pide(f);
    EXPECT_EQ(Cede(), kCedida);
    auto& g = dynamic_cast<frmEntradasWizard&>(*luis.anfitrion->Abre(Tipo::Entrada, number));
    EXPECT_EQ(TomaRenglonEnCurso(g, Tipo::Entrada), typed);
    EXPECT_TRUE(luis.cajas.empty()) << luis.UltimaCaja();
    return g;
  }
};

TEST_F(RenglonEnCurso, ArticleQuantityAndAPriceOfTheOperatorsOwn) {
  auto& f = ana.Entrada({"5"});
  Escenario::Teclea(f, f.txtFields(campo::Articulo), "A-200");
  Escenario::Tecla(f, "Enter");
  Escenario::Teclea(f, f.txtFields(campo::Cantidad), "7");
  Escenario::Tecla(f, "Enter");
  Escenario::Teclea(f, f.txtFields(campo::Precio), "41.5");
  auto& g = Pasa(f);
  EXPECT_EQ(g.txtFields(campo::Precio).Text(), "41.5");
  Escenario::Tecla(g, "Enter");
  EXPECT_EQ(Uno("SELECT cantidad FROM entpart WHERE articulo = 'A-200'"), "7");
  EXPECT_EQ(Uno("SELECT precio FROM entpart WHERE articulo = 'A-200'"), "41.5");
}

TEST_F(RenglonEnCurso, AHalfTypedArticleGoesOnWhereItStopped) {
  auto& f = ana.Entrada({"5"});
  Escenario::Teclea(f, f.txtFields(campo::Articulo), "A-2");
  auto& g = Pasa(f);
  for (const char* key : {"0", "0", "Enter"}) Escenario::Tecla(g, key);
  EXPECT_EQ(g.txtFields(campo::Articulo).Text(), "A-200");
  EXPECT_EQ(g.txtFields(campo::Descripcion).Text(), "Clavo");
}

TEST_F(RenglonEnCurso, ASecondKeyWithItsPresentations) {
  auto& f = ana.Entrada({"5"});
  Escenario::Teclea(f, f.txtFields(campo::Articulo), "7501");
  Escenario::Tecla(f, "Enter");
  f.Enter(f.txtFields(campo::Presentaciones));
  Escenario::Teclea(f, f.txtFields(campo::Presentaciones), "3");
  ASSERT_EQ(f.txtFields(campo::Cantidad).Text(), "36");
  f.Enter(f.txtFields(campo::Precio));
  Escenario::Teclea(f, f.txtFields(campo::Precio), "90");
  auto& g = Pasa(f);
  EXPECT_EQ(g.txtFields(campo::SegundaClave).Text(), "7501");
  Escenario::Tecla(g, "Enter");
  EXPECT_EQ(Uno("SELECT cantidad FROM entpart WHERE claveadd = '7501'"), "36");
}

TEST_F(RenglonEnCurso, AQuantityOverAPresentationAndAKeyThatIsNone) {
  auto& f = ana.Entrada({"5"});
  Escenario::Teclea(f, f.txtFields(campo::Articulo), "7501");
  Escenario::Tecla(f, "Enter");
  Escenario::Teclea(f, f.txtFields(campo::Cantidad), "11");
  Pasa(f).Unload();
  auto& g = ana.Entrada({"5"});
  Escenario::Teclea(g, g.txtFields(campo::SegundaClave), "75");
  Escenario::Teclea(g, g.txtFields(campo::Articulo), "A-100");
  Pasa(g);
}

TEST_F(RenglonEnCurso, AnEmptyRowLeavesAnEmptyRow) {
  auto& f = ana.Entrada({"5"});
  Pasa(f);
  EXPECT_EQ(Uno("SELECT renglon FROM peticiones"), "");
}

TEST_F(RenglonEnCurso, IsPutOnceAndByWhoAskedOnly) {
  auto& f = ana.Entrada({"5"});
  Escenario::Teclea(f, f.txtFields(campo::Articulo), "A-2");
  auto& g = Pasa(f);
  g.Unload();
  const auto again = luis.anfitrion->Abre(Tipo::Entrada, 1);
  ASSERT_NE(again, nullptr);
  EXPECT_EQ(dynamic_cast<frmEntradasWizard&>(*again).txtFields(campo::Articulo).Text(), "");
}

TEST_F(RenglonEnCurso, OfAGoodsOut) {
  for (const bool second_key : {false, true}) {
    auto& f = ana.Salida({"5"});
    Escenario::Teclea(f, f.txtFields(campo::Articulo), second_key ? "7501" : "A-200");
    Escenario::Tecla(f, "Enter");
    f.Enter(f.txtFields(second_key ? 28 : 5));
    Escenario::Teclea(f, f.txtFields(second_key ? 28 : 5), "4");
    f.Enter(f.txtFields(campo::Precio));
    Escenario::Teclea(f, f.txtFields(campo::Precio), "80");
    const auto document = RetenidoPor(f);
    const std::string typed = TomaRenglonEnCurso(f, Tipo::Salida);
    luis.anfitrion->Pide(Tipo::Salida, document->numero);
    EXPECT_EQ(Cede(), kCedida);
    const auto screen = luis.anfitrion->Abre(Tipo::Salida, document->numero);
    ASSERT_NE(screen, nullptr);
    auto& g = dynamic_cast<frmSalidasWizard&>(*screen);
    EXPECT_EQ(TomaRenglonEnCurso(g, Tipo::Salida), typed);
    EXPECT_EQ(g.ActiveControl(), &g.txtFields(campo::Precio));
    g.Unload();
  }
}

TEST_F(RenglonEnCurso, AFullFieldDoesNotMoveOnAndATextOfAnotherMakePutsNothing) {
  auto& f = ana.Entrada({"5"});
  auto& g = luis.Entrada({"1"});
  g.txtFields(campo::Precio).MaxLength(2);
  Escenario::Teclea(f, f.txtFields(campo::Articulo), "A-200");
  Escenario::Teclea(f, f.txtFields(campo::Cantidad), "2");
  Escenario::Teclea(f, f.txtFields(campo::Precio), "41");
  const std::string row = TomaRenglonEnCurso(f, Tipo::Entrada);
  PonRenglonEnCurso(g, Tipo::Entrada, row);
  EXPECT_EQ(g.txtFields(campo::Precio).Text(), "41");
  EXPECT_EQ(g.txtFields(campo::Precio).MaxLength(), 2);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart WHERE entrada = ?", {g.Entrada}), "1") << "no line was stored";
  for (const char* other : {"", "4", "4 99 A", "x", "foco 4", "14 1 9\n"}) {
    PonRenglonEnCurso(g, Tipo::Entrada, other);
    EXPECT_EQ(g.txtFields(campo::Articulo).Text(), "A-200") << other;
    EXPECT_EQ(g.txtFields(campo::Almacen).Text(), "1") << other;
  }
}

}  // namespace
}  // namespace tarvik::host
