// The catalogue keys that the module fires, as a table: each once, with the place where it fires. The
// routines that they call are the host's.
#pragma once

#include <array>
#include <string_view>

namespace tarvik::service {

struct Clave {
  std::string_view clave;
  std::string_view procedimiento;  // where it fires
  std::string_view momento;        // the point of the flow, for the implementer's window
  bool cancela;                    // CancelaProceso is tested right after, and cleared
};

inline constexpr std::array kClaves{
    Clave{"ENTRADA001", "Form_Load", "fin de la carga, antes de mostrar la pantalla", true},
    Clave{"ENTRADA005", "NuevaPartida", "antes de guardar un renglón", true},
    Clave{"ENTRADA006", "Form_Unload", "primer paso del cierre", true},
    Clave{"ENTRADA007", "txtFields_LostFocus", "al salir de un campo", false},
    Clave{"ENTRADA008", "txtFields_GotFocus", "al entrar en un campo", false},
    Clave{"ENTRADA009", "PonDescripcion", "artículo encontrado", false},
    Clave{"ENTRADA010", "Command5_Click", "después de afectar, sólo con el concepto A++", false},
    Clave{"ENTRADA012", "txtFields_LostFocus", "al salir del artículo, antes de buscarlo", true},
    Clave{"ENTRADA013", "MSFlexGridEdit", "antes de editar una cantidad", true},
    Clave{"ENTRADA014", "Command5_Click", "después de afectar", false},
    Clave{"ENTRADAS011", "Command3_Click", "botón que no se muestra de diseño", false},
    Clave{"SALIDAS001", "Form_Load", "fin de la carga", true},
    Clave{"SALIDAS005", "Command1_Click", "envío a sucursal, también después de afectar", false},
    Clave{"SALIDAS006", "Form_Unload", "primer paso del cierre", true},
    Clave{"SALIDAS007", "Form_Paint", "la pantalla se pinta", false},
    Clave{"SALIDAS008", "NuevaPartida", "después de crear el renglón", false},
    Clave{"SALIDAS009", "CreaHTML", "hoja de distribución", false},
    Clave{"SALIDAS010", "LlenaPartida", "antes de revisar la existencia", true},
    Clave{"SALIDAS011", "PonDescripcion", "artículo encontrado", false},
    Clave{"SALIDAS012", "SSCheck2_Click", "marca de traspaso a estación", false},
    Clave{"SALIDAS013", "txtFields_LostFocus", "al salir del artículo, antes de buscarlo", true},
    Clave{"SALIDAS014", "MSFlexGridEdit", "antes de editar una celda", true},
    Clave{"SALIDAS015", "Check1_Click", "marca de asignación a empleado", false},
    Clave{"SALIDAS016", "Command5_Click", "documento guardado", false},
    Clave{"SALIDAS017", "CreaEntradasDeTraspaso", "después de afectar un traspaso", false},
    Clave{"MOVESTACIONES001", "Form_Load", "carga", false},
    Clave{"MOVESTACIONES002", "txtFields_LostFocus", "al salir de un campo", false},
    Clave{"MOVESTACIONES003", "Command1_Click", "botón del renglón", false},
    Clave{"MOVESTACIONES004", "cmdCancelar_Click", "botón cancelar", true},
    Clave{"MOVESTACIONES005", "cmdPendiente_Click", "botón dejar pendiente", true},
    Clave{"MOVESTACIONES006", "cmdConfirmar_Click", "botón confirmar", true},
    Clave{"MOVESTACIONES007", "Form_Unload", "cierre", true},
    Clave{"TALLASYCOLORES001", "txtFields_KeyDown", "tallas y colores por fuera", false},
    Clave{"AYUDA", "Form_KeyDown", "tecla F1 de salidas", false},
};

}  // namespace tarvik::service
