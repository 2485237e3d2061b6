// Down in the article field: a model's key goes to the colour and size matrix that another program
// shows; any other key opens the list of articles. Nothing here has a trap: what fails leaves the event.
#include "data/number.h"
#include "data/text.h"
#include "wizard/document_wizard.h"

namespace tarvik {

void DocumentWizard::AbajoEnArticulo() {
  auto lista = host_.NuevaLista();
  lista->Ambiente(*Ambiente);
  lista->Campo(txtFields(campo::Articulo));
  const std::string clave = data::Trim(txtFields(campo::Articulo).Text());
  if (!clave.empty()) {
    data::RecordsetRef modelo;
    Abre("select * from modelos where modelo = '" + clave + "'", modelo);
    if (!modelo->Eof()) return ReparteFuera(clave);
  }
  lista->Muestra();
  lista.reset();
  ColocaFoco(txtFields(campo::Cantidad));
  txtFields(campo::Cantidad).SelectAll();
}

// The document goes to the base first: the other program works on what is stored. Then the one row of
// ControlProc is the signal between the two: 0 while the matrix is being filled. We never write it.
void DocumentWizard::ReparteFuera(const std::string& modelo) {
  const MallaExterna& malla = particular_.malla;
  GuardaParaMalla();
  const std::string documento = data::Trim(data::FormatNumber(NumeroDeDocumento(), "######"));
  auto entre_comillas = [](std::string_view texto) { return "'" + std::string(texto) + "'"; };
  EjecutaProcedimiento("exec TKMallaParam " + entre_comillas(Ambiente->Usuario()) + "," +
                       entre_comillas(modelo) + "," +
                       entre_comillas(data::Trim(txtFields(campo::Concepto).Text())) + "," +
                       entre_comillas(documento) + "," + entre_comillas(malla.origen));
  Dispara("TALLASYCOLORES001");

  auto senal = [this](data::RecordsetRef& control) { Abre("select * from ControlProc", control); };
  data::RecordsetRef control;
  senal(control);
  if (control->Eof()) return;
  auto esta_en = [&](double valor) {
    const data::Value& puesto = control->Fields("controlproc");
    return !puesto.IsNull() && data::ToNumber(puesto) == valor;
  };
  // No event of the screen runs meanwhile; only the program's own end breaks the wait.
  while (esta_en(0)) {
    if (GetPlatform().EndRequested()) return;
    senal(control);
    if (!esta_en(1)) continue;
    EjecutaProcedimiento("exec " + std::string(malla.procedimiento) + " " + entre_comillas(documento));
    TraeDeLaMalla(documento);
  }
}

void DocumentWizard::EjecutaProcedimiento(const std::string& sentencia) {
  auto query = Funciones().NuevoQuery();
  query->Conexion(Ambiente->Conexion());
  query->SentenciaDirecta(sentencia);
  query->Ejecuta();
}

void DocumentWizard::TraeDeLaMalla(const std::string& documento) {
  const MallaExterna& malla = particular_.malla;
  data::RecordsetRef renglones;
  Abre("select * from movsinv where operacion = '" + std::string(malla.operacion) +
           "' and movimiento = " + documento + " and claveadd = '999'",
       renglones);
  // The record set stays on its first row: a row that is found fills the grid to its end, where the
  // grid itself refuses. As a rule none is found, since the other program's rows carry the other code.
  for (std::int32_t renglon = CuantasPartidas(); !renglones->Eof();) {
    ++renglon;
    for (const Celda& celda : malla.celdas) {
      fg2.TextMatrix(renglon, celda.columna, TextoDeCelda(renglones, celda));
    }
  }
}

}  // namespace tarvik
