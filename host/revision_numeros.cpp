// The numbers of documents: below 1, above what their series has given, given twice, never given.
#include "host/revision_interno.h"

namespace tarvik::host::revision {
namespace {

std::string Nombre(Tipo tipo, const data::Value& number) {
  return std::string(NombreDe(tipo)) + " " + data::ToText(number);
}

void FueraDeSerie(const Revisor& revisor, Tipo tipo, Observaciones& found) {
  const data::Rows rows =
      revisor.conexion.Run(ConTablas(tipo,
                                     "WITH s AS (SELECT COALESCE(MAX(valor), 0) AS ultimo FROM "
                                     "series WHERE nombre = ?) SELECT d.{numero} AS "
                                     "numero, s.ultimo FROM {encabezado} d CROSS JOIN s WHERE "
                                     "d.{numero} < 1 OR d.{numero} > s.ultimo ORDER BY "
                                     "d.{numero}"),
                           {TablasDe(tipo).serie});
  for (const auto& row : rows.rows) {
    Observacion which{.clase = "numero", .tipo = std::string(NombreDe(tipo)), .documento = Documento(row[0])};
    which.texto =
        Nombre(tipo, row[0]) +
        (data::ToNumber(row[0]) < 1
             ? ": un documento no puede llevar un número menor que 1. Es de un número que no se pudo dar"
             : ": su número es mayor que el último de la serie " + TablasDe(tipo).serie + " (" +
                   data::ToText(row[1]) + "). La serie volverá a darlo");
    found.push_back(std::move(which));
  }
}

void FoliosRepetidos(const Revisor& revisor, Observaciones& found) {
  const data::Rows rows = revisor.conexion.Run(
      "WITH t AS (SELECT COALESCE(estacion, '') AS estacion, folio, COUNT(*) AS veces, MIN(salida) AS "
      "primera, "
      "MAX(salida) AS ultima FROM salidas WHERE folio >= 1 GROUP BY COALESCE(estacion, ''), folio HAVING "
      "COUNT(*) > "
      "1) SELECT estacion, folio, veces, primera, ultima FROM t ORDER BY estacion, folio",
      {});
  for (const auto& row : rows.rows) {
    Observacion which{.clase = "numero", .tipo = "Salida", .documento = Documento(row[4])};
    which.texto = "El folio " + data::ToText(row[1]) + " de la estación " + data::ToText(row[0]) +
                  " lo llevan " + data::ToText(row[2]) + " salidas, de la " + data::ToText(row[3]) +
                  " a la " + data::ToText(row[4]) + ". Distíngalas por su número de salida";
    found.push_back(std::move(which));
  }
}

// One finding for each run of numbers that no document has. `given` has the columns serie, numero; `last` the
// series and how far it has come.
void Huecos(const Revisor& revisor, Tipo tipo, const std::string& what, const std::string& given,
            const std::string& last, bool documents, Observaciones& found) {
  const data::Rows rows = revisor.conexion.Run("WITH dados AS (" + given + "), ultimos AS (" + last +
                                                   "), todos AS (SELECT serie, numero FROM dados WHERE "
                                                   "numero >= 1 UNION SELECT serie, 0 FROM ultimos UNION "
                                                   "SELECT serie, ultimo + 1 FROM ultimos), pasos AS (SELECT "
                                                   "serie, numero, LEAD(numero) OVER (PARTITION BY "
                                                   "serie ORDER BY numero) AS sigue FROM todos) SELECT "
                                                   "serie, numero + 1 AS desde, sigue - 1 AS hasta FROM "
                                                   "pasos WHERE sigue > numero + 1 ORDER BY serie, numero",
                                               {});
  for (const auto& row : rows.rows) {
    Observacion which{.clase = "numero", .tipo = std::string(NombreDe(tipo))};
    if (documents) which.documento = Documento(row[1]);
    const bool one = data::ToNumber(row[1]) == data::ToNumber(row[2]);
    which.texto = std::string("Falta ") + what + (documents ? "" : " de la serie " + data::ToText(row[0])) +
                  ": " + data::ToText(row[1]) + (one ? "" : " a " + data::ToText(row[2]));
    found.push_back(std::move(which));
  }
}

}  // namespace

void Numeros(const Revisor& revisor, bool huecos, Observaciones& found) {
  for (const Tipo tipo : kTipos) FueraDeSerie(revisor, tipo, found);
  FoliosRepetidos(revisor, found);
  if (!huecos) return;
  for (const Tipo tipo : kTipos) {
    const std::string name = "'" + TablasDe(tipo).serie + "'";
    Huecos(revisor, tipo, tipo == Tipo::Entrada ? "el número de entrada" : "el número de salida",
           ConTablas(tipo, "SELECT " + name + " AS serie, {numero} AS numero FROM {encabezado}"),
           "SELECT nombre AS serie, valor AS ultimo FROM series WHERE nombre = " + name, true, found);
  }
  Huecos(revisor, Tipo::Salida, "el folio",
         "SELECT TRIM(COALESCE(estacion, '')) || 'salida' AS serie, folio AS numero FROM salidas WHERE folio "
         "IS NOT NULL",
         "SELECT nombre AS serie, valor AS ultimo FROM series WHERE length(nombre) > 6 AND "
         "substr(nombre, length(nombre) - 5) = 'salida'",
         false, found);
}

}  // namespace tarvik::host::revision
