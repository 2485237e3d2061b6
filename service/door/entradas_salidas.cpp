// The door's operations, written once for goods-in and goods-out: what differs is in the two tables.
#include "service/door/entradas_salidas.h"

#include <memory>

#include "goods_in/frm_entradas_wizard.h"
#include "goods_out/frm_salidas_wizard.h"
#include "service/report/muestra_mensaje.h"
#include "stations/frm_mov_estaciones.h"

namespace tarvik {

namespace mensaje = service::mensaje;
using service::kAlto;
using service::kInformacion;
using service::Trampa;

struct ClaseDeDocumento {
  const char* nueva;
  const char* modifica;
  const char* consulta;
  const char* elimina;
  const char* lee;              // for change, up to the number
  const char* lee_condicion;    // for reading, up to the number
  const char* lee_para_borrar;  // for deletion, up to the number
  const char* borra_partidas;
  const char* borra;
  const char* titulo;
  const char* campo_modifica;  // column of the caption, in change and in reading
  const char* campo_consulta;
  bool cuenta_renglones;  // "not found" in change: by the count of rows, or by being at the end
  int no_existe, afectado, propio, ajeno, ajeno_fin;
  int no_existe_consulta;
  int no_existe_borra, propio_borra, ajeno_borra, ajeno_borra_fin;
};

namespace {

constexpr ClaseDeDocumento kEntrada{
    .nueva = "NuevaEntrada",
    .modifica = "ModificaEntrada",
    .consulta = "ConsultaEntrada",
    .elimina = "EliminaEntrada",
    .lee = "SELECT * FROM entradas WHERE entrada = ",
    .lee_condicion = "SELECT * FROM entradas WHERE (((entrada) = ",
    .lee_para_borrar = "SELECT * FROM entradas WHERE (((entrada) = ",
    .borra_partidas = "DELETE FROM entpart WHERE (((entpart.entrada) = ",
    .borra = "DELETE FROM entradas WHERE (((entradas.entrada) = ",
    .titulo = "Entrada: ",
    .campo_modifica = "Entrada",
    .campo_consulta = "Entrada",
    .cuenta_renglones = false,
    .no_existe = mensaje::ModificaEntradaNoExiste,
    .afectado = mensaje::ModificaEntradaAfectada,
    .propio = mensaje::ModificaEntradaPropia,
    .ajeno = mensaje::ModificaEntradaAjena,
    .ajeno_fin = mensaje::ModificaEntradaAjenaFin,
    .no_existe_consulta = mensaje::ConsultaEntradaNoExiste,
    .no_existe_borra = mensaje::EliminaEntradaNoExiste,
    .propio_borra = mensaje::EliminaEntradaPropia,
    .ajeno_borra = mensaje::EliminaEntradaAjena,
    .ajeno_borra_fin = mensaje::EliminaEntradaAjenaFin,
};

// The number after "(salida) =" in the deletion's SELECT has no blank before it, and a document
// opened for change shows its folio where one that is only read shows its number.
constexpr ClaseDeDocumento kSalida{
    .nueva = "NuevaSalida",
    .modifica = "ModificaSalida",
    .consulta = "ConsultaSalida",
    .elimina = "EliminaSalida",
    .lee = "SELECT * FROM salidas WHERE salida = ",
    .lee_condicion = "SELECT * FROM salidas WHERE (((salida) = ",
    .lee_para_borrar = "SELECT * FROM salidas WHERE (((salida) =",
    .borra_partidas = "DELETE FROM salpart WHERE (((Salida) = ",
    .borra = "DELETE FROM salidas WHERE (((salida) = ",
    .titulo = "Salida: ",
    .campo_modifica = "Folio",
    .campo_consulta = "Salida",
    .cuenta_renglones = true,
    .no_existe = mensaje::ModificaSalidaNoExiste,
    .afectado = mensaje::ModificaSalidaAfectada,
    .propio = mensaje::ModificaSalidaPropia,
    .ajeno = mensaje::ModificaSalidaAjena,
    .ajeno_fin = mensaje::ModificaSalidaAjenaFin,
    .no_existe_consulta = mensaje::ConsultaSalidaNoExiste,
    .no_existe_borra = mensaje::EliminaSalidaNoExiste,
    .propio_borra = mensaje::EliminaSalidaPropia,
    .ajeno_borra = mensaje::EliminaSalidaAjena,
    .ajeno_borra_fin = mensaje::EliminaSalidaAjenaFin,
};

constexpr int kPreguntaDeBorrado = 36;  // Yes and No, with the question icon

data::RecordsetRef& Encabezado(frmEntradasWizard& pantalla) { return pantalla.rstEntrada; }
data::RecordsetRef& Encabezado(frmSalidasWizard& pantalla) { return pantalla.rstSalida; }
std::int32_t& NumeroDeDocumento(frmEntradasWizard& pantalla) { return pantalla.Entrada; }
std::int32_t& NumeroDeDocumento(frmSalidasWizard& pantalla) { return pantalla.Salida; }

// The recordset that an operation opens itself; left closed if the opening fails.
data::RecordsetRef AbreNuevo(Trampa& intenta, const service::Objeto<service::Ambiente>& ambiente,
                             const std::string& sentencia) {
  auto registro = std::make_shared<data::Recordset>();
  intenta([&] {
    registro->Open(sentencia, ambiente->Conexion(), data::kKeysetCursor, data::kOptimisticLock, data::kAsSet);
  });
  return registro;
}

}  // namespace

template <class Operacion>
void EntradasSalidas::Corre(Operacion&& operacion) {
  try {
    operacion();
  } catch (const std::exception& error) {
    host_.Plataforma().Unhandled(nullptr, error);
  }
}

bool EntradasSalidas::ReportaError(const std::string& modulo, const std::string& funcion,
                                   const std::string& descripcion) {
  // Without a context there is no folder for a log: only the box is shown.
  std::function<std::string()> ruta_base;
  if (Ambiente) ruta_base = [this] { return Ambiente->RutaBase(); };
  return service::ReportaEnCajaYBitacora(host_, ruta_base, modulo, funcion, descripcion);
}

template <class Pantalla>
void EntradasSalidas::Nuevo(const ClaseDeDocumento& documento, bool modal) {
  Trampa intenta{*this, documento.nueva};
  // A number that no document has: the screen gets an empty recordset of the table's shape.
  const std::string sentencia = std::string(documento.lee) + "0";
  auto pantalla = std::make_shared<Pantalla>(host_);
  data::RecordsetRef registro;
  intenta([&] { host_.Funciones().AbreRecordset(sentencia, Ambiente->Conexion(), registro); });
  Encabezado(*pantalla) = registro;
  pantalla->Ambiente = Ambiente;
  pantalla->Parent = Parent;
  pantalla->Modo = modo::kAlta;
  intenta([&] { pantalla->Show(modal); });
}

template <class Pantalla>
void EntradasSalidas::Modifica(const ClaseDeDocumento& documento, std::int32_t numero, bool modal) {
  Trampa intenta{*this, documento.modifica};
  auto pantalla = std::make_shared<Pantalla>(host_);
  pantalla->Ambiente = Ambiente;
  pantalla->Parent = Parent;
  data::RecordsetRef registro = AbreNuevo(intenta, Ambiente, documento.lee + std::to_string(numero));
  if (intenta.Si(
          [&] { return documento.cuenta_renglones ? registro->RecordCount() == 0 : registro->Eof(); })) {
    return MuestraMensaje(intenta, host_, Ambiente, documento.no_existe, kAlto);
  }
  if (intenta.Si([&] { return data::ToText(registro->Fields("estado")) == estado::kAfectado; })) {
    MuestraMensaje(intenta, host_, Ambiente, documento.afectado, kInformacion);
    pantalla->Modo = modo::kConsulta;
  } else {
    pantalla->Modo = modo::kModificacion;
  }
  if (intenta.Si([&] {
        return pantalla->Modo == modo::kModificacion && data::IsNonZero(registro->Fields("Ocupado"));
      })) {
    return AvisaTomado(intenta, registro, documento.propio, documento.ajeno, documento.ajeno_fin, " ");
  }
  Encabezado(*pantalla) = registro;
  NumeroDeDocumento(*pantalla) = numero;
  intenta([&] {
    pantalla->Caption(documento.titulo + data::ToText(registro->Fields(documento.campo_modifica)));
  });
  intenta([&] { pantalla->Show(modal); });
}

void EntradasSalidas::AvisaTomado(Trampa& intenta, const data::RecordsetRef& registro, int propio, int ajeno,
                                  int fin, const char* separador) {
  if (intenta.Si([&] { return data::ToText(registro->Fields("Usuario")) == Ambiente->Usuario(); })) {
    return MuestraMensaje(intenta, host_, Ambiente, propio, kInformacion);
  }
  std::string texto = TraeMensaje(intenta, host_, Ambiente, ajeno);
  intenta([&] { texto += separador + data::ToText(registro->Fields("Usuario")); });
  texto += TraeMensaje(intenta, host_, Ambiente, fin);
  intenta([&] { host_.Funciones().MuestraMensaje(texto, kInformacion, *Ambiente); });
}

template <class Pantalla>
void EntradasSalidas::Consulta(const ClaseDeDocumento& documento, std::int32_t numero) {
  Trampa intenta{*this, documento.consulta};
  auto pantalla = std::make_shared<Pantalla>(host_);
  pantalla->Ambiente = Ambiente;
  pantalla->Parent = Parent;
  data::RecordsetRef registro =
      AbreNuevo(intenta, Ambiente, documento.lee_condicion + std::to_string(numero) + "))");
  if (intenta.Si([&] { return registro->RecordCount() == 0; })) {
    return MuestraMensaje(intenta, host_, Ambiente, documento.no_existe_consulta, kAlto);
  }
  Encabezado(*pantalla) = registro;
  pantalla->Modo = modo::kConsulta;
  NumeroDeDocumento(*pantalla) = numero;
  intenta([&] {
    pantalla->Caption(documento.titulo + data::ToText(registro->Fields(documento.campo_consulta)));
  });
  intenta([&] { pantalla->Show(false); });
}

void EntradasSalidas::Elimina(const ClaseDeDocumento& documento, std::int32_t numero) {
  Trampa intenta{*this, documento.elimina};
  const std::string condicion = std::to_string(numero) + "))";
  data::RecordsetRef registro;
  intenta([&] {
    host_.Funciones().AbreRecordset(documento.lee_para_borrar + condicion, Ambiente->Conexion(), registro);
  });
  if (intenta.Si([&] { return registro->Eof(); })) {
    return MuestraMensaje(intenta, host_, Ambiente, documento.no_existe_borra, kInformacion);
  }
  if (intenta.Si([&] { return data::IsNonZero(registro->Fields("Ocupado")); })) {
    return AvisaTomado(intenta, registro, documento.propio_borra, documento.ajeno_borra,
                       documento.ajeno_borra_fin, "");
  }
  const std::string pregunta = TraeMensaje(intenta, host_, Ambiente, mensaje::BorraDocumento);
  bool acepta = false;
  intenta(
      [&] { acepta = host_.Plataforma().ShowBox(forms::BoxKind::Question, pregunta, kPreguntaDeBorrado); });
  if (!acepta) return;
  // Lines first: a failure in between leaves a header without lines, never lines without a header.
  intenta([&] { Ambiente->Conexion().Execute(documento.borra_partidas + condicion); });
  intenta([&] { Ambiente->Conexion().Execute(documento.borra + condicion); });
  RemoveItem();
}

void EntradasSalidas::RemoveItem() {
  Trampa intenta{*this, "RemoveItem"};
  // The row that the operator chose in the host's list is taken to be the document just deleted.
  intenta([&] {
    auto lista = Parent->Object("lvListView");
    const data::Value elegido = lista->Object("SelectedItem")->Get("Index");
    lista->Object("ListItems")->Call("Remove", {elegido});
  });
}

void EntradasSalidas::NuevaEntrada(bool bolModal) {
  Corre([&] { Nuevo<frmEntradasWizard>(kEntrada, bolModal); });
}
void EntradasSalidas::NuevaSalida(bool bolModal) {
  Corre([&] { Nuevo<frmSalidasWizard>(kSalida, bolModal); });
}
void EntradasSalidas::ModificaEntrada(std::int32_t nEntrada, bool bolModal) {
  Corre([&] { Modifica<frmEntradasWizard>(kEntrada, nEntrada, bolModal); });
}
void EntradasSalidas::ModificaSalida(std::int32_t nSalida, bool bolModal) {
  Corre([&] { Modifica<frmSalidasWizard>(kSalida, nSalida, bolModal); });
}
void EntradasSalidas::ConsultaEntrada(std::int32_t nEntrada) {
  Corre([&] { Consulta<frmEntradasWizard>(kEntrada, nEntrada); });
}
void EntradasSalidas::ConsultaSalida(std::int32_t nSalida) {
  Corre([&] { Consulta<frmSalidasWizard>(kSalida, nSalida); });
}
void EntradasSalidas::EliminaEntrada(std::int32_t nEntrada) {
  Corre([&] { Elimina(kEntrada, nEntrada); });
}
void EntradasSalidas::EliminaSalida(std::int32_t nSalida) {
  Corre([&] { Elimina(kSalida, nSalida); });
}

void EntradasSalidas::movimientoEstacion(std::int32_t nId, bool bolModal) {
  auto pantalla = std::make_shared<frmMovEstaciones>(host_);
  pantalla->Ambiente = Ambiente;
  pantalla->Id = nId;
  pantalla->Show(bolModal);
}

}  // namespace tarvik
