// Which files are the base's own, by whatever name and way.
#include "host/archivos_de_la_base.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "data/error.h"
#include "tests/host/apoyo.h"

namespace tarvik::host {
namespace {

namespace fs = std::filesystem;

class ArchivosPropios : public ::testing::Test {
 protected:
  ArchivosPropios() {
    fs::create_directories(carpeta.Ruta("datos"));
    fs::create_directories(carpeta.Ruta("otra"));
    Hay("datos/tienda.db");
    Hay("datos/tienda.db-wal");
  }
  void Hay(const std::string& name) { std::ofstream(carpeta.Ruta(name)) << "x"; }
  std::string Ruta(const std::string& name) { return carpeta.Ruta(name).string(); }
  bool Es(const std::string& name) { return ArchivosDeLaBase(Direccion()).Incluye(Ruta(name)); }
  std::string Direccion() { return "sqlite:" + Ruta("datos/tienda.db"); }

  CarpetaTemporal carpeta;
};

TEST_F(ArchivosPropios, LaBaseYLoQueEmpiezaComoElla) {
  for (const char* name :
       {"datos/tienda.db", "datos/tienda.db-wal", "datos/tienda.db-shm", "datos/tienda.db-journal",
        "datos/tienda.db.pdf", "otra/../datos/tienda.db", "datos/./tienda.db-wal", "datos\\tienda.db"}) {
    EXPECT_TRUE(Es(name)) << name;
  }
  for (const char* name : {"datos/entrada-1.pdf", "datos/tienda.pdf", "otra/tienda.db", "tienda.db", "datos",
                           "no/hay/tienda.db"}) {
    EXPECT_FALSE(Es(name)) << name;
  }
}

TEST_F(ArchivosPropios, PorCualquierCamino) {
  fs::create_symlink(Ruta("datos"), Ruta("atajo"));
  fs::create_symlink(Ruta("datos/tienda.db"), Ruta("otra/enlace.pdf"));
  fs::create_symlink("../datos/tienda.db-shm", Ruta("otra/colgado.pdf"));  // not there yet
  fs::create_hard_link(Ruta("datos/tienda.db-wal"), Ruta("otra/segundo.pdf"));
  for (const char* name :
       {"atajo/tienda.db-shm", "otra/enlace.pdf", "otra/colgado.pdf", "otra/segundo.pdf"}) {
    EXPECT_TRUE(Es(name)) << name;
  }
  // The base's own address may go by a link.
  const ArchivosDeLaBase linked("sqlite:" + Ruta("otra/enlace.pdf"));
  EXPECT_TRUE(linked.Incluye(Ruta("datos/tienda.db-journal")));
  EXPECT_TRUE(linked.Incluye(Ruta("otra/enlace.pdf")));
  EXPECT_FALSE(linked.Incluye(Ruta("otra/entrada-1.pdf")));
  const ArchivosDeLaBase by_folder("sqlite:" + Ruta("atajo/tienda.db"));
  EXPECT_TRUE(by_folder.Incluye(Ruta("datos/tienda.db")));
}

TEST_F(ArchivosPropios, UnaRutaRelativaEsLaMisma) {
  const fs::path before = fs::current_path();
  fs::current_path(Ruta("datos"));
  EXPECT_TRUE(ArchivosDeLaBase("sqlite:tienda.db").Incluye(Ruta("datos/tienda.db-wal")));
  EXPECT_TRUE(ArchivosDeLaBase(Direccion()).Incluye("tienda.db-wal"));
  EXPECT_FALSE(ArchivosDeLaBase(Direccion()).Incluye("otra.db"));
  fs::current_path(before);
}

TEST_F(ArchivosPropios, UnServidorNoTieneArchivosAqui) {
  for (const char* address : {"postgresql://ana@servidor/tienda", "sqlite::memory:", "sqlite:", ""}) {
    EXPECT_FALSE(ArchivosDeLaBase(address).Incluye(Ruta("datos/tienda.db"))) << address;
  }
  EXPECT_FALSE(ArchivosDeLaBase().Incluye(Ruta("datos/tienda.db")));
}

TEST_F(ArchivosPropios, ElRechazoDiceElArchivoYQueHacer) {
  const ArchivosDeLaBase base(Direccion());
  EXPECT_NO_THROW(base.Rechaza(Ruta("datos/entrada-1.pdf")));
  EXPECT_EQ(ErrorDe([&] { base.Rechaza(Ruta("datos/tienda.db-wal")); }),
            "El archivo " + Ruta("datos/tienda.db-wal") +
                " es de la base de datos: no se guarda nada en él. Elija otro nombre u otra carpeta");
}

}  // namespace
}  // namespace tarvik::host
