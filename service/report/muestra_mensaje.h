// Shows message N with style S: fetches its text, then shows it. Two steps, each of which may fail by itself.
#pragma once

#include <string>

#include "service/contract/mensajes.h"
#include "service/contract/objeto.h"
#include "service/report/trampa.h"

namespace tarvik::service {

inline constexpr int kAlto = forms::kBoxStop;
inline constexpr int kInformacion = forms::kBoxInformation;

inline std::string TraeMensaje(Trampa& intenta, Host& host, const Objeto<Ambiente>& ambiente, int numero) {
  std::string texto;
  intenta([&] { host.Funciones().TraeMensaje(numero, *ambiente, texto); });
  return texto;
}

inline void MuestraMensaje(Trampa& intenta, Host& host, const Objeto<Ambiente>& ambiente, int numero,
                           int estilo) {
  const std::string texto = TraeMensaje(intenta, host, ambiente, numero);
  intenta([&] { host.Funciones().MuestraMensaje(texto, estilo, *ambiente); });
}

}  // namespace tarvik::service
