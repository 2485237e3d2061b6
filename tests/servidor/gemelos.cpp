// The parts of the statements that both engines get: values and conditions. Whole statements are made in
// gemelos_sentencias.cpp.
#include "tests/servidor/gemelos.h"

#include "tests/servidor/gemelos_interno.h"

namespace tarvik::tests {
namespace {

const std::vector<std::string> kNumeros = {"0",  "1",  "2",   "5",   "7",     "-2",       "2.5", "7.0",
                                           "10", ".5", "1e1", "007", "-7.25", "20240305", "100"};
const std::vector<std::string> kPatrones = {"a%", "%A%", "_", "%", "1%", "a\\%", "ñ%", "", "%5", "2024-03%"};

}  // namespace

const std::vector<Muestra>& Muestras() {
  static const std::vector<Muestra> todas = {
      {"entradas",
       {"entrada", "tipo_doc", "f_emision", "almacen", "importe", "estado", "ocupado", "observ", "usufecha"}},
      {"entpart",
       {"id_entrada", "entrada", "articulo", "cantidad", "precio", "observ", "partida", "usufecha"}},
      {"prods",
       {"articulo", "descrip", "impuesto", "linea", "modelo", "color", "talla", "Invent", "costo_u", "ALM1"}},
      {"clavesadd", {"clave", "articulo", "cantidad", "unidad", "Libre"}},
      {"existenciaalmacen", {"almacen", "articulo", "existencia"}},
      {"colores", {"color", "descrip", "visualcolor"}}};
  return todas;
}

// --- Values and conditions ---------------------------------------------------------------------------

std::string Generador::Valor(Tipo tipo) {
  static const std::vector<std::string> fechas = {"2024-03-05", "2024-03-06", "2023-12-31", "1999-01-01"};
  static const std::vector<std::string> cortos = {"",  "a", "A",   "b",   "R",  "M",
                                                  "5", "ñ", "Abc", "abc", "10", "7"};
  switch (tipo) {
    case Tipo::Date:
      return Alguno(fechas);
    case Tipo::Flag:
      return std::to_string(De(2));
    case Tipo::Integer:
      return std::to_string(De(12) - 2);
    case Tipo::Number:
      return std::to_string(De(60) - 10) + (Uno(2) ? ".5" : ".0");
    case Tipo::Text:
      return Uno(4) ? Alguno(kTextos) : Alguno(cortos);
  }
  return "";
}

Generador::Tabla Generador::Una(bool con_prefijo) {
  const Muestra& muestra = Alguno(Muestras());
  Tabla tabla{&muestra, muestra.tabla, muestra.tabla, {}};
  if (Uno(3)) {
    tabla.llamada = Uno(2) ? "t" : "q";
    tabla.con_nombre += (Uno(2) ? " AS " : " ") + tabla.llamada;
  }
  const bool prefijo = con_prefijo || Uno(5);
  for (const std::string& nombre : muestra.columnas) {
    tabla.columnas.push_back(
        {(prefijo ? tabla.llamada + "." : "") + nombre, data::FindColumn(muestra.tabla, nombre)->type});
  }
  return tabla;
}

const Generador::Columna* Generador::DelTipo(const Tabla& tabla, bool texto) {
  std::vector<const Columna*> posibles;
  for (const Columna& columna : tabla.columnas) {
    if (texto ? EsTexto(columna.tipo) : EsNumero(columna.tipo)) posibles.push_back(&columna);
  }
  return posibles.empty() ? nullptr : Alguno(posibles);
}

std::string Generador::Numero() { return Alguno(kNumeros); }
std::string Generador::Texto() { return Entrecomillas(Alguno(kTextos)); }
std::string Generador::Literal() {
  if (Uno(12)) return "NULL";
  return Uno(3) ? Numero() : Texto();
}
std::string Generador::Comparacion() {
  static const std::vector<std::string> todas = {"=", "=", "=", "<>", "!=", "<", ">", "<=", ">=", "=="};
  const std::string blanco = Uno(2) ? " " : "";
  return blanco + Alguno(todas) + blanco;
}
std::string Generador::EntreParentesis(const std::string& que) {
  std::string dentro = que;
  while (Uno(5)) dentro = "(" + dentro + ")";
  return dentro;
}

std::string Generador::Atomo(const Tabla& tabla) {
  const Columna& columna = Alguna(tabla);
  const std::string nombre = EntreParentesis(columna.nombre);
  switch (De(13)) {
    case 12:
      return Raro(columna);
    case 0:
      return nombre + (Uno(2) ? " IS NULL" : " IS NOT NULL");
    case 1: {
      std::string lista = EntreParentesis(Literal());
      while (!Uno(3)) lista += ", " + Literal();
      return nombre + (Uno(3) ? " NOT IN (" : " IN (") + lista + ")";
    }
    case 2:
      return nombre + (Uno(3) ? " NOT BETWEEN " : " BETWEEN ") + Literal() + " AND " + Literal();
    case 3: {
      if (columna.tipo == Tipo::Number && !Con("LIKE de un decimal")) break;
      return nombre + (Uno(3) ? " NOT LIKE " : " LIKE ") + Entrecomillas(Alguno(kPatrones));
    }
    case 4: {
      const Columna& otra = Alguna(tabla);
      const bool alike =
          EsTexto(columna.tipo) == EsTexto(otra.tipo) && EsNumero(columna.tipo) == EsNumero(otra.tipo);
      if (!alike && !Con("columnas de clases distintas")) break;
      return nombre + Comparacion() + EntreParentesis(otra.nombre);
    }
    case 5:
      return EntreParentesis(Literal()) + Comparacion() + nombre;
    case 6:
      return nombre + " = " + (EsTexto(columna.tipo) ? Entrecomillas(Valor(columna.tipo)) : Numero());
    default:
      break;
  }
  return nombre + Comparacion() + EntreParentesis(Literal());
}

// What the engines are known to answer differently, and what looks like it and is not.
std::string Generador::Raro(const Columna& columna) {
  const std::string& nombre = columna.nombre;
  switch (De(7)) {
    case 0:
      if (!Con("CASE de una columna")) break;
      return "CASE " + nombre + " WHEN " + Literal() + " THEN 1 ELSE 0 END = 1";
    case 1:
      if (!Con("IS con un valor")) break;
      return nombre + (Uno(2) ? " IS " : " IS NOT ") + Literal();
    case 2:
      if (!Con("literal a la izquierda de IN o BETWEEN")) break;
      return Literal() + " BETWEEN " + nombre + " AND " + nombre;
    case 3:
      if (!Con("columna sola como condición")) break;
      return nombre;
    case 4:
      if (!Con("más delante de una columna")) break;
      return "+" + nombre + Comparacion() + Literal();
    case 5:
      if (!Con("dos literales")) break;
      return Literal() + Comparacion() + Literal();
    default:
      return "UPPER('" + std::string(Uno(2) ? "abc" : "m") + "')" +
             (EsTexto(columna.tipo) ? Comparacion() + nombre : " = 'ABC'");
  }
  return "NOT NOT " + nombre + " IS NULL";
}

std::string Generador::ConSubconsulta(const Tabla& tabla) {
  const bool texto = Uno(2);
  const Columna* columna = DelTipo(tabla, texto);
  const Muestra& otra = Alguno(Muestras());
  std::vector<std::string> dentro;
  for (const std::string& nombre : otra.columnas) {
    const Tipo tipo = data::FindColumn(otra.tabla, nombre)->type;
    if (texto ? EsTexto(tipo) : EsNumero(tipo)) dentro.push_back("s." + nombre);
  }
  if (columna == nullptr || dentro.empty()) return "1 = 1";
  const std::string cual = Alguno(dentro);
  const std::string donde = Alguno(dentro) + (texto ? " = " + Texto() : " < " + Numero());
  switch (De(4)) {
    case 0:
      return columna->nombre + (Uno(3) ? " NOT IN (" : " IN (") + "SELECT " + cual + " FROM " + otra.tabla +
             " AS s WHERE " + donde + ")";
    case 1:
      return std::string(Uno(2) ? "NOT " : "") + "EXISTS (SELECT 1 FROM " + otra.tabla + " AS s WHERE " +
             donde + ")";
    case 2:
      return columna->nombre + Comparacion() + "(SELECT " + (Uno(2) ? "MAX(" : "MIN(") + cual + ") FROM " +
             otra.tabla + " AS s)";
    default:
      return "EXISTS (SELECT 1 FROM " + otra.tabla + " AS s WHERE " + cual + " = " + tabla.llamada + "." +
             columna->nombre.substr(columna->nombre.find('.') + 1) + ")";
  }
}

// What a routine's own text holds: functions of both engines, expressions.
std::string Generador::DeRutina(const Tabla& tabla) {
  const Columna* texto = DelTipo(tabla, true);
  const Columna* numero = DelTipo(tabla, false);
  if (texto == nullptr || numero == nullptr) return Atomo(tabla);
  const std::string t = texto->nombre;
  const std::string n = numero->nombre;
  const std::string contra = Con("texto contra expresión") && Uno(3) ? Texto() : Numero();
  switch (De(10)) {
    case 0:
      return "COALESCE(" + t + ", 'x')" + Comparacion() + Texto();
    case 1:
      return "COALESCE(" + n + ", 0)" + Comparacion() + contra;
    case 2: {
      static const std::vector<std::string> funciones = {"UPPER(", "LOWER(", "TRIM("};
      return Alguno(funciones) + t + ")" + Comparacion() + Texto();
    }
    case 3:
      return "LENGTH(" + t + ")" + Comparacion() + Numero();
    case 4:
      return n + (Uno(2) ? " + " : " * ") + Numero() + Comparacion() + contra;
    case 5:
      return "ABS(" + n + ")" + Comparacion() + contra;
    case 6:
      return "CASE WHEN " + Atomo(tabla) + " THEN 1 ELSE 0 END = " + std::to_string(De(2));
    case 7:
      return "SUBSTR(" + t + ", " + std::to_string(1 + De(3)) + ", " + std::to_string(De(3)) + ")" +
             Comparacion() + Texto();
    case 8:
      return "REPLACE(" + t + ", 'a', 'z')" + Comparacion() + Texto();
    default:
      return ConSubconsulta(tabla);
  }
}

std::string Generador::Condicion(const Tabla& tabla, int hondura) {
  if (hondura == 0 || Uno(3)) return Uno(4) ? DeRutina(tabla) : Atomo(tabla);
  switch (De(5)) {
    case 0:
      return "NOT " + Condicion(tabla, 0);
    case 1:
      return "NOT (" + Condicion(tabla, hondura - 1) + ")";
    case 2:
      return "(" + Condicion(tabla, hondura - 1) + ")";
    case 3:
      return Condicion(tabla, hondura - 1) + " OR " + Condicion(tabla, hondura - 1);
    default:
      return Condicion(tabla, hondura - 1) + " AND " + Condicion(tabla, hondura - 1);
  }
}

std::string Generador::Donde(const Tabla& tabla) {
  return Uno(6) ? "" : (Uno(8) ? " where " : " WHERE ") + Condicion(tabla, De(3));
}

std::string Generador::Expresion(const Tabla& tabla) {
  const Columna* texto = DelTipo(tabla, true);
  const Columna* numero = DelTipo(tabla, false);
  if (texto == nullptr || numero == nullptr) return "1";
  const std::string t = texto->nombre;
  const std::string n = numero->nombre;
  switch (De(12)) {
    case 9:
      return Con("número pegado a un texto") ? n + " || 'x'" : "LOWER(" + t + ")";
    case 10:
      return "(" + Atomo(tabla) + ")";
    case 11:
      return "(SELECT MAX(s.descrip) FROM prods AS s WHERE s.linea = " + tabla.llamada + "." +
             t.substr(t.find('.') + 1) + ")";
    case 0:
      return "UPPER(" + t + ")";
    case 1:
      return "COALESCE(" + t + ", '-')";
    case 2:
      return "COALESCE(" + n + ", 0)";
    case 3:
      return "CASE WHEN " + Condicion(tabla, 1) + " THEN 'sí' ELSE 'no' END";
    case 4:
      return n + " * 2 - " + Numero();
    case 5:
      return t + " || 'x'";
    case 6:
      return "(SELECT COUNT(*) FROM colores)";
    case 7:
      return numero->tipo == Tipo::Number ? "ABS(" + n + ")" : "CAST(" + n + " AS TEXT)";
    default:
      return "CASE WHEN " + Atomo(tabla) + " THEN " + n + " END";
  }
}

}  // namespace tarvik::tests
