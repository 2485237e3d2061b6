// The search for a model: whether a key is one, its matrix of colours and sizes, and the lines that
// come of it. It writes no table: each filled cell goes through the entry row as if it were typed.
#pragma once

#include "wizard/captura_de_modelo.h"

namespace tarvik {

// True if the key in the article field is a model and its lines are made: one line for each
// filled cell, columns first, all at the price of the entry row. False for a key that is
// no model, and for a matrix that was cancelled; the key then goes on as an article's.
// A failing step is reported as `captura`'s, and the next one runs.
void BuscaModelo(CapturaDeModelo& captura, bool& es_modelo);

}  // namespace tarvik
