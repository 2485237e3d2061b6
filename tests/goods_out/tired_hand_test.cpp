// The mistakes of a tired hand at goods-out, letter by letter, and what is missing around it. A line that was
// made is never lost by any of them.
#include <sys/stat.h>
#include <unistd.h>

#include "goods_out/columnas.h"
#include "tests/goods_out/support.h"

namespace tarvik::tests {
namespace {

// ---- letter by letter ----

class ManoCansada : public EscenarioDeSalidas {
 protected:
  // Until its end the story runs with the rights of a user who owns nothing, whoever runs the tests.
  class SinPermiso {
   public:
    SinPermiso() {
      if (::geteuid() == 0) era_root_ = ::seteuid(65534) == 0;
    }
    ~SinPermiso() {
      if (era_root_) {
        EXPECT_EQ(::seteuid(0), 0);
      }
    }
    SinPermiso(const SinPermiso&) = delete;
    SinPermiso& operator=(const SinPermiso&) = delete;

   private:
    bool era_root_ = false;
  };
  std::vector<std::string> Avisos() const {
    std::vector<std::string> avisos;
    for (const auto& mensaje : bitacora.mensajes) avisos.push_back(mensaje.texto);
    return avisos;
  }
};

// The one character that no statement can hold: what it stands in is not written, and told.
TEST_F(ManoCansada, ANullCharacterKeepsItsStatementFromBeingWrittenAndNothingElse) {
  const std::string nulo("a\0b", 3);
  frmSalidasWizard& f = ConConcepto();
  Linea(f, "A-100", "3");
  for (forms::TextBox* campo : {&f.txtFields(campo::Articulo), &f.txtFields(campo::DireccionDeEmbarque)}) {
    f.Enter(*campo);
    f.Paste(nulo);
  }
  Olvida();
  Tecla(f, "F9");
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::NoEsArticulo});
  Linea(f, "A-200", "1");
  Olvida();
  f.Check3.Value(1);
  Tecla(f, "F5");
  EXPECT_EQ(Reportes().size(), 1u);
  EXPECT_NE(Reportes()[0].find("Function: SalvaSalida\r\n"), std::string::npos);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salpart"), "2");
  EXPECT_EQ(Uno("SELECT estado FROM salidas"), "PE");
}

TEST_F(ManoCansada, AQuoteTypedInTheConceptIsToldAtEveryLetterAfterIt) {
  frmSalidasWizard& f = NuevaSalida();
  Olvida();
  Teclea(f, f.txtFields(campo::Concepto), "O'Hara");
  EXPECT_EQ(f.txtFields(campo::Concepto).Text(), "O'HARA");
  EXPECT_EQ(Reportes().size(), 10u);  // five letters from the quote on, two reports each
  for (const auto& reporte : Reportes()) {
    EXPECT_NE(reporte.find("Function: TraeConcepto\r\n"), std::string::npos);
  }
  EXPECT_NE(ArchivoDelDia().find("Function: TraeConcepto\r\n"), std::string::npos);
}

TEST_F(ManoCansada, AQuoteTypedInTheCustomerGoesToThePlatformAtEveryLetterAfterIt) {
  frmSalidasWizard& f = ConConcepto();
  Olvida();
  Teclea(f, f.txtFields(campo::Cliente), "C'1");
  EXPECT_EQ(no_atrapados.size(), 2u);
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_EQ(f.txtFields(campo::Cliente).Text(), "C'1");
}

// As the suite joins it, this condition is true for every concept: the key is taken, and kept as written.
TEST_F(ManoCansada, AConditionThatIsAlwaysTrueFindsAConceptAndChangesNothingElse) {
  frmSalidasWizard& f = ConConcepto();
  Linea(f, "A-100", "3");
  f.Enter(f.txtFields(campo::Concepto));
  f.Paste("zz' OR '1'='1");
  EXPECT_NE(f.RichTextBox3.Text(), "");
  Olvida();
  Finaliza(f);
  EXPECT_TRUE(Reportes().empty());
  EXPECT_EQ(Uno("SELECT tipo_doc FROM salidas"), "zz' OR '1'='1");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM tipominv"), "3");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv"), "1");
}

TEST_F(ManoCansada, LettersTypedInTheWarehouseAreSwallowed) {
  frmSalidasWizard& f = ConConcepto();
  f.Enter(f.txtFields(campo::Almacen));
  Teclea(f, f.txtFields(campo::Almacen), "a2b;'");
  EXPECT_EQ(f.txtFields(campo::Almacen).Text(), "2");
}

TEST_F(ManoCansada, AConditionInTheWarehouseShowsAnotherStockAndIsRefusedAtTheFinish) {
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(campo::Almacen).Text("1 OR 1=1");
  Olvida();
  Linea(f, "A-200", "1");
  EXPECT_TRUE(Reportes().empty());
  EXPECT_EQ(Celda(f, 1, columna_salida::Existencia), "9");  // of the ten hammers, which come first
  Finaliza(f);
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::NoExisteAlmacen});
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv"), "0");
  EXPECT_EQ(Uno("SELECT almacen FROM salidas"), "0");
  f.txtFields(campo::Almacen).Text("1");
  Finaliza(f);
  EXPECT_EQ(Uno("SELECT existencia FROM existenciaalmacen WHERE articulo = 'A-200'"), "3");
}

TEST_F(ManoCansada, AnEmptyWarehouseCostsTheStockColumnAndNoLine) {
  frmSalidasWizard& f = ConConcepto();
  f.txtFields(campo::Almacen).Text("");
  Olvida();
  Linea(f, "A-200", "1");
  EXPECT_EQ(Reportes().size(), 2u);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salpart"), "1");
  Olvida();
  Finaliza(f);
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::SinAlmacen});
  EXPECT_TRUE(f.txtFields(campo::Almacen).HasFocus());
}

TEST_F(ManoCansada, ABranchTypedAndClearedAgainLeavesAPlainGoodsOut) {
  frmSalidasWizard& f = ConConcepto();
  Linea(f, "A-100", "3");
  Teclea(f, f.txtFields(campo::Sucursal), "nt");
  EXPECT_EQ(f.txtFields(campo::Sucursal).Text(), "NT");
  EXPECT_EQ(f.Check5.Value(), 1);
  Olvida();
  Finaliza(f);
  EXPECT_EQ(Avisos().back(), "No existe la sucursal indicada");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv"), "0");
  f.txtFields(campo::Sucursal).SelStart(2);
  Tecla(f, "Back");
  EXPECT_EQ(f.Check5.Value(), 1);
  Tecla(f, "Back");
  EXPECT_EQ(f.Check5.Value(), 0);
  Finaliza(f);
  EXPECT_EQ(Uno("SELECT esparasucursal FROM salidas"), "0");
  EXPECT_EQ(Uno("SELECT sucursal FROM salidas"), "");
  EXPECT_EQ(Uno("SELECT estado FROM salidas"), "CO");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salpart"), "1");
}

TEST_F(ManoCansada, ABranchOfBlanksSetsNoMark) {
  frmSalidasWizard& f = ConConcepto();
  Teclea(f, f.txtFields(campo::Sucursal), "   ");
  EXPECT_EQ(f.Check5.Value(), 0);
}

TEST_F(ManoCansada, ACustomerMistypedAfterItsNameCameUpKeepsTheNameAndIsRefused) {
  frmSalidasWizard& f = ConConcepto();
  Linea(f, "A-100", "3");
  Teclea(f, f.txtFields(campo::Cliente), "c12");
  EXPECT_EQ(f.txtFields(campo::Cliente).Text(), "C12");
  EXPECT_EQ(f.txtFields(campo::NombreDelCliente).Text(), "Ferretería del Sur");
  EXPECT_EQ(f.Combo1.List().size(), 3u);
  Olvida();
  Finaliza(f);
  EXPECT_EQ(Avisos().back(), "El cliente indicado no existe");
  EXPECT_TRUE(f.txtFields(campo::Cliente).HasFocus());
  f.txtFields(campo::Cliente).SelStart(3);
  Tecla(f, "Back");
  EXPECT_EQ(f.Combo1.List().size(), 6u);  // found again, so its addresses come again
  Finaliza(f);
  EXPECT_EQ(Uno("SELECT cliente FROM salidas"), "C1");
  EXPECT_EQ(Uno("SELECT estado FROM salidas"), "CO");
}

TEST_F(ManoCansada, APresentationCountOfZeroOrLessIsRefusedAndTheRowWaits) {
  frmSalidasWizard& f = ConConcepto();
  Linea(f, "A-200", "1");
  Teclea(f, f.txtFields(campo::Articulo), "7501");
  Tecla(f, "Enter");
  ASSERT_TRUE(f.txtFields(campo::Presentaciones).HasFocus());
  for (const auto& [veces, unidades] : {std::pair{"0", "0"}, {"-2", "-24"}}) {
    f.txtFields(campo::Presentaciones).SelectAll();
    Teclea(f, f.txtFields(campo::Presentaciones), veces);
    EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), unidades);
    Olvida();
    Tecla(f, "F9");
    EXPECT_EQ(Numeros(), std::vector<int>{mensaje::SinCantidad}) << veces;
    EXPECT_TRUE(f.txtFields(campo::Cantidad).HasFocus());
    EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "A-100");
    EXPECT_EQ(f.txtFields(campo::SegundaClave).Text(), "7501");
  }
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salpart"), "1");
  f.Enter(f.txtFields(campo::Presentaciones));
  Teclea(f, f.txtFields(campo::Presentaciones), "3");
  Tecla(f, "F9");
  EXPECT_EQ(Uno("SELECT cantidad FROM salpart WHERE articulo = 'A-100'"), "36");
  EXPECT_EQ(Uno("SELECT prcantidad FROM salpart WHERE articulo = 'A-100'"), "3");
}

TEST_F(ManoCansada, AnEmptiedPresentationCountIsAQuantityOfZero) {
  frmSalidasWizard& f = ConConcepto();
  Teclea(f, f.txtFields(campo::Articulo), "7501");
  Tecla(f, "Enter");
  f.txtFields(campo::Presentaciones).SelectAll();
  Tecla(f, "Delete");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "0");
  Olvida();
  Tecla(f, "F9");
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::SinCantidad});
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salidas"), "0");
}

TEST_F(ManoCansada, APurchaseNumberWithLettersIsRefusedAndMended) {
  Gancho("SALIDAS001", [](frmSalidasWizard& g) { g.txtFields(campo::Compra).Visible(true); });
  frmSalidasWizard& f = ConConcepto();
  Linea(f, "A-100", "3");
  Teclea(f, f.txtFields(campo::Sucursal), "NTE");
  Teclea(f, f.txtFields(campo::Compra), "55A");
  EXPECT_EQ(f.txtFields(campo::Compra).Text(), "55A");
  Olvida();
  Finaliza(f);
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::NoExisteCompra});
  EXPECT_EQ(CuentaSentencias("SELECT id FROM compra2 WHERE id = 0"), 1);
  EXPECT_TRUE(f.txtFields(campo::Compra).HasFocus());
  f.txtFields(campo::Compra).SelStart(3);
  Tecla(f, "Back");
  bitacora.respuestas.clear();
  Finaliza(f);
  EXPECT_EQ(Uno("SELECT cantidad FROM compras2sucursal WHERE id_partida = 551"), "3");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salpart"), "1");
}

// ---- what is missing ----

TEST_F(ManoCansada, AUserWhomNobodyKnowsTakesOutWhatThereIsAndNoMore) {
  ControlaExistencia();
  anfitrion->Ambiente().Pon("Usuario", std::string("NADIE"));
  frmSalidasWizard& f = ConConcepto();
  Linea(f, "A-100", "4");
  Olvida();
  Linea(f, "A-100", "11");
  ASSERT_EQ(bitacora.mensajes.size(), 2u);  // that the right can't be read, and the refusal
  EXPECT_NE(Reportes()[0].find("Function: LlenaPartida\r\n"), std::string::npos);
  EXPECT_EQ(bitacora.mensajes[1].texto,
            "No hay existencia suficiente en el almacen seleccionado\r\n Existencia: 10\r\n");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "11");
  EXPECT_EQ(Uno("SELECT cantidad FROM salpart"), "4");
  f.txtFields(campo::Cantidad).Text("6");
  Tecla(f, "F9");
  Finaliza(f);
  EXPECT_EQ(Uno("SELECT existencia FROM existenciaalmacen WHERE articulo = 'A-100'"), "0");
  EXPECT_EQ(Uno("SELECT usuario FROM salidas"), "NADIE");
}

TEST_F(ManoCansada, AWarehouseWithoutItsColumnIsToldTheQuestionIsPutAndTheLineIsCorrected) {
  ControlaExistencia();
  Sql("INSERT INTO ALMACEN (almacen) VALUES (12)");
  Sql("INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (12, 'A-100', 10)");
  DocumentoGuardado(2);
  Sql("UPDATE salidas SET almacen = 12");
  Sql("UPDATE salpart SET cantidad = -2 WHERE id_salida = 71");
  frmSalidasWizard& f = ModificaSalida(7);
  for (const bool si : {false, true}) {
    Olvida();
    bitacora.respuestas = {si};
    f.ClickCell(f.fg2, 1, 1);
    Tecla(f, "4");
    Tecla(f, "Enter");
    ASSERT_EQ(bitacora.mensajes.size(), 2u);
    EXPECT_NE(bitacora.mensajes[0].texto.find("Function: ConfirmaExistencia\r\n"), std::string::npos);
    EXPECT_EQ(bitacora.mensajes[1].clase, "pregunta");
    EXPECT_EQ(Uno("SELECT cantidad FROM salpart WHERE id_salida = 71"), si ? "4" : "-2");
  }
  Olvida();
  Finaliza(f);
  EXPECT_TRUE(Reportes().empty());
  EXPECT_EQ(Uno("SELECT existencia FROM existenciaalmacen WHERE almacen = 12"), "3.5");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv"), "2");
}

TEST_F(ManoCansada, AFolderThatMayNotBeWrittenCostsTheSheetAndThePaperAndNoLine) {
  namespace fs = std::filesystem;
  fs::create_directories(ruta / "web");
  ASSERT_EQ(::chmod((ruta / "web").c_str(), 0777), 0);  // the day's log has a place of its own
  ASSERT_EQ(::chmod(ruta.c_str(), 0555), 0);
  {
    const SinPermiso nadie;
    frmSalidasWizard& f = ConConcepto();
    ASSERT_EQ(Reportes().size(), 1u) << ::testing::PrintToString(Reportes());
    EXPECT_NE(Reportes()[0].find("Function: CreaHTML\r\n"), std::string::npos);
    EXPECT_TRUE(f.Acumulado);
    EXPECT_TRUE(f.Visible());
    Linea(f, "A-100", "3");
    Linea(f, "A-200", "1");
    Olvida();
    Finaliza(f);
    ASSERT_EQ(Reportes().size(), 1u) << ::testing::PrintToString(Reportes());
    EXPECT_NE(Reportes()[0].find("Function: ImprimeSalida\r\n"), std::string::npos);
    EXPECT_FALSE(f.Open());
  }
  EXPECT_EQ(::chmod(ruta.c_str(), 0755), 0);
  EXPECT_FALSE(fs::exists(ruta / "05032024.htm"));
  EXPECT_NE(ArchivoDelDia().find("Function: CreaHTML\r\n"), std::string::npos);
  EXPECT_EQ(Uno("SELECT estado FROM salidas"), "CO");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salpart"), "2");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv"), "2");
}

}  // namespace
}  // namespace tarvik::tests
