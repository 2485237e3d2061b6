// The modes of a document's screen and the states of a stored document, by name and as tables that the tests
// hold the screens to.
#pragma once

#include <array>
#include <string_view>

namespace tarvik {

// What the member Modo of a screen holds.
namespace modo {
inline constexpr const char* kAlta = "ALTA";
inline constexpr const char* kModificacion = "MODIFICACION";
inline constexpr const char* kConsulta = "CONSULTA";
}  // namespace modo

// The column `estado` of entradas and salidas.
namespace estado {
inline constexpr const char* kPendiente = "PE";
inline constexpr const char* kAfectado = "CO";  // posted
}  // namespace estado

// What a mode means, on both wizards alike. Which controls stay enabled where nothing may be changed is each
// wizard's own: Particular::siempre.
struct ModoDeDocumento {
  std::string_view modo;
  bool del_registro;      // header and lines come from the base; else only date and warehouse, by default
  bool se_captura;        // the controls are as designed; else all but labels and Particular::siempre are off
  bool toma_al_cargar;    // the load sets `ocupado`
  bool suelta_al_cerrar;  // closing clears `ocupado`
  std::string_view luego;  // the mode once the first line, or the save, has made the document's row
};

inline constexpr std::array kModos{
    ModoDeDocumento{.modo = modo::kAlta,
                    .del_registro = false,
                    .se_captura = true,
                    .toma_al_cargar = false,
                    .suelta_al_cerrar = false,
                    .luego = modo::kModificacion},
    ModoDeDocumento{.modo = modo::kModificacion,
                    .del_registro = true,
                    .se_captura = true,
                    .toma_al_cargar = true,
                    .suelta_al_cerrar = true,
                    .luego = modo::kModificacion},
    ModoDeDocumento{.modo = modo::kConsulta,
                    .del_registro = true,
                    .se_captura = false,
                    .toma_al_cargar = false,
                    .suelta_al_cerrar = false,
                    .luego = modo::kConsulta},
};

}  // namespace tarvik
