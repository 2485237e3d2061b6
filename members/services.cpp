// What stands beside the screens: the public class, records, and the statement builder.
#include "members/row.h"
#include "members/tables.h"
#include "service/door/entradas_salidas.h"

namespace tarvik::members {

namespace {

const Class& FieldTable() {
  using C = Field;
  static const Class table{"Field",
                           "Una columna del renglón actual de un Recordset.",
                           nullptr,
                           nullptr,
                           {Reads<C>("Value", "El valor de la columna, o nada.",
                                     [](C& field) -> const data::Value& { return field.value; })}};
  return table;
}

const Class& RecordsetTable() {
  using C = data::Recordset;
  static const Class table{
      "Recordset",
      "Los renglones que dio una consulta, leídos completos, con un renglón actual.",
      nullptr,
      nullptr,
      {
          Reads<C>("EOF", "Si ya no hay renglón actual.", [](C& rows) { return rows.Eof(); }),
          READ_ONLY(RecordCount, "Cuántos renglones hay."),
          PROCEDURE(MoveNext, "Pasa al renglón siguiente; da error si ya no lo hay."),
          Does<C>("Fields", "Una columna del renglón actual, por su nombre, con mayúsculas o sin ellas.",
                  {{"name"}}, [](C& rows, const std::string& name) { return Field{rows.Fields(name)}; }),
      }};
  return table;
}

const Class& QueryTable() {
  using C = service::Query;
  static const Class table{
      "Query",
      "El constructor de sentencias de una pantalla. Lo que tiene se queda hasta que se limpia.",
      nullptr,
      nullptr,
      {
          PROCEDURE(Limpia, "Quita todo lo que tiene."),
          PROCEDURE(TipoSentencia, "Dice qué se construye: INSERT o UPDATE.", {"kind"}),
          PROCEDURE(AgregaCampo, "Agrega una columna con su valor; un texto se entrecomilla solo.", {"tabla"},
                    {"campo"}, {"valor"}),
          PROCEDURE(Condicion, "La condición de un UPDATE, sin la palabra WHERE.", {"text"}),
          PROCEDURE(TextoSql, "La sentencia como quedó; vacía si no se enviaría nada.",
                    {.name = "text", .way = Way::Out}),
          PROCEDURE(SentenciaDirecta, "Una sentencia ya escrita, que se envía en lugar de lo construido.",
                    {"text"}),
          PROCEDURE(Ejecuta, "Envía la sentencia. Sin columnas, o un UPDATE sin condición, no envía nada."),
      }};
  return table;
}

const Class& DoorTable() {
  using C = tarvik::EntradasSalidas;
  static const Parameter modal{.name = "bolModal", .optional = true};
  const auto number = [](std::string_view name) { return Parameter{.name = name, .other_name = "n"}; };
  static const Class table{
      "EntradasSalidas",
      "La clase pública: abre las pantallas. Con bolModal la llamada regresa cuando la pantalla se cierra.",
      nullptr,
      nullptr,
      {
          VARIABLE(Ambiente, "El contexto de trabajo con que se abren las pantallas, o nada."),
          VARIABLE(Parent, "La forma que muestra las listas de documentos, o nada."),
          PROCEDURE(NuevaEntrada, "Abre una entrada nueva. Nada se guarda antes de su primer renglón.",
                    modal),
          PROCEDURE(NuevaSalida, "Abre una salida nueva. Nada se guarda antes de su primer renglón.", modal),
          PROCEDURE(ModificaEntrada,
                    "Abre una entrada pendiente para seguirla; una afectada sólo se consulta. Avisa "
                    "si no existe o si alguien la tiene.",
                    number("nEntrada"), modal),
          PROCEDURE(ModificaSalida,
                    "Abre una salida pendiente para seguirla; una afectada sólo se consulta. Avisa si "
                    "no existe o si alguien la tiene.",
                    number("nSalida"), modal),
          PROCEDURE(ConsultaEntrada, "Abre una entrada sólo para leerla. Avisa si no existe.",
                    number("nEntrada")),
          PROCEDURE(ConsultaSalida, "Abre una salida sólo para leerla. Avisa si no existe.",
                    number("nSalida")),
          PROCEDURE(EliminaEntrada,
                    "Pregunta y elimina una entrada con sus renglones; sus movimientos se quedan.",
                    number("nEntrada")),
          PROCEDURE(EliminaSalida,
                    "Pregunta y elimina una salida con sus renglones; sus movimientos se quedan.",
                    number("nSalida")),
          PROCEDURE(movimientoEstacion,
                    "Abre la pantalla de un traspaso entre estaciones con ese número; lo demás lo hacen las "
                    "rutinas.",
                    number("nId"), {"bolModal"}),
      }};
  return table;
}

}  // namespace

std::vector<const Class*> ServiceTables() {
  return {&FieldTable(), &RecordsetTable(), &QueryTable(), &DoorTable()};
}

}  // namespace tarvik::members
