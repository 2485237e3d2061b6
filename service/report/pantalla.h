// What every screen of the suite does in the same way: moving the focus, and firing a hook.
#pragma once

#include <string_view>

#include "service/contract/host_services.h"
#include "service/report/trampa.h"

namespace tarvik::service {

// Moves the focus; whatever fails there is ignored.
inline void ColocaFoco(forms::Control& control) {
  Ignora ignora;
  ignora([&] { control.SetFocus(); });
}

// Fires a hook. What its routine throws comes out here.
inline void Dispara(Host& host, std::string_view clave, forms::Form& pantalla, Ambiente& ambiente) {
  host.ConsultasCatalogo().BuscaCatalogo(std::string(clave), pantalla, ambiente);
}

}  // namespace tarvik::service
