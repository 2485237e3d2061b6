// What the modes mean, row by row of the table: both wizards opened in each of them, written in and closed.
#include "tests/goods_out/support.h"

namespace tarvik::tests {
namespace {

// One of the two wizards, with a stored document 7 of warehouse 2 and one line of A-100.
struct Asistente {
  const char* nombre;
  const char* tabla;
  const char* clave;
  const char* concepto;
  std::set<std::string> siempre;  // enabled where nothing may be changed
  void (*abre)(EntradasSalidas&, std::string_view modo);
};

template <void (EntradasSalidas::*nueva)(bool), void (EntradasSalidas::*modifica)(std::int32_t, bool),
          void (EntradasSalidas::*consulta)(std::int32_t)>
void Abre(EntradasSalidas& puerta, std::string_view modo) {
  if (modo == modo::kAlta) return (puerta.*nueva)(false);
  if (modo == modo::kModificacion) return (puerta.*modifica)(7, false);
  (puerta.*consulta)(7);
}

const Asistente kAsistentes[] = {
    {"Entradas",
     "entradas",
     "entrada",
     "COM",
     {"fg2", "Command2", "Command5"},
     &Abre<&EntradasSalidas::NuevaEntrada, &EntradasSalidas::ModificaEntrada,
           &EntradasSalidas::ConsultaEntrada>},
    {"Salidas",
     "salidas",
     "salida",
     "VTA",
     {"fg2", "Command1", "Command2"},
     &Abre<&EntradasSalidas::NuevaSalida, &EntradasSalidas::ModificaSalida,
           &EntradasSalidas::ConsultaSalida>},
};

void PrintTo(const Asistente& asistente, std::ostream* out) { *out << asistente.nombre; }

class Modos : public EscenarioDeSalidas,
              public ::testing::WithParamInterface<std::tuple<Asistente, ModoDeDocumento>> {
 public:
  Modos() {
    DocumentoGuardado(1);
    Sql("INSERT INTO entradas (entrada, tipo_doc, f_emision, almacen, estado, ocupado, usuario) VALUES "
        "(7, 'COM', '2024-02-28', 2, 'PE', 0, 'LUIS')");
    Sql("INSERT INTO entpart (id_entrada, entrada, tipo_doc, articulo, cantidad, precio) VALUES "
        "(71, 7, 'COM', 'A-100', 1, 10)");
  }
  static const Asistente& Asiste() { return std::get<0>(GetParam()); }
  static const ModoDeDocumento& Modo() { return std::get<1>(GetParam()); }
  DocumentWizard& Abierta() {
    Asiste().abre(*movimientos, Modo().modo);
    viva_ = plataforma.Screens().back();
    return dynamic_cast<DocumentWizard&>(*viva_);
  }
  void PonOcupado(int valor) {
    Sql(std::string("UPDATE ") + Asiste().tabla + " SET ocupado = ? WHERE " + Asiste().clave + " = 7",
        {valor});
  }
  std::string Ocupado(int numero = 7) {
    return Uno(std::string("SELECT ocupado FROM ") + Asiste().tabla + " WHERE " + Asiste().clave + " = ?",
               {numero});
  }
  static void Escribe(DocumentWizard& f) {
    if (f.txtFields(campo::Concepto).Text().empty())
      Teclea(f, f.txtFields(campo::Concepto), Asiste().concepto);
    Teclea(f, f.txtFields(campo::Articulo), "A-200");
    Tecla(f, "Enter");
    Teclea(f, f.txtFields(campo::Cantidad), "2");
    Tecla(f, "Enter");
    Tecla(f, "Enter");
  }

 private:
  std::shared_ptr<forms::Form> viva_;
};

TEST_P(Modos, TheScreenOpensInItsMode) { EXPECT_EQ(Abierta().Modo, Modo().modo); }

TEST_P(Modos, HeaderAndLinesComeFromTheBaseOrByDefault) {
  DocumentWizard& f = Abierta();
  EXPECT_EQ(f.txtFields(campo::Concepto).Text(), Modo().del_registro ? Asiste().concepto : "");
  EXPECT_EQ(f.txtFields(campo::Almacen).Text(), Modo().del_registro ? "2" : "1");
  EXPECT_EQ(f.DTPicker1.Value()->Iso(), Modo().del_registro ? "2024-02-28" : "2024-03-05");
  EXPECT_EQ(f.CuantasPartidas(), Modo().del_registro ? 1 : 0);
}

TEST_P(Modos, ControlsAreAsDesignedOrOffButForThoseThatStay) {
  DocumentWizard& f = Abierta();
  std::map<std::string, bool> de_diseno;
  const auto anota = [&](const forms::Form& sin_abrir) {
    for (const auto* control : sin_abrir.Controls()) de_diseno[control->FullName()] = control->Enabled();
  };
  if (Asiste().nombre == std::string("Entradas")) {
    anota(*std::make_shared<frmEntradasWizard>(*anfitrion));
  } else {
    anota(*std::make_shared<frmSalidasWizard>(*anfitrion));
  }
  std::set<std::string> siempre = Asiste().siempre;
  // What stays enabled in a panel can be reached: the panels stay enabled with it.
  for (const auto& nombre : Asiste().siempre) {
    for (auto* around = f.Find(nombre)->Container(); around; around = around->Container()) {
      siempre.insert(around->FullName());
    }
  }
  ASSERT_EQ(de_diseno.size(), f.Controls().size());
  for (forms::Control* control : f.Controls()) {
    const std::string nombre = control->FullName();
    const bool espera =
        siempre.contains(nombre) || (Modo().se_captura ? de_diseno.at(nombre) : control->IsLabel());
    EXPECT_EQ(control->Enabled(), espera) << nombre;
  }
}

TEST_P(Modos, OpeningTakesTheDocumentOrLeavesIt) {
  Abierta();
  EXPECT_EQ(Ocupado(), Modo().toma_al_cargar ? "1" : "0");
}

TEST_P(Modos, ClosingLetsTheDocumentGoOrLeavesItAsItStands) {
  DocumentWizard& f = Abierta();
  PonOcupado(1);
  f.Unload();
  EXPECT_EQ(Ocupado(), Modo().suelta_al_cerrar ? "0" : "1");
}

TEST_P(Modos, TheFirstLineLeadsToTheNextMode) {
  DocumentWizard& f = Abierta();
  Escribe(f);
  EXPECT_EQ(f.Modo, Modo().luego);
  EXPECT_EQ(f.CuantasPartidas(), (Modo().del_registro ? 1 : 0) + (Modo().se_captura ? 1 : 0));
  if (Modo().luego == Modo().modo) return;
  EXPECT_EQ(Ocupado(1), "1");  // the new document is held from its first line on
  f.Unload();
  EXPECT_EQ(Ocupado(1), "0");
}

std::string Nombre(const ::testing::TestParamInfo<std::tuple<Asistente, ModoDeDocumento>>& caso) {
  return std::get<0>(caso.param).nombre + std::string(std::get<1>(caso.param).modo);
}
INSTANTIATE_TEST_SUITE_P(Todos, Modos,
                         ::testing::Combine(::testing::ValuesIn(kAsistentes), ::testing::ValuesIn(kModos)),
                         Nombre);

TEST(Estados, ADocumentIsPendingUntilItIsPosted) {
  EXPECT_STREQ(estado::kPendiente, "PE");
  EXPECT_STREQ(estado::kAfectado, "CO");
}

}  // namespace
}  // namespace tarvik::tests
