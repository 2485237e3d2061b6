// Before posting: what a whole goods-out lacks, and what looks like a slip in a goods-in. Nobody is stopped,
// and nothing is written.
#include "host/alcance.h"

#include <chrono>

#include "tests/host/puestos.h"

namespace tarvik::host {
namespace {

using tests::Escenario;

class Alcance : public DosPuestos {
 protected:
  Alcance() {
    Sql("UPDATE prods SET Invent = 1");
    Sql("INSERT INTO usuarios (usuario, existsalidas) VALUES ('ANA', 1)");
    Sql("INSERT INTO usuarios (usuario, existsalidas) VALUES ('LUIS', 1)");
  }
  void Hay(const std::string& articulo, double existencia) {
    Sql("UPDATE existenciaalmacen SET existencia = ? WHERE almacen = 1 AND articulo = ?",
        {existencia, articulo});
  }
  // "A-100 pide 12 hay 10 otros 0 [1,2]" of each finding.
  static std::string Dicho(const std::vector<Faltante>& found) {
    std::string all;
    for (const Faltante& one : found) {
      all += one.articulo + " pide " + data::ToText(one.pide) + " hay " + data::ToText(one.hay) + " otros " +
             data::ToText(one.en_otros) + " [";
      for (const std::int32_t line : one.renglones) all += std::to_string(line) + ",";
      all.back() = ']';
      all += '\n';
    }
    return all;
  }
  // A goods-out of ANA's with two lines of A-100; between them one of another article, so that the second is
  // not added to the first.
  frmSalidasWizard& SalidaPartida(const char* one, const char* two) {
    auto& f = ana.Salida({one});
    Puesto::RenglonDeSalida(f, "A-200", "1");
    Puesto::RenglonDeSalida(f, "A-100", two);
    return f;
  }
  std::string Alcanza(forms::Form& forma) { return Dicho(ana.anfitrion->Alcanza(forma)); }
  // A pending goods-out of somebody else's, as it is stored.
  void OtraSalida(int numero, double cantidad, const std::string& estado = "PE", double almacen = 1) {
    Sql("INSERT INTO salidas (salida, estado, almacen) VALUES (?, ?, ?)", {numero, estado, almacen});
    Sql("INSERT INTO salpart (id_salida, salida, articulo, cantidad) VALUES (?, ?, 'A-100', ?)",
        {numero, numero, cantidad});
  }
};

// Each line by itself passed the check of the entry row.
TEST_F(Alcance, TwoLinesThatPassOneByOneAreTooMuchTogether) {
  Hay("A-100", 10);
  auto& f = SalidaPartida("6", "6");
  EXPECT_TRUE(ana.cajas.empty());
  EXPECT_EQ(Alcanza(f), "A-100 pide 12 hay 10 otros 0 [1,3]\n");
  Hay("A-100", 12);
  EXPECT_EQ(Alcanza(f), "");
}

TEST_F(Alcance, WhatOtherPendingDocumentsAskIsTakenOff) {
  Hay("A-100", 10);
  OtraSalida(50, 3);
  OtraSalida(51, 4);
  OtraSalida(52, 100, "CO");
  OtraSalida(53, 100, "PE", 2);
  auto& f = ana.Salida({"4"});
  EXPECT_EQ(Alcanza(f), "A-100 pide 4 hay 10 otros 7 [1]\n");
  Sql("UPDATE salidas SET estado = 'CO' WHERE salida = 51");
  EXPECT_EQ(Alcanza(f), "");
}

TEST_F(Alcance, AnArticleThatWasNeverThereCountsAsNone) {
  Sql("DELETE FROM existenciaalmacen WHERE articulo = 'A-200'");
  auto& f = ana.Salida({"2"});
  Puesto::RenglonDeSalida(f, "A-200", "1");
  EXPECT_EQ(Alcanza(f), "A-200 pide 1 hay 0 otros 0 [2]\n");
}

TEST_F(Alcance, ArticlesWithoutControlAreLeftOut) {
  Hay("A-100", 1);
  Sql("UPDATE prods SET Invent = 0");
  auto& f = ana.Salida({"5"});
  EXPECT_EQ(Alcanza(f), "");
  Sql("UPDATE prods SET Invent = NULL");
  EXPECT_EQ(Alcanza(f), "");
  Sql("UPDATE prods SET Invent = 1");
  EXPECT_EQ(Alcanza(f), "A-100 pide 5 hay 1 otros 0 [1]\n");
}

// The screen's warehouse is what will be stored and posted.
TEST_F(Alcance, TheWarehouseIsTheOneOnTheScreen) {
  Sql("INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (2, 'A-100', 3)");
  auto& f = ana.Salida({"5"});
  EXPECT_EQ(Alcanza(f), "");
  f.txtFields(campo::Almacen).Text("2");
  EXPECT_EQ(Alcanza(f), "A-100 pide 5 hay 3 otros 0 [1]\n");
}

TEST_F(Alcance, TenthsThatAddUpToWhatThereIsLackNothing) {
  Hay("A-100", 0.3);
  auto& f = ana.Salida({"0.1", "0.1", "0.1"});  // 0.30000000000000004 in binary
  EXPECT_EQ(Alcanza(f), "");
  Hay("A-100", 0.29);
  EXPECT_NE(Alcanza(f), "");
}

// What is stored is what posting moves, also beyond what the grid can show.
TEST_F(Alcance, LinesThatTheGridDoesNotShowCountToo) {
  Hay("A-100", 10);
  auto& f = ana.Salida({"6"});
  Sql("INSERT INTO salpart (id_salida, salida, articulo, cantidad) VALUES (90, ?, 'A-100', 7)", {f.Salida});
  EXPECT_EQ(Alcanza(f), "A-100 pide 13 hay 10 otros 0 [1,90]\n");
}

TEST_F(Alcance, LinesThatHaveMovedAskForNothingMore) {
  Hay("A-100", 10);
  auto& f = SalidaPartida("6", "6");
  Sql("INSERT INTO movsinv (operacion, id_salida, articulo, almacen, cantidad) VALUES ('SA', 1, 'A-100', 1, "
      "6)");
  Hay("A-100", 4);
  EXPECT_EQ(Alcanza(f), "A-100 pide 6 hay 4 otros 0 [3]\n");
  // And somebody else, who asks for the rest of it, is not told of the line that has gone.
  auto& other = luis.Salida({"1"});
  EXPECT_EQ(Dicho(luis.anfitrion->Alcanza(other)), "A-100 pide 1 hay 4 otros 6 [4]\n");
}

TEST_F(Alcance, ANewDocumentAPostedOneAndAGoodsInLackNothing) {
  auto& fresh = ana.Salida({});
  EXPECT_EQ(Alcanza(fresh), "");
  fresh.Unload();
  auto& f = ana.Salida({"5"});
  f.Check3.Value(0);
  Escenario::Tecla(f, "F5");
  ASSERT_EQ(Uno("SELECT estado FROM salidas"), "CO");
  Hay("A-100", 0);
  ana.puerta->ConsultaSalida(1);
  EXPECT_EQ(Alcanza(*ana.plataforma.Screens().back()), "");
  EXPECT_EQ(Alcanza(ana.Entrada({"5000"})), "");
}

TEST_F(Alcance, AScreenThatIsNoDocumentIsRefusedInSpanish) {
  forms::Form other(ana.plataforma, "frmOtra", "Otra");
  for (const std::string& said :
       {ErrorDe([&] { Alcanza(other); }), ErrorDe([&] { ana.anfitrion->Avisos(other); })}) {
    EXPECT_EQ(
        said,
        "Antes de afectar sólo se comprueban las entradas y las salidas; \"Otra\" no es ninguna de ellas");
  }
}

TEST_F(Alcance, ItReadsAndNeitherSendsAStatementOfTheScreensNorChangesAnything) {
  Hay("A-100", 1);
  auto& out = ana.Salida({"5"});
  auto& in = ana.Entrada({"5", "5"});
  const auto sent = ana.testigo.sentencias.size();
  const auto changes = ana.anfitrion->Conexion().SoFar().changes;
  EXPECT_NE(Alcanza(out), "");
  EXPECT_FALSE(ana.anfitrion->Avisos(in).empty());
  EXPECT_EQ(ana.testigo.sentencias.size(), sent);
  EXPECT_EQ(ana.anfitrion->Conexion().SoFar().changes, changes);
}

// A window asks on a connection of its own, by what it took from the screen.
TEST_F(Alcance, AnyConnectionAnswers) {
  Hay("A-100", 1);
  const PorAfectar document = PorAfectarDe(ana.Salida({"5"}));
  EXPECT_EQ(Dicho(LeeAlcance(*aparte, document)), "A-100 pide 5 hay 1 otros 0 [1]\n");
  EXPECT_TRUE(LeeAvisos(*aparte, document, {}).empty()) << "warnings are a goods-in's";
}

// ---- goods-in ----

class Avisos : public Alcance {
 protected:
  // "precio 2: text" of each warning.
  static std::string Dichos(const std::vector<AvisoDeEntrada>& found) {
    std::string all;
    for (const AvisoDeEntrada& one : found)
      all += one.clase + " " + std::to_string(one.renglon) + ": " + one.texto + "\n";
    return all;
  }
  std::string Avisa(forms::Form& forma) { return Dichos(ana.anfitrion->Avisos(forma)); }
  void Precio(int line, double price) {
    Sql("UPDATE entpart SET precio = ? WHERE id_entrada = ?", {price, line});
  }
  // Posted goods-in of A-100, one line each.
  void Recibidas(std::initializer_list<double> cantidades, const char* estado = "CO") {
    for (const double cantidad : cantidades) {
      const int id = ++recibidas_;
      Sql("INSERT INTO entradas (entrada, estado) VALUES (?, ?)", {500 + id, estado});
      Sql("INSERT INTO entpart (id_entrada, entrada, articulo, cantidad) VALUES (?, ?, 'A-100', ?)",
          {500 + id, 500 + id, cantidad});
    }
  }
  int recibidas_ = 0;
};

TEST_F(Avisos, APriceFarFromTheLastCostIsTold) {
  auto& f = ana.Entrada({"5"});  // of A-100, which cost 61.5
  Precio(1, 92.25);              // half more, and no further
  EXPECT_EQ(Avisa(f), "");
  Precio(1, 92.26);
  EXPECT_EQ(Avisa(f), "precio 1: A-100: el precio 92.26 está 50 % arriba del último costo, 61.50\n");
  Precio(1, 30.75);
  EXPECT_EQ(Avisa(f), "");
  Precio(1, 0);
  EXPECT_EQ(Avisa(f), "precio 1: A-100: el precio 0.00 está 100 % abajo del último costo, 61.50\n");
  Sql("UPDATE prods SET costo_u = 0");
  EXPECT_EQ(Avisa(f), "") << "with no cost there is nothing to be far from";
}

TEST_F(Avisos, AQuantityFarAboveWhatEverCameInIsTold) {
  Sql("UPDATE prods SET costo_u = 0");
  Recibidas({4, 10, 7});
  auto& f = ana.Entrada({"50"});
  EXPECT_EQ(Avisa(f), "");
  Sql("UPDATE entpart SET cantidad = 51 WHERE id_entrada = 1");
  EXPECT_EQ(Avisa(f),
            "cantidad 1: A-100: la cantidad 51 es más de cinco veces la mayor de sus últimas entradas, 10\n");
}

TEST_F(Avisos, OnlyTheLastTwentyLinesOfPostedDocumentsCount) {
  Sql("UPDATE prods SET costo_u = 0");
  auto& f = ana.Entrada({"51"});
  EXPECT_EQ(Avisa(f), "") << "it never came in";
  Recibidas({100}, "PE");
  EXPECT_EQ(Avisa(f), "");
  Recibidas({100, 10, 10, 10, 10, 10, 10, 10, 10, 10, 10, 10, 10, 10, 10, 10, 10, 10, 10, 10});
  EXPECT_EQ(Avisa(f), "") << "the hundred is the twentieth";
  Recibidas({10});
  EXPECT_NE(Avisa(f), "");
}

TEST_F(Avisos, ALineThatIsThereTwiceIsToldFromTheSecondOn) {
  Sql("UPDATE prods SET costo_u = 0");
  auto& f = ana.Entrada({"5", "6", "5", "5"});
  const std::string price = data::ToText(f.fg2.TextMatrix(1, 3));
  const std::string all = Avisa(f);
  EXPECT_EQ(all.find("repetido 3: A-100: hay otro renglón igual, con cantidad 5 y precio "), 0U) << all;
  EXPECT_NE(all.find("\nrepetido 4: "), std::string::npos) << all;
  EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), 2);
  Precio(3, 1);
  Precio(4, 2);
  EXPECT_EQ(Avisa(f), "") << "another price is another line";
}

TEST_F(Avisos, OfAPostedDocumentAndOfAGoodsOutThereAreNone) {
  auto& f = ana.Entrada({"5", "5"});
  EXPECT_NE(Avisa(f), "");
  Escenario::Tecla(f, "F5");
  ASSERT_EQ(Uno("SELECT estado FROM entradas"), "CO");
  ana.puerta->ConsultaEntrada(1);
  EXPECT_EQ(Avisa(*ana.plataforma.Screens().back()), "");
  EXPECT_EQ(Avisa(ana.Salida({"5", "5"})), "");
}

// ---- ten thousand lines ----

// Documents of ten thousand lines over as many articles, each of which has come and gone before.
class Largo : public Alcance {
 protected:
  static constexpr int kRenglones = 10000;
  void SetUp() override {
    const std::string numbers =
        "WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 10000) ";
    const auto fill = [&](const std::string& into, const std::string& what) {
      Sql("INSERT INTO " + into + " " + numbers + "SELECT " + what + " FROM n");
    };
    const std::string article = "'L-' || CAST(i AS TEXT)";
    fill("prods (articulo, Invent, costo_u)", article + ", 1, 10");
    fill("existenciaalmacen (almacen, articulo, existencia)", "1, " + article + ", 4");
    Sql("INSERT INTO salidas (salida, estado, almacen) VALUES (800, 'PE', 1)");
    Sql("INSERT INTO salidas (salida, estado, almacen) VALUES (801, 'PE', 1)");
    Sql("INSERT INTO entradas (entrada, estado, almacen) VALUES (800, 'PE', 1)");
    fill("salpart (id_salida, salida, articulo, cantidad)", "20000 + i, 800, " + article + ", 3");
    fill("salpart (id_salida, salida, articulo, cantidad)", "40000 + i, 801, " + article + ", 2");
    fill("entpart (id_entrada, entrada, articulo, cantidad, precio)",
         "900000 + i, 800, " + article + ", 3, 30");
    for (int document = 1; document <= 25; ++document) {
      const std::string number = std::to_string(document);
      Sql("INSERT INTO entradas (entrada, estado) VALUES (?, 'CO')", {700 + document});
      fill("entpart (id_entrada, entrada, articulo, cantidad, precio)",
           number + " * 10000 + i, 700 + " + number + ", " + article + ", 0.5, 10");
    }
  }
  template <class F>
  static double Segundos(F&& act) {
    const auto before = std::chrono::steady_clock::now();
    act();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - before).count();
  }
};

TEST_F(Largo, AnswersBeforeAnybodyWaits) {
  constexpr double kSegundos = 2;  // a tenth of that on a machine with nothing else to do
  double seconds = Segundos([&] {
    const auto found = ana.anfitrion->Alcanza(Retenido{Tipo::Salida, 800});
    ASSERT_EQ(found.size(), static_cast<std::size_t>(kRenglones));
    EXPECT_EQ(Dicho({found.front()}), "L-1 pide 3 hay 4 otros 2 [20001]\n");
  });
  RecordProperty("alcanza_ms", static_cast<int>(seconds * 1000));
  EXPECT_LT(seconds, kSegundos);
  seconds = Segundos([&] {
    const auto found = ana.anfitrion->Avisos(Retenido{Tipo::Entrada, 800});
    EXPECT_EQ(found.size(), 2U * kRenglones) << "of each the price and the quantity";
  });
  RecordProperty("avisos_ms", static_cast<int>(seconds * 1000));
  EXPECT_LT(seconds, kSegundos);
}

}  // namespace
}  // namespace tarvik::host
