// Mundo: a small shop and an operator without sense, who does anything at all on any screen, from a seed. Two
// such runs with one seed are the same, act by act.
#pragma once

#include <array>
#include <deque>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "tests/goods_out/support.h"

namespace tarvik::caos {

class Mundo : public tests::EscenarioDeSalidas {
 public:
  // With `provoca`, statements and services fail, routines refuse, raise, type and close.
  Mundo(unsigned semilla, bool provoca);

  void Acto();
  // What is wrong with books and screens now; empty for nothing.
  std::vector<std::string> Revisa();
  // The end: all screens go as if the program had been killed, and what was left half posted is completed.
  // What is wrong then.
  std::vector<std::string> Termina();
  // The last acts, one a line.
  [[nodiscard]] std::string Huella() const;
  // Screens that were compared with the base, in all.
  [[nodiscard]] long Comparadas() const { return comparadas_; }

 private:
  void TestBody() override {}

  void Abre();
  void ActoEn(forms::Form& forma);
  void EnControl(forms::Form& forma, forms::Control& control);
  void EnMalla(forms::FlexGrid& malla);
  void RenglonEntero(DocumentWizard& forma);
  void Provoca();
  void EnMallaModal(forms::Form& forma);
  void Limpia();
  void MarcaDobles();
  void RevisaPantallas(std::vector<std::string>& fallas);
  void Apunta(const std::string& acto);

  int Al(int desde, int hasta) { return std::uniform_int_distribution<int>(desde, hasta)(azar_); }
  bool Uno(int de) { return Al(1, de) == 1; }
  using Escenario::Uno;
  template <class Lista>
  const auto& De(const Lista& lista) {
    return lista[static_cast<std::size_t>(Al(0, static_cast<int>(std::size(lista)) - 1))];
  }

  std::mt19937 azar_;
  bool provoca_;
  bool modal_ = false;
  long comparadas_ = 0;
  std::set<const forms::Form*> dudosas_;
  std::vector<std::string> puestas_;  // routines
  std::deque<std::string> huella_;
};

}  // namespace tarvik::caos
