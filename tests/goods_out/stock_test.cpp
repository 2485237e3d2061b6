// The two stock checks of goods-out: that of a new line, and that of a quantity corrected in the grid.
#include "goods_out/columnas.h"
#include "tests/goods_out/support.h"

namespace tarvik::tests {
namespace {

class ExistenciaDeSalida : public EscenarioDeSalidas {
 protected:
  ExistenciaDeSalida() { ControlaExistencia(); }

  // A-100 entered with this quantity; whether a line came of it.
  bool Entra(const std::string& cantidad) {
    frmSalidasWizard& f = ConConcepto();
    Fila(f, "A-100", cantidad);
    f.txtFields(campo::DireccionDeEmbarque).SetFocus();
    Olvida();
    f.LlenaPartida();
    return Uno("SELECT COUNT(*) FROM salpart") != "0";
  }
  static std::string Aviso(const std::string& existencia, const std::string& apartados = {}) {
    std::string texto =
        "No hay existencia suficiente en el almacen seleccionado\r\n Existencia: " + existencia + "\r\n";
    if (!apartados.empty()) texto += " Apartados por pedido: " + apartados + "\r\n";
    return texto;
  }
};

// ---- a new line ----

TEST_F(ExistenciaDeSalida, AsMuchAsThereIsPassesWithoutAWord) {
  EXPECT_TRUE(Entra("10"));
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_EQ(CuentaSentencias("SELECT existsalidas"), 0);
  EXPECT_EQ(CuentaSentencias("SELECT * FROM existenciaalmacen WHERE almacen = 1 AND articulo = 'A-100'"), 2);
}

TEST_F(ExistenciaDeSalida, MoreThanThereIsIsRefusedToAUserWhoMayNot) {
  EXPECT_FALSE(Entra("10.5"));
  ASSERT_EQ(bitacora.mensajes.size(), 1u);
  EXPECT_EQ(bitacora.mensajes[0].clase, "caja");
  EXPECT_EQ(bitacora.mensajes[0].estilo, 64);
  EXPECT_EQ(bitacora.mensajes[0].texto, Aviso("10"));
  frmSalidasWizard& f = UltimaSalida();
  EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "A-100");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "10.5");
  EXPECT_EQ(f.txtFields(campo::Precio).Text(), "116.00");
  EXPECT_EQ(f.Modo, "ALTA");
  EXPECT_EQ(bitacora.sentencias.back(), "SELECT existsalidas FROM usuarios WHERE usuario = 'ANA'");
  EXPECT_EQ(CuentaClaves("SALIDAS010"), 1);
}

TEST_F(ExistenciaDeSalida, AUserWhoMayIsAskedAndNoDropsTheLine) {
  PermiteSinExistencia();
  bitacora.respuestas.push_back(false);
  EXPECT_FALSE(Entra("11"));
  ASSERT_EQ(bitacora.mensajes.size(), 1u);
  EXPECT_EQ(bitacora.mensajes[0].clase, "pregunta");
  EXPECT_EQ(bitacora.mensajes[0].estilo, 4);  // Yes is the default
  EXPECT_EQ(bitacora.mensajes[0].texto, Aviso("10") + " Desea continuar de cualquier manera\r\n");
  EXPECT_TRUE(UltimaSalida().txtFields(campo::Articulo).HasFocus());
  EXPECT_EQ(UltimaSalida().txtFields(campo::Cantidad).Text(), "11");
}

TEST_F(ExistenciaDeSalida, AUserWhoMayAndSaysYesGetsTheLine) {
  PermiteSinExistencia();
  bitacora.respuestas.push_back(true);
  EXPECT_TRUE(Entra("11"));
  EXPECT_EQ(bitacora.mensajes.size(), 1u);
  EXPECT_EQ(Celda(UltimaSalida(), 1, 2), "-1");
  EXPECT_EQ(Uno("SELECT existencia FROM existenciaalmacen WHERE articulo = 'A-100'"), "10");
}

TEST_F(ExistenciaDeSalida, ARefusalAtADisabledArticleLeavesTheFocus) {
  frmSalidasWizard& f = ConConcepto();
  Fila(f, "A-100", "11");
  f.txtFields(campo::Articulo).Enabled(false);
  f.txtFields(campo::DireccionDeEmbarque).SetFocus();
  f.LlenaPartida();
  EXPECT_TRUE(f.txtFields(campo::DireccionDeEmbarque).HasFocus());
}

TEST_F(ExistenciaDeSalida, AnArticleThatIsNotControlledPassesAndTheUserIsNotLookedUp) {
  Sql("UPDATE prods SET Invent = 0");
  Sql("DELETE FROM existenciaalmacen");
  EXPECT_TRUE(Entra("500"));
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_EQ(CuentaSentencias("SELECT existsalidas"), 0);
}

TEST_F(ExistenciaDeSalida, AnyMarkButZeroControlsTheArticle) {
  Sql("UPDATE prods SET Invent = 2");
  EXPECT_FALSE(Entra("11"));
}

TEST_F(ExistenciaDeSalida, WithoutARowThereIsNone) {
  Sql("DELETE FROM existenciaalmacen");
  EXPECT_FALSE(Entra("1"));
  EXPECT_EQ(bitacora.mensajes[0].texto, Aviso("0"));
}

TEST_F(ExistenciaDeSalida, AnEmptyWarehouseAsksForWarehouseZero) {
  frmSalidasWizard& f = ConConcepto();
  Fila(f, "A-100", "1");
  f.txtFields(campo::Almacen).Text("");
  Olvida();
  f.LlenaPartida();
  EXPECT_EQ(CuentaSentencias("SELECT * FROM existenciaalmacen WHERE almacen = 0 AND articulo = 'A-100'"), 1);
  EXPECT_EQ(bitacora.mensajes.at(0).texto, Aviso("0"));
}

TEST_F(ExistenciaDeSalida, WhatOrdersSetAsideIsTakenOffWhereTheStationCountsIt) {
  Sql("UPDATE prods SET Por_Surt = 3 WHERE articulo = 'A-100'");
  anfitrion->Ambiente().Parametro("PorSurt", 1);
  EXPECT_FALSE(Entra("8"));
  EXPECT_EQ(bitacora.mensajes.at(0).texto, Aviso("10", "3"));  // the stock, not what is left of it
  EXPECT_TRUE(Entra("7"));
}

TEST_F(ExistenciaDeSalida, WhatOrdersSetAsideIsNothingWhereTheStationDoesNotCountIt) {
  Sql("UPDATE prods SET Por_Surt = 3 WHERE articulo = 'A-100'");
  EXPECT_TRUE(Entra("8"));
  EXPECT_TRUE(bitacora.mensajes.empty());
}

TEST_F(ExistenciaDeSalida, EachLineIsComparedByItselfEvenWhenTheyAddUp) {
  frmSalidasWizard& f = ConConcepto();
  Linea(f, "A-100", "6");
  Linea(f, "A-100", "6");
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_EQ(Uno("SELECT cantidad FROM salpart"), "12");
}

TEST_F(ExistenciaDeSalida, APresentationIsComparedByItsUnits) {
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(campo::SegundaClave).Text("7501");
  f.LlenaPartida();
  EXPECT_EQ(bitacora.mensajes.at(0).texto, Aviso("10"));
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "12");
}

TEST_F(ExistenciaDeSalida, WhatCannotBeReadIsNotAllowed) {
  Sql("DELETE FROM usuarios");
  EXPECT_FALSE(Entra("11"));
  ASSERT_EQ(Reportes().size(), 2u);  // the failed reading, then the refusal
  EXPECT_NE(Reportes()[0].find("Function: LlenaPartida\r\n"), std::string::npos);
  EXPECT_EQ(bitacora.mensajes.back().texto, Aviso("10"));
  bitacora.Falla("SELECT \\* FROM prods", 1, "falla provocada");
  EXPECT_FALSE(Entra("11"));
  EXPECT_EQ(Reportes().front(), Reporte("LlenaPartida"));
}

// ---- a quantity corrected in the grid ----

TEST_F(ExistenciaDeSalida, ACorrectedQuantityIsTakenWhateverTheStock) {
  frmSalidasWizard& f = Salida({{"A-100", "5"}});
  f.ClickCell(f.fg2, 1, 1);
  Teclea(f, f.fg2, "500");
  Tecla(f, "Enter");
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_EQ(Uno("SELECT cantidad FROM salpart"), "500");
  EXPECT_EQ(Celda(f, 1, columna_salida::Existencia), "-490");
}

TEST_F(ExistenciaDeSalida, AQuantityThatWasNegativeIsAskedAboutWhateverTheNewOneAndNoDropsTheEdit) {
  frmSalidasWizard& f = Salida({{"A-100", "5"}});
  Sql("UPDATE prods SET ALM1 = 10, Por_Surt = 3 WHERE articulo = 'A-100'");
  f.fg2.TextMatrix(1, columna_salida::Cantidad, "-2");
  f.ClickCell(f.fg2, 1, 1);
  Tecla(f, "1");
  Olvida();
  bitacora.respuestas.push_back(false);
  Tecla(f, "Enter");
  ASSERT_EQ(bitacora.mensajes.size(), 1u);
  EXPECT_EQ(bitacora.mensajes[0].clase, "pregunta");
  EXPECT_EQ(bitacora.mensajes[0].estilo, 260);  // No is the default
  EXPECT_EQ(Numeros(), (std::vector<int>{mensaje::ExistenciaEncabezado, mensaje::ExistenciaDelAlmacen,
                                         mensaje::ExistenciaApartados, mensaje::ExistenciaContinua}));
  EXPECT_EQ(bitacora.mensajes[0].texto, MensajeDeLaBase(mensaje::ExistenciaEncabezado) + "\r\n" +
                                            MensajeDeLaBase(mensaje::ExistenciaDelAlmacen) + "10\r\n" +
                                            MensajeDeLaBase(mensaje::ExistenciaApartados) + "3\r\n" +
                                            MensajeDeLaBase(mensaje::ExistenciaContinua) + "\r\n");
  EXPECT_EQ(Celda(f, 1, columna_salida::Cantidad), "-2");
  EXPECT_EQ(f.txtEdit.Text(), "");
  EXPECT_FALSE(f.txtEdit.Visible());
  EXPECT_TRUE(f.fg2.HasFocus());
  EXPECT_EQ(Uno("SELECT cantidad FROM salpart"), "5");
  EXPECT_EQ(CuentaSentencias("SELECT existsalidas"), 0);
}

TEST_F(ExistenciaDeSalida, AQuantityThatWasNegativeIsChangedOnYes) {
  frmSalidasWizard& f = Salida({{"A-100", "5"}});
  f.fg2.TextMatrix(1, columna_salida::Cantidad, "-2");
  f.ClickCell(f.fg2, 1, 1);
  Tecla(f, "1");
  bitacora.respuestas.push_back(true);
  Tecla(f, "Enter");
  EXPECT_EQ(Celda(f, 1, columna_salida::Cantidad), "1");
  EXPECT_EQ(Uno("SELECT cantidad FROM salpart"), "1");
}

TEST_F(ExistenciaDeSalida, AnArticleThatIsNotControlledIsNeverAskedAbout) {
  Sql("UPDATE prods SET Invent = 0");
  frmSalidasWizard& f = Salida({{"A-100", "5"}});
  f.fg2.MoveTo(1, columna_salida::Cantidad);
  EXPECT_TRUE(f.ConfirmaExistencia(1, -2));
  EXPECT_TRUE(bitacora.mensajes.empty());
}

TEST_F(ExistenciaDeSalida, TheConfirmationReadsArticleAndStockOfTheRowInHand) {
  frmSalidasWizard& f = Salida({{"A-200", "1"}, {"A-100", "5"}});
  f.fg2.MoveTo(1, columna_salida::Cantidad);
  Olvida();
  EXPECT_TRUE(f.ConfirmaExistencia(500, 5));
  EXPECT_EQ(bitacora.sentencias,
            (Textos{"SELECT * FROM prods WHERE articulo = 'A-200'",
                    "SELECT * FROM existenciaalmacen WHERE articulo = 'A-200' AND almacen = 1"}));
}

TEST_F(ExistenciaDeSalida, TheHostIsAskedWhatItsSettingsSayAndTheAnswerChangesNothing) {
  frmSalidasWizard& f = Salida({{"A-100", "5"}});
  f.fg2.MoveTo(1, columna_salida::Cantidad);
  bitacora.FallaServicio("CantidadEnVenta", 1, "en venta");
  bitacora.FallaServicio("CantidadPorSurtir", 1, "por surtir");
  EXPECT_TRUE(f.ConfirmaExistencia(500, 5));
  EXPECT_TRUE(Reportes().empty());  // neither was asked
  anfitrion->Ambiente().Parametro("EnVenta", 1);
  anfitrion->Ambiente().Parametro("PorSurt", 1);
  EXPECT_TRUE(f.ConfirmaExistencia(500, 5));
  EXPECT_EQ(Reportes(),
            (Textos{Reporte("ConfirmaExistencia", "en venta"), Reporte("ConfirmaExistencia", "por surtir")}));
  Olvida();
  EXPECT_TRUE(f.ConfirmaExistencia(500, 5));
  EXPECT_TRUE(bitacora.mensajes.empty());
}

TEST_F(ExistenciaDeSalida, TheQuestionShowsTheColumnOfTheWarehousesLeadingNumber) {
  frmSalidasWizard& f = Salida({{"A-100", "5"}});
  Sql("UPDATE prods SET ALM2 = 77, Por_Surt = 0 WHERE articulo = 'A-100'");
  f.txtFields(campo::Almacen).Text("2 norte");
  f.fg2.MoveTo(1, columna_salida::Cantidad);
  EXPECT_FALSE(f.ConfirmaExistencia(1, -1));
  EXPECT_NE(bitacora.mensajes.back().texto.find(MensajeDeLaBase(mensaje::ExistenciaDelAlmacen) + "77\r\n"),
            std::string::npos);
}

TEST_F(ExistenciaDeSalida, AWarehouseWithoutAColumnIsReportedAndTheQuestionIsPutAllTheSame) {
  frmSalidasWizard& f = Salida({{"A-100", "5"}});
  f.txtFields(campo::Almacen).Text("12");
  f.fg2.MoveTo(1, columna_salida::Cantidad);
  bitacora.respuestas.push_back(true);
  EXPECT_TRUE(f.ConfirmaExistencia(1, -1));
  ASSERT_EQ(bitacora.mensajes.size(), 2u);
  EXPECT_NE(bitacora.mensajes[0].texto.find("Function: ConfirmaExistencia\r\n"), std::string::npos);
  EXPECT_EQ(bitacora.mensajes[1].clase, "pregunta");
  EXPECT_EQ(ArchivoDelDia(), bitacora.mensajes[0].texto);
}

TEST_F(ExistenciaDeSalida, AConfirmationThatCannotReadTheArticleAsks) {
  frmSalidasWizard& f = Salida({{"A-100", "5"}});
  f.fg2.MoveTo(1, columna_salida::Cantidad);
  bitacora.Falla("SELECT \\* FROM prods", 1, "falla provocada");
  EXPECT_FALSE(f.ConfirmaExistencia(1, 5));
  ASSERT_GE(bitacora.mensajes.size(), 2u);
  EXPECT_EQ(bitacora.mensajes.front().texto.find("14:03:22 Ocurrió un error:\r\n"), 0u);
  EXPECT_EQ(bitacora.mensajes.back().clase, "pregunta");
}

}  // namespace
}  // namespace tarvik::tests
