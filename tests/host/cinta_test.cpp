// What becomes of readings once they are on the tape: bound, dropped, taken back, kept and exported.
#include <cmath>
#include <fstream>
#include <sstream>

#include "goods_out/columnas.h"
#include "tests/host/lecturas_apoyo.h"

namespace tarvik::host {
namespace {

using tests::Escenario;

class Cinta : public LecturasDeUnaTienda {};

// ---- what nobody knows ----

TEST_F(Cinta, AnUnknownCodeShowsNoBoxAndEmptiesTheField) {
  auto& f = ana.Entrada({});
  const auto read = Lee("9999");
  EXPECT_EQ(read->estado, lectura::kSinArticulo);
  EXPECT_FALSE(read->renglon.has_value());
  EXPECT_FALSE(read->cantidad.has_value());
  EXPECT_TRUE(ana.cajas.empty());
  EXPECT_EQ(f.txtFields(campo::Articulo).Text(), "");
  EXPECT_EQ(f.txtFields(campo::Cantidad).Text(), "");
  EXPECT_EQ(f.ActiveControl(), &f.txtFields(campo::Articulo));
  EXPECT_EQ(Lee("A-100")->estado, lectura::kRenglon) << "the next one is read as ever";
  EXPECT_EQ(Renglones(), "A-100 x1\n");
}

TEST_F(Cinta, AModelIsKnownToGoodsInWithTheReaderOffAlone) {
  Sql("INSERT INTO prods (articulo, modelo, costo_u) VALUES ('M-1', 'MOD', 5)");
  auto& f = ana.Entrada({});
  EXPECT_EQ(Lee("MOD")->estado, lectura::kSinArticulo);
  f.Check4.Value(0);
  EXPECT_EQ(Lee("MOD")->estado, lectura::kEspera);
  f.Unload();
  auto& g = ana.Salida({});
  g.Check4.Value(0);
  EXPECT_EQ(Lee("MOD")->estado, lectura::kSinArticulo);
}

TEST_F(Cinta, BoundToAnArticleTheCodeIsFedAgain) {
  ana.Salida({});
  const auto read = Lee("9999");
  Servicio().Asigna(*read, "A-100", 6);
  EXPECT_EQ(read->estado, lectura::kRenglon);
  EXPECT_EQ(read->cantidad, 6);
  EXPECT_EQ(Salidas(), "A-100 x6\n");
  EXPECT_EQ(Uno("SELECT articulo FROM clavesadd WHERE clave = '9999' AND cantidad = 6"), "A-100");
  EXPECT_EQ(Lee("9999")->estado, lectura::kRenglon) << "from now on it is known";
}

TEST_F(Cinta, OnGoodsInWithTheReaderOnTheLineIsOfOne) {
  ana.Entrada({});
  const auto read = Lee("9999");
  Servicio().Asigna(*read, "A-100", 6);
  EXPECT_EQ(Renglones(), "A-100 x1\n");
  EXPECT_EQ(read->cantidad, 1);
}

TEST_F(Cinta, WithItsScreenClosedTheCodeIsBoundAndTheReadingWaitsForItsDocument) {
  auto& f = ana.Entrada({"5"});
  const std::int32_t number = f.Entrada;
  const auto read = Lee("9999");
  f.Unload();
  Servicio().Asigna(*read, "A-100");
  EXPECT_EQ(read->estado, lectura::kEspera);
  EXPECT_EQ(Uno("SELECT articulo FROM clavesadd WHERE clave = '9999'"), "A-100");
  auto& other = ana.Entrada({});
  Lee("A-200");
  EXPECT_EQ(read->estado, lectura::kEspera) << "it was read for another document";
  other.Unload();
  ana.anfitrion->Abre(Tipo::Entrada, number);
  Servicio().Atiende();
  EXPECT_EQ(read->estado, lectura::kRenglon);
  EXPECT_EQ(read->documento, number);
}

TEST_F(Cinta, BindingIsRefusedWithAReasonAndChangesNothing) {
  ana.Entrada({});
  const auto unknown = Lee("9999");
  const auto known = Lee("A-100");
  const auto asigna = [&](Lectura& entry, const std::string& article, double units = 1) {
    return ErrorDe([&] { Servicio().Asigna(entry, article, units); });
  };
  EXPECT_EQ(asigna(*unknown, "NADA"), "No existe el artículo \"NADA\"");
  EXPECT_EQ(asigna(*unknown, "A-100", 0), "Las unidades de \"9999\" deben ser más de 0");
  EXPECT_EQ(asigna(*unknown, "A-100", std::nan("")), "Las unidades de \"9999\" deben ser más de 0");
  EXPECT_EQ(asigna(*known, "A-200"), "La lectura \"A-100\" quedó renglón " + std::to_string(*known->renglon) +
                                         ", +1: no se puede asignar");
  Sql("INSERT INTO clavesadd (clave, articulo, cantidad) VALUES ('9999', 'A-200', 1)");
  EXPECT_EQ(asigna(*unknown, "A-100"), "\"9999\" ya es del artículo \"A-200\"");
  EXPECT_EQ(unknown->estado, lectura::kSinArticulo);
  EXPECT_EQ(asigna(*unknown, "A-200"), "(ningún error)") << "bound already as it is wanted: it is fed";
  EXPECT_EQ(unknown->estado, lectura::kRenglon);
}

TEST_F(Cinta, DroppedTheReasonIsKept) {
  ana.Entrada({});
  const auto read = Lee("9999");
  EXPECT_EQ(ErrorDe([&] { Servicio().Descarta(*read, " "); }), "Diga por qué se descarta la lectura");
  Servicio().Descarta(*read, "etiqueta rota");
  EXPECT_EQ(read->estado, lectura::kDescartada);
  EXPECT_EQ(read->motivo, "etiqueta rota");
  EXPECT_EQ(Uno("SELECT motivo FROM lecturas WHERE estado = 'descartada'"), "etiqueta rota");
  EXPECT_EQ(ErrorDe([&] { Servicio().Asigna(*read, "A-100"); }),
            "La lectura \"9999\" quedó descartada: etiqueta rota: no se puede asignar");
}

// ---- taken back ----

TEST_F(Cinta, TakenBackInTheOpenScreenTheUnitsLeaveItsLine) {
  auto& f = ana.Salida({});
  const auto first = Lee("A-100");
  const auto second = Lee("A-100");
  Servicio().Deshace(*first);
  EXPECT_EQ(first->estado, lectura::kDeshecha);
  EXPECT_EQ(Salidas(), "A-100 x1\n");
  EXPECT_EQ(f.fg2.TextMatrix(1, columna_salida::Cantidad), "1");
  EXPECT_EQ(f.ActiveControl(), &f.txtFields(campo::Articulo)) << "the operator goes on where she was";
  Servicio().Deshace(*second);
  EXPECT_EQ(Salidas(), "");
  EXPECT_EQ(f.fg2.TextMatrix(1, columna_salida::Articulo), "");
  EXPECT_EQ(ErrorDe([&] { Servicio().Deshace(*second); }),
            "La lectura \"A-100\" quedó deshecha: no se puede deshacer");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM lecturas WHERE estado = 'deshecha'"), "2");
}

TEST_F(Cinta, TakenBackInAClosedDocumentTheBaseIsCorrected) {
  auto& f = ana.Salida({});
  const auto first = Lee("A-100");
  const auto second = Lee("A-100");
  f.Unload();
  Servicio().Deshace(*first);
  EXPECT_EQ(Salidas(), "A-100 x1\n");
  Servicio().Deshace(*second);
  EXPECT_EQ(Salidas(), "");
}

TEST_F(Cinta, NothingIsTakenBackFromAPostedDocumentNorFromAnothersHands) {
  auto& f = ana.Entrada({});
  const auto read = Lee("A-100");
  const std::int32_t number = f.Entrada;
  f.Unload();
  luis.puerta->ModificaEntrada(number);
  const auto refused = ErrorDe([&] { Servicio().Deshace(*read); });
  EXPECT_TRUE(refused.starts_with("La entrada 1 la tiene abierta LUIS")) << refused;
  luis.plataforma.Screens().back()->Unload();
  Sql("UPDATE entradas SET estado = 'CO'");
  EXPECT_EQ(ErrorDe([&] { Servicio().Deshace(*read); }),
            "La entrada 1 ya está finalizada: sus lecturas no se deshacen");
  EXPECT_EQ(Renglones(), "A-100 x1\n");
  EXPECT_EQ(read->estado, lectura::kRenglon);
}

TEST_F(Cinta, ALineThatHasChangedKeepsWhatTheReadingDidNotPutThere) {
  auto& f = ana.Salida({});
  const auto read = Lee("7501");
  f.ClickCell(f.fg2, 1, columna_salida::Cantidad);
  f.Press(forms::KeyFor(U'5'));
  Escenario::Tecla(f, "Enter");
  ASSERT_EQ(Salidas(), "A-100 x5\n");
  EXPECT_EQ(ErrorDe([&] { Servicio().Deshace(*read); }),
            "El renglón de la lectura \"7501\" ya no tiene esas unidades");
  f.ClickCell(f.fg2, 1, columna_salida::Articulo);
  Escenario::Tecla(f, "Delete");
  EXPECT_EQ(ErrorDe([&] { Servicio().Deshace(*read); }), "El renglón de la lectura \"7501\" ya no está");
  EXPECT_EQ(read->estado, lectura::kRenglon);
}

TEST_F(Cinta, ARoutineThatForbidsTheCorrectionIsHeard) {
  ana.Salida({});
  Lee("A-100");
  const auto read = Lee("A-100");
  ana.anfitrion->Gancho("SALIDAS014", [](forms::Form& form, AmbienteLocal&) {
    dynamic_cast<frmSalidasWizard&>(form).CancelaProceso = true;
  });
  EXPECT_EQ(ErrorDe([&] { Servicio().Deshace(*read); }),
            "No se pudo corregir el renglón de la lectura \"A-100\"");
  EXPECT_EQ(Salidas(), "A-100 x2\n");
}

// ---- hard days ----

TEST_F(Cinta, WhatWaitsWhenTheProgramEndsIsFedAtTheNextStartOnRequestAlone) {
  Lee("A-100");
  SeVa(ana);
  Puesto again(Direccion(), "ANA", "E1", reloj);
  again.Entrada({});
  auto tape = again.anfitrion->Cinta();
  ASSERT_EQ(tape.size(), 1U);
  EXPECT_EQ(tape[0]->estado, lectura::kEspera);
  EXPECT_EQ(Renglones(), "");
  again.anfitrion->Lecturas().Alimenta(*tape[0]);
  EXPECT_EQ(tape[0]->estado, lectura::kRenglon);
  EXPECT_EQ(Renglones(), "A-100 x1\n");
}

// The line and the word of it on the tape go together: a program that dies in between has neither.
TEST_F(Cinta, ALineWhoseReadingCantBeWrittenIsStoredAllTheSame) {
  ana.Entrada({});
  const auto first = Lee("A-100");
  ASSERT_EQ(first->estado, lectura::kRenglon);
  Sql("ALTER TABLE lecturas RENAME TO lecturas_fuera");
  const auto lost = Lee("A-200");
  EXPECT_EQ(lost->estado, lectura::kRenglon);
  EXPECT_EQ(Renglones(), "A-100 x1\nA-200 x1\n");
  EXPECT_NE(Servicio().SinEscribir(), "");
  EXPECT_TRUE(ana.cajas.empty()) << "it fails no step of the screen";
  Sql("ALTER TABLE lecturas_fuera RENAME TO lecturas");
  Lee("A-100");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM lecturas WHERE estado = 'renglon'"), "3")
      << "written as soon as it can be";
  EXPECT_EQ(Servicio().SinEscribir(), "");
}

TEST_F(Cinta, TheTableOfLinesAndTheTapeAgreeAfterManyInTurn) {
  ana.Salida({});
  for (int i = 0; i < 50; ++i) Lee(i % 3 == 0 ? "A-100" : i % 3 == 1 ? "7501" : "9999");
  EXPECT_EQ(Uno("SELECT SUM(cantidad) FROM salpart"),
            Uno("SELECT SUM(cantidad) FROM lecturas WHERE estado = 'renglon'"));
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM lecturas WHERE estado = 'sin articulo'"), "16");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM lecturas WHERE estado = 'renglon'"), "34");
}

TEST_F(Cinta, ADocumentThatWasTakenAwayRefusesThem) {
  auto& f = ana.Entrada({"5"});
  YLoSabe(ana, [&] { luis.anfitrion->Libera(Tipo::Entrada, f.Entrada, "prisa"); });
  const auto read = Lee("A-200");
  EXPECT_EQ(read->estado, lectura::kRechazada);
  EXPECT_TRUE(read->motivo.starts_with("La entrada 1 ya no es de esta pantalla: LUIS")) << read->motivo;
  EXPECT_EQ(Renglones(), "A-100 x1\n");
}

TEST_F(Cinta, TwoStationsKeepOneTape) {
  ana.Entrada({});
  luis.anfitrion->Ambiente().Parametro("Lector", 1);
  luis.Entrada({});
  Lee("A-100");
  luis.anfitrion->Lectura("9999");
  Lee("A-200");
  EXPECT_EQ(LaCinta(), "A-100 renglon\n9999 sin articulo\nA-200 renglon\n");
  auto tape = ana.anfitrion->Cinta();
  EXPECT_EQ(tape[1]->usuario, "LUIS");
  EXPECT_EQ(tape[1]->estacion, "E2");
  Servicio().Asigna(*tape[1], "A-200");
  EXPECT_EQ(tape[1]->estado, lectura::kEspera) << "its screen is not here";
  auto& seen = *luis.anfitrion->Cinta().at(1);
  EXPECT_EQ(seen.estado, lectura::kSinArticulo);
}

// The tray shows rows as they were read a moment ago.
TEST_F(Cinta, AnOldCopyOfAnEntryIsNeitherFedNorTakenBackAgain) {
  ana.Salida({});
  const auto read = Lee("9999");
  Lectura old_one = *read;
  Servicio().Asigna(*read, "A-100");
  ASSERT_EQ(read->estado, lectura::kRenglon);
  EXPECT_NE(ErrorDe([&] { Servicio().Alimenta(old_one); }), "(ningún error)");
  EXPECT_EQ(old_one.estado, lectura::kRenglon) << "it has learned what became of it";
  Lectura before = *read;
  Servicio().Deshace(*read);
  EXPECT_NE(ErrorDe([&] { Servicio().Deshace(before); }), "(ningún error)");
  EXPECT_EQ(Salidas(), "");
}

TEST_F(Cinta, WhatAnotherStationWaitsForIsFedThereAlone) {
  const auto waiting = luis.anfitrion->Lectura("A-100");
  ASSERT_EQ(waiting->estado, lectura::kEspera);
  ana.Entrada({});
  auto seen = ana.anfitrion->Cinta().at(0);
  EXPECT_EQ(ErrorDe([&] { Servicio().Alimenta(*seen); }),
            "La lectura es del programa de LUIS en la estación E2, que sigue abierto: atiéndala ahí");
  EXPECT_EQ(Renglones(), "");
}

TEST_F(Cinta, ATrayWithAThousandCodesIsWorkedOff) {
  ana.Salida({});
  for (int i = 0; i < 1000; ++i) Lee("cod-" + std::to_string(i));
  const auto tray = LeeCinta(ana.anfitrion->Conexion(), {.pendientes = true});
  ASSERT_EQ(tray.size(), 1000U);
  for (int i = 0; i < 1000; i += 100)
    Servicio().Asigna(*Servicio().Entrada(tray[static_cast<std::size_t>(i)].id), "A-100");
  EXPECT_EQ(LeeCinta(ana.anfitrion->Conexion(), {.pendientes = true}).size(), 990U);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM salpart"), "10") << "a second key of its own is a line of its own";
}

// ---- kept, listed, exported ----

TEST_F(Cinta, ATapeIsListedByDocumentAndByItsEnd) {
  auto& f = ana.Entrada({});
  Lee("A-100");
  Lee("9999");
  const Retenido document{Tipo::Entrada, f.Entrada};
  f.Unload();
  Lee("A-200");
  auto& connection = ana.anfitrion->Conexion();
  EXPECT_EQ(LeeCinta(connection, {.documento = document}).size(), 2U);
  EXPECT_EQ(LeeCinta(connection, {.pendientes = true}).size(), 2U);
  ASSERT_EQ(LeeCinta(connection, {.ultimas = 2}).size(), 2U);
  EXPECT_EQ(LeeCinta(connection, {.ultimas = 2})[0].texto, "9999");
}

TEST_F(Cinta, ATapeGoesOutAsAFileThatNoSpreadsheetTakesForAFormula) {
  ana.Entrada({});
  Lee("A-100");
  Lee("=1+1, \"x\"");
  const std::string path = ana.carpeta.Ruta("cinta.csv").string();
  ana.anfitrion->ExportaCinta({}, path);
  std::ifstream file(path);
  std::stringstream text;
  text << file.rdbuf();
  const std::string line = Uno("SELECT id_entrada FROM entpart");
  EXPECT_EQ(text.str(),
            "cuando,usuario,estacion,tipo,documento,lectura,estado,renglon,cantidad,motivo\r\n"
            "2024-03-05 14:15:00,ANA,E1,Entrada,1,A-100,renglon," +
                line +
                ",1,\r\n"
                "2024-03-05 14:15:00,ANA,E1,Entrada,1,\"'=1+1, \"\"x\"\"\",sin articulo,,,\r\n");
  EXPECT_NE(ErrorDe([&] { ana.anfitrion->ExportaCinta({}, ana.carpeta.Ruta("no/hay.csv").string()); }),
            "(ningún error)");
  if (!EnServidor()) {
    EXPECT_NE(ErrorDe([&] { ana.anfitrion->ExportaCinta({}, Direccion().substr(7)); }), "(ningún error)")
        << "never over the base";
  }
}

}  // namespace
}  // namespace tarvik::host
