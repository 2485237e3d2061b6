// Equal lines in a row add up on goods-out: what counts as equal, which line is compared, and what becomes
// of price and totals.
#include "goods_out/columnas.h"
#include "tests/goods_out/support.h"

namespace tarvik::tests {
namespace {

class LineasQueSeSuman : public EscenarioDeSalidas {
 protected:
  std::string Cuantas() { return Uno("SELECT COUNT(*) FROM salpart"); }
};

TEST_F(LineasQueSeSuman, TheSameArticleAgainAddsToTheLineAndItsFirstPriceStands) {
  frmSalidasWizard& f = Salida({{"A-100", "3"}});
  Fila(f, "A-100", "2.5");
  f.txtFields(campo::Precio).Text("7");
  Olvida();
  f.LlenaPartida();
  EXPECT_EQ(Cuantas(), "1");
  EXPECT_EQ(Uno("SELECT cantidad FROM salpart"), "5.5");
  EXPECT_EQ(Uno("SELECT precio FROM salpart"), "116");
  EXPECT_EQ(Celda(f, 1, columna_salida::Cantidad), "5.5");
  EXPECT_EQ(Celda(f, 1, columna_salida::Existencia), "4.5");
  EXPECT_EQ(Celda(f, 2, columna_salida::Articulo), "");
  EXPECT_EQ(f.txtFields(campo::Total).Text(), "638");
  EXPECT_EQ(f.txtFields(campo::Unidades).Text(), "5.5");
  EXPECT_EQ(f.txtFields(campo::Renglones).Text(), "1");
  const Textos ultimas(bitacora.sentencias.end() - 2, bitacora.sentencias.end());
  EXPECT_EQ(ultimas, (Textos{"SELECT * FROM salpart WHERE (((salida)=1)) AND id_salida = 1",
                             "UPDATE salpart SET cantidad = cantidad + 2.5 WHERE id_salida = 1"}));
  EXPECT_EQ(CuentaClaves("SALIDAS008"), 1);
  for (int campo : {4, 5, 6}) EXPECT_EQ(f.txtFields(campo).Text(), "");
}

TEST_F(LineasQueSeSuman, TheGridShowsTheSumInThePatternOfQuantities) {
  anfitrion->Ambiente().Pon("FormatoCantidad", "###,##0.00");
  frmSalidasWizard& f = Salida({{"A-100", "1500"}, {"A-100", "3"}});
  EXPECT_EQ(Celda(f, 1, columna_salida::Cantidad), "1,503.00");
  EXPECT_EQ(f.txtFields(campo::Unidades).Text(), "1,503");
}

TEST_F(LineasQueSeSuman, TheSumStartsFromTheStoredQuantityNotFromTheGrid) {
  frmSalidasWizard& f = Salida({{"A-100", "3"}});
  Sql("UPDATE salpart SET cantidad = 20");
  Linea(f, "A-100", "2");
  EXPECT_EQ(Celda(f, 1, columna_salida::Cantidad), "22");
  EXPECT_EQ(Uno("SELECT cantidad FROM salpart"), "22");
}

TEST_F(LineasQueSeSuman, OnlyTheLastLineIsCompared) {
  frmSalidasWizard& f = Salida({{"A-100", "1"}, {"A-200", "1"}, {"A-100", "1"}});
  EXPECT_EQ(Cuantas(), "3");
  f.fg2.Row(1);
  Linea(f, "A-100", "5");  // whatever row is current
  EXPECT_EQ(Cuantas(), "3");
  EXPECT_EQ(Celda(f, 3, columna_salida::Cantidad), "6");
  EXPECT_EQ(Celda(f, 1, columna_salida::Cantidad), "1");
}

TEST_F(LineasQueSeSuman, AnotherSecondKeyIsAnotherLineAndTheSameOneAddsUp) {
  frmSalidasWizard& f = Salida({{"A-100", "1"}});
  for (const char* clave : {"7501", "7501", "7502", ""}) {
    if (*clave) {
      f.txtFields(campo::SegundaClave).Text(clave);
    } else {
      Fila(f, "A-100", "1");
    }
    f.LlenaPartida();
  }
  EXPECT_EQ(Cuantas(), "4");
  EXPECT_EQ(Celda(f, 2, columna_salida::Cantidad), "24");
  EXPECT_EQ(Uno("SELECT prcantidad FROM salpart WHERE claveadd = '7501'"), "1");  // the count is not added
}

TEST_F(LineasQueSeSuman, BlanksAroundArticleAndKeyDoNotTellLinesApart) {
  frmSalidasWizard& f = Salida({{"A-100", "1"}});
  Sql("UPDATE salpart SET articulo = ' A-100 ', claveadd = '  '");
  Linea(f, "A-100", "4");
  EXPECT_EQ(Cuantas(), "1");
  EXPECT_EQ(Uno("SELECT cantidad FROM salpart"), "5");
}

TEST_F(LineasQueSeSuman, ARoutineMaySwitchItOffAndNothingIsReadThen) {
  frmSalidasWizard& f = Salida({{"A-100", "1"}});
  f.Acumulado = false;
  Linea(f, "A-100", "1");
  EXPECT_EQ(Cuantas(), "2");
  EXPECT_EQ(CuentaSentencias("SELECT * FROM salpart WHERE (((salida)=1)) AND id_salida"), 0);
  f.Acumulado = true;
  Linea(f, "A-100", "1");
  EXPECT_EQ(Cuantas(), "2");
}

TEST_F(LineasQueSeSuman, AfterALineIsRemovedTheNextEqualOneAddsToTheLastThatIsLeft) {
  frmSalidasWizard& f = Salida({{"A-100", "1"}, {"A-200", "1"}});
  f.ClickCell(f.fg2, 2, 0);
  Tecla(f, "Delete");
  EXPECT_EQ(f.UltimaPartida, 1);
  Linea(f, "A-100", "4");
  EXPECT_EQ(Cuantas(), "1");
  EXPECT_EQ(Celda(f, 1, columna_salida::Cantidad), "5");
}

TEST_F(LineasQueSeSuman, AfterTheOnlyLineIsRemovedTheNextOneIsANewLine) {
  frmSalidasWizard& f = Salida({{"A-100", "1"}});
  f.ClickCell(f.fg2, 1, 0);
  Tecla(f, "Delete");
  EXPECT_EQ(Cuantas(), "0");
  Linea(f, "A-100", "2");
  EXPECT_EQ(Cuantas(), "1");
  EXPECT_EQ(Celda(f, 1, columna_salida::IdSalida), "2");
}

TEST_F(LineasQueSeSuman, ALineOfAReopenedDocumentIsAddedToAsWell) {
  DocumentoGuardado(1);
  frmSalidasWizard& f = ModificaSalida(7);
  Linea(f, "A-100", "4");
  EXPECT_EQ(Cuantas(), "1");
  EXPECT_EQ(Uno("SELECT cantidad FROM salpart"), "5.5");
  EXPECT_EQ(Celda(f, 1, columna_salida::Precio), "11.6");
}

TEST_F(LineasQueSeSuman, ALineThatIsGoneFromTheBaseIsMadeAnew) {
  frmSalidasWizard& f = Salida({{"A-100", "1"}});
  Sql("DELETE FROM salpart");
  Linea(f, "A-100", "4");
  EXPECT_EQ(Cuantas(), "1");
  EXPECT_EQ(Celda(f, 2, columna_salida::Cantidad), "4");
}

}  // namespace
}  // namespace tarvik::tests
