// A full disk under the base's file: posting goes on into it, then there is room again, and every document is
// completed. The embedded engine's affair; a server's disk is the server's.
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

#include <fstream>

#include "tests/caos/taller.h"

namespace tarvik::caos {
namespace {

// One shop on that file, filled up and given room again while a worker enters and finishes documents.
class Disco : public Taller {
 protected:
  Disco() : Taller("sqlite::memory:") {}  // each story brings a file of its own

  // The finish of one document with no room at all from its tenth line on, and everything behind it.
  void LlenoALaMitad(const std::string& direccion, const std::function<void()>& llena,
                     const std::function<void()>& vacia, Proceso& obrero, const std::string& orden) {
    ASSERT_NE(Ordena(obrero, orden), "no");
    obrero.Escribe("finaliza");
    bool lleno = false;
    for (int afectados = 0;;) {
      const auto linea = obrero.Lee(60s);
      ASSERT_TRUE(linea.has_value());
      Oye(*linea);
      if (*linea == "paso\tafecta" && ++afectados == 10) {
        llena();
        lleno = true;
      }
      if (linea->starts_with("listo\t")) break;
    }
    ASSERT_TRUE(lleno);
    vacia();
    Ordena(obrero, "cierra");
    // The operator goes on: what could not be written of the closed screen's lease is made up for.
    Ordena(obrero, "nueva Entrada 1");
    Ordena(obrero, "cierra");
    const Fallas fallas = caos::Prueba(direccion, base.Ruta(), acuses, &remediado);
    EXPECT_TRUE(fallas.empty()) << Texto(fallas);
  }
};

// The size that a file may grow to ends where the file ends: every write behind it is refused.
TEST_F(Disco, AFileThatMayNotGrowWhileDocumentsArePosted) {
  const auto archivo = base.Ruta() / "corto.db";
  const std::string direccion = "sqlite:" + archivo.string();
  MontaTienda(direccion);
  const auto obrero = std::make_unique<Proceso>(
      std::vector<std::string>{"/bin/sh", "-c", "trap '' XFSZ; exec \"$@\"", "sh", TARVIK_OBRERO, direccion,
                               "U1", "E1", (base.Ruta() / "1").string(), "5", "ordenes"});
  ASSERT_EQ(Responde(*obrero), "sí");
  const auto limita = [&](rlim_t cuanto) {
    const rlimit limite{cuanto, RLIM_INFINITY};
    ASSERT_EQ(::prlimit(obrero->Pid(), RLIMIT_FSIZE, &limite, nullptr), 0);
  };
  for (const char* orden : {"nueva Entrada 60", "nueva Salida 60 2"}) {
    LlenoALaMitad(
        direccion, [&] { limita(4096); }, [&] { limita(RLIM_INFINITY); }, *obrero, orden);
  }
  EXPECT_GT(remediado.completados + remediado.terminados, 0) << "nothing was refused";
  Dato("cajas", static_cast<long>(cajas.size()));
  Dato("movimientos que faltaban", remediado.movimientos);
}

// A file system of the test's own, where the machine lets one be made.
TEST_F(Disco, ASmallFileSystemThatFillsUpWhileDocumentsArePosted) {
  const auto lugar = base.Ruta() / "disco";
  std::filesystem::create_directories(lugar);
  if (::mount("tmpfs", lugar.c_str(), "tmpfs", 0, "size=4m") != 0) {
    GTEST_SKIP() << "no right to make a file system here; the story before this one stands for it";
  }
  struct Desmonta {
    std::string lugar;
    ~Desmonta() { ::umount2(lugar.c_str(), MNT_DETACH); }
  } const desmonta{lugar.string()};
  const std::string direccion = "sqlite:" + (lugar / "almacen.db").string();
  MontaTienda(direccion);
  const auto relleno = lugar / "relleno";
  const auto obrero = Mandado("1", direccion);
  for (const char* orden : {"nueva Entrada 60", "nueva Salida 60 2"}) {
    LlenoALaMitad(
        direccion,
        [&] {
          std::ofstream archivo(relleno);
          const std::string trozo(4096, 'x');
          while (archivo.write(trozo.data(), 4096) && archivo.flush()) {
          }
        },
        [&] { std::filesystem::remove(relleno); }, *obrero, orden);
  }
  EXPECT_GT(remediado.completados + remediado.terminados, 0) << "nothing was refused";
  Dato("cajas", static_cast<long>(cajas.size()));
  Dato("movimientos que faltaban", remediado.movimientos);
}

}  // namespace
}  // namespace tarvik::caos
