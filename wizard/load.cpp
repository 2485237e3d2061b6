// Loading, locking and closing a document, as far as both wizards share it.
#include <cmath>

#include "wizard/document_wizard.h"

namespace tarvik {

using service::Ignora;
using service::Trampa;

void DocumentWizard::EscribeEncabezados(Trampa& intenta, std::span<const Columna> columnas) {
  intenta([&] { fg2.Row(0); });
  intenta([&] { fg2.Col(0); });
  intenta([&] { fg2.ColWidth(0, static_cast<int>(std::lround(fg2.ColWidth(0) * 1.5))); });
  for (int columna = 0; columna < static_cast<int>(columnas.size()); ++columna) {
    const Columna& diseno = columnas[static_cast<std::size_t>(columna)];
    intenta([&] { fg2.Col(columna); });
    if (columna > 0) intenta([&] { fg2.ColWidth(columna, diseno.ancho); });
    intenta([&] { fg2.Text(diseno.titulo); });
  }
}

void DocumentWizard::PonFechaDeTrabajo(Trampa& intenta) {
  std::optional<data::Date> fecha = DTPicker1.Value();
  intenta([&] {
    data::Date dia;
    Funciones().FechaDeTrabajo(Ambiente->ValorFechaA(), Ambiente->ValorFechaB(), dia);
    fecha = dia;
  });
  intenta([&] { DTPicker1.Value(fecha); });
}

void DocumentWizard::PonAlmacenDeCasa(Trampa& intenta) {
  intenta([&] { txtFields(campo::Almacen).Text(data::ToText(Ambiente->Parametros()->Fields("Almacen"))); });
}

void DocumentWizard::CargaFecha(Trampa& intenta, forms::DatePicker& picker,
                                const data::RecordsetRef& registro, const char* columna) {
  intenta([&] {
    const data::Value& valor = registro->Fields(columna);
    if (!valor.IsNull()) picker.Value(data::ToDate(valor));
  });
}

void DocumentWizard::TomaDocumento(Trampa& intenta, std::string_view tabla, const std::string& condicion) {
  intenta([&] { Query->Limpia(); });
  intenta([&] { Query->TipoSentencia("UPDATE"); });
  intenta([&] { Query->AgregaCampo(tabla, "ocupado", 1); });
  intenta([&] { Query->Condicion(condicion); });
  EjecutaQuery(intenta);
}

void DocumentWizard::EjecutaQuery(Trampa& intenta) {
  std::string texto;
  intenta([&] { Query->TextoSql(texto); });
  intenta([&] { Query->Ejecuta(); });
}

std::string DocumentWizard::TextoDeCelda(const data::RecordsetRef& registro, const Celda& celda) {
  const data::Value& valor = registro->Fields(celda.campo);
  switch (celda.como) {
    case Celda::Texto:
      return Funciones().TextoDe(valor);
    case Celda::TrasBlanco:
      return " " + data::ToText(valor);
    default:
      return data::ToText(valor);
  }
}

void DocumentWizard::LlenaRenglones(Trampa& intenta, std::span<const Celda> celdas) {
  if (intenta.Si([&] { return rstPartidas->Eof(); })) return;
  for (int renglon = 1; intenta.Mientras([&] { return !rstPartidas->Eof(); }); ++renglon) {
    // A line beyond the grid's last row is stored and not shown, as when it was entered.
    if (renglon <= fg2.Rows() - fg2.FixedRows()) {
      intenta([&] { fg2.Row(renglon); });
      for (const Celda& celda : celdas) {
        intenta([&] { fg2.Col(celda.columna); });
        intenta([&] { fg2.Text(TextoDeCelda(rstPartidas, celda)); });
      }
    }
    intenta([&] { rstPartidas->MoveNext(); });
  }
  CalculaImportes();
}

void DocumentWizard::Bloquea() {
  Ignora ignora;
  if (Modo == modo::kConsulta) {
    for (forms::Control* control : Controls()) {
      if (!control->IsLabel()) ignora([&] { control->Enabled(false); });
    }
  }
  for (std::string_view nombre : particular_.siempre) {
    // Its panel too: nothing in a disabled panel can be reached.
    for (forms::Control* around = Find(nombre); around; around = around->Container()) around->Enabled(true);
  }
}

void DocumentWizard::DejaEnConsulta() {
  Modo = modo::kConsulta;
  txtEdit.Visible(false);  // a cell that was being edited stays as it is stored
  Bloquea();
}

void DocumentWizard::TerminaCarga(int a_la_vista) {
  Ignora ignora;
  Bloquea();
  MultiCombo1.Each([&](forms::SearchBox& caja) { ignora([&] { caja.Conexion(Ambiente->Conexion()); }); });
  if (ignora.Si([&] { return data::IsNonZero(Ambiente->Parametros()->Fields("Lector")); })) {
    ignora([&] { Check4.Value(1); });
  } else {
    ignora([&] { Check4.Value(0); });
  }
  NumeroDePartidas = a_la_vista;
}

void DocumentWizard::Presenta(std::string_view clave) {
  Ignora ignora;
  ignora([&] { Dispara(clave); });
  if (Cancelado()) return;
  ignora([&] { Funciones().PresentaForma(*this, *Ambiente); });
}

void DocumentWizard::AlternaLector(Trampa& intenta) {
  if (Check4.Value() == 1) {
    intenta([&] { Check4.Value(0); });
  } else {
    intenta([&] { Check4.Value(1); });
    PasaA(campo::Articulo);
  }
}

void DocumentWizard::Regresa(Trampa& intenta) {
  if (Parent) ColocaFoco(*Parent);
  intenta([&] { Funciones().RegresaForma(*this, *Ambiente, "frmMaster"); });
}

}  // namespace tarvik
