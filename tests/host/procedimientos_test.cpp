// The procedures of the colour and size matrix: cells become lines and marked ledger rows, or nothing.
#include "host/procedimientos.h"

#include "tests/host/apoyo.h"

namespace tarvik::host {
namespace {

class Procedimientos : public Banco {
 protected:
  void SetUp() override {
    Banco::SetUp();
    Sql("INSERT INTO entradas (entrada, tipo_doc, f_emision, almacen, usuario) "
        "VALUES (12, 'COM', '2024-03-01', 2, 'BETO')");
    Sql("INSERT INTO salidas (salida, tipo_doc, f_emision, almacen, usuario) "
        "VALUES (7, 'VTA', '2024-03-02', 1, 'BETO')");
  }
  void Celda(const char* document, const char* origin, const char* article, double quantity) {
    Sql("INSERT INTO mallacelda (documento, origen, articulo, cantidad, precio, observ, prdescrip, "
        "prcantidad, "
        "claveadd) VALUES (?, ?, ?, ?, 289, 'Camisa', 'Caja', 2, 'K1')",
        {document, origin, article, quantity});
  }
  void Ejecuta(const std::string& text) { Ambiente().Conexion().Execute(text); }
  double Cuenta(const std::string& table) { return data::ToNumber(Dato("SELECT COUNT(*) FROM " + table)); }
};

TEST_F(Procedimientos, TheMatrixIsToldWhatToFillOnceForADocument) {
  Ejecuta("exec TKMallaParam 'ANA','CAM','COM','12','EntradasInventario'");
  Ejecuta("exec TKMallaParam 'BETO','BOT','DEV','12','EntradasInventario'");
  Ejecuta("exec TKMallaParam 'ANA','CAM','VTA','12','SalidasInventario'");
  const auto rows = Sql("SELECT usuario, modelo, concepto, documento FROM mallaparam ORDER BY origen");
  ASSERT_EQ(rows.rows.size(), 2U);
  EXPECT_EQ(rows.rows[0], (std::vector<data::Value>{"BETO", "BOT", "DEV", "12"}));
  EXPECT_EQ(rows.rows[1], (std::vector<data::Value>{"ANA", "CAM", "VTA", "12"}));
}

TEST_F(Procedimientos, TheCellsOfAGoodsInBecomeLinesAsTypedOnesAre) {
  Ejecuta("exec TKMallaParam 'ANA','CAM','COM','12','EntradasInventario'");
  Celda("12", "EntradasInventario", "CAM-AZ-CH", 3);
  Celda("12", "EntradasInventario", "CAM-AZ-MD", 4);
  Ejecuta("exec TKCreaEntradaTYC '12'");
  data::Recordset lines(Sql("SELECT * FROM entpart ORDER BY id_entrada"));
  ASSERT_EQ(lines.RecordCount(), 2);
  EXPECT_EQ(lines.Fields("id_entrada"), data::Value(1));
  EXPECT_EQ(lines.Fields("entrada"), data::Value(12));
  EXPECT_EQ(lines.Fields("no_referen"), data::Value(12));
  EXPECT_EQ(lines.Fields("tipo_doc"), data::Value("COM"));
  EXPECT_EQ(lines.Fields("articulo"), data::Value("CAM-AZ-CH"));
  EXPECT_EQ(data::ToNumber(lines.Fields("cantidad")), 3);
  EXPECT_EQ(data::ToNumber(lines.Fields("precio")), 289);
  EXPECT_EQ(lines.Fields("observ"), data::Value("Camisa"));
  EXPECT_EQ(lines.Fields("partida"), data::Value(0));
  EXPECT_EQ(lines.Fields("usuario"), data::Value("ANA"));
  EXPECT_EQ(lines.Fields("usufecha"), data::Value(data::Date{2024, 3, 5}));
  EXPECT_EQ(lines.Fields("usuhora"), data::Value("14:15:00"));
  EXPECT_EQ(data::ToNumber(lines.Fields("prcantidad")), 2);
  EXPECT_EQ(lines.Fields("prdescrip"), data::Value("Caja"));
  EXPECT_EQ(lines.Fields("claveadd"), data::Value("K1"));
  lines.MoveNext();
  EXPECT_EQ(lines.Fields("articulo"), data::Value("CAM-AZ-MD"));
}

TEST_F(Procedimientos, EachLineLeavesALedgerRowWithTheMark) {
  Celda("12", "EntradasInventario", "CAM-AZ-CH", 3);
  Ejecuta("exec TKCreaEntradaTYC '12'");
  data::Recordset row(Sql("SELECT * FROM movsinv"));
  ASSERT_EQ(row.RecordCount(), 1);
  EXPECT_EQ(row.Fields("operacion"), data::Value("EN"));
  EXPECT_EQ(row.Fields("movimiento"), data::Value(12));
  EXPECT_EQ(row.Fields("claveadd"), data::Value("999"));
  EXPECT_EQ(row.Fields("articulo"), data::Value("CAM-AZ-CH"));
  EXPECT_EQ(data::ToNumber(row.Fields("cantidad")), 3);
  EXPECT_EQ(data::ToNumber(row.Fields("precio")), 289);
  EXPECT_EQ(row.Fields("observ"), data::Value("Camisa"));
  EXPECT_EQ(row.Fields("id_entrada"), data::Value(1));
  EXPECT_EQ(row.Fields("prdescrip"), data::Value("Caja"));
  EXPECT_EQ(data::ToNumber(row.Fields("prcantidad")), 2);
  EXPECT_EQ(row.Fields("f_movim"), data::Value(data::Date{2024, 3, 1}));
  EXPECT_EQ(row.Fields("cerrado"), data::Value(0));
  // Of no warehouse and no direction: nobody's stock counts it.
  EXPECT_TRUE(row.Fields("almacen").IsNull());
  EXPECT_TRUE(row.Fields("ent_sal").IsNull());
  EXPECT_EQ(row.Fields("usuario"), data::Value("BETO"));  // the header's, where the matrix was not asked
  EXPECT_EQ(Cuenta("existenciaalmacen"), 0);
}

TEST_F(Procedimientos, TheCellsOfAGoodsOutBecomeItsOwnLines) {
  Celda("7", "SalidasInventario", "BOT-NE-27", 1);
  Celda("7", "EntradasInventario", "OTRA", 1);
  Celda("8", "SalidasInventario", "OTRA", 1);
  Ejecuta("exec TKCreaSalidaTYC '7'");
  data::Recordset lines(Sql("SELECT * FROM salpart"));
  ASSERT_EQ(lines.RecordCount(), 1);
  EXPECT_EQ(lines.Fields("salida"), data::Value(7));
  EXPECT_EQ(lines.Fields("tipo_doc"), data::Value("VTA"));
  EXPECT_EQ(lines.Fields("articulo"), data::Value("BOT-NE-27"));
  data::Recordset row(Sql("SELECT * FROM movsinv"));
  ASSERT_EQ(row.RecordCount(), 1);
  EXPECT_EQ(row.Fields("operacion"), data::Value("SA"));
  EXPECT_EQ(row.Fields("id_salida"), lines.Fields("id_salida"));
  EXPECT_EQ(Cuenta("mallacelda"), 2);  // those of others stay
}

TEST_F(Procedimientos, TheMarksOfTheOtherDirectionsDocumentGoAndAllOtherRowsStay) {
  Sql("INSERT INTO entradas (entrada) VALUES (7)");
  Sql("INSERT INTO movsinv (operacion, movimiento, articulo, cantidad, claveadd, importe) "
      "VALUES ('EN', 7, 'POSTED', 3, '999', 867)");  // a presentation whose second key is 999
  Sql("INSERT INTO movsinv (operacion, movimiento, articulo, cantidad, claveadd) "
      "VALUES ('EN', 7, 'FOREIGN', 3, '999')");  // another program's
  Celda("7", "EntradasInventario", "CAM-AZ-CH", 3);
  Ejecuta("exec TKCreaEntradaTYC '7'");
  EXPECT_EQ(Cuenta("movsinv"), 3);
  Celda("7", "SalidasInventario", "BOT-NE-27", 1);
  Ejecuta("exec TKCreaSalidaTYC '7'");
  data::Recordset rows(Sql("SELECT articulo FROM movsinv ORDER BY articulo"));
  ASSERT_EQ(rows.RecordCount(), 3);
  for (const char* article : {"BOT-NE-27", "FOREIGN", "POSTED"}) {
    EXPECT_EQ(rows.Fields("articulo"), data::Value(article));
    rows.MoveNext();
  }
}

TEST_F(Procedimientos, ALineTakesANumberThatIsFree) {
  Sql("INSERT INTO salpart (id_salida, salida) VALUES (1, 7)");
  Celda("7", "SalidasInventario", "BOT-NE-27", 1);
  Ejecuta("exec TKCreaSalidaTYC '7'");
  EXPECT_EQ(Dato("SELECT id_salida FROM salpart WHERE articulo = 'BOT-NE-27'"), data::Value(2));
}

TEST_F(Procedimientos, TheCellsAreUsedUp) {
  Celda("12", "EntradasInventario", "CAM-AZ-CH", 3);
  Ejecuta("exec TKCreaEntradaTYC '12'");
  Ejecuta("exec TKCreaEntradaTYC '12'");
  EXPECT_EQ(Cuenta("entpart"), 1);
  EXPECT_EQ(Cuenta("mallacelda"), 0);
}

TEST_F(Procedimientos, WithoutItsDocumentNothingIsMade) {
  Celda("99", "EntradasInventario", "CAM-AZ-CH", 3);
  EXPECT_EQ(ErrorDe([&] { Ejecuta("exec TKCreaEntradaTYC '99'"); }), "No existe la entrada 99");
  EXPECT_EQ(ErrorDe([&] { Ejecuta("exec TKCreaSalidaTYC '99'"); }), "No existe la salida 99");
  EXPECT_EQ(Cuenta("mallacelda"), 1);
  EXPECT_EQ(Cuenta("entpart"), 0);
}

TEST_F(Procedimientos, AStepThatFailsLeavesNoLineNoRowAndTheCells) {
  Celda("12", "EntradasInventario", "CAM-AZ-CH", 3);
  Sql("ALTER TABLE movsinv RENAME TO otra");
  EXPECT_NE(ErrorDe([&] { Ejecuta("exec TKCreaEntradaTYC '12'"); }), "(ningún error)");
  EXPECT_EQ(Cuenta("entpart"), 0);
  EXPECT_EQ(Cuenta("mallacelda"), 1);
  Sql("ALTER TABLE otra RENAME TO movsinv");
  Ejecuta("exec TKCreaEntradaTYC '12'");
  EXPECT_EQ(Cuenta("entpart"), 1);
}

TEST_F(Procedimientos, ArgumentsAreCountedAndADocumentIsANumber) {
  EXPECT_EQ(ErrorDe([&] { Ejecuta("exec TKMallaParam 'ANA','CAM'"); }),
            "El procedimiento TKMallaParam espera 5 argumentos y recibió 2");
  EXPECT_EQ(ErrorDe([&] { Ejecuta("exec TKCreaEntradaTYC '1','2'"); }),
            "El procedimiento TKCreaEntradaTYC espera 1 argumentos y recibió 2");
  for (const char* document : {"", "doce", "1.5", "99999999999"}) {
    EXPECT_EQ(ErrorDe([&] { Ejecuta("exec TKCreaSalidaTYC '" + std::string(document) + "'"); }),
              "El número de documento \"" + std::string(document) + "\" no es válido");
  }
}

}  // namespace
}  // namespace tarvik::host
