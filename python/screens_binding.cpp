// The screens' public members and procedures, under the names that they have in C++.
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include "goods_in/frm_entradas_wizard.h"
#include "goods_out/frm_salidas_wizard.h"
#include "matrix/frm_malla_modelos.h"
#include "python/binding.h"
#include "stations/frm_mov_estaciones.h"

namespace tarvik::python {

namespace {

py::object RecordsetObject(const data::RecordsetRef& reference) {
  return reference ? py::cast(reference.Shared()) : py::object(py::none());
}

// A procedure with one out argument gives it back.
template <class Screen>
auto Answer(void (Screen::*procedure)(bool&)) {
  return [procedure](Screen& screen) {
    bool result = false;
    Called([&] { (screen.*procedure)(result); });
    return result;
  };
}

// A procedure of a key or a character gives back what it leaves of it; 0 is swallowed.
template <class Screen>
auto KeyProcedure(void (Screen::*procedure)(int&, int)) {
  return [procedure](Screen& screen, int code, int shift) {
    Called([&] { (screen.*procedure)(code, shift); });
    return code;
  };
}
template <class Screen>
auto CharProcedure(void (Screen::*procedure)(int&)) {
  return [procedure](Screen& screen, int character) {
    Called([&] { (screen.*procedure)(character); });
    return character;
  };
}

data::RecordsetRef RecordsetOf(const py::object& object) {
  return object.is_none() ? nullptr : object.cast<std::shared_ptr<data::Recordset>>();
}

// The statement builder of a wizard, used through the screen that holds it.
struct Constructor {
  std::shared_ptr<DocumentWizard> screen;
};

#define TARVIK_RECORDSET(Screen, Name)                                          \
  .def_property(                                                                \
      #Name, [](const Screen& screen) { return RecordsetObject(screen.Name); }, \
      [](Screen& screen, const py::object& rows) { screen.Name = RecordsetOf(rows); })
// The context and the host's form, as the script knows them.
#define TARVIK_AMBIENTE(Screen)                                                                 \
  .def_property(                                                                                \
      "Ambiente", [](Screen& screen) { return AmbienteObject(screen.Ambiente.Get(), screen); }, \
      [](Screen& screen, const py::object& ambiente) { screen.Ambiente = AmbienteOf(ambiente); })
#define TARVIK_PARENT(Screen)                                                             \
  .def_property(                                                                          \
      "Parent", [](Screen& screen) { return ParentObject(screen.Parent.Get(), screen); }, \
      [](Screen& screen, const py::object& parent) { screen.Parent = ParentOf(parent); })
#define TARVIK_STRING(Screen, Name)                                   \
  .def_property(                                                      \
      #Name, [](const Screen& screen) { return StrOf(screen.Name); }, \
      [](Screen& screen, const py::object& text) { screen.Name = TextOf(text); })

void BindDocumentWizard(py::module_& module) {
  using W = DocumentWizard;
  using C = Constructor;
  py::class_<C>(module, "Query")
      .def("Limpia", [](C& self) { self.screen->Query->Limpia(); })
      .def("TipoSentencia", [](C& self, const std::string& kind) { self.screen->Query->TipoSentencia(kind); })
      .def("AgregaCampo",
           [](C& self, const std::string& table, const std::string& column, const py::object& value) {
             self.screen->Query->AgregaCampo(table, column, ValueOf(value));
           })
      .def("Condicion", [](C& self, const std::string& text) { self.screen->Query->Condicion(text); })
      .def("TextoSql",
           [](C& self) {
             std::string text;
             self.screen->Query->TextoSql(text);
             return StrOf(text);
           })
      .def("SentenciaDirecta",
           [](C& self, const std::string& text) { self.screen->Query->SentenciaDirecta(text); })
      .def("Ejecuta", [](C& self) { self.screen->Query->Ejecuta(); });
  py::class_<W, forms::Form, std::shared_ptr<W>>(module, "DocumentWizard") TARVIK_STRING(W, Modo)
      .def_readwrite("Importe", &W::Importe)
      .def_readwrite("Iva", &W::Iva)
      .def_readwrite("Total", &W::Total)
      .def_readwrite("Costo", &W::Costo)
      .def_readwrite("CancelaProceso", &W::CancelaProceso)
      .def_readwrite("Procesando", &W::Procesando)
      .def_readwrite("NumeroDePartidas", &W::NumeroDePartidas) TARVIK_RECORDSET(W, rstArticulo)
          TARVIK_RECORDSET(W, rstPartidas) TARVIK_AMBIENTE(W) TARVIK_PARENT(W)
      .def_property_readonly(
          "Query",
          [](W& screen) -> py::object {
            if (!screen.Query) return py::none();
            return py::cast(Constructor{std::dynamic_pointer_cast<W>(screen.shared_from_this())});
          })
      .def("txtFields_Change", Procedure(&W::txtFields_Change))
      .def("txtFields_GotFocus", Procedure(&W::txtFields_GotFocus))
      .def("txtFields_LostFocus", Procedure(&W::txtFields_LostFocus))
      .def("txtFields_KeyDown",
           [](W& screen, int index, int code, int shift) {
             Called([&] { screen.txtFields_KeyDown(index, code, shift); });
             return code;
           })
      .def("txtFields_KeyPress",
           [](W& screen, int index, int key) {
             Called([&] { screen.txtFields_KeyPress(index, key); });
             return key;
           })
      .def("txtFields_KeyUp", Procedure(&W::txtFields_KeyUp))
      .def("txtFields_DblClick", Procedure(&W::txtFields_DblClick))
      .def("fg2_GotFocus", Procedure(&W::fg2_GotFocus))
      .def("fg2_LeaveCell", Procedure(&W::fg2_LeaveCell))
      .def("fg2_RowColChange", Procedure(&W::fg2_RowColChange))
      .def("fg2_KeyDown", KeyProcedure<W>(&W::fg2_KeyDown))
      .def("txtEdit_KeyDown", KeyProcedure<W>(&W::txtEdit_KeyDown))
      .def("txtEdit_KeyPress", CharProcedure<W>(&W::txtEdit_KeyPress))
      .def("fg2_KeyPress", CharProcedure<W>(&W::fg2_KeyPress))
      .def("fg2_DblClick", Procedure(&W::fg2_DblClick))
      .def("TraeConcepto", Procedure(&W::TraeConcepto))
      .def("Valida", Procedure(&W::Valida))
      .def("ValidaTab1", Answer<W>(&W::ValidaTab1))
      .def("ValidaFecha", Answer<W>(&W::ValidaFecha))
      .def("PonTC", Procedure(&W::PonTC))
      .def("PonDescripcion", Procedure(&W::PonDescripcion))
      .def("TraeSegundaClave", Procedure(&W::TraeSegundaClave))
      .def("MultiplicaPrecio", Procedure(&W::MultiplicaPrecio))
      .def("LlenaPartida", Procedure(&W::LlenaPartida))
      .def("NuevaPartida", Procedure(&W::NuevaPartida))
      .def("MSFlexGridEdit", Procedure(&W::MSFlexGridEdit))
      .def("EditKeyCode", [](W& screen, forms::FlexGrid& grid, forms::TextBox& box, int code,
                             int shift) { Called([&] { screen.EditKeyCode(grid, box, code, shift); }); })
      .def("CalculaImportes", Procedure(&W::CalculaImportes))
      .def("SalvaCambios", Procedure(&W::SalvaCambios))
      .def("CuantasPartidas", Procedure(&W::CuantasPartidas))
      .def("ColocaFoco",
           [](W& screen, forms::Control& control) { Called([&] { screen.ColocaFoco(control); }); })
      .def("Label10_Click", Procedure(&W::Label10_Click))
      .def("Command2_Click", Procedure(&W::Command2_Click))
      .def("Command5_Click", Procedure(&W::Command5_Click))
      .def("Command6_Click", Procedure(&W::Command6_Click))
      .def("ReportaError", [](W& screen, const std::string& module_text, const std::string& function,
                              const std::string& description) {
        return screen.ReportaError(module_text, function, description);
      });
}

}  // namespace

void BindScreens(py::module_& module) {
  BindDocumentWizard(module);

  using E = frmEntradasWizard;
  py::class_<E, DocumentWizard, std::shared_ptr<E>>(module, "frmEntradasWizard")
      .def_readwrite("Entrada", &E::Entrada) TARVIK_RECORDSET(E, rstEntrada) TARVIK_STRING(E, cEstado)
      .def("CalculaCantidad", Procedure(&E::CalculaCantidad))
      .def("BuscaModelo", Answer<E>(&E::BuscaModelo))
      .def("CreaEntrada", Procedure(&E::CreaEntrada))
      .def("SalvaEntrada", Procedure(&E::SalvaEntrada))
      .def("SalvaPartidas", Procedure(&E::SalvaPartidas))
      .def("AfectaPartidas", Procedure(&E::AfectaPartidas))
      .def("ImprimeEntrada", Procedure(&E::ImprimeEntrada))
      .def("Check1_Click", Procedure(&E::Check1_Click))
      .def("Command1_Click", Procedure(&E::Command1_Click))
      .def("Command3_Click", Procedure(&E::Command3_Click))
      .def("Timer1_Timer", Procedure(&E::Timer1_Timer));

  using S = frmSalidasWizard;
  py::class_<S, DocumentWizard, std::shared_ptr<S>>(module, "frmSalidasWizard")
      .def_readwrite("Salida", &S::Salida)
      .def_readwrite("UltimaPartida", &S::UltimaPartida)
      .def_readwrite("Acumulado", &S::Acumulado) TARVIK_STRING(S, Html) TARVIK_RECORDSET(S, rstSalida)
          TARVIK_RECORDSET(S, rstClients) TARVIK_RECORDSET(S, rstVends) TARVIK_RECORDSET(S, rstCobdet)
              TARVIK_RECORDSET(S, rstClavesAdd)
      .def("CreaHTML",
           [](S& screen, const py::object& heading, const py::object& page) {
             std::string text = TextOf(heading);
             Called([&] { screen.CreaHTML(text, TextOf(page)); });
             return StrOf(text);
           })
      .def("llenaDirecciones", Procedure(&S::llenaDirecciones))
      .def("Combo1_Click", Procedure(&S::Combo1_Click))
      .def("Combo1_Change", Procedure(&S::Combo1_Click))
      .def("TraeVends", [](S& screen) { return StrOf(Called([&] { return screen.TraeVends(); })); })
      .def("MultiplicaPorPresentacion", Procedure(&S::MultiplicaPorPresentacion))
      .def("CreaPartida", Procedure(&S::CreaPartida))
      .def("ConfirmaExistencia", Procedure(&S::ConfirmaExistencia))
      .def("SSCheck1_Click", Procedure(&S::SSCheck1_Click))
      .def("SSCheck2_Click", Procedure(&S::SSCheck2_Click))
      .def("Check1_Click", Procedure(&S::Check1_Click))
      .def("Command1_Click", Procedure(&S::Command1_Click))
      .def("CreaEntradasDeTraspaso", Procedure(&S::CreaEntradasDeTraspaso))
      .def("CreaSalida", Procedure(&S::CreaSalida))
      .def("SalvaSalida", Procedure(&S::SalvaSalida))
      .def("SalvaPartidas", Answer<S>(&S::SalvaPartidas))
      .def("AfectaPartidas", Procedure(&S::AfectaPartidas))
      .def("ImprimeSalida", Procedure(&S::ImprimeSalida))
      .def("Timer1_Timer", Procedure(&S::Timer1_Timer));

  using G = frmMallaModelos;
  py::class_<G, forms::Form, std::shared_ptr<G>>(module, "frmMallaModelos")
      .def_readwrite("clrCeldaBloqueada", &G::clrCeldaBloqueada)
      .def("CalculaSuma", Procedure(&G::CalculaSuma))
      .def("fg2_DblClick", Procedure(&G::fg2_DblClick))
      .def("fg2_EnterCell", Procedure(&G::fg2_EnterCell))
      .def("fg2_LeaveCell", Procedure(&G::fg2_LeaveCell))
      .def("fg2_GotFocus", Procedure(&G::fg2_GotFocus))
      .def("fg2_KeyDown", KeyProcedure<G>(&G::fg2_KeyDown))
      .def("fg2_KeyPress", CharProcedure<G>(&G::fg2_KeyPress))
      .def("txtCelda_KeyDown", KeyProcedure<G>(&G::txtCelda_KeyDown))
      .def("txtCelda_KeyPress", CharProcedure<G>(&G::txtCelda_KeyPress))
      .def("cmdAceptar_Click", Procedure(&G::cmdAceptar_Click))
      .def("cmdCancelar_Click", Procedure(&G::cmdCancelar_Click))
      .def("ColocaFoco", Procedure(&G::ColocaFoco))
      .def("ReportaError", [](G& screen, const std::string& module_text, const std::string& function,
                              const std::string& description) {
        return screen.ReportaError(module_text, function, description);
      });

  using M = frmMovEstaciones;
  py::class_<M, forms::Form, std::shared_ptr<M>>(module, "frmMovEstaciones")
      .def_readwrite("Id", &M::Id)
      .def_readwrite("CancelaProceso", &M::CancelaProceso) TARVIK_AMBIENTE(M)
      .def("txtFields_GotFocus", Procedure(&M::txtFields_GotFocus))
      .def("txtFields_LostFocus", Procedure(&M::txtFields_LostFocus))
      .def("txtFields_KeyDown",
           [](M& screen, int index, int code, int shift) {
             Called([&] { screen.txtFields_KeyDown(index, code, shift); });
             return code;
           })
      .def("txtFields_KeyUp", Procedure(&M::txtFields_KeyUp))
      .def("DTPicker1_KeyDown", KeyProcedure<M>(&M::DTPicker1_KeyDown))
      .def("grid_KeyDown", KeyProcedure<M>(&M::grid_KeyDown))
      .def("Command1_Click", Procedure(&M::Command1_Click))
      .def("cmdCancelar_Click", Procedure(&M::cmdCancelar_Click))
      .def("cmdPendiente_Click", Procedure(&M::cmdPendiente_Click))
      .def("cmdConfirmar_Click", Procedure(&M::cmdConfirmar_Click))
      .def("ColocaFoco", Procedure(&M::ColocaFoco));
}

}  // namespace tarvik::python
