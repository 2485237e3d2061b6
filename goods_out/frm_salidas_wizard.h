// frmSalidasWizard: the screen of one goods-out document. So far it holds what the public class
// hands over; its fields, lines and posting are not here yet.
#pragma once

#include <cstdint>
#include <string>

#include "data/recordset.h"
#include "forms/form.h"
#include "service/host_services.h"
#include "service/objeto.h"

namespace tarvik {

class frmSalidasWizard final : public forms::Form {
 public:
  explicit frmSalidasWizard(service::Host& host)
      : Form(host.Plataforma(), "frmSalidasWizard", "Asistente para salidas de almacén.") {}

  std::int32_t Salida = 0;
  std::string Modo;
  service::Objeto<service::Ambiente> Ambiente;
  service::Objeto<service::LateBound> Parent;
  data::RecordsetRef rstSalida;
};

}  // namespace tarvik
