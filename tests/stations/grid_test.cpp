// The grid of a transfer between stations: Delete, which is all that the screen does there by itself.
#include "tests/stations/support.h"

namespace tarvik::tests {
namespace {

TEST_F(Estaciones, DeleteAsksAndYesRemovesTheLineFromTheGridAlone) {
  frmMovEstaciones& f = Abre();
  LlenaGrid(f, 3);
  f.ClickCell(f.grid, 2, 1);
  Olvida();
  bitacora.respuestas = {true};
  Tecla(f, "Delete");
  EXPECT_EQ(EnGrid(f), (Textos{"A-1", "A-3"}));
  ASSERT_EQ(bitacora.mensajes.size(), 1u);
  EXPECT_EQ(bitacora.mensajes[0].clase, "pregunta");
  EXPECT_EQ(bitacora.mensajes[0].texto, "Esta seguro de querer borrar la partida");
  EXPECT_EQ(bitacora.mensajes[0].estilo, 2);
  EXPECT_TRUE(Claves().empty());
  EXPECT_TRUE(bitacora.sentencias.empty());
  EXPECT_TRUE(f.grid.HasFocus());
}

TEST_F(Estaciones, DeleteAnsweredWithNoChangesNothing) {
  frmMovEstaciones& f = Abre();
  LlenaGrid(f, 3);
  f.ClickCell(f.grid, 2, 1);
  Tecla(f, "Delete");
  EXPECT_EQ(EnGrid(f), (Textos{"A-1", "A-2", "A-3"}));
  EXPECT_EQ(bitacora.mensajes.size(), 1u);
}

TEST_F(Estaciones, EveryLineCanBeRemovedAndTheHeaderStays) {
  frmMovEstaciones& f = Abre();
  LlenaGrid(f, 2);
  f.Enter(f.grid);
  bitacora.respuestas = {true, true, true};
  for (int i = 0; i < 3; ++i) Tecla(f, "Delete");
  EXPECT_TRUE(EnGrid(f).empty());
  EXPECT_EQ(f.grid.Rows(), 1);
  EXPECT_EQ(f.grid.TextMatrix(0, 0), "Artículo");
  EXPECT_TRUE(no_atrapados.empty());
}

TEST_F(Estaciones, DeleteOnAnEmptyGridRemovesNothing) {
  frmMovEstaciones& f = Abre();
  bitacora.respuestas = {true};
  Tecla(f, "Delete", f.grid);
  EXPECT_EQ(f.grid.Rows(), 0);
  EXPECT_TRUE(no_atrapados.empty());
  EXPECT_TRUE(f.Open());
}

TEST_F(Estaciones, OtherKeysOfTheGridAskNothing) {
  frmMovEstaciones& f = Abre();
  LlenaGrid(f, 2);
  for (const char* tecla : {"Back", "Enter", "Space", "a", "F5", "Down", "."}) Tecla(f, tecla, f.grid);
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_EQ(EnGrid(f).size(), 2u);
  EXPECT_EQ(f.grid.Row(), 2);  // Down is the grid's own
}

}  // namespace
}  // namespace tarvik::tests
