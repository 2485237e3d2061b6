// Writing the goods-out header and one edited cell: the columns, their order and values, and the numbers
// that are taken.
#include "goods_out/columnas.h"
#include "tests/goods_out/support.h"

namespace tarvik::tests {
namespace {

class GuardadoDeSalida : public EscenarioDeSalidas {
 protected:
  frmSalidasWizard& Llena() {
    frmSalidasWizard& f = NuevaSalida();
    f.txtFields(campo::Concepto).Text("VTA");
    f.txtFields(campo::Almacen).Text("2");
    f.txtFields(campo::AlmacenDestino).Text("1");
    f.txtFields(campo::Sucursal).Text(" NTE ");
    f.txtFields(campo::Cliente).Text("C1");
    f.txtFields(campo::Empleado).Text("M7");
    f.txtFields(campo::DireccionDeEmbarque).Text(" Calle ");
    f.txtFields(campo::EstacionDestino).Text("E2 ");
    f.txtFields(campo::Total).Text("1,234.5");
    f.RichTextBox2.Text("O'Hara; ojo");
    f.DTPicker1.Value(data::Date{2024, 2, 29});
    f.DTPicker2.Value(data::Date{2024, 6, 1});
    Olvida();
    return f;
  }
};

TEST_F(GuardadoDeSalida, CreatingTheHeaderWritesItsColumnsInOrder) {
  frmSalidasWizard& f = Llena();
  f.SSCheck1.Value(1);
  f.Costo = 55;
  Olvida();
  f.CreaSalida();
  EXPECT_EQ(
      bitacora.sentencias,
      (Textos{"SELECT salida FROM salidas WHERE salida = 1",
              "INSERT INTO salidas (salida, sucursal, esparasucursal, ocupado, f_emision, tipo_doc, importe, "
              "costo, almacen, estado, observ, datos, usuario, usufecha, usuhora, estraspaso, "
              "direccionembarque, almt) VALUES (1, 'NTE', 1, 1, '2024-02-29', 'VTA', 1234.5, 0, 2, 'PE', "
              "'O''Hara; ojo', 'Venta', 'ANA', '2024-03-05', '14:03:22', 1, 'Calle', 1)",
              "SELECT * FROM salidas WHERE (((salida) = 1))"}));
  EXPECT_EQ(f.Salida, 1);
  EXPECT_EQ(f.Modo, "MODIFICACION");
  EXPECT_EQ(f.Caption(), "Salida: 1");
  EXPECT_EQ(data::ToText(f.rstSalida->Fields("estado")), "PE");
}

TEST_F(GuardadoDeSalida, AHeaderThatExistsIsUpdatedByTheSameProcedure) {
  frmSalidasWizard& f = Llena();
  f.CreaSalida();
  Olvida();
  f.CreaSalida();
  EXPECT_EQ(
      bitacora.sentencias,
      (Textos{"UPDATE salidas SET sucursal = 'NTE', esparasucursal = 1, ocupado = 1, f_emision = "
              "'2024-02-29', tipo_doc = 'VTA', importe = 1234.5, costo = 0, almacen = 2, estado = 'PE', "
              "observ = 'O''Hara; ojo', datos = 'Venta', usuario = 'ANA', usufecha = '2024-03-05', usuhora = "
              "'14:03:22', estraspaso = 0, direccionembarque = 'Calle', almt = 1 WHERE salida = 1",
              "SELECT * FROM salidas WHERE (((salida) = 1))"}));
}

TEST_F(GuardadoDeSalida, TheFirstLineSkipsNumbersThatAreTaken) {
  Sql("INSERT INTO salidas (salida) VALUES (1)");
  Sql("INSERT INTO salidas (salida) VALUES (2)");
  frmSalidasWizard& f = Llena();
  f.CreaSalida();
  EXPECT_EQ(f.Salida, 3);
  EXPECT_EQ(CuentaSentencias("SELECT salida FROM salidas WHERE salida = "), 3);
}

TEST_F(GuardadoDeSalida, SavingANewHeaderTakesItsNumberWithoutAsking) {
  frmSalidasWizard& f = Llena();
  f.SalvaSalida();
  EXPECT_EQ(
      bitacora.sentencias,
      (Textos{"INSERT INTO salidas (salida, sucursal, esparasucursal, folio, estacion, ocupado, tipo_doc, "
              "f_emision, importe, costo, almacen, estado, observ, datos, usuario, usufecha, usuhora, "
              "estraspaso, cliente, fecharetorno, traspasoaestacion, almt, paraempleado, empleado, "
              "direccionembarque) VALUES (1, 'NTE', 1, 1, 'E1', 1, 'VTA', '2024-02-29', 1234.5, 0, 2, 'CO', "
              "'O''Hara; ojo', 'Venta', 'ANA', '2024-03-05', '14:03:22', 0, 'C1', '2024-06-01', 0, 1, 0, "
              "'M7', 'Calle')"}));
  EXPECT_EQ(f.Modo, "ALTA");
}

TEST_F(GuardadoDeSalida, ANumberThatIsTakenIsNotAvoidedByTheSave) {
  Sql("INSERT INTO salidas (salida, tipo_doc) VALUES (1, 'VIE')");
  frmSalidasWizard& f = Llena();
  f.SalvaSalida();
  EXPECT_EQ(f.Salida, 1);
  EXPECT_EQ(Reportes().size(), 1u);
  EXPECT_EQ(Uno("SELECT tipo_doc FROM salidas"), "VIE");
}

TEST_F(GuardadoDeSalida, SavingWithTheMarksOfTransferAndStationAddsTheirColumns) {
  frmSalidasWizard& f = Llena();
  f.CreaSalida();
  f.SSCheck1.Value(1);
  f.SSCheck2.Value(1);
  f.Check1.Value(1);
  f.Check3.Value(1);
  f.Costo = 55;
  anfitrion->Ambiente().Pon("Usuario", "LUZ");
  reloj = {{2024, 3, 6}, {9, 5, 7}};
  Olvida();
  f.SalvaSalida();
  EXPECT_EQ(
      bitacora.sentencias,
      (Textos{
          "UPDATE salidas SET sucursal = 'NTE', esparasucursal = 1, folio = 1, estacion = 'E1', ocupado = "
          "1, tipo_doc = 'VTA', f_emision = '2024-02-29', importe = 1234.5, costo = 55, almacen = 2, "
          "estado = 'PE', observ = 'O''Hara; ojo', datos = 'Venta', usuario = 'LUZ', usufecha = "
          "'2024-03-06', usuhora = '09:05:07', estraspaso = 1, traspaso = 1, cliente = 'C1', fecharetorno "
          "= '2024-06-01', traspasoaestacion = 1, estaciontraspaso = 'E2 ', almt = 1, paraempleado = 1, "
          "empleado = 'M7', direccionembarque = 'Calle' WHERE salida = 1"}));
  EXPECT_EQ(f.Modo, "MODIFICACION");
}

TEST_F(GuardadoDeSalida, TheFolioIsOfTheStationAndDrawnAnewOnEverySave) {
  anfitrion->Ambiente().Pon("Estacion", " CAJA ");
  frmSalidasWizard& f = Llena();
  f.CreaSalida();
  f.SalvaSalida();
  f.SalvaSalida();
  EXPECT_EQ(Uno("SELECT folio FROM salidas"), "2");
  EXPECT_EQ(Uno("SELECT estacion FROM salidas"), " CAJA ");
  std::int32_t siguiente = 0;
  anfitrion->Funciones().NuevoId("CAJAsalida", anfitrion->Ambiente().Conexion(), siguiente);
  EXPECT_EQ(siguiente, 3);
  anfitrion->Ambiente().Pon("Estacion", "E9");
  f.SalvaSalida();
  EXPECT_EQ(Uno("SELECT folio FROM salidas"), "1");
}

TEST_F(GuardadoDeSalida, ADateThatIsNotThereIsStoredAsNone) {
  frmSalidasWizard& f = Llena();
  f.DTPicker2.Value(std::nullopt);
  f.SalvaSalida();
  EXPECT_EQ(Uno("SELECT fecharetorno FROM salidas"), "(nulo)");
}

TEST_F(GuardadoDeSalida, TheLinesAreReadAgainAndAnsweredFor) {
  frmSalidasWizard& f = Salida({{"A-100", "3"}});
  f.rstPartidas = {};
  bool hay = false;
  f.SalvaPartidas(hay);
  EXPECT_TRUE(hay);
  EXPECT_EQ(bitacora.sentencias, (Textos{"SELECT * FROM salpart WHERE (((salida)=1))"}));
  EXPECT_EQ(f.rstPartidas->CursorType(), 1);
  EXPECT_EQ(f.rstPartidas->LockType(), 3);
  Sql("DELETE FROM salpart");
  f.SalvaPartidas(hay);
  EXPECT_FALSE(hay);
}

TEST_F(GuardadoDeSalida, AnEditedCellIsWrittenByItsColumnAndTheFocusGoesToTheArticle) {
  frmSalidasWizard& f = Salida({{"A-100", "3"}, {"A-200", "1"}});
  f.fg2.TextMatrix(2, columna_salida::Cantidad, "1,250.5");
  f.fg2.TextMatrix(2, columna_salida::Precio, "nada");
  f.fg2.TextMatrix(2, columna_salida::Importe, "9");
  f.fg2.TextMatrix(2, columna_salida::Descripcion, " O'Hara");
  const std::pair<int, const char*> casos[] = {
      {1, "UPDATE salpart SET cantidad = 1250.5 WHERE id_salida = 2"},
      {3, "UPDATE salpart SET precio = 0 WHERE id_salida = 2"},
      {4, "UPDATE salpart SET impuesto = 9 WHERE id_salida = 2"},
      {5, "UPDATE salpart SET observ = ' O''Hara' WHERE id_salida = 2"}};
  for (const auto& [columna, sentencia] : casos) {
    f.fg2.MoveTo(2, columna);
    f.txtFields(campo::DireccionDeEmbarque).SetFocus();
    Olvida();
    f.SalvaCambios();
    EXPECT_EQ(bitacora.sentencias, (Textos{sentencia}));
    EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
  }
}

TEST_F(GuardadoDeSalida, ACellOfAnotherColumnRunsTheBuilderWithNoField) {
  frmSalidasWizard& f = Salida({{"A-100", "3"}});
  for (int columna : {0, 2, 6, 7, 8, 9, 10}) {
    f.fg2.MoveTo(1, columna);
    f.txtFields(campo::DireccionDeEmbarque).SetFocus();
    Olvida();
    bitacora.FallaServicio("Ejecuta", 1, "falla provocada");
    f.SalvaCambios();
    EXPECT_EQ(Reportes(), (Textos{Reporte("SalvaCambios")})) << columna;  // it was run
    EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
    Olvida();
    f.SalvaCambios();
    EXPECT_TRUE(bitacora.sentencias.empty()) << columna;
  }
}

}  // namespace
}  // namespace tarvik::tests
