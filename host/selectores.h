// The pickers: each asks the Selector that the host was given, and puts the choice into the field.
// They search nothing and draw nothing; see busqueda.h for what a title means.
#pragma once

#include <string>

#include "host/anfitrion.h"
#include "host/testigo.h"

namespace tarvik::host {

// What the three have in common. Both references outlive it.
class SelectorDeCampo {
 public:
  SelectorDeCampo(Selector& selector, Testigo& testigo) : selector_(selector), testigo_(testigo) {}
  void Campo(forms::TextBox& field) { field_ = &field; }
  // Throws data::Error if no field was given. With nothing chosen the field stays as it is.
  void Muestra(const std::string& clase, const std::string& title);

 private:
  Selector& selector_;
  Testigo& testigo_;
  forms::TextBox* field_ = nullptr;
};

class BuscadorLocal : public service::BuscadorCatalogo {
 public:
  BuscadorLocal(Selector& selector, Testigo& testigo) : common_(selector, testigo) {}
  void Ambiente(service::Ambiente&) override {}
  void Campo(forms::TextBox& field) override { common_.Campo(field); }
  void Muestra(const std::string& title) override;

 private:
  SelectorDeCampo common_;
};

class AuxiliarLocal : public service::AuxiliarNumerico {
 public:
  AuxiliarLocal(Selector& selector, Testigo& testigo) : common_(selector, testigo) {}
  void Ambiente(service::Ambiente&) override {}
  void Campo(forms::TextBox& field) override { common_.Campo(field); }
  void Muestra() override;

 private:
  SelectorDeCampo common_;
};

class ListaLocal : public service::ListaArticulos {
 public:
  ListaLocal(Selector& selector, Testigo& testigo) : common_(selector, testigo) {}
  void Ambiente(service::Ambiente&) override {}
  void Campo(forms::TextBox& field) override { common_.Campo(field); }
  void Muestra() override;

 private:
  SelectorDeCampo common_;
};

}  // namespace tarvik::host
