// The scan tape: what is read goes into the document in order, answers nothing, and is never lost or had
// twice.
#include "host/lecturas.h"

#include "goods_in/columnas.h"
#include "goods_out/columnas.h"
#include "tests/host/lecturas_apoyo.h"

namespace tarvik::host {
namespace {

using tests::Escenario;

class Lecturas : public LecturasDeUnaTienda {};

// ---- a reading becomes a line ----

TEST_F(Lecturas, WithTheReaderOnOneIsALineWhereverTheFocusWas) {
  auto& f = ana.Entrada({});
  f.Enter(f.RichTextBox2);
  const auto read = Lee("A-100\r");
  EXPECT_EQ(Renglones(), "A-100 x1\n");
  EXPECT_EQ(read->estado, lectura::kRenglon);
  EXPECT_EQ(read->texto, "A-100");
  EXPECT_EQ(read->renglon, std::stoi(Uno("SELECT id_entrada FROM entpart")));
  EXPECT_EQ(read->cantidad, 1);
  EXPECT_EQ(read->tipo, Tipo::Entrada);
  EXPECT_EQ(read->documento, f.Entrada);
  EXPECT_EQ(read->usuario, "ANA");
  EXPECT_EQ(read->estacion, "E1");
  EXPECT_EQ(read->cuando, reloj);
  EXPECT_EQ(f.RichTextBox2.Text(), "") << "nothing goes where the focus was";
  EXPECT_TRUE(ana.cajas.empty());
}

TEST_F(Lecturas, OnGoodsOutTheSameArticleAddsToItsLine) {
  ana.Salida({});
  const auto first = Lee("A-100");
  const auto again = Lee("A-100");
  const auto box = Lee("7501");
  EXPECT_EQ(Salidas(), "A-100 x2\nA-100 x12\n");
  EXPECT_EQ(again->estado, lectura::kRenglon);
  EXPECT_EQ(again->renglon, first->renglon);
  EXPECT_EQ(again->cantidad, 1);
  EXPECT_EQ(box->cantidad, 12);
  EXPECT_NE(box->renglon, first->renglon);
}

TEST_F(Lecturas, ItIsTypedOverWhatStandsInTheArticleField) {
  auto& f = ana.Entrada({});
  Escenario::Teclea(f, f.txtFields(campo::Articulo), "a medio tec");
  Lee("A-200");
  EXPECT_EQ(Renglones(), "A-200 x1\n");
}

TEST_F(Lecturas, ARoutineMayTurnACodeIntoAnArticle) {
  ana.Entrada({});
  ana.anfitrion->Gancho("ENTRADA012", [](forms::Form& form, AmbienteLocal&) {
    auto& f = dynamic_cast<frmEntradasWizard&>(form);
    if (f.txtFields(campo::Articulo).Text() == "0001") f.txtFields(campo::Articulo).Text("A-100");
  });
  EXPECT_EQ(Lee("0001")->estado, lectura::kRenglon);
  EXPECT_EQ(Renglones(), "A-100 x1\n");
}

// Typing and reading differ by nothing that a routine can see.
TEST_F(Lecturas, ItSendsAndFiresWhatTypingAndEnterDo) {
  const auto recorded = [&](auto&& act) {
    auto& f = ana.Entrada({});
    ana.testigo.sentencias.clear();
    ana.testigo.ganchos.clear();
    act(f);
    auto fired = ana.testigo.ganchos;
    f.Unload();
    return std::pair{ana.testigo.sentencias.size(), fired};
  };
  const auto typed = recorded([](frmEntradasWizard& f) {
    f.Enter(f.txtFields(campo::Articulo));
    f.Type(f.txtFields(campo::Articulo), "A-100");
    Escenario::Tecla(f, "Enter");
  });
  const auto read = recorded([&](frmEntradasWizard&) { Lee("A-100"); });
  EXPECT_EQ(typed, read);
  EXPECT_GT(typed.first, 5U);
}

// ---- what refuses ----

TEST_F(Lecturas, OneThatTheScreenRefusesKeepsItsReason) {
  Sql("UPDATE prods SET Invent = 1 WHERE articulo = 'A-200'");
  Sql("UPDATE existenciaalmacen SET existencia = 0 WHERE articulo = 'A-200'");
  Sql("INSERT INTO usuarios (usuario, existsalidas) VALUES ('ANA', 0)");
  ana.Salida({});
  const auto read = Lee("A-200");
  EXPECT_EQ(read->estado, lectura::kRechazada);
  EXPECT_EQ(read->motivo, "No hay existencia suficiente en el almacen seleccionado Existencia: 0");
  EXPECT_EQ(ana.cajas.size(), 1U) << "the screen's own box is shown";
  EXPECT_EQ(Salidas(), "");
  EXPECT_EQ(Lee("A-100")->estado, lectura::kRenglon);
}

TEST_F(Lecturas, ARoutineThatCancelsRefuses) {
  ana.Entrada({});
  ana.anfitrion->Gancho("ENTRADA005", [](forms::Form& form, AmbienteLocal&) {
    dynamic_cast<frmEntradasWizard&>(form).CancelaProceso = true;
  });
  const auto read = Lee("A-100");
  EXPECT_EQ(read->estado, lectura::kRechazada);
  EXPECT_EQ(read->motivo, "una rutina no dejó hacer el renglón");
}

TEST_F(Lecturas, AStatementThatFailsIsTheReason) {
  ana.Entrada({});
  ana.testigo.falla_sentencia = "INSERT INTO entpart";
  const auto read = Lee("A-100");
  EXPECT_EQ(read->estado, lectura::kRechazada);
  EXPECT_NE(read->motivo.find("código duro"), std::string::npos) << read->motivo;
  EXPECT_EQ(Renglones(), "");
}

TEST_F(Lecturas, AReadOnlyScreenRefuses) {
  const auto number = Dejada();
  ana.puerta->ConsultaEntrada(number);
  const auto read = Lee("A-100");
  EXPECT_EQ(read->estado, lectura::kRechazada);
  EXPECT_EQ(read->motivo, "el documento sólo puede consultarse");
}

TEST_F(Lecturas, ControlCharactersAreRefusedButForOneLineEnd) {
  ana.Entrada({});
  for (const char* text : {"A\t100", "A-100\r\n", "\x1b[A", "A-100\x7f", "\xc2\x85"}) {
    const auto read = Lee(text);
    EXPECT_EQ(read->estado, lectura::kRechazada) << text;
    EXPECT_EQ(read->motivo, "trae caracteres de control, que ningún código tiene");
  }
  EXPECT_EQ(Lee("\r")->motivo, "la lectura está vacía");
  EXPECT_EQ(Lee("A-100\n")->estado, lectura::kRenglon);
  EXPECT_EQ(Renglones(), "A-100 x1\n");
}

TEST_F(Lecturas, OneOfFiveHundredCharactersIsUnknownAndWhole) {
  ana.Entrada({});
  const std::string code(500, '7');
  const auto read = Lee(code);
  EXPECT_EQ(read->estado, lectura::kSinArticulo);
  EXPECT_EQ(Uno("SELECT texto FROM lecturas"), code);
}

// A field that a routine has given a length goes on by itself when it is full.
TEST_F(Lecturas, AFieldThatIsFullIsNotLeftTwice) {
  auto& f = ana.Entrada({});
  f.txtFields(campo::Articulo).MaxLength(5);
  EXPECT_EQ(Lee("A-100")->estado, lectura::kRenglon);
  EXPECT_EQ(Renglones(), "A-100 x1\n");
  EXPECT_TRUE(ana.cajas.empty());
  const auto long_one = Lee("A-1000");
  EXPECT_EQ(long_one->estado, lectura::kRechazada);
  EXPECT_EQ(long_one->motivo, "es más larga que el campo, que admite 5");
  EXPECT_EQ(Renglones(), "A-100 x1\n");
}

TEST_F(Lecturas, OnlyDocumentScreensTakeThem) {
  ana.puerta->movimientoEstacion(0, false);
  auto& stations = *ana.plataforma.Screens().back();
  EXPECT_EQ(ErrorDe([&] { Lee("A-100", &stations); }),
            "Sólo las pantallas de entradas y de salidas reciben lecturas");
  EXPECT_EQ(LaCinta(), "");
}

// ---- what waits ----

TEST_F(Lecturas, NoneAnswersABoxAndAllComeInOrderAfterIt) {
  Sql("UPDATE prods SET Invent = 1 WHERE articulo = 'A-200'");
  Sql("UPDATE existenciaalmacen SET existencia = 0 WHERE articulo = 'A-200'");
  Sql("INSERT INTO usuarios (usuario, existsalidas) VALUES ('ANA', 1)");
  ana.Salida({});
  std::vector<std::string> meanwhile;
  ana.respuesta = false;
  ana.al_mostrar = [&] {
    ana.al_mostrar = nullptr;
    meanwhile = {Lee("A-100")->estado, Lee("7501")->estado};
  };
  const auto asked = Lee("A-200");
  EXPECT_EQ(meanwhile, (std::vector<std::string>{"espera", "espera"}));
  EXPECT_EQ(asked->estado, lectura::kRechazada) << "the answer was No";
  EXPECT_EQ(Salidas(), "A-100 x1\nA-100 x12\n");
  EXPECT_EQ(LaCinta(), "A-200 rechazada\nA-100 renglon\n7501 renglon\n");
}

TEST_F(Lecturas, OneThatComesWhileABoxOfTheClassStandsWaitsUntilItHasGone) {
  auto& f = ana.Entrada({});
  std::shared_ptr<Lectura> read;
  ana.al_mostrar = [&] { read = Lee("A-100"); };
  ana.puerta->ModificaEntrada(99);
  EXPECT_EQ(read->estado, lectura::kEspera);
  Servicio().Atiende();
  EXPECT_EQ(read->estado, lectura::kRenglon);
  EXPECT_EQ(read->documento, f.Entrada);
}

TEST_F(Lecturas, WhileACellIsBeingEditedTheyWait) {
  auto& f = ana.Entrada({"5"});
  f.ClickCell(f.fg2, 1, columna_entrada::Cantidad);
  f.Press(forms::KeyFor(U'7'));
  ASSERT_TRUE(f.txtEdit.Visible());
  const auto read = Lee("A-200");
  EXPECT_EQ(read->estado, lectura::kEspera);
  EXPECT_EQ(f.txtEdit.Text(), "7");
  Escenario::Tecla(f, "Enter");
  EXPECT_EQ(read->estado, lectura::kRenglon);
  EXPECT_EQ(Renglones(), "A-100 x7\nA-200 x1\n");
}

TEST_F(Lecturas, WhileARoutineRunsTheyWait) {
  std::shared_ptr<Lectura> read;
  ana.anfitrion->Gancho("ENTRADA001", [&](forms::Form&, AmbienteLocal&) { read = Lee("A-100"); });
  ana.Entrada({});
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(read->estado, lectura::kRenglon) << "fed by the first act after it";
  EXPECT_EQ(Renglones(), "A-100 x1\n");
}

TEST_F(Lecturas, WhileThereIsNoDocumentTheyWaitForTheFirst) {
  const auto one = Lee("A-100");
  const auto two = Lee("A-200");
  EXPECT_EQ(one->estado, lectura::kEspera);
  EXPECT_FALSE(one->tipo.has_value());
  ana.Salida({});
  EXPECT_EQ(two->estado, lectura::kRenglon);
  EXPECT_EQ(two->tipo, Tipo::Salida);
  EXPECT_EQ(Salidas(), "A-100 x1\nA-200 x1\n");
}

TEST_F(Lecturas, BehindTheMatrixTheyWaitForItsDocument) {
  for (const char* size : {"CH", "G"}) {
    Sql("INSERT INTO prods (articulo, modelo, color, talla, costo_u, descrip) VALUES (?, 'MOD', 'RO', ?, 5, "
        "'x')",
        {std::string("MOD-") + size, std::string(size)});
    Sql("INSERT INTO tallas (talla, descrip) VALUES (?, ?)", {std::string(size), std::string(size)});
  }
  Sql("INSERT INTO colores (color, descrip) VALUES ('RO', 'Rojo')");
  Sql("INSERT INTO modelos (modelo, descrip) VALUES ('MOD', 'Modelo')");
  auto& f = EntradaAMano();
  std::shared_ptr<Lectura> read;
  ana.plataforma.on_modal = [&](forms::Form&) { read = Lee("A-100"); };
  Escenario::Renglon(f, "MOD", "1");
  ASSERT_NE(read, nullptr) << "the matrix came up";
  EXPECT_EQ(read->tipo, Tipo::Entrada);
  EXPECT_EQ(read->estado, lectura::kEspera) << "the model's row is still to be finished";
  Escenario::Teclea(f, f.txtFields(campo::Articulo), "");
  f.txtFields(campo::Articulo).Text("");
  Servicio().Atiende();
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "A-100");
}

TEST_F(Lecturas, AModalDocumentTakesThemItself) {
  std::shared_ptr<Lectura> read;
  ana.plataforma.on_modal = [&](forms::Form& form) {
    auto& f = dynamic_cast<frmEntradasWizard&>(form);
    Escenario::Teclea(f, f.txtFields(campo::Concepto), "COM");
    read = Lee("A-100");
  };
  ana.puerta->NuevaEntrada(true);
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(read->estado, lectura::kRenglon);
}

// ---- the reader is off ----

TEST_F(Lecturas, WithTheReaderOffOneWaitsUntilItsLineStands) {
  auto& f = EntradaAMano();
  const auto read = Lee("A-100");
  const auto next = Lee("A-200");
  EXPECT_EQ(read->estado, lectura::kEspera);
  EXPECT_EQ(next->estado, lectura::kEspera);
  EXPECT_EQ(f.ActiveControl(), &f.txtFields(campo::Cantidad));
  EXPECT_EQ(f.txtFields(campo::Descripcion).Text(), "Martillo");
  f.Type(f.txtFields(campo::Cantidad), "3");
  Escenario::Tecla(f, "Enter");
  EXPECT_EQ(read->estado, lectura::kEspera);
  Escenario::Tecla(f, "Enter");
  EXPECT_EQ(read->estado, lectura::kRenglon);
  EXPECT_EQ(read->cantidad, 3);
  EXPECT_EQ(Renglones(), "A-100 x3\n");
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "A-200") << "the next one has come into the row";
  EXPECT_EQ(next->estado, lectura::kEspera);
}

// A routine that tells something on the way refuses nothing.
TEST_F(Lecturas, WithTheReaderOffABoxOnTheWayLeavesItInItsRow) {
  auto& f = EntradaAMano();
  ana.anfitrion->Gancho("ENTRADA009", [&](forms::Form&, AmbienteLocal&) {
    ana.plataforma.ShowBox(forms::BoxKind::Message, "Hay oferta", forms::kBoxInformation);
  });
  const auto read = Lee("A-100");
  EXPECT_FALSE(ana.cajas.empty());
  EXPECT_EQ(read->estado, lectura::kEspera);
  f.Type(f.txtFields(campo::Cantidad), "3");
  Escenario::Tecla(f, "F9");
  EXPECT_EQ(read->estado, lectura::kRenglon);
  EXPECT_EQ(read->cantidad, 3);
}

TEST_F(Lecturas, WithTheReaderOffATypedLineIsFinishedFirst) {
  auto& f = EntradaAMano();
  Escenario::Teclea(f, f.txtFields(campo::Articulo), "A-100");
  const auto read = Lee("A-200");
  EXPECT_EQ(read->estado, lectura::kEspera);
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "A-100");
  Escenario::Tecla(f, "Enter");
  f.Type(f.txtFields(campo::Cantidad), "2");
  Escenario::Tecla(f, "Enter");
  Escenario::Tecla(f, "Enter");
  EXPECT_EQ(Renglones(), "A-100 x2\n");
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "A-200");
}

TEST_F(Lecturas, WithTheReaderOffARowThatIsEmptiedDropsIts) {
  auto& f = EntradaAMano();
  const auto read = Lee("A-100");
  f.Enter(f.txtFields(campo::Articulo));
  Escenario::Tecla(f, "Back");
  EXPECT_EQ(read->estado, lectura::kDescartada);
  EXPECT_EQ(read->motivo, "se vació el renglón de captura");
  const auto other = Lee("A-100");
  Escenario::Teclea(f, f.txtFields(campo::Articulo), "A-200");
  EXPECT_EQ(other->estado, lectura::kDescartada);
  EXPECT_EQ(other->motivo, "se capturó otro artículo en su lugar");
  EXPECT_EQ(ErrorDe([&] { Servicio().Descarta(*Lee("A-100"), "x"); }), "(ningún error)")
      << "it was in no row";
}

TEST_F(Lecturas, ADocumentThatClosesWithItsRowDropsItAndSaysSo) {
  auto& f = EntradaAMano();
  const auto read = Lee("A-100");
  EXPECT_EQ(ErrorDe([&] { Servicio().Descarta(*read, "x"); }),
            "Su artículo está en el renglón de captura: termínelo o vacíelo");
  f.Unload();
  Servicio().Atiende();
  EXPECT_EQ(read->estado, lectura::kDescartada);
  EXPECT_EQ(read->motivo, "el documento se cerró sin terminar su renglón");
}

}  // namespace
}  // namespace tarvik::host
