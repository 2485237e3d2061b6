// The header of goods-out: the check that the finish begins with, the concept, the customer and the
// addresses, and what fails there. The keys of its fields: header_keys_test.cpp.
#include "tests/goods_out/header.h"

namespace tarvik::tests {
namespace {

// ---- the check of the header ----

TEST_F(EncabezadoDeSalidas, AHeaderInOrderIsAccepted) {
  frmSalidasWizard& f = Correcta();
  EXPECT_TRUE(Acepta(f));
  EXPECT_TRUE(f.Valida());
  EXPECT_EQ(bitacora.sentencias.front(), "SELECT * FROM tipominv WHERE tipo_movim = 'VTA' AND ent_sal = 'S'");
}

TEST_F(EncabezadoDeSalidas, WithoutAConceptItIsRefused) {
  frmSalidasWizard& f = Correcta();
  f.txtFields(campo::Concepto).Text("  ");
  Rechaza(f, 338, 0);
  EXPECT_EQ(CuentaSentencias("SELECT * FROM tipominv"), 0);
}

TEST_F(EncabezadoDeSalidas, AnUnknownConceptAndOneOfGoodsInAreRefused) {
  frmSalidasWizard& f = Correcta();
  for (const char* concepto : {"NADA", "COM"}) {
    f.txtFields(campo::Concepto).Text(concepto);
    Rechaza(f, 339, 0);
    EXPECT_EQ(f.RichTextBox3.Text(), "");
  }
}

TEST_F(EncabezadoDeSalidas, WithoutAWarehouseOrWithAnUnknownOneItIsRefused) {
  frmSalidasWizard& f = Correcta();
  f.txtFields(campo::Almacen).Text("");
  Rechaza(f, 240, 14);
  f.txtFields(campo::Almacen).Text("9");
  Rechaza(f, 241, 14);
}

TEST_F(EncabezadoDeSalidas, TheTargetWarehouseIsCheckedOnlyForATransfer) {
  frmSalidasWizard& f = Correcta();
  f.txtFields(campo::AlmacenDestino).Text("9");
  EXPECT_TRUE(Acepta(f));
  f.SSCheck1.Value(1);
  Rechaza(f, 241, 2);
  f.txtFields(campo::AlmacenDestino).Text("");
  Rechaza(f, 240, 2);
  f.txtFields(campo::AlmacenDestino).Text("1");  // the same as the source: nothing compares them
  Olvida();
  EXPECT_TRUE(Acepta(f));
}

TEST_F(EncabezadoDeSalidas, APurchaseNumberIsLookedUpWhenOneIsGiven) {
  frmSalidasWizard& f = Correcta();
  f.txtFields(campo::Compra).Text("55");
  EXPECT_TRUE(Acepta(f));
  EXPECT_EQ(CuentaSentencias("SELECT id FROM compra2 WHERE id = 55"), 1);
  f.txtFields(campo::Compra).Visible(true);
  f.txtFields(campo::Compra).Text("1,056");
  Rechaza(f, 829, 12);
  EXPECT_EQ(CuentaSentencias("SELECT id FROM compra2 WHERE id = 1056"), 1);
  f.txtFields(campo::Compra).Text("nada");
  Rechaza(f, 829, 12);
  EXPECT_EQ(CuentaSentencias("SELECT id FROM compra2 WHERE id = 0"), 1);
}

TEST_F(EncabezadoDeSalidas, ARefusalAtTheHiddenPurchaseLeavesTheFocusWhereItWas) {
  frmSalidasWizard& f = Correcta();
  f.txtFields(campo::Compra).Text("56");
  f.DTPicker1.SetFocus();
  EXPECT_FALSE(f.Valida());
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::NoExisteCompra});
  EXPECT_TRUE(f.DTPicker1.HasFocus());
}

TEST_F(EncabezadoDeSalidas, TheChecksRunInOrderAndTheFirstOneEndsThem) {
  frmSalidasWizard& f = NuevaSalida();
  f.txtFields(campo::Almacen).Text("");
  f.SSCheck1.Value(1);
  f.txtFields(campo::Compra).Text("9");
  Rechaza(f, 338, 0);
  f.txtFields(campo::Concepto).Text("VTA");
  Rechaza(f, 240, 14);
  f.txtFields(campo::Almacen).Text("1");
  Rechaza(f, 240, 2);
  f.txtFields(campo::AlmacenDestino).Text("2");
  f.txtFields(campo::Compra).Visible(true);
  Rechaza(f, 829, 12);
}

TEST_F(EncabezadoDeSalidas, CustomerEmployeeStationBranchAndDateAreNotCheckedHere) {
  frmSalidasWizard& f = Correcta();
  f.txtFields(campo::Cliente).Text("NADIE");
  f.Check1.Value(1);
  f.SSCheck2.Value(1);
  f.txtFields(campo::Sucursal).Text("NADA");
  f.DTPicker1.Value(std::nullopt);
  EXPECT_TRUE(Acepta(f));
}

TEST_F(EncabezadoDeSalidas, AReadDocumentThatIsRefusedStaysOpenAndMovesNoFocus) {
  DocumentoGuardado(1, "CO");
  Sql("DELETE FROM tipominv WHERE tipo_movim = 'VTA'");
  frmSalidasWizard& f = ConsultaSalida(7);
  const forms::Control* antes = f.ActiveControl();
  Tecla(f, "F5");
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::SalidaNoExisteConcepto});
  EXPECT_EQ(f.ActiveControl(), antes);
  EXPECT_TRUE(f.Open());
}

// ---- the concept ----

TEST_F(EncabezadoDeSalidas, TheConceptBringsItsDescriptionTrimmedAndTheWorkingDate) {
  Sql("INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES ('PRE', 'S', '  Préstamo  ')");
  frmSalidasWizard& f = NuevaSalida();
  f.DTPicker1.Value(data::Date{2023, 1, 1});
  f.DTPicker2.Value(data::Date{2023, 1, 1});
  Teclea(f, f.txtFields(campo::Concepto), "pre");
  EXPECT_EQ(f.txtFields(campo::Concepto).Text(), "PRE");
  EXPECT_EQ(f.RichTextBox3.Text(), "Préstamo");
  EXPECT_EQ(f.DTPicker1.Value(), (data::Date{2024, 3, 5}));
  EXPECT_EQ(f.DTPicker2.Value(), (data::Date{2023, 1, 1}));
  EXPECT_EQ(CuentaSentencias("SELECT * FROM tipominv WHERE tipo_movim = 'PRE' AND ent_sal = 'S'"), 1);
}

TEST_F(EncabezadoDeSalidas, AnEmptyOrUnknownConceptOnlyEmptiesTheDescription) {
  frmSalidasWizard& f = Correcta();
  f.DTPicker1.Value(data::Date{2023, 1, 1});
  for (const char* concepto : {"NO", ""}) {
    f.RichTextBox3.Text("algo");
    f.txtFields(campo::Concepto).Text(concepto);
    EXPECT_EQ(f.RichTextBox3.Text(), "") << concepto;
  }
  EXPECT_EQ(f.DTPicker1.Value(), (data::Date{2023, 1, 1}));
}

TEST_F(EncabezadoDeSalidas, AConceptOfGoodsInShowsNothingAndTheLinesGoOn) {
  frmSalidasWizard& f = NuevaSalida();
  Teclea(f, f.txtFields(campo::Concepto), "COM");
  EXPECT_EQ(f.RichTextBox3.Text(), "");
  f.Enter(f.txtFields(campo::Articulo));
  Linea(f, "A-100", "1");
  EXPECT_EQ(Uno("SELECT tipo_doc FROM salpart"), "COM");
  Finaliza(f);
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::SalidaNoExisteConcepto});
  EXPECT_TRUE(f.Open());
}

// ---- the customer and the addresses ----

TEST_F(EncabezadoDeSalidas, TheCustomerBringsItsNameAndEveryAddressOfAll) {
  frmSalidasWizard& f = Correcta();
  f.txtFields(campo::Cliente).Text("C1");
  EXPECT_EQ(bitacora.sentencias,
            (Textos{"SELECT cliente, nombre FROM clients WHERE cliente = 'C1'", "SELECT * FROM diremb"}));
  EXPECT_EQ(f.txtFields(campo::NombreDelCliente).Text(), "Ferretería del Sur");
  EXPECT_EQ(f.Combo1.List(), (Textos{"Calle Uno 1", "Calle Dos 2", "Calle Tres 3"}));
  EXPECT_EQ(f.txtFields(campo::DireccionDeEmbarque).Text(), "");
}

TEST_F(EncabezadoDeSalidas, EachCustomerTypedInAddsTheAddressesAgain) {
  Sql("INSERT INTO clients (cliente, nombre) VALUES ('C', 'Corto')");
  frmSalidasWizard& f = Correcta();
  Teclea(f, f.txtFields(campo::Cliente), "C1");  // "C" is a customer by itself
  EXPECT_EQ(f.Combo1.List().size(), 6u);
  f.txtFields(campo::Cliente).Text("C2");
  EXPECT_EQ(f.Combo1.List().size(), 9u);
  EXPECT_EQ(f.txtFields(campo::NombreDelCliente).Text(), "Obras y Caminos");
}

TEST_F(EncabezadoDeSalidas, AnUnknownCustomerLeavesNameAndAddressesAsTheyWere) {
  frmSalidasWizard& f = Correcta();
  f.txtFields(campo::Cliente).Text("C1");
  f.txtFields(campo::Cliente).Text("C9");
  f.txtFields(campo::Cliente).Text("");
  EXPECT_EQ(f.txtFields(campo::NombreDelCliente).Text(), "Ferretería del Sur");
  EXPECT_EQ(f.Combo1.List().size(), 3u);
  EXPECT_TRUE(bitacora.mensajes.empty());
}

TEST_F(EncabezadoDeSalidas, AFullCustomerFieldMovesOnOnlyForAKnownCustomer) {
  frmSalidasWizard& f = Correcta();
  f.txtFields(campo::Cliente).MaxLength(2);
  Teclea(f, f.txtFields(campo::Cliente), "X9");
  EXPECT_TRUE(f.txtFields(campo::Cliente).HasFocus());
  f.txtFields(campo::Cliente).Text("");
  Teclea(f, f.txtFields(campo::Cliente), "C1");
  EXPECT_TRUE(f.txtFields(campo::DireccionDeEmbarque).HasFocus());
}

TEST_F(EncabezadoDeSalidas, AnAddressIsPickedOrTyped) {
  frmSalidasWizard& f = Correcta();
  f.txtFields(campo::Cliente).Text("C1");
  f.Choose(f.Combo1, 1);
  EXPECT_EQ(f.txtFields(campo::DireccionDeEmbarque).Text(), "Calle Dos 2");
  f.Combo1.Text("Por teléfono");
  EXPECT_EQ(f.txtFields(campo::DireccionDeEmbarque).Text(), "Por teléfono");
  f.txtFields(campo::DireccionDeEmbarque).Text("Patio trasero");
  EXPECT_EQ(f.Combo1.Text(), "Por teléfono");
}

TEST_F(EncabezadoDeSalidas, WithoutAddressesFreeTextStillServes) {
  Sql("DELETE FROM diremb");
  frmSalidasWizard& f = Correcta();
  f.txtFields(campo::Cliente).Text("C1");
  EXPECT_TRUE(f.Combo1.List().empty());
  Teclea(f, f.txtFields(campo::DireccionDeEmbarque), "Patio");
  EXPECT_EQ(f.txtFields(campo::DireccionDeEmbarque).Text(), "Patio");
}

// ---- kept for the hosts' routines ----

TEST_F(EncabezadoDeSalidas, TheSellersNameIsFoundByTheDescriptionField) {
  Sql("INSERT INTO vends (vend, Nombre) VALUES ('V1', 'Vera')");
  frmSalidasWizard& f = NuevaSalida();
  f.txtFields(campo::Descripcion).Text("V1");
  Olvida();
  EXPECT_EQ(f.TraeVends(), "");  // no concept yet
  EXPECT_TRUE(bitacora.sentencias.empty());
  f.txtFields(campo::Concepto).Text("VTA");
  EXPECT_EQ(f.TraeVends(), "Vera");
  EXPECT_EQ(bitacora.sentencias.back(), "SELECT * FROM vends WHERE vend = 'V1'");
  EXPECT_EQ(f.rstVends->CursorType(), 1);
  EXPECT_EQ(f.rstVends->LockType(), 3);
  f.txtFields(campo::Descripcion).Text("V2");
  EXPECT_EQ(f.TraeVends(), "");
}

TEST_F(EncabezadoDeSalidas, TheRateOfACurrencyIsPutByARoutineOnly) {
  Sql("INSERT INTO monedas (moneda, Tc, Base) VALUES ('USD', 17.5, 0)");
  Sql("INSERT INTO monedas (moneda, Tc, Base) VALUES ('MXN', 1, 1)");
  frmSalidasWizard& f = Correcta();
  f.txtFields(campo::NombreDelCliente).Text("USD");
  EXPECT_EQ(f.txtFields(campo::Empleado).Text(), "");
  f.PonTC();
  EXPECT_EQ(f.txtFields(campo::Empleado).Text(), "17.5");
  EXPECT_TRUE(f.txtFields(campo::Empleado).Enabled());
  f.txtFields(campo::NombreDelCliente).Text("MXN");
  f.PonTC();
  EXPECT_EQ(f.txtFields(campo::Empleado).Text(), "1");
  EXPECT_FALSE(f.txtFields(campo::Empleado).Enabled());
  f.txtFields(campo::NombreDelCliente).Text("EUR");
  f.PonTC();
  EXPECT_EQ(f.txtFields(campo::Empleado).Text(), "");
}

TEST_F(EncabezadoDeSalidas, AClosedMovementBehindTheDateRefusesIt) {
  frmSalidasWizard& f = Correcta();
  bool valida = false;
  f.ValidaFecha(valida);
  EXPECT_TRUE(valida);
  EXPECT_EQ(bitacora.sentencias,
            (Textos{"SELECT * FROM movsinv WHERE f_movim > '2024-03-05' And cerrado <> 0"}));
  Sql("INSERT INTO movsinv (f_movim, cerrado) VALUES ('2024-03-06', 1)");
  f.ValidaFecha(valida);
  EXPECT_FALSE(valida);
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::PeriodoCerrado});
  EXPECT_EQ(bitacora.mensajes.back().estilo, 64);
  EXPECT_TRUE(f.DTPicker1.HasFocus());
  f.txtFields(campo::Concepto).SetFocus();
  f.DTPicker1.Enabled(false);
  f.ValidaFecha(valida);
  EXPECT_TRUE(f.txtFields(campo::Concepto).HasFocus());
  Sql("UPDATE movsinv SET cerrado = 0");
  f.ValidaFecha(valida);
  EXPECT_TRUE(valida);
}

// ---- failures of the header ----

TEST_F(EncabezadoDeSalidas, ACheckThatCannotBeMadeRefuses) {
  frmSalidasWizard& f = Correcta();
  f.SSCheck1.Value(1);
  f.txtFields(campo::AlmacenDestino).Text("2");
  f.txtFields(campo::Compra).Text("55");
  const std::pair<const char*, int> casos[] = {{"", 339}, {"ExisteClave", 241}, {"EstaVacio", 338}};
  for (const auto& [servicio, mensaje] : casos) {
    Olvida();
    if (*servicio) {
      bitacora.FallaServicio(servicio, 1, "falla provocada");
    } else {
      bitacora.Falla("FROM tipominv", 1, "falla provocada");
    }
    EXPECT_FALSE(f.Valida()) << mensaje;
    EXPECT_EQ(Numeros(), std::vector<int>{mensaje});
    ASSERT_FALSE(Reportes().empty());
    EXPECT_EQ(Reportes()[0], Reporte("ValidaTab1"));
  }
  Olvida();
  bitacora.Falla("FROM compra2", 1, "falla provocada");
  EXPECT_FALSE(f.Valida());
  EXPECT_EQ(Numeros(), std::vector<int>{mensaje::NoExisteCompra});
}

TEST_F(EncabezadoDeSalidas, TheLookupsOfTheHeaderTrapTheirErrors) {
  frmSalidasWizard& f = Correcta();
  bitacora.Falla("FROM tipominv", 1, "falla provocada");
  f.TraeConcepto();
  EXPECT_EQ(Reportes().front(), Reporte("TraeConcepto"));
  EXPECT_EQ(f.RichTextBox3.Text(), "");
  Olvida();
  bitacora.Falla("FROM vends", 1, "falla provocada");
  EXPECT_EQ(f.TraeVends(), "");
  EXPECT_EQ(Reportes().front(), Reporte("TraeVends"));
  Olvida();
  bitacora.Falla("FROM monedas", 1, "falla provocada");
  f.PonTC();
  EXPECT_EQ(Reportes().front(), Reporte("PonTC"));
  Olvida();
  bitacora.Falla("FROM movsinv", 1, "falla provocada");
  EXPECT_FALSE([&] {
    bool valida = true;
    f.ValidaFecha(valida);
    return valida;
  }());
  EXPECT_EQ(Reportes().front(), Reporte("ValidaFecha"));
}

TEST_F(EncabezadoDeSalidas, AddressesAndFieldEventsHaveNoTrap) {
  frmSalidasWizard& f = Correcta();
  bitacora.Falla("FROM diremb", 1, "falla provocada");
  Teclea(f, f.txtFields(campo::Cliente), "C1");
  EXPECT_EQ(no_atrapados, (Textos{"falla provocada"}));
  EXPECT_EQ(f.txtFields(campo::NombreDelCliente).Text(), "Ferretería del Sur");
  bitacora.Falla("FROM clients", 1, "falla provocada");
  EXPECT_THROW(f.txtFields(campo::Cliente).Text("C2"), data::Error);
  EXPECT_TRUE(Reportes().empty());
}

}  // namespace
}  // namespace tarvik::tests
