// The sub-commands of the program: what they print, what they do, and the code that a script gets.
#include "host/ordenes.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <sstream>

#include "tests/host/puestos.h"

namespace tarvik::host {
namespace {

using tests::Escenario;

class OrdenesDePrueba : public DosPuestos {
 protected:
  struct Dicho {
    int codigo;
    std::string salida;
    std::string errores;
  };
  Dicho Corre(std::vector<std::string> words, std::optional<bool> confirma = {}) {
    CLI::App program;
    Ordenes orders(program);
    std::reverse(words.begin(), words.end());
    program.parse(words);
    EXPECT_TRUE(orders.Pedida());
    Opciones options;
    options.base = base;
    options.usuario = "EVA";
    options.estacion = "E7";
    options.ruta = carpeta.Ruta("datos").string();
    std::ostringstream out, errors;
    Consola console{out, errors, {}};
    if (confirma) console.confirma = [&](const std::string&) { return *confirma; };
    const int code = orders.Corre(std::move(options), console);
    return {code, out.str(), errors.str()};
  }
  std::int32_t Afectada() {
    auto& f = ana.Entrada({"5", "6"});
    const std::int32_t number = f.Entrada;
    Escenario::Tecla(f, "F5");
    return number;
  }
  void QuitaElPrimero() {
    Sql("DELETE FROM movsinv WHERE id_entrada = 1");
    Sql("UPDATE existenciaalmacen SET existencia = existencia - 5 WHERE articulo = 'A-100'");
  }

  CarpetaTemporal carpeta;
  std::string base = Direccion();
};

TEST_F(OrdenesDePrueba, OfWholeDocumentsThereIsNothingToDo) {
  const auto number = std::to_string(Afectada());
  EXPECT_EQ(Corre({"a_medias"}).salida, "Todos los documentos están enteros.\n");
  EXPECT_EQ(Corre({"a-medias"}).codigo, kBien);
  EXPECT_EQ(Corre({"completa", "entrada", number}).salida, "El documento estaba entero.\n");
  EXPECT_EQ(Corre({"completa", "--todos"}).codigo, kBien);
}

TEST_F(OrdenesDePrueba, AHalfPostedDocumentIsListedAndCompleted) {
  const auto number = std::to_string(Afectada());
  QuitaElPrimero();
  const Dicho listed = Corre({"a_medias"});
  EXPECT_EQ(listed.codigo, kHayFaltas);
  EXPECT_EQ(listed.salida,
            "Tipo     Documento  Estado  Renglones  Faltan\n"
            "Entrada  1          CO      2          1\n");
  EXPECT_EQ(Corre({"completa", "entrada", number}).salida, "Se hizo 1 movimiento que faltaba.\n");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv"), "2");
  QuitaElPrimero();
  EXPECT_EQ(Corre({"completa", "--todos"}).salida,
            "Entrada 1: 1 movimiento que faltaba.\nTodos los documentos están enteros.\n");
}

TEST_F(OrdenesDePrueba, BeforePostingItIsToldWhatADocumentLacksAndWhatLooksLikeASlip) {
  Sql("UPDATE prods SET Invent = 1");
  ana.Salida({"600"}).Unload();
  EXPECT_EQ(Corre({"alcanza", "salida", "1"}).salida, "A la salida 1 no le falta nada.\n");
  EXPECT_EQ(Corre({"alcanza", "salida", "1"}).codigo, kBien);
  ana.Salida({"700"}).Unload();
  const Dicho lacks = Corre({"alcanza", "salida", "2"});
  EXPECT_EQ(lacks.codigo, kHayFaltas);
  EXPECT_EQ(lacks.salida,
            "Artículo  Pide  Hay   En otros  Renglones\n"
            "A-100     700   1000  600       2\n");
  ana.Entrada({"5", "5"}).Unload();
  Sql("UPDATE entpart SET precio = 61.5");
  const Dicho warned = Corre({"avisos", "entrada", "1"});
  EXPECT_EQ(warned.codigo, kHayFaltas);
  EXPECT_EQ(warned.salida,
            "Renglón  Clase     Qué se encontró\n"
            "2        repetido  A-100: hay otro renglón igual, con cantidad 5 y precio 61.50\n");
  Sql("UPDATE entpart SET cantidad = 6 WHERE id_entrada = 2");
  EXPECT_EQ(Corre({"avisos", "entrada", "1"}).salida, "Nada llama la atención en la entrada 1.\n");
  const Dicho unknown = Corre({"alcanza", "salida", "99"});
  EXPECT_EQ(unknown.codigo, kError);
  EXPECT_EQ(unknown.errores, "No existe la salida 99\n");
}

TEST_F(OrdenesDePrueba, ADocumentIsPrintedAgainAndItsPageNamed) {
  const auto number = std::to_string(Afectada());
  const Dicho printed = Corre({"imprime", "entrada", number});
  EXPECT_EQ(printed.codigo, kBien);
  EXPECT_EQ(printed.salida, carpeta.Ruta("datos/impresos/entrada-" + number + ".html").string() + "\n");
  EXPECT_NE(Lee(carpeta.Ruta("datos/impresos/entrada-" + number + ".html")).find("A-100"), std::string::npos);
  EXPECT_EQ(Corre({"imprime", "salida", "99"}).codigo, kError);
}

TEST_F(OrdenesDePrueba, TheTapeIsListedBoundDroppedTakenBackAndExported) {
  EXPECT_EQ(Corre({"cinta"}).salida, "No hay lecturas.\n");
  ana.anfitrion->Ambiente().Parametro("Lector", 1);
  auto& f = ana.Entrada({});
  for (const char* code : {"A-200", "9999", "8888"}) ana.anfitrion->Lectura(code);
  f.Unload();
  EXPECT_EQ(Corre({"cinta", "entrada", "1", "--pendientes"}).salida,
            "Lectura  Cuándo               Usuario  Estación  Tipo     Documento  Código  Cómo quedó\n"
            "2        2024-03-05 14:15:00  ANA      E1        Entrada  1          9999    sin artículo\n"
            "3        2024-03-05 14:15:00  ANA      E1        Entrada  1          8888    sin artículo\n");
  EXPECT_EQ(Corre({"asigna", "2", "A-100", "--unidades", "12"}).salida,
            "La lectura \"9999\" quedó en espera.\n");
  EXPECT_EQ(Uno("SELECT cantidad FROM clavesadd WHERE clave = '9999'"), "12");
  EXPECT_EQ(Corre({"descarta", "3", "no es nuestra"}).salida,
            "La lectura \"8888\" quedó descartada: no es nuestra.\n");
  EXPECT_EQ(Corre({"deshace", "1"}).salida, "La lectura \"A-200\" quedó deshecha.\n");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "0");
  EXPECT_EQ(Corre({"deshace", "1"}).codigo, kError);
  EXPECT_EQ(Corre({"deshace", "99"}).errores, "No existe la lectura 99\n");
  EXPECT_EQ(Corre({"cinta", "entrada"}).errores, "Diga qué documento, por ejemplo: cinta entrada 12\n");
  const std::string file = carpeta.Ruta("cinta.csv").string();
  EXPECT_EQ(Corre({"cinta", "--exporta", file}).salida, "La cinta está en " + file + ".\n");
  EXPECT_TRUE(std::filesystem::exists(file));
}

TEST_F(OrdenesDePrueba, WhatCannotBeCompletedIsAnErrorAndTwo) {
  for (const auto& [words, told] : std::vector<std::pair<std::vector<std::string>, std::string>>{
           {{"completa"}, "Diga qué documento, por ejemplo: completa entrada 12; o --todos\n"},
           {{"completa", "entrada"}, "Diga qué documento, por ejemplo: completa entrada 12; o --todos\n"},
           {{"completa", "entrada", "9"}, "No existe la entrada 9\n"},
           {{"completa", "factura", "9"},
            "No hay documentos del tipo \"factura\"; son \"Entrada\" y \"Salida\"\n"}}) {
    const Dicho said = Corre(words);
    EXPECT_EQ(said.codigo, kError);
    EXPECT_EQ(said.errores, told);
  }
}

TEST_F(OrdenesDePrueba, APendingDocumentWithLinesThatHaveMovedIsLeftToItsScreen) {
  Afectada();
  Sql("UPDATE entradas SET estado = 'PE'");
  const Dicho said = Corre({"completa", "--todos"});
  EXPECT_EQ(said.codigo, kHayFaltas);
  EXPECT_EQ(said.salida, "Entrada 1: está pendiente con renglones ya movidos; finalícela en su pantalla.\n");
}

TEST_F(OrdenesDePrueba, TheWholeBaseIsProvedAndMended) {
  Sql("DELETE FROM existenciaalmacen");
  Afectada();
  EXPECT_EQ(Corre({"revisa"}).salida, "La base está sana.\n");
  Sql("UPDATE prods SET alm1 = 77 WHERE articulo = 'A-100'");
  const Dicho found = Corre({"revisa"});
  EXPECT_EQ(found.codigo, kHayFaltas);
  EXPECT_NE(found.salida.find("columna"), std::string::npos) << found.salida;
  EXPECT_NE(found.salida.find("reparable"), std::string::npos) << found.salida;
  const Dicho mended = Corre({"revisa", "--repara"});
  EXPECT_EQ(mended.codigo, kBien);
  EXPECT_NE(mended.salida.find("reparado"), std::string::npos) << mended.salida;
  Sql("UPDATE series SET valor = 9 WHERE nombre = 'MovEnt'");
  EXPECT_EQ(Corre({"revisa"}).codigo, kBien);
  EXPECT_EQ(Corre({"revisa", "--huecos"}).codigo, kHayFaltas);
}

TEST_F(OrdenesDePrueba, StockWhoseOpeningIsNotInTheLedgerIsEntered) {
  Afectada();
  EXPECT_EQ(Corre({"revisa", "--abre-saldos"}).salida, "Se asentaron 2 movimientos de apertura.\n");
  EXPECT_EQ(Corre({"revisa", "--abre-saldos"}).salida, "Se asentaron 0 movimientos de apertura.\n");
}

TEST_F(OrdenesDePrueba, HoldersAreListedAndADocumentIsLetGoOf) {
  const auto& f = ana.Entrada({"5"});
  const Dicho held = Corre({"tenencias"});
  EXPECT_EQ(held.codigo, kBien);
  EXPECT_NE(held.salida.find("ANA"), std::string::npos) << held.salida;
  const Dicho freed = Corre({"libera", "entrada", std::to_string(f.Entrada), "--motivo", "se fue"});
  EXPECT_EQ(freed.salida, "El documento está libre.\n");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM tenencias"), "0");
  const Dicho record = Corre({"bitacora", "--desde", "2024-03-05"});
  EXPECT_NE(record.salida.find("Motivo: se fue"), std::string::npos) << record.salida;
  EXPECT_EQ(Corre({"bitacora", "--desde", "ayer"}).codigo, kError);
  EXPECT_EQ(Corre({"libera", "entrada", "9"}).errores, "No existe la entrada 9\n");
}

TEST_F(OrdenesDePrueba, ARequestWaitsForItsAnswer) {
  const auto& f = ana.Entrada({"5"});
  const auto number = std::to_string(f.Entrada);
  const Dicho nobody = Corre({"pide", "entrada", number, "--espera", "0"});
  EXPECT_EQ(nobody.codigo, kError);
  EXPECT_EQ(nobody.errores, "Nadie contestó por la entrada 1.\n");
  std::thread holder([&] {
    while (Uno("SELECT COUNT(*) FROM peticiones") == "1")
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    Sql("DELETE FROM tenencias");
  });
  const Dicho closed = Corre({"pide", "entrada", number, "--espera", "30"});
  holder.join();
  EXPECT_EQ(closed.codigo, kBien);
  EXPECT_EQ(closed.salida, "La entrada 1 está libre.\n");
  EXPECT_EQ(Corre({"pide", "entrada", number}).errores,
            "Nadie tiene abierta la entrada 1: no hay a quién pedirla\n");
}

TEST_F(OrdenesDePrueba, ADocumentIsDeletedAfterAQuestionAndWhatStaysIsAnError) {
  const auto number = std::to_string(Afectada());
  const Dicho declined = Corre({"elimina", "entrada", number}, false);
  EXPECT_EQ(declined.codigo, kError);
  EXPECT_NE(declined.errores.find("está afectada y tiene 2 renglones con 2 movimientos"), std::string::npos)
      << declined.errores;
  EXPECT_EQ(Corre({"elimina", "entrada", number}).codigo, kError) << "nobody is there to say yes";
  const Dicho done = Corre({"elimina", "entrada", number, "--si"});
  EXPECT_EQ(done.codigo, kBien);
  EXPECT_EQ(done.salida, "Se eliminó la entrada 1.\n");
  EXPECT_EQ(done.errores.find("Ocurrió un error"), std::string::npos) << done.errores;
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entradas"), "0");
  EXPECT_EQ(Corre({"elimina", "entrada", number, "--si"}).errores, "No existe la entrada 1\n");

  const auto& held = ana.Entrada({"5"});
  const Dicho busy = Corre({"elimina", "entrada", std::to_string(held.Entrada), "--si"});
  EXPECT_EQ(busy.codigo, kError);
  EXPECT_NE(busy.errores.find("no se eliminó"), std::string::npos) << busy.errores;
}

TEST_F(OrdenesDePrueba, OfANameMistypedNoBaseIsMade) {
  const std::string file = carpeta.Ruta("tienad.db").string();
  base = "sqlite:" + file;
  const Dicho said = Corre({"revisa"});
  EXPECT_EQ(said.codigo, kError);
  EXPECT_EQ(said.errores, "No existe la base " + file + "\n");
  EXPECT_FALSE(std::filesystem::exists(file));
}

}  // namespace
}  // namespace tarvik::host
