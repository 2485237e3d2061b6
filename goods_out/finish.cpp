// Writing a goods-out document: the header's creation and save, posting, and the finish.
// There is no transaction here: each statement is on its own, and what was written stays.
#include "data/number.h"
#include "data/text.h"
#include "goods_out/frm_salidas_wizard.h"

namespace tarvik {

using service::Trampa;

bool frmSalidasWizard::Existen(Trampa& intenta) {
  struct Revision {
    bool aplica;
    int campo;
    const char* columna;
    const char* tabla;
    const char* aviso;
  };
  auto existe = [&](const Revision& revision) {
    if (!revision.aplica) return true;
    forms::TextBox& campo = txtFields(revision.campo);
    if (!intenta.Si([&] {
          return !Funciones().ExisteClave(campo.Text(), revision.columna, revision.tabla,
                                          Ambiente->Conexion());
        })) {
      return true;
    }
    intenta([&] { Funciones().MuestraError(revision.aviso); });
    ColocaFoco(campo);
    return false;
  };
  if (!existe({Check1.Value() == 1, 16, "empleado", "empleados", "No se encuentra el empleado indicado"}) ||
      !existe({SSCheck2.Value() == 1, 9, "ESTACION", "ESTACIONES", "No existe la estación de trabajo"}) ||
      !existe({Check5.Value() == 1, 3, "sucursal", "sucursal", "No existe la sucursal indicada"})) {
    return false;
  }
  if (!FechaEscrita(intenta)) return false;
  const bool con_cliente = intenta.Si([&] { return !EstaVacio(campo::Cliente); });
  return existe({con_cliente, 13, "cliente", "clients", "El cliente indicado no existe"});
}

void frmSalidasWizard::Command5_Click() {
  Trampa intenta{*this, "Command5_Click"};
  bool valido = false;
  ValidaTab1(valido);
  if (!valido) return;
  if (Modo == modo::kConsulta) {
    intenta([&] { Unload(); });
    return;
  }
  if (Check3.Value() == 0 && !Acepta(intenta, mensaje::AfectaSalida)) return;
  if (!Existen(intenta) || !FechaAceptada(intenta)) return;
  intenta([&] { Command1.Enabled(false); });
  CierraBotones(intenta);
  SinRenglonesQuedaPendiente(intenta, mensaje::SalidaSinRenglones);
  SalvaSalida();
  bool hay = false;
  SalvaPartidas(hay);
  intenta([&] { Dispara("SALIDAS016"); });
  if (Check3.Value() == 0) {
    AfectaPartidas();
    Command1_Click();
  }
  if (Check2.Value() != 0) ImprimeSalida();
  RefrescaLista();
  service::Ignora ignora;
  ignora([&] { Unload(); });
}

// The document is finished by now: whatever fails in the host's list is ignored.
void frmSalidasWizard::RefrescaLista() {
  service::Ignora ignora;
  auto refresca = [&](const char* catalogo, const char* llena) {
    if (!Parent || ignora.Si([&] { return data::ToText(Parent->Get("CatalogoActivo")) != catalogo; })) return;
    ignora([&] { Parent->Call(llena, {Salida}); });
    ignora([&] { Parent->Call("ReseteaMenus", {}); });
    ignora([&] { Parent->Call("EstableceMenus", {}); });
  };
  if (ignora.Si([&] { return data::ToText(rstSalida->Fields("estado")) == estado::kPendiente; })) {
    refresca("SalidasPendientes", "LlenaSalidasPendientes");
  } else {
    refresca("Salidas", "LlenaSalidas");
  }
}

void frmSalidasWizard::EmpiezaDocumento(Trampa& intenta) {
  intenta([&] { Query->Limpia(); });
  if (Modo == modo::kAlta) {
    intenta([&] { Query->TipoSentencia("INSERT"); });
    intenta([&] { Query->AgregaCampo("salidas", "salida", Salida); });
  } else {
    intenta([&] { Query->TipoSentencia("UPDATE"); });
  }
}

void frmSalidasWizard::CreaSalida() {
  Trampa intenta{*this, "CreaSalida"};
  auto agrega = [&](const char* columna, auto&& valor) {
    intenta([&] { Query->AgregaCampo("salidas", columna, valor()); });
  };
  if (Modo == modo::kAlta) {
    do {
      intenta([&] { Funciones().NuevoId("Salida", Ambiente->Conexion(), Salida); });
      intenta(
          [&] { Abre("SELECT salida FROM salidas WHERE salida = " + std::to_string(Salida), rstSalida); });
    } while (intenta.Mientras([&] { return !rstSalida->Eof(); }));
  }
  EmpiezaDocumento(intenta);
  const data::DateTime ahora = GetPlatform().Now();
  agrega("sucursal", [&] { return data::Trim(txtFields(campo::Sucursal).Text()); });
  agrega("esparasucursal", [&] { return Check5.Value(); });
  agrega("ocupado", [&] { return 1; });
  agrega("f_emision", [&] { return ValorDe(DTPicker1.Value()); });
  agrega("tipo_doc", [&] { return txtFields(campo::Concepto).Text(); });
  agrega("importe", [&] { return NumeroEn(campo::Total); });
  agrega("costo", [&] { return 0; });
  agrega("almacen", [&] { return NumeroEn(campo::Almacen); });
  agrega("estado", [&] { return estado::kPendiente; });
  agrega("observ", [&] { return RichTextBox2.Text(); });
  agrega("datos", [&] { return RichTextBox3.Text(); });
  agrega("usuario", [&] { return Ambiente->Usuario(); });
  agrega("usufecha", [&] { return ahora.date; });
  agrega("usuhora", [&] { return ahora.time.Text(); });
  agrega("estraspaso", [&] { return SSCheck1.Value(); });
  agrega("direccionembarque", [&] { return data::Trim(txtFields(campo::DireccionDeEmbarque).Text()); });
  intenta([&] { Query->Condicion("salida = " + std::to_string(Salida)); });
  agrega("almt", [&] { return NumeroEn(campo::AlmacenDestino); });
  EjecutaQuery(intenta);
  Modo = modo::kModificacion;
  intenta([&] { Caption("Salida: " + std::to_string(Salida)); });
  intenta(
      [&] { Abre("SELECT * FROM salidas WHERE (((salida) = " + std::to_string(Salida) + "))", rstSalida); });
}

void frmSalidasWizard::SalvaSalida() { EscribeSalida(false); }

void frmSalidasWizard::SalvaPendiente() { EscribeSalida(true); }

void frmSalidasWizard::EscribeSalida(bool pendiente) {
  Trampa intenta{*this, "SalvaSalida"};
  auto agrega = [&](const char* columna, auto&& valor) {
    intenta([&] { Query->AgregaCampo("salidas", columna, valor()); });
  };
  auto de_la_serie = [&](auto&& serie) {
    std::int32_t numero = 0;
    intenta([&] { Funciones().NuevoId(serie(), Ambiente->Conexion(), numero); });
    return numero;
  };
  if (pendiente) {
    intenta([&] { Query->Limpia(); });
    intenta([&] { Query->TipoSentencia("UPDATE"); });
  } else {
    if (Modo == modo::kAlta) {
      intenta([&] { Funciones().NuevoId("Salida", Ambiente->Conexion(), Salida); });
    }
    EmpiezaDocumento(intenta);
  }
  const data::DateTime ahora = GetPlatform().Now();
  agrega("sucursal", [&] { return data::Trim(txtFields(campo::Sucursal).Text()); });
  agrega("esparasucursal", [&] { return Check5.Value(); });
  if (!pendiente) {
    // Drawn again on every save: a document saved pending and finished later keeps its last folio.
    const std::int32_t folio = de_la_serie([&] { return data::Trim(Ambiente->Estacion()) + "salida"; });
    agrega("folio", [&] { return folio; });
  }
  agrega("estacion", [&] { return Ambiente->Estacion(); });
  agrega("ocupado", [&] { return 1; });
  agrega("tipo_doc", [&] { return Funciones().TextoDe(txtFields(campo::Concepto).Text()); });
  agrega("f_emision", [&] { return ValorDe(DTPicker1.Value()); });
  agrega("importe", [&] { return NumeroEn(campo::Total); });
  agrega("costo", [&] { return Costo; });
  agrega("almacen", [&] { return NumeroEn(campo::Almacen); });
  agrega("estado",
         [&] { return !pendiente && Check3.Value() == 0 ? estado::kAfectado : estado::kPendiente; });
  agrega("observ", [&] { return RichTextBox2.Text(); });
  agrega("datos", [&] { return RichTextBox3.Text(); });
  agrega("usuario", [&] { return Ambiente->Usuario(); });
  agrega("usufecha", [&] { return ahora.date; });
  agrega("usuhora", [&] { return ahora.time.Text(); });
  agrega("estraspaso", [&] { return SSCheck1.Value(); });
  if (SSCheck1.Value() == 1) {
    const std::int32_t traspaso = de_la_serie([] { return std::string("Traspaso"); });
    agrega("traspaso", [&] { return traspaso; });
  }
  agrega("cliente", [&] { return txtFields(campo::Cliente).Text(); });
  agrega("fecharetorno", [&] { return ValorDe(DTPicker2.Value()); });
  agrega("traspasoaestacion", [&] { return SSCheck2.Value(); });
  if (SSCheck2.Value() == 1)
    agrega("estaciontraspaso", [&] { return txtFields(campo::EstacionDestino).Text(); });
  agrega("almt", [&] { return NumeroEn(campo::AlmacenDestino); });
  agrega("paraempleado", [&] { return Check1.Value(); });
  agrega("empleado", [&] { return txtFields(campo::Empleado).Text(); });
  agrega("direccionembarque", [&] { return data::Trim(txtFields(campo::DireccionDeEmbarque).Text()); });
  intenta([&] { Query->Condicion("salida = " + std::to_string(Salida)); });
  EjecutaQuery(intenta);
}

void frmSalidasWizard::GuardaParaMalla() {
  SalvaSalida();
  bool hay = false;
  SalvaPartidas(hay);
}

void frmSalidasWizard::SalvaPartidas(bool& hay) {
  Trampa intenta{*this, "SalvaPartidas"};
  intenta([&] {
    AbreNuevo("SELECT * FROM salpart WHERE (((salida)=" + std::to_string(Salida) + "))", rstPartidas);
  });
  hay = !intenta.Si([&] { return rstPartidas->Eof(); });
}

void frmSalidasWizard::AfectaPartidas() {
  Trampa intenta{*this, "AfectaPartidas"};
  service::Propio<service::MovimientoInventario> movimiento;
  intenta([&] { movimiento = host().NuevoMovimiento(); });
  intenta([&] { movimiento->Ambiente(*Ambiente); });
  intenta([&] { movimiento->ClaveLocal(Ambiente->ClaveLocal()); });
  // The date comes from the record as it was read when the document was made or opened.
  intenta([&] { movimiento->Fecha(FechaDe(rstSalida->Fields("F_Emision"))); });
  intenta([&] { movimiento->Usuario(Ambiente->Usuario()); });
  if (intenta.Si([&] { return rstPartidas->Eof(); })) return;
  intenta([&] { Abre("SELECT * FROM salidas WHERE salida = " + std::to_string(Salida), rstSalida); });

  auto pon = [&](auto&& propiedad) { intenta([&] { propiedad(*movimiento); }); };
  auto documento = [&](const char* columna) { return rstSalida->Fields(columna); };
  auto renglon = [&](const char* columna) { return rstPartidas->Fields(columna); };
  using M = service::MovimientoInventario;
  double suma = 0;
  double importe = 0;
  for (int cuenta = 1; intenta.Mientras([&] { return !rstPartidas->Eof(); }); ++cuenta) {
    MuestraAvance(intenta, cuenta);
    pon([&](M& m) { m.Articulo(data::ToText(renglon("articulo"))); });
    pon([&](M& m) { m.Cantidad(data::ToNumber(renglon("cantidad"))); });
    pon([&](M& m) { m.Precio(data::ToNumber(renglon("Precio"))); });
    pon([&](M& m) { m.IdSalida(EnteroDe(renglon("id_salida"))); });
    pon([&](M& m) { m.ClaveAdd(Funciones().TextoDe(renglon("ClaveAdd"))); });
    pon([&](M& m) { m.Aplica(true); });
    pon([&](M& m) { m.EntSal("S"); });
    pon([&](M& m) { m.Operacion("SA"); });
    pon([&](M& m) { m.Movimiento(EnteroDe(documento("Folio"))); });
    pon([&](M& m) { m.TipoDoc(data::ToText(documento("Tipo_doc"))); });
    pon([&](M& m) { m.Documento(data::ToText(documento("Folio"))); });
    pon([&](M& m) { m.Almacen(data::ToNumber(documento("Almacen"))); });
    pon([&](M& m) { m.Afecta(importe); });
    suma += importe;
    if (SSCheck1.Value() == 1) {
      // The same line once more, as the arrival at the target warehouse; it adds no cost.
      pon([&](M& m) { m.EntSal("E"); });
      pon([&](M& m) { m.Operacion("T+"); });
      pon([&](M& m) { m.Movimiento(EnteroDe(documento("Folio"))); });
      pon([&](M& m) { m.TipoDoc("T+"); });
      pon([&](M& m) { m.Documento(data::ToText(documento("Folio"))); });
      pon([&](M& m) { m.Almacen(data::ToNumber(documento("almt"))); });
      if (SSCheck2.Value() == 1)
        pon([&](M& m) { m.EstacionTraspaso(data::Trim(txtFields(campo::EstacionDestino).Text())); });
      pon([&](M& m) { m.Precio(0); });
      double llegada = 0;
      pon([&](M& m) { m.Afecta(llegada); });
    }
    intenta([&] { rstPartidas->MoveNext(); });
  }
  if (SSCheck1.Value() == 1) intenta([&] { CreaEntradasDeTraspaso(); });
  Costo = suma;
  // Without a condition, as it has always been: the builder sends no such UPDATE.
  intenta([&] { Query->Limpia(); });
  intenta([&] { Query->TipoSentencia("UPDATE"); });
  intenta([&] { Query->AgregaCampo("salidas", "costo", 0); });
  EjecutaQuery(intenta);
  AsignaACompra(intenta);
}

void frmSalidasWizard::AsignaACompra(Trampa& intenta) {
  if (intenta.Si([&] { return EstaVacio(campo::Compra) || EstaVacio(campo::Sucursal); })) return;
  data::RecordsetRef sumas;
  intenta([&] {
    Abre("SELECT articulo, SUM(cantidad) As cantidad FROM salpart WHERE salida = " + std::to_string(Salida) +
             " GROUP BY articulo",
         sumas);
  });
  for (; intenta.Mientras([&] { return !sumas->Eof(); }); intenta([&] { sumas->MoveNext(); })) {
    data::RecordsetRef compra;
    intenta([&] {
      Abre("SELECT * FROM compra2part WHERE articulo = '" + data::ToText(sumas->Fields("articulo")) +
               "' AND compra = " + data::PlainNumber(NumeroEn(campo::Compra)),
           compra);
    });
    if (intenta.Si([&] { return compra->Eof(); })) continue;
    auto agrega = [&](const char* columna, auto&& valor) {
      intenta([&] { Query->AgregaCampo("compras2sucursal", columna, valor()); });
    };
    intenta([&] { Query->Limpia(); });
    intenta([&] { Query->TipoSentencia("INSERT"); });
    agrega("id_partida", [&] { return compra->Fields("Id"); });
    agrega("cantidad", [&] { return sumas->Fields("cantidad"); });
    agrega("sucursal", [&] { return txtFields(campo::Sucursal).Text(); });
    agrega("tipo", [&] { return "REAL"; });
    EjecutaQuery(intenta);
  }
}

}  // namespace tarvik
