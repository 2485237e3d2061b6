// Documents that were posted in part: a finish that broke off is seen, completed as the screen would have
// done it, and what did not run behind it is said.
#include "host/a_medias.h"

#include "host/bitacora.h"
#include "tests/goods_out/support.h"

namespace tarvik::tests {
namespace {

using host::Tipo;
using Ids = std::vector<std::int32_t>;

class AMedias : public EscenarioDeSalidas {
 protected:
  // The ledger as it stands, row by row, without what may differ between two runs.
  Textos Libro() {
    Textos rows;
    const data::Rows found = Sql(
        "SELECT ent_sal, clavelocal, f_movim, almacen, movimiento, tipo_doc, usuario, documento, operacion, "
        "articulo, cantidad, precio, id_entrada, id_salida, claveadd, estaciontraspaso, cerrado, saldo FROM "
        "movsinv ORDER BY id");
    for (const auto& row : found.rows) {
      std::string text;
      for (const auto& value : row) text += (value.IsNull() ? "~" : data::ToText(value)) + "|";
      rows.push_back(text);
    }
    return rows;
  }
  Textos Existencias() {
    Textos rows;
    for (const auto& row :
         Sql("SELECT almacen, articulo, existencia FROM existenciaalmacen ORDER BY almacen, articulo").rows) {
      rows.push_back(data::ToText(row[0]) + "|" + data::ToText(row[1]) + "|" + data::ToText(row[2]));
    }
    return rows;
  }
  std::string Rechazo(Tipo tipo, std::int32_t numero) {
    try {
      anfitrion->Completa(tipo, numero);
    } catch (const data::Error& error) {
      return error.what();
    }
    return "(ningún error)";
  }
  // As if the program had been killed in the middle: these movements were never made. What they did to the
  // stock is not there either.
  void QuitaMovimientos(const std::string& donde) {
    Sql("UPDATE existenciaalmacen SET existencia = existencia - COALESCE((SELECT SUM(CASE WHEN m.ent_sal = "
        "'E' "
        "THEN m.cantidad ELSE -m.cantidad END) FROM movsinv m WHERE m.almacen = existenciaalmacen.almacen "
        "AND "
        "m.articulo = existenciaalmacen.articulo AND m." +
        donde + "), 0)");
    Sql("DELETE FROM movsinv WHERE " + donde);
  }
  frmSalidasWizard& Traspaso() {
    frmSalidasWizard& f = ConConcepto();
    f.SSCheck1.Value(1);
    f.txtFields(campo::AlmacenDestino).Text("2");
    f.SSCheck2.Value(1);
    f.txtFields(campo::EstacionDestino).Text("E2");
    Linea(f, "A-100", "3");
    Linea(f, "A-200", "1");
    Linea(f, "A-100", "2");
    return f;
  }
};

TEST_F(AMedias, InASoundShopThereIsNone) {
  Tecla(ConRenglones({{"A-100", "3"}}), "Esc");
  Finaliza(Salida({{"A-100", "1"}}));
  ConRenglones({{"A-200", "2"}});
  EXPECT_TRUE(anfitrion->AMedias().empty());
}

TEST_F(AMedias, APostingThatFailedOnALineIsSeenAndCompletedOnce) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "3"}, {"A-200", "2"}, {"A-100", "1"}});
  bitacora.FallaServicio("Afecta", 2, "falla provocada");
  bitacora.respuestas = {true};
  Tecla(f, "F5", f.txtFields(campo::Concepto));
  const auto half = anfitrion->AMedias();
  ASSERT_EQ(half.size(), 1U);
  EXPECT_EQ(half[0].tipo, Tipo::Entrada);
  EXPECT_EQ(half[0].documento, 1);
  EXPECT_EQ(half[0].estado, "CO");
  EXPECT_EQ(half[0].renglones, 3);
  EXPECT_EQ(half[0].faltan, (Ids{1, 2}));
  EXPECT_EQ(anfitrion->Completa(Tipo::Entrada, 1), 2);
  EXPECT_TRUE(anfitrion->AMedias().empty());
  EXPECT_EQ(anfitrion->Completa(Tipo::Entrada, 1), 0) << "whole by now";
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv"), "3");
}

// The same document twice, once undisturbed and once completed: the ledger is the same.
TEST_F(AMedias, ACompletedTransferIsAsAnUndisturbedOne) {
  Finaliza(Traspaso());
  const Textos ledger = Libro();
  const Textos stock = Existencias();
  ASSERT_EQ(ledger.size(), 6U);
  for (const std::string where : {"id > 0", "operacion = 'T+'", "id_salida > 1", "id_salida = 3"}) {
    QuitaMovimientos(where);
    anfitrion->Completa(Tipo::Salida, 1);
    Textos now = Libro();
    Textos then = ledger;
    if (where == "id > 0") {
      EXPECT_EQ(now, then);
    }
    // Rows that came later bear the balance of later; the rest is as it was, in whatever order.
    const auto without_balance = [](Textos& rows) {
      for (std::string& row : rows) row.erase(row.rfind('|', row.size() - 2));
      std::sort(rows.begin(), rows.end());
    };
    without_balance(now);
    without_balance(then);
    EXPECT_EQ(now, then) << where;
    EXPECT_EQ(Existencias(), stock) << where;
    EXPECT_TRUE(anfitrion->AMedias().empty()) << where;
  }
}

TEST_F(AMedias, OfATransferTheLinesThatLeftAndDidNotArriveAreMissing) {
  Finaliza(Traspaso());
  QuitaMovimientos("operacion = 'T+' AND id_salida = 2");
  const auto half = anfitrion->AMedias();
  ASSERT_EQ(half.size(), 1U);
  EXPECT_EQ(half[0].tipo, Tipo::Salida);
  EXPECT_EQ(half[0].renglones, 3);
  EXPECT_EQ(half[0].faltan, Ids{2});
  EXPECT_EQ(anfitrion->Completa(Tipo::Salida, 1), 1);
  EXPECT_EQ(Uno("SELECT estaciontraspaso FROM movsinv WHERE operacion = 'T+' AND id_salida = 2"), "E2");
}

TEST_F(AMedias, APendingDocumentWithLinesThatHaveMovedSaysSoAndMovesTheRest) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "3"}, {"A-200", "2"}});
  bitacora.Falla("UPDATE entradas SET tipo_doc", 1, "falla provocada");
  bitacora.FallaServicio("Afecta", 1, "falla provocada");
  bitacora.respuestas = {true};
  Tecla(f, "F5", f.txtFields(campo::Concepto));
  EXPECT_EQ(Uno("SELECT estado FROM entradas"), "PE");
  auto half = anfitrion->AMedias();
  ASSERT_EQ(half.size(), 1U);
  EXPECT_EQ(half[0].estado, "PE");
  EXPECT_EQ(half[0].renglones, 2);
  EXPECT_EQ(half[0].faltan, Ids{1});
  EXPECT_EQ(Rechazo(Tipo::Entrada, 1),
            "La entrada 1 está pendiente: sus renglones se afectan al finalizarla");
  Sql("UPDATE entradas SET ocupado = 0");
  bitacora.respuestas = {true};
  frmEntradasWizard& otra = Modifica(1);
  Tecla(otra, "F5", otra.txtFields(campo::Concepto));
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv"), "2") << "each line once";
  EXPECT_EQ(Uno("SELECT existencia FROM existenciaalmacen WHERE articulo = 'A-200'"), "6");
  EXPECT_TRUE(anfitrion->AMedias().empty());
}

TEST_F(AMedias, ADocumentThatSomebodyAliveHoldsIsBeingPosted) {
  Finaliza(Salida({{"A-100", "1"}}));
  Sql("DELETE FROM movsinv");
  anfitrion->Conexion().Live(31);
  Sql("INSERT INTO tenencias (tipo, documento, usuario, estacion, vida) VALUES ('Salida', 1, 'LUIS', 'E2', "
      "31)");
  EXPECT_TRUE(anfitrion->AMedias().empty());
  EXPECT_EQ(Rechazo(Tipo::Salida, 1),
            "La salida 1 la tiene abierta LUIS en la estación E2: se está afectando");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv"), "0");
  Sql("UPDATE tenencias SET vida = 30");
  EXPECT_EQ(anfitrion->AMedias().size(), 1U) << "its program is gone";
  EXPECT_EQ(anfitrion->Completa(Tipo::Salida, 1), 1);
}

TEST_F(AMedias, WhatIsNotThereIsRefused) {
  EXPECT_EQ(Rechazo(Tipo::Entrada, 5), "No existe la entrada 5");
  EXPECT_EQ(Rechazo(Tipo::Salida, 5), "No existe la salida 5");
}

TEST_F(AMedias, ACompletionIsWholeOrNotAtAll) {
  Finaliza(Salida({{"A-100", "1"}, {"A-200", "1"}}));
  QuitaMovimientos("id > 0");
  const Textos stock = Existencias();
  int calls = 0;
  auto clock = plataforma.clock;
  // The clock is asked for each movement: the second one finds the base gone.
  plataforma.clock = [&] {
    if (++calls == 2) throw data::Error("falla provocada");
    return clock();
  };
  EXPECT_EQ(Rechazo(Tipo::Salida, 1), "falla provocada");
  plataforma.clock = clock;
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv"), "0");
  EXPECT_EQ(Existencias(), stock);
  EXPECT_TRUE(host::LeeBitacora(anfitrion->Conexion()).empty());
  EXPECT_EQ(anfitrion->Completa(Tipo::Salida, 1), 2);
}

TEST_F(AMedias, ACompletionFiresNoKeyPrintsNothingAndIsRecorded) {
  Finaliza(Salida({{"A-100", "1"}}));
  QuitaMovimientos("id > 0");
  Olvida();
  anfitrion->Completa(Tipo::Salida, 1);
  EXPECT_TRUE(Claves().empty());
  EXPECT_TRUE(bitacora.impresos.empty());
  EXPECT_TRUE(bitacora.mensajes.empty());
  ASSERT_EQ(bitacora.movimientos.size(), 1U);
  EXPECT_EQ(Movido(0, "Articulo"), "A-100");
  const auto acts = host::LeeBitacora(anfitrion->Conexion());
  ASSERT_EQ(acts.size(), 1U);
  EXPECT_EQ(acts[0].acto, "completa");
  EXPECT_EQ(acts[0].documento, (host::Retenido{Tipo::Salida, 1}));
  EXPECT_EQ(acts[0].usuario, "ANA");
  EXPECT_EQ(acts[0].estacion, "E1");
}

TEST_F(AMedias, ItBearsTheUserOfTheHeaderAndTheCostOfNow) {
  Finaliza(Salida({{"A-100", "2"}}));
  QuitaMovimientos("id > 0");
  Sql("UPDATE salidas SET usuario = 'LUIS'");
  Sql("UPDATE prods SET costo_u = 70 WHERE articulo = 'A-100'");
  anfitrion->Completa(Tipo::Salida, 1);
  EXPECT_EQ(Uno("SELECT usuario FROM movsinv"), "LUIS");
  EXPECT_EQ(Uno("SELECT importe FROM movsinv"), "140");
}

TEST_F(AMedias, ALineWhoseNumberCouldNotBeDrawnIsCompletedLikeTheOthers) {
  DocumentoGuardado(1, "CO");
  Sql("INSERT INTO salpart (id_salida, salida, articulo, cantidad) VALUES (0, 7, 'A-100', 1)");
  // Older lines 0, of another document and of another article.
  Sql("INSERT INTO movsinv (operacion, id_salida, movimiento, articulo, ent_sal) VALUES ('SA', 0, 5, "
      "'A-100', 'S'), "
      "('SA', 0, 7, 'A-200', 'S')");
  Sql("UPDATE salidas SET folio = 7 WHERE salida = 7");
  const auto half = anfitrion->AMedias();
  ASSERT_EQ(half.size(), 1U);
  EXPECT_EQ(half[0].faltan, (Ids{0, 71}));
  EXPECT_EQ(anfitrion->Completa(Tipo::Salida, 7), 2);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv WHERE id_salida = 0 AND articulo = 'A-100' AND movimiento = 7"),
            "1");
  EXPECT_EQ(anfitrion->Completa(Tipo::Salida, 7), 0);
  EXPECT_TRUE(anfitrion->AMedias().empty());
}

TEST_F(AMedias, ALineWithoutAnArticleHasNothingToMoveAndHoldsUpNobody) {
  DocumentoGuardado(1, "CO");
  Sql("INSERT INTO salpart (id_salida, salida, cantidad) VALUES (72, 7, 1)");
  const auto half = anfitrion->AMedias();
  ASSERT_EQ(half.size(), 1U);
  EXPECT_EQ(half[0].faltan, Ids{71});
  EXPECT_EQ(anfitrion->Completa(Tipo::Salida, 7), 1);
  EXPECT_TRUE(anfitrion->AMedias().empty());
}

TEST_F(AMedias, TheMarksOfTheOtherMatrixAreNoMovement) {
  DocumentoGuardado(1, "CO");
  Sql("INSERT INTO movsinv (operacion, movimiento, articulo, id_salida, claveadd) VALUES ('SA', 7, 'A-100', "
      "71, "
      "'999')");
  ASSERT_EQ(anfitrion->AMedias().size(), 1U);
  EXPECT_EQ(anfitrion->Completa(Tipo::Salida, 7), 1);
}

// ---- what did not run behind the posting ----

class Cierres : public AMedias {
 protected:
  Textos Faltan() {
    const auto broken = anfitrion->CierresInterrumpidos();
    return broken.empty() ? Textos{} : broken.front().faltan;
  }
  // The state of the base at this key, as a program that ends there would leave it.
  void AlMorirEn(const std::string& clave, std::function<void()> mira) {
    anfitrion->Gancho(clave, [mira = std::move(mira)](forms::Form&, host::AmbienteLocal&) { mira(); });
  }
};

TEST_F(Cierres, AWholeFinishLeavesNothing) {
  Finaliza(Salida({{"A-100", "1"}}));
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM cierres"), "0");
  EXPECT_TRUE(anfitrion->CierresInterrumpidos().empty());
}

TEST_F(Cierres, AFinishThatBreaksOffSaysWhatDidNotRun) {
  Textos at_posting, at_send;
  const auto dead = [this] { Sql("DELETE FROM tenencias"); };
  AlMorirEn("SALIDAS017", [&] {
    dead();
    at_posting = Faltan();
  });
  AlMorirEn("SALIDAS005", [&] {
    dead();
    at_send = Faltan();
  });
  Sql("UPDATE salidas SET ocupado = 0");
  Sql("INSERT INTO parametros (nombre, valor) VALUES ('SoloTarvik', '1') ON CONFLICT (nombre) DO UPDATE SET "
      "valor "
      "= '1'");
  Finaliza(Traspaso());
  EXPECT_EQ(at_posting, (Textos{"SALIDAS017", "SALIDAS005", "Imprime"}));
  EXPECT_EQ(at_send, (Textos{"SALIDAS005", "Imprime"}));
  EXPECT_TRUE(Faltan().empty());
}

TEST_F(Cierres, OfAGoodsInTheKeyOfItsConceptToo) {
  frmEntradasWizard& f = Nueva();
  Teclea(f, f.txtFields(campo::Concepto), "A++");
  Renglon(f, "A-100", "1");
  f.Check2.Value(0);
  Sql("INSERT INTO parametros (nombre, valor) VALUES ('SoloTarvik', '1') ON CONFLICT (nombre) DO UPDATE SET "
      "valor "
      "= '1'");
  Textos seen;
  AlMorirEn("ENTRADA014", [&] {
    Sql("DELETE FROM tenencias");
    seen = Faltan();
  });
  bitacora.respuestas = {true};
  Tecla(f, "F5", f.txtFields(campo::Concepto));
  EXPECT_EQ(seen, (Textos{"ENTRADA014", "ENTRADA010"}));
}

TEST_F(Cierres, AFinishInsideAnotherIsKeptToo) {
  frmEntradasWizard& inner = ConRenglones({{"A-100", "1"}});
  frmEntradasWizard& outer = ConRenglones({{"A-200", "2"}});
  Textos kept;
  anfitrion->Gancho("ENTRADA014", [&](forms::Form& screen, host::AmbienteLocal&) {
    kept.push_back(Uno("SELECT COUNT(*) FROM cierres"));
    if (&screen != &outer) return;
    bitacora.respuestas = {true};
    Tecla(inner, "F5", inner.txtFields(campo::Concepto));
    kept.push_back(Uno("SELECT COUNT(*) FROM cierres"));
  });
  bitacora.respuestas = {true};
  Tecla(outer, "F5", outer.txtFields(campo::Concepto));
  EXPECT_EQ(kept, (Textos{"1", "2", "1"}));
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM cierres"), "0");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv"), "2");
}

TEST_F(Cierres, OfTwoWhoMakeUpForOneFinishOneRunsAStep) {
  Finaliza(Salida({{"A-100", "1"}}));
  Sql("INSERT INTO cierres (tipo, documento, usuario, estacion, cuando, imprime, hecho) VALUES ('Salida', 1, "
      "'ANA', "
      "'E1', '2024-03-05T14:03:22', 1, '')");
  Olvida();
  int fired = 0;
  bool fails = true;
  anfitrion->Gancho("SALIDAS005", [&](forms::Form&, host::AmbienteLocal&) {
    ++fired;
    if (fails) throw data::Error("la rutina falló");
    // In the middle of it another station looks at the same card.
    host::TerminaCierre(*anfitrion, Tipo::Salida, 1);
  });
  EXPECT_THROW(host::TerminaCierre(*anfitrion, Tipo::Salida, 1), data::Error);
  EXPECT_EQ(Faltan(), (Textos{"SALIDAS005", "Imprime"})) << "what failed is still missing";
  fails = false;
  host::TerminaCierre(*anfitrion, Tipo::Salida, 1);
  EXPECT_EQ(fired, 2);
  EXPECT_EQ(bitacora.impresos.size(), 1U);
  EXPECT_TRUE(Faltan().empty());
}

}  // namespace
}  // namespace tarvik::tests
