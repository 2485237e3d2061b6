// Documents that are not what the ledger says: each damage is planted and found by name, and mended only
// where that is safe.
#include "tests/host/revision_apoyo.h"

namespace tarvik::tests {
namespace {

class RevisaDocumentos : public Libros {
 protected:
  // Movements that were never made, and their stock neither.
  void QuitaMovimiento(int id) {
    Sql("UPDATE existenciaalmacen SET existencia = existencia - (SELECT CASE WHEN m.ent_sal = 'E' THEN "
        "m.cantidad ELSE "
        "-m.cantidad END FROM movsinv m WHERE m.id = ?) WHERE articulo = (SELECT articulo FROM movsinv WHERE "
        "id = ?) AND "
        "almacen = (SELECT almacen FROM movsinv WHERE id = ?)",
        {id, id, id});
    Sql("DELETE FROM movsinv WHERE id = ?", {id});
    IgualaColumnas();
  }
  void IgualaColumnas() {
    for (const char* n : {"1", "2"}) {
      Sql(std::string("UPDATE prods SET ALM") + n +
          " = (SELECT e.existencia FROM existenciaalmacen e WHERE e.articulo = prods.articulo AND e.almacen "
          "= " +
          n + ")");
    }
  }
  // A movement once more, with its stock, behind the base's own rule.
  void Duplica(int id) {
    Sql("INSERT INTO movsinv (operacion, movimiento, articulo, cantidad, id_entrada, id_salida, ent_sal, "
        "almacen, saldo) "
        "SELECT operacion, movimiento, articulo, cantidad, id_entrada, id_salida, ent_sal, almacen, saldo + "
        "CASE WHEN "
        "ent_sal = 'E' THEN cantidad ELSE -cantidad END FROM movsinv WHERE id = ?",
        {id});
  }
};

TEST_F(RevisaDocumentos, AHalfPostedDocumentIsFoundOnceAndCompleted) {
  frmEntradasWizard& f = ConRenglones({{"A-100", "3"}, {"A-200", "2"}, {"A-100", "1"}});
  bitacora.FallaServicio("Afecta", 2, "falla provocada");
  bitacora.respuestas = {true};
  Tecla(f, "F5", f.txtFields(campo::Concepto));
  const host::Observacion one = Una();
  EXPECT_EQ(Ficha(one), "a medias|Entrada|1|-|-|-");
  EXPECT_EQ(one.texto,
            "Entrada 1: afectada a medias, 1 de 3 renglones; falta desde el renglón 1. Puede completarse");
  EXPECT_TRUE(one.reparable);
  EXPECT_EQ(Fichas(host::Rapida(Quien())), Textos{"a medias|Entrada|1|-|-|-"});

  EXPECT_TRUE(Una(true).reparado);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv WHERE operacion = 'EN'"), "3");
  EXPECT_EQ(Reparaciones(), Textos{"Se completó la entrada 1 con 2 movimientos"});
  EXPECT_EQ(Dichas(Revisa()), "");
}

TEST_F(RevisaDocumentos, ATransferThatLeftAndDidNotArriveIsHalfPosted) {
  Dia();
  const int arrival = std::stoi(Uno("SELECT MAX(id) FROM movsinv WHERE operacion = 'T+'"));
  QuitaMovimiento(arrival);
  const host::Observacion one = Una(true);
  EXPECT_EQ(Ficha(one), "a medias|Salida|2|-|-|-");
  EXPECT_NE(one.texto.find("1 de 2 renglones; falta desde el renglón 3"), std::string::npos) << one.texto;
  EXPECT_TRUE(one.reparado);
  EXPECT_EQ(Uno("SELECT existencia FROM existenciaalmacen WHERE articulo = 'A-200' AND almacen = 2"), "1");
  EXPECT_EQ(Dichas(Revisa()), "");
}

TEST_F(RevisaDocumentos, WithNobodyToCompleteItAHalfPostedDocumentSaysSo) {
  Dia();
  QuitaMovimiento(3);
  host::Revisor alone = Quien();
  alone.completa = {};
  const Observaciones found = host::Revisa(alone, true);
  ASSERT_EQ(Fichas(found), Textos{"a medias|Salida|1|-|-|-"});
  EXPECT_FALSE(found[0].reparado);
  EXPECT_NE(found[0].texto.find("No se pudo reparar: Aquí no se pueden completar documentos"),
            std::string::npos);
}

TEST_F(RevisaDocumentos, WhatSomebodyAliveIsPostingIsNotHalfPosted) {
  Dia();
  QuitaMovimiento(3);
  const auto other = anfitrion->Base().Connect();
  other->Live(4711);
  Sql("INSERT INTO tenencias (tipo, documento, usuario, estacion, vida) VALUES ('Salida', 1, 'BETO', 'E2', "
      "4711)");
  EXPECT_EQ(Dichas(Revisa(true)), "");
  other->Close();
  EXPECT_EQ(Fichas(Revisa()), (Textos{"a medias|Salida|1|-|-|-", "tenencia|Salida|1|-|-|-"}));
  const Observaciones mended = Revisa(true);
  for (const auto& one : mended) EXPECT_TRUE(one.reparado) << one.texto;
  EXPECT_EQ(Dichas(Revisa()), "");
}

TEST_F(RevisaDocumentos, APendingDocumentWithLinesThatHaveMovedIsInAdvance) {
  Dia();
  Sql("UPDATE entradas SET estado = 'PE' WHERE entrada = 1");
  Sql("DELETE FROM movsinv WHERE id = 2");
  Sql("DELETE FROM existenciaalmacen WHERE articulo = 'A-200'");
  Sql("DELETE FROM movsinv WHERE articulo = 'A-200'");
  IgualaColumnas();
  const Observaciones found = Revisa(true);
  ASSERT_EQ(Fichas(found), (Textos{"adelantado|Entrada|1|-|-|-", "a medias|Salida|2|-|-|-"}))
      << Dichas(found);
  EXPECT_EQ(found[0].texto,
            "Entrada 1: está pendiente y ya se movieron renglones; faltan 1 de 2. Ábrala y finalícela: se "
            "moverán sólo los que faltan");
  EXPECT_FALSE(found[0].reparable || found[0].reparado);
  EXPECT_EQ(Uno("SELECT estado FROM entradas WHERE entrada = 1"), "PE");
}

TEST_F(RevisaDocumentos, ALineThatMovedTwiceIsFoundAndLeftToAPerson) {
  Dia();
  Sql("DROP INDEX una_vez_entrada");
  Sql("DROP INDEX una_vez_salida");
  Duplica(1);
  const int departure = std::stoi(Uno("SELECT id FROM movsinv WHERE operacion = 'SA' AND id_salida = 2"));
  Duplica(departure);
  Sql("UPDATE existenciaalmacen SET existencia = 13 + 20 - 4 WHERE articulo = 'A-100' AND almacen = 1");
  IgualaColumnas();
  const Observaciones found = Revisa(true);
  ASSERT_EQ(Fichas(found), (Textos{"doble|Entrada|1|1|A-100|1", "doble|Salida|2|2|A-100|1"}))
      << Dichas(found);
  EXPECT_EQ(found[0].texto,
            "El renglón 1 (A-100) se movió 2 veces con la operación EN: del movimiento 1 al 8. Compruebe lo "
            "que hay y "
            "haga el documento contrario por lo que sobra");
  EXPECT_FALSE(found[0].reparable || found[0].reparado || found[1].reparado);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM movsinv"), "9");
}

TEST_F(RevisaDocumentos, AMovementThatIsNotAsItsLineIsFound) {
  Dia();
  Sql("UPDATE entpart SET articulo = 'A-200' WHERE id_entrada = 1");
  Sql("UPDATE salpart SET cantidad = 2.5 WHERE id_salida = 1");
  Sql("UPDATE salidas SET almt = 5 WHERE salida = 2");
  const Observaciones found = Revisa(true);
  ASSERT_EQ(Fichas(found), (Textos{"distinto|Entrada|1|1|A-100|1", "distinto|Salida|1|1|A-100|1",
                                   "distinto|Salida|2|2|A-100|2", "distinto|Salida|2|3|A-200|2"}))
      << Dichas(found);
  EXPECT_NE(found[0].texto.find("artículo A-100 y el renglón A-200"), std::string::npos) << found[0].texto;
  EXPECT_NE(found[1].texto.find("cantidad 3 y el renglón 2.5"), std::string::npos) << found[1].texto;
  EXPECT_NE(found[2].texto.find("almacén 2 y el documento 5"), std::string::npos) << found[2].texto;
  for (const auto& one : found) EXPECT_FALSE(one.reparable || one.reparado);
}

// In a file an empty warehouse is an empty text, on a server none: to a movement both are warehouse 0.
TEST_F(RevisaDocumentos, AMovementOfADocumentWhoseWarehouseIsEmptyIsNotOtherwise) {
  frmEntradasWizard& f = Nueva();
  Teclea(f, f.txtFields(campo::Concepto), "COM");
  f.txtFields(campo::Almacen).Text("");
  Renglon(f, "A-100", "3");
  f.Unload();
  Sql("INSERT INTO movsinv (operacion, ent_sal, articulo, almacen, cantidad, id_entrada, movimiento, saldo) "
      "VALUES ('EN', 'E', 'A-100', 0, 3, 1, 1, 3)");
  Sql("INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (0, 'A-100', 3)");
  const Observaciones found = Revisa();
  EXPECT_EQ(Fichas(found), Textos{"adelantado|Entrada|1|-|-|-"}) << Dichas(found);
}

TEST_F(RevisaDocumentos, APostedDocumentThatWasDeletedLeavesMovementsWithoutALine) {
  Dia();
  bitacora.respuestas = {true, true};
  movimientos->EliminaEntrada(1);
  movimientos->EliminaSalida(1);
  ASSERT_EQ(Uno("SELECT COUNT(*) FROM entpart WHERE entrada = 1"), "0");
  ASSERT_EQ(Uno("SELECT COUNT(*) FROM salpart WHERE salida = 1"), "0");
  const Observaciones found = Revisa(true);
  ASSERT_EQ(Fichas(found), (Textos{"huerfano|Entrada|1|1|A-100|1", "huerfano|Entrada|1|2|A-200|1",
                                   "huerfano|Salida|-|1|A-100|1"}))
      << Dichas(found);
  EXPECT_EQ(
      found[0].texto,
      "El movimiento 1 (EN, A-100, 20) es de un renglón que no existe: 1, entrada 1. La bitácora dice si el "
      "documento se eliminó");
  EXPECT_NE(found[2].texto.find("folio 1"), std::string::npos) << found[2].texto;
  for (const auto& one : found) EXPECT_FALSE(one.reparable || one.reparado);
}

TEST_F(RevisaDocumentos, AMovementThatNamesADocumentThatIsGoneAndNoLineIsFound) {
  Dia();
  Sql("INSERT INTO movsinv (operacion, ent_sal, movimiento, articulo, almacen, cantidad) VALUES ('EN', 'E', "
      "777, "
      "'A-100', 1, 0), ('SA', 'S', 778, 'A-100', 1, 0), ('EN', 'E', NULL, 'A-100', 1, 0), ('EN', 'E', 1, "
      "'A-100', 1, "
      "0)");
  Sql("INSERT INTO movsinv (operacion, ent_sal, movimiento, articulo, almacen, cantidad, id_entrada) VALUES "
      "('EN', "
      "'E', 779, 'A-100', 1, 0, 0)");
  EXPECT_EQ(Fichas(Revisa()), (Textos{"huerfano|Entrada|777|-|A-100|1", "huerfano|Entrada|779|-|A-100|1",
                                      "huerfano|Salida|-|-|A-100|1"}))
      << Dichas(Revisa());
}

TEST_F(RevisaDocumentos, ALineWithoutItsHeaderIsFound) {
  Dia();
  SinReglas("DELETE FROM entradas WHERE entrada = 2");
  EXPECT_EQ(Ficha(Una(true)), "suelto|Entrada|2|3|A-100|-");
  SinReglas("DELETE FROM salidas WHERE salida = 1");
  const Observaciones found = Revisa();
  ASSERT_EQ(Fichas(found), (Textos{"huerfano|Salida|1|1|A-100|1", "suelto|Entrada|2|3|A-100|-",
                                   "suelto|Salida|1|1|A-100|-"}))
      << Dichas(found);
  EXPECT_EQ(
      found[1].texto,
      "El renglón 3 (A-100) es de la entrada 2, que no existe. Ningún documento lo muestra ni lo mueve");
}

}  // namespace
}  // namespace tarvik::tests
