// Where the two wizards differ by what looks like an accident: the grid, and the document as it is numbered,
// saved, posted and printed.
#include "tests/wizard/twins.h"

namespace tarvik::tests {
namespace {

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

INSTANTIATE_TEST_SUITE_P(Grid, Gemelos, ::testing::ValuesIn(kCuadricula), NombreDeDiferencia);
INSTANTIATE_TEST_SUITE_P(Document, Gemelos, ::testing::ValuesIn(kDocumento), NombreDeDiferencia);

}  // namespace
}  // namespace tarvik::tests
