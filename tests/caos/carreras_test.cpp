// Two stations on one document: opened in the same instant and finished by both, let go of while its screen
// is still open, its header held by somebody else while its lines post. Each line moves once.
#include <thread>

#include "tests/caos/taller.h"

namespace tarvik::caos {
namespace {

class Carreras : public Taller {
 protected:
  // So many milliseconds from now, as both programs see it.
  static std::string Dentro(int milisegundos) {
    using namespace std::chrono;
    const auto cuando = steady_clock::now() + milliseconds(milisegundos);
    return " " + std::to_string(duration_cast<nanoseconds>(cuando.time_since_epoch()).count());
  }
  // A pending document of that kind, free. Its number.
  std::string Pendiente(Proceso& obrero, const std::string& tipo, int renglones, int destino = 0) {
    const std::string dicho = Ordena(obrero, "nueva " + tipo + " " + std::to_string(renglones) +
                                                 (destino == 0 ? "" : " " + std::to_string(destino)));
    Ordena(obrero, "cierra");
    return dicho.substr(0, dicho.find(' '));
  }
  void Terminan(std::initializer_list<Proceso*> obreros) {
    for (Proceso* obrero : obreros) Ordena(*obrero, "cierra");
  }
};

TEST_F(Carreras, OneDocumentOpenedInTheSameInstantAndFinishedByBoth) {
  const long veces = Veces("TARVIK_CAOS_CARRERAS", 60);
  const auto uno = Mandado("1");
  const auto dos = Mandado("2");
  long ambos = 0;
  long renglones = 0;
  for (long i = 0; i < veces && !HasFailure(); ++i) {
    const std::string tipo = i % 2 == 0 ? "Entrada" : "Salida";
    const int cuantos = Al(1, 5);
    const std::string numero = Pendiente(*uno, tipo, cuantos, i % 4 == 3 ? 2 : 0);
    const std::string abre = "abre " + tipo + " " + numero + Dentro(3);
    uno->Escribe(abre);
    dos->Escribe(abre);
    const bool abrio_uno = Responde(*uno) != "no";
    const bool abrio_dos = Responde(*dos) != "no";
    EXPECT_TRUE(abrio_uno || abrio_dos);
    ambos += abrio_uno && abrio_dos ? 1 : 0;
    const std::string finaliza = "finaliza" + Dentro(3);
    if (abrio_uno) uno->Escribe(finaliza);
    if (abrio_dos) dos->Escribe(finaliza);
    if (abrio_uno) Responde(*uno);
    if (abrio_dos) Responde(*dos);
    Terminan({uno.get(), dos.get()});
    renglones += cuantos;
  }
  Prueba();
  Dato("carreras", veces);
  Dato("abiertos por los dos", ambos);
  // No line twice; equal ones in a row add up on goods-out.
  EXPECT_LE(Cuenta("SELECT COUNT(*) FROM entpart") + Cuenta("SELECT COUNT(*) FROM salpart"), renglones);
  EXPECT_EQ(Cuenta("SELECT COUNT(*) FROM entpart") + Cuenta("SELECT COUNT(*) FROM salpart"),
            Cuenta("SELECT COUNT(*) FROM movsinv WHERE operacion <> 'T+'"));
}

// The document is let go of by somebody else, by right or by another program's hand on the flag alone, and a
// second station opens it; the first one's screen is still there, and both finish.
TEST_F(Carreras, ADocumentLetGoOfWhileItsScreenIsOpenAndFinishedByBoth) {
  const auto uno = Mandado("1");
  const auto dos = Mandado("2");
  const auto tres = Mandado("3");
  for (const bool por_derecho : {true, false}) {
    for (const std::string tipo : {"Entrada", "Salida"}) {
      const std::string cual = tipo + " " + Pendiente(*uno, tipo, 6);
      ASSERT_NE(Ordena(*uno, "abre " + cual), "no");
      if (por_derecho) {
        Ordena(*tres, "libera " + cual);
      } else {
        Sql("UPDATE " + std::string(tipo == "Entrada" ? "entradas" : "salidas") + " SET ocupado = 0");
      }
      ASSERT_NE(Ordena(*dos, "abre " + cual), "no");
      const std::string finaliza = "finaliza" + Dentro(3);
      uno->Escribe(finaliza);
      dos->Escribe(finaliza);
      Responde(*uno);
      Responde(*dos);
      Terminan({uno.get(), dos.get()});
    }
  }
  Prueba();
  EXPECT_EQ(Cuenta("SELECT COUNT(*) FROM movsinv"),
            Cuenta("SELECT COUNT(*) FROM entpart") + Cuenta("SELECT COUNT(*) FROM salpart"));
}

// Somebody holds the base (a file), or the headers' rows (on a server), from before F5 until the header's
// save has given up. Whatever the operators are told, a second finish doubles nothing.
TEST_F(Carreras, TheHeaderHeldWhileTheLinesPostAndThenFinishedAgain) {
  const auto uno = Mandado("1");
  const auto dos = Mandado("2");
  ASSERT_NE(Ordena(*uno, "nueva Entrada 6"), "no");
  ASSERT_NE(Ordena(*dos, "nueva Salida 6"), "no");
  const auto otro = data::OpenBase(base.Direccion())->Connect();
  otro->Begin();
  otro->Run("UPDATE entradas SET ocupado = ocupado", {});
  otro->Run("UPDATE salidas SET ocupado = ocupado", {});
  uno->Escribe("finaliza");
  dos->Escribe("finaliza");
  std::this_thread::sleep_for(std::chrono::milliseconds(Veces("TARVIK_CAOS_RETENIDO", 5500)));
  otro->Rollback();
  const bool bien_uno = Responde(*uno) == "sí";
  const bool bien_dos = Responde(*dos) == "sí";
  const auto movidos = [&] { return Cuenta("SELECT COUNT(*) FROM movsinv"); };
  Dato("movimientos tras el primer F5", movidos());
  Dato("cajas", static_cast<long>(cajas.size()));
  // Again, from the screen that stayed open or from a new one.
  for (const auto& [obrero, tipo, bien] :
       {std::tuple{uno.get(), "Entrada", bien_uno}, {dos.get(), "Salida", bien_dos}}) {
    if (bien) continue;
    Ordena(*obrero, "cierra");
    if (Ordena(*obrero, std::string("retoma ") + tipo + " 1") != "no") Ordena(*obrero, "finaliza");
    Ordena(*obrero, "cierra");
  }
  const int renglones = Cuenta("SELECT COUNT(*) FROM entpart") + Cuenta("SELECT COUNT(*) FROM salpart");
  EXPECT_LE(movidos(), renglones);
  Prueba();
  EXPECT_EQ(movidos(), renglones);
}

}  // namespace
}  // namespace tarvik::caos
