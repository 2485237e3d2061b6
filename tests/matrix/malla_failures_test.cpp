// What fails on the matrix by itself: the window that cannot show a change, and the report that cannot be
// written.
#include "forms/listener.h"
#include "tests/matrix/grid.h"

namespace tarvik::tests {
namespace {

// A window that fails to show a change, the next time that the one which it waits for comes.
class VistaRota : public forms::FormListener {
 public:
  explicit VistaRota(forms::Form& forma) : forma_(forma) { forma_.Listen(*this); }
  ~VistaRota() override { forma_.StopListening(*this); }
  VistaRota(const VistaRota&) = delete;
  VistaRota& operator=(const VistaRota&) = delete;

  forms::Control* control = nullptr;  // whose change fails
  forms::Aspect aspecto = forms::Aspect::Text;
  forms::FlexGrid* celdas = nullptr;  // whose cells' changes fail

  void ControlChanged(forms::Control& cual, forms::Aspect que) override {
    if (&cual == control && que == aspecto) Revienta();
  }
  void CellChanged(forms::FlexGrid& cual, int, int) override {
    if (&cual == celdas) Revienta();
  }

 private:
  [[noreturn]] void Revienta() {
    control = nullptr;
    celdas = nullptr;
    throw data::Error("falla provocada");
  }
  forms::Form& forma_;
};

class FallasDeMalla : public EnLaMalla {
 protected:
  // One box that names the procedure, nothing in the day's log, and the lack of a folder told to the
  // platform.
  void Reportada(const std::string& procedimiento) {
    EXPECT_EQ(Reportes(), (Textos{Reporte(procedimiento, "falla provocada", "frmMallaModel")}));
    EXPECT_TRUE(bitacora.mensajes.at(0).texto.starts_with("14:03:22 Ocurrió un error:\r\n"));
    EXPECT_EQ(bitacora.mensajes.at(0).estilo, 0);
    EXPECT_EQ(ArchivoDelDia(), "");
    EXPECT_FALSE(std::filesystem::exists(ruta / "web"));
    EXPECT_EQ(no_atrapados, (Textos{"La variable de objeto no está establecida"}));
  }
};

TEST_F(FallasDeMalla, OpeningACellThatCannotBeShown) {
  frmMallaModelos& m = Malla(2, 2);
  m.fg2.TextMatrix(3, 3, "4");
  VistaRota vista(m);
  vista.control = &m.txtCelda;
  m.DoubleClickCell(m.fg2, 3, 3);
  Reportada("fg2_DblClick");
  EXPECT_FALSE(m.txtCelda.Visible());  // the event ended there
  EXPECT_TRUE(m.Open());
  EXPECT_EQ(m.fg2.TextMatrix(3, 3), "4");
  Tecla(m, "Enter");  // and the next one is whole again
  EXPECT_TRUE(m.txtCelda.HasFocus());
}

TEST_F(FallasDeMalla, EnterOnTheGridReportsTheOpeningOnce) {
  frmMallaModelos& m = Malla(2, 2);
  VistaRota vista(m);
  vista.control = &m.txtCelda;
  vista.aspecto = forms::Aspect::Geometry;
  Tecla(m, "Enter", m.fg2);
  Reportada("fg2_DblClick");
}

TEST_F(FallasDeMalla, ADigitThatCannotBePut) {
  frmMallaModelos& m = Malla(2, 2);
  VistaRota vista(m);
  vista.control = &m.txtCelda;  // an empty cell is opened with no change of text
  Tecla(m, "7", m.fg2);
  Reportada("fg2_KeyPress");
  EXPECT_TRUE(m.txtCelda.Visible());
}

TEST_F(FallasDeMalla, ACellThatCannotBeEmptied) {
  frmMallaModelos& m = Malla(2, 2);
  m.fg2.TextMatrix(3, 3, "4");
  VistaRota vista(m);
  vista.celdas = &m.fg2;
  Tecla(m, "Delete", m.fg2);
  Reportada("fg2_KeyDown");
}

TEST_F(FallasDeMalla, EnteringACellWhoseEditorCannotBeHidden) {
  frmMallaModelos& m = Malla(2, 2);
  Tecla(m, "Enter", m.fg2);
  VistaRota vista(m);
  vista.control = &m.txtCelda;
  vista.aspecto = forms::Aspect::Visible;
  m.ClickCell(m.fg2, 4, 4);
  Reportada("fg2_EnterCell");
  EXPECT_EQ(Cursor(m), (Casilla{4, 4}));
}

TEST_F(FallasDeMalla, ARemainderThatCannotBeShown) {
  frmMallaModelos& m = Malla(2, 2);
  VistaRota vista(m);
  vista.control = &m.txtRemanente;
  Pon(m, "4");  // the editor's event has no trap; the sum has its own
  Reportada("CalculaSuma");
  EXPECT_EQ(m.fg2.TextMatrix(3, 3), "4");
  EXPECT_EQ(Cursor(m), (Casilla{3, 4}));
}

TEST_F(FallasDeMalla, DeleteReportsAFailedSumOnce) {
  frmMallaModelos& m = Malla(2, 2);
  m.fg2.TextMatrix(3, 3, "4");
  VistaRota vista(m);
  vista.control = &m.txtRemanente;
  vista.aspecto = forms::Aspect::Colour;
  Tecla(m, "Delete", m.fg2);
  Reportada("CalculaSuma");
}

TEST_F(FallasDeMalla, TheEditorsEventsHaveNoTrap) {
  frmMallaModelos& m = Malla(2, 2);
  Teclea(m, m.fg2, "4");
  VistaRota vista(m);
  vista.celdas = &m.fg2;
  Tecla(m, "Enter");
  EXPECT_EQ(no_atrapados, (Textos{"falla provocada"}));
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_EQ(Cursor(m), (Casilla{3, 3}));  // the event ended there
  EXPECT_EQ(m.txtRemanente.Text(), "10");
}

TEST_F(FallasDeMalla, TheReportersCallThrowsWhoeverCalls) {
  frmMallaModelos& m = Malla(2, 2);
  EXPECT_THROW((void)m.ReportaError("m", "f", "d"), service::FallaDelReporte);
  EXPECT_EQ(Reportes(), (Textos{"Module: m\r\nFunction: f\r\nDescription: d\r\n"}));
}

TEST_F(FallasDeMalla, MovingTheFocusToAButtonThatIsNotThereIsIgnored) {
  frmMallaModelos& m = Malla(2, 2);
  m.cmdAceptar.Visible(false);
  Pon(m, "10");
  Restan(m, "0", kVerde);
  EXPECT_TRUE(m.fg2.HasFocus());
  EXPECT_TRUE(no_atrapados.empty());
  EXPECT_TRUE(Reportes().empty());
}

}  // namespace
}  // namespace tarvik::tests
