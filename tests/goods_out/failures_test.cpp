// Failures provoked step by step while a goods-out is entered, corrected, written and posted: one box and
// one entry of the day's log each, and the steps behind run on what is there. Whole events are in
// event_failures_test.cpp.
#include "tests/goods_out/support.h"

namespace tarvik::tests {
namespace {

class FallasDeSalida;
using F = frmSalidasWizard;
using Textos = std::vector<std::string>;
using Paso = std::function<void(FallasDeSalida&, F&)>;

struct Caso {
  std::string nombre;
  std::string servicio;  // an operation by its name; with ":" in front, a pattern of statements
  int veces;
  Textos reportes;  // the procedures, in order; with "*" one that fails as a consequence
  Paso prepara;
  Paso actua;
  Paso queda;
};

class FallasDeSalida : public EscenarioDeSalidas, public ::testing::WithParamInterface<Caso> {
 public:
  void Corre() {
    const Caso& caso = GetParam();
    F& f = ConConcepto();
    caso.prepara(*this, f);
    ASSERT_TRUE(Reportes().empty());
    Olvida();
    if (caso.servicio[0] == ':') {
      bitacora.Falla(caso.servicio.substr(1), caso.veces, "falla provocada");
    } else {
      bitacora.FallaServicio(caso.servicio, caso.veces, "falla provocada");
    }
    caso.actua(*this, f);
    Textos vistos;
    std::string diario;
    for (const auto& mensaje : bitacora.mensajes) {
      if (mensaje.texto.find("Ocurrió un error:") == std::string::npos) continue;
      const std::string principio = "14:03:22 Ocurrió un error:\r\nModule: frmSalidasWiz\r\nFunction: ";
      ASSERT_TRUE(mensaje.texto.starts_with(principio)) << mensaje.texto;
      std::string nombre = mensaje.texto.substr(
          principio.size(), mensaje.texto.find("\r\n", principio.size()) - principio.size());
      if (!mensaje.texto.ends_with("\r\nDescription: falla provocada código duro: 0\r\n")) nombre += "*";
      vistos.push_back(nombre);
      EXPECT_EQ(mensaje.clase, "caja");
      EXPECT_EQ(mensaje.estilo, 0);
      diario += mensaje.texto;
    }
    EXPECT_EQ(vistos, caso.reportes);
    EXPECT_EQ(ArchivoDelDia(), diario);
    EXPECT_TRUE(no_atrapados.empty()) << ::testing::PrintToString(no_atrapados);
    caso.queda(*this, f);
    EXPECT_TRUE(f.Open());
  }
};

std::string Nombre(const ::testing::TestParamInfo<Caso>& info) { return info.param.nombre; }

// ---- states to start from ----
void Nada(FallasDeSalida&, F&) {}
Paso Articulo(const char* clave) {
  return [clave](FallasDeSalida&, F& f) { f.txtFields(4).Text(clave); };
}
void Fila(FallasDeSalida& e, F& f) { e.Fila(f, "A-100", "3"); }
void FilaControlada(FallasDeSalida& e, F& f) {
  e.ControlaExistencia();
  Fila(e, f);
}
void Presentacion(FallasDeSalida&, F& f) {  // two boxes of twelve
  f.txtFields(24).Text("7501");
  f.txtFields(28).Text("2");
}
void Documento(FallasDeSalida& e, F& f) { e.Linea(f, "A-100", "3"); }
void OtraFila(FallasDeSalida& e, F& f) {
  Documento(e, f);
  e.Fila(f, "A-200", "2");
}
void FilaIgual(FallasDeSalida& e, F& f) {
  Documento(e, f);
  e.Fila(f, "A-100", "2");
}
void Leidas(FallasDeSalida& e, F& f) {  // three lines, saved and read for posting
  Documento(e, f);
  e.Linea(f, "A-200", "2");
  e.Linea(f, "A-100", "1");
  f.SalvaSalida();
  bool hay = false;
  f.SalvaPartidas(hay);
}
void Traspaso(FallasDeSalida& e, F& f) {
  f.SSCheck1.Value(1);
  f.txtFields(2).Text("2");
  Leidas(e, f);
}
void Compra(FallasDeSalida& e, F& f) {
  f.txtFields(12).Text("55");
  f.txtFields(3).Text("NTE");
  Leidas(e, f);
}
void CeldaCorregida(FallasDeSalida& e, F& f) {
  Documento(e, f);
  f.fg2.MoveTo(1, 1);
  f.fg2.Text("9");
}

// ---- what is done ----
void Describe(FallasDeSalida&, F& f) { f.PonDescripcion(); }
void Resuelve(FallasDeSalida&, F& f) { f.TraeSegundaClave(); }
void Multiplica(FallasDeSalida&, F& f) { f.MultiplicaPorPresentacion(); }
void Llena(FallasDeSalida&, F& f) { f.LlenaPartida(); }
void Linea1(FallasDeSalida&, F& f) { f.NuevaPartida(); }
void Crea(FallasDeSalida&, F& f) { f.CreaSalida(); }
void Salva(FallasDeSalida&, F& f) { f.SalvaSalida(); }
void Afecta(FallasDeSalida&, F& f) { f.AfectaPartidas(); }
void Celda1(FallasDeSalida&, F& f) { f.SalvaCambios(); }
void Calcula(FallasDeSalida&, F& f) { f.CalculaImportes(); }
void Imprime(FallasDeSalida&, F& f) { f.ImprimeSalida(); }
void Borra(FallasDeSalida&, F& f) {
  f.fg2.MoveTo(1, 0);
  int tecla = forms::kKeyDelete;
  f.fg2_KeyDown(tecla, 0);
}
Paso Edita(int tecla) {
  return [tecla](FallasDeSalida&, F& f) {
    f.fg2.MoveTo(1, 1);
    f.MSFlexGridEdit(f.fg2, f.txtEdit, tecla);
  };
}

// ---- what must be there afterwards ----
Paso Campo(int campo, const std::string& texto) {
  return [=](FallasDeSalida&, F& f) { EXPECT_EQ(f.txtFields(campo).Text(), texto) << campo; };
}
Paso Base(const std::string& consulta, const std::string& valor) {
  return [=](FallasDeSalida& e, F&) { EXPECT_EQ(e.Uno(consulta), valor) << consulta; };
}
Paso Cuadricula(int renglon, int columna, const std::string& texto) {
  return [=](FallasDeSalida&, F& f) { EXPECT_EQ(f.fg2.TextMatrix(renglon, columna), texto) << columna; };
}
Paso Mensajes(std::vector<int> numeros) {
  return [=](FallasDeSalida& e, F&) { EXPECT_EQ(e.Numeros(), numeros); };
}
Paso Movimientos(std::size_t cuantos) {
  return [=](FallasDeSalida& e, F&) { EXPECT_EQ(e.bitacora.movimientos.size(), cuantos); };
}
Paso Y(std::initializer_list<Paso> pasos) {
  return [pasos = std::vector<Paso>(pasos)](FallasDeSalida& e, F& f) {
    for (const auto& paso : pasos) paso(e, f);
  };
}
Textos Repite(const char* procedimiento, int veces) {
  return Textos(static_cast<std::size_t>(veces), procedimiento);
}
constexpr const char* kRenglones = "SELECT COUNT(*) FROM salpart";
constexpr const char* kCantidad = "SELECT cantidad FROM salpart WHERE id_salida = 1";

const Caso kLineas[] = {
    {"LookupEmptyTestCountsAsEmpty",
     "EstaVacio",
     1,
     {"PonDescripcion"},
     Articulo("A-100"),
     Describe,
     Campo(6, "")},
    {"LookupWithoutArticleReadsAsUnknown",
     ":INNER JOIN",
     1,
     {"PonDescripcion", "PonDescripcion*"},
     Articulo("A-100"),
     Describe,
     Campo(6, "")},
    {"LookupKeepsTheArticleReadBefore",
     ":INNER JOIN",
     1,
     {"PonDescripcion"},
     [](FallasDeSalida& e, F& f) {
       Fila(e, f);
       f.txtFields(4).Text("A-200");
     },
     Describe,
     Y({Campo(6, "116.00"), Campo(1, "Martillo de uña")})},
    {"LookupOfASecondKeyFindsNone",
     ":FROM clavesadd",
     1,
     {"PonDescripcion", "PonDescripcion*"},
     Articulo("7501"),
     Describe,
     Y({Campo(24, ""), Campo(4, "7501")})},
    {"LookupPrice",
     "ANumero",
     1,
     {"PonDescripcion"},
     Articulo("A-200"),
     Describe,
     Y({Campo(6, ""), Campo(1, "Clavo a granel"), Campo(27, "KG"), Campo(5, "1")})},
    {"LookupUnit",
     "TextoDe",
     1,
     {"PonDescripcion"},
     Articulo("A-200"),
     Describe,
     Y({Campo(6, "50.00"), Campo(27, "")})},
    {"LookupHook", "BuscaCatalogo", 1, {"PonDescripcion"}, Articulo("A-200"), Describe, Campo(5, "1")},
    {"LookupConsultation",
     "AbreConsulta",
     1,
     {"PonDescripcion", "PonDescripcion*"},
     Articulo("A-200"),
     Describe,
     Campo(6, "")},

    {"SecondKeyKeepsTheRecordReadBefore",
     ":FROM clavesadd",
     1,
     {"TraeSegundaClave"},
     [](FallasDeSalida& e, F& f) {
       Presentacion(e, f);
       f.txtFields(4).Text("A-200");
     },
     Resuelve,
     Y({Campo(4, "A-100"), Campo(5, "12")})},
    {"SecondKeysQuantityText",
     "TextoDe",
     1,
     {"TraeSegundaClave"},
     [](FallasDeSalida& e, F& f) {
       Presentacion(e, f);
       f.txtFields(5).Text("99");
       f.txtFields(28).Text("1");
       f.txtFields(5).Text("99");
     },
     Resuelve,
     Y({Campo(5, "99"), Campo(29, "CJ")})},

    {"CountEmptyTestEnds",
     "EstaVacio",
     1,
     {"MultiplicaPorPresentacion"},
     Presentacion,
     Multiplica,
     Campo(5, "24")},
    {"CountKeyUnreadEnds",
     ":FROM clavesadd",
     1,
     {"MultiplicaPorPresentacion", "MultiplicaPorPresentacion*"},
     Presentacion,
     Multiplica,
     Campo(5, "24")},
    {"CountStays", "ANumero", 1, {"MultiplicaPorPresentacion"}, Presentacion, Multiplica, Campo(5, "24")},

    {"RowEmptyTestRefuses", "EstaVacio", 1, {"LlenaPartida"}, Fila, Llena, Mensajes({234})},
    {"RowArticleTestRefuses", "ExisteClave", 1, {"LlenaPartida"}, Fila, Llena, Mensajes({235})},
    {"RowQuantityTestRefuses", "ANumero", 1, {"LlenaPartida"}, Fila, Llena, Mensajes({236})},
    {"RowHookLetsTheLinePass", "BuscaCatalogo", 1, {"LlenaPartida"}, Fila, Llena, Base(kRenglones, "1")},
    {"RowProductLineIsNotNeeded", ":SELECT linea", 1, {"LlenaPartida"}, Fila, Llena, Base(kRenglones, "1")},
    {"RowArticleUnreadCountsAsControlled",
     ":SELECT \\* FROM prods",
     1,
     {"LlenaPartida", "LlenaPartida*"},
     [](FallasDeSalida& e, F& f) { e.Fila(f, "A-100", "11"); },
     Llena,
     Base(kRenglones, "0")},
    {"RowStockUnreadCountsAsNone",
     ":FROM existenciaalmacen",
     1,
     {"LlenaPartida", "LlenaPartida*"},
     FilaControlada,
     Llena,
     Base(kRenglones, "0")},
    {"RowSettingUnreadCountsWhatIsSetAside",
     "Parametros",
     1,
     {"LlenaPartida"},
     [](FallasDeSalida& e, F& f) {
       e.Sql("UPDATE prods SET Por_Surt = 8");
       FilaControlada(e, f);
     },
     Llena,
     Base(kRenglones, "0")},

    {"LineHook", "BuscaCatalogo", 1, {"NuevaPartida"}, Fila, Linea1, Base(kRenglones, "1")},
    {"LineLastUnreadMakesANewOne",
     ":\\)\\) AND id_salida",
     1,
     {"NuevaPartida", "NuevaPartida*"},
     FilaIgual,
     Linea1,
     Base(kRenglones, "2")},
    {"LineSumNotStored",
     ":UPDATE salpart",
     1,
     {"NuevaPartida"},
     FilaIgual,
     Linea1,
     Y({Base(kCantidad, "3"), Cuadricula(1, 1, "5")})},
    {"LineSumWithoutItsNumberIsNoStatement",
     "NumeroSql",
     1,
     {"NuevaPartida", "NuevaPartida*"},
     FilaIgual,
     Linea1,
     Y({Base(kCantidad, "3"), Cuadricula(1, 1, "5")})},
    {"LineSumWithoutItsText",
     "FormateaCantidad",
     1,
     {"NuevaPartida"},
     FilaIgual,
     Linea1,
     Base(kCantidad, "5")},

    {"MakingKind",
     "TipoSentencia",
     1,
     {"CreaPartida"},
     OtraFila,
     Linea1,
     Y({Base(kRenglones, "1"), Cuadricula(2, 0, "A-200")})},
    {"MakingNumber",
     "NuevoId",
     1,
     {"CreaPartida"},
     OtraFila,
     Linea1,
     Y({Base("SELECT articulo FROM salpart WHERE id_salida = 0", "A-200"), Cuadricula(2, 6, "0")})},
    {"MakingProofOfNumber",
     ":SELECT id_salida",
     1,
     {"CreaPartida", "CreaPartida*"},
     OtraFila,
     Linea1,
     Base(kRenglones, "2")},
    {"MakingAllColumns", "AgregaCampo", 14, Repite("CreaPartida", 14), OtraFila, Linea1,
     Y({Base(kRenglones, "1"), Cuadricula(2, 0, "A-200")})},
    {"MakingText", "TextoSql", 1, {"CreaPartida"}, OtraFila, Linea1, Base(kRenglones, "2")},
    {"MakingRun",
     "Ejecuta",
     1,
     {"CreaPartida"},
     OtraFila,
     Linea1,
     Y({Base(kRenglones, "1"), Cuadricula(2, 0, "A-200"), Campo(11, "448")})},
    {"MakingStockUnread",
     ":FROM existenciaalmacen",
     1,
     {"CreaPartida", "CreaPartida*"},
     OtraFila,
     Linea1,
     Y({Base(kRenglones, "2"), Cuadricula(2, 9, ""), Cuadricula(2, 2, "-2")})},
    {"MakingWithoutHeaderIsRefusedByTheBase",
     ":INSERT INTO salidas",
     1,
     {"CreaSalida", "CreaPartida*", "CreaPartida*"},
     Fila,
     Linea1,
     Base(kRenglones, "0")},

    {"TotalsEndWhereTheyFail",
     "EstaVacio",
     1,
     {"CalculaImportes"},
     Documento,
     Calcula,
     Y({Campo(11, "0"), Campo(10, "1")})},
    {"TotalsKeepAnAmountThatFails", "ANumero", 1, {"CalculaImportes"}, Documento, Calcula, Campo(11, "348")},

    {"EditHook",
     "BuscaCatalogo",
     1,
     {"MSFlexGridEdit"},
     Documento,
     Edita(32),
     [](FallasDeSalida&, F& f) { EXPECT_TRUE(f.txtEdit.Visible()); }},
    {"EditFreeRowTestEnds",
     "EstaVacio",
     1,
     {"MSFlexGridEdit"},
     Documento,
     Edita('7'),
     [](FallasDeSalida&, F& f) { EXPECT_FALSE(f.txtEdit.Visible()); }},
    {"EditFilterRefuses",
     "TeclaNumerica",
     1,
     {"MSFlexGridEdit"},
     Documento,
     Edita('7'),
     [](FallasDeSalida&, F& f) { EXPECT_FALSE(f.txtEdit.Visible()); }},
    {"CommitThatCannotBeConfirmedIsDropped",
     "ANumero",
     1,
     {"fg2_GotFocus"},
     [](FallasDeSalida& e, F& f) {
       Documento(e, f);
       f.ClickCell(f.fg2, 1, 1);
       Escenario::Tecla(f, "9");
     },
     [](FallasDeSalida&, F& f) { Escenario::Tecla(f, "Enter"); },
     Y({Cuadricula(1, 1, "3"), Base(kCantidad, "3")})},
    {"RemovalOfALineUnreadEnds",
     ":SELECT \\* FROM salpart WHERE id",
     1,
     {"fg2_KeyDown", "fg2_KeyDown*"},
     Documento,
     Borra,
     Y({Base(kRenglones, "1"), Cuadricula(1, 0, "A-100")})},
    {"RemovalNeedsNoArticle",
     ":SELECT \\* FROM prods",
     1,
     {"fg2_KeyDown"},
     Documento,
     Borra,
     Base(kRenglones, "0")},
    {"RemovalThatIsRefusedLeavesTheGridAllTheSame",
     ":DELETE",
     1,
     {"fg2_KeyDown"},
     Documento,
     Borra,
     Y({Base(kRenglones, "1"), Cuadricula(1, 0, "")})},
};

const Caso kEscritura[] = {
    {"HeaderNumber",
     "NuevoId",
     1,
     {"CreaSalida", "CreaSalida*"},
     Fila,
     Crea,
     Base("SELECT salida FROM salidas", "(nada)")},
    {"HeaderProofOfNumber",
     ":SELECT salida FROM",
     1,
     {"CreaSalida"},
     Fila,
     Crea,
     Base("SELECT salida FROM salidas", "1")},
    {"HeaderKind",
     "TipoSentencia",
     1,
     {"CreaSalida"},
     Fila,
     Crea,
     Y({Base("SELECT COUNT(*) FROM salidas", "0"),
        [](FallasDeSalida&, F& f) { EXPECT_EQ(f.Modo, "MODIFICACION"); }})},
    {"HeaderAllColumns", "AgregaCampo", 18, Repite("CreaSalida", 18), Fila, Crea,
     Base("SELECT COUNT(*) FROM salidas", "0")},
    {"HeaderCondition", "Condicion", 1, {"CreaSalida"}, Fila, Crea, Base("SELECT almt FROM salidas", "0")},
    {"HeaderRun",
     "Ejecuta",
     1,
     {"CreaSalida"},
     Fila,
     Crea,
     [](FallasDeSalida&, F& f) { EXPECT_EQ(f.Caption(), "Salida: 1"); }},
    {"HeaderReading",
     ":\\(\\(\\(salida\\) = 1",
     1,
     {"CreaSalida"},
     Fila,
     Crea,
     Base("SELECT COUNT(*) FROM salidas", "1")},

    {"SaveFolio", "NuevoId", 1, {"SalvaSalida"}, Documento, Salva, Base("SELECT folio FROM salidas", "0")},
    {"SaveKind",
     "TipoSentencia",
     1,
     {"SalvaSalida"},
     Documento,
     Salva,
     Base("SELECT folio FROM salidas", "(nulo)")},
    {"SaveCondition",
     "Condicion",
     1,
     {"SalvaSalida"},
     Documento,
     Salva,
     Base("SELECT folio FROM salidas", "(nulo)")},
    {"SaveAllColumns", "AgregaCampo", 24, Repite("SalvaSalida", 24), Documento, Salva,
     Base("SELECT folio FROM salidas", "(nulo)")},
    {"SaveAmount",
     "ANumero",
     1,
     {"SalvaSalida"},
     Documento,
     Salva,
     Y({Base("SELECT importe FROM salidas", "0"), Base("SELECT estado FROM salidas", "CO")})},
    {"SaveText", "TextoSql", 1, {"SalvaSalida"}, Documento, Salva, Base("SELECT estado FROM salidas", "CO")},
    {"SaveUpdate",
     ":UPDATE salidas",
     1,
     {"SalvaSalida"},
     Documento,
     Salva,
     Base("SELECT estado FROM salidas", "PE")},
    {"LinesUnreadCountAsNone",
     ":SELECT \\* FROM salpart",
     1,
     {"SalvaPartidas", "SalvaPartidas*"},
     Documento,
     [](FallasDeSalida&, F& f) {
       bool hay = true;
       f.SalvaPartidas(hay);
       EXPECT_FALSE(hay);
     },
     Base(kRenglones, "1")},
    {"CountEndsWhereItFails",
     "EstaVacio",
     1,
     {"CuantasPartidas"},
     Documento,
     [](FallasDeSalida&, F& f) { EXPECT_EQ(f.CuantasPartidas(), 0); },
     Base(kRenglones, "1")},

    {"PostingOneLine",
     "Afecta",
     1,
     {"AfectaPartidas"},
     Leidas,
     Afecta,
     Y({Movimientos(2), Base("SELECT COUNT(*) FROM movsinv", "2")})},
    {"PostingEveryLine", "Afecta", 3, Repite("AfectaPartidas", 3), Leidas, Afecta,
     Y({Movimientos(0), [](FallasDeSalida&, F& f) { EXPECT_EQ(f.Costo, 0); }})},
    {"PostingOutflowOfATransfer",
     "Afecta",
     1,
     {"AfectaPartidas"},
     Traspaso,
     Afecta,
     Y({Movimientos(5), [](FallasDeSalida& e, F&) { EXPECT_EQ(e.Movido(0, "Operacion"), "T+"); }})},
    {"PostingHeaderUnreadPostsWithoutAFolio",
     ":FROM salidas WHERE salida = 1",
     1,
     {"AfectaPartidas", "AfectaPartidas*", "AfectaPartidas*", "AfectaPartidas*"},
     Leidas,
     Afecta,
     Y({Movimientos(3), [](FallasDeSalida& e, F&) { EXPECT_EQ(e.Movido(0, "Movimiento"), "(nada)"); }})},
    {"PostingWithoutReadLinesLeaves",
     "Nada",
     1,
     {"AfectaPartidas*"},
     [](FallasDeSalida& e, F& f) {
       Leidas(e, f);
       f.rstPartidas = {};
     },
     Afecta,
     Movimientos(0)},
    {"PostingTransferHook", "BuscaCatalogo", 1, {"AfectaPartidas"}, Traspaso, Afecta, Movimientos(6)},
    {"PostingPurchaseSums",
     ":SUM\\(cantidad\\)",
     1,
     {"AfectaPartidas", "AfectaPartidas*"},
     Compra,
     Afecta,
     Base("SELECT COUNT(*) FROM compras2sucursal", "0")},
    {"PostingPurchaseLine",
     ":FROM compra2part",
     1,
     {"AfectaPartidas", "AfectaPartidas*"},
     Compra,
     Afecta,
     Base("SELECT COUNT(*) FROM compras2sucursal", "1")},
    {"PostingPurchaseInsert",
     ":INSERT INTO compras2sucursal",
     1,
     {"AfectaPartidas"},
     Compra,
     Afecta,
     Base("SELECT COUNT(*) FROM compras2sucursal", "1")},

    {"PrintFormatUnreadCountsAsNone",
     ":FROM defform",
     1,
     {"ImprimeSalida", "ImprimeSalida*"},
     Documento,
     Imprime,
     Mensajes({213})},
    {"PrintItself", "ImprimeDocumento", 1, {"ImprimeSalida"}, Documento, Imprime, Mensajes({})},

    {"CellKind", "TipoSentencia", 1, {"SalvaCambios"}, CeldaCorregida, Celda1, Base(kCantidad, "3")},
    {"CellCondition", "Condicion", 1, {"SalvaCambios"}, CeldaCorregida, Celda1, Base(kCantidad, "3")},
    {"CellField", "AgregaCampo", 1, {"SalvaCambios"}, CeldaCorregida, Celda1, Base(kCantidad, "3")},
    {"CellText", "TextoSql", 1, {"SalvaCambios"}, CeldaCorregida, Celda1, Base(kCantidad, "9")},
    {"CellUpdate",
     ":UPDATE salpart",
     1,
     {"SalvaCambios"},
     CeldaCorregida,
     Celda1,
     Y({Base(kCantidad, "3"), [](FallasDeSalida&, F& f) { EXPECT_TRUE(f.txtFields(4).HasFocus()); }})},

    {"SendAgain",
     "BuscaCatalogo",
     1,
     {"Command1_Click"},
     Nada,
     [](FallasDeSalida&, F& f) { f.Command1_Click(); },
     Nada},
    {"HelpKey",
     "BuscaCatalogo",
     1,
     {"Form_KeyDown"},
     Nada,
     [](FallasDeSalida&, F& f) { Escenario::Tecla(f, "F1"); },
     Nada},
};

TEST_P(FallasDeSalida, IsReportedOnceAndTheRestGoesOn) { Corre(); }

INSTANTIATE_TEST_SUITE_P(Line, FallasDeSalida, ::testing::ValuesIn(kLineas), Nombre);
INSTANTIATE_TEST_SUITE_P(Writing, FallasDeSalida, ::testing::ValuesIn(kEscritura), Nombre);

}  // namespace
}  // namespace tarvik::tests
