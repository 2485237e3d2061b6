// The global helper: what each operation gives, what it gives for nothing, and that each can fail.
#include "host/funciones_locales.h"

#include "tests/host/apoyo.h"

namespace tarvik::host {
namespace {

class FuncionesDePrueba : public Banco {
 protected:
  data::Connection& Conexion() { return anfitrion->Conexion(); }
  bool Existe(const data::Value& value, const std::string& column, const std::string& table) {
    return Funciones().ExisteClave(value, column, table, Conexion());
  }
};

// A form that keeps the keys that it was given.
class FormaDeTeclas : public forms::Form {
 public:
  explicit FormaDeTeclas(forms::Platform& platform)
      : Form(platform, "frmTeclas", "Teclas"), campo(*this, "txtUno"), otro(*this, "txtDos") {
    campo.TabIndex(0);
    otro.TabIndex(1);
  }
  forms::TextBox campo;
  forms::TextBox otro;
  std::vector<int> codigos;
  bool cierra_con_esc = false;

 protected:
  void Form_KeyDown(int& code, int) override {
    codigos.push_back(code);
    if (cierra_con_esc && code == forms::kKeyEsc) Unload();
  }
};

TEST_F(FuncionesDePrueba, BothWaysToQueryGiveARecordsetOnItsFirstRow) {
  Sql("INSERT INTO modelos (modelo, descrip) VALUES ('CAM', 'Camisa')");
  data::RecordsetRef rows;
  Funciones().AbreRecordset("SELECT * FROM modelos", Conexion(), rows);
  EXPECT_EQ(rows->Fields("Descrip"), data::Value("Camisa"));
  data::RecordsetRef query;
  Funciones().AbreConsulta("SELECT * FROM modelos WHERE modelo = 'X'", Conexion(), query);
  EXPECT_TRUE(query->Eof());
}

TEST_F(FuncionesDePrueba, AQueryThatFailsLeavesTheVariableAsItWas) {
  data::RecordsetRef rows;
  Funciones().AbreRecordset("SELECT * FROM modelos", Conexion(), rows);
  const auto* before = &*rows;
  EXPECT_NE(ErrorDe([&] { Funciones().AbreRecordset("SELECT * FROM nada", Conexion(), rows); }),
            "(ningún error)");
  EXPECT_NE(ErrorDe([&] { Funciones().AbreConsulta("DELETE FROM modelos", Conexion(), rows); }),
            "(ningún error)");
  EXPECT_EQ(&*rows, before);
}

TEST_F(FuncionesDePrueba, NewIdsComeFromTheSeriesOfTheirName) {
  std::int32_t id = 0;
  Funciones().NuevoId("entpart", Conexion(), id);
  Funciones().NuevoId("entpart", Conexion(), id);
  EXPECT_EQ(id, 2);
}

TEST_F(FuncionesDePrueba, ANumberIsReadFromAnyValue) {
  EXPECT_EQ(Funciones().ANumero("1,234.5"), 1234.5);
  EXPECT_EQ(Funciones().ANumero(""), 0);
  EXPECT_EQ(Funciones().ANumero({}), 0);
  EXPECT_EQ(Funciones().ANumero("12a"), 0);
  EXPECT_EQ(Funciones().ANumero(7), 7);
}

TEST_F(FuncionesDePrueba, ATextIsReadFromAnyValue) {
  EXPECT_EQ(Funciones().TextoDe({}), "");
  EXPECT_EQ(Funciones().TextoDe(0.1 * 3), "0.3");
  EXPECT_EQ(Funciones().TextoDe(data::Date{2024, 3, 5}), "2024-03-05");
}

TEST_F(FuncionesDePrueba, BlanksAreEmpty) {
  EXPECT_TRUE(Funciones().EstaVacio(""));
  EXPECT_TRUE(Funciones().EstaVacio("   "));
  EXPECT_FALSE(Funciones().EstaVacio(" a "));
}

TEST_F(FuncionesDePrueba, AKeyIsLookedUpWithoutRegardToTheCaseOfTableAndColumn) {
  Sql("INSERT INTO prods (articulo) VALUES ('A-100')");
  EXPECT_TRUE(Existe("A-100", "ARTICULO", "PRODS"));
  EXPECT_TRUE(Existe("A-100", "articulo", "prods"));
  EXPECT_FALSE(Existe("a-100", "ARTICULO", "PRODS"));
  EXPECT_FALSE(Existe("A-10", "ARTICULO", "PRODS"));
  EXPECT_FALSE(Existe({}, "ARTICULO", "PRODS"));
  EXPECT_FALSE(Existe("x' OR '1' = '1", "ARTICULO", "PRODS"));
}

TEST_F(FuncionesDePrueba, ATextAgainstANumberColumnIsComparedAsANumber) {
  Sql("INSERT INTO ALMACEN (almacen) VALUES (1)");
  EXPECT_TRUE(Existe("1", "ALMACEN", "ALMACEN"));
  EXPECT_TRUE(Existe("1.0", "ALMACEN", "ALMACEN"));
  EXPECT_TRUE(Existe(1, "ALMACEN", "ALMACEN"));
  EXPECT_FALSE(Existe("1a", "ALMACEN", "ALMACEN"));
  EXPECT_FALSE(Existe("", "ALMACEN", "ALMACEN"));
}

TEST_F(FuncionesDePrueba, AFractionIsNoWholeNumbersKey) {
  Sql("INSERT INTO compra2 (id) VALUES (2)");
  EXPECT_TRUE(Existe("2", "id", "compra2"));
  EXPECT_FALSE(Existe("2.5", "id", "compra2"));
}

TEST_F(FuncionesDePrueba, ATableOrColumnThatIsNotThereIsNamed) {
  EXPECT_EQ(ErrorDe([&] { Existe("1", "clave", "PRODS"); }), "No existe la columna clave en la tabla PRODS");
  EXPECT_EQ(ErrorDe([&] { Existe("1", "articulo", "prods; DROP TABLE prods"); }),
            "No existe la columna articulo en la tabla prods; DROP TABLE prods");
}

TEST_F(FuncionesDePrueba, AMessageComesFromTheBaseAndIsTold) {
  std::string text;
  Funciones().TraeMensaje(1, Ambiente(), text);
  EXPECT_EQ(text, "¿Desea eliminar el documento?");
  Sql("UPDATE mensajes SET texto = '¿Borrar?' WHERE numero = 1");
  Funciones().TraeMensaje(1, Ambiente(), text);
  EXPECT_EQ(text, "¿Borrar?");
  Funciones().TraeMensaje(9999, Ambiente(), text);
  EXPECT_EQ(text, "9999");
  EXPECT_EQ(testigo.mensajes, (std::vector<std::pair<int, std::string>>{
                                  {1, "¿Desea eliminar el documento?"}, {1, "¿Borrar?"}, {9999, "9999"}}));
}

TEST_F(FuncionesDePrueba, EachBoxIsOfItsKindAndStyle) {
  bool yes = false;
  respuesta = true;
  Funciones().MuestraMensaje("aviso", 64, Ambiente());
  Funciones().MuestraError("mal");
  Funciones().Pregunta("¿sí?", 1, yes);
  EXPECT_TRUE(yes);
  respuesta = false;
  Funciones().Pregunta("¿no?", 1, yes);
  EXPECT_FALSE(yes);
  ASSERT_EQ(cajas.size(), 4U);
  EXPECT_EQ(cajas[0].clase, forms::BoxKind::Message);
  EXPECT_EQ(cajas[0].texto, "aviso");
  EXPECT_EQ(cajas[0].estilo, 64);
  EXPECT_EQ(cajas[1].clase, forms::BoxKind::Error);
  EXPECT_EQ(cajas[1].estilo, 0);
  EXPECT_EQ(cajas[2].clase, forms::BoxKind::Question);
  EXPECT_EQ(cajas[2].estilo, 1);
}

TEST_F(FuncionesDePrueba, ADateIsClosedByAClosedMovementThatIsLater) {
  Sql("INSERT INTO movsinv (f_movim, cerrado) VALUES ('2024-03-10', 1)");
  bool valid = true;
  Funciones().FechaValida({2024, 3, 9}, Ambiente(), valid);
  EXPECT_FALSE(valid);
  ASSERT_EQ(cajas.size(), 1U);
  EXPECT_EQ(cajas[0].clase, forms::BoxKind::Message);
  EXPECT_EQ(cajas[0].estilo, 64);
  EXPECT_EQ(cajas[0].texto, "El periodo de esta fecha está cerrado. Indique una fecha posterior.");
  EXPECT_EQ(testigo.mensajes.front().first, 253);
}

TEST_F(FuncionesDePrueba, TheDayOfTheLastClosedMovementItselfIsOpen) {
  Sql("INSERT INTO movsinv (f_movim, cerrado) VALUES ('2024-03-10', 1)");
  bool valid = false;
  Funciones().FechaValida({2024, 3, 10}, Ambiente(), valid);
  EXPECT_TRUE(valid);
  EXPECT_TRUE(cajas.empty());
}

TEST_F(FuncionesDePrueba, AnOpenMovementClosesNoDate) {
  Sql("INSERT INTO movsinv (f_movim, cerrado) VALUES ('2024-03-10', 0)");
  Sql("INSERT INTO movsinv (f_movim) VALUES ('2024-03-11')");
  bool valid = false;
  Funciones().FechaValida({2024, 3, 1}, Ambiente(), valid);
  EXPECT_TRUE(valid);
}

TEST_F(FuncionesDePrueba, TheDateOfANewDocumentIsTodayMovedByDaysThenByMonths) {
  data::Date date;
  Funciones().FechaDeTrabajo(0, 0, date);
  EXPECT_EQ(date, (data::Date{2024, 3, 5}));
  Funciones().FechaDeTrabajo(-5, 0, date);
  EXPECT_EQ(date, (data::Date{2024, 2, 29}));
  Funciones().FechaDeTrabajo(-5, 12, date);
  EXPECT_EQ(date, (data::Date{2025, 2, 28}));
}

TEST_F(FuncionesDePrueba, PresentedAndReturnedScreensAreTold) {
  Funciones().PresentaForma(*forma, Ambiente());
  Funciones().RegresaForma(*forma, Ambiente(), "frmMaster");
  EXPECT_EQ(testigo.presentadas, std::vector<forms::Form*>{forma.get()});
  EXPECT_EQ(testigo.regresadas, std::vector<std::string>{"frmMaster"});
}

TEST_F(FuncionesDePrueba, SentKeysReachTheActiveFormInOrder) {
  auto form = std::make_shared<FormaDeTeclas>(plataforma);
  form->Show(false);
  Funciones().EnviaTeclas("a1{TAB}b", true);
  EXPECT_EQ(form->campo.Text(), "a1");
  EXPECT_EQ(form->otro.Text(), "b");
  EXPECT_EQ(form->codigos, (std::vector<int>{'A', '1', forms::kKeyTab, 'B'}));
}

TEST_F(FuncionesDePrueba, KeysThatAreNotWaitedForComeWithTheNextEvents) {
  auto form = std::make_shared<FormaDeTeclas>(plataforma);
  form->Show(false);
  Funciones().EnviaTeclas("x", false);
  EXPECT_EQ(form->campo.Text(), "");
  plataforma.ProcessEvents();
  EXPECT_EQ(form->campo.Text(), "x");
}

TEST_F(FuncionesDePrueba, KeysGoToTheFormThatIsActiveWhenTheyRun) {
  auto first = std::make_shared<FormaDeTeclas>(plataforma);
  auto second = std::make_shared<FormaDeTeclas>(plataforma);
  first->Show(false);
  Funciones().EnviaTeclas("x", false);
  second->Show(false);
  plataforma.ProcessEvents();
  EXPECT_EQ(first->campo.Text(), "");
  EXPECT_EQ(second->campo.Text(), "x");
}

TEST_F(FuncionesDePrueba, KeysBehindTheOneThatClosesTheLastFormAreLost) {
  auto form = std::make_shared<FormaDeTeclas>(plataforma);
  form->cierra_con_esc = true;
  form->Show(false);
  Funciones().EnviaTeclas("a{ESC}b", true);
  EXPECT_FALSE(form->Open());
  EXPECT_EQ(form->campo.Text(), "a");
}

TEST(TeclasDeTexto, NamesCountsBracesAndPlainCharactersAreRead) {
  const auto codes = [](const char* text) {
    std::vector<int> result;
    for (const auto& key : TeclasDe(text)) result.push_back(key.code);
    return result;
  };
  EXPECT_EQ(codes("{TAB}{ENTER}{ESC}{UP}{DOWN}{LEFT}{RIGHT}"), (std::vector<int>{9, 13, 27, 38, 40, 37, 39}));
  EXPECT_EQ(codes("{DEL}{DELETE}{BS}{BACKSPACE}{HOME}{END}{PGUP}{PGDN}"),
            (std::vector<int>{46, 46, 8, 8, 36, 35, 33, 34}));
  EXPECT_EQ(codes("{F5}{f12}"), (std::vector<int>{116, 123}));
  EXPECT_EQ(codes("{DOWN 3}"), (std::vector<int>{40, 40, 40}));
  EXPECT_EQ(TeclasDe("ñ{{}{}}").at(0).character, U'ñ');
  EXPECT_EQ(TeclasDe("ñ{{}{}}").at(1).character, U'{');
  EXPECT_EQ(TeclasDe("ñ{{}{}}").at(2).character, U'}');
  EXPECT_EQ(TeclasDe("ñ{{}{}}").size(), 3U);
  EXPECT_TRUE(TeclasDe("").empty());
  EXPECT_EQ(ErrorDe([] { TeclasDe("{NADA}"); }), "No existe la tecla {NADA}");
  EXPECT_EQ(ErrorDe([] { TeclasDe("a{TAB"); }), "Las teclas \"{TAB\" no cierran la llave");
}

TEST_F(FuncionesDePrueba, TheCapitalFilterChangesLettersOnly) {
  forms::TextBox box(*forma, "txt");
  for (const auto& [key, expected] : std::vector<std::pair<int, int>>{
           {'a', 'A'}, {'Z', 'Z'}, {'1', '1'}, {0xF1, 0xD1}, {0xE1, 0xC1}, {13, 13}, {8, 8}, {0, 0}}) {
    int code = key;
    EXPECT_EQ(Funciones().TeclaMayuscula(code, box), expected);
    EXPECT_EQ(code, expected);
  }
}

TEST_F(FuncionesDePrueba, TheNumberFilterLetsOnlyANumbersKeysPass) {
  forms::TextBox box(*forma, "txt");
  const std::string pass = std::string("0123456789+-.") + '\x08' + '\x09' + '\x0d' + '\x1b';
  for (int key = 0; key < 256; ++key) {
    int code = key;
    const bool passes = key != 0 && pass.find(static_cast<char>(key)) != std::string::npos;
    EXPECT_EQ(Funciones().TeclaNumerica(code, box), passes ? key : 0);
    EXPECT_EQ(code, passes ? key : 0);
  }
}

TEST_F(FuncionesDePrueba, OnlyANumberInANumberFieldIsFormatted) {
  forms::TextBox box(*forma, "txt");
  const auto text = [&](const char* tag, const char* typed) {
    box.Tag(tag);
    box.Text(typed);
    return Funciones().FormateaTexto(box, Ambiente());
  };
  EXPECT_EQ(text("N", "1234.5"), "1,234.50");
  EXPECT_EQ(text("N", "1,234.5"), "1,234.50");
  EXPECT_EQ(text("N", "12a"), "12a");
  EXPECT_EQ(text("N", ""), "");
  EXPECT_EQ(text("U", "1234.5"), "1234.5");
  EXPECT_EQ(text("", "1234.5"), "1234.5");
  EXPECT_EQ(text("SN", "1234.5"), "1234.5");
  Ambiente().Pon("FormatoImporte", "0.0");
  EXPECT_EQ(text("N", "1234.5"), "1234.5");
}

TEST_F(FuncionesDePrueba, NumbersAreFormattedByTheirPattern) {
  std::string text;
  Funciones().FormateaCantidad(1234.5, "###,##0.####", text);
  EXPECT_EQ(text, "1,234.5");
  Funciones().NumeroSql(1234567.25, text);
  EXPECT_EQ(text, "1234567.25");
}

TEST_F(FuncionesDePrueba, PendingGoodsOutDocumentsHoldTheirQuantities) {
  Sql("INSERT INTO salidas (salida, estado) VALUES (1, 'PE')");
  Sql("INSERT INTO salidas (salida, estado) VALUES (2, 'CO')");
  Sql("INSERT INTO salpart (id_salida, salida, articulo, cantidad) VALUES (1, 1, 'A', 3)");
  Sql("INSERT INTO salpart (id_salida, salida, articulo, cantidad) VALUES (2, 1, 'A', 1.5)");
  Sql("INSERT INTO salpart (id_salida, salida, articulo, cantidad) VALUES (3, 1, 'B', 7)");
  Sql("INSERT INTO salpart (id_salida, salida, articulo, cantidad) VALUES (4, 2, 'A', 9)");
  double quantity = -1;
  Funciones().CantidadEnVenta("A", Conexion(), quantity);
  EXPECT_EQ(quantity, 4.5);
  Funciones().CantidadEnVenta("C", Conexion(), quantity);
  EXPECT_EQ(quantity, 0);
}

TEST_F(FuncionesDePrueba, TheQuantitySetAsideStandsOnTheArticle) {
  Sql("INSERT INTO prods (articulo, Por_Surt) VALUES ('A', 3)");
  Sql("INSERT INTO prods (articulo) VALUES ('B')");
  double quantity = -1;
  Funciones().CantidadPorSurtir("A", Conexion(), quantity);
  EXPECT_EQ(quantity, 3);
  for (const char* article : {"B", "C"}) {
    quantity = -1;
    Funciones().CantidadPorSurtir(article, Conexion(), quantity);
    EXPECT_EQ(quantity, 0) << article;
  }
}

TEST_F(FuncionesDePrueba, TheLogIsAppendedToAndFilesAreFoundAndDeleted) {
  const std::string path = carpeta.Ruta("datos").string() + "\\web\\prueba.Log";
  bool there = true;
  Funciones().ExisteArchivo(path, there);
  EXPECT_FALSE(there);
  Funciones().AgregaArchivoLog(path, "uno\r\n");
  Funciones().AgregaArchivoLog(path, "dos\r\n");
  Funciones().ExisteArchivo(path, there);
  EXPECT_TRUE(there);
  EXPECT_EQ(Lee(carpeta.Ruta("datos/web/prueba.Log")), "uno\r\ndos\r\n");
  Funciones().BorraArchivo(path);
  Funciones().ExisteArchivo(path, there);
  EXPECT_FALSE(there);
}

TEST_F(FuncionesDePrueba, EachOperationCanBeMadeToFailByItsNameAndThenDoesNothing) {
  forms::TextBox box(*forma, "txt");
  data::RecordsetRef rows;
  std::int32_t id = -1;
  std::string text = "antes";
  bool flag = true;
  double number = -1;
  data::Date date{1999, 1, 1};
  int key = 'a';
  auto& functions = Funciones();
  const std::vector<std::pair<std::string, std::function<void()>>> calls = {
      {"AbreRecordset", [&] { functions.AbreRecordset("SELECT 1", Conexion(), rows); }},
      {"AbreConsulta", [&] { functions.AbreConsulta("SELECT 1", Conexion(), rows); }},
      {"NuevoId", [&] { functions.NuevoId("s", Conexion(), id); }},
      {"ANumero", [&] { functions.ANumero("1"); }},
      {"TextoDe", [&] { functions.TextoDe("1"); }},
      {"EstaVacio", [&] { functions.EstaVacio(""); }},
      {"ExisteClave", [&] { functions.ExisteClave("1", "articulo", "prods", Conexion()); }},
      {"TraeMensaje", [&] { functions.TraeMensaje(1, Ambiente(), text); }},
      {"MuestraMensaje", [&] { functions.MuestraMensaje("x", 64, Ambiente()); }},
      {"MuestraError", [&] { functions.MuestraError("x"); }},
      {"Pregunta", [&] { functions.Pregunta("x", 1, flag); }},
      {"FechaValida",
       [&] {
         functions.FechaValida({2024, 1, 1}, Ambiente(), flag);
       }},
      {"FechaDeTrabajo", [&] { functions.FechaDeTrabajo(0, 0, date); }},
      {"NuevoQuery", [&] { functions.NuevoQuery(); }},
      {"PresentaForma", [&] { functions.PresentaForma(*forma, Ambiente()); }},
      {"RegresaForma", [&] { functions.RegresaForma(*forma, Ambiente(), "frmMaster"); }},
      {"EnviaTeclas", [&] { functions.EnviaTeclas("{TAB}", true); }},
      {"TeclaMayuscula", [&] { functions.TeclaMayuscula(key, box); }},
      {"TeclaNumerica", [&] { functions.TeclaNumerica(key, box); }},
      {"FormateaTexto", [&] { functions.FormateaTexto(box, Ambiente()); }},
      {"FormateaCantidad", [&] { functions.FormateaCantidad(1, "0", text); }},
      {"NumeroSql", [&] { functions.NumeroSql(1, text); }},
      {"CantidadEnVenta", [&] { functions.CantidadEnVenta("A", Conexion(), number); }},
      {"CantidadPorSurtir", [&] { functions.CantidadPorSurtir("A", Conexion(), number); }},
      {"AgregaArchivoLog", [&] { functions.AgregaArchivoLog(carpeta.Ruta("x.log").string(), "x"); }},
      {"ExisteArchivo", [&] { functions.ExisteArchivo("x", flag); }},
      {"BorraArchivo", [&] { functions.BorraArchivo("x"); }}};
  for (const auto& [name, call] : calls) {
    testigo.falla_servicio = name;
    EXPECT_EQ(ErrorDe(call), "falla provocada") << name;
    EXPECT_EQ(testigo.Veces(name), 1) << name;
  }
  EXPECT_FALSE(static_cast<bool>(rows));
  EXPECT_EQ(id, -1);
  EXPECT_EQ(text, "antes");
  EXPECT_TRUE(flag);
  EXPECT_EQ(number, -1);
  EXPECT_EQ(date, (data::Date{1999, 1, 1}));
  EXPECT_EQ(key, 'a');
  EXPECT_TRUE(cajas.empty());
  EXPECT_TRUE(testigo.presentadas.empty());
  EXPECT_TRUE(testigo.regresadas.empty());
  EXPECT_FALSE(std::filesystem::exists(carpeta.Ruta("x.log")));
  EXPECT_TRUE(Sql("SELECT * FROM series").rows.empty());
}

}  // namespace
}  // namespace tarvik::host
