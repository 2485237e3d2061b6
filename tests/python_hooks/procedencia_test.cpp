// Whom a file of routines comes from: what may be loaded and what may not, by what decides, and with real
// files.
#include "python/procedencia.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <optional>

#include "data/error.h"
#include "python/ganchos.h"
#include "tests/support/escenario.h"

namespace tarvik::tests {
namespace {

namespace fs = std::filesystem;
using python::PorQueNoSeCarga;
using python::Procedencia;

constexpr uid_t kAna = 1000;
constexpr uid_t kBeto = 1001;
constexpr uid_t kTienda = 900;
constexpr const char* kDeOtro =
    "no se carga: no es de quien usa el programa, ni del administrador del equipo, ni del dueño de su "
    "carpeta";
constexpr const char* kDeTodos = "no se carga: cualquiera puede escribir en él";
constexpr const char* kCarpetaDeTodos = "no se carga: cualquiera puede escribir en su carpeta";

TEST(Quien, DeQuienUsaElPrograma) { EXPECT_EQ(PorQueNoSeCarga({kAna, kAna, 0644, kAna, 0755}), ""); }

TEST(Quien, DelAdministrador) { EXPECT_EQ(PorQueNoSeCarga({kAna, 0, 0644, kTienda, 0755}), ""); }

TEST(Quien, DelDuenoDeLaCarpeta) {
  EXPECT_EQ(PorQueNoSeCarga({kAna, kTienda, 0644, kTienda, 0755}), "");
  EXPECT_EQ(PorQueNoSeCarga({0, kTienda, 0644, kTienda, 0755}), "");
}

TEST(Quien, DeOtroNo) {
  EXPECT_EQ(PorQueNoSeCarga({kAna, kBeto, 0644, kAna, 0755}), kDeOtro);
  EXPECT_EQ(PorQueNoSeCarga({kAna, kBeto, 0600, 0, 0755}), kDeOtro);
  EXPECT_EQ(PorQueNoSeCarga({0, kBeto, 0644, 0, 0755}), kDeOtro);
  EXPECT_EQ(PorQueNoSeCarga({kAna, kBeto, 0644, kTienda, 0755}), kDeOtro);
}

TEST(Quien, ElGrupoPuedeEscribirLosDemasNo) {
  EXPECT_EQ(PorQueNoSeCarga({kAna, kAna, 0664, kAna, 0775}), "");
  EXPECT_EQ(PorQueNoSeCarga({kAna, kAna, 0646, kAna, 0755}), kDeTodos);
  EXPECT_EQ(PorQueNoSeCarga({kAna, 0, 0666, 0, 0755}), kDeTodos);
  EXPECT_EQ(PorQueNoSeCarga({kAna, kAna, 0602, kAna, 0755}), kDeTodos);
}

TEST(Quien, LaCarpetaDeTodosSoloConLoPropioGuardado) {
  EXPECT_EQ(PorQueNoSeCarga({kAna, kAna, 0644, kAna, 0777}), kCarpetaDeTodos);
  EXPECT_EQ(PorQueNoSeCarga({kAna, kAna, 0644, 0, 0702}), kCarpetaDeTodos);
  EXPECT_EQ(PorQueNoSeCarga({kAna, kAna, 0644, 0, 01777}), "");
  EXPECT_EQ(PorQueNoSeCarga({kAna, kBeto, 0644, 0, 01777}), kDeOtro);
}

// With real files.
class Confianza : public Escenario {
 protected:
  Confianza() { Catalogo(); }

  fs::path Archivo(const fs::path& path, const std::string& text) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }
  fs::path Gancho(const std::string& name, const std::string& text = kBueno) {
    return Archivo(ruta / "ganchos" / name, text);
  }
  static void Modo(const fs::path& path, mode_t mode) { ASSERT_EQ(::chmod(path.c_str(), mode), 0) << path; }
  std::vector<std::string> Carga() {
    rutinas.reset();
    anotado.clear();
    rutinas.emplace(python::OpcionesDeRutinas{.bitacora = [this](const auto& where, const auto& text) {
      anotado.push_back(where + " | " + text);
    }});
    std::vector<std::string> told;
    for (const auto& failure : rutinas->Carga(*anfitrion))
      told.push_back(python::LugarDe(failure.archivo, failure.linea) + ": " + failure.texto);
    return told;
  }
  using Dichos = std::vector<std::string>;

  static constexpr const char* kBueno = "def ENTRADA001(forma, ambiente):\n    forma.cEstado = 'corrió'\n";
  std::optional<python::Rutinas> rutinas;
  std::vector<std::string> anotado;
};

TEST_F(Confianza, LoQueCualquieraPuedeEscribirNoCorreYSeDice) {
  Modo(Gancho("malo.py", "raise SystemError('corrió')\n"), 0666);
  Gancho("bueno.py");
  EXPECT_EQ(Carga(), Dichos{std::string("malo.py: ") + kDeTodos});
  EXPECT_EQ(anotado, Dichos{std::string("rutinas | malo.py: ") + kDeTodos});
  EXPECT_EQ(Nueva().cEstado, "corrió");
  ASSERT_EQ(rutinas->Cargadas().size(), 1U);
  const std::string aviso =
      python::AvisoDeCarga({{(ruta / "ganchos" / "malo.py").string(), 0, std::string(kDeTodos)}});
  EXPECT_NE(aviso.find(std::string("malo.py: ") + kDeTodos), std::string::npos) << aviso;
}

TEST_F(Confianza, LaCarpetaDeTodosNoSirve) {
  Gancho("a.py");
  Modo(ruta / "ganchos", 0777);
  EXPECT_EQ(Carga(), Dichos{std::string("a.py: ") + kCarpetaDeTodos});
  EXPECT_EQ(Nueva().cEstado, "");
  Modo(ruta / "ganchos", 01777);
  EXPECT_EQ(Carga(), Dichos{});
}

TEST_F(Confianza, UnEnlaceValeLoQueSuArchivo) {
  fs::create_directories(ruta / "ganchos");
  const fs::path far = Archivo(ruta / "lejos" / "real.py", kBueno);
  fs::create_symlink(far, ruta / "ganchos" / "enlace.py");
  EXPECT_EQ(Carga(), Dichos{});
  Modo(ruta / "lejos", 0777);
  EXPECT_EQ(Carga(), Dichos{std::string("enlace.py: ") + kCarpetaDeTodos});
  Modo(ruta / "lejos", 0755);
  Modo(far, 0646);
  EXPECT_EQ(Carga(), Dichos{std::string("enlace.py: ") + kDeTodos});
  // The link itself stands where anybody could have put it.
  Modo(far, 0644);
  Modo(ruta / "ganchos", 0777);
  EXPECT_EQ(Carga(), Dichos{std::string("enlace.py: ") + kCarpetaDeTodos});
}

TEST_F(Confianza, LoQueOtroImportaPasaPorLaMismaPuerta) {
  Modo(Gancho("_comun.py", "raise SystemError('corrió')\n"), 0666);
  Gancho("pedido.py", "import _comun\n");
  Gancho("tarde.py", "def ENTRADA001(forma, ambiente):\n    import _comun\n");
  EXPECT_EQ(Carga(), (Dichos{std::string("_comun.py: ") + kDeTodos,
                             std::string("pedido.py, línea 1: _comun.py ") + kDeTodos}));
  Nueva();
  EXPECT_NE(anotado.back().find(std::string("tarde.py, línea 2: _comun.py ") + kDeTodos), std::string::npos)
      << anotado.back();
}

TEST_F(Confianza, UnPaqueteDeLaCarpetaTambien) {
  Archivo(ruta / "ganchos" / "reglas" / "__init__.py", "");
  const fs::path rule = Archivo(ruta / "ganchos" / "reglas" / "precio.py", "valor = 'corrió'\n");
  Gancho("usa.py",
         "from reglas import precio\n"
         "def ENTRADA001(forma, ambiente):\n    forma.cEstado = precio.valor\n");
  EXPECT_EQ(Carga(), Dichos{});
  EXPECT_EQ(Nueva().cEstado, "corrió");
  Modo(rule, 0666);
  EXPECT_EQ(Carga(), Dichos{std::string("usa.py, línea 1: precio.py ") + kDeTodos});
}

// A copy that somebody compiled is not what was looked at.
TEST_F(Confianza, SoloCorreElTextoDelArchivo) {
  const fs::path file = Gancho("_comun.py", "valor = 'del texto'\n");
  Gancho("usa.py",
         "import _comun\n"
         "def ENTRADA001(forma, ambiente):\n    forma.cEstado = _comun.valor\n");
  const fs::path other = Archivo(ruta / "otro" / "_comun.py", "valor = 'de la copia'\n");
  fs::last_write_time(other, fs::last_write_time(file));
  const std::string compile = "/usr/bin/python3 -m py_compile '" + other.string() + "'";
  ASSERT_EQ(std::system(compile.c_str()), 0);
  fs::create_directories(ruta / "ganchos" / "__pycache__");
  for (const auto& entry : fs::directory_iterator(ruta / "otro" / "__pycache__")) {
    fs::copy_file(entry.path(), ruta / "ganchos" / "__pycache__" / entry.path().filename());
  }
  // Of one length and one time: an interpreter left alone takes it for the text's own.
  Archivo(file, "valor = 'del texto  '\n");
  fs::last_write_time(file, fs::last_write_time(other));
  ASSERT_EQ(fs::file_size(file), fs::file_size(other));
  EXPECT_EQ(Carga(), Dichos{});
  EXPECT_EQ(Nueva().cEstado, "del texto  ");
}

TEST_F(Confianza, UnTuboNoEsNingunaRutina) {
  fs::create_directories(ruta / "ganchos");
  ASSERT_EQ(::mkfifo((ruta / "ganchos" / "tubo.py").c_str(), 0600), 0);
  EXPECT_EQ(Carga(), Dichos{"tubo.py: no se carga: no es un archivo corriente"});
}

TEST_F(Confianza, UnEnlaceRotoSeDice) {
  fs::create_directories(ruta / "ganchos");
  fs::create_symlink(ruta / "no-hay.py", ruta / "ganchos" / "roto.py");
  EXPECT_EQ(Carga(), Dichos{"roto.py: no se puede leer el archivo (No such file or directory)"});
}

// Only root gives a file away; without it the rule stands in the stories of what decides, above.
TEST_F(Confianza, DeOtroDuenoNoCorre) {
  if (::geteuid() != 0) return;
  const fs::path file = Gancho("ajeno.py");
  ASSERT_EQ(::chown(file.c_str(), 65534, static_cast<gid_t>(-1)), 0);
  EXPECT_EQ(Carga(), Dichos{std::string("ajeno.py: ") + kDeOtro});
  EXPECT_EQ(Nueva().cEstado, "");
  // The folder's owner may.
  ASSERT_EQ(::chown((ruta / "ganchos").c_str(), 65534, static_cast<gid_t>(-1)), 0);
  EXPECT_EQ(Carga(), Dichos{});
}

}  // namespace
}  // namespace tarvik::tests
