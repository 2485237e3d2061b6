// Writing a goods-in document: the header's creation and save, posting, and the finish.
// There is no transaction here: each statement is on its own, and what was written stays.
#include "goods_in/frm_entradas_wizard.h"

namespace tarvik {

using service::Trampa;

void frmEntradasWizard::Command5_Click() {
  Trampa intenta{*this, "Command5_Click"};
  bool valido = false;
  ValidaTab1(valido);
  if (!valido) return;
  if (Modo == modo::kConsulta) {
    intenta([&] { Unload(); });
    return;
  }
  if (Check3.Value() == 0 && !Acepta(intenta, mensaje::AfectaEntrada)) return;
  if (!FechaEscrita(intenta) || !FechaAceptada(intenta)) return;
  CierraBotones(intenta);
  SinRenglonesQuedaPendiente(intenta, mensaje::EntradaSinRenglones);
  SalvaEntrada(Check3.Value() == 0 ? estado::kAfectado : estado::kPendiente);
  // Without stored lines the header stays saved, and only the window's close box closes the screen.
  if (!SalvaPartidas()) return;
  if (Check3.Value() == 0) {
    AfectaPartidas();
    intenta([&] { Dispara("ENTRADA014"); });
    if (txtFields(campo::Concepto).Text() == "A++") intenta([&] { Dispara("ENTRADA010"); });
  }
  if (Check2.Value() == 1) ImprimeEntrada();
  RefrescaLista(intenta);
  intenta([&] { Unload(); });
}

void frmEntradasWizard::RefrescaLista(Trampa& intenta) {
  auto refresca = [&](const char* catalogo, const char* llena) {
    if (!Parent || intenta.Si([&] { return data::ToText(Parent->Get("CatalogoActivo")) != catalogo; }))
      return;
    intenta([&] { Parent->Call(llena, {Entrada}); });
    intenta([&] { Parent->Call("CreaMenuPopUp", {}); });
  };
  if (intenta.Si([&] { return data::ToText(rstEntrada->Fields("estado")) == estado::kPendiente; })) {
    refresca("EntradasPendientes", "LlenaEntradasPendientes");
  } else {
    refresca("Entradas", "LlenaEntradas");
  }
}

void frmEntradasWizard::NuevoNumero(Trampa& intenta) {
  intenta([&] { Funciones().NuevoId("MovEnt", Ambiente->Conexion(), Entrada); });
}

void frmEntradasWizard::CreaEntrada() {
  Trampa intenta{*this, "CreaEntrada"};
  auto agrega = [&](const char* columna, auto&& valor) {
    intenta([&] { Query->AgregaCampo("entradas", columna, valor()); });
  };
  if (Modo == modo::kAlta) {
    NuevoNumero(intenta);
    intenta([&] { Query->TipoSentencia("INSERT"); });
    agrega("entrada", [&] { return Entrada; });
  } else {
    intenta([&] { Query->TipoSentencia("UPDATE"); });
  }
  if (Modo == modo::kAlta || Modo == modo::kModificacion) {
    const data::DateTime ahora = GetPlatform().Now();
    agrega("ocupado", [&] { return 1; });
    agrega("f_emision", [&] { return ValorDe(DTPicker1.Value()); });
    agrega("tipo_doc", [&] { return txtFields(campo::Concepto).Text(); });
    agrega("importe", [&] { return NumeroEn(campo::Total); });
    agrega("costo", [&] { return 0; });
    agrega("almacen", [&] { return Funciones().TextoDe(txtFields(campo::Almacen).Text()); });
    agrega("estado", [&] { return estado::kPendiente; });
    agrega("observ", [&] { return RichTextBox2.Text(); });
    agrega("tipo_cam", [&] { return 1; });
    agrega("moneda", [&] { return Ambiente->Moneda(); });
    agrega("datos", [&] { return RichTextBox3.Text(); });
    agrega("usuario", [&] { return Ambiente->Usuario(); });
    agrega("usufecha", [&] { return ahora.date; });
    agrega("usuhora", [&] { return ahora.time.Text(); });
    intenta([&] { Query->Condicion("entrada = " + std::to_string(Entrada)); });
    EjecutaQuery(intenta);
  }
  intenta([&] { Abre("SELECT * FROM entradas WHERE entrada = " + std::to_string(Entrada), rstEntrada); });
  Modo = modo::kModificacion;
  intenta([&] { Caption("Entrada: " + std::to_string(Entrada)); });
}

void frmEntradasWizard::SalvaEntrada(const std::string& estado) { EscribeEntrada(estado, 0); }

void frmEntradasWizard::SalvaPendiente() { EscribeEntrada(estado::kPendiente, 1); }

void frmEntradasWizard::EscribeEntrada(const std::string& estado, int ocupado) {
  Trampa intenta{*this, "SalvaEntrada"};
  auto agrega = [&](const char* columna, auto&& valor) {
    intenta([&] { Query->AgregaCampo("entradas", columna, valor()); });
  };
  intenta([&] { Query->Limpia(); });
  if (Modo == modo::kAlta) {
    data::RecordsetRef tomada;
    do {
      NuevoNumero(intenta);
      intenta(
          [&] { Abre("SELECT entrada FROM entradas WHERE entrada = " + std::to_string(Entrada), tomada); });
    } while (intenta.Mientras([&] { return !tomada->Eof(); }));
    intenta([&] { Query->TipoSentencia("INSERT"); });
    agrega("entrada", [&] { return Entrada; });
  } else {
    intenta([&] { Query->TipoSentencia("UPDATE"); });
    intenta([&] { Query->Condicion("entrada = " + std::to_string(Entrada)); });
  }
  const data::DateTime ahora = GetPlatform().Now();
  agrega("tipo_doc", [&] { return txtFields(campo::Concepto).Text(); });
  agrega("ocupado", [&] { return ocupado; });
  agrega("f_emision", [&] { return ValorDe(DTPicker1.Value()); });
  agrega("importe", [&] { return NumeroEn(campo::Total); });
  agrega("costo", [&] { return Costo; });
  agrega("almacen", [&] { return NumeroEn(campo::Almacen); });
  agrega("estado", [&] { return estado; });
  agrega("observ", [&] { return RichTextBox2.Text(); });
  agrega("datos", [&] { return RichTextBox3.Text(); });
  agrega("usuario", [&] { return Ambiente->Usuario(); });
  agrega("usufecha", [&] { return ahora.date; });
  agrega("usuhora", [&] { return ahora.time.Text(); });
  EjecutaQuery(intenta);
  Modo = modo::kModificacion;
}

bool frmEntradasWizard::SalvaPartidas() {
  Trampa intenta{*this, "SalvaPartidas"};
  intenta([&] {
    AbreNuevo("SELECT * FROM entpart WHERE (((entrada)=" + std::to_string(Entrada) + "))", rstPartidas);
  });
  return !intenta.Si([&] { return rstPartidas->Eof(); });
}

void frmEntradasWizard::AfectaPartidas() {
  Trampa intenta{*this, "AfectaPartidas"};
  intenta([&] { Abre("SELECT * FROM entradas WHERE entrada = " + std::to_string(Entrada), rstEntrada); });
  if (intenta.Si([&] { return rstEntrada->Eof(); })) SalvaEntrada(estado::kPendiente);

  service::Propio<service::MovimientoInventario> movimiento;
  intenta([&] { movimiento = host().NuevoMovimiento(); });
  auto pon = [&](auto&& propiedad) { intenta([&] { propiedad(*movimiento); }); };
  using M = service::MovimientoInventario;
  pon([&](M& m) { m.Ambiente(*Ambiente); });
  pon([&](M& m) { m.ClaveLocal(Ambiente->ClaveLocal()); });
  pon([&](M& m) { m.EntSal("E"); });
  pon([&](M& m) { m.Fecha(FechaDe(rstEntrada->Fields("F_Emision"))); });
  pon([&](M& m) { m.Almacen(data::ToNumber(rstEntrada->Fields("Almacen"))); });
  pon([&](M& m) { m.Movimiento(EnteroDe(rstEntrada->Fields("Entrada"))); });
  pon([&](M& m) { m.TipoDoc(data::ToText(rstEntrada->Fields("Tipo_doc"))); });
  pon([&](M& m) { m.Usuario(Ambiente->Usuario()); });
  pon([&](M& m) { m.Documento(data::ToText(rstEntrada->Fields("Entrada"))); });
  pon([&](M& m) { m.Operacion("EN"); });

  if (intenta.Si([&] { return rstPartidas->Eof(); })) return;
  double suma = 0;
  double importe = 0;
  for (int cuenta = 1; intenta.Mientras([&] { return !rstPartidas->Eof(); }); ++cuenta) {
    MuestraAvance(intenta, cuenta);
    pon([&](M& m) { m.Articulo(data::ToText(rstPartidas->Fields("articulo"))); });
    pon([&](M& m) { m.Cantidad(data::ToNumber(rstPartidas->Fields("cantidad"))); });
    pon([&](M& m) { m.Precio(data::ToNumber(rstPartidas->Fields("Precio"))); });
    pon([&](M& m) { m.IdEntrada(EnteroDe(rstPartidas->Fields("id_entrada"))); });
    pon([&](M& m) { m.ClaveAdd(Funciones().TextoDe(rstPartidas->Fields("ClaveAdd"))); });
    pon([&](M& m) { m.Aplica(true); });
    pon([&](M& m) { m.Afecta(importe); });
    suma += importe;
    intenta([&] { rstPartidas->MoveNext(); });
  }
  Costo = suma;
}

}  // namespace tarvik
