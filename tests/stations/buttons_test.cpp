// The buttons of a transfer between stations and the ways out: when their routines run, and what a veto or an
// error of one keeps open.
#include "tests/stations/support.h"

namespace tarvik::tests {
namespace {

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

}  // namespace
}  // namespace tarvik::tests
