// Hooks and printing of the stand-alone host.
#include "host/catalogo_local.h"

#include <utility>

#include "data/error.h"
#include "host/documentos.h"
#include "host/formato.h"
#include "host/textos.h"
#include "service/contract/mensajes.h"

namespace tarvik::host {

void CatalogoLocal::Gancho(const std::string& key, Anfitrion::Rutina routine) {
  if (routine) {
    routines_[key] = std::move(routine);
  } else {
    routines_.erase(key);
  }
}

void CatalogoLocal::BuscaCatalogo(const std::string& key, forms::Form& screen, service::Ambiente&) {
  testigo_.Servicio("BuscaCatalogo");
  testigo_.Gancho(key, std::as_const(ambiente_).ValorDeGancho());
  const auto found = routines_.find(key);
  if (found == routines_.end()) return cierres_.Corrio(screen, key);
  // A routine may set off a key, its own included. Without a limit the stack would overflow. Once that is
  // reported, no routine runs until the first of them has ended.
  constexpr int kMasHonda = 40;
  if (endless_ || depth_ >= kMasHonda) {
    endless_ = true;
    throw data::Unrecoverable("La rutina " + key + " lleva a sí misma sin fin");
  }
  struct Level {
    CatalogoLocal& own;
    explicit Level(CatalogoLocal& catalogue) : own(catalogue) { ++own.depth_; }
    ~Level() { own.endless_ = --own.depth_ > 0 && own.endless_; }
  } const level(*this);
  const auto routine = found->second;  // a routine may replace itself
  // A routine must end what it begins: with its transaction open everything that the operator stores
  // afterwards would depend on it, and be lost with the program.
  const bool inside = engine_.InTransaction();
  const auto left_open = [&] {
    const bool left = !inside && engine_.InTransaction();
    if (left) engine_.Rollback();
    return left;
  };
  const ConexionObservada::Rutina own(observed_);
  try {
    routine(screen, ambiente_);
  } catch (const data::Error&) {
    left_open();
    cierres_.Corrio(screen, key);
    throw;
  } catch (const std::exception& error) {
    left_open();
    cierres_.Corrio(screen, key);
    throw data::Error(error.what());
  }
  const bool undone = left_open();
  cierres_.Corrio(screen, key);
  if (undone) {
    throw data::Error("La rutina " + key + " dejó una transacción abierta; lo que hizo en ella se deshizo");
  }
}

void CatalogoLocal::ImprimeDocumento(const std::string& format, std::int32_t number,
                                     service::Ambiente& ambiente, forms::Form& screen) {
  const bool in = ClaseDeDocumento(screen.Name(), format) == Clase::Entrada;
  PonPagina(format, {in ? Tipo::Entrada : Tipo::Salida, number}, ambiente);
  cierres_.Corrio(screen, kImprime);
}

std::string CatalogoLocal::Imprime(const Retenido& documento) {
  if (!ContenidoDe(engine_, documento)) {
    throw data::Error("No se puede imprimir: no existe " + LaDe(documento));
  }
  const data::Rows formats = engine_.Run("SELECT Entradas, Salidas FROM defform ORDER BY id", {});
  if (formats.rows.empty()) throw data::Error(LeeMensaje(engine_, service::mensaje::SinFormato));
  return PonPagina(data::ToText(formats.rows[0][documento.tipo == Tipo::Entrada ? 0 : 1]), documento,
                   ambiente_);
}

std::string CatalogoLocal::PonPagina(const std::string& format, const Retenido& documento,
                                     service::Ambiente& ambiente) {
  testigo_.Impreso(format, documento.numero);
  testigo_.Servicio("ImprimeDocumento");
  Pedido wanted;
  wanted.formato = format;
  wanted.numero = documento.numero;
  wanted.clase = documento.tipo == Tipo::Entrada ? Clase::Entrada : Clase::Salida;
  wanted.carpeta = ambiente.RutaBase();
  wanted.formato_importe = ambiente.FormatoImporte();
  wanted.formato_cantidad = ambiente.FormatoCantidad();
  wanted.empresa = data::ToText(ambiente_.Parametro("Empresa"));
  wanted.ahora = platform_.Now();
  std::string page = ImprimeEnArchivo(engine_, wanted);
  impresora_.Imprime(page, format, documento.numero);
  return page;
}

}  // namespace tarvik::host
