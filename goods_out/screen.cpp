// The goods-out screen: its controls as designed, loading in the three modes, closing, the sheet.
#include <iterator>
#include <utility>
#include <vector>

#include "data/text.h"
#include "forms/keys.h"
#include "goods_out/columnas.h"
#include "goods_out/frm_salidas_wizard.h"

namespace tarvik {

using service::Trampa;

namespace {

constexpr Celda kCeldas[] = {{columna_salida::Articulo, "articulo", Celda::Valor},
                             {columna_salida::Cantidad, "cantidad", Celda::Valor},
                             {columna_salida::Precio, "Precio", Celda::Valor},
                             {columna_salida::Descripcion, "Observ", Celda::TrasBlanco},
                             {columna_salida::IdSalida, "id_salida", Celda::Texto},
                             {columna_salida::Presentacion, "PrDescrip", Celda::Texto},
                             {columna_salida::Presentaciones, "PrCantidad", Celda::Texto},
                             {columna_salida::SegundaClave, "claveadd", Celda::Valor}};
constexpr std::string_view kSiempre[] = {"fg2", "Command1", "Command2"};

constexpr Particular kSalidas{
    .nombre = "frmSalidasWizard",
    .titulo = "Asistente para salidas de almacén.",
    .modulo = "frmSalidasWiz",
    .ent_sal = "S",
    .recorta_concepto = true,
    .fin_de_valida_fecha = "' And cerrado <> 0",
    .busca_concepto = "Conceptos de salidas de inventario",
    .antes_de_buscar = "SALIDAS013",
    .campo_de_formato = "Salidas",
    .borra_renglon = "DELETE FROM salpart WHERE id_salida = ",
    .columna_id = columna_salida::IdSalida,
    .siempre = kSiempre,
    .malla = {.origen = "SalidasInventario",
              .procedimiento = "TKCreaSalidaTYC",
              .operacion = "EN",
              .celdas = kCeldas},
};

constexpr int kRenglonesALaVista = 7;

}  // namespace

frmSalidasWizard::frmSalidasWizard(service::Host& host)
    : DocumentWizard(host, kSalidas, {0, 1, 2, 3, 4, 5, 6, 7, 8}, CamposCon(&CampoDeDocumento::en_salidas)),
      Picture1(*this, "Picture1"),
      Picture2(*this, "Picture2"),
      Picture3(*this, "Picture3"),
      SSCheck1(*this, "SSCheck1"),
      SSCheck2(*this, "SSCheck2"),
      Check1(*this, "Check1"),
      Check5(*this, "Check5"),
      DTPicker2(*this, "DTPicker2"),
      wb(*this, "wb"),
      Combo1(*this, "Combo1"),
      Label1(*this, "Label1"),
      Label2(*this, "Label2"),
      Label3(*this, "Label3"),
      Label4(*this, "Label4"),
      Label5(*this, "Label5"),
      Label6(*this, "Label6"),
      Label7(*this, "Label7"),
      Label8(*this, "Label8"),
      Label9(*this, "Label9"),
      Label11(*this, "Label11"),
      Label12(*this, "Label12"),
      Label17(*this, "Label17"),
      Label18(*this, "Label18"),
      Label19(*this, "Label19"),
      Label23(*this, "Label23"),
      Label25(*this, "Label25") {
  DisenaTeclado();
  DisenaCampos();
  DisenaPaneles();
  DisenaLetreros();
  DisenaEstados();
  DTPicker2.Value(DTPicker1.Value());
  SSCheck1.OnClick = [this] { SSCheck1_Click(); };
  SSCheck2.OnClick = [this] { SSCheck2_Click(); };
  Check1.OnClick = [this] { Check1_Click(); };
  Command1.OnClick = [this] { Command1_Click(); };
  Combo1.OnClick = [this] { Combo1_Click(); };
  Combo1.OnChange = [this] { Combo1_Click(); };
  DTPicker2.OnKeyDown = [this](int& tecla, int shift) { DTPicker2_KeyDown(tecla, shift); };
}

void frmSalidasWizard::DisenaTeclado() {
  forms::Control* const orden[] = {&txtFields(campo::Concepto),
                                   &RichTextBox3,
                                   &DTPicker1,
                                   &txtFields(campo::Almacen),
                                   &SSCheck1,
                                   &txtFields(campo::AlmacenDestino),
                                   &Check5,
                                   &txtFields(campo::Sucursal),
                                   &SSCheck2,
                                   &txtFields(campo::EstacionDestino),
                                   &txtFields(campo::Cliente),
                                   &txtFields(campo::NombreDelCliente),
                                   &txtFields(campo::EntradaRemota),
                                   &DTPicker2,
                                   &txtFields(campo::Compra),
                                   &RichTextBox1,
                                   &Check1,
                                   &txtFields(campo::Empleado),
                                   &fg2,
                                   &txtEdit,
                                   &wb,
                                   &txtFields(campo::Articulo),
                                   &txtFields(campo::SegundaClave),
                                   &txtFields(campo::Descripcion),
                                   &txtFields(campo::Cantidad),
                                   &txtFields(campo::Unidad),
                                   &txtFields(campo::Precio),
                                   &txtFields(campo::Dato1),
                                   &txtFields(campo::Dato2),
                                   &txtFields(campo::Presentaciones),
                                   &txtFields(campo::UnidadDePresentacion),
                                   &RichTextBox2,
                                   &Combo1,
                                   &txtFields(campo::DireccionDeEmbarque),
                                   &txtFields(campo::Renglones),
                                   &txtFields(campo::Unidades),
                                   &txtFields(campo::Total),
                                   &Check3,
                                   &Check2,
                                   &Check4,
                                   &Command5,
                                   &Command2,
                                   &Command1,
                                   &Command6};
  int tab = 0;
  for (forms::Control* control : orden) control->TabIndex(tab++);
}

void frmSalidasWizard::DisenaCampos() {
  const std::pair<const char*, std::vector<int>> tipos[] = {
      {"U",
       {campo::Concepto, campo::Sucursal, campo::EstacionDestino, campo::Cliente, campo::NombreDelCliente,
        campo::Empleado}},
      {"SN", {campo::Almacen, campo::AlmacenDestino}},
      {"SD", {campo::Descripcion, campo::Cantidad}},
      {"N", {campo::Precio}}};
  for (const auto& [tag, campos] : tipos) {
    for (int campo : campos) txtFields(campo).Tag(tag);
  }

  struct {
    int caja, campo;
    const char* busca;
  } const cajas[] = {{0, campo::Concepto, "Conceptos de salidas de inventario"},
                     {1, campo::Almacen, "Almacenes"},
                     {3, campo::AlmacenDestino, "Almacenes"},
                     {4, campo::Sucursal, "sucursales"},
                     {6, campo::EstacionDestino, "Estaciones"},
                     {7, campo::Cliente, "Clientes"},
                     {8, campo::Empleado, "Empleados"},
                     {2, campo::Articulo, "Articulos"},
                     {5, campo::SegundaClave, "Claves adicionales de articulos"}};
  for (const auto& [caja, campo, busca] : cajas) {
    MultiCombo1(caja).buscar(busca);
    MultiCombo1(caja).Hold(txtFields(campo));
  }
}

// The three panels: header, lines, entry and totals. A field in a search box is in its panel through the box.
void frmSalidasWizard::DisenaPaneles() {
  const std::pair<forms::PictureBox*, std::vector<forms::Control*>> paneles[] = {
      {&Picture1,
       {&RichTextBox3, &DTPicker1, &SSCheck1, &Check5, &SSCheck2, &txtFields(campo::NombreDelCliente),
        &txtFields(campo::EntradaRemota), &DTPicker2, &txtFields(campo::Compra), &RichTextBox1,
        &MultiCombo1(0), &MultiCombo1(1), &MultiCombo1(3), &MultiCombo1(4), &MultiCombo1(6),
        &MultiCombo1(7)}},
      {&Picture2, {&Check1, &fg2, &txtEdit, &wb, &MultiCombo1(8)}},
      {&Picture3,
       {&txtFields(campo::Descripcion),
        &txtFields(campo::Cantidad),
        &txtFields(campo::Unidad),
        &txtFields(campo::Precio),
        &txtFields(campo::Dato1),
        &txtFields(campo::Dato2),
        &txtFields(campo::Presentaciones),
        &txtFields(campo::UnidadDePresentacion),
        &RichTextBox2,
        &Combo1,
        &txtFields(campo::DireccionDeEmbarque),
        &txtFields(campo::Renglones),
        &txtFields(campo::Unidades),
        &txtFields(campo::Total),
        &Check3,
        &Check2,
        &Check4,
        &Command5,
        &Command2,
        &Command1,
        &Command6,
        &MultiCombo1(2),
        &MultiCombo1(5)}}};
  for (const auto& [panel, controles] : paneles) {
    for (forms::Control* control : controles) control->Container(panel);
  }
}

void frmSalidasWizard::DisenaLetreros() {
  const std::pair<forms::Label*, const char*> letreros[] = {{&Label12, "Concepto de la Salida."},
                                                            {&Label23, "Fecha del documento"},
                                                            {&Label25, "Almacen"},
                                                            {&Label6, "Cliente"},
                                                            {&Label1, "Entrada remota"},
                                                            {&Label9, "Fecha de retorno del material"},
                                                            {&Label7, "Hoja de distribución"},
                                                            {&Label17, "Artículo"},
                                                            {&Label18, "Cantidad"},
                                                            {&Label5, "Unidad"},
                                                            {&Label19, "Precio"},
                                                            {&Label4, "Presentacion: (F8)"},
                                                            {&Label11, "Dirección de embarque"},
                                                            {&Label3, "RENGLONES"},
                                                            {&Label2, "UNIDADES"},
                                                            {&Label8, "T O T  A L"}};
  for (auto [letrero, texto] : letreros) letrero->Caption(texto);
  SSCheck1.Caption("Traspaso al almacen");
  Check5.Caption("Traspaso entre sucursales");
  SSCheck2.Caption("Traspaso a estación de trabajo");
  Check1.Caption("Asignación a empleado");
  Command1.Caption("&Re enviar a sucursal");
}

void frmSalidasWizard::DisenaEstados() {
  for (int campo : {campo::EntradaRemota, campo::Unidades, campo::Renglones}) txtFields(campo).Enabled(false);
  SSCheck2.Visible(false);
  MultiCombo1(6).Visible(false);
  txtFields(campo::EstacionDestino).Visible(false);
  txtFields(campo::Compra).Visible(false);
  fg2.Rows(5000);
  fg2.Cols(static_cast<int>(std::size(kColumnasDeSalida)));
  fg2.FixedRows(1);
  fg2.FixedCols(0);
}

void frmSalidasWizard::Form_Load() {
  Trampa intenta{*this, "Form_Load"};
  EscribeEncabezados(intenta, kColumnasDeSalida);
  intenta([&] { Query = Funciones().NuevoQuery(); });
  intenta([&] { Query->Conexion(Ambiente->Conexion()); });
  intenta([&] { txtFields(campo::EntradaRemota).Enabled(false); });

  if (Modo != modo::kAlta) {
    LlenaDeLaSalida(intenta);
  } else {
    PonFechaDeTrabajo(intenta);
    intenta([&] { DTPicker2.Value(DTPicker1.Value()); });
    PonAlmacenDeCasa(intenta);
  }
  intenta([&] { fg2.Row(1); });
  intenta([&] { fg2.Col(0); });

  TerminaCarga(kRenglonesALaVista);
  std::string encabezado;
  CreaHTML(encabezado, "");
  Acumulado = true;
  Presenta("SALIDAS001");
}

void frmSalidasWizard::LlenaDeLaSalida(Trampa& intenta) {
  auto columna = [&](const char* nombre) { return rstSalida->Fields(nombre); };
  auto campo = [&](int indice, const char* nombre) {
    intenta([&] { txtFields(indice).Text(data::ToText(columna(nombre))); });
  };
  auto campo_de_texto = [&](int indice, const char* nombre) {
    intenta([&] { txtFields(indice).Text(Funciones().TextoDe(columna(nombre))); });
  };
  auto marca = [&](forms::CheckBox& caja, auto&& puesta) {
    if (intenta.Si(puesta)) {
      intenta([&] { caja.Value(1); });
    } else {
      intenta([&] { caja.Value(0); });
    }
  };
  auto marca_de = [&](forms::CheckBox& caja, const char* nombre) {
    marca(caja, [&] { return Funciones().ANumero(columna(nombre)) != 0; });
  };
  campo(campo::Concepto, "Tipo_doc");
  campo(campo::Almacen, "Almacen");
  campo(campo::Total, "Importe");
  campo(campo::Sucursal, "Sucursal");
  campo(campo::EntradaRemota, "EntSuc");
  // No else: the branch's field has just set or cleared the box.
  if (intenta.Si([&] { return Funciones().ANumero(columna("esparasucursal")) != 0; })) {
    intenta([&] { Check5.Value(1); });
  }
  CargaFecha(intenta, DTPicker1, rstSalida, "F_Emision");
  CargaFecha(intenta, DTPicker2, rstSalida, "fecharetorno");
  intenta([&] { RichTextBox3.Text(Funciones().TextoDe(columna("Datos"))); });
  intenta([&] { RichTextBox2.Text(Funciones().TextoDe(columna("Observ"))); });
  // Compared with 0 unconverted: a mark that was never written is off.
  marca(SSCheck1, [&] { return data::IsNonZero(columna("estraspaso")); });
  marca_de(SSCheck2, "traspasoaestacion");
  marca_de(Check1, "paraempleado");
  campo(campo::Empleado, "empleado");
  campo_de_texto(campo::EstacionDestino, "Estaciontraspaso");
  campo_de_texto(campo::Cliente, "cliente");
  campo(campo::DireccionDeEmbarque, "direccionembarque");
  campo(campo::AlmacenDestino, "almt");

  if (Modo == modo::kModificacion)
    TomaDocumento(intenta, "salidas", "salidas.salida = " + std::to_string(Salida));

  intenta([&] {
    AbreNuevo("SELECT * FROM salpart WHERE salida = (" + data::ToText(columna("Salida")) + ")", rstPartidas);
  });
  LlenaRenglones(intenta, kCeldas);
}

void frmSalidasWizard::Form_KeyDown(int& KeyCode, int /*Shift*/) {
  Trampa intenta{*this, "Form_KeyDown"};
  if (KeyCode == forms::kKeyF1) intenta([&] { Dispara("AYUDA"); });
  if (KeyCode == forms::kKeyF2) ColocaFoco(txtFields(campo::Articulo));
  switch (KeyCode) {
    case forms::kKeyF3:
      AlternaLector(intenta);
      break;
    case forms::kKeyF5:
      // One press is one finish: the field with the focus doesn't see this key again.
      KeyCode = 0;
      Command5_Click();
      break;
    case forms::kKeyF6:
      Command1_Click();
      break;
    case forms::kKeyF9:
      LlenaPartida();
      break;
    default:
      break;
  }
}

void frmSalidasWizard::Form_Unload(int& Cancel) {
  Trampa intenta{*this, "Form_Unload"};
  intenta([&] { Dispara("SALIDAS006"); });
  if (Cancelado()) {
    Cancel = 1;
    return;
  }
  if (Modo == modo::kModificacion) {
    intenta([&] {
      Ambiente->Conexion().Execute("UPDATE salidas SET ocupado = 0 WHERE salida = " +
                                   data::ToText(rstSalida->Fields("Salida")));
    });
  }
  Regresa(intenta);
}

void frmSalidasWizard::Form_Paint() {
  Trampa intenta{*this, "Form_Paint"};
  intenta([&] { Dispara("SALIDAS007"); });
}

void frmSalidasWizard::Form_Resize() {
  service::Ignora ignora;
  auto medida = [](int twips) {
    if (twips < 0) throw data::Error("La ventana es demasiado pequeña");
    return twips;
  };
  ignora([&] { Picture2.Height(medida(ScaleHeight() - Picture1.Height() - Picture3.Height() - 200)); });
  ignora([&] { fg2.Height(medida(Picture2.Height() - 300)); });
  ignora([&] { wb.Width(medida(ScaleWidth() - fg2.Width() - 150)); });
  ignora([&] { wb.Height(fg2.Height()); });
}

void frmSalidasWizard::Timer1_Timer() {
  Trampa intenta{*this, "Timer1_Timer"};
  intenta([&] { Unload(); });
}

void frmSalidasWizard::DTPicker2_KeyDown(int& KeyCode, int /*Shift*/) {
  if (KeyCode == forms::kKeyEnter) ColocaFoco(txtFields(campo::Articulo));
}

void frmSalidasWizard::CreaHTML(std::string& cString, const std::string& cHtml) {
  Trampa intenta{*this, "CreaHTML"};
  Html.clear();
  intenta([&] { Dispara("SALIDAS009"); });
  if (intenta.Si([&] { return Funciones().EstaVacio(cHtml); })) {
    cString = "<HTML><HEAD><TITLE>Html Tarvik</TITLE></HEAD><BODY>" + Html + "<B><CENTER><H2>" + cString +
              "</H2></CENTER></B></BODY></HTML>";
  } else {
    cString = cHtml;
  }
  std::string archivo;
  intenta([&] { archivo = Ambiente->RutaBase() + "\\" + GetPlatform().Now().date.DayFirst() + ".htm"; });
  bool existe = false;
  intenta([&] { Funciones().ExisteArchivo(archivo, existe); });
  if (existe) intenta([&] { Funciones().BorraArchivo(archivo); });
  intenta([&] { GetPlatform().AppendFile(archivo, cString + "\r\n"); });
  intenta([&] { wb.Navigate(archivo); });
}

}  // namespace tarvik
