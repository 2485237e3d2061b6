// Moments that only a program's own clock and failures can make: midnight in the middle of a document and of
// a posting, and a screen that a log which can't be written left open.
#include <filesystem>
#include <fstream>

#include "tests/caos/juez.h"
#include "tests/goods_out/support.h"

namespace tarvik::caos {
namespace {

class Instantes : public tests::EscenarioDeSalidas {
 protected:
  Instantes() {
    // The books as a judge wants them: what is in stock has its movements.
    Sql("DELETE FROM existenciaalmacen");
  }
  void Prueba() {
    const auto conexion = anfitrion->Base().Connect();
    for (const auto& fallas : {JuzgaLibros(*conexion), JuzgaEnteros(*conexion)}) {
      for (const std::string& falla : fallas) ADD_FAILURE() << falla;
    }
  }
};

// The header's date is that of its first line; what was entered behind midnight bears the new day.
TEST_F(Instantes, MidnightBetweenTwoLinesOfADocument) {
  reloj = {{2024, 12, 31}, {23, 59, 59}};
  frmEntradasWizard& f = ConRenglones({{"A-100", "2"}});
  reloj = {{2025, 1, 1}, {0, 0, 1}};
  Renglon(f, "A-200", "3");
  bitacora.respuestas = {true};
  Tecla(f, "F5", f.txtFields(campo::Concepto));
  EXPECT_EQ(Uno("SELECT f_emision FROM entradas"), "2024-12-31");
  EXPECT_EQ(Uno("SELECT usufecha FROM entpart WHERE id_entrada = 1"), "2024-12-31");
  EXPECT_EQ(Uno("SELECT usufecha FROM entpart WHERE id_entrada = 2"), "2025-01-01");
  EXPECT_EQ(Uno("SELECT usufecha FROM entradas"), "2025-01-01");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv WHERE f_movim = '2024-12-31'"), "2") << "the document's date";
  EXPECT_TRUE(Reportes().empty());
  Prueba();
}

TEST_F(Instantes, MidnightBetweenTwoMovementsOfAPosting) {
  frmSalidasWizard& f = Salida({{"A-100", "2"}, {"A-200", "1"}, {"A-100", "4"}});
  f.SSCheck1.Value(1);
  f.txtFields(campo::AlmacenDestino).Text("2");
  reloj = {{2024, 12, 31}, {23, 59, 59}};
  plataforma.clock = [this] {
    if (bitacora.movimientos.size() >= 3) reloj = {{2025, 1, 1}, {0, 0, 0}};
    return reloj;
  };
  Finaliza(f);
  EXPECT_EQ(bitacora.movimientos.size(), 6U);
  EXPECT_EQ(Uno("SELECT COUNT(DISTINCT f_movim) FROM movsinv"), "1") << "one document, one date";
  EXPECT_EQ(Uno("SELECT MIN(usuhora) FROM movsinv WHERE id > 3"), "00:00:00");
  EXPECT_EQ(Uno("SELECT MAX(usuhora) FROM movsinv WHERE id <= 3"), "23:59:59");
  EXPECT_EQ(Uno("SELECT estado FROM salidas"), "CO");
  EXPECT_TRUE(Reportes().empty());
  Prueba();
}

// The box of a failure stands over midnight: the log is that of the new day, the document's date the old one.
TEST_F(Instantes, MidnightWhileTheBoxOfAFailedMovementStands) {
  reloj = {{2024, 12, 31}, {23, 59, 59}};
  frmEntradasWizard& f = ConRenglones({{"A-100", "2"}, {"A-200", "1"}});
  plataforma.on_box = [this](auto clase, const auto& texto, int estilo) {
    if (clase == forms::BoxKind::Plain) reloj = {{2025, 1, 1}, {0, 0, 7}};
    return bitacora.Caja(clase, texto, estilo);
  };
  bitacora.FallaServicio("Afecta", 1, "falla provocada");
  bitacora.respuestas = {true};
  Tecla(f, "F5", f.txtFields(campo::Concepto));
  EXPECT_NE(ArchivoDelDia().find("AfectaPartidas"), std::string::npos);
  EXPECT_EQ(anfitrion->Completa(host::Tipo::Entrada, 1), 1);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv WHERE f_movim = '2024-12-31'"), "2");
  Prueba();
}

// Nothing can be reported any more: the event ends where it stood, and the screen stays open. F5 again moves
// what is missing, and nothing twice.
TEST_F(Instantes, F5AgainOnAScreenThatAnUnwritableLogLeftOpen) {
  for (const bool entrada : {true, false}) {
    std::filesystem::remove_all(ruta / "web");
    std::ofstream(ruta / "web") << "a file where the folder should be";
    DocumentWizard& f =
        entrada ? static_cast<DocumentWizard&>(ConRenglones({{"A-100", "2"}, {"A-200", "1"}, {"A-100", "1"}}))
                : Salida({{"A-100", "2"}, {"A-200", "1"}, {"A-100", "1"}});
    const auto viva = f.shared_from_this();  // read once it has closed
    bitacora.respuestas = {true};
    // The second movement fails, and the report of it too.
    std::size_t hechos = 0;
    plataforma.clock = [&] {
      if (bitacora.movimientos.size() == 1 && hechos++ == 0) throw data::Error("falla provocada");
      return reloj;
    };
    Tecla(f, "F5", f.txtFields(campo::Concepto));
    plataforma.clock = [this] { return reloj; };
    EXPECT_TRUE(f.Open());
    EXPECT_FALSE(no_atrapados.empty());
    std::filesystem::remove_all(ruta / "web");
    bitacora.respuestas = {true};
    Tecla(f, "F5", f.txtFields(campo::Concepto));
    EXPECT_FALSE(f.Open());
    const char* columna = entrada ? "id_entrada" : "id_salida";
    EXPECT_EQ(Uno(std::string("SELECT COUNT(*) FROM movsinv WHERE ") + columna + " > 0"), "3");
    EXPECT_EQ(
        Uno(std::string("SELECT COUNT(DISTINCT ") + columna + ") FROM movsinv WHERE " + columna + " > 0"),
        "3");
    Olvida();
  }
  Prueba();
}

}  // namespace
}  // namespace tarvik::caos
