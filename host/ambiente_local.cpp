// The working context of the stand-alone host.
#include "host/ambiente_local.h"

#include <algorithm>

#include "data/error.h"
#include "data/number.h"
#include "data/text.h"

namespace tarvik::host {
namespace {

// Settings are stored as text. Only a text that reads back the same is a number: a company "007" is a text.
data::Value AjusteDeTexto(const data::Value& stored) {
  const std::string* text = stored.As<std::string>();
  if (text == nullptr) return stored;
  const auto number = data::ParseNumber(*text);
  if (!number || data::PlainNumber(*number) != *text) return stored;
  const auto whole = static_cast<std::int64_t>(*number);
  if (static_cast<double>(whole) == *number) return whole;
  return *number;
}

}  // namespace

std::string SinSeparadorFinal(std::string folder) {
  while (folder.size() > 1 && (folder.back() == '/' || folder.back() == '\\')) folder.pop_back();
  return folder.empty() ? "." : folder;
}

AmbienteEnBase::AmbienteEnBase(service::Host& host, data::Connection& observed,
                               data::EngineConnection& engine, Testigo& testigo, const Opciones& opciones)
    : host_(host),
      observed_(observed),
      engine_(engine),
      testigo_(testigo),
      user_(opciones.usuario),
      station_(opciones.estacion),
      folder_(SinSeparadorFinal(opciones.ruta)) {}

data::Connection& AmbienteEnBase::Conexion() {
  testigo_.Servicio("Conexion");
  return observed_;
}

std::string AmbienteEnBase::Usuario() {
  testigo_.Servicio("Usuario");
  return user_;
}

std::string AmbienteEnBase::Estacion() {
  testigo_.Servicio("Estacion");
  return station_;
}

std::string AmbienteEnBase::Moneda() {
  testigo_.Servicio("Moneda");
  return currency_;
}

std::string AmbienteEnBase::ClaveLocal() {
  testigo_.Servicio("ClaveLocal");
  return local_key_;
}

std::string AmbienteEnBase::FormatoImporte() {
  testigo_.Servicio("FormatoImporte");
  return amount_pattern_;
}

std::string AmbienteEnBase::FormatoCantidad() {
  testigo_.Servicio("FormatoCantidad");
  return quantity_pattern_;
}

data::RecordsetRef AmbienteEnBase::Parametros() {
  testigo_.Servicio("Parametros");
  data::Rows row;
  row.rows.emplace_back();
  for (const auto& [name, value] : Ajustes()) {
    row.columns.push_back(name);
    row.rows.front().push_back(value);
  }
  return std::make_shared<data::Recordset>(std::move(row));
}

std::string AmbienteEnBase::RutaBase() {
  testigo_.Servicio("RutaBase");
  return folder_;
}

int AmbienteEnBase::ValorFechaA() {
  testigo_.Servicio("ValorFechaA");
  return date_a_;
}

int AmbienteEnBase::ValorFechaB() {
  testigo_.Servicio("ValorFechaB");
  return date_b_;
}

void AmbienteEnBase::ValorDeGancho(const data::Value& value) {
  testigo_.Servicio("ValorDeGancho");
  hook_value_ = value;
}

const std::vector<AmbienteEnBase::Ajuste>& AmbienteEnBase::Ajustes() {
  if (!settings_) {
    std::vector<Ajuste> read;
    for (const auto& row : engine_.Run("SELECT nombre, valor FROM parametros ORDER BY nombre", {}).rows) {
      read.emplace_back(data::ToText(row[0]), AjusteDeTexto(row[1]));
    }
    settings_ = std::move(read);
  }
  return *settings_;
}

data::Value AmbienteEnBase::Parametro(const std::string& name) {
  for (const auto& [known, value] : Ajustes()) {
    if (data::EqualsNoCase(known, name)) return value;
  }
  return {};
}

void AmbienteEnBase::Parametro(const std::string& name, const data::Value& value) {
  if (data::Trim(name).empty()) throw data::Error("El parámetro no tiene nombre");
  std::string known = name;
  for (const auto& setting : Ajustes()) {
    if (data::EqualsNoCase(setting.first, name)) known = setting.first;
  }
  const data::Value stored = value.IsNull() ? data::Value() : data::Value(data::ToText(value));
  engine_.Run(
      "INSERT INTO parametros (nombre, valor) VALUES (?, ?) "
      "ON CONFLICT (nombre) DO UPDATE SET valor = excluded.valor",
      {known, stored});
  settings_.reset();
}

std::vector<std::string> AmbienteEnBase::NombresDeParametros() {
  std::vector<std::string> names;
  for (const auto& setting : Ajustes()) names.push_back(setting.first);
  return names;
}

data::Value AmbienteEnBase::Lee(const std::string& property) const {
  const std::pair<const char*, data::Value> held[] = {{"Usuario", user_},
                                                      {"Estacion", station_},
                                                      {"Moneda", currency_},
                                                      {"ClaveLocal", local_key_},
                                                      {"FormatoImporte", amount_pattern_},
                                                      {"FormatoCantidad", quantity_pattern_},
                                                      {"RutaBase", folder_},
                                                      {"ValorFechaA", date_a_},
                                                      {"ValorFechaB", date_b_},
                                                      {"ValorDeGancho", hook_value_}};
  for (const auto& [name, value] : held) {
    if (property == name) return value;
  }
  return {};
}

void AmbienteEnBase::Pon(const std::string& property, const data::Value& value) {
  const std::pair<const char*, std::string*> texts[] = {{"Usuario", &user_},
                                                        {"Estacion", &station_},
                                                        {"Moneda", &currency_},
                                                        {"ClaveLocal", &local_key_},
                                                        {"FormatoImporte", &amount_pattern_},
                                                        {"FormatoCantidad", &quantity_pattern_}};
  for (const auto& [name, target] : texts) {
    if (property == name) {
      *target = data::ToText(value);
      return;
    }
  }
  if (property == "RutaBase") {
    folder_ = SinSeparadorFinal(data::ToText(value));
  } else if (property == "ValorFechaA") {
    date_a_ = static_cast<int>(data::ToNumber(value));
  } else if (property == "ValorFechaB") {
    date_b_ = static_cast<int>(data::ToNumber(value));
  } else if (property == "ValorDeGancho") {
    hook_value_ = value;
  } else {
    throw data::Error("El ambiente no tiene la propiedad " + property);
  }
}

}  // namespace tarvik::host
