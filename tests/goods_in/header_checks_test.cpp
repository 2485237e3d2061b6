// The checks of the goods-in header before the finish.
#include "tests/goods_in/header.h"

namespace tarvik::tests {
namespace {

class Revision : public Encabezado {
 protected:
  Revision() {
    campo(campo::Concepto).Text("COM");
    f().Enter(f().fg2);
    Olvida();
  }
  void ExpectRefusal(int mensaje, int indice) {
    bool valido = true;
    f().ValidaTab1(valido);
    EXPECT_FALSE(valido);
    EXPECT_FALSE(f().Valida());
    ASSERT_EQ(Numeros(), (std::vector<int>{mensaje, mensaje}));
    EXPECT_EQ(bitacora.mensajes[0].clase, "mensaje");
    EXPECT_EQ(bitacora.mensajes[0].texto, MensajeDeLaBase(mensaje));
    EXPECT_EQ(bitacora.mensajes[0].estilo, 64);
    EXPECT_EQ(foco(), indice);
  }
};

TEST_F(Revision, AGoodHeaderPasses) {
  bool valido = false;
  f().ValidaTab1(valido);
  EXPECT_TRUE(valido);
  EXPECT_TRUE(f().Valida());
  EXPECT_TRUE(bitacora.mensajes.empty());
  EXPECT_EQ(CuentaSentencias("SELECT tipo_movim FROM tipominv WHERE tipo_movim = 'COM' AND ent_sal = 'E'"),
            2);
}

TEST_F(Revision, NoConcept) {
  campo(campo::Concepto).Text("  ");
  campo(campo::Almacen).Text("");
  ExpectRefusal(341, 0);
}

TEST_F(Revision, AnUnknownConcept) {
  campo(campo::Concepto).Text("ZZZ");
  campo(campo::Almacen).Text("");
  ExpectRefusal(342, 0);
}

TEST_F(Revision, AConceptForGoodsOut) {
  campo(campo::Concepto).Text("VTA");
  ExpectRefusal(342, 0);
}

TEST_F(Revision, NoWarehouse) {
  campo(campo::Almacen).Text(" ");
  ExpectRefusal(240, 14);
}

TEST_F(Revision, AnUnknownWarehouse) {
  campo(campo::Almacen).Text("99");
  ExpectRefusal(241, 14);
}

TEST_F(Revision, AValidationWhoseQueryFailsRefuses) {
  bitacora.Falla("SELECT tipo_movim", 1, "no se lee");
  EXPECT_FALSE(f().Valida());
  ASSERT_EQ(Reportes().size(), 2u);
  EXPECT_EQ(Reportes()[0], Reporte("ValidaTab1", "no se lee"));
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::EntradaNoExisteConcepto});
  Olvida();
  bitacora.FallaServicio("ExisteClave", 1, "sin catálogo");
  EXPECT_FALSE(f().Valida());
  EXPECT_EQ(Reportes(), Textos{Reporte("ValidaTab1", "sin catálogo")});
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::NoExisteAlmacen});
}

TEST_F(Revision, ADateWithALaterClosedMovementIsRefused) {
  f().DTPicker1.Value(data::Date{2024, 2, 10});
  bool valida = false;
  f().ValidaFecha(valida);
  EXPECT_TRUE(valida);
  EXPECT_EQ(bitacora.sentencias.back(),
            "SELECT * FROM movsinv WHERE f_movim > '2024-02-10' And cerrado <> 0 ");
  Sql("INSERT INTO movsinv (operacion, articulo, f_movim, cerrado) VALUES (?, ?, ?, ?)",
      {"EN", "A-100", "2024-02-10", 1});
  Sql("INSERT INTO movsinv (operacion, articulo, f_movim, cerrado) VALUES (?, ?, ?, ?)",
      {"EN", "A-100", "2024-02-11", 0});
  f().ValidaFecha(valida);
  EXPECT_TRUE(valida);
  Sql("INSERT INTO movsinv (operacion, articulo, f_movim, cerrado) VALUES (?, ?, ?, ?)",
      {"EN", "A-100", "2024-02-11", 1});
  f().ValidaFecha(valida);
  EXPECT_FALSE(valida);
  ASSERT_EQ(Numeros(), std::vector<int>{mensaje::PeriodoCerrado});
  EXPECT_EQ(bitacora.mensajes[0].estilo, 64);
  EXPECT_EQ(f().ActiveControl(), &f().DTPicker1);
}

TEST_F(Revision, ADisabledDateIsRefusedWithoutAMove) {
  Sql("INSERT INTO movsinv (operacion, articulo, f_movim, cerrado) VALUES (?, ?, ?, ?)",
      {"EN", "A-100", "2030-01-01", 1});
  f().DTPicker1.Enabled(false);
  bool valida = true;
  f().ValidaFecha(valida);
  EXPECT_FALSE(valida);
  EXPECT_EQ(f().ActiveControl(), &f().fg2);
}

TEST_F(Revision, ADateWhoseQueryFailsIsRefused) {
  bitacora.Falla("FROM movsinv", 1, "no se lee");
  bool valida = true;
  f().ValidaFecha(valida);
  EXPECT_FALSE(valida);
  EXPECT_EQ(Reportes()[0], Reporte("ValidaFecha", "no se lee"));
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::PeriodoCerrado});
}

TEST_F(Revision, TheRateOfACurrencyHasNoFieldsHereAndIsReported) {
  EXPECT_NO_THROW(f().PonTC());
  ASSERT_FALSE(Reportes().empty());
  for (const auto& reporte : Reportes()) {
    EXPECT_EQ(reporte.find("Module: frmEntradasWi\r\nFunction: PonTC\r\n"), 0u) << reporte;
  }
  EXPECT_EQ(CuentaSentencias("SELECT * FROM monedas"), 0);
}

}  // namespace
}  // namespace tarvik::tests
