// Letting go: by right, and of holders that are gone when a document is opened.
#include "host/liberacion.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <thread>

#include "tests/host/puestos.h"

namespace tarvik::host {
namespace {

class Liberacion : public DosPuestos {
 protected:
  void Liberadores(const std::string& users) { ana.anfitrion->Ambiente().Parametro("Liberadores", users); }
  bool Puede(const std::string& user) { return PuedeLiberar(ana.anfitrion->Conexion(), user); }
  // A flag that nobody's lease stands behind.
  void SoloBandera(int number) {
    Sql("INSERT INTO entradas (entrada, estado, ocupado, usuario, tipo_doc) VALUES (?, 'PE', 1, 'BETO', "
        "'COM')",
        {number});
  }
  std::string Ocupado(int number) { return Uno("SELECT ocupado FROM entradas WHERE entrada = ?", {number}); }
};

TEST_F(Liberacion, WithNobodyNamedEverybodyMay) {
  EXPECT_TRUE(Puede("ANA"));
  Liberadores("  ");
  EXPECT_TRUE(Puede("ANA"));
}

TEST_F(Liberacion, OfSeveralNamedOnlyThoseMay) {
  Liberadores("BETO, ana ,");
  EXPECT_TRUE(Puede("ANA"));
  EXPECT_TRUE(Puede("BETO"));
  EXPECT_FALSE(Puede("CARLA"));
  EXPECT_FALSE(Puede("AN"));
  EXPECT_FALSE(Puede(""));
}

TEST_F(Liberacion, ClearsFlagAndLeaseOfThatDocumentAloneAndIsOnRecord) {
  auto& entry = ana.Entrada({"5"});
  auto& issue = ana.Salida({"5"});
  ASSERT_EQ(entry.Entrada, issue.Salida) << "one number, two documents";
  luis.anfitrion->Libera(Tipo::Entrada, entry.Entrada, "  se fue ");
  EXPECT_EQ(Ocupado(entry.Entrada), "0");
  EXPECT_EQ(Uno("SELECT ocupado FROM salidas"), "1");
  const auto held = luis.anfitrion->Tenencias();
  ASSERT_EQ(held.size(), 1U);
  EXPECT_EQ(held[0].tipo, Tipo::Salida);
  const auto acts = ana.anfitrion->Bitacora();
  ASSERT_EQ(acts.size(), 1U);
  EXPECT_EQ(acts[0].acto, "libera");
  EXPECT_EQ(acts[0].usuario, "LUIS");
  EXPECT_EQ(acts[0].estacion, "E2");
  EXPECT_EQ(acts[0].cuando, reloj);
  EXPECT_EQ(acts[0].documento, (Retenido{Tipo::Entrada, entry.Entrada}));
  EXPECT_EQ(acts[0].texto, "La tenía ANA en la estación E1 desde el 05/03/2024 a las 14:15. Motivo: se fue");
}

TEST_F(Liberacion, AFlagWithoutALeaseIsFreedToo) {
  SoloBandera(7);
  luis.anfitrion->Libera(Tipo::Entrada, 7);
  EXPECT_EQ(Ocupado(7), "0");
  EXPECT_NE(luis.anfitrion->Bitacora().at(0).texto.find("BETO"), std::string::npos);
}

TEST_F(Liberacion, AFreeDocumentIsLeftAloneAndAnUnknownOneIsAnError) {
  const auto number = Dejada();
  luis.anfitrion->Libera(Tipo::Entrada, number);
  EXPECT_TRUE(luis.anfitrion->Bitacora().empty());
  EXPECT_EQ(ErrorDe([&] { luis.anfitrion->Libera(Tipo::Salida, 9); }), "No existe la salida 9");
}

TEST_F(Liberacion, WhoMayNotChangesNothing) {
  Liberadores("BETO");
  SoloBandera(7);
  EXPECT_EQ(ErrorDe([&] { luis.anfitrion->Libera(Tipo::Entrada, 7); }),
            "El usuario LUIS no tiene permiso para liberar documentos");
  EXPECT_EQ(Ocupado(7), "1");
  EXPECT_TRUE(luis.anfitrion->Bitacora().empty());
}

TEST_F(Liberacion, AFailureInBetweenLeavesAllAsItWas) {
  auto& f = ana.Entrada({"5"});
  Sql("ALTER TABLE bitacora RENAME TO apartada");
  const std::string error = ErrorDe([&] { luis.anfitrion->Libera(Tipo::Entrada, f.Entrada); });
  EXPECT_TRUE(error.starts_with("La tabla no existe: ")) << error;
  Sql("ALTER TABLE apartada RENAME TO bitacora");
  EXPECT_EQ(Ocupado(f.Entrada), "1");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM tenencias"), "1");
}

TEST_F(Liberacion, AFlagWithoutALeaseIsDeadWhereAllKeepLeasesAndElseAlive) {
  SoloBandera(7);
  Sql("INSERT INTO salidas (salida, estado, ocupado, usuario, estacion) VALUES (8, 'PE', 1, 'CARLA', 'E9')");
  auto held = luis.anfitrion->Tenencias();
  ASSERT_EQ(held.size(), 2U);
  EXPECT_EQ(held[0].usuario, "BETO");
  EXPECT_EQ(held[0].estacion, "");
  EXPECT_FALSE(held[0].desde);
  EXPECT_FALSE(held[0].viva);
  EXPECT_EQ(held[1].tipo, Tipo::Salida);
  EXPECT_EQ(held[1].usuario, "CARLA");
  EXPECT_EQ(held[1].estacion, "E9");
  luis.anfitrion->Ambiente().Parametro("SoloTarvik", 0);
  held = luis.anfitrion->Tenencias();
  EXPECT_TRUE(held[0].viva && held[1].viva);
}

TEST_F(Liberacion, OpeningWhatADeadProgramHeldTellsAndOpens) {
  auto& f = ana.Entrada({"5"});
  const std::int32_t number = f.Entrada;
  SeVa(ana);
  ASSERT_FALSE(luis.anfitrion->Tenencias().at(0).viva);
  const auto screen = luis.anfitrion->Abre(Tipo::Entrada, number);
  ASSERT_NE(screen, nullptr);
  EXPECT_EQ(RetenidoPor(*screen), (Retenido{Tipo::Entrada, number}));
  ASSERT_EQ(luis.cajas.size(), 1U);
  EXPECT_EQ(luis.cajas[0].clase, forms::BoxKind::Message);
  EXPECT_EQ(luis.cajas[0].estilo, forms::kBoxInformation);
  EXPECT_EQ(
      luis.UltimaCaja(),
      "La entrada 1 la tenía ANA en la estación E1 desde el 05/03/2024 a las 14:15, pero ese programa ya no "
      "está abierto. Se liberó y puede trabajar con ella.");
  const auto acts = luis.anfitrion->Bitacora();
  ASSERT_EQ(acts.size(), 1U);
  EXPECT_EQ(acts[0].acto, "libera");
  EXPECT_EQ(acts[0].usuario, "LUIS");
  const auto held = luis.anfitrion->Tenencias();
  ASSERT_EQ(held.size(), 1U);
  EXPECT_EQ(held[0].usuario, "LUIS");
}

TEST_F(Liberacion, AFlagThatWasLeftBehindIsLetGoOfByOpeningWhereAllKeepLeases) {
  SoloBandera(7);
  luis.anfitrion->Ambiente().Parametro("SoloTarvik", 0);
  EXPECT_EQ(luis.anfitrion->Abre(Tipo::Entrada, 7), nullptr) << "another program may have it";
  EXPECT_EQ(luis.cajas.size(), 1U) << "the class says by whom";
  luis.anfitrion->Ambiente().Parametro("SoloTarvik", 1);
  EXPECT_NE(luis.anfitrion->Abre(Tipo::Entrada, 7), nullptr);
}

TEST_F(Liberacion, WhatALivingProgramHoldsStaysHeld) {
  auto& f = ana.Entrada({"5"});
  EXPECT_EQ(luis.anfitrion->Abre(Tipo::Entrada, f.Entrada), nullptr);
  EXPECT_EQ(luis.cajas.size(), 1U);
  EXPECT_NE(luis.UltimaCaja().find("ANA"), std::string::npos);
  EXPECT_EQ(ana.anfitrion->Abre(Tipo::Entrada, f.Entrada), nullptr) << "one's own too";
  EXPECT_TRUE(luis.anfitrion->Bitacora().empty());
  EXPECT_EQ(luis.anfitrion->Tenencias().size(), 1U);
}

TEST_F(Liberacion, OneDeadHolderOfTwoIsNoReason) {
  auto& f = ana.Entrada({"5"});
  const std::int32_t number = f.Entrada;
  Sql("UPDATE entradas SET ocupado = 0");
  luis.puerta->ModificaEntrada(number);
  SeVa(ana);
  Puesto eva(Direccion(), "EVA", "E3", reloj);
  EXPECT_EQ(eva.anfitrion->Abre(Tipo::Entrada, number), nullptr);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM tenencias"), "2");
}

TEST_F(Liberacion, TheClassItselfStillAnswersThatItIsHeld) {
  SoloBandera(7);
  luis.puerta->ModificaEntrada(7);
  EXPECT_TRUE(luis.plataforma.Screens().empty());
  EXPECT_EQ(Ocupado(7), "1");
}

TEST_F(Liberacion, APostedDocumentOpensToBeReadAndAnUnknownOneNotAtAll) {
  Sql("INSERT INTO entradas (entrada, estado, ocupado, tipo_doc) VALUES (7, 'CO', 0, 'COM')");
  const auto screen = luis.anfitrion->Abre(Tipo::Entrada, 7);
  ASSERT_NE(screen, nullptr);
  EXPECT_FALSE(RetenidoPor(*screen));
  EXPECT_EQ(luis.anfitrion->Abre(Tipo::Entrada, 99), nullptr);
  EXPECT_EQ(luis.anfitrion->Abre(Tipo::Salida, 7), nullptr);
}

// ---- another program, really ----

constexpr const char* kOtraBase = "TARVIK_OTRA_BASE";

// Runs in a process of its own: opens a document, says so by a row, and waits to be killed.
TEST(OtroPrograma, DISABLED_TieneUnDocumento) {
  const char* base = std::getenv(kOtraBase);
  ASSERT_NE(base, nullptr);
  const data::DateTime clock{{2024, 3, 5}, {14, 15, 0}};
  Puesto other(base, "OTRO", "E9", clock);
  other.Entrada({"5"});
  for (;;) std::this_thread::sleep_for(std::chrono::seconds(1));
}

class Programa {
 public:
  explicit Programa(const std::string& base) {
    std::string address = std::string(kOtraBase) + "=" + base;
    std::vector<char*> surroundings;
    for (char** variable = environ; *variable != nullptr; ++variable) {
      const std::string_view name(*variable);
      // Parts of a run, and the report of one, are not for it.
      if (!name.starts_with("GTEST_")) surroundings.push_back(*variable);
    }
    surroundings.push_back(address.data());
    surroundings.push_back(nullptr);
    std::string self = "/proc/self/exe";
    std::string filter = "--gtest_filter=OtroPrograma.DISABLED_TieneUnDocumento";
    std::string also = "--gtest_also_run_disabled_tests";
    std::string brief = "--gtest_brief=1";
    char* arguments[] = {self.data(), filter.data(), also.data(), brief.data(), nullptr};
    if (::posix_spawn(&process_, self.c_str(), nullptr, nullptr, arguments, surroundings.data()) != 0)
      process_ = 0;
  }
  ~Programa() { Mata(); }
  Programa(const Programa&) = delete;
  Programa& operator=(const Programa&) = delete;
  void Mata() {
    if (process_ == 0) return;
    ::kill(process_, SIGKILL);
    ::waitpid(std::exchange(process_, 0), nullptr, 0);
  }

 private:
  pid_t process_ = 0;
};

TEST_F(Liberacion, TheLeaseOfAProgramThatIsKilledIsDeadAtOnce) {
  Programa other(Direccion());
  for (int turn = 0; turn < 200 && Uno("SELECT COUNT(*) FROM entpart") == "0"; ++turn) {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  auto held = luis.anfitrion->Tenencias();
  ASSERT_EQ(held.size(), 1U);
  EXPECT_EQ(held[0].usuario, "OTRO");
  EXPECT_TRUE(held[0].viva);
  EXPECT_EQ(luis.anfitrion->Abre(Tipo::Entrada, held[0].documento), nullptr);
  other.Mata();
  // A server hears of it a moment later.
  for (int turn = 0; turn < (EnServidor() ? 40 : 1) && held[0].viva; ++turn) {
    if (turn > 0) std::this_thread::sleep_for(std::chrono::milliseconds(50));
    held = luis.anfitrion->Tenencias();
    ASSERT_EQ(held.size(), 1U);
  }
  EXPECT_FALSE(held[0].viva);
  luis.cajas.clear();
  EXPECT_NE(luis.anfitrion->Abre(Tipo::Entrada, held[0].documento), nullptr);
  EXPECT_NE(luis.UltimaCaja().find("la tenía OTRO en la estación E9"), std::string::npos);
}

}  // namespace
}  // namespace tarvik::host
