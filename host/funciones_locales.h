// FuncionesLocales: the global helper of the stand-alone host, over a base and a platform. It keeps
// no state of its own. Numbering is in numeracion.h, the builder in constructor_sql.h.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/engine.h"
#include "forms/keys.h"
#include "host/cierres.h"
#include "host/testigo.h"
#include "service/contract/host_services.h"

namespace tarvik::host {

// The keys of a text such as "{TAB}", "12{ENTER}", "{DOWN 3}" or "{{}". Throws data::Error, naming
// what it could not read, for an unknown name and an open brace.
std::vector<forms::Key> TeclasDe(std::string_view keys);

class FuncionesLocales : public service::Funciones {
 public:
  // All outlive this. `engine` is the host's own connection, for the message texts and dates.
  FuncionesLocales(data::EngineConnection& engine, forms::Platform& platform, Testigo& testigo,
                   Cierres& cierres)
      : engine_(engine), platform_(platform), testigo_(testigo), cierres_(cierres) {}

  void AbreRecordset(const std::string& text, data::Connection&, data::RecordsetRef& out) override;
  void AbreConsulta(const std::string& text, data::Connection&, data::RecordsetRef& out) override;
  void NuevoId(const std::string& name, data::Connection&, std::int32_t& out) override;
  double ANumero(const data::Value& value) override;
  std::string TextoDe(const data::Value& value) override;
  bool EstaVacio(const std::string& text) override;
  bool ExisteClave(const data::Value& value, const std::string& column, const std::string& table,
                   data::Connection&) override;
  void TraeMensaje(int number, service::Ambiente&, std::string& out) override;
  void MuestraMensaje(const std::string& text, int style, service::Ambiente&) override;
  void MuestraError(const std::string& text) override;
  void Pregunta(const std::string& text, int style, bool& out) override;
  // A date is closed when a movement later than it lies in a closed period.
  void FechaValida(const data::Date& date, service::Ambiente&, bool& out) override;
  // `a` days from today, then `b` months.
  void FechaDeTrabajo(int a, int b, data::Date& out) override;
  std::unique_ptr<service::Query> NuevoQuery() override;
  void PresentaForma(forms::Form& screen, service::Ambiente&) override;
  void RegresaForma(forms::Form& screen, service::Ambiente&, const std::string& name) override;
  void EnviaTeclas(const std::string& keys, bool wait) override;
  int TeclaMayuscula(int& key, forms::Control&) override;
  int TeclaNumerica(int& key, forms::Control&) override;
  std::string FormateaTexto(forms::TextBox&, service::Ambiente&) override;
  void FormateaCantidad(double value, const std::string& format, std::string& out) override;
  void NumeroSql(double value, std::string& out) override;
  // The quantity on pending goods-out documents: this base has no open sales.
  void CantidadEnVenta(const std::string& articulo, data::Connection&, double& out) override;
  void CantidadPorSurtir(const std::string& articulo, data::Connection&, double& out) override;
  void AgregaArchivoLog(const std::string& path, const std::string& text) override;
  void ExisteArchivo(const std::string& path, bool& out) override;
  void BorraArchivo(const std::string& path) override;

 private:
  data::EngineConnection& engine_;
  forms::Platform& platform_;
  Testigo& testigo_;
  Cierres& cierres_;
};

}  // namespace tarvik::host
