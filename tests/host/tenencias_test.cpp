// Leases: when one begins and ends, whatever door its screen came through, and what becomes of a screen that
// has lost its document.
#include "host/tenencias.h"

#include "tests/host/puestos.h"

namespace tarvik::host {
namespace {

using tests::Escenario;

class Tenencias : public DosPuestos {
 protected:
  std::string Filas() { return Uno("SELECT COUNT(*) FROM tenencias"); }
  std::string Ocupado(const frmEntradasWizard& f) {
    return Uno("SELECT ocupado FROM entradas WHERE entrada = ?", {f.Entrada});
  }
  // LUIS lets it go, and ANA's program hears of it.
  void Libera(Tipo tipo, std::int32_t number, const std::string& motive = "") {
    YLoSabe(ana, [&] { luis.anfitrion->Libera(tipo, number, motive); });
  }
  frmEntradasWizard& AbiertaPor(Puesto& station, std::int32_t number) {
    return dynamic_cast<frmEntradasWizard&>(*station.anfitrion->Abre(Tipo::Entrada, number));
  }
};

TEST_F(Tenencias, ANewDocumentIsHeldFromItsFirstLineToItsClosing) {
  ana.puerta->NuevaEntrada();
  EXPECT_EQ(Filas(), "0") << "a new document has no number yet";
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM vidas"), "0") << "and its host has written nothing";
  ana.plataforma.Screens().back()->Unload();

  auto& f = ana.Entrada({"5"});
  const auto held = luis.anfitrion->Tenencias();
  ASSERT_EQ(held.size(), 1U);
  EXPECT_EQ(held[0].tipo, Tipo::Entrada);
  EXPECT_EQ(held[0].documento, f.Entrada);
  EXPECT_EQ(held[0].usuario, "ANA");
  EXPECT_EQ(held[0].estacion, "E1");
  EXPECT_EQ(held[0].desde, reloj);
  EXPECT_TRUE(held[0].viva);
  Escenario::Renglon(f, "A-200", "1");
  EXPECT_EQ(Filas(), "1") << "a second line holds nothing anew";
  f.Unload();
  EXPECT_EQ(Filas(), "0");
  EXPECT_TRUE(luis.anfitrion->Tenencias().empty());
}

TEST_F(Tenencias, AScreenThatClosedWhileItsLeaseCouldNotBeTakenAwayHoldsNothingForLong) {
  auto& f = ana.Entrada({"5"});
  const std::int32_t number = f.Entrada;
  Sql("ALTER TABLE tenencias RENAME TO apartadas");
  f.Unload();
  Sql("ALTER TABLE apartadas RENAME TO tenencias");
  EXPECT_EQ(Filas(), "1");
  EXPECT_EQ(AbiertaPor(ana, number).Modo, "MODIFICACION") << "it opens again, and the row is its own";
  EXPECT_EQ(Filas(), "1");
}

TEST_F(Tenencias, GoodsOutLikewise) {
  auto& f = ana.Salida({"5"});
  const auto held = luis.anfitrion->Tenencias();
  ASSERT_EQ(held.size(), 1U);
  EXPECT_EQ(held[0].tipo, Tipo::Salida);
  EXPECT_EQ(held[0].documento, f.Salida);
  f.Unload();
  luis.puerta->ModificaSalida(held[0].documento);
  EXPECT_EQ(luis.anfitrion->Tenencias().at(0).usuario, "LUIS") << "a load takes it";
  luis.plataforma.Screens().back()->Unload();
  EXPECT_EQ(Filas(), "0");
}

TEST_F(Tenencias, ADocumentThatIsLoadedForChangeIsHeldAndOneThatIsReadIsNot) {
  const auto number = Dejada();
  ana.puerta->ConsultaEntrada(number);
  EXPECT_EQ(Filas(), "0");
  ana.puerta->ModificaEntrada(number);
  EXPECT_EQ(Filas(), "1");
  ana.plataforma.Screens().back()->Discard();
  EXPECT_EQ(Filas(), "0") << "however the screen ended";
}

// Somebody has the base while the screen closes, so that neither its flag nor its lease can be let go of.
// Once the base is free nobody is left holding the document.
TEST_F(Tenencias, AScreenThatClosedWhileAnotherHadTheBaseHoldsNothing) {
  auto& f = ana.Entrada({"5"});
  const auto alive = f.shared_from_this();
  const auto number = f.Entrada;
  const auto other = luis.anfitrion->Base().Connect();
  other->Begin();
  other->Run("UPDATE entradas SET ocupado = ocupado", {});
  other->Run("UPDATE tenencias SET vida = vida", {});
  ana.plataforma.on_wait = [] { return true; };  // no wait is worth its time
  f.Unload();
  ana.plataforma.on_wait = nullptr;
  other->Rollback();
  EXPECT_FALSE(f.Open());
  EXPECT_EQ(Filas(), "1") << "the base would not let it go";
  const auto again = ana.anfitrion->Abre(Tipo::Entrada, number);
  ASSERT_NE(again, nullptr);
  EXPECT_EQ(ana.anfitrion->Tenencias().size(), 1U);
  again->Unload();
  EXPECT_TRUE(ana.anfitrion->Tenencias().empty());
}

// Its operator goes for a coffee: nobody else should have to wait for her next key.
TEST_F(Tenencias, WhatClosedWhileTheBaseWasBusyIsFreeForOthersAMomentLater) {
  auto& f = ana.Entrada({"5"});
  const auto number = f.Entrada;
  const auto alive = f.shared_from_this();
  const auto other = luis.anfitrion->Base().Connect();
  other->Begin();
  other->Run("UPDATE entradas SET ocupado = ocupado", {});
  other->Run("UPDATE tenencias SET vida = vida", {});
  // The act's own wait is in vain; in the short one behind it the base is free again.
  bool acting = true;
  ana.plataforma.on_wait = [&] {
    if (!acting && other->InTransaction()) other->Rollback();
    return acting;
  };
  const auto ends = ana.plataforma.on_act_ends;
  ana.plataforma.on_act_ends = [&] {
    acting = false;
    ends();
  };
  f.Act([&] { f.Unload(); });
  ana.plataforma.on_wait = nullptr;
  ana.plataforma.on_act_ends = ends;
  EXPECT_FALSE(f.Open());
  EXPECT_TRUE(luis.anfitrion->Tenencias().empty());
  EXPECT_EQ(Uno("SELECT ocupado FROM entradas"), "0");
  EXPECT_NE(luis.anfitrion->Abre(Tipo::Entrada, number), nullptr);
  EXPECT_TRUE(luis.cajas.empty()) << luis.UltimaCaja();
}

TEST_F(Tenencias, AnIdleProgramLetsGoOfWhatItCouldNotLetGoOfThen) {
  auto& f = ana.Entrada({"5"});
  const auto alive = f.shared_from_this();
  const auto other = luis.anfitrion->Base().Connect();
  other->Begin();
  other->Run("UPDATE entradas SET ocupado = ocupado", {});
  other->Run("UPDATE tenencias SET vida = vida", {});
  ana.plataforma.on_wait = [] { return true; };  // no wait is worth its time
  f.Act([&] { f.Unload(); });
  ana.plataforma.on_wait = nullptr;
  ana.anfitrion->SueltaPendientes();
  other->Rollback();
  ASSERT_EQ(Filas(), "1");
  ana.anfitrion->SueltaPendientes();
  EXPECT_EQ(Filas(), "0");
  EXPECT_EQ(Uno("SELECT ocupado FROM entradas"), "0");
}

TEST_F(Tenencias, WhatADeadProgramHeldOfADocumentThatWasNeverStoredIsNobodys) {
  Sql("INSERT INTO tenencias (tipo, documento, usuario, estacion, vida) VALUES ('Entrada', 77, 'BETO', 'E2', "
      "4715)");
  luis.anfitrion->Libera(Tipo::Entrada, 77);
  EXPECT_EQ(Filas(), "0");
  EXPECT_NE(ErrorDe([&] { luis.anfitrion->Libera(Tipo::Entrada, 77); }).find("No existe la entrada 77"),
            std::string::npos);
  Sql("INSERT INTO tenencias (tipo, documento, usuario, estacion, vida) VALUES ('Entrada', 77, 'BETO', 'E2', "
      "0)");
  ana.Entrada({"5"});
  EXPECT_EQ(Filas(), "1") << "the first lease of a run clears such ones away";
}

TEST_F(Tenencias, LeasesAreNotAmongTheStatementsOfTheScreens) {
  auto& f = ana.Entrada({"5"});
  f.Unload();
  for (const std::string& sent : ana.testigo.sentencias) {
    EXPECT_EQ(sent.find("tenencias"), std::string::npos) << sent;
    EXPECT_EQ(sent.find("vidas"), std::string::npos) << sent;
  }
}

TEST_F(Tenencias, ASaveWithoutLinesHoldsTheDocumentTooAndAFinishHoldsItToItsEnd) {
  ana.puerta->NuevaEntrada();
  auto& f = dynamic_cast<frmEntradasWizard&>(*ana.plataforma.Screens().back());
  Escenario::Teclea(f, f.txtFields(campo::Concepto), "COM");
  Escenario::Tecla(f, "F5");
  ASSERT_TRUE(f.Open());
  EXPECT_EQ(Ocupado(f), "0") << "the save leaves the flag so";
  EXPECT_EQ(Filas(), "1");
  f.Unload();

  auto& g = ana.Entrada({"5"});
  std::string during;
  ana.anfitrion->Gancho("ENTRADA014", [&](forms::Form&, AmbienteLocal&) { during = Filas(); });
  Escenario::Tecla(g, "F5");
  EXPECT_FALSE(g.Open());
  EXPECT_EQ(during, "1") << "posted, and still being finished";
  EXPECT_EQ(Filas(), "0");
}

TEST_F(Tenencias, AHeaderThatTheBaseRefusedIsHeldByNobody) {
  Sql("UPDATE series SET valor = 0");
  Dejada();  // number 1
  Sql("UPDATE series SET valor = 0 WHERE nombre = 'MovEnt'");
  ana.Entrada({"5"});  // number 1 again: its header's row is refused
  EXPECT_EQ(Filas(), "0");
}

TEST_F(Tenencias, ALeaseThatCannotBeWrittenFailsNoStepAndIsWrittenLater) {
  Sql("ALTER TABLE tenencias RENAME TO apartadas");
  auto& f = ana.Entrada({"5"});
  EXPECT_TRUE(ana.cajas.empty()) << ana.UltimaCaja();
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart WHERE entrada = ?", {f.Entrada}), "1");
  EXPECT_TRUE(
      ana.anfitrion->AvisoDeTenencias().starts_with("Este programa no puede anotar qué documentos tiene "
                                                    "abiertos, y otra estación podría abrirlos también."))
      << ana.anfitrion->AvisoDeTenencias();
  const std::string lives = Uno("SELECT COUNT(*) FROM vidas");
  for (int i = 0; i < 5; ++i) Escenario::Tecla(f, "Down");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM vidas"), lives) << "no life is drawn at each key";
  Sql("ALTER TABLE apartadas RENAME TO tenencias");
  EXPECT_EQ(Filas(), "0");
  Escenario::Tecla(f, "F2");
  EXPECT_EQ(Filas(), "1") << "the next act's end";
  EXPECT_EQ(ana.anfitrion->AvisoDeTenencias(), "");
  Sql("ALTER TABLE tenencias RENAME TO apartadas");
  f.Unload();
  EXPECT_TRUE(ana.cajas.empty()) << ana.UltimaCaja();
  Sql("ALTER TABLE apartadas RENAME TO tenencias");
  EXPECT_EQ(Filas(), "1");
  ana.Entrada({});
  EXPECT_EQ(Filas(), "0") << "what could not be removed goes later";
}

TEST_F(Tenencias, ADocumentOfARoutinesTransactionIsHeldWhenTheActHasEnded) {
  ana.anfitrion->Gancho("ENTRADA005", [&](forms::Form& form, AmbienteLocal&) {
    ana.anfitrion->Conexion().Begin();
    auto& f = dynamic_cast<frmEntradasWizard&>(form);
    f.CreaEntrada();
    ana.anfitrion->Conexion().Commit();
  });
  ana.Entrada({"5"});
  EXPECT_EQ(Filas(), "1");
}

TEST_F(Tenencias, TwoScreensOnOneDocumentAreTwoRows) {
  auto& f = ana.Entrada({"5"});
  Sql("UPDATE entradas SET ocupado = 0");
  luis.puerta->ModificaEntrada(f.Entrada);
  const auto held = ana.anfitrion->Tenencias();
  ASSERT_EQ(held.size(), 2U);
  EXPECT_EQ(held[0].usuario + held[1].usuario, "ANALUIS");
  // Both write, as the screens do.
  Escenario::Renglon(f, "A-200", "1");
  auto& g = dynamic_cast<frmEntradasWizard&>(*luis.plataforma.Screens().back());
  Escenario::Renglon(g, "A-200", "2");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "3");
  EXPECT_TRUE(ana.cajas.empty());
  EXPECT_TRUE(luis.cajas.empty());
  g.Unload();
  EXPECT_EQ(Filas(), "1") << "each ends for itself";
}

TEST_F(Tenencias, AScreenWhoseDocumentWasLetGoOfTellsAtTheNextActAndOnlyReads) {
  auto& f = ana.Entrada({"5"});
  Libera(Tipo::Entrada, f.Entrada, "se fue a comer");
  EXPECT_EQ(f.Modo, "MODIFICACION") << "nothing happens of itself";
  const auto sent = ana.testigo.sentencias.size();
  Escenario::Tecla(f, "F2");
  ASSERT_EQ(ana.cajas.size(), 1U);
  EXPECT_EQ(ana.cajas[0].clase, forms::BoxKind::Message);
  EXPECT_EQ(ana.cajas[0].estilo, forms::kBoxInformation);
  EXPECT_NE(ana.UltimaCaja().find("LUIS, en la estación E2, la liberó el 05/03/2024 a las 14:15"),
            std::string::npos)
      << ana.UltimaCaja();
  EXPECT_NE(ana.UltimaCaja().find("se fue a comer"), std::string::npos);
  EXPECT_EQ(f.Modo, "CONSULTA");
  EXPECT_FALSE(f.txtFields(campo::Articulo).Enabled());
  EXPECT_TRUE(f.fg2.Enabled());
  EXPECT_TRUE(f.Command2.Enabled());
  EXPECT_EQ(ana.testigo.sentencias.size(), sent) << "the act was passed over";

  luis.puerta->ModificaEntrada(f.Entrada);
  f.Click(f.Command2);
  EXPECT_FALSE(f.Open());
  EXPECT_EQ(ana.cajas.size(), 1U) << "told once";
  EXPECT_EQ(Ocupado(f), "1") << "its unloading leaves the flag to who has it now";
  EXPECT_EQ(Filas(), "1");
}

TEST_F(Tenencias, GoodsOutBecomesReadOnlyLikewise) {
  auto& f = ana.Salida({"5"});
  Libera(Tipo::Salida, f.Salida);
  Puesto::RenglonDeSalida(f, "A-200", "1");
  EXPECT_EQ(f.Modo, "CONSULTA");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salpart"), "1");
  EXPECT_FALSE(f.Command5.Enabled());
  EXPECT_TRUE(f.Command1.Enabled());
  f.Unload();
  EXPECT_FALSE(f.Open());
}

TEST_F(Tenencias, ATimerOfSuchAScreenIsAnActToo) {
  auto& f = ana.Entrada({"5"});
  f.Close();  // a tick of the timer will unload it
  Libera(Tipo::Entrada, f.Entrada);
  luis.puerta->ModificaEntrada(f.Entrada);
  ana.plataforma.Advance(10);
  EXPECT_EQ(f.Modo, "CONSULTA");
  EXPECT_EQ(ana.cajas.size(), 1U);
  EXPECT_TRUE(f.Open()) << "what the tick was for is passed over";
  ana.plataforma.Advance(10);
  EXPECT_FALSE(f.Open()) << "the next one closes what is only read";
  EXPECT_EQ(Ocupado(f), "1");
}

TEST_F(Tenencias, WhatARoutinePostedIsAnActToo) {
  auto& f = ana.Entrada({"5"});
  ana.anfitrion->Funciones().EnviaTeclas("A", false);
  Libera(Tipo::Entrada, f.Entrada);
  ana.plataforma.ProcessEvents();
  EXPECT_EQ(f.Modo, "CONSULTA");
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "");
}

TEST_F(Tenencias, AProcedureCalledOnSuchAScreenWritesNothing) {
  auto& f = ana.Entrada({"5", "6"});
  Libera(Tipo::Entrada, f.Entrada);
  luis.puerta->ModificaEntrada(f.Entrada);
  const auto books = [&] {
    std::string all;
    for (const auto& row : Sql("SELECT id_entrada, cantidad, observ FROM entpart ORDER BY id_entrada").rows) {
      for (const auto& value : row) all += data::ToText(value) + "|";
    }
    return all + Uno("SELECT estado FROM entradas") + Uno("SELECT ocupado FROM entradas") +
           Uno("SELECT COUNT(*) FROM movsinv");
  };
  const std::string before = books();
  f.txtFields(campo::Articulo).Text("A-200");
  f.txtFields(campo::Cantidad).Text("3");
  f.txtFields(campo::Precio).Text("10");
  EXPECT_NE(SaleDe([&] { f.LlenaPartida(); }).find("La entrada 1 ya no es de esta pantalla"),
            std::string::npos);
  EXPECT_NE(SaleDe([&] { f.SalvaEntrada("CO"); }), "");
  EXPECT_NE(SaleDe([&] { f.Command5_Click(); }), "") << "nothing is posted either";
  f.rstPartidas = std::make_shared<data::Recordset>(Sql("SELECT * FROM entpart ORDER BY id_entrada"));
  EXPECT_NE(SaleDe([&] { f.AfectaPartidas(); }).find("No se movió nada más desde esta pantalla"),
            std::string::npos);
  f.fg2.Row(1);
  f.fg2.Col(1);
  f.fg2.Text("99");
  EXPECT_NE(SaleDe([&] { f.SalvaCambios(); }), "") << "a line is known by its number";
  EXPECT_EQ(books(), before);
  EXPECT_TRUE(f.Unload());
  EXPECT_EQ(books(), before) << "its unloading too";
  EXPECT_EQ(Filas(), "1");
}

TEST_F(Tenencias, AQuestionThatStoodWhileTheDocumentWasLetGoOfPostsNothing) {
  auto& f = ana.Entrada({"5"});
  ana.al_mostrar = [&] {
    ana.al_mostrar = nullptr;
    Libera(Tipo::Entrada, f.Entrada);
  };
  Escenario::Tecla(f, "F5");
  EXPECT_EQ(Uno("SELECT estado FROM entradas"), "PE");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv"), "0");
  EXPECT_EQ(ana.no_atrapados.size(), 1U);
}

TEST_F(Tenencias, TheSameStationMayOpenAnewWhatItHasLost) {
  auto& f = ana.Entrada({"5"});
  ana.anfitrion->Libera(Tipo::Entrada, f.Entrada);
  auto& g = AbiertaPor(ana, f.Entrada);
  ASSERT_NE(&f, &g);
  Escenario::Renglon(g, "A-200", "1");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "2");
  Escenario::Tecla(f, "F2");
  EXPECT_EQ(f.Modo, "CONSULTA");
  EXPECT_EQ(g.Modo, "MODIFICACION");
  for (const auto& [field, text] : {std::pair{4, "A-100"}, {5, "9"}, {6, "1"}}) f.txtFields(field).Text(text);
  Escenario::Tecla(f, "F9");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "2") << "what the lost screen's own act sends is kept back";
  f.Unload();
  EXPECT_EQ(Ocupado(g), "1");
  EXPECT_EQ(Filas(), "1");
}

TEST_F(Tenencias, WhatTheClassDeletesAndAnotherScreenTakesIsNobodysLoss) {
  auto& f = ana.Entrada({"5"});
  Libera(Tipo::Entrada, f.Entrada);
  ana.puerta->EliminaEntrada(f.Entrada);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entradas"), "0");
  EXPECT_TRUE(ana.no_atrapados.empty());
}

TEST_F(Tenencias, AsLongAsOthersCommitNothingAnActAsksTheBaseNothing) {
  auto& f = ana.Entrada({"5"});
  // Taken away unseen, by the station's own connection: only a look at the rows would tell.
  ana.anfitrion->Conexion().Run("DELETE FROM tenencias", {});
  Escenario::Tecla(f, "F2");
  EXPECT_EQ(f.Modo, "MODIFICACION");
  Libera(Tipo::Entrada, f.Entrada);
  Escenario::Tecla(f, "F2");
  EXPECT_EQ(f.Modo, "CONSULTA");
}

TEST_F(Tenencias, LivesThatAreOverAreClearedAwayAndOnesThatHoldAreKept) {
  ana.Entrada({"5"});
  SeVa(ana);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM vidas"), "1");
  luis.Entrada({"5"}).Unload();
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM vidas"), "2") << "one holds a document still";
  luis.anfitrion->Libera(Tipo::Entrada, 1);
  SeVa(luis);
  Puesto next(Direccion(), "EVA", "E3", reloj);
  next.Entrada({"5"});
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM vidas"), "1");
  EXPECT_EQ(Uno("SELECT usuario FROM vidas"), "EVA");
}

}  // namespace
}  // namespace tarvik::host
