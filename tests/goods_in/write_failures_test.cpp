// Failures provoked step by step where the document is written, posted, printed and corrected: one
// box and one entry of the day's log each, and the statements behind it run on what is there.
#include "goods_in/columnas.h"
#include "tests/goods_in/fallas.h"

namespace tarvik::tests {
namespace {

using namespace fallas;  // NOLINT: the words of the table

const Caso kCreacion[] = {
    // A document without a number is refused by the base.
    {
        .nombre = "HeaderNumber",
        .falla = "NuevoId",
        .reportan = {"CreaEntrada", "CreaEntrada*"},
        .dado = Fila,
        .cuando = Crea,
        .entonces = Y({Base("SELECT entrada FROM entradas", "(nada)"),
                       [](Fallas&, F& f) { EXPECT_EQ(f.Modo, "MODIFICACION"); }}),
    },
    {
        .nombre = "HeaderKind",
        .falla = "TipoSentencia",
        .reportan = {"CreaEntrada"},
        .dado = Fila,
        .cuando = Crea,
        .entonces = Y({Base(kDocumentos, "0"), [](Fallas&, F& f) { EXPECT_EQ(f.Caption(), "Entrada: 1"); }}),
    },
    {
        .nombre = "HeaderAllColumns",
        .falla = "AgregaCampo",
        .veces = 15,
        .reportan = Repite("CreaEntrada", 15),
        .dado = Fila,
        .cuando = Crea,
        .entonces = Base(kDocumentos, "0"),
    },
    {
        .nombre = "HeaderAmount",
        .falla = "ANumero",
        .reportan = {"CreaEntrada"},
        .dado = Fila,
        .cuando = Crea,
        .entonces =
            Y({Base("SELECT importe FROM entradas", "(nulo)"), Base("SELECT almacen FROM entradas", "1")}),
    },
    {
        .nombre = "HeaderWarehouse",
        .falla = "TextoDe",
        .reportan = {"CreaEntrada"},
        .dado = Fila,
        .cuando = Crea,
        .entonces =
            Y({Base("SELECT almacen FROM entradas", "(nulo)"), Base("SELECT estado FROM entradas", "PE")}),
    },
    {
        .nombre = "HeaderCondition",
        .falla = "Condicion",
        .reportan = {"CreaEntrada"},
        .dado = Fila,
        .cuando = Crea,
        .entonces = Base(kDocumentos, "1"),
    },
    {
        .nombre = "HeaderText",
        .falla = "TextoSql",
        .reportan = {"CreaEntrada"},
        .dado = Fila,
        .cuando = Crea,
        .entonces = Base(kDocumentos, "1"),
    },
    {
        .nombre = "HeaderRun",
        .falla = "Ejecuta",
        .reportan = {"CreaEntrada"},
        .dado = Fila,
        .cuando = Crea,
        .entonces = Y({Base(kDocumentos, "0"), [](Fallas&, F& f) { EXPECT_EQ(f.Modo, "MODIFICACION"); }}),
    },
    {
        .nombre = "HeaderInsert",
        .falla = ":INSERT INTO entradas",
        .reportan = {"CreaEntrada"},
        .dado = Fila,
        .cuando = Crea,
        .entonces = Base(kDocumentos, "0"),
    },
    {
        .nombre = "HeaderReading",
        .falla = ":SELECT \\* FROM entradas WHERE entrada = 1",
        .reportan = {"CreaEntrada"},
        .dado = Fila,
        .cuando = Crea,
        .entonces = Y({Base(kDocumentos, "1"), [](Fallas&, F& f) { EXPECT_TRUE(f.rstEntrada->Eof()); }}),
    },
};

const Caso kGrabacion[] = {
    {
        .nombre = "SaveKind",
        .falla = "TipoSentencia",
        .reportan = {"SalvaEntrada"},
        .dado = Documento,
        .cuando = Salva,
        .entonces = Base("SELECT ocupado FROM entradas", "1"),
    },
    {
        .nombre = "SaveCondition",
        .falla = "Condicion",
        .reportan = {"SalvaEntrada"},
        .dado =
            [](Fallas& e, F& f) {
              Documento(e, f);
              e.Sql("INSERT INTO entradas (entrada, tipo_doc) VALUES (77, 'VIE')");
            },
        .cuando = Salva,
        .entonces = Y({Base("SELECT ocupado FROM entradas WHERE entrada = 1", "1"),
                       Base("SELECT tipo_doc FROM entradas WHERE entrada = 77", "VIE")}),
    },
    {
        .nombre = "SaveConcept",
        .falla = "AgregaCampo",
        .reportan = {"SalvaEntrada"},
        .dado =
            [](Fallas& e, F& f) {
              Documento(e, f);
              f.txtFields(campo::Concepto).Text("A++");
            },
        .cuando = Salva,
        .entonces =
            Y({Base("SELECT tipo_doc FROM entradas", "COM"), Base("SELECT ocupado FROM entradas", "0")}),
    },
    {
        .nombre = "SaveAllColumns",
        .falla = "AgregaCampo",
        .veces = 12,
        .reportan = Repite("SalvaEntrada", 12),
        .dado = Documento,
        .cuando = Salva,
        .entonces = Base("SELECT ocupado FROM entradas", "1"),
    },
    {
        .nombre = "SaveAmount",
        .falla = "ANumero",
        .reportan = {"SalvaEntrada"},
        .dado = Documento,
        .cuando = Salva,
        .entonces = Y({Base("SELECT importe FROM entradas", "0"), Base("SELECT ocupado FROM entradas", "0")}),
    },
    {
        .nombre = "SaveText",
        .falla = "TextoSql",
        .reportan = {"SalvaEntrada"},
        .dado = Documento,
        .cuando = Salva,
        .entonces = Base("SELECT ocupado FROM entradas", "0"),
    },
    {
        .nombre = "SaveRun",
        .falla = "Ejecuta",
        .reportan = {"SalvaEntrada"},
        .dado = Documento,
        .cuando = Salva,
        .entonces = Base("SELECT ocupado FROM entradas", "1"),
    },
    {
        .nombre = "SaveUpdate",
        .falla = ":UPDATE entradas",
        .reportan = {"SalvaEntrada"},
        .dado = Documento,
        .cuando = Salva,
        .entonces = Base("SELECT ocupado FROM entradas", "1"),
    },
    {
        .nombre = "SaveNewNumber",
        .falla = "NuevoId",
        .reportan = {"SalvaEntrada", "SalvaEntrada*"},
        .dado = Fila,
        .cuando = Salva,
        .entonces = Base("SELECT entrada FROM entradas", "(nada)"),
    },
    {
        .nombre = "SaveProofOfNumber",
        .falla = ":SELECT entrada FROM",
        .reportan = {"SalvaEntrada", "SalvaEntrada*"},
        .dado = Fila,
        .cuando = Salva,
        .entonces = Base("SELECT entrada FROM entradas", "1"),
    },
    {
        .nombre = "SaveInsert",
        .falla = ":INSERT INTO entradas",
        .reportan = {"SalvaEntrada"},
        .dado = Fila,
        .cuando = Salva,
        .entonces = Y({Base(kDocumentos, "0"), [](Fallas&, F& f) { EXPECT_EQ(f.Modo, "MODIFICACION"); }}),
    },
};

const Caso kAfectacion[] = {
    {
        .nombre = "LinesUnreadCountAsNone",
        .falla = ":SELECT \\* FROM entpart",
        .reportan = {"SalvaPartidas", "SalvaPartidas*"},
        .dado = Documento,
        .cuando = [](Fallas&, F& f) { EXPECT_FALSE(f.SalvaPartidas()); },
        .entonces = Base(kRenglones, "1"),
    },
    {
        .nombre = "CountEndsWhereItFails",
        .falla = "EstaVacio",
        .reportan = {"CuantasPartidas"},
        .dado = Documento,
        .cuando = [](Fallas&, F& f) { EXPECT_EQ(f.CuantasPartidas(), 0); },
        .entonces = Base(kRenglones, "1"),
    },

    {
        .nombre = "PostingHeaderUnread",
        .falla = ":SELECT \\* FROM entradas",
        .reportan = {"AfectaPartidas"},
        .dado = Leidas,
        .cuando = Afecta,
        .entonces = [](Fallas& e, F&) { EXPECT_EQ(e.bitacora.movimientos.size(), 3u); },
    },
    {
        .nombre = "PostingSecondKey",
        .falla = "TextoDe",
        .reportan = {"AfectaPartidas"},
        .dado = Leidas,
        .cuando = Afecta,
        .entonces = Base("SELECT COUNT(*) FROM movsinv", "3"),
    },
    {
        .nombre = "PostingFirstLine",
        .falla = "Afecta",
        .reportan = {"AfectaPartidas"},
        .dado = Leidas,
        .cuando = Afecta,
        .entonces = Y({Base("SELECT COUNT(*) FROM movsinv", "2"),
                       [](Fallas&, F& f) { EXPECT_EQ(f.Costo, 100 + 116); }}),
    },
    {
        .nombre = "PostingEveryLine",
        .falla = "Afecta",
        .veces = 3,
        .reportan = Repite("AfectaPartidas", 3),
        .dado = Leidas,
        .cuando = Afecta,
        .entonces = Y({Base("SELECT COUNT(*) FROM movsinv", "0"),
                       [](Fallas&, F& f) {
                         EXPECT_EQ(f.Costo, 0);
                         EXPECT_EQ(f.RichTextBox1.Text(), "Afectando: A-100 3");
                       }}),
    },

    {
        .nombre = "PrintFormatUnread",
        .falla = ":FROM defform",
        .reportan = {"ImprimeEntrada", "ImprimeEntrada*"},
        .dado = Documento,
        .cuando = [](Fallas&, F& f) { f.ImprimeEntrada(); },
        .entonces = Mensajes({mensaje::SinFormato}),
    },
    {
        .nombre = "PrintDocument",
        .falla = "ImprimeDocumento",
        .reportan = {"ImprimeEntrada"},
        .dado = Documento,
        .cuando = [](Fallas&, F& f) { f.ImprimeEntrada(); },
        .entonces = Y({Mensajes({}), [](Fallas& e, F&) { EXPECT_EQ(e.bitacora.impresos.size(), 1U); }}),
    },
};

const Caso kCuadricula[] = {
    {
        .nombre = "CellKind",
        .falla = "TipoSentencia",
        .reportan = {"SalvaCambios"},
        .dado = Celda9,
        .cuando = SalvaCelda,
        .entonces = Base("SELECT cantidad FROM entpart", "3"),
    },
    {
        .nombre = "CellCondition",
        .falla = "Condicion",
        .reportan = {"SalvaCambios"},
        .dado = Celda9,
        .cuando = SalvaCelda,
        .entonces = Base("SELECT cantidad FROM entpart", "3"),
    },
    {
        .nombre = "CellField",
        .falla = "AgregaCampo",
        .reportan = {"SalvaCambios"},
        .dado = Celda9,
        .cuando = SalvaCelda,
        .entonces = Base("SELECT cantidad FROM entpart", "3"),
    },
    {
        .nombre = "CellNumber",
        .falla = "ANumero",
        .reportan = {"SalvaCambios"},
        .dado = Celda9,
        .cuando = SalvaCelda,
        .entonces = Base("SELECT cantidad FROM entpart", "3"),
    },
    {
        .nombre = "CellText",
        .falla = "TextoSql",
        .reportan = {"SalvaCambios"},
        .dado = Celda9,
        .cuando = SalvaCelda,
        .entonces = Base("SELECT cantidad FROM entpart", "9"),
    },
    {
        .nombre = "CellRun",
        .falla = "Ejecuta",
        .reportan = {"SalvaCambios"},
        .dado = Celda9,
        .cuando = SalvaCelda,
        .entonces = Base("SELECT cantidad FROM entpart", "3"),
    },
    {
        .nombre = "CellUpdate",
        .falla = ":UPDATE entpart",
        .reportan = {"SalvaCambios"},
        .dado = Celda9,
        .cuando = SalvaCelda,
        .entonces = Base("SELECT cantidad FROM entpart", "3"),
    },

    {
        .nombre = "TotalEndsWhereItFails",
        .falla = "EstaVacio",
        .reportan = {"CalculaImportes"},
        .dado = Documento,
        .cuando = [](Fallas&, F& f) { f.CalculaImportes(); },
        .entonces = Y({Campo(campo::Total, "0"), EnCuadricula(1, columna_entrada::Importe, "348")}),
    },
    {
        .nombre = "TotalKeepsTheAmountItHad",
        .falla = "ANumero",
        .reportan = {"CalculaImportes"},
        .dado = Celda9,
        .cuando = [](Fallas&, F& f) { f.CalculaImportes(); },
        .entonces = Y({Campo(campo::Total, "348"), EnCuadricula(1, columna_entrada::Importe, "348")}),
    },

    {
        .nombre = "EditFreeRowTestEnds",
        .falla = "EstaVacio",
        .reportan = {"MSFlexGridEdit"},
        .dado = Documento,
        .cuando = Edita('7'),
        .entonces = [](Fallas&, F& f) { EXPECT_FALSE(f.txtEdit.Visible()); },
    },
    {
        .nombre = "EditKeyTestRefuses",
        .falla = "TeclaNumerica",
        .reportan = {"MSFlexGridEdit"},
        .dado = Documento,
        .cuando = Edita('7'),
        .entonces = [](Fallas&, F& f) { EXPECT_FALSE(f.txtEdit.Visible()); },
    },
    {
        .nombre = "EditHook",
        .falla = "BuscaCatalogo",
        .reportan = {"MSFlexGridEdit"},
        .dado = Documento,
        .cuando = Edita(32),
        .entonces = [](Fallas&, F& f) { EXPECT_TRUE(f.txtEdit.Visible()); },
    },

    {
        .nombre = "RemovalBuilder",
        .falla = "Limpia",
        .reportan = {"fg2_KeyDown"},
        .dado = Documento,
        .cuando = Borra,
        .entonces = Base(kRenglones, "0"),
    },
    {
        .nombre = "RemovalText",
        .falla = "SentenciaDirecta",
        .reportan = {"fg2_KeyDown"},
        .dado = Documento,
        .cuando = Borra,
        .entonces = Y({Base(kRenglones, "1"), EnCuadricula(1, columna_entrada::Articulo, ""),
                       Campo(campo::Total, "0")}),
    },
    {
        .nombre = "RemovalRun",
        .falla = "Ejecuta",
        .reportan = {"fg2_KeyDown"},
        .dado = Documento,
        .cuando = Borra,
        .entonces = Y({Base(kRenglones, "1"), EnCuadricula(1, columna_entrada::Articulo, "")}),
    },
    {
        .nombre = "RemovalDelete",
        .falla = ":DELETE FROM entpart",
        .reportan = {"fg2_KeyDown"},
        .dado = Documento,
        .cuando = Borra,
        .entonces = Y({Base(kRenglones, "1"), EnCuadricula(1, columna_entrada::Articulo, ""),
                       [](Fallas&, F& f) { EXPECT_EQ(f.fg2.Rows(), 5000); }}),
    },
};

const Caso kEncabezado[] = {
    {
        .nombre = "ConceptEmptyTest",
        .falla = "EstaVacio",
        .reportan = {"TraeConcepto"},
        .dado = Concepto,
        .cuando = [](Fallas&, F& f) { f.TraeConcepto(); },
        .entonces = [](Fallas&, F& f) { EXPECT_EQ(f.RichTextBox3.Text(), ""); },
    },
    {
        .nombre = "ConceptUnread",
        .falla = ":FROM tipominv",
        .reportan = {"TraeConcepto", "TraeConcepto*"},
        .dado = Concepto,
        .cuando = [](Fallas&, F& f) { f.TraeConcepto(); },
        .entonces = [](Fallas&, F& f) { EXPECT_EQ(f.RichTextBox3.Text(), ""); },
    },
    {
        .nombre = "ConceptDate",
        .falla = "FechaDeTrabajo",
        .reportan = {"TraeConcepto"},
        .dado =
            [](Fallas& e, F& f) {
              Concepto(e, f);
              f.DTPicker1.Value(data::Date{2020, 1, 2});
            },
        .cuando = [](Fallas&, F& f) { f.TraeConcepto(); },
        .entonces =
            [](Fallas&, F& f) {
              EXPECT_EQ(f.RichTextBox3.Text(), "Compra a proveedor");
              EXPECT_EQ(f.DTPicker1.Value()->Iso(), "2020-01-02");
            },
    },

    {
        .nombre = "CheckConceptEmpty",
        .falla = "EstaVacio",
        .reportan = {"ValidaTab1"},
        .dado = Concepto,
        .cuando = [](Fallas&, F& f) { EXPECT_FALSE(f.Valida()); },
        .entonces = Mensajes({mensaje::EntradaSinConcepto}),
    },
    {
        .nombre = "CheckConceptUnread",
        .falla = ":SELECT tipo_movim",
        .reportan = {"ValidaTab1", "ValidaTab1*"},
        .dado = Concepto,
        .cuando = [](Fallas&, F& f) { EXPECT_FALSE(f.Valida()); },
        .entonces = Mensajes({mensaje::EntradaNoExisteConcepto}),
    },
    {
        .nombre = "CheckWarehouse",
        .falla = "ExisteClave",
        .reportan = {"ValidaTab1"},
        .dado = Concepto,
        .cuando = [](Fallas&, F& f) { EXPECT_FALSE(f.Valida()); },
        .entonces = Mensajes({mensaje::NoExisteAlmacen}),
    },
};

class FallasDeEscritura : public Fallas {};

TEST_P(FallasDeEscritura, IsReportedOnceAndTheRestGoesOn) { Corre(); }

INSTANTIATE_TEST_SUITE_P(Creation, FallasDeEscritura, ::testing::ValuesIn(kCreacion), Nombre);
INSTANTIATE_TEST_SUITE_P(Save, FallasDeEscritura, ::testing::ValuesIn(kGrabacion), Nombre);
INSTANTIATE_TEST_SUITE_P(Posting, FallasDeEscritura, ::testing::ValuesIn(kAfectacion), Nombre);
INSTANTIATE_TEST_SUITE_P(Grid, FallasDeEscritura, ::testing::ValuesIn(kCuadricula), Nombre);
INSTANTIATE_TEST_SUITE_P(Header, FallasDeEscritura, ::testing::ValuesIn(kEncabezado), Nombre);

}  // namespace
}  // namespace tarvik::tests
