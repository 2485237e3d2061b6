// The goods-out screen: its controls as designed, loading in the three modes, closing, the sheet.
#include <iterator>
#include <utility>
#include <vector>

#include "data/text.h"
#include "forms/keys.h"
#include "goods_out/frm_salidas_wizard.h"

namespace tarvik {

using service::Trampa;

namespace {

constexpr Celda kCeldas[] = {{0, "articulo", Celda::Valor},   {1, "cantidad", Celda::Valor},
                             {3, "Precio", Celda::Valor},     {5, "Observ", Celda::TrasBlanco},
                             {6, "id_salida", Celda::Texto},  {7, "PrDescrip", Celda::Texto},
                             {8, "PrCantidad", Celda::Texto}, {10, "claveadd", Celda::Valor}};

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
    .columna_id = 6,
    .malla = {.origen = "SalidasInventario",
              .procedimiento = "TKCreaSalidaTYC",
              .operacion = "EN",
              .celdas = kCeldas},
};

constexpr int kRenglonesALaVista = 7;

constexpr Columna kColumnas[] = {{"Artículo", 0},
                                 {"QTY", 800},
                                 {"Existencia", 900},
                                 {"Precio", 900},
                                 {"Importe", 0},
                                 {"Descripción", 4000},
                                 {"No de salida", 0},
                                 {"Presentación", 1000},
                                 {"Pr. QTY", 1000},
                                 {"", 0},
                                 {"", 0}};

}  // namespace

frmSalidasWizard::frmSalidasWizard(service::Host& host)
    : DocumentWizard(host, kSalidas, {0, 1, 2, 3, 4, 5, 6, 7, 8},
                     {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 24, 25, 26, 27, 28, 29}),
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
  Disena();
  DTPicker2.Value(DTPicker1.Value());
  SSCheck1.OnClick = [this] { SSCheck1_Click(); };
  SSCheck2.OnClick = [this] { SSCheck2_Click(); };
  Check1.OnClick = [this] { Check1_Click(); };
  Command1.OnClick = [this] { Command1_Click(); };
  Combo1.OnClick = [this] { Combo1_Click(); };
  Combo1.OnChange = [this] { Combo1_Click(); };
  DTPicker2.OnKeyDown = [this](int& tecla, int shift) { DTPicker2_KeyDown(tecla, shift); };
}

void frmSalidasWizard::Disena() {
  forms::Control* const orden[] = {&txtFields(0),  &RichTextBox3,  &DTPicker1,
                                   &txtFields(14), &SSCheck1,      &txtFields(2),
                                   &Check5,        &txtFields(3),  &SSCheck2,
                                   &txtFields(9),  &txtFields(13), &txtFields(15),
                                   &txtFields(7),  &DTPicker2,     &txtFields(12),
                                   &RichTextBox1,  &Check1,        &txtFields(16),
                                   &fg2,           &txtEdit,       &wb,
                                   &txtFields(4),  &txtFields(24), &txtFields(1),
                                   &txtFields(5),  &txtFields(27), &txtFields(6),
                                   &txtFields(25), &txtFields(26), &txtFields(28),
                                   &txtFields(29), &RichTextBox2,  &Combo1,
                                   &txtFields(17), &txtFields(10), &txtFields(8),
                                   &txtFields(11), &Check3,        &Check2,
                                   &Check4,        &Command5,      &Command2,
                                   &Command1,      &Command6};
  int tab = 0;
  for (forms::Control* control : orden) control->TabIndex(tab++);

  const std::pair<const char*, std::vector<int>> tipos[] = {
      {"U", {0, 3, 9, 13, 15, 16}}, {"SN", {14, 2}}, {"SD", {1, 5}}, {"N", {6}}};
  for (const auto& [tag, campos] : tipos) {
    for (int campo : campos) txtFields(campo).Tag(tag);
  }

  struct {
    int caja, campo;
    const char* busca;
  } const cajas[] = {{0, 0, "Conceptos de salidas de inventario"},
                     {1, 14, "Almacenes"},
                     {3, 2, "Almacenes"},
                     {4, 3, "sucursales"},
                     {6, 9, "Estaciones"},
                     {7, 13, "Clientes"},
                     {8, 16, "Empleados"},
                     {2, 4, "Articulos"},
                     {5, 24, "Claves adicionales de articulos"}};
  for (const auto& [caja, campo, busca] : cajas) {
    MultiCombo1(caja).buscar(busca);
    MultiCombo1(caja).Hold(txtFields(campo));
  }

  // The three panels: header, lines, entry and totals. A field in a search box stands in its panel by it.
  const std::pair<forms::PictureBox*, std::vector<forms::Control*>> paneles[] = {
      {&Picture1,
       {&RichTextBox3, &DTPicker1, &SSCheck1, &Check5, &SSCheck2, &txtFields(15), &txtFields(7), &DTPicker2,
        &txtFields(12), &RichTextBox1, &MultiCombo1(0), &MultiCombo1(1), &MultiCombo1(3), &MultiCombo1(4),
        &MultiCombo1(6), &MultiCombo1(7)}},
      {&Picture2, {&Check1, &fg2, &txtEdit, &wb, &MultiCombo1(8)}},
      {&Picture3,
       {&txtFields(1),  &txtFields(5),  &txtFields(27), &txtFields(6),   &txtFields(25), &txtFields(26),
        &txtFields(28), &txtFields(29), &RichTextBox2,  &Combo1,         &txtFields(17), &txtFields(10),
        &txtFields(8),  &txtFields(11), &Check3,        &Check2,         &Check4,        &Command5,
        &Command2,      &Command1,      &Command6,      &MultiCombo1(2), &MultiCombo1(5)}}};
  for (const auto& [panel, controles] : paneles) {
    for (forms::Control* control : controles) control->Container(panel);
  }

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

  for (int campo : {7, 8, 10}) txtFields(campo).Enabled(false);
  SSCheck2.Visible(false);
  MultiCombo1(6).Visible(false);
  txtFields(9).Visible(false);
  txtFields(12).Visible(false);
  fg2.Rows(5000);
  fg2.Cols(static_cast<int>(std::size(kColumnas)));
  fg2.FixedRows(1);
  fg2.FixedCols(0);
}

void frmSalidasWizard::Form_Load() {
  Trampa intenta{*this, "Form_Load"};
  EscribeEncabezados(intenta, kColumnas);
  intenta([&] { Query = Funciones().NuevoQuery(); });
  intenta([&] { Query->Conexion(Ambiente->Conexion()); });
  intenta([&] { txtFields(7).Enabled(false); });

  if (Modo != "ALTA") {
    LlenaDeLaSalida(intenta);
  } else {
    PonFechaDeTrabajo(intenta);
    intenta([&] { DTPicker2.Value(DTPicker1.Value()); });
    PonAlmacenDeCasa(intenta);
  }
  intenta([&] { fg2.Row(1); });
  intenta([&] { fg2.Col(0); });

  TerminaCarga({&fg2, &Command1, &Command2}, kRenglonesALaVista);
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
  campo(0, "Tipo_doc");
  campo(14, "Almacen");
  campo(11, "Importe");
  campo(3, "Sucursal");
  campo(7, "EntSuc");
  // No else: the branch's field has just set or cleared the box.
  if (intenta.Si([&] { return Funciones().ANumero(columna("esparasucursal")) != 0; })) {
    intenta([&] { Check5.Value(1); });
  }
  CargaFecha(intenta, DTPicker1, rstSalida, "F_Emision");
  CargaFecha(intenta, DTPicker2, rstSalida, "fecharetorno");
  intenta([&] { RichTextBox3.Text(Funciones().TextoDe(columna("Datos"))); });
  intenta([&] { RichTextBox2.Text(Funciones().TextoDe(columna("Observ"))); });
  // Compared with 0 as it stands: a mark that was never written is off.
  marca(SSCheck1, [&] { return data::IsNonZero(columna("estraspaso")); });
  marca_de(SSCheck2, "traspasoaestacion");
  marca_de(Check1, "paraempleado");
  campo(16, "empleado");
  campo_de_texto(9, "Estaciontraspaso");
  campo_de_texto(13, "cliente");
  campo(17, "direccionembarque");
  campo(2, "almt");

  if (Modo == "MODIFICACION") TomaDocumento(intenta, "salidas", "salidas.salida = " + std::to_string(Salida));

  intenta([&] {
    AbreNuevo("SELECT * FROM salpart WHERE salida = (" + data::ToText(columna("Salida")) + ")", rstPartidas);
  });
  LlenaRenglones(intenta, kCeldas);
}

void frmSalidasWizard::Form_KeyDown(int& KeyCode, int /*Shift*/) {
  Trampa intenta{*this, "Form_KeyDown"};
  if (KeyCode == forms::kKeyF1) intenta([&] { Dispara("AYUDA"); });
  if (KeyCode == forms::kKeyF2) ColocaFoco(txtFields(4));
  switch (KeyCode) {
    case forms::kKeyF3:
      AlternaLector(intenta);
      break;
    case forms::kKeyF5:
      // One press is one finish: the field in hand doesn't see this key again.
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
  if (Modo == "MODIFICACION") {
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
  if (KeyCode == forms::kKeyEnter) ColocaFoco(txtFields(4));
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
