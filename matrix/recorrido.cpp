#include "matrix/recorrido.h"

namespace tarvik {

namespace {

int Signo(int value) { return (value > 0) - (value < 0); }

}  // namespace

Lugar Siguiente(const Lugar& lugar, const Cuadricula& malla) {
  Lugar nuevo{.fila = lugar.fila + Signo(lugar.fila - lugar.fila_anterior),
              .columna = lugar.columna + Signo(lugar.columna - lugar.columna_anterior),
              .fila_anterior = lugar.fila,
              .columna_anterior = lugar.columna};
  // A wrap in one direction may call for one in the other. The cell before is set so that the
  // travel keeps its direction.
  constexpr int kVueltas = 4;
  for (int vuelta = 0; vuelta < kVueltas; ++vuelta) {
    if (nuevo.columna >= malla.columnas) {
      nuevo.columna = malla.columnas_fijas;
      nuevo.fila = lugar.fila + 1;
      nuevo.columna_anterior = nuevo.columna - 1;
      nuevo.fila_anterior = nuevo.fila;
    }
    if (nuevo.fila >= malla.filas) {
      nuevo.columna += 1;
      nuevo.fila = malla.filas_fijas;
      nuevo.columna_anterior = nuevo.columna;
      nuevo.fila_anterior = nuevo.fila - 1;
    }
    if (nuevo.columna < malla.columnas_fijas) {
      nuevo.columna = malla.columnas - 1;
      nuevo.fila = lugar.fila - 1;
      nuevo.columna_anterior = nuevo.columna + 1;
      nuevo.fila_anterior = nuevo.fila;
    }
    if (nuevo.fila < malla.filas_fijas) {
      nuevo.columna -= 1;
      nuevo.fila = malla.filas - 1;
      nuevo.columna_anterior = nuevo.columna;
      nuevo.fila_anterior = nuevo.fila + 1;
    }
  }
  return nuevo;
}

}  // namespace tarvik
