// AmbienteEnBase: the working context of the stand-alone host. Settings are rows of `parametros`,
// kept in the base; all else lives as long as the host.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/anfitrion.h"
#include "host/testigo.h"

namespace tarvik::host {

class AmbienteEnBase : public AmbienteLocal {
 public:
  // `observed` is what the module is given, `engine` what the settings are read by. All outlive this.
  AmbienteEnBase(service::Host& host, data::Connection& observed, data::EngineConnection& engine,
                 Testigo& testigo, const Opciones& opciones);

  service::Host& Anfitrion() override { return host_; }
  data::Connection& Conexion() override;
  std::string Usuario() override;
  std::string Estacion() override;
  std::string Moneda() override;
  std::string ClaveLocal() override;
  std::string FormatoImporte() override;
  std::string FormatoCantidad() override;
  data::RecordsetRef Parametros() override;
  std::string RutaBase() override;
  int ValorFechaA() override;
  int ValorFechaB() override;
  void ValorDeGancho(const data::Value& value) override;

  data::Value Parametro(const std::string& name) override;
  void Parametro(const std::string& name, const data::Value& value) override;
  std::vector<std::string> NombresDeParametros() override;
  [[nodiscard]] data::Value ValorDeGancho() const override { return hook_value_; }
  [[nodiscard]] data::Value Lee(const std::string& property) const override;
  void Pon(const std::string& property, const data::Value& value) override;

 private:
  using Ajuste = std::pair<std::string, data::Value>;
  const std::vector<Ajuste>& Ajustes();

  service::Host& host_;
  data::Connection& observed_;
  data::EngineConnection& engine_;
  Testigo& testigo_;
  std::string user_;
  std::string station_;
  std::string currency_;
  std::string local_key_;
  std::string amount_pattern_ = "###,###,##0.00";
  std::string quantity_pattern_ = "###,###,##0.####";
  std::string folder_;
  int date_a_ = 0;
  int date_b_ = 0;
  data::Value hook_value_;
  std::optional<std::vector<Ajuste>> settings_;
};

// The folder of the options as RutaBase gives it: without separators at its end, "." for none.
std::string SinSeparadorFinal(std::string folder);

}  // namespace tarvik::host
