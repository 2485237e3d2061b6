// Nothing of a screen or a control is kept from those outside by having been forgotten: what its header shows
// is in the table, under its own name and with its own parameters, or stands here with its reason.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "members/member.h"
#include "tests/members/headers.h"

namespace tarvik::tests {
namespace {

// Why a public member is no row.
const char* const kView = "for the view of a screen";
const char* const kRuntime = "the runtime's own: a form, a container or the road of a key works by it";
const char* const kEvent = "an event: the screen's procedure behind it is a row";
const char* const kOperator = "what an operator does goes by the form's acts";
const char* const kLife = "a screen is opened by the public class and closed by its own rules";

struct Shown {
  const char* file;
  const char* name;        // in the header
  const char* table = "";  // in the table, where it has another name there
  std::map<std::string, const char*> not_rows = {};
};

const std::map<std::string, const char*> kOfControl{{"FullName", "its text in a message"},
                                                    {"Owner", kRuntime},
                                                    {"Place", "Left, Top, Width and Height"},
                                                    {"Container", kRuntime},
                                                    {"IsLabel", kRuntime},
                                                    {"Focusable", kRuntime},
                                                    {"Reachable", kRuntime},
                                                    {"CanTakeFocus", kRuntime},
                                                    {"HasFocus", "ActiveControl of the form tells"},
                                                    {"Editing", kRuntime},
                                                    {"Typing", kRuntime},
                                                    {"Click", kOperator},
                                                    {"OnClick", kEvent},
                                                    {"OnDblClick", kEvent},
                                                    {"OnGotFocus", kEvent},
                                                    {"OnLostFocus", kEvent},
                                                    {"OnKeyDown", kEvent},
                                                    {"OnKeyPress", kEvent},
                                                    {"OnKeyUp", kEvent},
                                                    {"OnChange", kEvent},
                                                    {"OnTimer", kEvent},
                                                    {"OnLeaveCell", kEvent},
                                                    {"OnEnterCell", kEvent},
                                                    {"OnRowColChange", kEvent}};

const std::vector<Shown> kShown{
    {"forms/control.h", "Control"},
    {"forms/control.h", "Label"},
    {"forms/control.h", "Button"},
    {"forms/control.h", "CheckBox", "", {{"Design", "the state at design"}}},
    {"forms/control.h",
     "TextBox",
     "",
     {{"SelectAll", "SelStart and SelLength"},
      {"ReplaceSelection", kOperator},
      {"Backspace", kOperator},
      {"DeleteForward", kOperator},
      {"RightAligned", kView},
      {"MultiLine", kView}}},
    {"forms/control.h", "RichTextBox"},
    {"forms/control.h", "DatePicker"},
    {"forms/control.h", "ComboBox"},
    {"forms/control.h", "PictureBox"},
    {"forms/control.h", "SearchBox", "", {{"Hold", "the state at design"}}},
    {"forms/control.h", "Timer", "", {{"Running", "Enabled, on an open form"}, {"Tick", kRuntime}}},
    {"forms/control.h", "WebBrowser"},
    {"forms/auto_resizer.h", "AutoResizer", "", {{"Design", "the state at design"}, {"Fit", kRuntime}}},
    {"forms/flex_grid.h",
     "FlexGrid",
     "",
     {{"MoveTo", "Row and Col"}, {"CellEvents", kRuntime}, {"Blocked", "bloqueada"}}},
    {"forms/form.h",
     "Form",
     "Forma",
     {{"GetPlatform", kRuntime},
      {"Open", "abierta"},
      {"Load", kLife},
      {"Show", kLife},
      {"Hide", kLife},
      {"Unload", kLife},
      {"Discard", kLife},
      {"Keep", kRuntime},
      {"Find", "a control is a member by its name"},
      {"TabOrder", "TabIndex of each control"},
      {"Press", "tecla"},
      {"Enter", "enfoca"},
      {"Click", "clic"},
      {"DoubleClick", "doble_clic"},
      {"ClickCell", "clic_celda"},
      {"DoubleClickCell", "doble_clic_celda"},
      {"Choose", "elige"},
      {"Type", "teclea"},
      {"Paste", "a hand's, at a window"},
      {"Close", "cierra"},
      {"Paint", "pinta"},
      {"Resize", "redimensiona"},
      {"Act", kRuntime},
      {"Listen", kView},
      {"StopListening", kView}}},
    {"wizard/document_wizard.h",
     "DocumentWizard",
     "",
     {{"Afectando", kView}, {"al_dejar_articulo", "the host's, for what a scanner reads"}}},
    {"goods_in/frm_entradas_wizard.h", "frmEntradasWizard"},
    {"goods_out/frm_salidas_wizard.h", "frmSalidasWizard"},
    {"matrix/frm_malla_modelos.h", "frmMallaModelos"},
    {"stations/frm_mov_estaciones.h", "frmMovEstaciones"},
    {"service/door/entradas_salidas.h",
     "EntradasSalidas",
     "",
     {{"ReportaError", "of the class's own failures"}, {"Modulo", "of the class's own failures"}}},
    {"service/contract/host_services.h", "Query", "", {{"Conexion", "the screen has set it"}}},
    {"data/recordset.h",
     "Recordset",
     "",
     {{"CursorType", "changes nothing"},
      {"LockType", "changes nothing"},
      {"Open", "Execute of the connection"},
      {"IsOpen", "one that is not open fails"},
      {"Eof", "EOF"},
      {"All", "MoveNext and Fields"}}},
};

const members::Class& Table(const Shown& shown) {
  const members::Class* table = members::ClassNamed(*shown.table ? shown.table : shown.name);
  if (!table) throw std::runtime_error(std::string(shown.name) + " has no table");
  return *table;
}

const char* WhyNot(const Shown& shown, const std::string& name) {
  if (const auto found = shown.not_rows.find(name); found != shown.not_rows.end()) return found->second;
  const bool control = std::string(shown.file).starts_with("forms/") && std::string(shown.name) != "Form";
  const auto found = kOfControl.find(name);
  return control && found != kOfControl.end() ? found->second : nullptr;
}

TEST(Headers, WhatAHeaderShowsIsARowOrHasAReason) {
  int seen = 0;
  for (const Shown& shown : kShown) {
    for (const auto& [name, overloads] : MembersInHeader(shown.file, shown.name)) {
      const members::Member* row = members::Find(Table(shown), name);
      const char* why = WhyNot(shown, name);
      EXPECT_TRUE(row || why) << shown.name << "::" << name << " is in no row of members/ and has no reason";
      EXPECT_FALSE(row && shown.not_rows.contains(name))
          << shown.name << "::" << name << " is a row after all";
      ++seen;
    }
    for (const auto& [name, why] : shown.not_rows) {
      EXPECT_TRUE(MembersInHeader(shown.file, shown.name).contains(name)) << shown.name << "::" << name;
    }
  }
  EXPECT_GT(seen, 330);
}

TEST(Headers, AProcedureNamesItsParametersAsItsHeaderDoes) {
  int seen = 0;
  for (const Shown& shown : kShown) {
    const PublicMembers header = MembersInHeader(shown.file, shown.name);
    for (const members::Member& row : Table(shown).members) {
      const auto found = header.find(std::string(row.name));
      if (row.kind != members::Kind::Procedure || found == header.end()) continue;
      std::vector<std::string> names;
      for (const auto& parameter : row.parameters) names.emplace_back(parameter.name);
      EXPECT_TRUE(std::find(found->second.begin(), found->second.end(), names) != found->second.end())
          << shown.name << "::" << row.name;
      ++seen;
    }
  }
  EXPECT_GT(seen, 110);
}

TEST(Headers, TheDoorTellsWhichArgumentsMayBeLeftOut) {
  const members::Class& door = *members::ClassNamed("EntradasSalidas");
  const auto modal = [&](const char* name) { return members::Find(door, name)->parameters.back().optional; };
  EXPECT_TRUE(modal("NuevaEntrada"));
  EXPECT_TRUE(modal("ModificaSalida"));
  EXPECT_FALSE(modal("movimientoEstacion"));
}

}  // namespace
}  // namespace tarvik::tests
