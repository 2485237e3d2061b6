// EncabezadoDeSalidas: a new goods-out whose header passes, and how a header is refused or accepted.
#pragma once

#include "tests/goods_out/support.h"

namespace tarvik::tests {

class EncabezadoDeSalidas : public EscenarioDeSalidas {
 protected:
  // A header that passes.
  frmSalidasWizard& Correcta() {
    frmSalidasWizard& f = NuevaSalida();
    f.txtFields(campo::Concepto).Text("VTA");
    Olvida();
    return f;
  }
  void Rechaza(frmSalidasWizard& f, int mensaje, int campo) {
    Olvida();
    f.DTPicker1.SetFocus();
    bool valido = true;
    f.ValidaTab1(valido);
    EXPECT_FALSE(valido) << mensaje;
    EXPECT_EQ(Numeros(), std::vector<int>{mensaje});
    ASSERT_FALSE(bitacora.mensajes.empty());
    EXPECT_EQ(bitacora.mensajes.back().clase, "mensaje");
    EXPECT_EQ(bitacora.mensajes.back().texto, MensajeDeLaBase(mensaje));
    EXPECT_EQ(bitacora.mensajes.back().estilo, 64);
    EXPECT_EQ(f.ActiveControl(), &f.txtFields(campo)) << mensaje;
  }
  bool Acepta(frmSalidasWizard& f) {
    bool valido = false;
    f.ValidaTab1(valido);
    return valido && bitacora.mensajes.empty();
  }
};

}  // namespace tarvik::tests
