// The goods-in screen: its controls as designed, loading in the three modes, closing.
#include "goods_in/frm_entradas_wizard.h"

#include "forms/keys.h"
#include "goods_in/columnas.h"

namespace tarvik {

using service::Trampa;

namespace {

constexpr Celda kCeldas[] = {{columna_entrada::Articulo, "articulo", Celda::Valor},
                             {columna_entrada::Cantidad, "cantidad", Celda::Valor},
                             {columna_entrada::Precio, "Precio", Celda::Valor},
                             {columna_entrada::Descripcion, "Observ", Celda::TrasBlanco},
                             {columna_entrada::IdEntrada, "id_entrada", Celda::Texto},
                             {columna_entrada::Presentacion, "PrDescrip", Celda::Texto},
                             {columna_entrada::Presentaciones, "PrCantidad", Celda::Texto}};
constexpr std::string_view kSiempre[] = {"fg2", "Command2", "Command5"};

constexpr Particular kEntradas{
    .nombre = "frmEntradasWizard",
    .titulo = "Asistente para entradas al inventario.",
    .modulo = "frmEntradasWi",
    .ent_sal = "E",
    .recorta_concepto = false,
    .fin_de_valida_fecha = "' And cerrado <> 0 ",
    .busca_concepto = "Conceptos de entrada al inventario",
    .antes_de_buscar = "ENTRADA012",
    .campo_de_formato = "Entradas",
    .borra_renglon = "DELETE FROM entpart WHERE id_entrada = ",
    .columna_id = columna_entrada::IdEntrada,
    .siempre = kSiempre,
    .malla = {.origen = "EntradasInventario",
              .procedimiento = "TKCreaEntradaTYC",
              .operacion = "SA",
              .celdas = kCeldas},
};

constexpr int kRenglonesALaVista = 10;
constexpr int kDemoraDeCierre = 10;  // milliseconds

}  // namespace

frmEntradasWizard::frmEntradasWizard(service::Host& host)
    : DocumentWizard(host, kEntradas, {0, 1, 2, 3}, CamposCon(&CampoDeDocumento::en_entradas)),
      Command3(*this, "Command3"),
      Timer1(*this, "Timer1"),
      Label4(*this, "Label4"),
      Label5(*this, "Label5"),
      Label6(*this, "Label6"),
      Label8(*this, "Label8"),
      Label12(*this, "Label12"),
      Label17(*this, "Label17"),
      Label18(*this, "Label18"),
      Label19(*this, "Label19"),
      Label23(*this, "Label23"),
      Label25(*this, "Label25") {
  DisenaTeclado();
  DisenaCampos();
  DisenaLetreros();
  Command3.Visible(false);
  Command5.Enabled(false);
  fg2.Rows(5000);
  fg2.Cols(10);
  fg2.FixedRows(1);
  fg2.FixedCols(0);
  Command3.OnClick = [this] { Command3_Click(); };
  Timer1.OnTimer = [this] { Timer1_Timer(); };
  RichTextBox1.OnKeyDown = [this](int& tecla, int shift) { RichTextBox1_KeyDown(tecla, shift); };
}

void frmEntradasWizard::DisenaTeclado() {
  const std::pair<int, int> orden[] = {{campo::Concepto, 0},
                                       {campo::Almacen, 1},
                                       {campo::Articulo, 3},
                                       {campo::Cantidad, 4},
                                       {campo::Unidad, 5},
                                       {campo::Precio, 6},
                                       {campo::ImporteDelRenglon, 7},
                                       {campo::SegundaClave, 8},
                                       {campo::Dato1, 9},
                                       {campo::Dato2, 10},
                                       {campo::Presentaciones, 11},
                                       {campo::UnidadDePresentacion, 12},
                                       {campo::Descripcion, 20},
                                       {campo::Total, 43}};
  for (auto [indice, tab] : orden) txtFields(indice).TabIndex(tab);
  const std::pair<forms::Control*, int> demas[] = {
      {&Command3, 2},  {&DTPicker1, 16}, {&RichTextBox3, 17}, {&Check2, 21},       {&Check3, 22},
      {&txtEdit, 23},  {&Command6, 24},  {&fg2, 26},          {&RichTextBox2, 28}, {&RichTextBox1, 38},
      {&Command1, 39}, {&Check4, 40},    {&Command5, 41},     {&Command2, 42}};
  for (auto [control, tab] : demas) control->TabIndex(tab);
}

void frmEntradasWizard::DisenaCampos() {
  const std::pair<int, const char*> tipos[] = {{campo::Concepto, "U"},
                                               {campo::Almacen, "SN"},
                                               {campo::Descripcion, "SD"},
                                               {campo::Cantidad, "SD"},
                                               {campo::Precio, "N"}};
  for (auto [indice, tag] : tipos) txtFields(indice).Tag(tag);

  struct {
    int caja, campo;
    const char* busca;
  } const cajas[] = {{0, campo::Concepto, "Conceptos de entrada al inventario"},
                     {1, campo::Almacen, "Almacenes"},
                     {2, campo::Articulo, "Articulos"},
                     {3, campo::SegundaClave, "Claves adicionales de articulos"}};
  for (const auto& [caja, campo, busca] : cajas) {
    MultiCombo1(caja).buscar(busca);
    MultiCombo1(caja).Hold(txtFields(campo));
  }
}

void frmEntradasWizard::DisenaLetreros() {
  Label12.Caption("Concepto de la Entrada:");
  Label25.Caption("Almacen");
  Label17.Caption("Artículo");
  Label18.Caption("Cantidad");
  Label5.Caption("Unidad");
  Label19.Caption("Precio");
  Label6.Caption("Importe");
  Label4.Caption("Presentacion: (F8)");
  Label23.Caption("Fecha del documento");
  Label8.Caption("T O T  A L");
  Command1.Caption("&Modelos");
}

void frmEntradasWizard::Form_Load() {
  Trampa intenta{*this, "Form_Load"};
  EscribeEncabezados(intenta, kColumnasDeEntrada);
  intenta([&] { Query = Funciones().NuevoQuery(); });
  intenta([&] { Query->Conexion(Ambiente->Conexion()); });
  if (Modo != modo::kAlta) {
    LlenaDeLaEntrada(intenta);
  } else {
    PonFechaDeTrabajo(intenta);
    PonAlmacenDeCasa(intenta);
  }
  intenta([&] { fg2.Row(1); });
  intenta([&] { fg2.Col(0); });
  TerminaCarga(kRenglonesALaVista);
  Presenta("ENTRADA001");
}

void frmEntradasWizard::LlenaDeLaEntrada(Trampa& intenta) {
  auto columna = [&](const char* nombre) { return rstEntrada->Fields(nombre); };
  intenta([&] { txtFields(campo::Concepto).Text(data::ToText(columna("Tipo_doc"))); });
  intenta([&] { txtFields(campo::Almacen).Text(data::ToText(columna("Almacen"))); });
  intenta([&] { txtFields(campo::Total).Text(Funciones().TextoDe(columna("Importe"))); });
  CargaFecha(intenta, DTPicker1, rstEntrada, "F_Emision");
  intenta([&] { RichTextBox3.Text(Funciones().TextoDe(columna("Datos"))); });
  intenta([&] { RichTextBox2.Text(Funciones().TextoDe(columna("Observ"))); });
  if (Modo == modo::kModificacion)
    TomaDocumento(intenta, "entradas", "entradas.entrada = " + std::to_string(Entrada));
  intenta([&] {
    AbreNuevo("SELECT * FROM entpart WHERE entrada = (" + data::ToText(columna("Entrada")) + ")",
              rstPartidas);
  });
  LlenaRenglones(intenta, kCeldas);
}

void frmEntradasWizard::Form_KeyDown(int& KeyCode, int /*Shift*/) {
  Trampa intenta{*this, "Form_KeyDown"};
  if (KeyCode == forms::kKeyF9) LlenaPartida();
  if (KeyCode == forms::kKeyF3) AlternaLector(intenta);
}

// The close box may not unload the screen from inside its own message: a tick of the timer does.
void frmEntradasWizard::Form_QueryUnload(int& Cancel, forms::UnloadMode UnloadMode) {
  Trampa intenta{*this, "Form_QueryUnload"};
  if (UnloadMode != forms::UnloadMode::CloseBox) return;
  Cancel = 1;
  intenta([&] { Timer1.Interval(kDemoraDeCierre); });
  intenta([&] { Timer1.Enabled(true); });
}

void frmEntradasWizard::Timer1_Timer() {
  Trampa intenta{*this, "Timer1_Timer"};
  // One try for each click of the close box: a routine that refuses is not asked again before the next.
  intenta([&] { Timer1.Enabled(false); });
  intenta([&] { Unload(); });
}

void frmEntradasWizard::Form_Unload(int& Cancel) {
  Trampa intenta{*this, "Form_Unload"};
  intenta([&] { Dispara("ENTRADA006"); });
  if (Cancelado()) {
    Cancel = 1;
    return;
  }
  if (Modo == modo::kModificacion) {
    intenta([&] {
      Ambiente->Conexion().Execute("UPDATE entradas SET ocupado = 0 WHERE entrada = " +
                                   std::to_string(Entrada));
    });
  }
  Regresa(intenta);
}

void frmEntradasWizard::Command3_Click() { Dispara("ENTRADAS011"); }

void frmEntradasWizard::Check1_Click() { CalculaImportes(); }

}  // namespace tarvik
