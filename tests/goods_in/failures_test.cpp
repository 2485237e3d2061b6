// Failures provoked step by step while a line is entered: one box and one entry of the day's log
// each, and the statements behind it run on what is there. Header, posting and grid have a file of
// their own.
#include "goods_in/columnas.h"
#include "tests/goods_in/fallas.h"

namespace tarvik::tests {
namespace {

using namespace fallas;  // NOLINT: the words of the table

const Caso kLineas[] = {
    {
        .nombre = "LookupEmptyTestCountsAsEmpty",
        .falla = "EstaVacio",
        .reportan = {"PonDescripcion"},
        .dado = Fila,
        .cuando = Describe,
        .entonces = Y({Campo(campo::Precio, ""), Campo(campo::Cantidad, ""), Campo(campo::Descripcion, "")}),
    },
    {
        .nombre = "LookupWithoutArticleReadsAsUnknown",
        .falla = ":INNER JOIN impuestos",
        .reportan = {"PonDescripcion", "PonDescripcion*"},
        .dado = Articulo("A-100"),
        .cuando = Describe,
        .entonces = Y({Campo(campo::Precio, ""), Campo(campo::Descripcion, "")}),
    },
    {
        .nombre = "LookupKeepsTheArticleReadBefore",
        .falla = ":INNER JOIN impuestos",
        .reportan = {"PonDescripcion"},
        .dado =
            [](Fallas& e, F& f) {
              Fila(e, f);
              f.txtFields(campo::Articulo).Text("A-200");
            },
        .cuando = Describe,
        .entonces = Y({Campo(campo::Precio, "116.00"),
                       [](Fallas& e, F&) { EXPECT_EQ(e.Claves(), (Textos{"ENTRADA009"})); }}),
    },
    {
        .nombre = "LookupOfASecondKeyFindsNone",
        .falla = ":FROM clavesadd",
        .reportan = {"PonDescripcion", "PonDescripcion*"},
        .dado = Articulo("NADA"),
        .cuando = Describe,
        .entonces = Y({Campo(campo::Precio, ""), Campo(campo::SegundaClave, "")}),
    },
    {
        .nombre = "LookupPrice",
        .falla = "ANumero",
        .reportan = {"PonDescripcion"},
        .dado = Articulo("A-200"),
        .cuando = Describe,
        .entonces = Y({Campo(campo::Precio, ""), Campo(campo::Descripcion, "Clavo a granel"),
                       Campo(campo::Unidad, "KG")}),
    },
    {
        .nombre = "LookupDescription",
        .falla = "TextoDe",
        .reportan = {"PonDescripcion"},
        .dado = Articulo("A-200"),
        .cuando = Describe,
        .entonces =
            Y({Campo(campo::Precio, "50.00"), Campo(campo::Descripcion, ""), Campo(campo::Unidad, "KG")}),
    },
    {
        .nombre = "LookupDescriptionAndUnit",
        .falla = "TextoDe",
        .veces = 2,
        .reportan = {"PonDescripcion", "PonDescripcion"},
        .dado = Articulo("A-200"),
        .cuando = Describe,
        .entonces =
            Y({Campo(campo::Precio, "50.00"), Campo(campo::Descripcion, ""), Campo(campo::Unidad, "")}),
    },
    {
        .nombre = "LookupHook",
        .falla = "BuscaCatalogo",
        .reportan = {"PonDescripcion"},
        .dado = Articulo("A-200"),
        .cuando = Describe,
        .entonces = Campo(campo::Unidad, "KG"),
    },
    {
        .nombre = "LookupSecondKeysArticle",
        .falla = "TextoDe",
        .reportan = {"PonDescripcion"},
        .dado = Articulo("7501"),
        .cuando = Describe,
        .entonces = Y(
            {Campo(campo::Articulo, "A-100"), Campo(campo::Cantidad, "12"), Campo(campo::Precio, "116.00")}),
    },

    {
        .nombre = "SecondKeyEmptyTestEmptiesAndGoesOn",
        .falla = "EstaVacio",
        .reportan = {"TraeSegundaClave"},
        .dado =
            [](Fallas& e, F& f) {
              Presentacion(e, f);
              f.txtFields(campo::Presentaciones).Text("");
              f.txtFields(campo::Dato1).Text("x");
            },
        .cuando = Resuelve,
        .entonces = Y({Campo(campo::Dato1, ""), Campo(campo::Articulo, "A-100")}),
    },
    {
        .nombre = "SecondKeyUnread",
        .falla = ":FROM clavesadd",
        .reportan = {"TraeSegundaClave", "TraeSegundaClave*"},
        .dado =
            [](Fallas& e, F& f) {
              Presentacion(e, f);
              f.txtFields(campo::Presentaciones).Text("");
              f.txtFields(campo::Articulo).Text("A-200");
              f.txtFields(campo::Dato1).Text("x");
            },
        .cuando = Resuelve,
        .entonces = Y({Campo(campo::Dato1, ""), Campo(campo::Articulo, "A-200")}),
    },
    {
        .nombre = "SecondKeysArticleUnread",
        .falla = ":SELECT articulo,descrip",
        .reportan = {"TraeSegundaClave", "TraeSegundaClave*", "TraeSegundaClave*"},
        .dado =
            [](Fallas& e, F& f) {
              Presentacion(e, f);
              f.txtFields(campo::Articulo).Text("A-200");
            },
        .cuando = Resuelve,
        .entonces =
            Y({Campo(campo::Articulo, "A-200"), Campo(campo::Precio, "50.00"), Campo(campo::Cantidad, "24")}),
    },

    {
        .nombre = "QuantityWithoutKeyIsZero",
        .falla = ":FROM clavesadd",
        .reportan = {"CalculaCantidad", "CalculaCantidad*"},
        .dado = Presentacion,
        .cuando = Calcula,
        .entonces = Campo(campo::Cantidad, "0"),
    },
    {
        .nombre = "QuantityStays",
        .falla = "ANumero",
        .reportan = {"CalculaCantidad"},
        .dado = Presentacion,
        .cuando = Calcula,
        .entonces = Campo(campo::Cantidad, "24"),
    },
    {
        .nombre = "QuantityStaysWithoutText",
        .falla = "TextoDe",
        .reportan = {"CalculaCantidad"},
        .dado = Presentacion,
        .cuando = Calcula,
        .entonces = Campo(campo::Cantidad, "24"),
    },

    {
        .nombre = "AmountTestOfKeyCountsAsTrue",
        .falla = "EstaVacio",
        .reportan = {"MultiplicaPrecio"},
        .dado =
            [](Fallas& e, F& f) {
              Presentacion(e, f);
              f.txtFields(campo::ImporteDelRenglon).Text("");
            },
        .cuando = Multiplica,
        .entonces = Campo(campo::ImporteDelRenglon, "2,784.00"),
    },
    {
        .nombre = "AmountTestOfQuantityCountsAsTrue",
        .falla = "ANumero",
        .reportan = {"MultiplicaPrecio"},
        .dado =
            [](Fallas& e, F& f) {
              Presentacion(e, f);
              f.txtFields(campo::ImporteDelRenglon).Text("");
            },
        .cuando = Multiplica,
        .entonces = Campo(campo::ImporteDelRenglon, "2,784.00"),
    },
    {
        .nombre = "AmountTestAndAmount",
        .falla = "ANumero",
        .veces = 2,
        .reportan = {"MultiplicaPrecio", "MultiplicaPrecio"},
        .dado =
            [](Fallas& e, F& f) {
              Presentacion(e, f);
              f.txtFields(campo::ImporteDelRenglon).Text("");
            },
        .cuando = Multiplica,
        .entonces = Campo(campo::ImporteDelRenglon, ""),
    },

    {
        .nombre = "RowEmptyTestRefuses",
        .falla = "EstaVacio",
        .reportan = {"LlenaPartida"},
        .dado = Fila,
        .cuando = Llena,
        .entonces = Y({Mensajes({mensaje::SinArticulo}), Base(kRenglones, "0"), Campo(campo::Cantidad, "3")}),
    },
    {
        .nombre = "RowArticleTestRefuses",
        .falla = "ExisteClave",
        .reportan = {"LlenaPartida"},
        .dado = Fila,
        .cuando = Llena,
        .entonces = Y({Mensajes({mensaje::NoEsArticulo}), Base(kRenglones, "0")}),
    },
    {
        .nombre = "RowQuantityTestRefuses",
        .falla = "ANumero",
        .reportan = {"LlenaPartida"},
        .dado = Fila,
        .cuando = Llena,
        .entonces = Y({Mensajes({mensaje::SinCantidad}), Base(kRenglones, "0")}),
    },
    {
        .nombre = "RowLocationIsNotNeeded",
        .falla = ":SELECT ubicacion",
        .reportan = {"LlenaPartida"},
        .dado = Fila,
        .cuando = Llena,
        .entonces = Y({Base(kRenglones, "1"), Campo(campo::Articulo, "")}),
    },
    {
        .nombre = "RowMessageText",
        .falla = "TraeMensaje",
        .reportan = {"LlenaPartida"},
        .dado = Concepto,
        .cuando = Llena,
        .entonces = [](Fallas& e, F&) { EXPECT_EQ(e.bitacora.mensajes.back().texto, ""); },
    },
    {
        .nombre = "RowMessageBox",
        .falla = "MuestraMensaje",
        .reportan = {"LlenaPartida"},
        .dado = Concepto,
        .cuando = Llena,
        .entonces =
            [](Fallas& e, F& f) {
              EXPECT_EQ(e.bitacora.mensajes.size(), 1u);
              EXPECT_TRUE(f.txtFields(campo::Articulo).HasFocus());
            },
    },

    {
        .nombre = "LineHook",
        .falla = "BuscaCatalogo",
        .reportan = {"NuevaPartida"},
        .dado = Fila,
        .cuando = Renglon1,
        .entonces = Base(kRenglones, "1"),
    },
    {
        .nombre = "LineHeaderUnread",
        .falla = ":WHERE \\(\\(\\(entrada",
        .reportan = {"NuevaPartida"},
        .dado = Fila,
        .cuando = Renglon1,
        .entonces = Base("SELECT tipo_doc FROM entpart", "COM"),
    },
    {
        .nombre = "LineKind",
        .falla = "TipoSentencia",
        .reportan = {"NuevaPartida"},
        .dado = SegundaFila,
        .cuando = Renglon1,
        .entonces = Y({Base(kRenglones, "1"), EnCuadricula(2, columna_entrada::Articulo, "A-200")}),
    },
    {
        .nombre = "LineNumber",
        .falla = "NuevoId",
        .reportan = {"NuevaPartida"},
        .dado = SegundaFila,
        .cuando = Renglon1,
        .entonces = Y({Base("SELECT articulo FROM entpart WHERE id_entrada = 0", "A-200"),
                       EnCuadricula(2, columna_entrada::IdEntrada, "0")}),
    },
    {
        .nombre = "LineAllColumns",
        .falla = "AgregaCampo",
        .veces = 15,
        .reportan = Repite("NuevaPartida", 15),
        .dado = SegundaFila,
        .cuando = Renglon1,
        .entonces = Y({Base(kRenglones, "1"), EnCuadricula(2, columna_entrada::Articulo, "A-200")}),
    },
    {
        .nombre = "LineQuantity",
        .falla = "ANumero",
        .reportan = {"NuevaPartida"},
        .dado = SegundaFila,
        .cuando = Renglon1,
        .entonces = Y({Base("SELECT cantidad FROM entpart WHERE articulo = 'A-200'", "(nulo)"),
                       EnCuadricula(2, columna_entrada::Cantidad, "2")}),
    },
    {
        .nombre = "LineSecondKey",
        .falla = "TextoDe",
        .reportan = {"NuevaPartida"},
        .dado = SegundaFila,
        .cuando = Renglon1,
        .entonces = Base("SELECT claveadd FROM entpart WHERE articulo = 'A-200'", "(nulo)"),
    },
    {
        .nombre = "LineText",
        .falla = "TextoSql",
        .reportan = {"NuevaPartida"},
        .dado = SegundaFila,
        .cuando = Renglon1,
        .entonces = Base(kRenglones, "2"),
    },
    {
        .nombre = "LineRun",
        .falla = "Ejecuta",
        .reportan = {"NuevaPartida"},
        .dado = SegundaFila,
        .cuando = Renglon1,
        .entonces = Y({Base(kRenglones, "1"), EnCuadricula(2, columna_entrada::Articulo, "A-200"),
                       Campo(campo::Total, "448")}),
    },
    {
        .nombre = "LineInsert",
        .falla = ":INSERT INTO entpart",
        .reportan = {"NuevaPartida"},
        .dado = SegundaFila,
        .cuando = Renglon1,
        .entonces = Y({Base(kRenglones, "1"), EnCuadricula(2, columna_entrada::Articulo, "A-200"),
                       Campo(campo::Total, "448")}),
    },
    {
        .nombre = "LineFreeRowIsNeverTakenFromAnother",
        .falla = "EstaVacio",
        .reportan = {"NuevaPartida"},
        .dado = SegundaFila,
        .cuando = Renglon1,
        .entonces = Y({EnCuadricula(1, columna_entrada::Articulo, "A-100"),
                       EnCuadricula(2, columna_entrada::Articulo, "A-200"), Base(kRenglones, "2")}),
    },
    {
        .nombre = "LineWithoutHeaderIsRefusedByTheBase",
        .falla = ":INSERT INTO entradas",
        .reportan = {"CreaEntrada", "NuevaPartida*", "NuevaPartida*", "NuevaPartida*"},
        .dado = Fila,
        .cuando = Llena,
        .entonces = Y({Base(kRenglones, "0"), Base(kDocumentos, "0"), Campo(campo::Articulo, "")}),
    },
    {
        .nombre = "LineAndLocationAndTextAreThreeReports",
        .falla = ":SELECT ubicacion|INSERT INTO ent",
        .veces = 3,
        .reportan = {"LlenaPartida", "CreaEntrada", "NuevaPartida*", "NuevaPartida*", "NuevaPartida"},
        .dado = Fila,
        .cuando = Llena,
        .entonces = Base(kRenglones, "0"),
    },
};

class FallasDeRenglones : public Fallas {};

TEST_P(FallasDeRenglones, IsReportedOnceAndTheRestGoesOn) { Corre(); }

INSTANTIATE_TEST_SUITE_P(Step, FallasDeRenglones, ::testing::ValuesIn(kLineas), Nombre);

}  // namespace
}  // namespace tarvik::tests
