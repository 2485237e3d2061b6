// A server that goes away, on a server of the test's own: sessions ended, the wire cut, an answer lost on the
// way, the server stopped and started while stations work. What was acknowledged is there, nothing moves
// twice, and a short absence is not even seen.
#include <thread>

#include "tests/caos/puente.h"
#include "tests/caos/servidor.h"
#include "tests/caos/taller.h"

namespace tarvik::caos {
namespace {

class Cortes : public Taller {
 protected:
  Cortes() : Taller(Nueva()) {}

  // Two stations at work while `corta` is done again and again, at random moments.
  void Trabajan(const std::string& direccion, long veces, int mas_tarde,
                const std::function<void(long)>& corta) {
    const auto uno = Obrero("1", "0", direccion);
    const auto dos = Obrero("2", "0", direccion);
    // A program that can't even open the base is no station yet.
    for (Proceso* obrero : {uno.get(), dos.get()}) {
      while (const auto linea = obrero->Lee(20s)) {
        Oye(*linea);
        if (*linea == "paso\tempieza") break;
      }
    }
    for (long i = 0; i < veces; ++i) {
      const auto hasta = std::chrono::steady_clock::now() + std::chrono::milliseconds(Al(5, mas_tarde));
      while (std::chrono::steady_clock::now() < hasta) {
        for (Proceso* obrero : {uno.get(), dos.get()}) {
          while (const auto linea = obrero->Lee(1ms)) Oye(*linea);
        }
      }
      corta(i);
    }
    Despide(*uno);
    Despide(*dos);
    Prueba();
    Dato("cortes", veces);
    Dato("documentos", hechos);
    Dato("renglones acusados", static_cast<long>(acuses.Renglones().size()));
    Dato("documentos acusados", static_cast<long>(acuses.Afectados().size()));
    Dato("cajas", static_cast<long>(cajas.size()));
    Dato("completados", remediado.completados);
    Dato("pendientes terminados", remediado.terminados);
    EXPECT_GT(hechos, 0);
  }
  ServidorPropio& servidor() { return ServidorPropio::ElMismo(); }

  inline static std::string nombre;

 private:
  static std::string Nueva() {
    nombre = ServidorPropio::ElMismo().NuevaBase();
    return ServidorPropio::ElMismo().Direccion(nombre);
  }
};

TEST_F(Cortes, SessionsEndedByTheServer) {
  Trabajan("", Veces("TARVIK_CAOS_CORTES", 25), 120, [&](long) { servidor().CortaSesiones(nombre); });
}

TEST_F(Cortes, AWireThatIsCutLosesAnswersAndStandsStill) {
  Puente puente(servidor().Enchufe());
  Trabajan(servidor().Direccion(nombre, puente.Carpeta()), Veces("TARVIK_CAOS_CORTES", 25), 120, [&](long i) {
    if (i % 3 == 0) puente.Corta();
    if (i % 3 == 1) puente.PierdeRespuesta();
    if (i % 3 == 2) puente.Detiene(std::chrono::milliseconds(Al(20, 300)));
  });
  Dato("respuestas perdidas", puente.Perdidas());
}

// Otherwise a program that nobody works at would be dead for the others until its next key.
TEST_F(Cortes, AnIdleProgramIsThereAgainAtItsFirstLookOverASlowWire) {
  Puente puente(servidor().Enchufe());
  const auto aqui = data::OpenBase(servidor().Direccion(nombre))->Connect();
  const auto lejos = data::OpenBase(servidor().Direccion(nombre, puente.Carpeta()))->Connect();
  lejos->Live(7);
  ASSERT_TRUE(aqui->Lives(7));
  puente.Corta();
  for (int vuelta = 0; vuelta < 200 && aqui->Lives(7); ++vuelta) std::this_thread::sleep_for(10ms);
  ASSERT_FALSE(aqui->Lives(7));
  puente.Detiene(200ms);
  lejos->Changes();
  EXPECT_TRUE(aqui->Lives(7));
}

TEST_F(Cortes, TheServerStoppedAndStartedAgain) {
  Trabajan("", Veces("TARVIK_CAOS_PAROS", 4), 400, [&](long i) {
    servidor().Para(i % 2 == 0 ? SIGINT : SIGQUIT);
    std::this_thread::sleep_for(std::chrono::milliseconds(Al(50, 700)));
    servidor().Arranca();
  });
}

// In the middle of the posting of sixty lines; so that the operator sees nothing of it.
class UnSegundo : public Cortes {
 protected:
  void Ausente(const std::string& orden, int senal) {
    const auto obrero = Mandado("1");
    ASSERT_NE(Ordena(*obrero, orden), "no");
    obrero->Escribe("finaliza");
    for (int afectados = 0; afectados < 20;) {
      const auto linea = obrero->Lee(20s);
      ASSERT_TRUE(linea.has_value());
      Oye(*linea);
      if (*linea == "paso\tafecta") ++afectados;
    }
    servidor().Para(senal);
    std::this_thread::sleep_for(700ms);
    servidor().Arranca();
    EXPECT_EQ(Responde(*obrero), "sí");
    EXPECT_TRUE(cajas.empty()) << cajas.size() << " cajas; la primera: " << cajas.front();
    EXPECT_EQ(Cuenta("SELECT COUNT(*) FROM movsinv WHERE operacion <> 'T+'"),
              Cuenta("SELECT COUNT(*) FROM entpart") + Cuenta("SELECT COUNT(*) FROM salpart"));
    Prueba();
    EXPECT_EQ(remediado.completados, 0);
  }
};

TEST_F(UnSegundo, AwayInTheMiddleOfPostingAGoodsInNobodySeesIt) { Ausente("nueva Entrada 60", SIGINT); }
TEST_F(UnSegundo, AwayInTheMiddleOfPostingATransferNobodySeesIt) { Ausente("nueva Salida 60 2", SIGQUIT); }

}  // namespace
}  // namespace tarvik::caos
