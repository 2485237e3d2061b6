// The screens' public members and procedures, under the names that they have in C++.
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include "goods_in/frm_entradas_wizard.h"
#include "goods_out/frm_salidas_wizard.h"
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
    (screen.*procedure)(result);
    return result;
  };
}

#define TARVIK_RECORDSET(Screen, Name) \
  .def_property_readonly(#Name, [](const Screen& screen) { return RecordsetObject(screen.Name); })
#define TARVIK_STRING(Screen, Name)                                   \
  .def_property(                                                      \
      #Name, [](const Screen& screen) { return StrOf(screen.Name); }, \
      [](Screen& screen, const py::object& text) { screen.Name = TextOf(text); })

void BindDocumentWizard(py::module_& module) {
  using W = DocumentWizard;
  py::class_<W, forms::Form, std::shared_ptr<W>>(module, "DocumentWizard") TARVIK_STRING(W, Modo)
      .def_readwrite("Importe", &W::Importe)
      .def_readwrite("Iva", &W::Iva)
      .def_readwrite("Total", &W::Total)
      .def_readwrite("Costo", &W::Costo)
      .def_readwrite("CancelaProceso", &W::CancelaProceso)
      .def_readwrite("Procesando", &W::Procesando)
      .def_readwrite("NumeroDePartidas", &W::NumeroDePartidas) TARVIK_RECORDSET(W, rstArticulo)
          TARVIK_RECORDSET(W, rstPartidas)
      .def("TraeConcepto", &W::TraeConcepto)
      .def("Valida", &W::Valida)
      .def("ValidaTab1", Answer<W>(&W::ValidaTab1))
      .def("ValidaFecha", Answer<W>(&W::ValidaFecha))
      .def("PonTC", &W::PonTC)
      .def("PonDescripcion", &W::PonDescripcion)
      .def("TraeSegundaClave", &W::TraeSegundaClave)
      .def("MultiplicaPrecio", &W::MultiplicaPrecio)
      .def("LlenaPartida", &W::LlenaPartida)
      .def("NuevaPartida", &W::NuevaPartida)
      .def("MSFlexGridEdit", &W::MSFlexGridEdit)
      .def("EditKeyCode", [](W& screen, forms::FlexGrid& grid, forms::TextBox& box, int code,
                             int shift) { screen.EditKeyCode(grid, box, code, shift); })
      .def("CalculaImportes", &W::CalculaImportes)
      .def("SalvaCambios", &W::SalvaCambios)
      .def("CuantasPartidas", &W::CuantasPartidas)
      .def("ColocaFoco", [](W& screen, forms::Control& control) { screen.ColocaFoco(control); })
      .def("Label10_Click", &W::Label10_Click)
      .def("Command2_Click", &W::Command2_Click)
      .def("Command5_Click", &W::Command5_Click)
      .def("Command6_Click", &W::Command6_Click)
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
      .def("CalculaCantidad", &E::CalculaCantidad)
      .def("BuscaModelo", Answer<E>(&E::BuscaModelo))
      .def("CreaEntrada", &E::CreaEntrada)
      .def("SalvaEntrada", &E::SalvaEntrada)
      .def("SalvaPartidas", &E::SalvaPartidas)
      .def("AfectaPartidas", &E::AfectaPartidas)
      .def("ImprimeEntrada", &E::ImprimeEntrada)
      .def("Check1_Click", &E::Check1_Click)
      .def("Command3_Click", &E::Command3_Click)
      .def("Timer1_Timer", &E::Timer1_Timer);

  using S = frmSalidasWizard;
  py::class_<S, forms::Form, std::shared_ptr<S>>(module, "frmSalidasWizard")
      .def_readwrite("Salida", &S::Salida) TARVIK_STRING(S, Modo) TARVIK_RECORDSET(S, rstSalida);

  using M = frmMovEstaciones;
  py::class_<M, forms::Form, std::shared_ptr<M>>(module, "frmMovEstaciones")
      .def_readwrite("Id", &M::Id)
      .def_readwrite("CancelaProceso", &M::CancelaProceso);
}

}  // namespace tarvik::python
