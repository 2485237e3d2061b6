// Where the cursor goes in a matrix of which not every cell can be filled: one step beside each wall, and
// the whole travel over every pattern of missing articles.
#include "matrix/recorrido.h"

#include <optional>
#include <ostream>
#include <set>

#include "tests/matrix/support.h"

namespace tarvik {
void PrintTo(const Lugar& lugar, std::ostream* salida) {
  *salida << "(" << lugar.fila << ", " << lugar.columna << ") from (" << lugar.fila_anterior << ", "
          << lugar.columna_anterior << ")";
}
}  // namespace tarvik

namespace tarvik::tests {
namespace {

// Rows 2 to 6 and columns 2 to 7 are no headers.
constexpr Cuadricula kMalla{.filas = 7, .columnas = 8, .filas_fijas = 2, .columnas_fijas = 2};

// Cell and cell before, as Lugar's members stand.
struct Paso {
  const char* nombre;
  Lugar desde;
  Lugar hasta;
};

class Pasos : public ::testing::TestWithParam<Paso> {};

TEST_P(Pasos, LeadTo) { EXPECT_EQ(Siguiente(GetParam().desde, kMalla), GetParam().hasta); }

const Paso kPasos[] = {
    {"Rightwards", {4, 4, 4, 3}, {4, 5, 4, 4}},
    {"Leftwards", {4, 4, 4, 5}, {4, 3, 4, 4}},
    {"Downwards", {4, 4, 3, 4}, {5, 4, 4, 4}},
    {"Upwards", {4, 4, 5, 4}, {3, 4, 4, 4}},
    {"RightAndDown", {4, 4, 3, 3}, {5, 5, 4, 4}},
    {"LeftAndUp", {4, 4, 5, 5}, {3, 3, 4, 4}},
    {"RightAndUp", {4, 4, 5, 3}, {3, 5, 4, 4}},
    {"LeftAndDown", {4, 4, 3, 5}, {5, 3, 4, 4}},
    {"FarJumpsCountAsDirections", {4, 4, 2, 7}, {5, 3, 4, 4}},
    {"NoDirectionStays", {4, 4, 4, 4}, {4, 4, 4, 4}},
    // One wall: the travel keeps its direction behind it.
    {"RightWallIsTheNextRowsStart", {4, 7, 4, 6}, {5, 2, 5, 1}},
    {"LeftWallIsTheRowBefore", {4, 2, 4, 3}, {3, 7, 3, 8}},
    {"FloorIsTheNextColumnsTop", {6, 4, 5, 4}, {2, 5, 1, 5}},
    {"CeilingIsTheColumnBefore", {2, 4, 3, 4}, {6, 3, 7, 3}},
    // Two walls: the end of all rows leads into the columns.
    {"RightWallInTheLastRow", {6, 7, 6, 6}, {2, 3, 1, 3}},
    {"FloorInTheLastColumn", {6, 7, 5, 7}, {2, 3, 1, 3}},
    {"LeftWallInTheFirstRow", {2, 2, 2, 3}, {6, 6, 7, 6}},
    {"CeilingInTheFirstColumn", {2, 2, 3, 2}, {6, 6, 7, 6}},
    // A slanted travel is straight behind a wall.
    {"RightAndDownIntoTheRightWall", {4, 7, 3, 6}, {5, 2, 5, 1}},
    {"RightAndUpIntoTheRightWall", {4, 7, 5, 6}, {5, 2, 5, 1}},
    {"LeftAndDownIntoTheLeftWall", {4, 2, 3, 3}, {3, 7, 3, 8}},
    {"RightAndDownOntoTheFloor", {6, 4, 5, 3}, {2, 6, 1, 6}},
    {"LeftAndUpIntoTheCeiling", {2, 4, 3, 5}, {6, 2, 7, 2}},
    {"RightAndDownIntoTheCorner", {6, 7, 5, 6}, {2, 3, 1, 3}},
    {"LeftAndUpIntoTheCorner", {2, 2, 3, 3}, {6, 6, 7, 6}},
    // From a header, where a click may have put the cursor.
    {"HeaderOfASize", {0, 4, 3, 4}, {6, 3, 7, 3}},
    {"HeaderOfAColour", {4, 0, 4, 3}, {3, 7, 3, 8}},
    {"TheCornerOfTheHeaders", {0, 0, 3, 3}, {6, 6, 7, 6}},
};

std::string NombreDePaso(const ::testing::TestParamInfo<Paso>& paso) { return paso.param.nombre; }

INSTANTIATE_TEST_SUITE_P(Recorrido, Pasos, ::testing::ValuesIn(kPasos), NombreDePaso);

TEST(Recorrido, NoStepEverGivesAHeaderOrLeavesTheGrid) {
  long pasos = 0;
  for (int fijas = 0; fijas <= 2; ++fijas) {
    for (int filas = fijas + 2; filas <= fijas + 5; ++filas) {
      for (int columnas = fijas + 2; columnas <= fijas + 5; ++columnas) {
        const Cuadricula malla{filas, columnas, fijas, fijas};
        for (Lugar d; d.fila < filas; ++d.fila) {
          for (d.columna = 0; d.columna < columnas; ++d.columna) {
            for (d.fila_anterior = -1; d.fila_anterior <= filas; ++d.fila_anterior) {
              for (d.columna_anterior = -1; d.columna_anterior <= columnas; ++d.columna_anterior) {
                const Lugar h = Siguiente(d, malla);
                ++pasos;
                ASSERT_TRUE(h.fila >= fijas && h.fila < filas && h.columna >= fijas && h.columna < columnas)
                    << ::testing::PrintToString(d) << " gave " << ::testing::PrintToString(h) << " in "
                    << filas << " by " << columnas << " with " << fijas << " fixed";
              }
            }
          }
        }
      }
    }
  }
  EXPECT_GT(pasos, 10000);
}

TEST(Recorrido, AStraightTravelThroughAnEmptyGridComesByEveryCellAndKeepsGoing) {
  for (const Lugar salida : {Lugar{4, 4, 4, 3}, Lugar{4, 4, 4, 5}, Lugar{4, 4, 3, 4}, Lugar{4, 4, 5, 4}}) {
    std::set<std::pair<int, int>> vistas;
    Lugar aqui = salida;
    for (int paso = 0; paso < 5 * 6 * 3; ++paso) {
      aqui = Siguiente(aqui, kMalla);
      vistas.insert({aqui.fila, aqui.columna});
    }
    // Column 2 is a spacer in every matrix: behind the last row the columns are taken up from the next one.
    for (int fila = 2; fila < 7; ++fila) {
      for (int columna = 3; columna < 7; ++columna) EXPECT_TRUE(vistas.contains({fila, columna}));
    }
  }
}

// ---- the travel on the screen ----

// A matrix of 3 by 3, which of its cells are blocked being the bits of a number.
class Viajes : public EscenarioDeMalla {
 protected:
  static constexpr int kLado = 3;
  static constexpr int kPatrones = 1 << (kLado * kLado);

  Viajes() : m(Malla(kLado, kLado)) {}

  static bool Libre(int patron, int fila, int columna) { return !(patron >> (fila * kLado + columna) & 1); }
  void Bloquea(int patron) {
    for (int fila = 0; fila < kLado; ++fila) {
      for (int columna = 0; columna < kLado; ++columna) {
        m.fg2.Blocked(kPrimera + fila, kPrimera + columna, !Libre(patron, fila, columna));
      }
    }
  }
  // Puts the cursor there with nothing raised.
  void Desde(int fila, int columna) {
    m.txtCelda.Visible(false);
    m.fg2.CellEvents(false);
    m.fg2.MoveTo(fila, columna);
    m.fg2.CellEvents(true);
  }
  [[nodiscard]] bool EnUnaLibre() const {
    const int fila = m.fg2.Row() - kPrimera;
    const int columna = m.fg2.Col() - kPrimera;
    return fila >= 0 && fila < kLado && columna >= 0 && columna < kLado &&
           !m.fg2.Blocked(m.fg2.Row(), m.fg2.Col());
  }

  // The reckoning, with no grid: the cells of the matrix in the order in which an arrow must come by them.
  // The rest of the line of cells, then the lines behind it; then all of it by columns, from the end at which
  // the arrow would have come in.
  static std::vector<Casilla> Orden(const std::string& flecha, int fila, int columna) {
    std::vector<Casilla> orden;
    const bool adelante = flecha == "Right" || flecha == "Down";
    const int paso = adelante ? 1 : -1;
    const int principio = adelante ? 0 : kLado - 1;
    auto dentro = [](int i) { return i >= 0 && i < kLado; };
    if (flecha == "Right" || flecha == "Left") {
      for (int f = fila, c = columna + paso; dentro(f); f += paso, c = principio) {
        for (; dentro(c); c += paso) orden.emplace_back(f, c);
      }
    } else {
      for (int c = columna, f = fila + paso; dentro(c); c += paso, f = principio) {
        for (; dentro(f); f += paso) orden.emplace_back(f, c);
      }
    }
    for (int c = principio; dentro(c); c += paso) {
      for (int f = principio; dentro(f); f += paso) orden.emplace_back(f, c);
    }
    return orden;
  }
  // Where the cursor must come to rest; with no free cell, where it started.
  static Casilla Debe(int patron, const std::string& flecha, int fila, int columna) {
    for (auto [f, c] : Orden(flecha, fila, columna)) {
      if (Libre(patron, f, c)) return {kPrimera + f, kPrimera + c};
    }
    return {kPrimera + fila, kPrimera + columna};
  }

  frmMallaModelos& m;
};

TEST_F(Viajes, TheReckoningItselfComesByEveryCell) {
  for (const char* flecha : {"Up", "Down", "Left", "Right"}) {
    for (int i = 0; i < kLado * kLado; ++i) {
      const auto orden = Orden(flecha, i / kLado, i % kLado);
      EXPECT_EQ(std::set<Casilla>(orden.begin(), orden.end()).size(), 9u) << flecha;
    }
  }
}

TEST_F(Viajes, EveryArrowFromEveryCellOverEveryPatternRestsWhereItMust) {
  for (int patron = 0; patron < kPatrones; ++patron) {
    Bloquea(patron);
    for (int i = 0; i < kLado * kLado; ++i) {
      for (const char* flecha : {"Up", "Down", "Left", "Right"}) {
        Desde(kPrimera + i / kLado, kPrimera + i % kLado);
        Tecla(m, flecha, m.fg2);
        ASSERT_EQ(Cursor(m), Debe(patron, flecha, i / kLado, i % kLado))
            << flecha << " from " << i << " over " << patron;
      }
    }
  }
  EXPECT_TRUE(no_atrapados.empty());
  EXPECT_TRUE(bitacora.mensajes.empty());
}

TEST_F(Viajes, EnterGoesRightwardsOverEveryPattern) {
  m.txtRemanente.Visible(false);
  for (int patron = 0; patron < kPatrones; ++patron) {
    Bloquea(patron);
    for (int i = 0; i < kLado * kLado; ++i) {
      if (!Libre(patron, i / kLado, i % kLado)) continue;  // a blocked cell is never opened
      Desde(kPrimera + i / kLado, kPrimera + i % kLado);
      Tecla(m, "Enter", m.fg2);
      ASSERT_TRUE(m.txtCelda.HasFocus());
      Tecla(m, "Enter");
      ASSERT_EQ(Cursor(m), Debe(patron, "Right", i / kLado, i % kLado)) << i << " over " << patron;
      ASSERT_TRUE(m.fg2.HasFocus());
    }
  }
  EXPECT_TRUE(no_atrapados.empty());
}

TEST_F(Viajes, AClickAnywhereEndsOnAFreeCellOrBackWhereItStarted) {
  for (int patron = 0; patron < kPatrones; ++patron) {
    Bloquea(patron);
    const bool hay = patron != kPatrones - 1;
    for (int i = 0; i < kLado * kLado; ++i) {
      const Casilla salida{kPrimera + i / kLado, kPrimera + i % kLado};
      for (int fila = 0; fila < m.fg2.Rows(); ++fila) {
        for (int columna = 0; columna < m.fg2.Cols(); ++columna) {
          if (Casilla{fila, columna} == salida) continue;
          Desde(salida.first, salida.second);
          m.fg2.MoveTo(fila, columna);
          if (hay) {
            ASSERT_TRUE(EnUnaLibre()) << fila << "," << columna << " from " << i << " over " << patron;
          } else {
            ASSERT_EQ(Cursor(m), salida) << fila << "," << columna;
          }
        }
      }
    }
  }
}

TEST_F(Viajes, AClickOnAFreeCellStaysThere) {
  m.ClickCell(m.fg2, 5, 4);
  EXPECT_EQ(Cursor(m), (Casilla{5, 4}));
}

TEST_F(Viajes, SeveralBlockedCellsInARowAreJumpedTogether) {
  Bloquea(0b000'000'110);  // of the first row only the first cell
  Tecla(m, "Right", m.fg2);
  EXPECT_EQ(Cursor(m), (Casilla{4, 3}));
  Tecla(m, "Left");
  EXPECT_EQ(Cursor(m), (Casilla{3, 3}));
}

TEST_F(Viajes, AClickOnABlockedCellGoesOnInItsOwnDirection) {
  Bloquea(0b000'010'000);  // the middle
  Desde(3, 3);
  m.ClickCell(m.fg2, 4, 4);  // slanted
  EXPECT_EQ(Cursor(m), (Casilla{5, 5}));
  Desde(4, 5);
  m.ClickCell(m.fg2, 4, 4);  // from the right
  EXPECT_EQ(Cursor(m), (Casilla{4, 3}));
  Desde(3, 4);
  m.ClickCell(m.fg2, 4, 4);  // from above
  EXPECT_EQ(Cursor(m), (Casilla{5, 4}));
}

TEST_F(Viajes, AClickOnAHeaderLeadsBackIntoTheMatrix) {
  Desde(5, 4);
  m.ClickCell(m.fg2, 0, 4);  // upwards, and so to the column before
  EXPECT_EQ(Cursor(m), (Casilla{5, 3}));
  Desde(4, 5);
  m.ClickCell(m.fg2, 4, 0);  // leftwards, and so to the row before
  EXPECT_EQ(Cursor(m), (Casilla{3, 5}));
}

TEST_F(Viajes, EachStepIsOneMoveAndTheTravelIsNotTakenUpTwice) {
  Bloquea(0b000'000'110);
  Textos vistas;
  auto celda = [&] { return std::to_string(m.fg2.Row()) + "," + std::to_string(m.fg2.Col()); };
  const auto entra = m.fg2.OnEnterCell;
  const auto sale = m.fg2.OnLeaveCell;
  m.fg2.OnLeaveCell = [&] {
    vistas.push_back("leave " + celda());
    sale();
  };
  m.fg2.OnEnterCell = [&] {
    vistas.push_back("enter " + celda());
    entra();
  };
  Tecla(m, "Right", m.fg2);
  EXPECT_EQ(vistas, (Textos{"leave 3,3", "enter 3,4", "leave 3,4", "enter 3,5", "leave 3,5", "enter 3,6",
                            "leave 3,6", "enter 4,2", "leave 4,2", "enter 4,3"}));
}

TEST_F(Viajes, EventsAreLetThroughOnTheWay) {
  Bloquea(0b000'000'010);
  std::optional<Casilla> visto;
  plataforma.Post([&] { visto = Cursor(m); });
  m.fg2.Col(4);
  EXPECT_EQ(visto, (Casilla{3, 4}));
  EXPECT_EQ(Cursor(m), (Casilla{3, 5}));
}

TEST_F(Viajes, AMatrixThatIsClosedOnTheWayEndsTheTravel) {
  Bloquea(0b000'000'010);
  plataforma.Post([&] { m.Unload(); });
  m.fg2.Col(4);
  EXPECT_FALSE(m.Open());
  EXPECT_EQ(Cursor(m), (Casilla{3, 4}));
  EXPECT_TRUE(no_atrapados.empty());
}

TEST_F(Viajes, AnEventThatMovesTheCursorOnTheWayLosesNothing) {
  Bloquea(0b000'000'010);
  plataforma.Post([&] { m.fg2.MoveTo(5, 6); });  // onto a spacer
  m.fg2.Col(4);
  EXPECT_TRUE(EnUnaLibre());
}

}  // namespace
}  // namespace tarvik::tests
