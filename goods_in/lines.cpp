// How a line comes to be: the entry row is filled from the catalogue, checked, and becomes one row
// of entpart and one row of the grid at once. A model's key becomes one line for each colour and size.
#include "data/number.h"
#include "data/text.h"
#include "goods_in/frm_entradas_wizard.h"
#include "matrix/busca_modelo.h"

namespace tarvik {

using data::FormatNumber;
using data::PlainNumber;
using service::Trampa;

void frmEntradasWizard::PonDescripcion() {
  Vuelta vuelta{*this};
  Trampa intenta{*this, "PonDescripcion"};
  if (intenta.Si([&] { return Vacio(4); })) return Vacia(intenta, {1, 5, 6, 9, 24, 25, 26, 28, 29});
  intenta([&] {
    Abre(
        "SELECT prods.descrip,unidad,precio1,impuestos.valor FROM prods INNER JOIN impuestos ON "
        "prods.impuesto = "
        "impuestos.impuesto WHERE articulo = '" +
            data::Trim(txtFields(4).Text()) + "'",
        rstArticulo);
  });
  if (intenta.Si([&] { return rstArticulo->Eof(); })) {
    data::RecordsetRef clave;
    intenta([&] { Abre("SELECT * FROM clavesadd WHERE clave = '" + txtFields(4).Text() + "'", clave); });
    if (intenta.Si([&] { return clave->Eof(); })) return Vacia(intenta, {6});
    auto de = [&](const char* columna) { return Funciones().TextoDe(clave->Fields(columna)); };
    // The order is the rule: the second key resolves itself and reads the article afresh, which is
    // the record that the price below comes from.
    intenta([&] { txtFields(4).Text(de("articulo")); });
    intenta([&] { txtFields(24).Text(de("Clave")); });
    intenta([&] { txtFields(25).Text(data::Trim(de("Dato1"))); });
    intenta([&] { txtFields(26).Text(data::Trim(de("Dato2"))); });
    intenta([&] { txtFields(28).Text("1"); });
    intenta([&] { txtFields(29).Text(data::Trim(de("unidad"))); });
    PasaA(28);
    CalculaCantidad();
    MultiplicaPrecio();
  }
  intenta([&] {
    const double impuesto = Funciones().ANumero(rstArticulo->Fields("valor"));
    const double precio = (impuesto / 100 + 1) * Funciones().ANumero(rstArticulo->Fields("precio1"));
    txtFields(6).Text(FormatNumber(precio, Ambiente->FormatoImporte()));
  });
  intenta([&] { txtFields(1).Text(data::Trim(Funciones().TextoDe(rstArticulo->Fields("descrip")))); });
  intenta([&] { txtFields(27).Text(data::Trim(Funciones().TextoDe(rstArticulo->Fields("unidad")))); });
  if (Check4.Value() == 1) intenta([&] { txtFields(5).Text("1"); });
  intenta([&] { Ambiente->ValorDeGancho(data::Value()); });
  intenta([&] { Dispara("ENTRADA009"); });
}

void frmEntradasWizard::TraeSegundaClave() {
  Vuelta vuelta{*this};
  Trampa intenta{*this, "TraeSegundaClave"};
  if (intenta.Si([&] { return Vacio(24); })) Vacia(intenta, {25, 26, 28, 29});
  data::RecordsetRef clave;
  intenta([&] { Abre("SELECT * FROM clavesadd WHERE clave = '" + txtFields(24).Text() + "'", clave); });
  if (intenta.Si([&] { return clave->Eof(); })) return Vacia(intenta, {25, 26, 28, 29});
  data::RecordsetRef articulo;
  intenta([&] {
    Abre("SELECT articulo,descrip FROM prods WHERE articulo = '" +
             Funciones().TextoDe(clave->Fields("articulo")) + "'",
         articulo);
  });
  intenta([&] { txtFields(4).Text(Funciones().TextoDe(articulo->Fields("articulo"))); });
  intenta([&] { txtFields(1).Text(Funciones().TextoDe(articulo->Fields("descrip"))); });
  PonDescripcion();
  CalculaCantidad();
}

void frmEntradasWizard::CalculaCantidad() {
  Trampa intenta{*this, "CalculaCantidad"};
  data::RecordsetRef clave;
  intenta([&] { Abre("SELECT * FROM clavesadd WHERE clave = '" + txtFields(24).Text() + "'", clave); });
  if (intenta.Si([&] { return clave->Eof(); })) {
    intenta([&] { txtFields(5).Text("0"); });
    return;
  }
  intenta([&] {
    const double unidades = Funciones().ANumero(Funciones().TextoDe(clave->Fields("cantidad")));
    txtFields(5).Text(PlainNumber(unidades * Numero(28)));
  });
}

void frmEntradasWizard::MultiplicaPrecio() {
  Trampa intenta{*this, "MultiplicaPrecio"};
  if (!intenta.Si([&] { return !Vacio(24) && Numero(5) > 0; })) return;
  intenta([&] { txtFields(9).Text(FormatNumber(Numero(5) * Numero(6), Ambiente->FormatoImporte())); });
}

void frmEntradasWizard::BuscaModelo(bool& es_modelo) {
  Vuelta vuelta{*this};
  tarvik::BuscaModelo(*this, es_modelo);
}

void frmEntradasWizard::LlenaPartida() {
  Trampa intenta{*this, "LlenaPartida"};
  if (data::Val(data::Trim(txtFields(6).Text())) > 0) {
    bool es_modelo = false;
    BuscaModelo(es_modelo);
    if (es_modelo || !Open()) return;
    ColocaFoco(txtFields(4));
  }
  if (!ArticuloYCantidad(intenta)) return;
  if (intenta.Si([&] { return Numero(6) <= 0; })) {
    Mensaje(intenta, 238);
    return PasaA(6);
  }
  data::RecordsetRef ubicacion;
  intenta([&] {
    Abre("SELECT ubicacion FROM prods WHERE articulo = '" + data::Trim(txtFields(4).Text()) + "'", ubicacion);
  });
  {
    Almacenando almacenando{*this};
    NuevaPartida();
  }
  PasaA(4);
  Vacia(intenta, {1, 4, 5, 6, 9, 24, 25, 26, 27, 28, 29});
  intenta([&] { RichTextBox1.Text(""); });
}

void frmEntradasWizard::NuevaPartida() {
  Trampa intenta{*this, "NuevaPartida"};
  intenta([&] { Dispara("ENTRADA005"); });
  if (Cancelado() || !Open()) return;  // a screen that the routine has closed writes no line
  if (Modo == "ALTA") CreaEntrada();
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
  agrega("articulo", [&] { return txtFields(4).Text(); });
  agrega("cantidad", [&] { return Numero(5); });
  agrega("precio", [&] { return Numero(6); });
  agrega("observ", [&] { return txtFields(1).Text(); });
  agrega("partida", [&] { return 0; });
  agrega("usuario", [&] { return Ambiente->Usuario(); });
  agrega("usufecha", [&] { return ahora.date; });
  agrega("Usuhora", [&] { return ahora.time.Text(); });
  agrega("prcantidad", [&] { return Numero(28); });
  agrega("prdescrip", [&] { return data::Trim(txtFields(29).Text()); });
  agrega("claveadd", [&] { return Funciones().TextoDe(txtFields(24).Text()); });
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
  celda(0, [&] { return txtFields(4).Text(); });
  celda(1, [&] { return txtFields(5).Text(); });
  celda(2, [&] { return txtFields(6).Text(); });
  celda(3, [&] { return FormatNumber(Numero(6) * Numero(5), kFormatoRenglon); });
  celda(4, [&] { return txtFields(1).Text(); });
  celda(5, [&] { return std::to_string(id); });
  celda(6, [&] { return txtFields(29).Text(); });
  celda(7, [&] { return txtFields(28).Text(); });
  intenta([&] { fg2.Row(renglon); });
  if (renglon > NumeroDePartidas) intenta([&] { fg2.TopRow(renglon - 7); });
}

}  // namespace tarvik
