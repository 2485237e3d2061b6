// Statements of the suite's kind and of a routine's, made with dice: for both engines to answer alike. What
// the engines are known to answer differently has a name here and is not made, unless it is asked for by its
// name.
#pragma once

#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "data/schema.h"
#include "data/value.h"

namespace tarvik::tests {

struct Sentencia {
  std::string texto;
  bool en_orden = false;                  // the order of the rows is promised
  std::string tabla;                      // that it changes; empty for a question
  std::vector<data::Value> valores = {};  // for its marks
};

// A table with the columns of it that have values.
struct Muestra {
  std::string tabla;
  std::vector<std::string> columnas;
};
const std::vector<Muestra>& Muestras();

class Generador {
 public:
  Generador(unsigned semilla, std::set<std::string> con) : dice_(semilla), con_(std::move(con)) {}

  Sentencia Siguiente();
  // A value of a column, for the rows that both engines get.
  std::string Valor(data::ColumnType tipo);

 private:
  using Tipo = data::ColumnType;
  struct Columna {
    std::string nombre;  // behind its table's name where there are two
    Tipo tipo;
  };
  struct Tabla {
    const Muestra* muestra;
    std::string llamada;  // its name or its other name
    std::string con_nombre;
    std::vector<Columna> columnas;
  };

  int De(int cuantos) { return static_cast<int>(dice_() % static_cast<unsigned>(cuantos)); }
  bool Uno(int de) { return De(de) == 0; }
  template <class Lista>
  const auto& Alguno(const Lista& lista) {
    return lista[static_cast<std::size_t>(De(static_cast<int>(lista.size())))];
  }
  // Whether this kind, which the engines answer differently, is to be made all the same.
  [[nodiscard]] bool Con(const char* clase) const { return con_.contains(clase); }

  Tabla Una(bool con_prefijo);
  const Columna& Alguna(const Tabla& tabla) { return Alguno(tabla.columnas); }
  const Columna* DelTipo(const Tabla& tabla, bool texto);
  std::string Literal();
  std::string Numero();
  std::string Texto();
  std::string Comparacion();
  std::string EntreParentesis(const std::string& que);
  std::string Atomo(const Tabla& tabla);
  std::string Raro(const Columna& columna);
  std::string DeRutina(const Tabla& tabla);
  std::string ConSubconsulta(const Tabla& tabla);
  std::string Condicion(const Tabla& tabla, int hondura);
  std::string Expresion(const Tabla& tabla);
  std::string Donde(const Tabla& tabla);

  Sentencia DeAlgunTipo();
  Sentencia ConValores();
  Sentencia PorClave();
  Sentencia DeUna();
  Sentencia DeModelo();
  Sentencia DeDos();
  Sentencia Agrupada();
  Sentencia Reunida();
  Sentencia Ordenada();
  Sentencia Calculada();
  Sentencia Cambio();
  Sentencia Alta();
  Sentencia Baja();

  std::mt19937 dice_;
  std::set<std::string> con_;
};

// One kind of difference: its name, a statement that shows it, and what each engine answers (the rows joined
// by "|", values by ","; "no" where it refuses).
struct Diferencia {
  const char* clase;
  const char* sentencia;
  const char* archivo;
  const char* servidor;
};
const std::vector<Diferencia>& Diferencias();

}  // namespace tarvik::tests
