// The printed page: what of a document stands on it, the deployer's template, and the bars.
#include "host/formato.h"

#include "tests/host/apoyo.h"

namespace tarvik::host {
namespace {

class ImpresoraDePrueba : public Impresora {
 public:
  void Imprime(const std::string& page, const std::string& format, std::int32_t number) override {
    paginas.push_back(page);
    ultima = format + "|" + std::to_string(number);
    if (falla) throw data::Error("la impresora no responde");
  }
  std::vector<std::string> paginas;
  std::string ultima;
  bool falla = false;
};

class Formatos : public Banco {
 protected:
  Formatos() : Banco(true) { opciones.impresora = &impresora; }
  void SetUp() override {
    Banco::SetUp();
    salidas = std::make_shared<forms::Form>(plataforma, "frmSalidasWizard", "Salida");
    otra = std::make_shared<forms::Form>(plataforma, "frmOtra", "Otra");
    Ambiente().Parametro("Empresa", "Ferretería <La Unión>");
    Sql("INSERT INTO entradas (entrada, tipo_doc, f_emision, almacen, estado, observ, usuario, moneda) "
        "VALUES (12, 'COM', '2024-03-05', 1, 'CO', 'Con & sin factura', 'ANA', 'MXN')");
    Sql("INSERT INTO entpart (id_entrada, entrada, articulo, cantidad, precio, observ) "
        "VALUES (2, 12, 'MAR-16', 1500, 1.5, '')");
    Sql("INSERT INTO entpart (id_entrada, entrada, articulo, cantidad, precio, observ, prdescrip, "
        "prcantidad, "
        "claveadd) VALUES (1, 12, 'CIN-AIS', 24, 10.9, 'Cinta <negra>', 'Caja con 12', 2, 'CIN-AIS-C12')");
    Sql("INSERT INTO salidas (salida, folio, tipo_doc, f_emision, almacen, estado, cliente, "
        "direccionembarque, "
        "estraspaso, traspaso, almt, esparasucursal, sucursal, paraempleado, empleado, fecharetorno) "
        "VALUES (7, 301, 'TRA', '2024-03-04', 1, 'PE', 'C001', 'Obra Los Encinos, lote 12', 1, 5, 2, 1, "
        "'NTE', "
        "1, 'E02', '2024-04-01')");
    Sql("INSERT INTO salpart (id_salida, salida, articulo, cantidad, precio) VALUES (1, 7, 'TAL-12', 2, "
        "1299)");
  }
  std::string Imprime(const std::string& format, int number, forms::Form& screen) {
    anfitrion->ConsultasCatalogo().ImprimeDocumento(format, number, Ambiente(), screen);
    return Lee(impresora.paginas.back());
  }
  static bool Tiene(const std::string& page, const std::string& text) {
    return page.find(text) != std::string::npos;
  }
  std::filesystem::path Plantilla(const std::string& format) {
    return carpeta.Ruta("datos/formatos/" + format + ".mustache");
  }
  ImpresoraDePrueba impresora;
  std::shared_ptr<forms::Form> salidas;
  std::shared_ptr<forms::Form> otra;
};

TEST_F(Formatos, AGoodsInPageHasHeaderLinesAndTotals) {
  const std::string page = Imprime("entrada", 12, *forma);
  for (const char* text : {"Entrada de mercancía",
                           "05/03/2024",
                           "COM Compra a proveedor",
                           "1 Almacén central",
                           "Afectado",
                           "Martillo de uña 16 oz mango de fibra",
                           "1,500",
                           "2,250.00",
                           "Cinta &lt;negra&gt;",
                           "24",
                           "10.90",
                           "261.60",
                           "2 Caja con 12 · CIN-AIS-C12",
                           "1,524",
                           "2,511.60",
                           "Total MXN",
                           "Con &amp; sin factura",
                           "Elaboró ANA",
                           "Impreso el 05/03/2024 14:15:00",
                           "Ferretería &lt;La Unión&gt;",
                           "<svg"}) {
    EXPECT_TRUE(Tiene(page, text)) << text;
  }
  EXPECT_LT(page.find("Cinta"), page.find("Martillo"));  // in the order of entry
  for (const char* text : {"Cliente", "Sucursal", "Folio", "{{", "}}"})
    EXPECT_FALSE(Tiene(page, text)) << text;
}

TEST_F(Formatos, AGoodsOutPageHasFolioCustomerAddressAndTransferMarks) {
  const std::string page = Imprime("salida", 7, *salidas);
  for (const char* text :
       {"Salida de mercancía", "Folio 301", "04/03/2024", "TRA Traspaso entre almacenes", "Pendiente",
        "C001 Constructora del Valle, S.A. de C.V.", "Obra Los Encinos, lote 12", "2 Piso de venta",
        "(traspaso 5)", "NTE Norte", "E02 Patricia Solís Vega", "retorno el 01/04/2024",
        "Taladro percutor 1/2 pulgada 650 W", "2,598.00"}) {
    EXPECT_TRUE(Tiene(page, text)) << text;
  }
}

TEST_F(Formatos, MarksThatAreOffAreNotOnThePage) {
  Sql("UPDATE salidas SET estraspaso = 0, esparasucursal = NULL, paraempleado = 0, cliente = '', folio = "
      "NULL");
  const std::string page = Imprime("salida", 7, *salidas);
  for (const char* text : {"Piso de venta", "Norte", "Patricia", "Cliente", "Folio", "traspaso 5"}) {
    EXPECT_FALSE(Tiene(page, text)) << text;
  }
}

TEST_F(Formatos, ATransferToAStationNamesItAndOneWithoutItDoesNot) {
  EXPECT_FALSE(Tiene(Imprime("salida", 7, *salidas), "Traspaso a estación"));
  Sql("UPDATE salidas SET traspasoaestacion = 1, estaciontraspaso = 'E2'");
  const std::string page = Imprime("salida", 7, *salidas);
  EXPECT_TRUE(Tiene(page, "Traspaso a estación"));
  EXPECT_TRUE(Tiene(page, "E2 Mostrador"));
}

// A document with every mark still leaves most of its first page to the lines.
TEST_F(Formatos, EachMarkStandsBesideItsNameInOneRow) {
  Sql("UPDATE salidas SET traspasoaestacion = 1, estaciontraspaso = 'E2'");
  const std::string page = Imprime("salida", 7, *salidas);
  for (const auto& [name, text] : {std::pair{"Cliente", "C001 Constructora"},
                                   {"Dirección de embarque", "Obra Los Encinos"},
                                   {"Traspaso al almacén", "2 Piso de venta"},
                                   {"Traspaso a estación", "E2 Mostrador"},
                                   {"Sucursal", "NTE Norte"},
                                   {"Asignado al empleado", "E02 Patricia"}}) {
    const auto at = page.find(">" + std::string(name) + "<");
    ASSERT_NE(at, std::string::npos) << name;
    const std::string row = page.substr(at, page.find("</tr>", at) - at);
    EXPECT_TRUE(Tiene(row, text)) << row;
    EXPECT_TRUE(Tiene(row, "</td>\n<td")) << row;
  }
}

TEST_F(Formatos, TotalsRemarksAndSignaturesAreOneTableThatNoPagesEndTears) {
  const std::string page = Imprime("entrada", 12, *forma);
  EXPECT_TRUE(Tiene(page, ".cierre { margin-top: 14px; page-break-inside: avoid; break-inside: avoid; }"));
  const auto lines_end = page.find("</tbody>");
  const auto begin = page.find("<table class=\"cierre\"");
  ASSERT_NE(begin, std::string::npos);
  EXPECT_GT(begin, lines_end);
  for (const char* text : {"Renglones", "Unidades", "Total MXN", "2,511.60", "Observaciones",
                           "Con &amp; sin factura", "Entregó", "Recibió", "Autorizó", "Elaboró ANA"}) {
    EXPECT_TRUE(Tiene(page.substr(begin), text)) << text;
  }
  EXPECT_FALSE(Tiene(page.substr(page.rfind("</table>")), "Elabor"));
  // Without remarks their place stays empty, and the sums where they are.
  Sql("UPDATE entradas SET observ = ''");
  const std::string bare = Imprime("entrada", 12, *forma);
  EXPECT_FALSE(Tiene(bare, ">Observaciones<"));
  EXPECT_TRUE(Tiene(bare, "Total MXN"));
}

TEST_F(Formatos, APresentationWithoutACountStandsByItself) {
  Sql("UPDATE entpart SET prcantidad = 0");
  const std::string page = Imprime("entrada", 12, *forma);
  EXPECT_TRUE(Tiene(page, ">Caja con 12 ·"));
}

TEST_F(Formatos, ThePageIsReadyForPaper) {
  const std::string page = Imprime("entrada", 12, *forma);
  for (const char* text :
       {"@page", "table-header-group", "tabular-nums", "Entregó", "Recibió", "<meta charset=\"utf-8\">"}) {
    EXPECT_TRUE(Tiene(page, text)) << text;
  }
}

TEST_F(Formatos, ThePageStandsInItsFolderAndGoesToThePrinter) {
  Imprime("entrada", 12, *forma);
  EXPECT_EQ(impresora.paginas,
            std::vector<std::string>{carpeta.Ruta("datos/impresos/entrada-12.html").string()});
  EXPECT_EQ(impresora.ultima, "entrada|12");
  EXPECT_EQ(testigo.impresos, (std::vector<std::pair<std::string, int>>{{"entrada", 12}}));
}

TEST_F(Formatos, APageIsWrittenOverTheLastOneOfTheDocument) {
  Imprime("entrada", 12, *forma);
  Sql("DELETE FROM entpart WHERE id_entrada = 2");
  EXPECT_FALSE(Tiene(Imprime("entrada", 12, *forma), "Martillo"));
}

TEST_F(Formatos, TheTemplateIsPutInTheFolderAtFirstUseAndADeployersIsUsed) {
  Imprime("entrada", 12, *forma);
  EXPECT_EQ(Lee(Plantilla("entrada")), PlantillaDeFabrica());
  Graba(Plantilla("entrada"), "No. {{numero}}: {{#partidas}}{{articulo}} {{cantidad}};{{/partidas}}");
  EXPECT_EQ(Imprime("entrada", 12, *forma), "No. 12: CIN-AIS 24;MAR-16 1,500;");
  EXPECT_NE(Lee(Plantilla("entrada")), PlantillaDeFabrica());
}

// A program that was killed while it put the template there.
TEST_F(Formatos, APartOfTheBuiltInTemplateIsPutThereAnew) {
  Imprime("entrada", 12, *forma);
  for (const std::size_t left : {std::size_t{0}, std::size_t{1}, PlantillaDeFabrica().size() - 1}) {
    Graba(Plantilla("entrada"), std::string(PlantillaDeFabrica().substr(0, left)));
    EXPECT_TRUE(Tiene(Imprime("entrada", 12, *forma), "CIN-AIS")) << left;
    EXPECT_EQ(Lee(Plantilla("entrada")), PlantillaDeFabrica()) << left;
  }
  for (const char* folder : {"datos/formatos", "datos/impresos"}) {
    for (const auto& file : std::filesystem::directory_iterator(carpeta.Ruta(folder))) {
      EXPECT_NE(file.path().extension(), ".parcial") << "nothing half stays beside it";
    }
  }
}

TEST_F(Formatos, AnotherFormatTakesTheDocumentOfItsScreen) {
  Graba(Plantilla("corto"), "{{titulo}} {{numero}}");
  EXPECT_EQ(Imprime("corto", 12, *forma), "Entrada de mercancía 12");
  EXPECT_EQ(Imprime("corto", 7, *salidas), "Salida de mercancía 7");
  EXPECT_EQ(Imprime("corto", 7, *otra), "Salida de mercancía 7");
  EXPECT_TRUE(Tiene(Imprime("entrada", 12, *otra), "Entrada de mercancía"));
  EXPECT_TRUE(Tiene(Imprime("nuevo", 12, *forma), "Entrada de mercancía"));  // from the built-in template
  EXPECT_TRUE(std::filesystem::exists(Plantilla("nuevo")));
}

TEST_F(Formatos, ADocumentThatIsNotThereIsAnError) {
  EXPECT_EQ(ErrorDe([&] { Imprime("entrada", 99, *forma); }),
            "No se puede imprimir: no existe la entrada 99");
  EXPECT_EQ(ErrorDe([&] { Imprime("salida", 12, *salidas); }),
            "No se puede imprimir: no existe la salida 12");
  EXPECT_TRUE(impresora.paginas.empty());
  const std::vector<std::pair<std::string, int>> handed = {{"entrada", 99}, {"salida", 12}};
  EXPECT_EQ(testigo.impresos, handed) << "it was handed over all the same";
}

TEST_F(Formatos, AFaultInATemplateNamesFileAndReason) {
  Graba(Plantilla("entrada"), "{{#partidas}} sin cierre");
  const std::string error = ErrorDe([&] { Imprime("entrada", 12, *forma); });
  EXPECT_EQ(error.find("La plantilla " + Plantilla("entrada").string() + " tiene un error: "), 0U) << error;
  EXPECT_TRUE(Tiene(error, "partidas")) << error;
  EXPECT_TRUE(impresora.paginas.empty());
}

TEST_F(Formatos, AFolderForTemplatesThatCannotBeWrittenIsNoError) {
  Graba(carpeta.Ruta("datos/formatos"), "un archivo en su lugar");
  EXPECT_TRUE(Tiene(Imprime("entrada", 12, *forma), "Entrada de mercancía"));
}

TEST_F(Formatos, APageThatCannotBeWrittenIsAnErrorWithItsPath) {
  Graba(carpeta.Ruta("datos/impresos"), "un archivo en su lugar");
  const std::string error = ErrorDe([&] { Imprime("entrada", 12, *forma); });
  EXPECT_EQ(error.find("No se puede escribir la página "), 0U) << error;
  EXPECT_TRUE(Tiene(error, "entrada-12.html")) << error;
  EXPECT_EQ(testigo.impresos.size(), 1U);
}

TEST_F(Formatos, AFormatsNameNeverLeavesTheFolder) {
  for (const char* name : {"../entrada", "a/b", "a\\b", "", " ", ".oculto", "c:entrada", "a\nb"}) {
    EXPECT_EQ(ErrorDe([&] { Imprime(name, 12, *forma); }),
              "El nombre de formato \"" + std::string(name) + "\" no es válido");
  }
  EXPECT_FALSE(std::filesystem::exists(carpeta.Ruta("datos/formatos")));
}

TEST_F(Formatos, APrinterThatFailsIsTheOutcome) {
  impresora.falla = true;
  EXPECT_EQ(ErrorDe([&] { Imprime("entrada", 12, *forma); }), "la impresora no responde");
  EXPECT_EQ(testigo.impresos.size(), 1U);
}

TEST_F(Formatos, PrintingThatIsMadeToFailWritesNoPage) {
  testigo.falla_servicio = "ImprimeDocumento";
  EXPECT_EQ(ErrorDe([&] { Imprime("entrada", 12, *forma); }), "falla provocada");
  EXPECT_EQ(testigo.impresos.size(), 1U);
  EXPECT_FALSE(std::filesystem::exists(carpeta.Ruta("datos/impresos")));
}

TEST_F(Formatos, TheNumberIsNamedAsOneAndStandsUnderTheBarsForAPersonToType) {
  const std::string page = Imprime("entrada", 12, *forma);
  EXPECT_TRUE(Tiene(page, ">Núm. 12<"));
  const auto bars = page.find("</svg>");
  ASSERT_NE(bars, std::string::npos);
  EXPECT_LT(page.find(">12<", bars), page.find("</table>", bars));
  EXPECT_TRUE(Tiene(page, "content: \"Núm. 12\"")) << "and on each page that a browser prints";
}

// ---- the shop's logo ----

// What a PNG begins with, of this size.
std::string Png(int width, int height) {
  std::string bytes = std::string("\x89PNG\r\n\x1a\n") + std::string("\0\0\0\rIHDR", 8);
  for (const int size : {width, height}) {
    for (const int shift : {24, 16, 8, 0}) bytes += static_cast<char>(size >> shift & 255);
  }
  return bytes + "lo demás";
}

TEST_F(Formatos, ALogoOfTheFolderStandsOnThePageByItself) {
  EXPECT_FALSE(Tiene(Imprime("entrada", 12, *forma), "<img"));
  Graba(carpeta.Ruta("datos/logo.svg"), "<svg xmlns=\"http://www.w3.org/2000/svg\"/>");
  EXPECT_TRUE(Tiene(Imprime("entrada", 12, *forma),
                    "<img class=\"logo\" "
                    "src=\"data:image/svg+xml;base64,"
                    "PHN2ZyB4bWxucz0iaHR0cDovL3d3dy53My5vcmcvMjAwMC9zdmciLz4=\" height=\"60\" alt=\"\">"));
  Graba(carpeta.Ruta("datos/logo.png"), Png(1000, 100));
  EXPECT_TRUE(Tiene(Imprime("entrada", 12, *forma), " width=\"260\" height=\"26\" alt=\"\">"));
  Graba(carpeta.Ruta("datos/logo.png"), Png(40, 30));
  const std::string page = Imprime("entrada", 12, *forma);
  EXPECT_TRUE(Tiene(page, "src=\"data:image/png;base64,iVBORw0KGgoAAAANSUhEUgAAACgAAAAe"));
  EXPECT_TRUE(Tiene(page, " width=\"40\" height=\"30\""));
}

TEST_F(Formatos, AFileThatIsNoLogoCostsNoPage) {
  for (const std::string& bytes : {std::string(), std::string("GIF89a"), Png(0, 10),
                                   Png(10, 10).substr(0, 20), Png(10, 10) + std::string(3 << 20, 'x')}) {
    Graba(carpeta.Ruta("datos/logo.png"), bytes);
    EXPECT_FALSE(Tiene(Imprime("entrada", 12, *forma), "<img")) << bytes.size();
  }
  std::filesystem::remove(carpeta.Ruta("datos/logo.png"));
  std::filesystem::create_directory(carpeta.Ruta("datos/logo.png"));
  EXPECT_FALSE(Tiene(Imprime("entrada", 12, *forma), "<img"));
}

// ---- once more ----

TEST_F(Formatos, AStoredDocumentIsPrintedAgainByTheFormatOfItsKind) {
  const std::string path = anfitrion->Imprime(Tipo::Entrada, 12);
  EXPECT_EQ(path, carpeta.Ruta("datos/impresos/entrada-12.html").string());
  EXPECT_TRUE(Tiene(Lee(path), "Entrada de mercancía"));
  Sql("UPDATE defform SET Salidas = 'corto'");
  Graba(Plantilla("corto"), "{{titulo}} {{numero}}");
  EXPECT_EQ(Lee(anfitrion->Imprime(Tipo::Salida, 7)), "Salida de mercancía 7");
  EXPECT_EQ(impresora.ultima, "corto|7");
  EXPECT_EQ(impresora.paginas.size(), 2U);
  EXPECT_EQ(testigo.impresos, (std::vector<std::pair<std::string, int>>{{"entrada", 12}, {"corto", 7}}));
}

TEST_F(Formatos, WhatCannotBePrintedAgainIsSaidAndNothingIsHandedOver) {
  EXPECT_EQ(ErrorDe([&] { anfitrion->Imprime(Tipo::Salida, 12); }),
            "No se puede imprimir: no existe la salida 12");
  Sql("DELETE FROM defform");
  EXPECT_EQ(ErrorDe([&] { anfitrion->Imprime(Tipo::Entrada, 12); }),
            "No se ha definido el formato de impresión. El documento queda guardado.");
  EXPECT_TRUE(testigo.impresos.empty());
  EXPECT_TRUE(impresora.paginas.empty());
}

// ---- bars ----

// Bars and gaps of the picture, in narrow widths, read back from its rectangles.
std::vector<int> Anchos(const std::string& svg) {
  std::vector<int> widths;
  int end = -1;
  std::size_t at = 0;
  while ((at = svg.find("<rect x=\"", at)) != std::string::npos) {
    const int x = std::stoi(svg.substr(at + 9));
    const int width = std::stoi(svg.substr(svg.find("width=\"", at) + 7));
    if (end >= 0) widths.push_back(x - end);
    widths.push_back(width);
    end = x + width;
    ++at;
  }
  return widths;
}

TEST(CodigoDePrueba, EachCharacterHasNineElementsOfWhichThreeAreWide) {
  const std::string text = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ-";
  const auto widths = Anchos(CodigoDeBarras(text));
  ASSERT_EQ(widths.size(), (text.size() + 2) * 10 - 1);
  std::vector<std::vector<int>> seen;
  for (std::size_t i = 0; i < text.size() + 2; ++i) {
    const std::vector<int> character(widths.begin() + static_cast<long>(i) * 10,
                                     widths.begin() + static_cast<long>(i) * 10 + 9);
    EXPECT_EQ(std::count(character.begin(), character.end(), 5), 3) << i;
    EXPECT_EQ(std::count(character.begin(), character.end(), 2), 6) << i;
    if (i > 0 && i <= text.size()) {
      EXPECT_EQ(std::count(seen.begin(), seen.end(), character), 0) << text[i - 1];
    }
    seen.push_back(character);
  }
  EXPECT_EQ(seen.front(), seen.back());  // the mark of start and stop
}

// In the code's own system a digit has two wide bars, placed by its value (weights 1, 2, 4, 7, 0),
// and one wide gap; the second gap for digits.
TEST(CodigoDePrueba, TheWideBarsOfADigitAddUpToIt) {
  const int weights[] = {1, 2, 4, 7, 0};
  for (int digit = 0; digit < 10; ++digit) {
    const auto widths = Anchos(CodigoDeBarras(std::to_string(digit)));
    int sum = 0;
    for (int bar = 0; bar < 5; ++bar) {
      if (widths[10 + static_cast<std::size_t>(bar) * 2] == 5) sum += weights[bar];
    }
    EXPECT_EQ(sum, digit == 0 ? 11 : digit);
    EXPECT_EQ(widths[10 + 3], 5) << digit;
  }
}

TEST(CodigoDePrueba, OtherCharactersAreRefused) {
  for (const char* text : {"a", "*", "Ñ", "1 2"}) {
    EXPECT_NE(ErrorDe([&] { CodigoDeBarras(text); }), "(ningún error)") << text;
  }
}

}  // namespace
}  // namespace tarvik::host
