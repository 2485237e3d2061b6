// How a line comes to be on a goods-out document, or adds to the one just entered.
#include "data/number.h"
#include "data/text.h"
#include "goods_out/frm_salidas_wizard.h"

namespace tarvik {

using data::FormatNumber;
using data::PlainNumber;
using service::Trampa;

void frmSalidasWizard::PonDescripcion() {
  Vuelta vuelta{*this};
  Trampa intenta{*this, "PonDescripcion"};
  if (intenta.Si([&] { return Vacio(4); })) return;
  auto precio = [&] {
    const double impuesto = Funciones().ANumero(rstArticulo->Fields("Valor"));
    const double con_impuesto = Funciones().ANumero(rstArticulo->Fields("Precio1")) * (1 + impuesto / 100);
    txtFields(6).Text(FormatNumber(con_impuesto, Ambiente->FormatoImporte()));
  };
  intenta([&] {
    Funciones().AbreConsulta(
        "SELECT prods.articulo, prods.descrip, prods.unidad, prods.precio1, prods.impuesto, impuestos.valor "
        "FROM "
        "prods INNER JOIN impuestos ON prods.impuesto = impuestos.impuesto WHERE articulo = '" +
            txtFields(4).Text() + "'",
        Ambiente->Conexion(), rstArticulo);
  });
  if (intenta.Si([&] { return rstArticulo->Eof(); })) {
    data::RecordsetRef clave;
    intenta([&] {
      Funciones().AbreConsulta(
          "SELECT articulo,clave,libre FROM clavesadd WHERE clave = '" + txtFields(4).Text() + "'",
          Ambiente->Conexion(), clave);
    });
    if (intenta.Si([&] { return clave->Eof(); })) return;
    intenta([&] { txtFields(4).Text(Funciones().TextoDe(clave->Fields("articulo"))); });
    intenta([&] { txtFields(24).Text(Funciones().TextoDe(clave->Fields("Clave"))); });
    TraeSegundaClave();
    PonDescripcion();
    if (intenta.Si([&] { return !data::IsTrue(clave->Fields("Libre")); })) {
      PasaA(28);
    } else {
      intenta(precio);
    }
    return;
  }
  intenta(precio);
  intenta([&] { txtFields(1).Text(data::ToText(rstArticulo->Fields("descrip"))); });
  intenta([&] { txtFields(27).Text(Funciones().TextoDe(rstArticulo->Fields("unidad"))); });
  if (intenta.Si([&] { return Vacio(5); })) {
    intenta([&] { txtFields(5).Text("1"); });
    intenta([&] { txtFields(5).SelectAll(); });
  }
  intenta([&] { Dispara("SALIDAS011"); });
}

void frmSalidasWizard::TraeSegundaClave() {
  Vuelta vuelta{*this};
  Trampa intenta{*this, "TraeSegundaClave"};
  intenta(
      [&] { Abre("SELECT * FROM clavesadd WHERE clave = '" + txtFields(24).Text() + "'", rstClavesAdd); });
  // What the changes below set off looks the key up again; this record stays the one that was found.
  const data::RecordsetRef clave = rstClavesAdd;
  if (intenta.Si([&] { return clave->Eof(); })) {
    Vacia(intenta, {4, 25, 26, 27, 28, 29});
  } else {
    intenta([&] { txtFields(4).Text(data::ToText(clave->Fields("articulo"))); });
    intenta([&] { txtFields(25).Text(data::ToText(clave->Fields("Dato1"))); });
    intenta([&] { txtFields(26).Text(data::ToText(clave->Fields("Dato2"))); });
    if (intenta.Si([&] { return data::ToNumber(clave->Fields("cantidad")) > 0; })) {
      intenta([&] { txtFields(5).Text(Funciones().TextoDe(clave->Fields("cantidad"))); });
      intenta([&] { txtFields(28).Text("1"); });
      intenta([&] { txtFields(29).Text(Funciones().TextoDe(clave->Fields("unidad"))); });
    }
  }
  PonDescripcion();
}

void frmSalidasWizard::MultiplicaPorPresentacion() {
  Trampa intenta{*this, "MultiplicaPorPresentacion"};
  if (intenta.Si([&] { return Vacio(24); })) return;
  data::RecordsetRef clave;
  intenta([&] { Abre("SELECT * FROM clavesadd WHERE clave = '" + txtFields(24).Text() + "'", clave); });
  if (intenta.Si([&] { return clave->Eof(); })) return;
  // Not 0 here, and not True where the key is filtered: a flag of 2 is free by this test alone.
  if (intenta.Si([&] { return data::IsNonZero(clave->Fields("Libre")); })) return;
  if (intenta.Si([&] { return data::ToNumber(clave->Fields("cantidad")) <= 0; })) return;
  intenta([&] { txtFields(5).Text(PlainNumber(Numero(28) * data::ToNumber(clave->Fields("cantidad")))); });
}

void frmSalidasWizard::LlenaPartida() {
  Trampa intenta{*this, "LlenaPartida"};
  if (!ArticuloYCantidad(intenta)) return;
  intenta([&] { Dispara("SALIDAS010"); });
  if (Cancelado() || !Open()) return;  // a screen that the routine has closed writes no line
  if (!HayExistencia(intenta)) return PasaA(4);
  data::RecordsetRef linea;
  intenta([&] {
    Abre("SELECT linea FROM prods WHERE articulo = '" + data::Trim(txtFields(4).Text()) + "'", linea);
  });
  {
    Almacenando almacenando{*this};
    NuevaPartida();
  }
  intenta([&] { GetPlatform().ProcessEvents(); });
  PasaA(4);
  Vacia(intenta, {4, 5, 6, 24, 25, 26, 27, 28, 29, 1});
}

void frmSalidasWizard::NuevaPartida() {
  Trampa intenta{*this, "NuevaPartida"};
  if (Modo == "ALTA") CreaSalida();
  data::RecordsetRef ultima;
  std::string id;
  auto es_la_misma = [&] {
    intenta([&] { id = PlainNumber(Funciones().ANumero(fg2.TextMatrix(UltimaPartida, 6))); });
    intenta([&] {
      Abre("SELECT * FROM salpart WHERE (((salida)=" + std::to_string(Salida) + ")) AND id_salida = " + id,
           ultima);
    });
    if (intenta.Si([&] { return ultima->Eof(); })) return false;
    return !intenta.Si([&] {
      return data::Trim(data::ToText(ultima->Fields("articulo"))) != data::Trim(txtFields(4).Text()) ||
             data::Trim(data::ToText(ultima->Fields("claveadd"))) != data::Trim(txtFields(24).Text());
    });
  };
  if (!Acumulado || !es_la_misma()) {
    CreaPartida();
  } else {
    // The line keeps its first price; only the last line is compared.
    std::string cantidad;
    intenta([&] { Funciones().NumeroSql(Numero(5), cantidad); });
    intenta([&] {
      Ambiente->Conexion().Execute("UPDATE salpart SET cantidad = cantidad + " + cantidad +
                                   " WHERE id_salida = " + id);
    });
    std::string suma;
    intenta([&] {
      Funciones().FormateaCantidad(data::ToNumber(ultima->Fields("cantidad")) + Numero(5),
                                   Ambiente->FormatoCantidad(), suma);
    });
    intenta([&] { fg2.TextMatrix(UltimaPartida, 1, suma); });
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
  auto descripcion = [&] { return data::Trim(txtFields(1).Text()) + " " + data::Trim(txtFields(25).Text()); };
  agrega("salida", [&] { return Salida; });
  agrega("tipo_doc", [&] { return rstSalida->Fields("Tipo_doc"); });
  agrega("articulo", [&] { return txtFields(4).Text(); });
  agrega("cantidad", [&] { return Numero(5); });
  agrega("precio", [&] { return Numero(6); });
  agrega("observ", descripcion);
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
  agrega("claveadd", [&] { return Funciones().TextoDe(txtFields(24).Text()); });
  agrega("prcantidad", [&] { return Numero(28); });
  agrega("prdescrip", [&] { return Funciones().TextoDe(txtFields(25).Text()); });
  EjecutaQuery(intenta);

  const int renglon = RenglonLibre(intenta);
  if (renglon == 0) return;
  data::RecordsetRef existencia;
  intenta([&] {
    Abre("SELECT * FROM existenciaalmacen WHERE almacen = " + data::Trim(txtFields(14).Text()) +
             " AND articulo = '" + txtFields(4).Text() + "'",
         existencia);
  });
  auto celda = [&](int columna, auto&& texto) {
    intenta([&] { fg2.TextMatrix(renglon, columna, texto()); });
  };
  if (!intenta.Si([&] { return existencia->Eof(); })) {
    celda(9, [&] { return PlainNumber(Funciones().ANumero(existencia->Fields("existencia"))); });
  }
  celda(0, [&] { return txtFields(4).Text(); });
  celda(1, [&] { return PlainNumber(Numero(5)); });
  celda(3, [&] { return PlainNumber(Numero(6)); });
  intenta([&] { Importe = Numero(5) * Numero(6); });
  celda(4, [&] { return FormatNumber(Importe, kFormatoRenglon); });
  celda(5, descripcion);
  celda(6, [&] { return std::to_string(id); });
  celda(7, [&] { return Funciones().TextoDe(txtFields(25).Text()); });
  celda(8, [&] { return Funciones().TextoDe(txtFields(28).Text()); });
  // The presentation count once more. A stored line brings its second key to this column instead.
  celda(10, [&] { return Funciones().TextoDe(txtFields(28).Text()); });
  intenta([&] { fg2.Row(renglon); });
  UltimaPartida = renglon;
  if (renglon > NumeroDePartidas) intenta([&] { fg2.TopRow(renglon - 3); });
}

}  // namespace tarvik
