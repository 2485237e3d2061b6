// The statements that both engines get: questions and changes, as the suite, the host and a routine write
// them.
#include <algorithm>

#include "data/text.h"
#include "tests/servidor/gemelos.h"
#include "tests/servidor/gemelos_interno.h"

namespace tarvik::tests {

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

}  // namespace tarvik::tests
