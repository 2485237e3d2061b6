// Writing the header and one edited cell: the columns, their order and values, and the numbers that
// are taken. When they are written is told in lines_test.cpp and finish_test.cpp.
#include "goods_in/columnas.h"
#include "tests/support/escenario.h"

namespace tarvik::tests {
namespace {

using Textos = std::vector<std::string>;

class Guardado : public Escenario {
 protected:
  Guardado() {
    Catalogo();
    anfitrion->Ambiente().Pon("Moneda", "MXN");
  }
  frmEntradasWizard& Llena() {
    frmEntradasWizard& f = Nueva();
    Teclea(f, f.txtFields(campo::Concepto), "COM");
    f.txtFields(campo::Almacen).Text("2");
    f.RichTextBox2.Text("O'Hara; ojo");
    f.txtFields(campo::Total).Text("1,234.5");
    f.DTPicker1.Value(data::Date{2024, 2, 29});
    Olvida();
    return f;
  }
};

TEST_F(Guardado, CreatingTheHeaderWritesItsColumnsInOrder) {
  frmEntradasWizard& f = Llena();
  f.CreaEntrada();
  EXPECT_EQ(
      bitacora.sentencias,
      (Textos{"INSERT INTO entradas (entrada, ocupado, f_emision, tipo_doc, importe, costo, almacen, estado, "
              "observ, tipo_cam, moneda, datos, usuario, usufecha, usuhora) VALUES (1, 1, '2024-02-29', "
              "'COM', 1234.5, 0, '2', 'PE', 'O''Hara; ojo', 1, 'MXN', 'Compra a proveedor', 'ANA', "
              "'2024-03-05', '14:03:22')",
              "SELECT * FROM entradas WHERE entrada = 1"}));
  EXPECT_EQ(f.Entrada, 1);
  EXPECT_EQ(f.Modo, "MODIFICACION");
  EXPECT_EQ(f.Caption(), "Entrada: 1");
  EXPECT_EQ(data::ToText(f.rstEntrada->Fields("estado")), "PE");
  EXPECT_TRUE(Reportes().empty());
}

TEST_F(Guardado, TheCostOfANewHeaderIsZeroWhateverTheScreenHolds) {
  frmEntradasWizard& f = Llena();
  f.Costo = 55;
  f.CreaEntrada();
  EXPECT_EQ(Uno("SELECT costo FROM entradas"), "0");
}

TEST_F(Guardado, AHeaderThatExistsIsUpdatedByTheSameProcedure) {
  frmEntradasWizard& f = Llena();
  f.CreaEntrada();
  f.Query->Limpia();
  f.RichTextBox2.Text("otra");
  Olvida();
  f.CreaEntrada();
  ASSERT_EQ(bitacora.sentencias.size(), 2u);
  EXPECT_EQ(
      bitacora.sentencias[0],
      "UPDATE entradas SET ocupado = 1, f_emision = '2024-02-29', tipo_doc = 'COM', importe = 1234.5, "
      "costo = "
      "0, almacen = '2', estado = 'PE', observ = 'otra', tipo_cam = 1, moneda = 'MXN', datos = 'Compra a "
      "proveedor', usuario = 'ANA', usufecha = '2024-03-05', usuhora = '14:03:22' WHERE entrada = 1");
  EXPECT_EQ(f.Entrada, 1);
}

TEST_F(Guardado, SavingANewHeaderLeadsWithItsConceptAndFreesTheDocument) {
  frmEntradasWizard& f = Llena();
  f.Costo = 55;
  f.SalvaEntrada("PE");
  EXPECT_EQ(
      bitacora.sentencias,
      (Textos{"SELECT entrada FROM entradas WHERE entrada = 1",
              "INSERT INTO entradas (entrada, tipo_doc, ocupado, f_emision, importe, costo, almacen, estado, "
              "observ, datos, usuario, usufecha, usuhora) VALUES (1, 'COM', 0, '2024-02-29', 1234.5, 55, 2, "
              "'PE', 'O''Hara; ojo', 'Compra a proveedor', 'ANA', '2024-03-05', '14:03:22')"}));
  EXPECT_EQ(f.Modo, "MODIFICACION");
  EXPECT_EQ(f.Entrada, 1);
}

TEST_F(Guardado, SavingAnExistingHeaderLeavesRateAndCurrencyAlone) {
  frmEntradasWizard& f = Llena();
  f.CreaEntrada();
  anfitrion->Ambiente().Pon("Moneda", "USD");
  anfitrion->Ambiente().Pon("Usuario", "LUZ");
  reloj = {{2024, 3, 6}, {9, 5, 7}};
  Olvida();
  f.SalvaEntrada("CO");
  EXPECT_EQ(
      bitacora.sentencias,
      (Textos{
          "UPDATE entradas SET tipo_doc = 'COM', ocupado = 0, f_emision = '2024-02-29', importe = 1234.5, "
          "costo = 0, almacen = 2, estado = 'CO', observ = 'O''Hara; ojo', datos = 'Compra a proveedor', "
          "usuario = 'LUZ', usufecha = '2024-03-06', usuhora = '09:05:07' WHERE entrada = 1"}));
  EXPECT_EQ(Uno("SELECT moneda FROM entradas"), "MXN");
  EXPECT_EQ(Uno("SELECT tipo_cam FROM entradas"), "1");
}

TEST_F(Guardado, AFinishSkipsNumbersThatAreTaken) {
  Sql("INSERT INTO entradas (entrada) VALUES (1)");
  Sql("INSERT INTO entradas (entrada) VALUES (2)");
  frmEntradasWizard& f = Llena();
  f.SalvaEntrada("PE");
  EXPECT_EQ(f.Entrada, 3);
  EXPECT_EQ(CuentaSentencias("SELECT entrada FROM entradas WHERE entrada = "), 3);
  EXPECT_EQ(Uno("SELECT tipo_doc FROM entradas WHERE entrada = 3"), "COM");
}

TEST_F(Guardado, TheFirstLineTakesItsNumberWithoutAsking) {
  Sql("INSERT INTO entradas (entrada, tipo_doc) VALUES (1, 'VIE')");
  frmEntradasWizard& f = Llena();
  f.CreaEntrada();
  EXPECT_EQ(f.Entrada, 1);
  EXPECT_EQ(CuentaSentencias("SELECT entrada FROM entradas"), 0);
  EXPECT_EQ(Reportes().size(), 1u);
  EXPECT_EQ(Uno("SELECT tipo_doc FROM entradas"), "VIE");
}

TEST_F(Guardado, AWarehouseThatIsNoNumberIsZero) {
  frmEntradasWizard& f = Llena();
  f.txtFields(campo::Almacen).Text("");
  f.SalvaEntrada("PE");
  EXPECT_EQ(Uno("SELECT almacen FROM entradas"), "0");
}

TEST_F(Guardado, TheLinesAreReadAgainAndAnsweredFor) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "3"}});
  f.rstPartidas = {};
  Olvida();
  EXPECT_TRUE(f.SalvaPartidas());
  EXPECT_EQ(bitacora.sentencias, (Textos{"SELECT * FROM entpart WHERE (((entrada)=1))"}));
  EXPECT_EQ(f.rstPartidas->CursorType(), 1);
  EXPECT_EQ(f.rstPartidas->LockType(), 3);
  EXPECT_EQ(data::ToText(f.rstPartidas->Fields("articulo")), "A-100");
  Sql("DELETE FROM entpart");
  EXPECT_FALSE(f.SalvaPartidas());
  EXPECT_TRUE(f.rstPartidas->Eof());
}

TEST_F(Guardado, AnEditedCellIsWrittenByItsColumn) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "3"}, {"A-200", "1"}});
  f.fg2.MoveTo(2, columna_entrada::Cantidad);
  f.fg2.TextMatrix(2, columna_entrada::Cantidad, "1,250.5");
  f.fg2.TextMatrix(2, columna_entrada::Precio, "nada");
  f.fg2.TextMatrix(2, columna_entrada::Presentacion, "O'Hara");
  const std::pair<int, const char*> casos[] = {
      {1, "UPDATE entpart SET cantidad = 1250.5 WHERE id_entrada = 2"},
      {2, "UPDATE entpart SET precio = 0 WHERE id_entrada = 2"},
      {5, "UPDATE entpart SET impuesto = 2 WHERE id_entrada = 2"},
      {6, "UPDATE entpart SET observ = 'O''Hara' WHERE id_entrada = 2"}};
  for (const auto& [columna, sentencia] : casos) {
    f.fg2.Col(columna);
    Olvida();
    f.SalvaCambios();
    EXPECT_EQ(bitacora.sentencias, (Textos{sentencia}));
  }
  EXPECT_EQ(Uno("SELECT impuesto FROM entpart WHERE id_entrada = 2"), "2");
}

TEST_F(Guardado, ACellOfAnotherColumnRunsTheBuilderWithNoField) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "3"}});
  for (int columna : {0, 3, 4, 7, 8, 9}) {
    f.fg2.MoveTo(1, columna);
    Olvida();
    bitacora.FallaServicio("Ejecuta", 1, "falla provocada");
    f.SalvaCambios();
    EXPECT_EQ(Reportes(), (Textos{Reporte("SalvaCambios")})) << columna;  // it was run
    f.SalvaCambios();
    EXPECT_TRUE(bitacora.sentencias.empty()) << columna;
  }
}

TEST_F(Guardado, NumbersOfTwoScreensNeverMeet) {
  frmEntradasWizard& f = Llena();
  frmEntradasWizard& g = Llena();
  f.CreaEntrada();
  g.CreaEntrada();
  EXPECT_EQ(f.Entrada, 1);
  EXPECT_EQ(g.Entrada, 2);
}

// Its box gives a text, and an empty one is no warehouse: neither number 0 nor one that exists.
TEST_F(Guardado, WithoutAWarehouseItComesBackEmptyAndItsFinishSays240) {
  frmEntradasWizard& f = Nueva();
  Teclea(f, f.txtFields(campo::Concepto), "COM");
  f.txtFields(campo::Almacen).Text("");
  Renglon(f, "A-100", "3");
  EXPECT_TRUE(Reportes().empty()) << Reportes().front();
  EXPECT_EQ(Uno("SELECT COALESCE(CAST(almacen AS VARCHAR(9)), '') FROM entradas"), "");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "1");
  f.Unload();

  frmEntradasWizard& again = Modifica(1);
  EXPECT_EQ(again.txtFields(campo::Almacen).Text(), "");
  bitacora.mensajes.clear();
  bitacora.respuestas = {true};
  Tecla(again, "F5");
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::SinAlmacen});
  EXPECT_EQ(Uno("SELECT estado FROM entradas"), "PE");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv"), "0");
  EXPECT_TRUE(anfitrion->Revisa().empty());
}

// What is no number can't be one of a server's: the step says so, and no line goes without its header. A file
// keeps it as it was written.
TEST_F(Guardado, AWarehouseThatIsNoNumberIsTheEnginesAffair) {
  frmEntradasWizard& f = Nueva();
  Teclea(f, f.txtFields(campo::Concepto), "COM");
  f.txtFields(campo::Almacen).Text("X1");
  Renglon(f, "A-100", "3");
  const bool stored = Uno("SELECT COUNT(*) FROM entradas") == "1";
  EXPECT_EQ(stored, anfitrion->Conexion().Kind() == data::Dialect::Sqlite);
  EXPECT_EQ(Reportes().empty(), stored);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), stored ? "1" : "0");
  if (!stored) return;
  f.Unload();
  EXPECT_EQ(Modifica(1).txtFields(campo::Almacen).Text(), "X1");
  EXPECT_TRUE(anfitrion->Revisa().empty());
}

}  // namespace
}  // namespace tarvik::tests
