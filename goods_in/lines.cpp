// How a line comes to be: the entry row is filled from the catalogue, checked, and becomes one row
// of entpart and one row of the grid at once. A model's key becomes one line for each colour and size.
#include "data/number.h"
#include "data/text.h"
#include "goods_in/columnas.h"
#include "goods_in/frm_entradas_wizard.h"
#include "matrix/busca_modelo.h"

namespace tarvik {

using data::FormatNumber;
using data::PlainNumber;
using service::Trampa;

void frmEntradasWizard::PonDescripcion() {
  Vuelta vuelta{*this};
  Trampa intenta{*this, "PonDescripcion"};
  if (intenta.Si([&] { return EstaVacio(campo::Articulo); }))
    return VaciaCampos(intenta, {campo::Descripcion, campo::Cantidad, campo::Precio, campo::ImporteDelRenglon,
                                 campo::SegundaClave, campo::Dato1, campo::Dato2, campo::Presentaciones,
                                 campo::UnidadDePresentacion});
  intenta([&] {
    Abre(
        "SELECT prods.descrip,unidad,precio1,impuestos.valor FROM prods INNER JOIN impuestos ON "
        "prods.impuesto = "
        "impuestos.impuesto WHERE articulo = '" +
            data::Trim(txtFields(campo::Articulo).Text()) + "'",
        rstArticulo);
  });
  if (intenta.Si([&] { return rstArticulo->Eof(); })) {
    data::RecordsetRef clave;
    intenta([&] {
      Abre("SELECT * FROM clavesadd WHERE clave = '" + txtFields(campo::Articulo).Text() + "'", clave);
    });
    if (intenta.Si([&] { return clave->Eof(); })) return VaciaCampos(intenta, {campo::Precio});
    auto de = [&](const char* columna) { return Funciones().TextoDe(clave->Fields(columna)); };
    // The order matters: the second key resolves itself and reads the article again, which is
    // the record that the price below comes from.
    intenta([&] { txtFields(campo::Articulo).Text(de("articulo")); });
    intenta([&] { txtFields(campo::SegundaClave).Text(de("Clave")); });
    intenta([&] { txtFields(campo::Dato1).Text(data::Trim(de("Dato1"))); });
    intenta([&] { txtFields(campo::Dato2).Text(data::Trim(de("Dato2"))); });
    intenta([&] { txtFields(campo::Presentaciones).Text("1"); });
    intenta([&] { txtFields(campo::UnidadDePresentacion).Text(data::Trim(de("unidad"))); });
    PasaA(campo::Presentaciones);
    CalculaCantidad();
    MultiplicaPrecio();
  }
  intenta([&] {
    const double impuesto = Funciones().ANumero(rstArticulo->Fields("valor"));
    const double precio = (impuesto / 100 + 1) * Funciones().ANumero(rstArticulo->Fields("precio1"));
    txtFields(campo::Precio).Text(FormatNumber(precio, Ambiente->FormatoImporte()));
  });
  intenta([&] {
    txtFields(campo::Descripcion).Text(data::Trim(Funciones().TextoDe(rstArticulo->Fields("descrip"))));
  });
  intenta(
      [&] { txtFields(campo::Unidad).Text(data::Trim(Funciones().TextoDe(rstArticulo->Fields("unidad")))); });
  if (Check4.Value() == 1) intenta([&] { txtFields(campo::Cantidad).Text("1"); });
  intenta([&] { Ambiente->ValorDeGancho(data::Value()); });
  intenta([&] { Dispara("ENTRADA009"); });
}

void frmEntradasWizard::TraeSegundaClave() {
  Vuelta vuelta{*this};
  Trampa intenta{*this, "TraeSegundaClave"};
  if (intenta.Si([&] { return EstaVacio(campo::SegundaClave); }))
    VaciaCampos(intenta, {campo::Dato1, campo::Dato2, campo::Presentaciones, campo::UnidadDePresentacion});
  data::RecordsetRef clave;
  intenta([&] {
    Abre("SELECT * FROM clavesadd WHERE clave = '" + txtFields(campo::SegundaClave).Text() + "'", clave);
  });
  if (intenta.Si([&] { return clave->Eof(); }))
    return VaciaCampos(intenta,
                       {campo::Dato1, campo::Dato2, campo::Presentaciones, campo::UnidadDePresentacion});
  data::RecordsetRef articulo;
  intenta([&] {
    Abre("SELECT articulo,descrip FROM prods WHERE articulo = '" +
             Funciones().TextoDe(clave->Fields("articulo")) + "'",
         articulo);
  });
  intenta([&] { txtFields(campo::Articulo).Text(Funciones().TextoDe(articulo->Fields("articulo"))); });
  intenta([&] { txtFields(campo::Descripcion).Text(Funciones().TextoDe(articulo->Fields("descrip"))); });
  PonDescripcion();
  CalculaCantidad();
}

void frmEntradasWizard::CalculaCantidad() {
  Trampa intenta{*this, "CalculaCantidad"};
  data::RecordsetRef clave;
  intenta([&] {
    Abre("SELECT * FROM clavesadd WHERE clave = '" + txtFields(campo::SegundaClave).Text() + "'", clave);
  });
  if (intenta.Si([&] { return clave->Eof(); })) {
    intenta([&] { txtFields(campo::Cantidad).Text("0"); });
    return;
  }
  intenta([&] {
    const double unidades = Funciones().ANumero(Funciones().TextoDe(clave->Fields("cantidad")));
    txtFields(campo::Cantidad).Text(PlainNumber(unidades * NumeroEn(campo::Presentaciones)));
  });
}

void frmEntradasWizard::MultiplicaPrecio() {
  Trampa intenta{*this, "MultiplicaPrecio"};
  if (!intenta.Si([&] { return !EstaVacio(campo::SegundaClave) && NumeroEn(campo::Cantidad) > 0; })) return;
  intenta([&] {
    txtFields(campo::ImporteDelRenglon)
        .Text(FormatNumber(NumeroEn(campo::Cantidad) * NumeroEn(campo::Precio), Ambiente->FormatoImporte()));
  });
}

void frmEntradasWizard::BuscaModelo(bool& es_modelo) {
  Vuelta vuelta{*this};
  tarvik::BuscaModelo(*this, es_modelo);
}

void frmEntradasWizard::LlenaPartida() {
  Trampa intenta{*this, "LlenaPartida"};
  if (data::Val(data::Trim(txtFields(campo::Precio).Text())) > 0) {
    bool es_modelo = false;
    BuscaModelo(es_modelo);
    if (es_modelo || !Open()) return;
    ColocaFoco(txtFields(campo::Articulo));
  }
  if (!ArticuloYCantidad(intenta)) return;
  if (intenta.Si([&] { return NumeroEn(campo::Precio) <= 0; })) {
    Mensaje(intenta, mensaje::SinPrecio);
    return PasaA(campo::Precio);
  }
  data::RecordsetRef ubicacion;
  intenta([&] {
    Abre("SELECT ubicacion FROM prods WHERE articulo = '" + data::Trim(txtFields(campo::Articulo).Text()) +
             "'",
         ubicacion);
  });
  {
    Almacenando almacenando{*this};
    NuevaPartida();
  }
  PasaA(campo::Articulo);
  VaciaCampos(intenta, {campo::Descripcion, campo::Articulo, campo::Cantidad, campo::Precio,
                        campo::ImporteDelRenglon, campo::SegundaClave, campo::Dato1, campo::Dato2,
                        campo::Unidad, campo::Presentaciones, campo::UnidadDePresentacion});
  intenta([&] { RichTextBox1.Text(""); });
}

void frmEntradasWizard::NuevaPartida() {
  Trampa intenta{*this, "NuevaPartida"};
  intenta([&] { Dispara("ENTRADA005"); });
  if (Cancelado() || !Open()) return;  // a screen that the routine has closed writes no line
  if (Modo == modo::kAlta) CreaEntrada();
  intenta([&] {
    Abre("SELECT * FROM entradas WHERE (((entrada) = " + std::to_string(Entrada) + "))", rstEntrada);
  });
  intenta([&] { Query->Limpia(); });
  intenta([&] { Query->TipoSentencia("INSERT"); });
  std::int32_t id = 0;
  intenta([&] { Funciones().NuevoId("entpart", Ambiente->Conexion(), id); });
  const data::DateTime ahora = GetPlatform().Now();
  auto agrega = [&](const char* columna, auto&& valor) {
    intenta([&] { Query->AgregaCampo("entpart", columna, valor()); });
  };
  agrega("id_entrada", [&] { return id; });
  agrega("entrada", [&] { return Entrada; });
  agrega("tipo_doc", [&] { return rstEntrada->Fields("Tipo_doc"); });
  agrega("no_referen", [&] { return rstEntrada->Fields("Entrada"); });
  agrega("articulo", [&] { return txtFields(campo::Articulo).Text(); });
  agrega("cantidad", [&] { return NumeroEn(campo::Cantidad); });
  agrega("precio", [&] { return NumeroEn(campo::Precio); });
  agrega("observ", [&] { return txtFields(campo::Descripcion).Text(); });
  agrega("partida", [&] { return 0; });
  agrega("usuario", [&] { return Ambiente->Usuario(); });
  agrega("usufecha", [&] { return ahora.date; });
  agrega("Usuhora", [&] { return ahora.time.Text(); });
  agrega("prcantidad", [&] { return NumeroEn(campo::Presentaciones); });
  agrega("prdescrip", [&] { return data::Trim(txtFields(campo::UnidadDePresentacion).Text()); });
  agrega("claveadd", [&] { return Funciones().TextoDe(txtFields(campo::SegundaClave).Text()); });
  EjecutaQuery(intenta);
  EscribeRenglon(intenta, id);
  CalculaImportes();
}

void frmEntradasWizard::EscribeRenglon(Trampa& intenta, std::int32_t id) {
  const int renglon = RenglonLibre(intenta);
  if (renglon == 0) return;
  auto celda = [&](int columna, auto&& texto) {
    intenta([&] { fg2.TextMatrix(renglon, columna, texto()); });
  };
  celda(columna_entrada::Articulo, [&] { return txtFields(campo::Articulo).Text(); });
  celda(columna_entrada::Cantidad, [&] { return txtFields(campo::Cantidad).Text(); });
  celda(columna_entrada::Precio, [&] { return txtFields(campo::Precio).Text(); });
  celda(columna_entrada::Importe,
        [&] { return FormatNumber(NumeroEn(campo::Precio) * NumeroEn(campo::Cantidad), kFormatoRenglon); });
  celda(columna_entrada::Descripcion, [&] { return txtFields(campo::Descripcion).Text(); });
  celda(columna_entrada::IdEntrada, [&] { return std::to_string(id); });
  celda(columna_entrada::Presentacion, [&] { return txtFields(campo::UnidadDePresentacion).Text(); });
  celda(columna_entrada::Presentaciones, [&] { return txtFields(campo::Presentaciones).Text(); });
  intenta([&] { fg2.Row(renglon); });
  if (renglon > NumeroDePartidas) intenta([&] { fg2.TopRow(renglon - 7); });
}

}  // namespace tarvik
