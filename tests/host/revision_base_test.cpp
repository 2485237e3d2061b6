// Numbers, leases, and what the engine itself says of the base: each damage is planted and found by name.
#include "data/schema.h"
#include "tests/host/revision_apoyo.h"

namespace tarvik::tests {
namespace {

class RevisaBase : public Libros {};

TEST_F(RevisaBase, ANumberBelowOneOrAboveItsSeriesIsFound) {
  Dia();
  const std::string on = EnServidor() ? " ON entradas" : "";
  Sql("DROP TRIGGER entradas_numero_nuevo" + on);
  Sql("INSERT INTO entradas (entrada, estado) VALUES (0, 'PE')");
  Sql("INSERT INTO entradas (entrada, estado) VALUES (3, 'PE')");
  Sql("INSERT INTO salidas (salida, estado) VALUES (9, 'PE')");
  const Observaciones found = Revisa(true);
  ASSERT_EQ(Fichas(found),
            (Textos{"numero|Entrada|0|-|-|-", "numero|Entrada|3|-|-|-", "numero|Salida|9|-|-|-"}))
      << Dichas(found);
  EXPECT_NE(found[0].texto.find("menor que 1"), std::string::npos) << found[0].texto;
  EXPECT_NE(found[1].texto.find("mayor que el último de la serie MovEnt (2)"), std::string::npos)
      << found[1].texto;
  for (const auto& one : found) EXPECT_FALSE(one.reparable || one.reparado);
}

TEST_F(RevisaBase, AFolioTwiceAtOneStationIsFoundAndAtTwoStationsNot) {
  Dia();
  ASSERT_EQ(Uno("SELECT folio FROM salidas WHERE salida = 2"), "2");
  Sql("UPDATE salidas SET estacion = 'E2', folio = 1 WHERE salida = 2");
  EXPECT_EQ(Dichas(Revisa()), "");
  Sql("UPDATE salidas SET estacion = 'E1' WHERE salida = 2");
  const host::Observacion one = Una(true);
  EXPECT_EQ(Ficha(one), "numero|Salida|2|-|-|-");
  EXPECT_EQ(one.texto,
            "El folio 1 de la estación E1 lo llevan 2 salidas, de la 1 a la 2. Distíngalas por su número de "
            "salida");
}

TEST_F(RevisaBase, GapsAreListedOnDemand) {
  Dia();
  Sql("UPDATE series SET valor = 6 WHERE nombre = 'MovEnt'");
  Sql("INSERT INTO entradas (entrada, estado) VALUES (5, 'PE')");
  Sql("UPDATE series SET valor = 3 WHERE nombre = 'E1salida'");
  EXPECT_EQ(Dichas(Revisa()), "");
  const Observaciones found = Revisa(false, true);
  ASSERT_EQ(Fichas(found),
            (Textos{"numero|Entrada|3|-|-|-", "numero|Entrada|6|-|-|-", "numero|Salida|-|-|-|-"}))
      << Dichas(found);
  EXPECT_EQ(found[0].texto, "Falta el número de entrada: 3 a 4");
  EXPECT_EQ(found[1].texto, "Falta el número de entrada: 6");
  EXPECT_EQ(found[2].texto, "Falta el folio de la serie E1salida: 3");
}

TEST_F(RevisaBase, WhatTheDeadHoldIsFoundAndLetGoOf) {
  Dia();
  Sql("UPDATE entradas SET ocupado = 1 WHERE entrada = 2");
  Sql("INSERT INTO tenencias (tipo, documento, usuario, estacion, desde, vida) VALUES ('Entrada', 2, 'BETO', "
      "'E2', "
      "'2024-03-05 09:00:00', 4712)");
  const host::Observacion one = Una();
  EXPECT_EQ(Ficha(one), "tenencia|Entrada|2|-|-|-");
  EXPECT_EQ(one.texto,
            "La entrada 2 la tomó BETO en la estación E2 desde el 05/03/2024 a las 09:00, y ese programa ya "
            "no está. Puede "
            "liberarse");
  EXPECT_EQ(Fichas(host::Rapida(Quien())), Textos{"tenencia|Entrada|2|-|-|-"});
  EXPECT_TRUE(Una(true).reparado);
  EXPECT_EQ(Uno("SELECT ocupado FROM entradas WHERE entrada = 2"), "0");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM tenencias"), "0");
  EXPECT_EQ(
      Reparaciones(),
      Textos{"La tenía BETO en la estación E2 desde el 05/03/2024 a las 09:00, cuyo programa ya no estaba "
             "abierto. Se liberó al reparar la base."});
  EXPECT_EQ(Dichas(Revisa()), "");
}

TEST_F(RevisaBase, WhatALivingScreenHoldsTooIsNotFree) {
  Dia();
  const auto other = anfitrion->Base().Connect();
  other->Live(4713);
  Sql("UPDATE entradas SET ocupado = 1 WHERE entrada = 2");
  Sql("INSERT INTO tenencias (tipo, documento, usuario, estacion, vida) VALUES ('Entrada', 2, 'CARLA', 'E3', "
      "4713)");
  EXPECT_EQ(Dichas(Revisa()), "");
  Sql("INSERT INTO tenencias (tipo, documento, usuario, estacion, vida) VALUES ('Entrada', 2, 'BETO', 'E2', "
      "4714)");
  EXPECT_EQ(Dichas(Revisa(true)), "");
  EXPECT_EQ(Uno("SELECT ocupado FROM entradas WHERE entrada = 2"), "1");
  other->Close();
  EXPECT_TRUE(Una(true).reparado);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM tenencias"), "0");
  EXPECT_EQ(Uno("SELECT ocupado FROM entradas WHERE entrada = 2"), "0");
}

TEST_F(RevisaBase, ALeaseOfADocumentThatIsGoneIsTakenAway) {
  Dia();
  Sql("INSERT INTO tenencias (tipo, documento, usuario, estacion, vida) VALUES ('Salida', 99, 'BETO', 'E2', "
      "4715)");
  EXPECT_EQ(Ficha(Una(true)), "tenencia|Salida|99|-|-|-");
  EXPECT_EQ(Dichas(Revisa()), "");
}

TEST_F(RevisaBase, AFlagWithoutALeaseIsNobodysOnlyWhereNoOtherProgramWorks) {
  Dia();
  Sql("UPDATE salidas SET ocupado = 1 WHERE salida = 2");
  EXPECT_EQ(Ficha(Una()), "tenencia|Salida|2|-|-|-");
  Sql("UPDATE parametros SET valor = '0' WHERE nombre = 'SoloTarvik'");
  EXPECT_EQ(Dichas(Revisa(true)), "");
  EXPECT_EQ(Uno("SELECT ocupado FROM salidas WHERE salida = 2"), "1");
  Sql("UPDATE parametros SET valor = '1' WHERE nombre = 'SoloTarvik'");
  EXPECT_TRUE(Una(true).reparado);
  EXPECT_EQ(Uno("SELECT ocupado FROM salidas WHERE salida = 2"), "0");
}

TEST_F(RevisaBase, WhatTheEngineItselfFindsIsAFindingInItsWords) {
  Dia();
  Sql("INSERT INTO tallas (talla) VALUES ('CH')");
  if (EnServidor()) {
    Sql("UPDATE pg_index SET indisvalid = false WHERE indexrelid = 'idx_prods_descrip'::regclass");
  } else {
    // A column that takes no null any more, with a null in it.
    Sql("PRAGMA writable_schema = ON");
    Sql("UPDATE sqlite_master SET sql = replace(sql, 'descrip TEXT', 'descrip TEXT NOT NULL') WHERE name = "
        "'tallas'");
    Sql("PRAGMA schema_version = 99999");
    Sql("PRAGMA writable_schema = OFF");
  }
  const host::Observacion one = Una(true);
  EXPECT_EQ(Ficha(one), "motor|-|-|-|-|-");
  EXPECT_NE(one.texto.find(EnServidor() ? "El índice idx_prods_descrip de la tabla prods no es válido"
                                        : "El motor dice: NULL value in tallas.descrip"),
            std::string::npos)
      << one.texto;
  EXPECT_FALSE(one.reparable || one.reparado);
}

TEST_F(RevisaBase, ARowOfTheDeployersOwnThatHangsInTheAirIsFound) {
  Sql("CREATE TABLE mis_notas (articulo TEXT REFERENCES prods (articulo))");
  if (EnServidor()) {
    Sql("ALTER TABLE prods ADD CONSTRAINT con_costo CHECK (costo_u > 1000) NOT VALID");
    EXPECT_EQ(Una().texto,
              "La regla con_costo de la tabla prods no se ha comprobado con todos los registros");
    return;
  }
  SinReglas("INSERT INTO mis_notas VALUES ('NADA')");
  EXPECT_EQ(Una().texto, "El motor dice: un registro de mis_notas depende de otro de prods que no existe");
}

TEST_F(RevisaBase, ACheckThatTheBaseRefusesIsAFindingAndTheOthersAreMade) {
  Dia();
  Sql("UPDATE prods SET ALM2 = 40 WHERE articulo = 'A-100'");
  Sql("ALTER TABLE series RENAME COLUMN valor TO otro");
  const Observaciones found = Revisa();
  ASSERT_EQ(Fichas(found), (Textos{"columna|-|-|-|A-100|2", "motor|-|-|-|-|-"})) << Dichas(found);
  EXPECT_TRUE(found[1].texto.starts_with("No se pudieron revisar los números: ")) << found[1].texto;
}

TEST_F(RevisaBase, WhoeverOpensABaseWithDoublesOfBeforeIsTold) {
  EXPECT_EQ(host::AvisoDeDobles(anfitrion->Conexion()), "");
  Dia();
  Sql("DROP INDEX una_vez_entrada");
  Sql("INSERT INTO movsinv (operacion, id_entrada, articulo, almacen, ent_sal, cantidad) SELECT operacion, "
      "id_entrada, "
      "articulo, almacen, ent_sal, cantidad FROM movsinv WHERE id = 1");
  data::PrepareSchema(anfitrion->Conexion());
  EXPECT_EQ(host::AvisoDeDobles(anfitrion->Conexion()),
            "Esta base ya guardaba renglones afectados dos veces. Desde el movimiento 8 ya no se admiten; "
            "los de antes "
            "los enumera la revisión");
}

}  // namespace
}  // namespace tarvik::tests
