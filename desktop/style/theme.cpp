#include "desktop/style/theme.h"

#include <QApplication>
#include <QFont>
#include <QFontDatabase>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>
#include <QWidget>
#include <algorithm>
#include <cstring>

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
  application.setStyleSheet(StyleSheet());
}

QString Theme::StyleSheet() const {
  QString style = QStringLiteral(R"(
QWidget { font-size: 13px; }
QMainWindow, QDialog { background: @Window; }
QToolTip { background: @Panel; color: @Ink; border: 1px solid @Border; padding: 4px; }

[role="panel"], [role="band"] { background: @Panel; border: 1px solid @Border; border-radius: 8px; }
[role="caption"] { color: @SoftInk; font-size: 11px; }
[role="title"] { color: @Ink; font-size: 19px; font-weight: 600; }
[role="total"] { color: @Ink; font-size: 28px; font-weight: 700; }
[role="total"][spread="all"] { color: @Good; }
[role="total"][spread="part"] { color: @Refused; }
[role="soft"] { color: @SoftInk; }
[role="reason"] { color: @Refused; font-size: 11px; }
[role="empty"] { color: @SoftInk; font-size: 15px; }
[role="keycap"] { background: @Panel; color: @Ink; border: 1px solid @FieldBorder; border-radius: 4px;
  padding: 1px 6px; font-size: 11px; font-weight: 600; }
[role="keyline"] { background: @Panel; border-top: 1px solid @Border; }
[role="chip"] { border-radius: 9px; padding: 2px 10px; font-size: 11px; font-weight: 600;
  background: @Quiet; color: @QuietInk; }
[role="chip"][state="pendiente"] { background: @WarningTint; color: @Warning; }
[role="chip"][state="afectado"] { background: @GoodTint; color: @Good; }
[role="chip"][state="medias"] { background: @RefusedTint; color: @Refused; }
[role="notice"] { background: @Panel; border: 1px solid @Border; border-left: 4px solid @Warning;
  border-radius: 6px; }

QLineEdit, QTextEdit, QPlainTextEdit, QDateEdit, QComboBox, QSpinBox { background: @Field; color: @Ink;
  border: 1px solid @FieldBorder; border-radius: 5px; padding: 0 8px; min-height: 30px;
  selection-background-color: @Selection; selection-color: @SelectionInk; }
/* With its border a field is as high as a row; a thicker one takes its room from inside, so that nothing
   on the screen moves when the hand does. */
QLineEdit:focus, QTextEdit:focus, QPlainTextEdit:focus, QDateEdit:focus, QComboBox:focus, QSpinBox:focus,
QLineEdit[hand="true"], QTextEdit[hand="true"], QDateEdit[hand="true"], QComboBox[hand="true"] { background: @AccentTint; border: 2px solid @Accent; padding: 0 7px; min-height: 28px; }
QLineEdit[refused="true"], QLineEdit[refused="true"]:focus, QTextEdit[refused="true"] { background: @RefusedTint;
  border: 2px solid @Refused; padding: 0 7px; min-height: 28px; }
QLineEdit:disabled, QTextEdit:disabled, QDateEdit:disabled, QComboBox:disabled, [blocked="true"] {
  background: @Blocked; color: @BlockedInk; border: 1px solid @Blocked; min-height: 30px; }
QLineEdit[role="cellEditor"] { background: @AccentTint; color: @Ink; border: 2px solid @Accent; border-radius: 0;
  padding: 0 2px; min-height: 0; }

QPushButton { background: @Panel; color: @Ink; border: 1px solid @FieldBorder; border-radius: 6px;
  padding: 0 16px; min-height: 32px; font-weight: 500; }
QPushButton:hover { border-color: @Accent; }
QPushButton:focus { border: 2px solid @Accent; padding: 0 15px; min-height: 30px; }
QPushButton:disabled { background: @Blocked; color: @BlockedInk; border-color: @Blocked; }
QPushButton[role="primary"] { background: @Accent; color: @AccentInk; border: 1px solid @Accent; font-weight: 600; }
QPushButton[role="primary"]:focus { border: 2px solid @Ink; }
QPushButton[role="primary"]:disabled { background: @Blocked; color: @BlockedInk; border-color: @Blocked; }
QPushButton[compact="true"] { padding: 0; min-height: 30px; }
QPushButton[compact="true"]:focus { padding: 0; min-height: 28px; }
QPushButton[role="quiet"] { border: 1px solid transparent; background: transparent; padding: 0 8px; }
QPushButton[role="quiet"]:hover, QPushButton[role="quiet"]:focus { border: 1px solid @Accent; min-height: 32px; }

QCheckBox { color: @Ink; spacing: 8px; min-height: 24px; padding: 0 3px; border: 2px solid transparent;
  border-radius: 5px; }
QCheckBox:disabled { color: @BlockedInk; }
QCheckBox::indicator { width: 16px; height: 16px; border: 1px solid @FieldBorder; border-radius: 4px;
  background: @Field; }
QCheckBox::indicator:checked { background: @Accent; border-color: @Accent; image: url(:/tick-@Mode.png); }
QCheckBox::indicator:disabled { background: @Blocked; border-color: @Border; }
QCheckBox::indicator:checked:disabled { background: @BlockedInk; image: url(:/tick-@Mode.png); }
QCheckBox:focus, QCheckBox[hand="true"] { background: @AccentTint; border-color: @Accent; }
QCheckBox::indicator:focus { border: 2px solid @Accent; width: 14px; height: 14px; }

QDateEdit::drop-down, QComboBox::drop-down { width: 24px; border: none; }
QDateEdit::down-arrow, QComboBox::down-arrow { image: url(:/down-@Mode.png); width: 12px; height: 12px; }
QDateEdit::up-button, QDateEdit::down-button { width: 0; }
QCalendarWidget QWidget { background: @Panel; color: @Ink; }
QCalendarWidget QAbstractItemView { selection-background-color: @Accent; selection-color: @AccentInk; }

QTableView, QListView, QTreeView { background: @Row; alternate-background-color: @RowOther; color: @Ink;
  border: 1px solid @Border; border-radius: 8px; gridline-color: transparent;
  selection-background-color: @Selection; selection-color: @SelectionInk; }
QTableView[role="report"]::item { padding: 4px 4px; }
QTableView:focus, QListView:focus { border-color: @Accent; }
QHeaderView { background: @Header; border: none; }
QHeaderView::section { background: @Header; color: @SoftInk; border: none; border-bottom: 1px solid @Border;
  padding: 0 8px; font-size: 11px; font-weight: 600; min-height: 30px; }
QTableCornerButton::section { background: @Header; border: none; }

QScrollBar:vertical { background: transparent; width: 12px; margin: 2px; }
QScrollBar:horizontal { background: transparent; height: 12px; margin: 2px; }
QScrollBar::handle { background: @Scroll; border-radius: 4px; min-height: 32px; min-width: 32px; }
QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }
QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }

QMenuBar { background: @Panel; color: @Ink; border-bottom: 1px solid @Border; }
QMenuBar::item { padding: 6px 10px; background: transparent; }
QMenuBar::item:selected { background: @Selection; color: @SelectionInk; }
QMenu { background: @Panel; color: @Ink; border: 1px solid @Border; padding: 4px; }
QMenu::item { padding: 6px 32px 6px 12px; border-radius: 4px; }
QMenu::item:selected { background: @Selection; color: @SelectionInk; }
QMenu::item:disabled { color: @SoftInk; }
QMenu::separator { height: 1px; background: @Border; margin: 4px 8px; }

QTabBar::tab { background: transparent; color: @SoftInk; padding: 8px 20px; border-bottom: 2px solid transparent; }
QTabBar::tab:selected { color: @Ink; border-bottom: 2px solid @Accent; font-weight: 600; }
QTabWidget::pane { border: none; }
QStatusBar { background: @Panel; color: @SoftInk; border-top: 1px solid @Border; }
QProgressBar { background: @Quiet; border: none; border-radius: 4px; height: 8px; text-align: center; }
QProgressBar::chunk { background: @Accent; border-radius: 4px; }
QSplitter::handle { background: @Border; }

[role="rail"] { background: @Rail; border: none; }
[role="railTitle"] { color: @RailSoft; font-size: 11px; font-weight: 600; padding: 8px 16px 4px 16px; }
QPushButton[role="railItem"] { background: transparent; color: @RailInk; border: none; border-radius: 0;
  border-left: 3px solid transparent; text-align: left; padding: 0 14px; min-height: 36px; }
QPushButton[role="railItem"]:hover { background: @RailHere; }
QPushButton[role="railItem"]:focus { border-left: 3px solid @RailInk; }
QPushButton[role="railItem"]:checked { background: @RailHere; border-left: 3px solid #6aa9ff; font-weight: 600; }
)");
  static constexpr const char* kNames[] = {
      "Window",   "Panel",      "Border",   "Ink",       "SoftInk",    "Field",     "FieldBorder",
      "Blocked",  "BlockedInk", "Accent",   "AccentInk", "AccentTint", "Refused",   "RefusedTint",
      "Row",      "RowOther",   "Header",   "Cell",      "CellInk",    "Selection", "SelectionInk",
      "Rail",     "RailInk",    "RailSoft", "RailHere",  "Good",       "Warning",   "WarningTint",
      "GoodTint", "Quiet",      "QuietInk", "Scroll"};
  static_assert(std::size(kNames) == static_cast<std::size_t>(Role::Count_));
  // Longer names first: "FieldBorder" holds "Field".
  std::array<std::size_t, std::size(kNames)> order{};
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
  std::sort(order.begin(), order.end(),
            [](auto a, auto b) { return std::strlen(kNames[a]) > std::strlen(kNames[b]); });
  for (std::size_t role : order) {
    style.replace(QLatin1Char('@') + QLatin1String(kNames[role]), Color(static_cast<Role>(role)).name());
  }
  return style.replace(QStringLiteral("@Mode"), Dark() ? QStringLiteral("dark") : QStringLiteral("light"));
}

void Restyle(QWidget& widget) {
  widget.style()->unpolish(&widget);
  widget.style()->polish(&widget);
  widget.update();
}

}  // namespace tarvik::desktop
