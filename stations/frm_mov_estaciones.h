// frmMovEstaciones: the screen of one station transfer. So far it holds what the public class hands
// over; its fields, grid and hooks are not here yet.
#pragma once

#include <cstdint>

#include "forms/form.h"
#include "service/host_services.h"
#include "service/objeto.h"

namespace tarvik {

class frmMovEstaciones final : public forms::Form {
 public:
  explicit frmMovEstaciones(service::Host& host)
      : Form(host.Plataforma(), "frmMovEstaciones", "Asistente para traspasos entre estaciones") {}

  service::Objeto<service::Ambiente> Ambiente;
  bool CancelaProceso = false;
  std::int32_t Id = 0;
};

}  // namespace tarvik
