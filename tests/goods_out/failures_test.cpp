// Failures provoked step by step while a goods-out's lines are entered: one box and one entry of the day's
// log each, and the steps behind run on what is there. Whole events are in event_failures_test.cpp.
#include "tests/goods_out/fallas.h"

namespace tarvik::tests {
namespace {

using namespace fallas_de_salida;  // NOLINT: the words of the table

const Caso kLineas[] = {
    {
        .nombre = "LookupEmptyTestCountsAsEmpty",
        .falla = "EstaVacio",
        .reportan = {"PonDescripcion"},
        .dado = Articulo("A-100"),
        .cuando = Describe,
        .entonces = Campo(campo::Precio, ""),
    },
    {
        .nombre = "LookupWithoutArticleReadsAsUnknown",
        .falla = ":INNER JOIN",
        .reportan = {"PonDescripcion", "PonDescripcion*"},
        .dado = Articulo("A-100"),
        .cuando = Describe,
        .entonces = Campo(campo::Precio, ""),
    },
    {
        .nombre = "LookupKeepsTheArticleReadBefore",
        .falla = ":INNER JOIN",
        .reportan = {"PonDescripcion"},
        .dado =
            [](FallasDeSalida& e, F& f) {
              Fila(e, f);
              f.txtFields(campo::Articulo).Text("A-200");
            },
        .cuando = Describe,
        .entonces = Y({Campo(campo::Precio, "116.00"), Campo(campo::Descripcion, "Martillo de uña")}),
    },
    {
        .nombre = "LookupOfASecondKeyFindsNone",
        .falla = ":FROM clavesadd",
        .reportan = {"PonDescripcion", "PonDescripcion*"},
        .dado = Articulo("7501"),
        .cuando = Describe,
        .entonces = Y({Campo(campo::SegundaClave, ""), Campo(campo::Articulo, "7501")}),
    },
    {
        .nombre = "LookupPrice",
        .falla = "ANumero",
        .reportan = {"PonDescripcion"},
        .dado = Articulo("A-200"),
        .cuando = Describe,
        .entonces = Y({Campo(campo::Precio, ""), Campo(campo::Descripcion, "Clavo a granel"),
                       Campo(campo::Unidad, "KG"), Campo(campo::Cantidad, "1")}),
    },
    {
        .nombre = "LookupUnit",
        .falla = "TextoDe",
        .reportan = {"PonDescripcion"},
        .dado = Articulo("A-200"),
        .cuando = Describe,
        .entonces = Y({Campo(campo::Precio, "50.00"), Campo(campo::Unidad, "")}),
    },
    {
        .nombre = "LookupHook",
        .falla = "BuscaCatalogo",
        .reportan = {"PonDescripcion"},
        .dado = Articulo("A-200"),
        .cuando = Describe,
        .entonces = Campo(campo::Cantidad, "1"),
    },
    {
        .nombre = "LookupConsultation",
        .falla = "AbreConsulta",
        .reportan = {"PonDescripcion", "PonDescripcion*"},
        .dado = Articulo("A-200"),
        .cuando = Describe,
        .entonces = Campo(campo::Precio, ""),
    },

    {
        .nombre = "SecondKeyKeepsTheRecordReadBefore",
        .falla = ":FROM clavesadd",
        .reportan = {"TraeSegundaClave"},
        .dado =
            [](FallasDeSalida& e, F& f) {
              Presentacion(e, f);
              f.txtFields(campo::Articulo).Text("A-200");
            },
        .cuando = Resuelve,
        .entonces = Y({Campo(campo::Articulo, "A-100"), Campo(campo::Cantidad, "12")}),
    },
    {
        .nombre = "SecondKeysQuantityText",
        .falla = "TextoDe",
        .reportan = {"TraeSegundaClave"},
        .dado =
            [](FallasDeSalida& e, F& f) {
              Presentacion(e, f);
              f.txtFields(campo::Cantidad).Text("99");
              f.txtFields(campo::Presentaciones).Text("1");
              f.txtFields(campo::Cantidad).Text("99");
            },
        .cuando = Resuelve,
        .entonces = Y({Campo(campo::Cantidad, "99"), Campo(campo::UnidadDePresentacion, "CJ")}),
    },

    {
        .nombre = "CountEmptyTestEnds",
        .falla = "EstaVacio",
        .reportan = {"MultiplicaPorPresentacion"},
        .dado = Presentacion,
        .cuando = Multiplica,
        .entonces = Campo(campo::Cantidad, "24"),
    },
    {
        .nombre = "CountKeyUnreadEnds",
        .falla = ":FROM clavesadd",
        .reportan = {"MultiplicaPorPresentacion", "MultiplicaPorPresentacion*"},
        .dado = Presentacion,
        .cuando = Multiplica,
        .entonces = Campo(campo::Cantidad, "24"),
    },
    {
        .nombre = "CountStays",
        .falla = "ANumero",
        .reportan = {"MultiplicaPorPresentacion"},
        .dado = Presentacion,
        .cuando = Multiplica,
        .entonces = Campo(campo::Cantidad, "24"),
    },

    {
        .nombre = "RowEmptyTestRefuses",
        .falla = "EstaVacio",
        .reportan = {"LlenaPartida"},
        .dado = Fila,
        .cuando = Llena,
        .entonces = Mensajes({mensaje::SinArticulo}),
    },
    {
        .nombre = "RowArticleTestRefuses",
        .falla = "ExisteClave",
        .reportan = {"LlenaPartida"},
        .dado = Fila,
        .cuando = Llena,
        .entonces = Mensajes({mensaje::NoEsArticulo}),
    },
    {
        .nombre = "RowQuantityTestRefuses",
        .falla = "ANumero",
        .reportan = {"LlenaPartida"},
        .dado = Fila,
        .cuando = Llena,
        .entonces = Mensajes({mensaje::SinCantidad}),
    },
    {
        .nombre = "RowHookLetsTheLinePass",
        .falla = "BuscaCatalogo",
        .reportan = {"LlenaPartida"},
        .dado = Fila,
        .cuando = Llena,
        .entonces = Base(kRenglones, "1"),
    },
    {
        .nombre = "RowProductLineIsNotNeeded",
        .falla = ":SELECT linea",
        .reportan = {"LlenaPartida"},
        .dado = Fila,
        .cuando = Llena,
        .entonces = Base(kRenglones, "1"),
    },
    {
        .nombre = "RowArticleUnreadCountsAsControlled",
        .falla = ":SELECT \\* FROM prods",
        .reportan = {"LlenaPartida", "LlenaPartida*"},
        .dado = [](FallasDeSalida& e, F& f) { e.Fila(f, "A-100", "11"); },
        .cuando = Llena,
        .entonces = Base(kRenglones, "0"),
    },
    {
        .nombre = "RowStockUnreadCountsAsNone",
        .falla = ":FROM existenciaalmacen",
        .reportan = {"LlenaPartida", "LlenaPartida*"},
        .dado = FilaControlada,
        .cuando = Llena,
        .entonces = Base(kRenglones, "0"),
    },
    {
        .nombre = "RowSettingUnreadCountsWhatIsSetAside",
        .falla = "Parametros",
        .reportan = {"LlenaPartida"},
        .dado =
            [](FallasDeSalida& e, F& f) {
              e.Sql("UPDATE prods SET Por_Surt = 8");
              FilaControlada(e, f);
            },
        .cuando = Llena,
        .entonces = Base(kRenglones, "0"),
    },

    {
        .nombre = "LineHook",
        .falla = "BuscaCatalogo",
        .reportan = {"NuevaPartida"},
        .dado = Fila,
        .cuando = Linea1,
        .entonces = Base(kRenglones, "1"),
    },
    {
        .nombre = "LineLastUnreadMakesANewOne",
        .falla = ":\\)\\) AND id_salida",
        .reportan = {"NuevaPartida", "NuevaPartida*"},
        .dado = FilaIgual,
        .cuando = Linea1,
        .entonces = Base(kRenglones, "2"),
    },
    {
        .nombre = "LineSumNotStored",
        .falla = ":UPDATE salpart",
        .reportan = {"NuevaPartida"},
        .dado = FilaIgual,
        .cuando = Linea1,
        .entonces = Y({Base(kCantidad, "3"), Cuadricula(1, columna_salida::Cantidad, "5")}),
    },
    {
        .nombre = "LineSumWithoutItsNumberIsNoStatement",
        .falla = "NumeroSql",
        .reportan = {"NuevaPartida", "NuevaPartida*"},
        .dado = FilaIgual,
        .cuando = Linea1,
        .entonces = Y({Base(kCantidad, "3"), Cuadricula(1, columna_salida::Cantidad, "5")}),
    },
    {
        .nombre = "LineSumWithoutItsText",
        .falla = "FormateaCantidad",
        .reportan = {"NuevaPartida"},
        .dado = FilaIgual,
        .cuando = Linea1,
        .entonces = Base(kCantidad, "5"),
    },

    {
        .nombre = "MakingKind",
        .falla = "TipoSentencia",
        .reportan = {"CreaPartida"},
        .dado = OtraFila,
        .cuando = Linea1,
        .entonces = Y({Base(kRenglones, "1"), Cuadricula(2, columna_salida::Articulo, "A-200")}),
    },
    {
        .nombre = "MakingNumber",
        .falla = "NuevoId",
        .reportan = {"CreaPartida"},
        .dado = OtraFila,
        .cuando = Linea1,
        .entonces = Y({Base("SELECT articulo FROM salpart WHERE id_salida = 0", "A-200"),
                       Cuadricula(2, columna_salida::IdSalida, "0")}),
    },
    {
        .nombre = "MakingProofOfNumber",
        .falla = ":SELECT id_salida",
        .reportan = {"CreaPartida", "CreaPartida*"},
        .dado = OtraFila,
        .cuando = Linea1,
        .entonces = Base(kRenglones, "2"),
    },
    {
        .nombre = "MakingAllColumns",
        .falla = "AgregaCampo",
        .veces = 14,
        .reportan = Repite("CreaPartida", 14),
        .dado = OtraFila,
        .cuando = Linea1,
        .entonces = Y({Base(kRenglones, "1"), Cuadricula(2, columna_salida::Articulo, "A-200")}),
    },
    {
        .nombre = "MakingText",
        .falla = "TextoSql",
        .reportan = {"CreaPartida"},
        .dado = OtraFila,
        .cuando = Linea1,
        .entonces = Base(kRenglones, "2"),
    },
    {
        .nombre = "MakingRun",
        .falla = "Ejecuta",
        .reportan = {"CreaPartida"},
        .dado = OtraFila,
        .cuando = Linea1,
        .entonces = Y({Base(kRenglones, "1"), Cuadricula(2, columna_salida::Articulo, "A-200"),
                       Campo(campo::Total, "448")}),
    },
    {
        .nombre = "MakingStockUnread",
        .falla = ":FROM existenciaalmacen",
        .reportan = {"CreaPartida", "CreaPartida*"},
        .dado = OtraFila,
        .cuando = Linea1,
        .entonces = Y({Base(kRenglones, "2"), Cuadricula(2, columna_salida::ExistenciaDelAlmacen, ""),
                       Cuadricula(2, columna_salida::Existencia, "-2")}),
    },
    {
        .nombre = "MakingWithoutHeaderIsRefusedByTheBase",
        .falla = ":INSERT INTO salidas",
        .reportan = {"CreaSalida", "CreaPartida*", "CreaPartida*"},
        .dado = Fila,
        .cuando = Linea1,
        .entonces = Base(kRenglones, "0"),
    },

    {
        .nombre = "TotalsEndWhereTheyFail",
        .falla = "EstaVacio",
        .reportan = {"CalculaImportes"},
        .dado = Documento,
        .cuando = Calcula,
        .entonces = Y({Campo(campo::Total, "0"), Campo(campo::Renglones, "1")}),
    },
    {
        .nombre = "TotalsKeepAnAmountThatFails",
        .falla = "ANumero",
        .reportan = {"CalculaImportes"},
        .dado = Documento,
        .cuando = Calcula,
        .entonces = Campo(campo::Total, "348"),
    },

    {
        .nombre = "EditHook",
        .falla = "BuscaCatalogo",
        .reportan = {"MSFlexGridEdit"},
        .dado = Documento,
        .cuando = Edita(32),
        .entonces = [](FallasDeSalida&, F& f) { EXPECT_TRUE(f.txtEdit.Visible()); },
    },
    {
        .nombre = "EditFreeRowTestEnds",
        .falla = "EstaVacio",
        .reportan = {"MSFlexGridEdit"},
        .dado = Documento,
        .cuando = Edita('7'),
        .entonces = [](FallasDeSalida&, F& f) { EXPECT_FALSE(f.txtEdit.Visible()); },
    },
    {
        .nombre = "EditFilterRefuses",
        .falla = "TeclaNumerica",
        .reportan = {"MSFlexGridEdit"},
        .dado = Documento,
        .cuando = Edita('7'),
        .entonces = [](FallasDeSalida&, F& f) { EXPECT_FALSE(f.txtEdit.Visible()); },
    },
    {
        .nombre = "CommitThatCannotBeConfirmedIsDropped",
        .falla = "ANumero",
        .reportan = {"fg2_GotFocus"},
        .dado =
            [](FallasDeSalida& e, F& f) {
              Documento(e, f);
              f.ClickCell(f.fg2, 1, 1);
              Escenario::Tecla(f, "9");
            },
        .cuando = [](FallasDeSalida&, F& f) { Escenario::Tecla(f, "Enter"); },
        .entonces = Y({Cuadricula(1, columna_salida::Cantidad, "3"), Base(kCantidad, "3")}),
    },
    {
        .nombre = "RemovalOfALineUnreadEnds",
        .falla = ":SELECT \\* FROM salpart WHERE id",
        .reportan = {"fg2_KeyDown", "fg2_KeyDown*"},
        .dado = Documento,
        .cuando = Borra,
        .entonces = Y({Base(kRenglones, "1"), Cuadricula(1, columna_salida::Articulo, "A-100")}),
    },
    {
        .nombre = "RemovalNeedsNoArticle",
        .falla = ":SELECT \\* FROM prods",
        .reportan = {"fg2_KeyDown"},
        .dado = Documento,
        .cuando = Borra,
        .entonces = Base(kRenglones, "0"),
    },
    {
        .nombre = "RemovalThatIsRefusedLeavesTheGridAllTheSame",
        .falla = ":DELETE",
        .reportan = {"fg2_KeyDown"},
        .dado = Documento,
        .cuando = Borra,
        .entonces = Y({Base(kRenglones, "1"), Cuadricula(1, columna_salida::Articulo, "")}),
    },
};

class FallasDeLineas : public FallasDeSalida {};

TEST_P(FallasDeLineas, IsReportedOnceAndTheRestGoesOn) { Corre(); }

INSTANTIATE_TEST_SUITE_P(Line, FallasDeLineas, ::testing::ValuesIn(kLineas), Nombre);

}  // namespace
}  // namespace tarvik::tests
