// Failures provoked step by step where a goods-out is written, posted, printed and corrected: one box and one
// entry of the day's log each, and the steps behind run on what is there.
#include "tests/goods_out/fallas.h"

namespace tarvik::tests {
namespace {

using namespace fallas_de_salida;  // NOLINT: the words of the table

const Caso kEscritura[] = {
    {
        .nombre = "HeaderNumber",
        .falla = "NuevoId",
        .reportan = {"CreaSalida", "CreaSalida*"},
        .dado = Fila,
        .cuando = Crea,
        .entonces = Base("SELECT salida FROM salidas", "(nada)"),
    },
    {
        .nombre = "HeaderProofOfNumber",
        .falla = ":SELECT salida FROM",
        .reportan = {"CreaSalida"},
        .dado = Fila,
        .cuando = Crea,
        .entonces = Base("SELECT salida FROM salidas", "1"),
    },
    {
        .nombre = "HeaderKind",
        .falla = "TipoSentencia",
        .reportan = {"CreaSalida"},
        .dado = Fila,
        .cuando = Crea,
        .entonces = Y({Base("SELECT COUNT(*) FROM salidas", "0"),
                       [](FallasDeSalida&, F& f) { EXPECT_EQ(f.Modo, "MODIFICACION"); }}),
    },
    {
        .nombre = "HeaderAllColumns",
        .falla = "AgregaCampo",
        .veces = 18,
        .reportan = Repite("CreaSalida", 18),
        .dado = Fila,
        .cuando = Crea,
        .entonces = Base("SELECT COUNT(*) FROM salidas", "0"),
    },
    {
        .nombre = "HeaderCondition",
        .falla = "Condicion",
        .reportan = {"CreaSalida"},
        .dado = Fila,
        .cuando = Crea,
        .entonces = Base("SELECT almt FROM salidas", "0"),
    },
    {
        .nombre = "HeaderRun",
        .falla = "Ejecuta",
        .reportan = {"CreaSalida"},
        .dado = Fila,
        .cuando = Crea,
        .entonces = [](FallasDeSalida&, F& f) { EXPECT_EQ(f.Caption(), "Salida: 1"); },
    },
    {
        .nombre = "HeaderReading",
        .falla = ":\\(\\(\\(salida\\) = 1",
        .reportan = {"CreaSalida"},
        .dado = Fila,
        .cuando = Crea,
        .entonces = Base("SELECT COUNT(*) FROM salidas", "1"),
    },

    {
        .nombre = "SaveFolio",
        .falla = "NuevoId",
        .reportan = {"SalvaSalida"},
        .dado = Documento,
        .cuando = Salva,
        .entonces = Base("SELECT folio FROM salidas", "0"),
    },
    {
        .nombre = "SaveKind",
        .falla = "TipoSentencia",
        .reportan = {"SalvaSalida"},
        .dado = Documento,
        .cuando = Salva,
        .entonces = Base("SELECT folio FROM salidas", "(nulo)"),
    },
    {
        .nombre = "SaveCondition",
        .falla = "Condicion",
        .reportan = {"SalvaSalida"},
        .dado = Documento,
        .cuando = Salva,
        .entonces = Base("SELECT folio FROM salidas", "(nulo)"),
    },
    {
        .nombre = "SaveAllColumns",
        .falla = "AgregaCampo",
        .veces = 24,
        .reportan = Repite("SalvaSalida", 24),
        .dado = Documento,
        .cuando = Salva,
        .entonces = Base("SELECT folio FROM salidas", "(nulo)"),
    },
    {
        .nombre = "SaveAmount",
        .falla = "ANumero",
        .reportan = {"SalvaSalida"},
        .dado = Documento,
        .cuando = Salva,
        .entonces = Y({Base("SELECT importe FROM salidas", "0"), Base("SELECT estado FROM salidas", "CO")}),
    },
    {
        .nombre = "SaveText",
        .falla = "TextoSql",
        .reportan = {"SalvaSalida"},
        .dado = Documento,
        .cuando = Salva,
        .entonces = Base("SELECT estado FROM salidas", "CO"),
    },
    {
        .nombre = "SaveUpdate",
        .falla = ":UPDATE salidas",
        .reportan = {"SalvaSalida"},
        .dado = Documento,
        .cuando = Salva,
        .entonces = Base("SELECT estado FROM salidas", "PE"),
    },
    {
        .nombre = "LinesUnreadCountAsNone",
        .falla = ":SELECT \\* FROM salpart",
        .reportan = {"SalvaPartidas", "SalvaPartidas*"},
        .dado = Documento,
        .cuando =
            [](FallasDeSalida&, F& f) {
              bool hay = true;
              f.SalvaPartidas(hay);
              EXPECT_FALSE(hay);
            },
        .entonces = Base(kRenglones, "1"),
    },
    {
        .nombre = "CountEndsWhereItFails",
        .falla = "EstaVacio",
        .reportan = {"CuantasPartidas"},
        .dado = Documento,
        .cuando = [](FallasDeSalida&, F& f) { EXPECT_EQ(f.CuantasPartidas(), 0); },
        .entonces = Base(kRenglones, "1"),
    },

    {
        .nombre = "PostingOneLine",
        .falla = "Afecta",
        .reportan = {"AfectaPartidas"},
        .dado = Leidas,
        .cuando = Afecta,
        .entonces = Y({Movimientos(2), Base("SELECT COUNT(*) FROM movsinv", "2")}),
    },
    {
        .nombre = "PostingEveryLine",
        .falla = "Afecta",
        .veces = 3,
        .reportan = Repite("AfectaPartidas", 3),
        .dado = Leidas,
        .cuando = Afecta,
        .entonces = Y({Movimientos(0), [](FallasDeSalida&, F& f) { EXPECT_EQ(f.Costo, 0); }}),
    },
    {
        .nombre = "PostingOutflowOfATransfer",
        .falla = "Afecta",
        .reportan = {"AfectaPartidas"},
        .dado = Traspaso,
        .cuando = Afecta,
        .entonces =
            Y({Movimientos(5), [](FallasDeSalida& e, F&) { EXPECT_EQ(e.Movido(0, "Operacion"), "T+"); }}),
    },
    {
        .nombre = "PostingHeaderUnreadPostsWithoutAFolio",
        .falla = ":FROM salidas WHERE salida = 1",
        .reportan = {"AfectaPartidas", "AfectaPartidas*", "AfectaPartidas*", "AfectaPartidas*"},
        .dado = Leidas,
        .cuando = Afecta,
        .entonces = Y(
            {Movimientos(3), [](FallasDeSalida& e, F&) { EXPECT_EQ(e.Movido(0, "Movimiento"), "(nada)"); }}),
    },
    {
        .nombre = "PostingWithoutReadLinesLeaves",
        .falla = "Nada",
        .reportan = {"AfectaPartidas*"},
        .dado =
            [](FallasDeSalida& e, F& f) {
              Leidas(e, f);
              f.rstPartidas = {};
            },
        .cuando = Afecta,
        .entonces = Movimientos(0),
    },
    {
        .nombre = "PostingTransferHook",
        .falla = "BuscaCatalogo",
        .reportan = {"AfectaPartidas"},
        .dado = Traspaso,
        .cuando = Afecta,
        .entonces = Movimientos(6),
    },
    {
        .nombre = "PostingPurchaseSums",
        .falla = ":SUM\\(cantidad\\)",
        .reportan = {"AfectaPartidas", "AfectaPartidas*"},
        .dado = Compra,
        .cuando = Afecta,
        .entonces = Base("SELECT COUNT(*) FROM compras2sucursal", "0"),
    },
    {
        .nombre = "PostingPurchaseLine",
        .falla = ":FROM compra2part",
        .reportan = {"AfectaPartidas", "AfectaPartidas*"},
        .dado = Compra,
        .cuando = Afecta,
        .entonces = Base("SELECT COUNT(*) FROM compras2sucursal", "1"),
    },
    {
        .nombre = "PostingPurchaseInsert",
        .falla = ":INSERT INTO compras2sucursal",
        .reportan = {"AfectaPartidas"},
        .dado = Compra,
        .cuando = Afecta,
        .entonces = Base("SELECT COUNT(*) FROM compras2sucursal", "1"),
    },

    {
        .nombre = "PrintFormatUnreadCountsAsNone",
        .falla = ":FROM defform",
        .reportan = {"ImprimeSalida", "ImprimeSalida*"},
        .dado = Documento,
        .cuando = Imprime,
        .entonces = Mensajes({mensaje::SinFormato}),
    },
    {
        .nombre = "PrintItself",
        .falla = "ImprimeDocumento",
        .reportan = {"ImprimeSalida"},
        .dado = Documento,
        .cuando = Imprime,
        .entonces = Mensajes({}),
    },

    {
        .nombre = "CellKind",
        .falla = "TipoSentencia",
        .reportan = {"SalvaCambios"},
        .dado = CeldaCorregida,
        .cuando = Celda1,
        .entonces = Base(kCantidad, "3"),
    },
    {
        .nombre = "CellCondition",
        .falla = "Condicion",
        .reportan = {"SalvaCambios"},
        .dado = CeldaCorregida,
        .cuando = Celda1,
        .entonces = Base(kCantidad, "3"),
    },
    {
        .nombre = "CellField",
        .falla = "AgregaCampo",
        .reportan = {"SalvaCambios"},
        .dado = CeldaCorregida,
        .cuando = Celda1,
        .entonces = Base(kCantidad, "3"),
    },
    {
        .nombre = "CellText",
        .falla = "TextoSql",
        .reportan = {"SalvaCambios"},
        .dado = CeldaCorregida,
        .cuando = Celda1,
        .entonces = Base(kCantidad, "9"),
    },
    {
        .nombre = "CellUpdate",
        .falla = ":UPDATE salpart",
        .reportan = {"SalvaCambios"},
        .dado = CeldaCorregida,
        .cuando = Celda1,
        .entonces = Y({Base(kCantidad, "3"),
                       [](FallasDeSalida&, F& f) { EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus()); }}),
    },

    {
        .nombre = "SendAgain",
        .falla = "BuscaCatalogo",
        .reportan = {"Command1_Click"},
        .dado = Nada,
        .cuando = [](FallasDeSalida&, F& f) { f.Command1_Click(); },
        .entonces = Nada,
    },
    {
        .nombre = "HelpKey",
        .falla = "BuscaCatalogo",
        .reportan = {"Form_KeyDown"},
        .dado = Nada,
        .cuando = [](FallasDeSalida&, F& f) { Escenario::Tecla(f, "F1"); },
        .entonces = Nada,
    },
};

class FallasDeEscrituraDeSalida : public FallasDeSalida {};

TEST_P(FallasDeEscrituraDeSalida, IsReportedOnceAndTheRestGoesOn) { Corre(); }

INSTANTIATE_TEST_SUITE_P(Writing, FallasDeEscrituraDeSalida, ::testing::ValuesIn(kEscritura), Nombre);

}  // namespace
}  // namespace tarvik::tests
