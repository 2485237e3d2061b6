// The screen of a transfer between stations: what the routines behind its seven keys find, when they run,
// and what the screen does by itself.
#include "stations/frm_mov_estaciones.h"

#include <algorithm>
#include <utility>

#include "tests/support/escenario.h"

namespace tarvik::tests {
namespace {

using Textos = std::vector<std::string>;

class Estaciones : public Escenario {
 protected:
  Estaciones() {
    Catalogo();
    Sql("INSERT INTO ESTACIONES (ESTACION) VALUES ('E2')");
  }

  // The screen of transfer 12. Forgets what was seen until then.
  frmMovEstaciones& Abre() {
    movimientos->movimientoEstacion(12, false);
    auto& f = Ultima();
    Olvida();
    return f;
  }
  frmMovEstaciones& Ultima() {
    auto& f = dynamic_cast<frmMovEstaciones&>(*plataforma.Screens().back());
    vivas_.push_back(f.shared_from_this());
    return f;
  }
  void Gancho(const std::string& clave, std::function<void(frmMovEstaciones&)> rutina) {
    anfitrion->Gancho(clave, [rutina = std::move(rutina)](forms::Form& forma, host::AmbienteLocal&) {
      rutina(dynamic_cast<frmMovEstaciones&>(forma));
    });
  }
  void Veta(const std::string& clave) {
    Gancho(clave, [](frmMovEstaciones& f) { f.CancelaProceso = true; });
  }
  // Lines as a routine sets them up: a header and so many rows.
  static void LlenaGrid(frmMovEstaciones& f, int renglones) {
    f.grid.Cols(2);
    f.grid.Rows(renglones + 1);
    f.grid.FixedRows(1);
    f.grid.TextMatrix(0, 0, "Artículo");
    for (int renglon = 1; renglon <= renglones; ++renglon) {
      f.grid.TextMatrix(renglon, 0, "A-" + std::to_string(renglon));
    }
  }
  static Textos EnGrid(frmMovEstaciones& f) {
    Textos textos;
    for (int renglon = f.grid.FixedRows(); renglon < f.grid.Rows(); ++renglon) {
      textos.push_back(f.grid.TextMatrix(renglon, 0));
    }
    return textos;
  }

 private:
  std::vector<std::shared_ptr<forms::Form>> vivas_;
};

// ---- as designed ----

TEST_F(Estaciones, CaptionsAndSearches) {
  frmMovEstaciones& f = Abre();
  EXPECT_EQ(f.Name(), "frmMovEstaciones");
  EXPECT_EQ(f.Caption(), "Asistente para traspasos entre estaciones");
  EXPECT_EQ(f.lblLabel(0).Caption(), "Estación que entrega");
  EXPECT_EQ(f.Label1.Caption(), "Estación que recibe");
  EXPECT_EQ(f.lblLabel(1).Caption(), "Fecha de aplicación");
  EXPECT_EQ(f.lblLabel(2).Caption(), "Artículo");
  EXPECT_EQ(f.lblLabel(3).Caption(), "Cantidad");
  EXPECT_EQ(f.cmdConfirmar.Caption(), "Confirmar operación (F5)");
  EXPECT_EQ(f.cmdPendiente.Caption(), "Dejar como pendiente");
  EXPECT_EQ(f.cmdCancelar.Caption(), "Cancelar");
  EXPECT_EQ(f.Command1.Caption(), "");
  for (int caja : {0, 1}) {
    EXPECT_EQ(f.MultiCombo1(caja).buscar(), "Estaciones");
    EXPECT_EQ(f.MultiCombo1(caja).Field(), &f.txtFields(caja));
    EXPECT_EQ(f.txtFields(caja).Container(), &f.MultiCombo1(caja));
  }
  EXPECT_EQ(f.MultiCombo1.Count(), 2);
  EXPECT_EQ(f.txtFields.Count(), 5);
  EXPECT_EQ(f.lblLabel.Count(), 4);
}

TEST_F(Estaciones, FieldsHaveNoTypeAndStartEmpty) {
  frmMovEstaciones& f = Abre();
  f.txtFields.Each([](forms::TextBox& campo) {
    EXPECT_EQ(campo.Tag(), "") << campo.FullName();
    EXPECT_EQ(campo.Text(), "") << campo.FullName();
    EXPECT_EQ(campo.MaxLength(), 0) << campo.FullName();
  });
  for (forms::Control* control : f.Controls()) {
    EXPECT_TRUE(control->Enabled()) << control->FullName();
    EXPECT_TRUE(control->Visible()) << control->FullName();
  }
  EXPECT_FALSE(f.CancelaProceso);
  EXPECT_EQ(f.Id, 12);
}

TEST_F(Estaciones, TheKeyboardsWay) {
  frmMovEstaciones& f = Abre();
  Textos orden;
  for (forms::Control* control : f.TabOrder()) orden.push_back(control->FullName());
  ASSERT_EQ(orden.size(), 11u);
  EXPECT_EQ(Textos(orden.begin(), orden.begin() + 7),
            (Textos{"txtFields(0)", "txtFields(1)", "DTPicker1", "txtFields(2)", "txtFields(4)", "Command1",
                    "cmdConfirmar"}));
  const auto lugar = [&](const std::string& nombre) {
    return std::find(orden.begin(), orden.end(), nombre) - orden.begin();
  };
  EXPECT_GT(lugar("txtFields(3)"), lugar("cmdPendiente"));  // for show, behind the buttons
  EXPECT_GT(lugar("txtFields(3)"), lugar("cmdCancelar"));
  EXPECT_TRUE(f.txtFields(campo_de_traspaso::Entrega).HasFocus());
}

// ---- loading ----

TEST_F(Estaciones, LoadingFiresItsKeyWithTheDateOfTodayAndConnectsTheSearchesBehindIt) {
  bool visto = false;
  Gancho("MOVESTACIONES001", [&](frmMovEstaciones& f) {
    visto = true;
    EXPECT_EQ(f.DTPicker1.Value(), (data::Date{2024, 3, 5}));
    EXPECT_EQ(f.Id, 12);
    EXPECT_EQ(f.MultiCombo1(0).Conexion(), nullptr);
    EXPECT_EQ(f.MultiCombo1(1).Conexion(), nullptr);
    EXPECT_FALSE(f.Visible());
  });
  movimientos->movimientoEstacion(12, false);
  EXPECT_TRUE(visto);
  frmMovEstaciones& f = Ultima();
  EXPECT_EQ(Claves(), (Textos{"MOVESTACIONES001"}));
  for (int caja : {0, 1}) EXPECT_EQ(f.MultiCombo1(caja).Conexion(), &anfitrion->Ambiente().Conexion());
  EXPECT_TRUE(bitacora.sentencias.empty());
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_TRUE(bitacora.presentadas.empty());
}

TEST_F(Estaciones, WhatTheLoadingRoutineSetsStays) {
  Gancho("MOVESTACIONES001", [](frmMovEstaciones& f) {
    f.DTPicker1.Value(data::Date{2024, 2, 29});
    f.txtFields(campo_de_traspaso::Entrega).Text("E1");
    LlenaGrid(f, 2);
  });
  frmMovEstaciones& f = Abre();
  EXPECT_EQ(f.DTPicker1.Value(), (data::Date{2024, 2, 29}));
  EXPECT_EQ(f.txtFields(campo_de_traspaso::Entrega).Text(), "E1");
  EXPECT_EQ(f.txtFields(campo_de_traspaso::Entrega).SelLength(), 2);  // entered on show
  EXPECT_EQ(EnGrid(f), (Textos{"A-1", "A-2"}));
}

TEST_F(Estaciones, AVetoWhileLoadingIsNotLookedAtThen) {
  Veta("MOVESTACIONES001");
  frmMovEstaciones& f = Abre();
  EXPECT_TRUE(f.Visible());
  EXPECT_TRUE(f.CancelaProceso);  // and so it is the first button's
  f.Click(f.cmdCancelar);
  EXPECT_TRUE(f.Open());
  EXPECT_FALSE(f.CancelaProceso);
}

TEST_F(Estaciones, AnErrorWhileLoadingReachesTheCallerAndLeavesNoScreen) {
  Gancho("MOVESTACIONES001", [](frmMovEstaciones&) { throw data::Error("sin tabla de traspasos"); });
  for (bool modal : {false, true}) {
    try {
      movimientos->movimientoEstacion(12, modal);
      ADD_FAILURE() << "nothing was thrown";
    } catch (const data::Error& error) {
      EXPECT_STREQ(error.what(), "sin tabla de traspasos");
    }
    EXPECT_TRUE(plataforma.Screens().empty());
  }
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_TRUE(no_atrapados.empty());
  EXPECT_EQ(ArchivoDelDia(), "");
}

TEST_F(Estaciones, WithoutAContextTheScreenDoesNotLoad) {
  movimientos->Ambiente = nullptr;
  EXPECT_THROW(movimientos->movimientoEstacion(12, false), data::Error);
  EXPECT_TRUE(plataforma.Screens().empty());
}

// ---- the fields ----

TEST_F(Estaciones, LeavingAFieldFiresItsKeyWithTheFieldsIndex) {
  frmMovEstaciones& f = Abre();
  for (int campo : {1, 2, 3, 4, 0}) f.Enter(f.txtFields(campo));
  ASSERT_EQ(bitacora.ganchos.size(), 5u);
  const int dejados[] = {0, 1, 2, 3, 4};
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(bitacora.ganchos[i].first, "MOVESTACIONES002");
    EXPECT_EQ(data::ToText(bitacora.ganchos[i].second), std::to_string(dejados[i]));
  }
}

TEST_F(Estaciones, OnlyTheTextFieldsFireAsTheyAreLeft) {
  frmMovEstaciones& f = Abre();
  f.Enter(f.DTPicker1);
  Olvida();
  f.Enter(f.grid);
  f.Enter(f.DTPicker1);
  EXPECT_TRUE(Claves().empty());
}

TEST_F(Estaciones, TheRoutineOfALeftFieldFindsItsTextAndMayFillAnother) {
  Gancho("MOVESTACIONES002", [this](frmMovEstaciones& f) {
    const data::Value campo = std::as_const(anfitrion->Ambiente()).ValorDeGancho();
    if (data::ToText(campo) == "2")
      f.txtFields(campo_de_traspaso::Descripcion)
          .Text("Artículo " + f.txtFields(campo_de_traspaso::Articulo).Text());
  });
  frmMovEstaciones& f = Abre();
  Teclea(f, f.txtFields(campo_de_traspaso::Articulo), "A-100");
  Tecla(f, "Tab");
  EXPECT_EQ(f.txtFields(campo_de_traspaso::Descripcion).Text(), "Artículo A-100");
  EXPECT_TRUE(f.txtFields(campo_de_traspaso::Cantidad).HasFocus());
}

TEST_F(Estaciones, EnteringAFieldSelectsItsTextUntrimmed) {
  frmMovEstaciones& f = Abre();
  for (int campo : {1, 2, 3, 4, 0}) {
    f.txtFields(campo).Text("  ñu ");
    f.Enter(f.txtFields(campo));
    EXPECT_EQ(f.txtFields(campo).Text(), "  ñu ") << campo;
    EXPECT_EQ(f.txtFields(campo).SelStart(), 0) << campo;
    EXPECT_EQ(f.txtFields(campo).SelLength(), 5) << campo;
  }
}

TEST_F(Estaciones, EnterGoesOnLikeTab) {
  frmMovEstaciones& f = Abre();
  const std::vector<forms::Control*> orden = {
      &f.txtFields(campo_de_traspaso::Entrega),  &f.txtFields(campo_de_traspaso::Recibe),   &f.DTPicker1,
      &f.txtFields(campo_de_traspaso::Articulo), &f.txtFields(campo_de_traspaso::Cantidad), &f.Command1};
  for (std::size_t i = 0; i + 1 < orden.size(); ++i) {
    ASSERT_TRUE(orden[i]->HasFocus()) << orden[i]->FullName();
    Tecla(f, "Enter");
  }
  EXPECT_TRUE(f.Command1.HasFocus());
  EXPECT_EQ(Claves(), Textos(4, "MOVESTACIONES002"));  // the picker fires none
  f.Enter(f.txtFields(campo_de_traspaso::Descripcion));
  Tecla(f, "Enter");
  EXPECT_FALSE(f.txtFields(campo_de_traspaso::Descripcion).HasFocus());
}

TEST_F(Estaciones, EnterOnTheLineButtonIsItsClick) {
  frmMovEstaciones& f = Abre();
  f.Enter(f.Command1);
  Olvida();
  Tecla(f, "Enter");
  EXPECT_EQ(Claves(), (Textos{"MOVESTACIONES003"}));
  EXPECT_TRUE(f.Command1.HasFocus());
}

TEST_F(Estaciones, DownInTheArticleShowsTheListAndKeepsTheFocus) {
  frmMovEstaciones& f = Abre();
  f.Enter(f.txtFields(campo_de_traspaso::Articulo));
  Olvida();
  bitacora.elige = [](forms::TextBox&) { return std::optional<std::string>("A-100"); };
  Tecla(f, "Down");
  EXPECT_EQ(bitacora.selectores, (Textos{"ListaArticulos||txtFields(2)"}));
  EXPECT_EQ(f.txtFields(campo_de_traspaso::Articulo).Text(), "A-100");
  EXPECT_TRUE(f.txtFields(campo_de_traspaso::Articulo).HasFocus());
  EXPECT_TRUE(Claves().empty());  // the article is the routine's once the field is left
  Tecla(f, "Tab");
  EXPECT_EQ(Claves(), (Textos{"MOVESTACIONES002"}));
  EXPECT_EQ(data::ToText(bitacora.ganchos.at(0).second), "2");
}

TEST_F(Estaciones, TheListMayHaveTakenTheFocusAway) {
  frmMovEstaciones& f = Abre();
  f.Enter(f.txtFields(campo_de_traspaso::Articulo));
  bitacora.elige = [&](forms::TextBox&) {
    f.txtFields(campo_de_traspaso::Cantidad).SetFocus();
    return std::optional<std::string>();
  };
  Tecla(f, "Down");
  EXPECT_TRUE(f.txtFields(campo_de_traspaso::Articulo).HasFocus());
}

TEST_F(Estaciones, DownInAStationShowsItsSearchWithTheCaretInFront) {
  frmMovEstaciones& f = Abre();
  for (int campo : {0, 1}) {
    f.txtFields(campo).Text("E2");
    f.Enter(f.txtFields(campo));
    f.txtFields(campo).SelStart(2);
    Olvida();
    Tecla(f, "Down");
    EXPECT_EQ(listas, (Textos{f.txtFields(campo).FullName()}));
    EXPECT_EQ(f.txtFields(campo).SelStart(), 0);
    EXPECT_EQ(f.txtFields(campo).SelLength(), 0);
    EXPECT_TRUE(bitacora.selectores.empty());
  }
}

TEST_F(Estaciones, DownInTheOtherFieldsDoesNothing) {
  frmMovEstaciones& f = Abre();
  for (int campo : {3, 4}) {
    f.txtFields(campo).Text("12");
    f.Enter(f.txtFields(campo));
    f.txtFields(campo).SelStart(1);
    Olvida();
    Tecla(f, "Down");
    EXPECT_TRUE(listas.empty()) << campo;
    EXPECT_TRUE(bitacora.selectores.empty()) << campo;
    EXPECT_EQ(f.txtFields(campo).SelStart(), 1) << campo;
    EXPECT_TRUE(f.txtFields(campo).HasFocus()) << campo;
  }
}

TEST_F(Estaciones, OtherKeysOfTheFieldsDoNothing) {
  frmMovEstaciones& f = Abre();
  for (int campo : {0, 1, 2, 3, 4}) {
    f.Enter(f.txtFields(campo));
    Olvida();
    for (const char* tecla : {"Up", "F1", "F2", "F3", "F5", "F8", "F9", "Esc"}) Tecla(f, tecla);
    EXPECT_TRUE(f.txtFields(campo).HasFocus()) << campo;
    EXPECT_TRUE(Claves().empty()) << campo;
    EXPECT_TRUE(listas.empty()) << campo;
    EXPECT_TRUE(bitacora.selectores.empty()) << campo;
    EXPECT_TRUE(f.Open()) << campo;
  }
}

// ---- the buttons and the ways out ----

struct Boton {
  const char* nombre;
  forms::Button frmMovEstaciones::*boton;
  const char* clave;
};

class Botones : public Estaciones, public ::testing::WithParamInterface<Boton> {
 protected:
  static void Oprime(frmMovEstaciones& f) { f.Click(f.*GetParam().boton); }
};

TEST_P(Botones, FiresItsKeyAndThenThatOfTheClosing) {
  frmMovEstaciones& f = Abre();
  f.Enter(f.DTPicker1);
  Olvida();
  Oprime(f);
  EXPECT_EQ(Claves(), (Textos{GetParam().clave, "MOVESTACIONES007"}));
  EXPECT_FALSE(f.Open());
  EXPECT_TRUE(plataforma.Screens().empty());
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_TRUE(bitacora.sentencias.empty());
}

TEST_P(Botones, AVetoOfItsRoutineKeepsTheScreenAndTheClosingIsNotAskedFor) {
  Veta(GetParam().clave);
  frmMovEstaciones& f = Abre();
  f.Enter(f.DTPicker1);
  Olvida();
  Oprime(f);
  EXPECT_TRUE(f.Open());
  EXPECT_FALSE(f.CancelaProceso);
  EXPECT_EQ(Claves(), (Textos{GetParam().clave}));
  anfitrion->Gancho(GetParam().clave, {});
  Oprime(f);  // and the next time it closes
  EXPECT_FALSE(f.Open());
}

TEST_P(Botones, AVetoOfTheClosingKeepsTheScreenToo) {
  Veta("MOVESTACIONES007");
  frmMovEstaciones& f = Abre();
  f.Enter(f.DTPicker1);
  Olvida();
  Oprime(f);
  EXPECT_TRUE(f.Open());
  EXPECT_TRUE(f.Visible());
  EXPECT_FALSE(f.CancelaProceso);
  EXPECT_EQ(Claves(), (Textos{GetParam().clave, "MOVESTACIONES007"}));
  anfitrion->Gancho("MOVESTACIONES007", {});
  Oprime(f);
  EXPECT_FALSE(f.Open());
}

TEST_P(Botones, AnErrorOfItsRoutineLeavesTheEventAndTheScreenStays) {
  Gancho(GetParam().clave, [](frmMovEstaciones&) { throw data::Error("no hay existencia"); });
  frmMovEstaciones& f = Abre();
  f.txtFields(campo_de_traspaso::Cantidad).Text("12");
  f.Enter(f.DTPicker1);
  Olvida();
  Oprime(f);
  EXPECT_EQ(no_atrapados, (Textos{"no hay existencia"}));
  EXPECT_EQ(Claves(), (Textos{GetParam().clave}));
  EXPECT_TRUE(f.Open());
  EXPECT_EQ(f.txtFields(campo_de_traspaso::Cantidad).Text(), "12");
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_EQ(ArchivoDelDia(), "");
}

TEST_P(Botones, TheFieldThatIsLeftForItFiresFirst) {
  frmMovEstaciones& f = Abre();
  Oprime(f);
  EXPECT_EQ(Claves(), (Textos{"MOVESTACIONES002", GetParam().clave, "MOVESTACIONES007"}));
}

const Boton kBotones[] = {{"Cancelar", &frmMovEstaciones::cmdCancelar, "MOVESTACIONES004"},
                          {"Pendiente", &frmMovEstaciones::cmdPendiente, "MOVESTACIONES005"},
                          {"Confirmar", &frmMovEstaciones::cmdConfirmar, "MOVESTACIONES006"}};
std::string NombreDeBoton(const ::testing::TestParamInfo<Boton>& boton) { return boton.param.nombre; }
INSTANTIATE_TEST_SUITE_P(Estaciones, Botones, ::testing::ValuesIn(kBotones), NombreDeBoton);

TEST_F(Estaciones, TheCloseBoxFiresTheClosingAlone) {
  frmMovEstaciones& f = Abre();
  f.Close();
  EXPECT_FALSE(f.Open());
  EXPECT_EQ(Claves(), (Textos{"MOVESTACIONES007"}));  // the field that had the focus is not left by it
}

TEST_F(Estaciones, TheCloseBoxCanBeVetoed) {
  Veta("MOVESTACIONES007");
  frmMovEstaciones& f = Abre();
  f.Close();
  EXPECT_TRUE(f.Open());
  EXPECT_FALSE(f.CancelaProceso);
  anfitrion->Gancho("MOVESTACIONES007", {});
  f.Close();
  EXPECT_FALSE(f.Open());
}

TEST_F(Estaciones, AnErrorOfTheClosingKeepsTheScreen) {
  Gancho("MOVESTACIONES007", [](frmMovEstaciones&) { throw data::Error("sin cierre"); });
  frmMovEstaciones& f = Abre();
  f.Close();
  EXPECT_TRUE(f.Open());
  EXPECT_EQ(no_atrapados, (Textos{"sin cierre"}));
  EXPECT_TRUE(bitacora.mensajes.empty());
}

TEST_F(Estaciones, AVetoOfALeftFieldOrOfALineIsTheNextButtons) {
  Veta("MOVESTACIONES003");
  frmMovEstaciones& f = Abre();
  f.Click(f.Command1);
  EXPECT_TRUE(f.CancelaProceso);  // nothing follows that key, so nothing obeys
  f.Click(f.cmdCancelar);
  EXPECT_TRUE(f.Open());
  f.Click(f.cmdCancelar);
  EXPECT_FALSE(f.Open());
}

TEST_F(Estaciones, TheLineButtonFiresItsKeyAndTheRoutineFillsTheGrid) {
  Gancho("MOVESTACIONES003", [](frmMovEstaciones& f) { LlenaGrid(f, 1); });
  frmMovEstaciones& f = Abre();
  f.Enter(f.DTPicker1);
  Olvida();
  f.Click(f.Command1);
  EXPECT_EQ(Claves(), (Textos{"MOVESTACIONES003"}));
  EXPECT_EQ(EnGrid(f), (Textos{"A-1"}));
  EXPECT_TRUE(f.Open());
}

TEST_F(Estaciones, F5DoesNothingByItself) {
  frmMovEstaciones& f = Abre();
  for (forms::Control* control : f.TabOrder()) {
    f.Enter(*control);
    Olvida();
    Tecla(f, "F5");
    EXPECT_TRUE(Claves().empty()) << control->FullName();
    EXPECT_TRUE(f.Open()) << control->FullName();
  }
}

// A whole transfer, as a shop's routines would make it.
TEST_F(Estaciones, EachMomentHasItsKeyInOrder) {
  frmMovEstaciones& f = Abre();
  Teclea(f, f.txtFields(campo_de_traspaso::Entrega), "E1");
  Tecla(f, "Enter");
  Teclea(f, f.txtFields(campo_de_traspaso::Recibe), "E2");
  Tecla(f, "Enter");
  Tecla(f, "Enter");
  Teclea(f, f.txtFields(campo_de_traspaso::Articulo), "A-100");
  Tecla(f, "Enter");
  Teclea(f, f.txtFields(campo_de_traspaso::Cantidad), "3");
  Tecla(f, "Enter");
  Tecla(f, "Enter");
  f.Click(f.cmdConfirmar);
  Textos todas;
  for (const auto& [clave, valor] : bitacora.ganchos)
    todas.push_back(clave.substr(13) + "/" + data::ToText(valor));
  // The value stays that of the last field.
  EXPECT_EQ(todas, (Textos{"002/0", "002/1", "002/2", "002/4", "003/4", "006/4", "007/4"}));
  EXPECT_TRUE(bitacora.sentencias.empty());
  EXPECT_TRUE(bitacora.movimientos.empty());
  EXPECT_TRUE(bitacora.regresadas.empty());
}

TEST_F(Estaciones, WithoutRoutinesItIsAnEmptyShell) {
  for (const char* boton : {"cmdCancelar", "cmdPendiente", "cmdConfirmar"}) {
    frmMovEstaciones& f = Abre();
    EXPECT_EQ(f.grid.Rows(), 0);
    EXPECT_EQ(f.grid.Cols(), 0);
    f.Click(*f.Find(boton));
    EXPECT_FALSE(f.Open()) << boton;
  }
  EXPECT_TRUE(no_atrapados.empty());
}

// ---- the grid ----

TEST_F(Estaciones, DeleteAsksAndYesRemovesTheLineFromTheGridAlone) {
  frmMovEstaciones& f = Abre();
  LlenaGrid(f, 3);
  f.ClickCell(f.grid, 2, 1);
  Olvida();
  bitacora.respuestas = {true};
  Tecla(f, "Delete");
  EXPECT_EQ(EnGrid(f), (Textos{"A-1", "A-3"}));
  ASSERT_EQ(bitacora.mensajes.size(), 1u);
  EXPECT_EQ(bitacora.mensajes[0].clase, "pregunta");
  EXPECT_EQ(bitacora.mensajes[0].texto, "Esta seguro de querer borrar la partida");
  EXPECT_EQ(bitacora.mensajes[0].estilo, 2);
  EXPECT_TRUE(Claves().empty());
  EXPECT_TRUE(bitacora.sentencias.empty());
  EXPECT_TRUE(f.grid.HasFocus());
}

TEST_F(Estaciones, DeleteAnsweredWithNoChangesNothing) {
  frmMovEstaciones& f = Abre();
  LlenaGrid(f, 3);
  f.ClickCell(f.grid, 2, 1);
  Tecla(f, "Delete");
  EXPECT_EQ(EnGrid(f), (Textos{"A-1", "A-2", "A-3"}));
  EXPECT_EQ(bitacora.mensajes.size(), 1u);
}

TEST_F(Estaciones, EveryLineCanBeRemovedAndTheHeaderStays) {
  frmMovEstaciones& f = Abre();
  LlenaGrid(f, 2);
  f.Enter(f.grid);
  bitacora.respuestas = {true, true, true};
  for (int i = 0; i < 3; ++i) Tecla(f, "Delete");
  EXPECT_TRUE(EnGrid(f).empty());
  EXPECT_EQ(f.grid.Rows(), 1);
  EXPECT_EQ(f.grid.TextMatrix(0, 0), "Artículo");
  EXPECT_TRUE(no_atrapados.empty());
}

TEST_F(Estaciones, DeleteOnAnEmptyGridRemovesNothing) {
  frmMovEstaciones& f = Abre();
  bitacora.respuestas = {true};
  Tecla(f, "Delete", f.grid);
  EXPECT_EQ(f.grid.Rows(), 0);
  EXPECT_TRUE(no_atrapados.empty());
  EXPECT_TRUE(f.Open());
}

TEST_F(Estaciones, OtherKeysOfTheGridAskNothing) {
  frmMovEstaciones& f = Abre();
  LlenaGrid(f, 2);
  for (const char* tecla : {"Back", "Enter", "Space", "a", "F5", "Down", "."}) Tecla(f, tecla, f.grid);
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_EQ(EnGrid(f).size(), 2u);
  EXPECT_EQ(f.grid.Row(), 2);  // Down is the grid's own
}

// ---- what comes with a key ----

// A host that notes how its routines are asked for, and lends all else from another.
class HostEspia final : public service::Host, private service::ConsultasCatalogo {
 public:
  explicit HostEspia(service::Host& otro) : otro_(otro) {}

  struct Llamada {
    std::string clave;
    forms::Form* pantalla;
    service::Ambiente* ambiente;
  };
  std::vector<Llamada> llamadas;

  forms::Platform& Plataforma() override { return otro_.Plataforma(); }
  service::Funciones& Funciones() override { return otro_.Funciones(); }
  service::ConsultasCatalogo& ConsultasCatalogo() override { return *this; }
  std::unique_ptr<service::MovimientoInventario> NuevoMovimiento() override {
    return otro_.NuevoMovimiento();
  }
  std::unique_ptr<service::BuscadorCatalogo> NuevoBuscador() override { return otro_.NuevoBuscador(); }
  std::unique_ptr<service::AuxiliarNumerico> NuevoAuxiliar() override { return otro_.NuevoAuxiliar(); }
  std::unique_ptr<service::ListaArticulos> NuevaLista() override { return otro_.NuevaLista(); }

 private:
  void BuscaCatalogo(const std::string& key, forms::Form& screen, service::Ambiente& ambiente) override {
    llamadas.push_back({key, &screen, &ambiente});
  }
  void ImprimeDocumento(const std::string&, std::int32_t, service::Ambiente&, forms::Form&) override {}

  service::Host& otro_;
};

TEST_F(Estaciones, EveryKeyComesWithItsScreenAndItsContext) {
  HostEspia espia(*anfitrion);
  auto f = std::make_shared<frmMovEstaciones>(espia);
  f->Ambiente = &anfitrion->Ambiente();
  f->Show(false);
  f->Enter(f->txtFields(campo_de_traspaso::Recibe));
  f->cmdCancelar_Click();
  Textos claves;
  for (const auto& llamada : espia.llamadas) {
    claves.push_back(llamada.clave);
    EXPECT_EQ(llamada.pantalla, f.get()) << llamada.clave;
    EXPECT_EQ(llamada.ambiente, &anfitrion->Ambiente()) << llamada.clave;
  }
  EXPECT_EQ(claves, (Textos{"MOVESTACIONES001", "MOVESTACIONES002", "MOVESTACIONES004", "MOVESTACIONES007"}));
}

// ---- failures ----

TEST_F(Estaciones, WhatFailsInAnEventIsToldToThePlatformAndNotReported) {
  frmMovEstaciones& f = Abre();
  LlenaGrid(f, 1);
  const auto sale = [&](const char* servicio, const std::function<void()>& acto) {
    Olvida();
    bitacora.FallaServicio(servicio, 1, "falla provocada");
    acto();
    EXPECT_EQ(no_atrapados, (Textos{"falla provocada"})) << servicio;
    EXPECT_TRUE(bitacora.mensajes.empty()) << servicio;
    EXPECT_TRUE(f.Open()) << servicio;
  };
  sale("EnviaTeclas", [&] { Tecla(f, "Enter", f.txtFields(campo_de_traspaso::Entrega)); });
  EXPECT_TRUE(f.txtFields(campo_de_traspaso::Entrega).HasFocus());
  sale("EnviaTeclas", [&] { Tecla(f, "Enter", f.DTPicker1); });
  f.Enter(f.txtFields(campo_de_traspaso::Entrega));
  sale("BuscaCatalogo", [&] { f.Enter(f.txtFields(campo_de_traspaso::Recibe)); });
  EXPECT_TRUE(f.txtFields(campo_de_traspaso::Recibe).HasFocus());  // the focus is where the hand went
  f.Enter(f.DTPicker1);
  sale("BuscaCatalogo", [&] { f.Click(f.Command1); });
  sale("Pregunta", [&] { Tecla(f, "Delete", f.grid); });
  EXPECT_EQ(f.grid.Rows(), 2);
  sale("BuscaCatalogo", [&] { f.Close(); });
  EXPECT_EQ(ArchivoDelDia(), "");
}

TEST_F(Estaciones, WhatFailsOnKeyUpIsIgnoredAndTheNextStepRuns) {
  frmMovEstaciones& f = Abre();
  f.Enter(f.txtFields(campo_de_traspaso::Articulo));
  Olvida();
  bitacora.FallaServicio("Muestra", 1, "falla provocada");
  Tecla(f, "Down");
  EXPECT_TRUE(no_atrapados.empty());
  EXPECT_TRUE(f.txtFields(campo_de_traspaso::Articulo).HasFocus());
  plataforma.on_search_list = [](forms::SearchBox&) { throw data::Error("falla provocada"); };
  f.Enter(f.txtFields(campo_de_traspaso::Entrega));
  f.txtFields(campo_de_traspaso::Entrega).Text("E2");
  f.txtFields(campo_de_traspaso::Entrega).SelStart(2);
  Tecla(f, "Down");
  EXPECT_TRUE(no_atrapados.empty());
  EXPECT_EQ(f.txtFields(campo_de_traspaso::Entrega).SelStart(), 0);
  EXPECT_TRUE(bitacora.mensajes.empty());
}

TEST_F(Estaciones, MovingTheFocusWhereItCannotGoIsIgnored) {
  frmMovEstaciones& f = Abre();
  f.txtFields(campo_de_traspaso::Cantidad).Enabled(false);
  f.ColocaFoco(f.txtFields(campo_de_traspaso::Cantidad));
  EXPECT_TRUE(f.txtFields(campo_de_traspaso::Entrega).HasFocus());
  f.ColocaFoco(f.txtFields(campo_de_traspaso::Recibe));
  EXPECT_TRUE(f.txtFields(campo_de_traspaso::Recibe).HasFocus());
}

// ---- shown ----

TEST_F(Estaciones, AModalTransferReturnsOnceItIsClosed) {
  Textos orden;
  plataforma.on_modal = [&](forms::Form& forma) {
    auto& f = dynamic_cast<frmMovEstaciones&>(forma);
    orden.push_back(f.Visible() ? "visible" : "hidden");
    f.Click(f.cmdConfirmar);
    orden.push_back(f.Open() ? "open" : "closed");
  };
  movimientos->movimientoEstacion(12, true);
  EXPECT_EQ(orden, (Textos{"visible", "closed"}));
  EXPECT_EQ(Claves(),
            (Textos{"MOVESTACIONES001", "MOVESTACIONES002", "MOVESTACIONES006", "MOVESTACIONES007"}));
  EXPECT_TRUE(plataforma.Screens().empty());
}

TEST_F(Estaciones, TwoTransfersStandBesideEachOtherAndShareTheContext) {
  frmMovEstaciones& primera = Abre();
  movimientos->movimientoEstacion(13, false);
  frmMovEstaciones& segunda = Ultima();
  EXPECT_EQ(primera.Ambiente.Get(), segunda.Ambiente.Get());
  EXPECT_EQ(primera.Id, 12);
  EXPECT_EQ(segunda.Id, 13);
  segunda.Click(segunda.cmdCancelar);
  EXPECT_TRUE(primera.Open());
  EXPECT_EQ(plataforma.Screens().size(), 1u);
}

}  // namespace
}  // namespace tarvik::tests
