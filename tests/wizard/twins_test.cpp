// The two wizards side by side, wherever they differ by what looks like an accident: each row does the same
// on both screens and tells what either one must answer. What they share is in no row.
#include "tests/goods_out/support.h"

namespace tarvik::tests {
namespace {

class Gemelos;
using E = frmEntradasWizard;
using S = frmSalidasWizard;

struct Diferencia {
  std::string nombre;
  std::function<std::string(Gemelos&, E&)> entra;
  std::string entradas;
  std::function<std::string(Gemelos&, S&)> sale;
  std::string salidas;
};

class Gemelos : public EscenarioDeSalidas, public ::testing::WithParamInterface<Diferencia> {
 public:
  Gemelos() {
    Sql("INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES ('EB', 'E', ' Con blancos ')");
    Sql("INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES ('SB', 'S', ' Con blancos ')");
    Sql("INSERT INTO prods (articulo, descrip, unidad, precio1, impuesto) VALUES ('B-1', ' Tornillo ', "
        "'PZA', "
        "0, 'IVA')");
  }
  E& Entrada() {
    frmEntradasWizard& f = Nueva();
    Teclea(f, f.txtFields(campo::Concepto), "COM");
    f.Enter(f.txtFields(campo::Articulo));
    viva_ = f.shared_from_this();
    Olvida();
    return f;
  }
  S& Salida() {
    S& f = ConConcepto();
    Olvida();
    return f;
  }
  std::string Ultima() const { return bitacora.sentencias.empty() ? "" : bitacora.sentencias.back(); }
  std::string Todas() const {
    std::string texto;
    for (const auto& clave : Claves()) texto += (texto.empty() ? "" : " ") + clave;
    return texto;
  }
  std::string Avisos() const {
    std::string texto;
    for (int numero : Numeros()) texto += (texto.empty() ? "" : " ") + std::to_string(numero);
    return texto;
  }
  std::shared_ptr<forms::Form> viva_;
};

// The same act on both screens.
template <class Acto>
Diferencia Igual(const char* nombre, const char* entradas, const char* salidas, Acto acto) {
  return {nombre, [acto](Gemelos& g, E& f) -> std::string { return acto(g, f); }, entradas,
          [acto](Gemelos& g, S& f) -> std::string { return acto(g, f); }, salidas};
}
std::string SiNo(bool si) { return si ? "yes" : "no"; }
std::string C(DocumentWizard& f, int renglon, int columna) { return f.fg2.TextMatrix(renglon, columna); }
std::string T(DocumentWizard& f, int campo) { return f.txtFields(campo).Text(); }
// A line through the entry row.
void Uno(DocumentWizard& f, const char* articulo, const char* cantidad) {
  f.txtFields(campo::Articulo).Text(articulo);
  f.PonDescripcion();
  f.txtFields(campo::Cantidad).Text(cantidad);
  f.LlenaPartida();
}
std::string Tabla(E&, const char* entradas, const char*) { return entradas; }
std::string Tabla(S&, const char*, const char* salidas) { return salidas; }
void Crea(E& f) { f.CreaEntrada(); }
void Crea(S& f) { f.CreaSalida(); }
void Salva(E& f) { f.SalvaEntrada("PE"); }
void Salva(S& f) {
  f.Check3.Value(1);
  f.SalvaSalida();
}

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

const Diferencia kCuadricula[] = {
    Igual("ThePriceCanBeCorrected", "yes", "no",
          [](Gemelos&, auto& f) {
            Uno(f, "A-100", "2");
            f.fg2.MoveTo(1, std::is_same_v<decltype(f), E&> ? 2 : 3);
            f.MSFlexGridEdit(f.fg2, f.txtEdit, 32);
            return SiNo(f.txtEdit.Visible());
          }),
    Igual("ABlockedColumnBehindTheArticleBeeps", "0", "1",
          [](Gemelos& g, auto& f) {
            Uno(f, "A-100", "2");
            f.fg2.MoveTo(1, 6);
            f.MSFlexGridEdit(f.fg2, f.txtEdit, 32);
            return std::to_string(g.pitidos);
          }),
    Igual("ADisabledBoxIsCommitted", "9", "2",
          [](Gemelos&, auto& f) {
            Uno(f, "A-100", "2");
            f.ClickCell(f.fg2, 1, 1);
            Escenario::Tecla(f, "9");
            f.txtEdit.Enabled(false);
            f.fg2.MoveTo(2, 1);
            return C(f, 1, 1);
          }),
    Igual("AfterACommitTheFocusIsOn", "fg2", "txtFields(4)",
          [](Gemelos&, auto& f) {
            Uno(f, "A-100", "2");
            f.ClickCell(f.fg2, 1, 1);
            Escenario::Tecla(f, "9");
            Escenario::Tecla(f, "Enter");
            return f.ActiveControl()->FullName();
          }),
    Igual("AfterARemovalTheFocusIsOn", "fg2", "txtFields(4)",
          [](Gemelos&, auto& f) {
            Uno(f, "A-100", "2");
            f.ClickCell(f.fg2, 1, 0);
            Escenario::Tecla(f, "Delete");
            return f.ActiveControl()->FullName();
          }),
    Igual("ALineGoneFromTheBaseIsRemovedFromTheGrid", "", "A-100",
          [](Gemelos& g, auto& f) {
            Uno(f, "A-100", "2");
            g.Sql("DELETE FROM " + Tabla(f, "entpart", "salpart"));
            f.ClickCell(f.fg2, 1, 0);
            Escenario::Tecla(f, "Delete");
            return C(f, 1, 0);
          }),
    Igual("TheTextOfARemarkIsCorrectedFromColumn", "6", "5",
          [](Gemelos& g, auto& f) {
            Uno(f, "A-100", "2");
            std::string columnas;
            for (int columna : {4, 5, 6, 7}) {
              f.fg2.MoveTo(1, columna);
              g.Olvida();
              f.SalvaCambios();
              if (g.Ultima().find("SET observ") != std::string::npos) columnas += std::to_string(columna);
            }
            return columnas;
          }),
};

const Diferencia kDocumento[] = {
    Igual("TheFirstNumberIsProvedFree", "no", "yes",
          [](Gemelos& g, auto& f) {
            Crea(f);
            return SiNo(g.CuentaSentencias("SELECT " + Tabla(f, "entrada FROM", "salida FROM")) > 0);
          }),
    Igual("TheNumberTakenByTheSaveIsProvedFree", "yes", "no",
          [](Gemelos& g, auto& f) {
            Salva(f);
            return SiNo(g.CuentaSentencias("SELECT " + Tabla(f, "entrada FROM", "salida FROM")) > 0);
          }),
    Igual("CreatingTheHeaderEmptiesTheBuilderFirst", "no", "yes",
          [](Gemelos& g, auto& f) {
            const std::string tabla = Tabla(f, "entradas", "salidas");
            f.Query->AgregaCampo(tabla, "usuhora", "resto");
            Crea(f);
            bool limpio = true;
            for (const auto& sentencia : g.bitacora.sentencias)
              limpio &= sentencia.find("resto") == std::string::npos;
            return SiNo(limpio);
          }),
    Igual("TheHeaderIsReadBackBy", "SELECT * FROM entradas WHERE entrada = 1",
          "SELECT * FROM salidas WHERE (((salida) = 1))",
          [](Gemelos& g, auto& f) {
            Crea(f);
            return g.Ultima();
          }),
    Igual("TheSaveFreesTheDocument", "0", "1",
          [](Gemelos& g, auto& f) {
            Uno(f, "A-100", "2");
            Salva(f);
            return g.Uno("SELECT ocupado FROM " + Tabla(f, "entradas", "salidas"));
          }),
    Igual("TheSaveOfANewHeaderChangesTheMode", "MODIFICACION", "ALTA",
          [](Gemelos&, auto& f) {
            Salva(f);
            return f.Modo;
          }),
    Igual("AnEmptyDocumentClosesPrintsAndStaysHeld", "no|0|0", "yes|1|1",
          [](Gemelos& g, auto& f) {
            g.bitacora.respuestas.push_back(true);
            f.Command5_Click();
            return SiNo(!f.Open()) + "|" + std::to_string(g.bitacora.impresos.size()) + "|" +
                   g.Uno("SELECT ocupado FROM " + Tabla(f, "entradas", "salidas"));
          }),
    Igual("ADocumentWhoseLinesAreGoneClosesAllTheSame", "no", "yes",
          [](Gemelos& g, auto& f) {
            Uno(f, "A-100", "2");
            g.Sql("DELETE FROM " + Tabla(f, "entpart", "salpart"));
            g.bitacora.respuestas.push_back(true);
            f.Command5_Click();
            return SiNo(!f.Open());
          }),
    Igual("TheSaveBlocksTheFirstButton", "no", "yes",
          [](Gemelos& g, auto& f) {
            Uno(f, "A-100", "2");
            g.bitacora.respuestas.push_back(true);
            f.Command5_Click();
            return SiNo(!f.Command1.Enabled());
          }),
    Igual("APendingFinishFires", "ENTRADA006", "SALIDAS016 SALIDAS006",
          [](Gemelos& g, auto& f) {
            Uno(f, "A-100", "2");
            f.Check3.Value(1);
            g.Olvida();
            f.Command5_Click();
            return g.Todas();
          }),
    Igual("APostedFinishFires", "ENTRADA014 ENTRADA006", "SALIDAS016 SALIDAS005 SALIDAS006",
          [](Gemelos& g, auto& f) {
            Uno(f, "A-100", "2");
            g.Olvida();
            g.bitacora.respuestas.push_back(true);
            f.Command5_Click();
            return g.Todas();
          }),
    Igual("TheMovementsNumberIsTheDocumentsOrTheFolio", "1", "2",
          [](Gemelos& g, auto& f) {
            Uno(f, "A-100", "2");
            if constexpr (std::is_same_v<decltype(f), S&>) f.SalvaSalida();  // spends a folio
            g.bitacora.respuestas.push_back(true);
            f.Command5_Click();
            return g.Uno("SELECT movimiento FROM movsinv");
          }),
    Igual("TheHostsListGets", "LlenaEntradas(1)CreaMenuPopUp()",
          "LlenaSalidas(1)ReseteaMenus()EstableceMenus()",
          [](Gemelos& g, auto& f) {
            Uno(f, "A-100", "2");
            g.anfitrion->Parent().catalogo_activo = Tabla(f, "Entradas", "Salidas");
            g.bitacora.respuestas.push_back(true);
            f.Command5_Click();
            std::string todas;
            for (const auto& llamada : g.bitacora.llamadas) todas += llamada;
            return todas;
          }),
    Igual("AListThatCannotBeFilledIsReported", "1", "0",
          [](Gemelos& g, auto& f) {
            Uno(f, "A-100", "2");
            g.anfitrion->Parent().catalogo_activo = Tabla(f, "Entradas", "Salidas");
            g.bitacora.FallaServicio(Tabla(f, "LlenaEntradas", "LlenaSalidas"), 1, "falla provocada");
            g.bitacora.respuestas.push_back(true);
            f.Command5_Click();
            return std::to_string(g.Reportes().size());
          }),
    Igual("TheFinishIsDisabledAtDesign", "yes", "no",
          [](Gemelos& g, auto& f) {
            std::decay_t<decltype(f)> sin_cargar(*g.anfitrion);
            return SiNo(!sin_cargar.Command5.Enabled());
          }),
    Igual("TheCloseBoxWaitsForTheTimer", "yes", "no",
          [](Gemelos&, auto& f) {
            f.Close();
            return SiNo(f.Open());
          }),
    Igual("TheLockIsReleasedByTheMembersNumberOrTheRows", "9", "1",
          [](Gemelos& g, auto& f) {
            Uno(f, "A-100", "2");
            if constexpr (std::is_same_v<decltype(f), E&>) {
              f.Entrada = 9;
            } else {
              f.Salida = 9;
            }
            f.Unload();
            return g.Ultima().substr(g.Ultima().rfind(' ') + 1);
          }),
    {"ReadOnlyTheButtonOfTheFinishIsEnabled",
     [](Gemelos& g, E& f) {
       Uno(f, "A-100", "2");
       return SiNo(g.Consulta(1).Command5.Enabled());
     },
     "yes",
     [](Gemelos& g, S& f) {
       Uno(f, "A-100", "2");
       return SiNo(g.ConsultaSalida(1).Command5.Enabled());
     },
     "no"},
    {"ReadOnlyTheFirstButtonIsEnabled",
     [](Gemelos& g, E& f) {
       Uno(f, "A-100", "2");
       return SiNo(g.Consulta(1).Command1.Enabled());
     },
     "no",
     [](Gemelos& g, S& f) {
       Uno(f, "A-100", "2");
       return SiNo(g.ConsultaSalida(1).Command1.Enabled());
     },
     "yes"},
    {"ReadOnlyF5Closes",
     [](Gemelos& g, E& f) {
       Uno(f, "A-100", "2");
       E& leida = g.Consulta(1);
       g.viva_ = leida.shared_from_this();
       Escenario::Tecla(leida, "F5");
       return SiNo(!leida.Open());
     },
     "no",
     [](Gemelos& g, S& f) {
       Uno(f, "A-100", "2");
       S& leida = g.ConsultaSalida(1);
       Escenario::Tecla(leida, "F5");
       return SiNo(!leida.Open());
     },
     "yes"},
    {"ReadOnlyTheBlockedPriceBeeps",
     [](Gemelos& g, E& f) {
       Uno(f, "A-100", "2");
       E& leida = g.Consulta(1);
       leida.fg2.MoveTo(1, 2);
       leida.MSFlexGridEdit(leida.fg2, leida.txtEdit, 32);
       return std::to_string(g.pitidos);
     },
     "0",
     [](Gemelos& g, S& f) {
       Uno(f, "A-100", "2");
       S& leida = g.ConsultaSalida(1);
       leida.fg2.MoveTo(1, 3);
       leida.MSFlexGridEdit(leida.fg2, leida.txtEdit, 32);
       return std::to_string(g.pitidos);
     },
     "1"},
};

TEST_P(Gemelos, GoodsIn) { EXPECT_EQ(GetParam().entra(*this, Entrada()), GetParam().entradas); }
TEST_P(Gemelos, GoodsOut) { EXPECT_EQ(GetParam().sale(*this, Salida()), GetParam().salidas); }

std::string Nombre(const ::testing::TestParamInfo<Diferencia>& info) { return info.param.nombre; }

INSTANTIATE_TEST_SUITE_P(Fields, Gemelos, ::testing::ValuesIn(kCampos), Nombre);
INSTANTIATE_TEST_SUITE_P(Lines, Gemelos, ::testing::ValuesIn(kRenglones), Nombre);
INSTANTIATE_TEST_SUITE_P(Grid, Gemelos, ::testing::ValuesIn(kCuadricula), Nombre);
INSTANTIATE_TEST_SUITE_P(Document, Gemelos, ::testing::ValuesIn(kDocumento), Nombre);

}  // namespace
}  // namespace tarvik::tests
