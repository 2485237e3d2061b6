// How a line comes to be on a goods-out document, or adds to the one just entered.
#include "data/number.h"
#include "data/text.h"
#include "goods_out/columnas.h"
#include "goods_out/frm_salidas_wizard.h"

namespace tarvik {

using data::FormatNumber;
using data::PlainNumber;
using service::Trampa;

void frmSalidasWizard::PonDescripcion() {
  Vuelta vuelta{*this};
  Trampa intenta{*this, "PonDescripcion"};
  if (intenta.Si([&] { return EstaVacio(campo::Articulo); })) return;
  auto precio = [&] {
    const double impuesto = Funciones().ANumero(rstArticulo->Fields("Valor"));
    const double con_impuesto = Funciones().ANumero(rstArticulo->Fields("Precio1")) * (1 + impuesto / 100);
    txtFields(campo::Precio).Text(FormatNumber(con_impuesto, Ambiente->FormatoImporte()));
  };
  intenta([&] {
    Funciones().AbreConsulta(
        "SELECT prods.articulo, prods.descrip, prods.unidad, prods.precio1, prods.impuesto, impuestos.valor "
        "FROM "
        "prods INNER JOIN impuestos ON prods.impuesto = impuestos.impuesto WHERE articulo = '" +
            txtFields(campo::Articulo).Text() + "'",
        Ambiente->Conexion(), rstArticulo);
  });
  if (intenta.Si([&] { return rstArticulo->Eof(); })) {
    data::RecordsetRef clave;
    intenta([&] {
      Funciones().AbreConsulta("SELECT articulo,clave,libre FROM clavesadd WHERE clave = '" +
                                   txtFields(campo::Articulo).Text() + "'",
                               Ambiente->Conexion(), clave);
    });
    if (intenta.Si([&] { return clave->Eof(); })) return;
    intenta([&] { txtFields(campo::Articulo).Text(Funciones().TextoDe(clave->Fields("articulo"))); });
    intenta([&] { txtFields(campo::SegundaClave).Text(Funciones().TextoDe(clave->Fields("Clave"))); });
    TraeSegundaClave();
    PonDescripcion();
    if (intenta.Si([&] { return !data::IsTrue(clave->Fields("Libre")); })) {
      PasaA(campo::Presentaciones);
    } else {
      intenta(precio);
    }
    return;
  }
  intenta(precio);
  intenta([&] { txtFields(campo::Descripcion).Text(data::ToText(rstArticulo->Fields("descrip"))); });
  intenta([&] { txtFields(campo::Unidad).Text(Funciones().TextoDe(rstArticulo->Fields("unidad"))); });
  if (intenta.Si([&] { return EstaVacio(campo::Cantidad); })) {
    intenta([&] { txtFields(campo::Cantidad).Text("1"); });
    intenta([&] { txtFields(campo::Cantidad).SelectAll(); });
  }
  intenta([&] { Dispara("SALIDAS011"); });
}

void frmSalidasWizard::TraeSegundaClave() {
  Vuelta vuelta{*this};
  Trampa intenta{*this, "TraeSegundaClave"};
  intenta([&] {
    Abre("SELECT * FROM clavesadd WHERE clave = '" + txtFields(campo::SegundaClave).Text() + "'",
         rstClavesAdd);
  });
  // The changes below look the key up again; this stays the record that was found.
  const data::RecordsetRef clave = rstClavesAdd;
  if (intenta.Si([&] { return clave->Eof(); })) {
    VaciaCampos(intenta, {campo::Articulo, campo::Dato1, campo::Dato2, campo::Unidad, campo::Presentaciones,
                          campo::UnidadDePresentacion});
  } else {
    intenta([&] { txtFields(campo::Articulo).Text(data::ToText(clave->Fields("articulo"))); });
    intenta([&] { txtFields(campo::Dato1).Text(data::ToText(clave->Fields("Dato1"))); });
    intenta([&] { txtFields(campo::Dato2).Text(data::ToText(clave->Fields("Dato2"))); });
    if (intenta.Si([&] { return data::ToNumber(clave->Fields("cantidad")) > 0; })) {
      intenta([&] { txtFields(campo::Cantidad).Text(Funciones().TextoDe(clave->Fields("cantidad"))); });
      intenta([&] { txtFields(campo::Presentaciones).Text("1"); });
      intenta(
          [&] { txtFields(campo::UnidadDePresentacion).Text(Funciones().TextoDe(clave->Fields("unidad"))); });
    }
  }
  PonDescripcion();
}

void frmSalidasWizard::MultiplicaPorPresentacion() {
  Trampa intenta{*this, "MultiplicaPorPresentacion"};
  if (intenta.Si([&] { return EstaVacio(campo::SegundaClave); })) return;
  data::RecordsetRef clave;
  intenta([&] {
    Abre("SELECT * FROM clavesadd WHERE clave = '" + txtFields(campo::SegundaClave).Text() + "'", clave);
  });
  if (intenta.Si([&] { return clave->Eof(); })) return;
  // Not 0 here, and not True where the key is filtered: a flag of 2 is free by this test alone.
  if (intenta.Si([&] { return data::IsNonZero(clave->Fields("Libre")); })) return;
  if (intenta.Si([&] { return data::ToNumber(clave->Fields("cantidad")) <= 0; })) return;
  intenta([&] {
    txtFields(campo::Cantidad)
        .Text(PlainNumber(NumeroEn(campo::Presentaciones) * data::ToNumber(clave->Fields("cantidad"))));
  });
}

void frmSalidasWizard::LlenaPartida() {
  Trampa intenta{*this, "LlenaPartida"};
  if (!ArticuloYCantidad(intenta)) return;
  intenta([&] { Dispara("SALIDAS010"); });
  if (Cancelado() || !Open()) return;  // a screen that the routine has closed writes no line
  if (!HayExistencia(intenta)) return PasaA(campo::Articulo);
  data::RecordsetRef linea;
  intenta([&] {
    Abre("SELECT linea FROM prods WHERE articulo = '" + data::Trim(txtFields(campo::Articulo).Text()) + "'",
         linea);
  });
  {
    Almacenando almacenando{*this};
    NuevaPartida();
  }
  intenta([&] { GetPlatform().ProcessEvents(); });
  PasaA(campo::Articulo);
  VaciaCampos(intenta, {campo::Articulo, campo::Cantidad, campo::Precio, campo::SegundaClave, campo::Dato1,
                        campo::Dato2, campo::Unidad, campo::Presentaciones, campo::UnidadDePresentacion,
                        campo::Descripcion});
}

void frmSalidasWizard::NuevaPartida() {
  Trampa intenta{*this, "NuevaPartida"};
  if (Modo == modo::kAlta) CreaSalida();
  data::RecordsetRef ultima;
  std::string id;
  auto es_la_misma = [&] {
    intenta([&] {
      id = PlainNumber(Funciones().ANumero(fg2.TextMatrix(UltimaPartida, columna_salida::IdSalida)));
    });
    intenta([&] {
      Abre("SELECT * FROM salpart WHERE (((salida)=" + std::to_string(Salida) + ")) AND id_salida = " + id,
           ultima);
    });
    if (intenta.Si([&] { return ultima->Eof(); })) return false;
    return !intenta.Si([&] {
      return data::Trim(data::ToText(ultima->Fields("articulo"))) !=
                 data::Trim(txtFields(campo::Articulo).Text()) ||
             data::Trim(data::ToText(ultima->Fields("claveadd"))) !=
                 data::Trim(txtFields(campo::SegundaClave).Text());
    });
  };
  if (!Acumulado || !es_la_misma()) {
    CreaPartida();
  } else {
    // The line keeps its first price; only the last line is compared.
    std::string cantidad;
    intenta([&] { Funciones().NumeroSql(NumeroEn(campo::Cantidad), cantidad); });
    intenta([&] {
      Ambiente->Conexion().Execute("UPDATE salpart SET cantidad = cantidad + " + cantidad +
                                   " WHERE id_salida = " + id);
    });
    std::string suma;
    intenta([&] {
      Funciones().FormateaCantidad(data::ToNumber(ultima->Fields("cantidad")) + NumeroEn(campo::Cantidad),
                                   Ambiente->FormatoCantidad(), suma);
    });
    intenta([&] { fg2.TextMatrix(UltimaPartida, columna_salida::Cantidad, suma); });
  }
  intenta([&] { Dispara("SALIDAS008"); });
  CalculaImportes();
}

void frmSalidasWizard::CreaPartida() {
  Trampa intenta{*this, "CreaPartida"};
  intenta([&] { Query->Limpia(); });
  intenta([&] { Query->TipoSentencia("INSERT"); });
  const data::DateTime ahora = GetPlatform().Now();
  auto agrega = [&](const char* columna, auto&& valor) {
    intenta([&] { Query->AgregaCampo("salpart", columna, valor()); });
  };
  agrega("salida", [&] { return Salida; });
  agrega("tipo_doc", [&] { return rstSalida->Fields("Tipo_doc"); });
  agrega("articulo", [&] { return txtFields(campo::Articulo).Text(); });
  agrega("cantidad", [&] { return NumeroEn(campo::Cantidad); });
  agrega("precio", [&] { return NumeroEn(campo::Precio); });
  agrega("observ", [&] { return DescripcionDeLaPartida(); });
  std::int32_t id = 0;
  data::RecordsetRef tomado;
  do {
    intenta([&] { Funciones().NuevoId("salpart", Ambiente->Conexion(), id); });
    intenta([&] { Abre("SELECT id_salida FROM salpart WHERE id_salida = " + std::to_string(id), tomado); });
  } while (intenta.Mientras([&] { return !tomado->Eof(); }));
  agrega("id_salida", [&] { return id; });
  agrega("partida", [&] { return 0; });
  agrega("usuario", [&] { return Ambiente->Usuario(); });
  agrega("usufecha", [&] { return ahora.date; });
  agrega("usuhora", [&] { return ahora.time.Text(); });
  agrega("claveadd", [&] { return Funciones().TextoDe(txtFields(campo::SegundaClave).Text()); });
  agrega("prcantidad", [&] { return NumeroEn(campo::Presentaciones); });
  agrega("prdescrip", [&] { return Funciones().TextoDe(txtFields(campo::Dato1).Text()); });
  EjecutaQuery(intenta);
  EscribeRenglon(intenta, id);
}

std::string frmSalidasWizard::DescripcionDeLaPartida() {
  return data::Trim(txtFields(campo::Descripcion).Text()) + " " + data::Trim(txtFields(campo::Dato1).Text());
}

void frmSalidasWizard::EscribeRenglon(service::Trampa& intenta, std::int32_t id) {
  const int renglon = RenglonLibre(intenta);
  if (renglon == 0) return;
  data::RecordsetRef existencia;
  intenta([&] {
    Abre("SELECT * FROM existenciaalmacen WHERE almacen = " + data::Trim(txtFields(campo::Almacen).Text()) +
             " AND articulo = '" + txtFields(campo::Articulo).Text() + "'",
         existencia);
  });
  auto celda = [&](int columna, auto&& texto) {
    intenta([&] { fg2.TextMatrix(renglon, columna, texto()); });
  };
  if (!intenta.Si([&] { return existencia->Eof(); })) {
    celda(columna_salida::ExistenciaDelAlmacen,
          [&] { return PlainNumber(Funciones().ANumero(existencia->Fields("existencia"))); });
  }
  celda(columna_salida::Articulo, [&] { return txtFields(campo::Articulo).Text(); });
  celda(columna_salida::Cantidad, [&] { return PlainNumber(NumeroEn(campo::Cantidad)); });
  celda(columna_salida::Precio, [&] { return PlainNumber(NumeroEn(campo::Precio)); });
  intenta([&] { Importe = NumeroEn(campo::Cantidad) * NumeroEn(campo::Precio); });
  celda(columna_salida::Importe, [&] { return FormatNumber(Importe, kFormatoRenglon); });
  celda(columna_salida::Descripcion, [&] { return DescripcionDeLaPartida(); });
  celda(columna_salida::IdSalida, [&] { return std::to_string(id); });
  celda(columna_salida::Presentacion, [&] { return Funciones().TextoDe(txtFields(campo::Dato1).Text()); });
  celda(columna_salida::Presentaciones,
        [&] { return Funciones().TextoDe(txtFields(campo::Presentaciones).Text()); });
  // The presentation count once more. A stored line brings its second key to this column instead.
  celda(columna_salida::SegundaClave,
        [&] { return Funciones().TextoDe(txtFields(campo::Presentaciones).Text()); });
  intenta([&] { fg2.Row(renglon); });
  UltimaPartida = renglon;
  if (renglon > NumeroDePartidas) intenta([&] { fg2.TopRow(renglon - 3); });
}

}  // namespace tarvik
