// CatalogoLocal: the routines of the catalogue keys, and the printing of a document by a named
// format. The page itself is made in formato.h.
#pragma once

#include <map>
#include <string>

#include "host/anfitrion.h"
#include "host/cierres.h"
#include "host/conexion_observada.h"
#include "host/testigo.h"

namespace tarvik::host {

class CatalogoLocal : public service::ConsultasCatalogo {
 public:
  // All outlive this.
  CatalogoLocal(AmbienteLocal& ambiente, data::EngineConnection& engine, ConexionObservada& observed,
                forms::Platform& platform, Testigo& testigo, Impresora& impresora, Cierres& cierres)
      : ambiente_(ambiente),
        engine_(engine),
        observed_(observed),
        platform_(platform),
        testigo_(testigo),
        impresora_(impresora),
        cierres_(cierres) {}

  // An empty routine removes the key's.
  void Gancho(const std::string& key, Anfitrion::Rutina routine);
  [[nodiscard]] bool TieneGancho(const std::string& key) const { return routines_.contains(key); }

  // Whether a routine runs at this moment.
  [[nodiscard]] bool EnRutina() const { return depth_ > 0; }

  void BuscaCatalogo(const std::string& key, forms::Form& screen, service::Ambiente&) override;
  void ImprimeDocumento(const std::string& format, std::int32_t number, service::Ambiente&,
                        forms::Form& screen) override;
  // A stored document again, by the format that defform names for its kind; gives the page's path. Throws
  // data::Error, with nothing handed over, for one that is not there or where no format is named.
  std::string Imprime(const Retenido& documento);

 private:
  std::string PonPagina(const std::string& format, const Retenido& documento, service::Ambiente& ambiente);

  AmbienteLocal& ambiente_;
  data::EngineConnection& engine_;
  ConexionObservada& observed_;
  forms::Platform& platform_;
  Testigo& testigo_;
  Impresora& impresora_;
  Cierres& cierres_;
  std::map<std::string, Anfitrion::Rutina> routines_;
  int depth_ = 0;         // routines inside routines
  bool endless_ = false;  // they call one another without end, and are being left
};

}  // namespace tarvik::host
