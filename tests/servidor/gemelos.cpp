#include "tests/servidor/gemelos.h"

#include <algorithm>

#include "data/text.h"

namespace tarvik::tests {
namespace {

using data::ColumnType;

bool EsTexto(ColumnType tipo) { return tipo == ColumnType::Text; }
bool EsNumero(ColumnType tipo) { return tipo != ColumnType::Text && tipo != ColumnType::Date; }

const std::vector<std::string> kTextos = {
    "",    " ",          "5",        "5.0",  " 7 ",   "-2",  "1e1",    ".5",     "0",
    "007", "x",          "X1",       "abc",  "ABC",   "1,0", "O'Hara", "pronto", "2024-03-05",
    "10",  "2024-03-06", "2024-3-5", "2024", "ñandú", "Ñ",   "1a",     "+3",     "?",
    ";",   "2.5",        "inf",      "nan",  "0x10",  "5.",  "a%",     "a\\b",   "2024-03-05 10:00:00",
    "--",  "true",       "\t7\n",    "1e",   "A-100", "M",   "R",      "PE"};
const std::vector<std::string> kNumeros = {"0",  "1",  "2",   "5",   "7",     "-2",       "2.5", "7.0",
                                           "10", ".5", "1e1", "007", "-7.25", "20240305", "100"};
const std::vector<std::string> kPatrones = {"a%", "%A%", "_", "%", "1%", "a\\%", "ñ%", "", "%5", "2024-03%"};

std::string Entrecomillas(const std::string& texto) {
  std::string con = "'";
  for (const char c : texto) con += c == '\'' ? "''" : std::string(1, c);
  return con + "'";
}

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

// --- Statements --------------------------------------------------------------------------------------

Sentencia Generador::PorClave() {
  const Tabla tabla = Una(false);
  const data::Table& known = *data::FindTable(tabla.muestra->tabla);
  std::string donde;
  for (const std::string_view clave : known.key) {
    const Tipo tipo = data::FindColumn(known.name, clave)->type;
    donde += (donde.empty() ? "" : " AND ") + EntreParentesis(std::string(clave)) + Comparacion() +
             (Uno(3)          ? Literal()
              : EsTexto(tipo) ? Entrecomillas(Valor(tipo))
                              : Valor(tipo));
  }
  return {"SELECT * FROM " + tabla.con_nombre + " WHERE " + EntreParentesis(donde), true, ""};
}

Sentencia Generador::DeUna() {
  const Tabla tabla = Una(false);
  std::string columnas = "*";
  if (!Uno(3)) {
    columnas = Alguna(tabla).nombre;
    while (Uno(2)) columnas += ", " + Alguna(tabla).nombre + (Uno(4) ? " AS Otra" : "");
  }
  std::string texto = "SELECT " + columnas + " FROM " + tabla.con_nombre + Donde(tabla);
  const bool entera =
      data::FindColumn(tabla.muestra->tabla, data::FindTable(tabla.muestra->tabla)->key[0])->type ==
      Tipo::Integer;
  // A table with a number as its key is read in its order unless an index serves the condition better.
  const bool con_donde = data::LowerAscii(texto).find(" where ") != std::string::npos;
  const bool indice = entera && con_donde && !Con("orden de un índice");
  if (!indice && Uno(5)) texto += " LIMIT " + std::to_string(De(5));
  return {texto, !indice, ""};
}

// The host's own form: each value by a mark.
Sentencia Generador::ConValores() {
  const Tabla tabla = Una(false);
  Sentencia hecha{"SELECT * FROM " + tabla.con_nombre + " WHERE ", false, ""};
  const int cuantas = 1 + De(3);
  for (int i = 0; i < cuantas; ++i) {
    const Columna& columna = Alguna(tabla);
    if (i > 0) hecha.texto += Uno(2) ? " AND " : " OR ";
    if (Uno(3)) hecha.texto += "NOT ";
    std::string comparacion = Comparacion();
    data::Value valor = Uno(2) ? Valor(columna.tipo) : Alguno(kTextos);
    const std::string texto = data::ToText(valor);
    // A bound decimal is none of a whole-number column's values on a server, whatever the comparison.
    const bool decimal = texto.find_first_of(".e") != std::string::npos && columna.tipo != Tipo::Text;
    if (decimal && columna.tipo != Tipo::Number && !Con("decimal ligado a una columna entera")) valor = "x";
    // A text that begins as a date is read as one.
    if (columna.tipo == Tipo::Date && texto.size() != 10 && texto > "0" && texto < ":" &&
        !Con("texto ligado a una fecha"))
      valor = "";
    if (Uno(6) && columna.tipo != Tipo::Date) valor = De(12);
    if (columna.tipo == Tipo::Number && Uno(3)) valor = De(20) / 2.0;
    if (columna.tipo == Tipo::Date && Uno(3)) valor = data::Date{2024, 3, 5};
    if (Uno(10)) valor = data::Value();
    const std::string con_marca = Uno(4)   ? "?" + comparacion + columna.nombre
                                  : Uno(4) ? columna.nombre + " NOT IN (NULL, ?)"
                                  : Uno(4) ? columna.nombre + " IN (?)"
                                           : columna.nombre + comparacion + "?";
    hecha.texto += con_marca;
    hecha.valores.push_back(valor);
  }
  return hecha;
}

Sentencia Generador::DeModelo() {
  static const std::vector<std::string> finales = {"", " AND modelo<>''", " AND color = 'R'",
                                                   " AND color='a' AND talla='b'"};
  const std::string modelo = Entrecomillas(Valor(Tipo::Text));
  // The colours and the sizes of a model, as the matrix asks for them.
  if (Uno(3)) {
    return {
        "SELECT prods.color AS pcolor, colores.descrip AS color FROM colores,prods WHERE prods.modelo = " +
            modelo + " AND colores.color=prods.color GROUP BY prods.color",
        true, ""};
  }
  return {(Uno(2) ? "SELECT * FROM prods WHERE modelo = " : "SELECT articulo FROM prods WHERE modelo=") +
              modelo + Alguno(finales),
          true, ""};
}

Sentencia Generador::DeDos() {
  Tabla una = Una(true);
  Tabla otra = Una(true);
  if (una.llamada == otra.llamada) return DeUna();
  const bool texto = Uno(2);
  const Columna* izquierda = DelTipo(una, texto);
  const Columna* derecha = DelTipo(otra, texto);
  if (izquierda == nullptr || derecha == nullptr) return DeUna();
  const std::string junta = izquierda->nombre + " = " + derecha->nombre;
  Tabla ambas{una.muestra, una.llamada, "", una.columnas};
  ambas.columnas.insert(ambas.columnas.end(), otra.columnas.begin(), otra.columnas.end());
  const std::string columnas = Alguna(ambas).nombre + " AS a, " + Alguna(ambas).nombre + " AS b";
  std::string texto_de;
  switch (De(3)) {
    case 0:
      texto_de = una.con_nombre + "," + otra.con_nombre + " WHERE " + junta;
      break;
    case 1:
      texto_de = una.con_nombre + " INNER JOIN " + otra.con_nombre + " ON (" + junta + ") WHERE 1 = 1";
      break;
    default:
      texto_de = una.con_nombre + " LEFT JOIN " + otra.con_nombre + " ON " + junta + " WHERE 1 = 1";
  }
  return {"SELECT " + columnas + " FROM " + texto_de + " AND (" + Condicion(ambas, De(3)) + ")", false, ""};
}

Sentencia Generador::Agrupada() {
  const Tabla tabla = Una(false);
  const std::string grupo = Alguna(tabla).nombre;
  std::string columnas = grupo;
  const Columna* numero = DelTipo(tabla, false);
  if (numero != nullptr) {
    static const std::vector<std::string> funciones = {"SUM(", "COUNT(", "MIN(", "MAX(", "AVG("};
    columnas += ", " + Alguno(funciones) + numero->nombre + ") AS n";
  }
  if (Uno(2)) columnas += ", COUNT(*) As cuantos";
  std::string donde = Donde(tabla);
  const bool extremo =
      columnas.find("MIN(") != std::string::npos || columnas.find("MAX(") != std::string::npos;
  // The first row of a group, where the embedded engine reads the rows as they were stored or by their key.
  const bool suelta = Uno(2);
  if (suelta) {
    if (!Con("primera fila de un grupo")) donde.clear();
    if (extremo && !Con("MIN o MAX de un grupo sin valores"))
      donde = " WHERE " + numero->nombre + " IS NOT NULL";
    const bool leida = tabla.muestra->tabla == "prods" || tabla.muestra->tabla.starts_with("ent");
    if (leida || Con("primera fila de un grupo")) {
      columnas += ", " + Alguna(tabla).nombre + (Uno(2) ? " AS suelta" : " suelta");
    }
  }
  std::string texto = "SELECT " + columnas + " FROM " + tabla.con_nombre + donde + " GROUP BY " + grupo;
  // The engines may take two in either order, and the rows of each in another.
  const bool dos = Uno(8) && (!suelta || Con("primera fila de un grupo"));
  if (dos) texto += ", " + Alguna(tabla).nombre;
  if (Uno(5)) texto += " HAVING " + (Uno(2) ? "COUNT(*) > 1" : grupo + Comparacion() + Literal());
  if (!dos && Uno(4))
    texto += " ORDER BY " + grupo + (Uno(2) && (!suelta || Con("primera fila de un grupo")) ? " DESC" : "");
  if (!dos && Uno(6)) texto += " LIMIT 2";
  return {texto, !dos, ""};
}

Sentencia Generador::Reunida() {
  const Tabla tabla = Una(false);
  const Columna& columna = Alguna(tabla);
  const bool ordena = Uno(2);
  const std::string orden = !ordena ? "" : Uno(2) ? " ORDER BY 1" : " ORDER BY 1 DESC";
  if (Uno(2)) {
    return {"SELECT DISTINCT " + columna.nombre + " FROM " + tabla.con_nombre + Donde(tabla) + orden, ordena,
            ""};
  }
  const Tabla otra = Una(false);
  for (const Columna& segunda : otra.columnas) {
    if (segunda.tipo != columna.tipo) continue;
    return {"SELECT " + columna.nombre + " AS c FROM " + tabla.con_nombre + Donde(tabla) +
                (Uno(2)   ? " UNION ALL "
                 : Uno(2) ? " UNION "
                          : " EXCEPT ") +
                "SELECT " + segunda.nombre + " FROM " + otra.con_nombre + Donde(otra) + orden,
            ordena, ""};
  }
  return {"SELECT COUNT(*) AS n, MIN(" + columna.nombre + ") AS m FROM " + tabla.con_nombre + Donde(tabla),
          true, ""};
}

Sentencia Generador::Ordenada() {
  const Tabla tabla = Una(false);
  const data::Table& known = *data::FindTable(tabla.muestra->tabla);
  std::string orden = Alguna(tabla).nombre + (Uno(3) ? " DESC" : Uno(4) ? " ASC" : "");
  for (const std::string_view clave : known.key) orden += ", " + std::string(clave);
  std::string texto = "SELECT " + Alguna(tabla).nombre + ", " + Alguna(tabla).nombre + " FROM " +
                      tabla.con_nombre + Donde(tabla) + " ORDER BY " + orden;
  if (Uno(2)) texto += " LIMIT " + std::to_string(De(6)) + (Uno(2) ? " OFFSET " + std::to_string(De(4)) : "");
  return {texto, true, ""};
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

Sentencia Generador::Calculada() {
  const Tabla tabla = Una(false);
  const data::Table& known = *data::FindTable(tabla.muestra->tabla);
  std::string clave;
  for (const std::string_view parte : known.key) clave += (clave.empty() ? "" : ", ") + std::string(parte);
  return {"SELECT " + Expresion(tabla) + " AS x, " + Expresion(tabla) + " AS Y FROM " + tabla.con_nombre +
              Donde(tabla) + " ORDER BY " + clave,
          true, ""};
}

Sentencia Generador::Cambio() {
  Tabla tabla = Una(false);
  tabla.con_nombre = tabla.llamada = tabla.muestra->tabla;
  for (Columna& columna : tabla.columnas)
    columna.nombre = columna.nombre.substr(columna.nombre.find('.') + 1);
  std::string texto = "UPDATE " + tabla.con_nombre + " SET ";
  const int cuantas = 1 + De(3);
  std::set<std::string> puestas;
  for (int i = 0; i < cuantas; ++i) {
    const Columna& columna =
        tabla.columnas[static_cast<std::size_t>(1 + De(static_cast<int>(tabla.columnas.size()) - 1))];
    if (!puestas.insert(columna.nombre).second) continue;
    const bool vacio = Con("vacío en lo que no es texto");
    std::string valor = EsTexto(columna.tipo) ? Literal() : "'" + Valor(columna.tipo) + "'";
    if (!EsTexto(columna.tipo) && Uno(3)) valor = vacio ? "' '" : "NULL";
    if (EsNumero(columna.tipo) && Uno(3))
      valor = columna.tipo == Tipo::Number ? Numero() : std::to_string(De(9));
    if (EsTexto(columna.tipo) && Uno(6))
      valor = "CASE WHEN " + Atomo(tabla) + " THEN 'sí' ELSE " + columna.nombre + " END";
    if (columna.tipo == Tipo::Number && Uno(8)) valor = "(SELECT MAX(s.visualcolor) FROM colores AS s)";
    if (columna.tipo == Tipo::Number && Uno(6)) valor = columna.nombre + " + 1";
    texto += (puestas.size() > 1 ? ", " : "") + columna.nombre + " = " + valor;
  }
  return {texto + Donde(tabla), false, tabla.muestra->tabla};
}

Sentencia Generador::Alta() {
  const Muestra& muestra = Alguno(Muestras());
  std::string columnas;
  std::string valores;
  for (const std::string& columna : muestra.columnas) {
    const Tipo tipo = data::FindColumn(muestra.tabla, columna)->type;
    if (!columnas.empty() && Uno(3)) continue;
    std::string valor = EsTexto(tipo) ? Literal() : "'" + Valor(tipo) + "'";
    if (columnas.empty() && EsTexto(tipo)) valor = Texto();
    if (!columnas.empty() && !EsTexto(tipo) && Uno(3))
      valor = Con("vacío en lo que no es texto") ? "''" : "NULL";
    if (columna == "entrada" && muestra.tabla == "entpart") valor = Valor(tipo);
    if (columna == "almacen" && muestra.tabla == "existenciaalmacen") valor = "9";
    columnas += (columnas.empty() ? "" : ", ") + columna;
    valores += (valores.empty() ? "" : ", ") + valor;
  }
  const std::string fin =
      Uno(6) && muestra.tabla == "clavesadd" ? " ON CONFLICT (clave) DO UPDATE SET articulo = 'x'" : "";
  return {"INSERT INTO " + muestra.tabla + " (" + columnas + ") VALUES (" + valores + ")" + fin, false,
          muestra.tabla};
}

Sentencia Generador::Baja() {
  Tabla tabla = Una(false);
  tabla.con_nombre = tabla.llamada = tabla.muestra->tabla;
  for (Columna& columna : tabla.columnas)
    columna.nombre = columna.nombre.substr(columna.nombre.find('.') + 1);
  return {"DELETE FROM " + tabla.con_nombre + Donde(tabla), false, tabla.muestra->tabla};
}

Sentencia Generador::DeAlgunTipo() {
  switch (De(18)) {
    case 17:
      return ConValores();
    case 16:
      return Reunida();
    case 0:
    case 1:
      return PorClave();
    case 2:
      return DeModelo();
    case 3:
    case 4:
      return DeDos();
    case 5:
    case 6:
      return Agrupada();
    case 7:
      return Ordenada();
    case 8:
    case 9:
      return Calculada();
    case 10:
      return Cambio();
    case 11:
      return Alta();
    case 12:
      return Baja();
    default:
      return DeUna();
  }
}

Sentencia Generador::Siguiente() {
  Sentencia hecha = DeAlgunTipo();
  const auto cambia = [&](std::string_view que, std::string_view por) {
    if (const auto at = hecha.texto.find(que); at != std::string::npos && Uno(6))
      hecha.texto.replace(at, que.size(), por);
  };
  cambia("SELECT ", "select\t");
  cambia(" FROM ", "\n  From ");
  cambia(" WHERE ", " Where\n");
  cambia(" AND ", " and ");
  cambia(" ORDER BY ", " order  by ");
  if (Uno(8)) hecha.texto += Uno(2) ? ";" : " ; ";
  return hecha;
}

// --- What is known to differ ---------------------------------------------------------------------------

const std::vector<Diferencia>& Diferencias() {
  static const std::vector<Diferencia> todas = {
      {"vacío en lo que no es texto",
       "UPDATE entradas SET almacen = '' WHERE entrada = 1;SELECT almacen FROM entradas WHERE entrada = 1",
       "''", "NULL"},
      {"texto ilegible en lo que no es texto",
       "UPDATE entradas SET almacen = 'X1' WHERE entrada = 1;SELECT almacen FROM entradas WHERE entrada = 1",
       "'X1'", "no"},
      {"fecha en otra forma",
       "UPDATE entradas SET f_emision = '2024-3-5' WHERE entrada = 1;SELECT f_emision FROM entradas WHERE "
       "entrada = 1",
       "'2024-3-5'", "'2024-03-05'"},
      {"decimal en una columna entera",
       "UPDATE entpart SET partida = 2.5 WHERE id_entrada = 1;SELECT partida FROM entpart WHERE id_entrada = "
       "1",
       "'2.5'", "'3'"},
      {"texto contra expresión", "SELECT entrada FROM entradas WHERE almacen + 0 = '1'", "", "'1'"},
      {"columnas de clases distintas", "SELECT entrada FROM entradas WHERE almacen = estado", "", "no"},
      {"CASE de una columna",
       "SELECT CASE almacen WHEN 'X' THEN 1 ELSE 0 END AS c FROM entradas WHERE entrada = 1", "'0'", "no"},
      {"IS con un valor", "SELECT entrada FROM entradas WHERE almacen IS 1", "'1'", "no"},
      {"literal a la izquierda de IN o BETWEEN",
       "SELECT entrada FROM entradas WHERE 'x' BETWEEN almacen AND 'z'", "'1'|'2'", "no"},
      {"columna sola como condición", "SELECT entrada FROM entradas WHERE ocupado", "'1'", "no"},
      {"más delante de una columna", "SELECT entrada FROM entradas WHERE +almacen = '1'", "", "'1'"},
      {"dos literales", "SELECT entrada FROM entradas WHERE entrada = 1 AND '1' = 1", "", "'1'"},
      {"LIKE de un decimal", "SELECT entrada FROM entradas WHERE almacen LIKE '1%'", "'1'", "no"},
      {"orden de un índice", "SELECT entrada FROM entradas WHERE f_emision > '2000-01-01'", "'2'|'1'",
       "'1'|'2'"},
      {"primera fila de un grupo", "SELECT articulo, clave FROM clavesadd GROUP BY articulo", "'A','Z9'",
       "'A','B1'"},
      {"MIN o MAX de un grupo sin valores",
       "SELECT estado, MAX(importe) AS m, observ FROM entradas GROUP BY estado", "'PE',NULL,'dos'",
       "'PE',NULL,'uno'"},
      {"dos columnas agrupadas", "SELECT talla, color FROM prods WHERE modelo = 'M' GROUP BY talla, color",
       "'2','A'|'1','R'", "'1','R'|'2','A'"},
      {"número pegado a un texto", "SELECT almacen || 'x' AS c FROM entradas WHERE entrada = 1", "'1.0x'",
       "'1x'"},
      {"CAST a entero", "SELECT CAST(costo + 0.7 AS INTEGER) AS c FROM entradas WHERE entrada = 1", "'2'",
       "'3'"},
      {"ROUND con decimales", "SELECT ROUND(costo, 1) AS c FROM entradas WHERE entrada = 1", "'2'", "no"},
      {"ROUND de una mitad", "SELECT ROUND(costo + 0.5) AS c FROM entradas WHERE entrada = 1", "'3'", "'2'"},
      {"división entre cero", "SELECT costo / 0 AS c FROM entradas WHERE entrada = 1", "NULL", "no"},
      {"SUBSTR desde el final", "SELECT SUBSTR(estado, -1) AS c FROM entradas WHERE entrada = 1", "'E'",
       "'PE'"},
      {"columna suelta sin grupo", "SELECT observ, COUNT(*) AS n FROM entradas", "'uno','2'", "no"},
      {"IN sin lista", "SELECT entrada FROM entradas WHERE almacen IN ()", "", "no"},
      {"COALESCE de clases distintas", "SELECT COALESCE(importe, 'x') AS c FROM entradas WHERE entrada = 1",
       "'x'", "no"},
      {"cuentas con una fecha", "SELECT f_emision + 1 AS c FROM entradas WHERE entrada = 1", "'2025'",
       "'2024-03-07'"},
      {"entero que se desborda", "SELECT entrada + 9223372036854775807 AS c FROM entradas WHERE entrada = 1",
       "'9.22337203685478E+18'", "no"},
      {"decimal ligado a una columna entera", "SELECT entrada FROM entradas WHERE entrada < ?:1.5", "'1'",
       ""},
      {"texto ligado a una fecha", "SELECT entrada FROM entradas WHERE f_emision = ?:2024-03-06 10:00:00", "",
       "'1'"},
      {"función de un solo motor", "SELECT IFNULL(importe, 0) AS c FROM entradas WHERE entrada = 1", "'0'",
       "no"}};
  return todas;
}

}  // namespace tarvik::tests
