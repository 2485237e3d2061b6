// Programs that are killed: at every part of a document, again and again on one base. Nothing that was
// acknowledged is lost, nothing moves twice, and what was left half posted is whole once it is completed.
#include <thread>

#include "tests/caos/taller.h"

namespace tarvik::caos {
namespace {

class Muertes : public Taller {
 protected:
  // Where the next one dies: at the nth time that this is about to be done, and so much later.
  struct Momento {
    std::string paso;
    int vez;
    std::chrono::microseconds despues;
  };
  Momento Siguiente() {
    static const std::vector<std::string> pasos{"captura", "captura", "alta",    "encabezado", "afecta",
                                                "afecta",  "afecta",  "imprime", "cierra"};
    const std::string& paso = pasos[static_cast<std::size_t>(Al(0, static_cast<int>(pasos.size()) - 1))];
    return {"paso\t" + paso, paso == "afecta" ? Al(1, 9) : Al(1, 3),
            std::chrono::microseconds(paso == "captura" ? Al(0, 30000) : Al(0, 1500))};
  }
  // Runs one and kills it. Gives what it said last.
  std::string MataUno(const std::string& quien, const Momento& momento) {
    const auto obrero = Obrero(quien);
    std::string ultimo;
    Acuses suyos;
    const auto oye = [&](const std::string& linea) {
      Oye(linea);
      suyos.Oye(linea);
      if (linea.starts_with("paso\t")) ultimo = linea.substr(5);
    };
    int faltan = momento.vez;
    const auto limite = std::chrono::steady_clock::now() + 5s;
    while (faltan > 0 && std::chrono::steady_clock::now() < limite) {
      const auto linea = obrero->Lee(5s);
      if (!linea) break;
      oye(*linea);
      if (*linea == momento.paso) --faltan;
    }
    std::this_thread::sleep_for(momento.despues);
    for (const std::string& linea : obrero->Mata()) oye(linea);
    // Of this one alone: the rest has been proved before.
    const auto conexion = data::OpenBase(base.Direccion())->Connect();
    const Fallas fallas = JuzgaAcuses(*conexion, suyos);
    EXPECT_TRUE(fallas.empty()) << "tras morir en " << ultimo << ": " << Texto(fallas);
    return ultimo;
  }
};

TEST_F(Muertes, OneProgramKilledAgainAndAgain) {
  const long cuantas = Veces("TARVIK_CAOS_MUERTES", 15);
  std::map<std::string, long> donde;
  for (long i = 0; i < cuantas && !HasFailure(); ++i) {
    const Momento momento = Siguiente();
    ++donde[MataUno("1", momento)];
    const Fallas fallas = caos::Prueba(base.Direccion(), base.Ruta(), {}, &remediado);
    EXPECT_TRUE(fallas.empty()) << "muerte " << i << ": " << Texto(fallas);
  }
  Prueba();
  for (const auto& [paso, veces] : donde) Dato("muertes en " + paso, veces);
  Dato("renglones acusados", static_cast<long>(acuses.Renglones().size()));
  Dato("documentos acusados", static_cast<long>(acuses.Afectados().size()));
  Dato("completados", remediado.completados);
  Dato("movimientos que faltaban", remediado.movimientos);
  Dato("pendientes terminados", remediado.terminados);
  EXPECT_TRUE(cajas.empty()) << cajas.front();
}

TEST_F(Muertes, OneOfSeveralKilledAgainAndAgain) {
  const long cuantas = Veces("TARVIK_CAOS_MUERTES_ENTRE_VARIOS", 4);
  const auto dos = Obrero("2");
  const auto tres = Obrero("3");
  for (long i = 0; i < cuantas; ++i) {
    MataUno("1", Siguiente());
    for (Proceso* otro : {dos.get(), tres.get()}) {
      while (const auto linea = otro->Lee(0ms)) Oye(*linea);
    }
  }
  Despide(*dos);
  Despide(*tres);
  Prueba();
  Dato("documentos de los que siguieron", hechos);
  Dato("renglones acusados", static_cast<long>(acuses.Renglones().size()));
  Dato("completados", remediado.completados);
  EXPECT_GT(hechos, 2);
  EXPECT_TRUE(cajas.empty()) << cajas.front();
}

// The judge itself: each kind of damage is seen. A judge who sees nothing would prove nothing.
TEST_F(Muertes, TheJudgeSeesEachKindOfDamage) {
  const auto obrero = Mandado("1");
  ASSERT_NE(Ordena(*obrero, "nueva Entrada 4"), "no");
  ASSERT_EQ(Ordena(*obrero, "finaliza"), "sí");
  ASSERT_NE(Ordena(*obrero, "nueva Salida 4 2"), "no");
  ASSERT_EQ(Ordena(*obrero, "finaliza"), "sí");
  ASSERT_NE(Ordena(*obrero, "nueva Salida 3"), "no");
  Ordena(*obrero, "cierra");
  Prueba();
  const auto conexion = data::OpenBase(base.Direccion())->Connect();
  const auto todas = [&] {
    return Texto(JuzgaAcuses(*conexion, acuses)) + Texto(JuzgaLibros(*conexion)) +
           Texto(JuzgaEnteros(*conexion));
  };
  for (const auto& [dano, dicho] : std::initializer_list<std::pair<const char*, const char*>>{
           {"DELETE FROM salpart WHERE salida = 2", "se acusó"},
           {"UPDATE entpart SET cantidad = cantidad + 1 WHERE id_entrada = 1", "se acusó"},
           {"UPDATE entradas SET estado = 'PE'", "se acusó afectada y no lo está"},
           {"UPDATE entradas SET estado = 'PE'", "Un documento pendiente tiene renglones movidos"},
           {"DELETE FROM movsinv WHERE operacion = 'T+' AND id_salida = 1", "le faltan movimientos"},
           {"DELETE FROM movsinv WHERE operacion = 'T+' AND id_salida = 1", "no es lo que llegó"},
           {"DELETE FROM movsinv WHERE id_entrada = 2", "A un documento afectado le falta"},
           {"DELETE FROM movsinv WHERE id_entrada = 2", "no es la suma de sus movimientos"},
           {"UPDATE movsinv SET almacen = 9 WHERE id_entrada = 2", "distinto de su renglón"},
           {"DELETE FROM movsinv", "Hay existencia sin movimientos"},
           {"UPDATE prods SET ALM1 = 77 WHERE articulo = 'A-01'", "La columna ALM1"},
           {"UPDATE series SET valor = 1 WHERE nombre = 'entpart'", "sobre su serie"},
           {"UPDATE salidas SET folio = 1, estacion = 'E1'", "Un folio dos veces"},
           {"UPDATE salidas SET traspaso = 1", "Un número de traspaso dos veces"}}) {
    conexion->Begin();
    conexion->Run(dano, {});
    EXPECT_NE(todas().find(dicho), std::string::npos) << dano << "\n" << todas();
    conexion->Rollback();
  }
  // A double needs a base without the rule.
  conexion->Begin();
  conexion->Define("DROP INDEX una_vez_entrada");
  conexion->Run(
      "INSERT INTO movsinv (ent_sal, operacion, articulo, almacen, cantidad, id_entrada) SELECT ent_sal, "
      "operacion, articulo, almacen, cantidad, id_entrada FROM movsinv WHERE id_entrada = 1",
      {});
  EXPECT_NE(todas().find("Un renglón se movió dos veces"), std::string::npos) << todas();
  conexion->Rollback();
  EXPECT_EQ(todas(), "");
}

}  // namespace
}  // namespace tarvik::caos
