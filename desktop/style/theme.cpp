#include "desktop/style/theme.h"

#include <QApplication>
#include <QFont>
#include <QFontDatabase>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>
#include <QWidget>
#include <utility>

#include "desktop/style/template.h"

namespace tarvik::desktop {

namespace {

struct Ink {
  QRgb light;
  QRgb dark;
};

constexpr std::array<Ink, static_cast<std::size_t>(Role::Count_)> kInks{{
    {0xfff3f4f6, 0xff12161c},  // Window
    {0xffffffff, 0xff1b212a},  // Panel
    {0xffd5d9e0, 0xff343d4a},  // Border
    {0xff161b22, 0xffe8ecf1},  // Ink
    {0xff525c6b, 0xffa3adbb},  // SoftInk
    {0xffffffff, 0xff141a21},  // Field
    {0xffb6bdc8, 0xff4a5563},  // FieldBorder
    {0xffeef0f3, 0xff232a34},  // Blocked
    {0xff4d5765, 0xffa9b3c0},  // BlockedInk
    {0xff0b5fd0, 0xff6aa9ff},  // Accent
    {0xffffffff, 0xff0a1420},  // AccentInk
    {0xffe6f0fe, 0xff16304f},  // AccentTint
    {0xffb4232a, 0xffff8a8a},  // Refused
    {0xfffdecec, 0xff3d1d20},  // RefusedTint
    {0xffffffff, 0xff1b212a},  // Row
    {0xfff7f9fb, 0xff1f2630},  // RowOther
    {0xfff0f2f5, 0xff232b36},  // Header
    {0xffd4f5f8, 0xff0f4a52},  // Cell
    {0xff0b2b2f, 0xffe3fbfd},  // CellInk
    {0xffcfe2fb, 0xff27507f},  // Selection
    {0xff0c1c30, 0xfff2f7fd},  // SelectionInk
    {0xff1f2937, 0xff0d1117},  // Rail
    {0xfff1f4f8, 0xffe6ebf1},  // RailInk
    {0xffa8b3c2, 0xff93a0b0},  // RailSoft
    {0xff374357, 0xff243042},  // RailHere
    {0xff6aa9ff, 0xff6aa9ff},  // RailMark
    {0xff146c43, 0xff7ed6a5},  // Good
    {0xff7a5200, 0xfff2c766},  // Warning
    {0xfffff3cf, 0xff3d3212},  // WarningTint
    {0xffdff5e8, 0xff143626},  // GoodTint
    {0xffe7ebf0, 0xff2a3340},  // Quiet
    {0xff3c4654, 0xffc2cbd6},  // QuietInk
    {0xffaab3bf, 0xff566273},  // Scroll
}};

}  // namespace

const std::array<Pair, 21> kTextOnGround{{
    {Role::Ink, Role::Window},
    {Role::Ink, Role::Panel},
    {Role::SoftInk, Role::Window},
    {Role::SoftInk, Role::Panel},
    {Role::Ink, Role::Field},
    {Role::Ink, Role::AccentTint},
    {Role::Ink, Role::RefusedTint},
    {Role::Refused, Role::Panel},
    {Role::BlockedInk, Role::Blocked},
    {Role::AccentInk, Role::Accent},
    {Role::Ink, Role::RowOther},
    {Role::CellInk, Role::Cell},
    {Role::SelectionInk, Role::Selection},
    {Role::RailInk, Role::Rail},
    {Role::RailSoft, Role::Rail},
    {Role::Warning, Role::WarningTint},
    {Role::Good, Role::GoodTint},
    {Role::QuietInk, Role::Quiet},
    {Role::Good, Role::Window},
    {Role::Refused, Role::Window},
    {Role::Refused, Role::RefusedTint},
}};

QColor Theme::Color(Role role, bool dark) {
  const Ink& ink = kInks[static_cast<std::size_t>(role)];
  return QColor::fromRgb(dark ? ink.dark : ink.light);
}

bool Theme::Dark() const {
  if (mode_ != Mode::System) return mode_ == Mode::Dark;
  // The system's palette before ours replaced it.
  static const QPalette system = QGuiApplication::palette();
  return system.color(QPalette::Window).lightness() < system.color(QPalette::WindowText).lightness();
}

void Theme::ApplyTo(QApplication& application) const {
  (void)Dark();  // reads the system's palette while it is still the system's
  application.setStyle(QStyleFactory::create("Fusion"));
  QFont font("Inter");
  font.setPixelSize(measure::kText);
  application.setFont(font);
  QPalette palette;
  palette.setColor(QPalette::Window, Color(Role::Window));
  palette.setColor(QPalette::WindowText, Color(Role::Ink));
  palette.setColor(QPalette::Base, Color(Role::Field));
  palette.setColor(QPalette::AlternateBase, Color(Role::RowOther));
  palette.setColor(QPalette::Text, Color(Role::Ink));
  palette.setColor(QPalette::PlaceholderText, Color(Role::SoftInk));
  palette.setColor(QPalette::Button, Color(Role::Panel));
  palette.setColor(QPalette::ButtonText, Color(Role::Ink));
  palette.setColor(QPalette::ToolTipBase, Color(Role::Panel));
  palette.setColor(QPalette::ToolTipText, Color(Role::Ink));
  palette.setColor(QPalette::Highlight, Color(Role::Selection));
  palette.setColor(QPalette::HighlightedText, Color(Role::SelectionInk));
  palette.setColor(QPalette::Link, Color(Role::Accent));
  application.setPalette(palette);
  application.setStyleSheet(StyleSheet(Dark()));
}

QHash<QString, QString> Theme::Placeholders(bool dark) {
  static constexpr const char* kNames[] = {
      "Window",      "Panel",      "Border",   "Ink",       "SoftInk",    "Field",     "FieldBorder",
      "Blocked",     "BlockedInk", "Accent",   "AccentInk", "AccentTint", "Refused",   "RefusedTint",
      "Row",         "RowOther",   "Header",   "Cell",      "CellInk",    "Selection", "SelectionInk",
      "Rail",        "RailInk",    "RailSoft", "RailHere",  "RailMark",   "Good",      "Warning",
      "WarningTint", "GoodTint",   "Quiet",    "QuietInk",  "Scroll"};
  static_assert(std::size(kNames) == static_cast<std::size_t>(Role::Count_));
  QHash<QString, QString> values;
  for (std::size_t role = 0; role < std::size(kNames); ++role) {
    values.insert(QLatin1String(kNames[role]), Color(static_cast<Role>(role), dark).name());
  }
  constexpr int kBorders = 2;  // above and below
  for (const auto& [name, pixels] : {std::pair{"TextSize", measure::kText},
                                     {"CaptionSize", measure::kCaption},
                                     {"EmptySize", measure::kEmpty},
                                     {"TitleSize", measure::kTitle},
                                     {"TotalSize", measure::kTotal},
                                     {"Grid", measure::kGrid},
                                     {"Corner", measure::kCorner},
                                     {"FieldHeight", measure::kField},
                                     {"FieldInside", measure::kField - kBorders},
                                     {"FieldInsideThick", measure::kField - 2 * kBorders}}) {
    values.insert(QLatin1String(name), QStringLiteral("%1px").arg(pixels));
  }
  values.insert(QStringLiteral("Mode"), dark ? QStringLiteral("dark") : QStringLiteral("light"));
  return values;
}

QString Theme::StyleSheet(bool dark) {
  return FilledTemplate(QStringLiteral(":/style.qss"), Placeholders(dark));
}

void Restyle(QWidget& widget) {
  widget.style()->unpolish(&widget);
  widget.style()->polish(&widget);
  widget.update();
}

}  // namespace tarvik::desktop
