// The table of members on real screens: each row reads, writes and runs what it says, and each control of a
// screen as designed is in it.
#include "members/member.h"

#include <gtest/gtest.h>

#include <set>

#include "data/error.h"
#include "forms/flex_grid.h"
#include "goods_out/frm_salidas_wizard.h"
#include "matrix/frm_malla_modelos.h"
#include "stations/frm_mov_estaciones.h"
#include "tests/support/escenario.h"

namespace tarvik::tests {
namespace {

using members::All;
using members::Class;
using members::ClassOf;
using members::Find;
using members::Kind;
using members::Member;
using members::Variant;

class Miembros : public Escenario {
 protected:
  Miembros() { Catalogo(); }

  // One of each screen, open.
  std::vector<std::shared_ptr<forms::Form>> Pantallas() {
    Nueva();
    movimientos->NuevaSalida();
    movimientos->movimientoEstacion(0, false);
    // What a routine would do: the screen itself has no columns.
    auto& transfer = dynamic_cast<frmMovEstaciones&>(*plataforma.Screens().back());
    transfer.grid.Cols(2);
    transfer.grid.Rows(2);
    auto matrix = std::make_shared<frmMallaModelos>(*anfitrion);
    matrix->Show(false);
    return plataforma.Screens();
  }
};

std::string Where(const forms::Form& form, const Member& member) {
  return form.Name() + "." + std::string(member.name);
}

void ExpectReadsBack(const members::Object& object, const Member& member, const std::string& where) {
  if (!member.get) return;
  Variant held;
  ASSERT_NO_THROW(held = member.get(object)) << where;
  EXPECT_EQ(member.set != nullptr, member.kind == Kind::Property) << where;
  EXPECT_TRUE(member.call == nullptr) << where;
  if (member.set) {
    EXPECT_NO_THROW(member.set(object, held)) << where;
  }
  EXPECT_TRUE(!held.IsNothing() || member.type.or_nothing || member.type.base == members::Base::Value)
      << where;
}

TEST_F(Miembros, EachPropertyOfAnOpenScreenIsReadAndSetBack) {
  int seen = 0;
  for (const auto& form : Pantallas()) {
    for (const Member* member : All(ClassOf(*form))) {
      ExpectReadsBack(*form, *member, Where(*form, *member));
      ++seen;
    }
    for (forms::Control* control : form->Controls()) {
      for (const Member* member : All(ClassOf(*control))) {
        ExpectReadsBack(*control, *member, control->FullName() + "." + std::string(member->name));
        ++seen;
      }
    }
  }
  EXPECT_GT(seen, 1500);
  EXPECT_EQ(no_atrapados, std::vector<std::string>());
}

// A text goes in, comes out, and goes out again: the row's two ends are the same member.
TEST_F(Miembros, WhatIsSetIsWhatIsThenRead) {
  auto& f = Nueva();
  const Class& wizard = ClassOf(f);
  const auto set = [&](const char* name, const Variant& value) {
    Find(wizard, name)->set(f, value);
    return Find(wizard, name)->get(f);
  };
  EXPECT_EQ(*set("Modo", std::string("CONSULTA")).As<std::string>(), "CONSULTA");
  EXPECT_EQ(f.Modo, "CONSULTA");
  EXPECT_EQ(*set("Entrada", std::int64_t{7}).As<std::int64_t>(), 7);
  EXPECT_EQ(f.Entrada, 7);
  EXPECT_EQ(*set("Costo", 2.5).As<double>(), 2.5);
  EXPECT_EQ(*set("CancelaProceso", true).As<bool>(), true);
  EXPECT_TRUE(f.CancelaProceso);
  EXPECT_TRUE(set("rstArticulo", {}).IsNothing());
  EXPECT_EQ(*set("Ambiente", {}).As<std::monostate>(), std::monostate());
  EXPECT_FALSE(f.Ambiente);
}

TEST_F(Miembros, EachControlOfAScreenAsDesignedIsARowOfItsClass) {
  int seen = 0;
  for (const auto& form : Pantallas()) {
    std::set<std::string> rows;
    for (const Member* member : All(ClassOf(*form))) {
      if (member->kind == Kind::Control) {
        rows.emplace(member->name);
        const forms::Control* held = *member->get(*form).As<forms::Control*>();
        EXPECT_EQ(held, form->Find(member->name)) << Where(*form, *member);
        EXPECT_EQ(ClassOf(*held).name, member->type.name) << Where(*form, *member);
      } else if (member->kind == Kind::ControlArray) {
        for (const auto& place : member->places) {
          rows.insert(std::string(member->name) + "(" + std::to_string(place.index) + ")");
          EXPECT_GT(place.line.size(), 4u) << Where(*form, *member) << place.index;
        }
        EXPECT_EQ(member->get(*form).As<members::Array>()->name, member->name);
      }
    }
    std::set<std::string> controls;
    for (const forms::Control* control : form->Controls()) controls.insert(control->FullName());
    EXPECT_EQ(rows, controls) << form->Name();
    seen += static_cast<int>(controls.size());
  }
  EXPECT_GT(seen, 140);
}

TEST(MemberTable, EachRowSaysInSpanishWhatItIsFor) {
  int seen = 0;
  for (const Class* table : members::Classes()) {
    EXPECT_GT(table->line.size(), 5u) << table->name;
    std::set<std::string_view> names;
    for (const Member& member : table->members) {
      const std::string where = std::string(table->name) + "." + std::string(member.name);
      EXPECT_TRUE(names.insert(member.name).second) << where << " stands twice";
      EXPECT_GT(member.line.size(), 10u) << where;
      EXPECT_TRUE(member.line.ends_with('.')) << where;
      EXPECT_NE(member.line.substr(0, member.line.size() - 1), member.name) << where;
      EXPECT_NE(member.line.find(' '), std::string_view::npos) << where;
      EXPECT_EQ(member.call != nullptr, member.kind == Kind::Procedure) << where;
      for (const auto& parameter : member.parameters) EXPECT_FALSE(parameter.name.empty()) << where;
      ++seen;
    }
  }
  EXPECT_GT(seen, 300);
}

TEST_F(Miembros, AKeyThatAProcedureSwallowsComesBackAsNothing) {
  auto& f = Nueva();
  std::vector<Variant> arguments{std::int64_t{0}, std::int64_t{'a'}};
  Find(ClassOf(f), "txtFields_KeyPress")->call(f, arguments);
  EXPECT_EQ(*arguments[1].As<std::int64_t>(), 'A');
  arguments = {std::int64_t{6}, std::int64_t{'x'}};
  Find(ClassOf(f), "txtFields_KeyPress")->call(f, arguments);
  EXPECT_EQ(*arguments[1].As<std::int64_t>(), 0);
}

TEST_F(Miembros, AnAnswerNeedsNoArgumentAndATextGoesInAndOut) {
  auto& f = Nueva();
  const Member& check = *Find(ClassOf(f), "ValidaTab1");
  EXPECT_EQ(check.parameters[0].way, members::Way::Out);
  std::vector<Variant> arguments(1);
  check.call(f, arguments);
  EXPECT_EQ(*arguments[0].As<bool>(), false);  // no concept yet
  movimientos->NuevaSalida();
  forms::Form& s = *plataforma.Screens().back();
  arguments = {std::string("encabezado"), std::string("<p>una</p>")};
  Find(ClassOf(s), "CreaHTML")->call(s, arguments);
  EXPECT_EQ(*arguments[0].As<std::string>(), "<p>una</p>");
  EXPECT_EQ(*arguments[1].As<std::string>(), "<p>una</p>");
}

TEST_F(Miembros, AProcedureWithAResultGivesIt) {
  auto& f = ConRenglones({{"A-100", "3"}});
  EXPECT_EQ(*Find(ClassOf(f), "CuantasPartidas")->call(f, {}).As<std::int64_t>(), 1);
  std::vector<Variant> cell{std::int64_t{1}, std::int64_t{0}};
  EXPECT_EQ(*Find(ClassOf(f.fg2), "TextMatrix")->call(f.fg2, cell).As<std::string>(), "A-100");
}

TEST_F(Miembros, AnOperatorsActRunsByItsName) {
  auto& f = Nueva();
  std::vector<Variant> typed{static_cast<forms::Control*>(&f.txtFields(0)), std::string("com")};
  Find(ClassOf(f), "teclea")->call(f, typed);
  EXPECT_EQ(f.txtFields(0).Text(), "COM");
  std::vector<Variant> key{std::string("Enter"), {}};
  Find(ClassOf(f), "tecla")->call(f, key);
  EXPECT_EQ(f.ActiveControl(), &f.txtFields(14));
}

TEST_F(Miembros, WhatDoesNotFitIsRefusedAndNothingIsDone) {
  auto& f = Nueva();
  const auto call = [&](const char* name, std::vector<Variant> arguments) {
    Find(ClassOf(f), name)->call(f, arguments);
  };
  auto* const box = static_cast<forms::Control*>(&f.txtEdit);
  EXPECT_THROW(call("EditKeyCode", {box, box, std::int64_t{13}, std::int64_t{0}}), data::Error);
  EXPECT_THROW(call("EditKeyCode", {box}), data::Error);
  EXPECT_THROW(call("txtFields_Change", {std::string("4")}), data::Error);
  EXPECT_THROW(call("txtFields_Change", {std::int64_t{1} << 40}), data::Error);
  EXPECT_THROW(call("teclea", {Variant(), std::string("x")}), data::Error);
  EXPECT_THROW(Find(ClassOf(f), "Modo")->set(f, std::int64_t{1}), data::Error);
  EXPECT_EQ(f.Modo, "ALTA");
}

TEST_F(Miembros, TheDoorAndARecordAreWalkedLikeAScreen) {
  const Class& door = *members::ClassNamed("EntradasSalidas");
  std::vector<Variant> not_modal(1);
  Find(door, "NuevaEntrada")->call(*movimientos, not_modal);
  EXPECT_EQ(plataforma.Screens().size(), 1u);
  data::Recordset rows(Sql("SELECT articulo FROM prods ORDER BY articulo"));
  const Class& record = *members::ClassNamed("Recordset");
  EXPECT_EQ(*Find(record, "RecordCount")->get(rows).As<std::int64_t>(), 2);
  std::vector<Variant> column{std::string("ARTICULO")};
  Variant found = Find(record, "Fields")->call(rows, column);
  members::Field field = *found.As<members::Field>();
  EXPECT_EQ(*Find(*members::ClassNamed("Field"), "Value")->get(field).As<std::string>(), "A-100");
}

TEST(Closest, ForgivesCaseAndASlipOrTwo) {
  const std::vector<std::string> names{"txtFields", "txtEdit", "Modo", "Iva", "fg2"};
  EXPECT_EQ(members::Closest("txtField", names), "txtFields");
  EXPECT_EQ(members::Closest("TXTFIELDS", names), "txtFields");
  EXPECT_EQ(members::Closest("txtFeilds", names), "txtFields");
  EXPECT_EQ(members::Closest("modo", names), "Modo");
  EXPECT_EQ(members::Closest("fg", names), "fg2");
  EXPECT_EQ(members::Closest("xyzzy", names), "");
  EXPECT_EQ(members::Closest("ab", names), "");
}

}  // namespace
}  // namespace tarvik::tests
