// A primary that dies in the middle of a document, and its standby that takes over: no line that was
// acknowledged is missing. Runs by con_relevo.sh alone, once a run: the servers are spent then.
#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/escenario.h"

namespace tarvik::tests {
namespace {

class Relevo : public Escenario {
 protected:
  Relevo() { Catalogo(); }
  ~Relevo() override {
    if (relevo_.joinable()) relevo_.join();
  }
  // The primary dies so many milliseconds from now.
  void CaeEn(int milliseconds) {
    const char* program = std::getenv("TARVIK_RELEVO");
    ASSERT_NE(program, nullptr) << "by con_relevo.sh alone";
    relevo_ = std::thread([this, milliseconds, command = std::string(program)] {
      std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
      exit_ = std::system(command.c_str());
    });
  }
  int Acabado() {
    relevo_.join();
    return exit_;
  }

 private:
  std::thread relevo_;
  int exit_ = -1;
};

TEST_F(Relevo, WhileLinesAreEnteredNoAcknowledgedOneIsMissing) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "1"}});
  Olvida();
  CaeEn(100);
  const auto begun = std::chrono::steady_clock::now();
  // Each line that was stored without a complaint, by its number.
  std::vector<std::string> acknowledged;
  int row = 1;
  for (int typed = 0; typed < 3000; ++typed) {
    if (typed >= 20 && std::chrono::steady_clock::now() - begun > std::chrono::seconds(6)) break;
    const std::size_t told = Reportes().size();
    Renglon(f, "A-200", "1");
    while (!Celda(f, row + 1, 0).empty()) ++row;
    if (Reportes().size() == told) acknowledged.push_back(Celda(f, row, 5));
  }
  ASSERT_EQ(Acabado(), 0);
  EXPECT_EQ(Uno("SELECT pg_is_in_recovery()"), "0");
  // A line that was on its way may be told as not known; every other one is stored.
  EXPECT_LE(Reportes().size(), 2U) << Reportes().back();
  std::set<std::string> stored;
  for (const auto& line : Sql("SELECT id_entrada FROM entpart WHERE entrada = ?", {f.Entrada}).rows) {
    stored.insert(data::ToText(line[0]));
  }
  EXPECT_GE(acknowledged.size(), 20U);
  for (const std::string& line : acknowledged) EXPECT_TRUE(stored.contains(line)) << line;
}

TEST_F(Relevo, WhileItIsPostedEveryLineMovesOnce) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "1"}});
  for (int i = 0; i < 300; ++i) Renglon(f, "A-200", "1");
  Olvida();
  bitacora.respuestas = {true};
  CaeEn(60);
  const auto begun = std::chrono::steady_clock::now();
  Tecla(f, "F5", f.txtFields(campo::Concepto));
  EXPECT_GT(std::chrono::steady_clock::now() - begun, std::chrono::milliseconds(250)) << "posted before";
  ASSERT_EQ(Acabado(), 0);
  EXPECT_EQ(Uno("SELECT pg_is_in_recovery()"), "0");
  EXPECT_TRUE(Reportes().empty()) << Reportes().front();
  EXPECT_EQ(Uno("SELECT estado FROM entradas"), "CO");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv"), "301");
  EXPECT_EQ(Uno("SELECT COUNT(DISTINCT id_entrada) FROM movsinv"), "301");
  EXPECT_EQ(Uno("SELECT existencia FROM existenciaalmacen WHERE articulo = 'A-200'"), "300");
}

}  // namespace
}  // namespace tarvik::tests
