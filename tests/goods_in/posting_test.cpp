// Posting: what each movement is given, in which order, and what stays unwritten. The finish around
// it is told in finish_test.cpp, failures in failures_test.cpp.
#include "goods_in/columnas.h"
#include "tests/support/escenario.h"

namespace tarvik::tests {
namespace {

using Textos = std::vector<std::string>;

class Afectacion : public Escenario {
 protected:
  Afectacion() {
    Catalogo();
    anfitrion->Ambiente().Pon("ClaveLocal", "L7");
  }
  void Afecta(frmEntradasWizard& f) {
    Olvida();
    bitacora.respuestas.push_back(true);
    Tecla(f, "F5", f.txtFields(campo::Concepto));
  }
  static Textos Propiedades(const host::Propiedades& propiedades) {
    Textos textos;
    for (const auto& [nombre, valor] : propiedades) textos.push_back(nombre + "=" + data::ToText(valor));
    return textos;
  }
  static std::string Propiedad(const host::Propiedades& propiedades, const std::string& nombre) {
    for (const auto& [cual, valor] : propiedades) {
      if (cual == nombre) return data::ToText(valor);
    }
    return "(sin poner)";
  }
};

TEST_F(Afectacion, EachLineIsOneMovementWithTheHeadersAndItsOwnData) {
  frmEntradasWizard& f = Nueva();
  Teclea(f, f.txtFields(campo::Concepto), "COM");
  f.txtFields(campo::Almacen).Text("2");
  Teclea(f, f.txtFields(campo::Articulo), "7501");
  Tecla(f, "Enter");
  Tecla(f, "F9");
  f.txtFields(campo::Cantidad).Text("");
  Renglon(f, "A-200", "2.5");
  Afecta(f);
  ASSERT_EQ(bitacora.movimientos.size(), 2u);
  const Textos cabeza{"EntSal=E",    "ClaveLocal=L7", "Fecha=2024-03-05", "Almacen=2",   "Movimiento=1",
                      "TipoDoc=COM", "Usuario=ANA",   "Documento=1",      "Operacion=EN"};
  Textos primero = cabeza;
  for (const char* propio : {"Articulo=A-100", "Cantidad=12", "Precio=116", "IdEntrada=1", "ClaveAdd=7501"}) {
    primero.emplace_back(propio);
  }
  Textos segundo = cabeza;
  for (const char* propio : {"Articulo=A-200", "Cantidad=2.5", "Precio=50", "IdEntrada=2", "ClaveAdd="}) {
    segundo.emplace_back(propio);
  }
  Textos vistos[2];
  for (int i = 0; i < 2; ++i) {
    vistos[i] = Propiedades(bitacora.movimientos[static_cast<std::size_t>(i)].first);
    ASSERT_FALSE(vistos[i].empty());
    EXPECT_TRUE(vistos[i].back().starts_with("Aplica="));
    EXPECT_TRUE(data::IsNonZero(bitacora.movimientos[static_cast<std::size_t>(i)].first.back().second));
    vistos[i].pop_back();
  }
  EXPECT_EQ(vistos[0], primero);
  EXPECT_EQ(vistos[1], segundo);
}

TEST_F(Afectacion, TheHeaderIsWrittenBeforeTheFirstMovement) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "3"}});
  bitacora.FallaServicio("Afecta", 1, "falla provocada");
  std::string estado;
  std::string progreso;
  auto caja = plataforma.on_box;
  plataforma.on_box = [&](forms::BoxKind clase, const std::string& texto, int estilo) {
    if (clase == forms::BoxKind::Plain) {
      estado = Uno("SELECT estado FROM entradas");
      progreso = f.RichTextBox1.Text();
    }
    return caja(clase, texto, estilo);
  };
  Afecta(f);
  EXPECT_EQ(estado, "CO");
  EXPECT_EQ(progreso, "Afectando: A-100 1");
}

TEST_F(Afectacion, TheStatementsOfAPostedFinishComeInThisOrder) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "3"}, {"A-200", "2"}});
  Afecta(f);
  EXPECT_EQ(bitacora.sentencias,
            (Textos{"SELECT tipo_movim FROM tipominv WHERE tipo_movim = 'COM' AND ent_sal = 'E'",
                    "UPDATE entradas SET tipo_doc = 'COM', ocupado = 0, f_emision = '2024-03-05', importe = "
                    "448, costo = "
                    "0, almacen = 1, estado = 'CO', observ = '', datos = 'Compra a proveedor', usuario = "
                    "'ANA', usufecha "
                    "= '2024-03-05', usuhora = '14:03:22' WHERE entrada = 1",
                    "SELECT * FROM entpart WHERE (((entrada)=1))", "SELECT * FROM entradas WHERE entrada = 1",
                    "SELECT * FROM defform", "UPDATE entradas SET ocupado = 0 WHERE entrada = 1"}));
}

// What a view hears of posting: "1/3".
struct Oyente : forms::FormListener {
  explicit Oyente(DocumentWizard& wizard) : forma(wizard) { forma.Listen(*this); }
  ~Oyente() override { forma.StopListening(*this); }
  void ControlChanged(forms::Control& control, forms::Aspect aspect) override {
    if (&control != &forma.RichTextBox1 || aspect != forms::Aspect::Text) return;
    const auto& linea = forma.Afectando();
    oido.push_back(linea ? std::to_string(linea->renglon) + "/" + std::to_string(linea->de) : "nada");
  }
  DocumentWizard& forma;
  Textos oido;
};

TEST_F(Afectacion, AViewHearsWhichLineIsPostedOfHowManyAndNothingOnceItIsOver) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "3"}, {"A-200", "2"}});
  auto viva = f.shared_from_this();
  Oyente oyente(f);
  f.RichTextBox1.Text("Afectando: lo que sea 1");  // as anybody may write
  Afecta(f);
  f.RichTextBox1.Text("");
  EXPECT_EQ(oyente.oido, (Textos{"nada", "1/2", "2/2", "nada"}));
}

TEST_F(Afectacion, AWatcherThatFailsLeavesNoFigureBehind) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "3"}});
  auto viva = f.shared_from_this();
  f.RichTextBox1.OnChange = [] { throw data::Error("falla provocada"); };
  Afecta(f);
  EXPECT_FALSE(f.Afectando());
}

TEST_F(Afectacion, ProgressIsToldLineByLine) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "3"}, {"A-200", "2"}});
  auto viva = f.shared_from_this();
  Textos progreso;
  f.RichTextBox1.OnChange = [&] { progreso.push_back(f.RichTextBox1.Text()); };
  Afecta(f);
  EXPECT_EQ(progreso, (Textos{"Afectando: A-100 1", "Afectando: A-200 2"}));
}

TEST_F(Afectacion, WhilePostingNoPendingEventIsLetThrough) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "3"}, {"A-200", "2"}});
  auto viva = f.shared_from_this();
  std::size_t movidos = 99;
  f.RichTextBox1.OnChange = [&] {
    if (movidos == 99) plataforma.Post([&] { movidos = bitacora.movimientos.size(); });
  };
  Afecta(f);
  EXPECT_EQ(movidos, 2u);
}

TEST_F(Afectacion, LinesArePostedAsTheyAreStoredAndNotAsTheyAreShown) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "3"}});
  Sql("UPDATE entpart SET cantidad = 8, precio = 2, claveadd = NULL");
  f.fg2.TextMatrix(1, columna_entrada::Cantidad, "99");
  Afecta(f);
  ASSERT_EQ(bitacora.movimientos.size(), 1u);
  EXPECT_EQ(Propiedad(bitacora.movimientos[0].first, "Cantidad"), "8");
  EXPECT_EQ(Propiedad(bitacora.movimientos[0].first, "Precio"), "2");
  EXPECT_EQ(Propiedad(bitacora.movimientos[0].first, "ClaveAdd"), "");
  EXPECT_TRUE(Reportes().empty());
}

TEST_F(Afectacion, MovementsTakeTheirHeaderFromTheStoredRow) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "3"}});
  f.SalvaPartidas();
  Sql("UPDATE entradas SET almacen = 2, f_emision = '2024-02-29', tipo_doc = 'A++'");
  f.AfectaPartidas();
  ASSERT_EQ(bitacora.movimientos.size(), 1u);
  EXPECT_EQ(Propiedad(bitacora.movimientos[0].first, "Almacen"), "2");
  EXPECT_EQ(Propiedad(bitacora.movimientos[0].first, "Fecha"), "2024-02-29");
  EXPECT_EQ(Propiedad(bitacora.movimientos[0].first, "TipoDoc"), "A++");
}

TEST_F(Afectacion, GoodsAlwaysGoInWhateverTheStock) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "3"}});
  Sql("UPDATE entpart SET cantidad = -5");
  Afecta(f);
  EXPECT_EQ(Uno("SELECT existencia FROM existenciaalmacen WHERE articulo = 'A-100'"), "-5");
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::AfectaEntrada});
}

TEST_F(Afectacion, TheSumReachesTheScreenAndNeverTheRow) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "3"}, {"A-200", "2"}});
  auto viva = f.shared_from_this();
  Afecta(f);
  EXPECT_EQ(f.Costo, 448);
  EXPECT_EQ(Uno("SELECT costo FROM entradas"), "0");
}

TEST_F(Afectacion, ADocumentOfManyLinesSharesOneHeader) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "1"}});
  for (int id = 1000; id < 1300; ++id) {
    Sql("INSERT INTO entpart (id_entrada, entrada, articulo, cantidad, precio) VALUES (?, 1, 'A-200', 1, 2)",
        {id});
  }
  Afecta(f);
  ASSERT_EQ(bitacora.movimientos.size(), 301u);
  for (const auto& [propiedades, importe] : bitacora.movimientos) {
    EXPECT_EQ(Propiedad(propiedades, "Documento"), "1");
  }
  EXPECT_EQ(Propiedad(bitacora.movimientos.back().first, "IdEntrada"), "1299");
  EXPECT_EQ(CuentaSentencias("SELECT * FROM entradas WHERE entrada = 1"), 1);
}

TEST_F(Afectacion, ADocumentThatHasVanishedIsSavedAsPendingAndItsLinesAreMovedAllTheSame) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "3"}, {"A-200", "2"}});
  ASSERT_TRUE(f.SalvaPartidas());
  Sql("DELETE FROM entpart");
  Sql("DELETE FROM entradas");
  Olvida();
  f.AfectaPartidas();
  EXPECT_EQ(CuentaSentencias("UPDATE entradas SET tipo_doc = 'COM', ocupado = 0"), 1);
  EXPECT_NE(bitacora.sentencias.back().find("estado = 'PE'"), std::string::npos);
  // What the missing row should have given: date, warehouse, number, concept and number as text.
  EXPECT_EQ(Reportes().size(), 5u);
  for (const auto& reporte : Reportes())
    EXPECT_NE(reporte.find("Function: AfectaPartidas"), std::string::npos);
  ASSERT_EQ(bitacora.movimientos.size(), 2u);
  EXPECT_EQ(Propiedad(bitacora.movimientos[0].first, "Fecha"), "(sin poner)");
  EXPECT_EQ(Propiedad(bitacora.movimientos[0].first, "Operacion"), "EN");
}

TEST_F(Afectacion, WithoutLinesNothingIsMovedAndTheSumStays) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "3"}});
  Sql("DELETE FROM entpart");
  EXPECT_FALSE(f.SalvaPartidas());
  f.Costo = 7;
  f.AfectaPartidas();
  EXPECT_TRUE(bitacora.movimientos.empty());
  EXPECT_EQ(f.Costo, 7);
}

}  // namespace
}  // namespace tarvik::tests
