// What the engines are known to answer differently: a table.
#include "tests/servidor/gemelos.h"

namespace tarvik::tests {

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
