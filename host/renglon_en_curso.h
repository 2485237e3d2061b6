// What is unfinished in a document's entry row, as a text that can go to another screen: the fields, and
// where the operator was. Lines are stored the moment they are whole, so this is all that a screen holds
// alone.
#pragma once

#include <string>

#include "host/documentos.h"

namespace tarvik::host {

// Empty where the row is empty.
std::string TomaRenglonEnCurso(DocumentWizard& screen, Tipo tipo);

// Puts it into the entry row of a screen that is shown, so that it is as it was. The fields' change logic
// runs for each, but a full field doesn't move on as it does when typed. What can't be put is left out; a
// text that is none of TomaRenglonEnCurso's puts nothing.
void PonRenglonEnCurso(DocumentWizard& screen, Tipo tipo, const std::string& renglon);

}  // namespace tarvik::host
