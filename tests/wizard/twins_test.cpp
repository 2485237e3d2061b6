// Where the two wizards differ by what looks like an accident: their fields and the making of their lines.
// What they share is in no row. Grid and document: twins_document_test.cpp.
#include "tests/wizard/twins.h"

namespace tarvik::tests {
namespace {

const Diferencia kCampos[] = {
    Igual("EnteringAFieldTrimsItsText", "  7 ", "7",
          [](Gemelos&, auto& f) {
            f.Enter(f.txtFields(campo::Cantidad));
            f.txtFields(campo::Dato1).Text("  7 ");
            f.Enter(f.txtFields(campo::Dato1));
            return T(f, campo::Dato1);
          }),
    Igual("TheDescriptionOfTheConceptIsTrimmed", " Con blancos ", "Con blancos",
          [](Gemelos&, auto& f) {
            f.txtFields(campo::Concepto).Text(Tabla(f, "EB", "SB"));
            return f.RichTextBox3.Text();
          }),
    Igual("TheStatementOfClosedPeriodsEnds",
          "SELECT * FROM movsinv WHERE f_movim > '2024-03-05' And cerrado <> 0 ",
          "SELECT * FROM movsinv WHERE f_movim > '2024-03-05' And cerrado <> 0",
          [](Gemelos& g, auto& f) {
            bool valida = false;
            f.ValidaFecha(valida);
            return g.Ultima();
          }),
    Igual("TheConceptIsCheckedByOneColumnOrByAll",
          "SELECT tipo_movim FROM tipominv WHERE tipo_movim = 'COM' AND ent_sal = 'E'",
          "SELECT * FROM tipominv WHERE tipo_movim = 'VTA' AND ent_sal = 'S'",
          [](Gemelos& g, auto& f) {
            f.Valida();
            return g.Ultima();
          }),
    Igual("MessagesOfAMissingAndAnUnknownConcept", "341 342", "338 339",
          [](Gemelos& g, auto& f) {
            f.txtFields(campo::Concepto).Text("");
            f.Valida();
            f.txtFields(campo::Concepto).Text("NADA");
            f.Valida();
            return g.Avisos();
          }),
    Igual("AnyFieldEnteredOrLeftFiresHooks", "ENTRADA007 ENTRADA008", "",
          [](Gemelos& g, auto& f) {
            f.Enter(f.txtFields(campo::Cantidad));
            g.Olvida();
            f.Enter(f.txtFields(campo::Precio));
            return g.Todas();
          }),
    Igual("LeavingTheArticleFires", "ENTRADA012 ENTRADA009 ENTRADA007 ENTRADA008", "SALIDAS013 SALIDAS011",
          [](Gemelos& g, auto& f) {
            f.txtFields(campo::Articulo).Text("A-100");
            f.Enter(f.txtFields(campo::Cantidad));
            return g.Todas();
          }),
    Igual("TheHookOfAFoundArticleFindsTheHooksValueEmptied", "(nada)", "5",
          [](Gemelos& g, auto& f) {
            g.anfitrion->Ambiente().ValorDeGancho(5);
            f.txtFields(campo::Articulo).Text("A-100");
            f.PonDescripcion();
            const data::Value& valor = g.bitacora.ganchos.back().second;
            return valor.IsNull() ? std::string("(nada)") : data::ToText(valor);
          }),
    Igual("UpLeadsToTheLastLine", "no", "yes",
          [](Gemelos&, auto& f) {
            Uno(f, "A-100", "1");
            Escenario::Tecla(f, "Up", f.txtFields(campo::Cantidad));
            return SiNo(f.fg2.HasFocus());
          }),
    Igual("F5OutsideTheFieldsFinishes", "", "713",
          [](Gemelos& g, auto& f) {
            Uno(f, "A-100", "1");
            f.Enter(f.fg2);
            Escenario::Tecla(f, "F5");
            return g.Avisos();
          }),
    Igual("F2OutsideTheFieldsGoesToTheArticle", "no", "yes",
          [](Gemelos&, auto& f) {
            f.Enter(f.Check3);
            Escenario::Tecla(f, "F2");
            return SiNo(f.txtFields(campo::Articulo).HasFocus());
          }),
    Igual("F1AsksForHelp", "", "AYUDA",
          [](Gemelos& g, auto& f) {
            Escenario::Tecla(f, "F1");
            return g.Todas();
          }),
    Igual("TheTitleOfTheConceptsPicker", "BuscadorCatalogo|Conceptos de entrada al inventario|txtFields(0)",
          "BuscadorCatalogo|Conceptos de salidas de inventario|txtFields(0)",
          [](Gemelos& g, auto& f) {
            f.txtFields_DblClick(0);
            return g.bitacora.selectores.back();
          }),
};

const Diferencia kRenglones[] = {
    Igual("AnEmptyArticleEmptiesTheEntryRow", "|", "116.00|3",
          [](Gemelos&, auto& f) {
            f.txtFields(campo::Articulo).Text("A-100");
            f.PonDescripcion();
            f.txtFields(campo::Cantidad).Text("3");
            f.txtFields(campo::Articulo).Text("");
            f.PonDescripcion();
            return T(f, campo::Precio) + "|" + T(f, campo::Cantidad);
          }),
    Igual("AnUnknownArticleEmptiesThePrice", "", "116.00",
          [](Gemelos&, auto& f) {
            f.txtFields(campo::Articulo).Text("A-100");
            f.PonDescripcion();
            f.txtFields(campo::Articulo).Text("NADA");
            f.PonDescripcion();
            return T(f, campo::Precio);
          }),
    Igual("TheKeyIsTrimmedForTheLookup", "Martillo de uña", "",
          [](Gemelos&, auto& f) {
            f.txtFields(campo::Articulo).Text(" A-100 ");
            f.PonDescripcion();
            return T(f, campo::Descripcion);
          }),
    Igual("TheArticlesDescriptionIsTrimmed", "Tornillo", " Tornillo ",
          [](Gemelos&, auto& f) {
            f.txtFields(campo::Articulo).Text("B-1");
            f.PonDescripcion();
            return T(f, campo::Descripcion);
          }),
    Igual("TheLookupIsAConsultation", "0", "1",
          [](Gemelos& g, auto& f) {
            g.bitacora.FallaServicio("AbreConsulta", 1, "falla provocada");
            f.txtFields(campo::Articulo).Text("A-100");
            f.PonDescripcion();
            int provocadas = 0;
            for (const auto& reporte : g.Reportes())
              provocadas += reporte.find("provocada") != std::string::npos;
            return std::to_string(provocadas);
          }),
    Igual("AMissingQuantityBecomesOne", "", "1",
          [](Gemelos&, auto& f) {
            f.txtFields(campo::Articulo).Text("A-100");
            f.PonDescripcion();
            return T(f, campo::Cantidad);
          }),
    Igual("WithTheReaderOnTheLookupPutsAQuantityOfOneOverAnother", "1", "9",
          [](Gemelos&, auto& f) {
            f.Check4.Value(1);
            f.txtFields(campo::Cantidad).Text("9");
            f.txtFields(campo::Articulo).Text("A-100");
            f.PonDescripcion();
            return T(f, campo::Cantidad);
          }),
    Igual("AScannedBoxOfTwelveIsALineOf", "1", "12",
          [](Gemelos& g, auto& f) {
            f.Check4.Value(1);
            Escenario::Teclea(f, f.txtFields(campo::Articulo), "7501");
            Escenario::Tecla(f, "Enter");
            return g.Uno("SELECT cantidad FROM " + Tabla(f, "entpart", "salpart"));
          }),
    Igual("ClearingTheSecondKeyClearsTheArticle", "A-100|PZA", "|",
          [](Gemelos&, auto& f) {
            f.txtFields(campo::SegundaClave).Text("7501");
            f.txtFields(campo::SegundaClave).Text("");
            return T(f, campo::Articulo) + "|" + T(f, campo::Unidad);
          }),
    Igual("ASecondKeyInItsFieldFillsItsDataAndItsPresentation", "|||", "Caja|Roja|1|CJ",
          [](Gemelos&, auto& f) {
            f.txtFields(campo::SegundaClave).Text("7501");
            return T(f, campo::Dato1) + "|" + T(f, campo::Dato2) + "|" + T(f, campo::Presentaciones) + "|" +
                   T(f, campo::UnidadDePresentacion);
          }),
    Igual("ACountWithoutAKeyMakesTheQuantityZero", "0", "4",
          [](Gemelos&, auto& f) {
            f.txtFields(campo::Cantidad).Text("4");
            f.txtFields(campo::Presentaciones).Text("3");
            return T(f, campo::Cantidad);
          }),
    Igual("AFreeQuantityStillFollowsTheCount", "30", "4",
          [](Gemelos&, auto& f) {
            f.txtFields(campo::SegundaClave).Text("7502");
            f.txtFields(campo::Cantidad).Text("4");
            f.txtFields(campo::Presentaciones).Text("3");
            return T(f, campo::Cantidad);
          }),
    Igual("ALineAtPriceZeroIsMade", "238|0", "|1",
          [](Gemelos& g, auto& f) {
            Uno(f, "B-1", "2");
            return g.Avisos() + "|" + g.Uno("SELECT COUNT(*) FROM " + Tabla(f, "entpart", "salpart"));
          }),
    Igual("TheSameArticleTwiceIsSoManyLines", "2", "1",
          [](Gemelos& g, auto& f) {
            Uno(f, "A-100", "2");
            Uno(f, "A-100", "2");
            return g.Uno("SELECT COUNT(*) FROM " + Tabla(f, "entpart", "salpart"));
          }),
    Igual("ARoutineThatRefusesTheLineLeavesTheEntryRow", "|0", "A-100|0",
          [](Gemelos& g, auto& f) {
            g.anfitrion->Gancho(Tabla(f, "ENTRADA005", "SALIDAS010"),
                                [&f](forms::Form&, host::AmbienteLocal&) { f.CancelaProceso = true; });
            Uno(f, "A-100", "2");
            return T(f, campo::Articulo) + "|" +
                   g.Uno("SELECT COUNT(*) FROM " + Tabla(f, "entpart", "salpart"));
          }),
    Igual("TheHookOfALineRunsBeforeItOrAfter", "0", "1",
          [](Gemelos& g, auto& f) {
            std::string visto;
            const std::string cuenta = "SELECT COUNT(*) FROM " + Tabla(f, "entpart", "salpart");
            g.anfitrion->Gancho(Tabla(f, "ENTRADA005", "SALIDAS008"),
                                [&](forms::Form&, host::AmbienteLocal&) { visto = g.Uno(cuenta); });
            Uno(f, "A-100", "2");
            return visto;
          }),
    Igual("PendingEventsRunBeforeTheEntryRowIsEmptied", "", "A-100",
          [](Gemelos& g, auto& f) {
            std::string visto;
            f.txtFields(campo::Articulo).Text("A-100");
            f.PonDescripcion();
            f.txtFields(campo::Cantidad).Text("2");
            g.plataforma.Post([&] { visto = T(f, campo::Articulo); });
            f.LlenaPartida();
            g.plataforma.ProcessEvents();
            return visto;
          }),
    Igual("TheGridShowsTheRowAsTypedOrAsPlainNumbers", "1,500|116.00", "1500|116",
          [](Gemelos&, auto& f) {
            Uno(f, "A-100", "1,500");
            return C(f, 1, 1) + "|" + C(f, 1, std::is_same_v<decltype(f), E&> ? 2 : 3);
          }),
    Igual("ThePresentationStoredIsTheUnitTrimmedOrTheDatum", "CJ", " Caja ",
          [](Gemelos& g, auto& f) {
            f.txtFields(campo::SegundaClave).Text("7501");
            f.txtFields(campo::Dato1).Text(" Caja ");
            f.txtFields(campo::UnidadDePresentacion).Text(" CJ ");
            f.txtFields(campo::Cantidad).Text("2");
            f.LlenaPartida();
            return g.Uno("SELECT prdescrip FROM " + Tabla(f, "entpart", "salpart"));
          }),
    Igual("TheDescriptionStored", "Martillo de uña", "Martillo de uña ",
          [](Gemelos& g, auto& f) {
            Uno(f, "A-100", "2");
            return g.Uno("SELECT observ FROM " + Tabla(f, "entpart", "salpart"));
          }),
    Igual("TheNumberOfALineIsProvedFree", "no", "yes",
          [](Gemelos& g, auto& f) {
            Uno(f, "A-100", "2");
            const std::string prueba = "SELECT " + Tabla(f, "id_entrada", "id_salida") + " FROM";
            return SiNo(g.CuentaSentencias(prueba) > 0);
          }),
    Igual("TheRowFromWhichTheGridScrolls", "10", "7",
          [](Gemelos&, auto& f) { return std::to_string(f.NumeroDePartidas); }),
    Igual("ScrollingKeepsSoManyRowsAbove", "7", "3",
          [](Gemelos&, auto& f) {
            for (int i = 1; i <= 20; ++i) f.fg2.TextMatrix(i, 0, "X");
            Uno(f, "A-100", "2");
            return std::to_string(f.fg2.Row() - f.fg2.TopRow());
          }),
};

TEST_P(Gemelos, GoodsIn) { EXPECT_EQ(GetParam().entra(*this, Entrada()), GetParam().entradas); }
TEST_P(Gemelos, GoodsOut) { EXPECT_EQ(GetParam().sale(*this, Salida()), GetParam().salidas); }

INSTANTIATE_TEST_SUITE_P(Fields, Gemelos, ::testing::ValuesIn(kCampos), NombreDeDiferencia);
INSTANTIATE_TEST_SUITE_P(Lines, Gemelos, ::testing::ValuesIn(kRenglones), NombreDeDiferencia);

}  // namespace
}  // namespace tarvik::tests
