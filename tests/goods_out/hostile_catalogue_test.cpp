// The same hostile texts as in hostile_test.cpp, where the operator types none of them: in the catalogue, as
// the user, as the station.
#include "goods_out/columnas.h"
#include "tests/goods_out/hostiles.h"

namespace tarvik::tests {
namespace {

TEST_P(TextosHostilesDeSalida, InTheCatalogueItIsDataLikeAnyOther) {
  const data::Value texto(Texto());
  Sql("UPDATE prods SET descrip = ?, unidad = ? WHERE articulo = 'A-100'", {texto, texto});
  Sql("UPDATE clavesadd SET Dato1 = ?, Dato2 = ?, unidad = ? WHERE clave = '7501'", {texto, texto, texto});
  Sql("UPDATE clients SET nombre = ? WHERE cliente = 'C1'", {texto});
  Sql("UPDATE diremb SET direccion = ? WHERE id = 1", {texto});
  Sql("UPDATE tipominv SET descrip = ? WHERE tipo_movim = 'VTA'", {texto});
  const std::string antes = Foto();
  frmSalidasWizard& f = ConConcepto();
  EXPECT_EQ(f.RichTextBox3.Text(), Texto());
  Teclea(f, f.txtFields(campo::Cliente), "C1");
  EXPECT_EQ(f.txtFields(campo::NombreDelCliente).Text(), Texto());
  f.Choose(f.Combo1, 0);
  EXPECT_EQ(f.txtFields(campo::DireccionDeEmbarque).Text(), Texto());
  Teclea(f, f.txtFields(campo::Articulo), "7501");
  Tecla(f, "Enter");
  EXPECT_EQ(f.txtFields(campo::Dato1).Text(), Texto());
  Tecla(f, "F9");
  EXPECT_EQ(Fallas(), Cuenta{});
  EXPECT_EQ(Uno("SELECT observ FROM salpart WHERE salida = 1"), Texto() + " " + Texto());
  EXPECT_EQ(Celda(f, 1, columna_salida::Presentacion), Texto());
  f.Check3.Value(1);
  Tecla(f, "F5");
  EXPECT_EQ(Uno("SELECT datos FROM salidas WHERE salida = 1"), Texto());
  EXPECT_EQ(Uno("SELECT direccionembarque FROM salidas WHERE salida = 1"), Texto());
  EXPECT_EQ(Fallas(), Cuenta{});
  EXPECT_EQ(Foto(), antes);
}

// A key of the catalogue that no statement can be joined with: the stock can't be told, so who may take
// out more than there is is asked, and the line stands and is posted under its own key.
TEST_P(TextosHostilesDeSalida, AsAKeyOfTheCatalogueItsLineIsMadePostedAndRemovedUnderIt) {
  PermiteSinExistencia();
  Sql("INSERT INTO prods (articulo, descrip, unidad, precio1, impuesto, costo_u, Invent) VALUES (?, 'Raro', "
      "'PZA', 10, 'IVA', 2, 0)",
      {data::Value(Texto())});
  frmSalidasWizard& f = ConConcepto();
  for (int vez = 0; vez < 2; ++vez) {
    Olvida();
    f.Acumulado = false;
    bitacora.respuestas = {true};
    Pega(f, f.txtFields(campo::Articulo));
    Tecla(f, "Enter");
    f.txtFields(campo::Cantidad).Text("2");
    Tecla(f, "F9");
    Cuenta fallas = Fallas();
    if (GetParam().efecto == Efecto::Ninguno) {
      EXPECT_EQ(fallas, Cuenta{});
      EXPECT_EQ(bitacora.mensajes.size(), 0u);
    } else if (GetParam().efecto == Efecto::OtroTexto) {
      EXPECT_EQ(fallas, (Cuenta{{"LlenaPartida", 1}}));
      EXPECT_EQ(bitacora.mensajes.back().clase, "pregunta");
    } else {
      EXPECT_EQ(fallas, (Cuenta{{"PonDescripcion", 4}, {"LlenaPartida", 5}, {"CreaPartida", 2}}));
    }
  }
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salpart WHERE salida = 1 AND articulo = ?", {Texto()}), "2");
  EXPECT_EQ(Celda(f, 2, columna_salida::Articulo), Texto());
  Olvida();
  f.ClickCell(f.fg2, 1, 0);
  Tecla(f, "Delete");
  EXPECT_EQ(Fallas(), SiRompe({{"fg2_KeyDown", 1}}));
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salpart WHERE salida = 1"), "1");
  Olvida();
  Finaliza(f);
  EXPECT_EQ(Fallas(), Cuenta{});
  EXPECT_EQ(Uno("SELECT cantidad FROM movsinv WHERE articulo = ?", {Texto()}), "2");
  EXPECT_EQ(Uno("SELECT existencia FROM existenciaalmacen WHERE articulo = ?", {Texto()}), "-2");
}

TEST_P(TextosHostilesDeSalida, AsAUserItIsWrittenToTheLetterAndHasNoRightThatCannotBeRead) {
  ControlaExistencia();
  Sql("INSERT INTO usuarios (usuario, existsalidas) VALUES (?, 1)", {data::Value(Texto())});
  anfitrion->Ambiente().Pon("Usuario", Texto());
  frmSalidasWizard& f = ConConcepto();
  Olvida();
  bitacora.respuestas = {true};
  Linea(f, "A-100", "11");
  const bool leido = GetParam().efecto == Efecto::Ninguno;
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salpart WHERE salida = 1"), leido ? "1" : "0");
  const Cuenta sin_derecho = {{"LlenaPartida", Rompe() ? 2 : 1}};
  EXPECT_EQ(Fallas(), leido ? Cuenta{} : sin_derecho);
  bitacora.respuestas.clear();
  if (!leido) {
    f.txtFields(campo::Cantidad).Text("10");  // the row still stands there
    Tecla(f, "F9");
  }
  Olvida();
  Finaliza(f);
  EXPECT_EQ(Fallas(), Cuenta{});
  EXPECT_EQ(Uno("SELECT usuario FROM salidas WHERE salida = 1"), Texto());
  EXPECT_EQ(Uno("SELECT usuario FROM salpart WHERE salida = 1"), Texto());
  EXPECT_EQ(Uno("SELECT usuario FROM movsinv"), Texto());
}

TEST_P(TextosHostilesDeSalida, AsAStationItHasItsOwnSeriesOfFolios) {
  anfitrion->Ambiente().Pon("Estacion", Texto());
  for (int folio : {1, 2}) {
    frmSalidasWizard& f = ConConcepto();
    Linea(f, "A-100", "1");
    Olvida();
    Finaliza(f);
    EXPECT_EQ(Fallas(), Cuenta{});
    EXPECT_EQ(Uno("SELECT folio FROM salidas WHERE salida = ?", {folio}), std::to_string(folio));
    EXPECT_EQ(Uno("SELECT estacion FROM salidas WHERE salida = ?", {folio}), Texto());
  }
}

TEST_P(TextosHostilesDeSalida, AsTheStationsWarehouseItIsShownAndRefused) {
  anfitrion->Ambiente().Parametro("Almacen", Texto());
  frmSalidasWizard& f = ConConcepto();
  EXPECT_EQ(f.txtFields(campo::Almacen).Text(), Texto());
  Linea(f, "A-100", "3");
  FinalizaYSeRechaza(f, 14, MensajeDeLaBase(mensaje::NoExisteAlmacen));
  Escribe(f, 14, "1");
  TerminaBien(f);
}

}  // namespace
}  // namespace tarvik::tests
