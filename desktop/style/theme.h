// Theme: the one file of colours and measures, in a light and a dark set. Views name roles, never
// colours: a widget says what it is by a dynamic property, which resources/style.qss dresses, and what it
// paints itself it asks for here.
//
//   widget->setProperty("role", "panel");     // panel, band, caption, title, total, soft, keycap,
//                                             // keyline, rail, railTitle, railItem, reason, empty, notice,
//                                             // report, found, tape, pages, manual
//   button->setProperty("role", "primary");   // primary, outlined, quiet
//   chip->setProperty("role", "chip");        // with "state": nuevo, pendiente, afectado, medias, lectura
//   field: "hand" (the field in hand), "refused", "blocked", each true or false
//
// Call Restyle(widget) after changing such a property.
#pragma once

#include <QColor>
#include <QHash>
#include <QString>
#include <array>

class QApplication;
class QWidget;

namespace tarvik::desktop {

enum class Role {
  Window,   // behind everything
  Panel,    // bands, lists, cards
  Border,   // hairlines
  Ink,      // text
  SoftInk,  // captions, aids
  Field,    // an editable field
  FieldBorder,
  Blocked,  // a field that the system fills, or that is blocked
  BlockedInk,
  Accent,      // the field in hand, the one filled button
  AccentInk,   // on the accent
  AccentTint,  // inside the field in hand
  Refused,
  RefusedTint,
  Row,
  RowOther,  // every second row
  Header,
  Cell,  // the current cell
  CellInk,
  Selection,  // selected text and rows
  SelectionInk,
  Rail,
  RailInk,
  RailSoft,
  RailHere,
  RailMark,  // beside the page in hand
  Good,      // exact, stored, posted
  Warning,   // pending
  WarningTint,
  GoodTint,
  Quiet,  // chips without urgency
  QuietInk,
  Scroll,
  Count_
};

// Text that stands on a ground: a test holds each pair to a contrast of 4.5 to 1 in both themes.
struct Pair {
  Role text;
  Role ground;
};
extern const std::array<Pair, 21> kTextOnGround;

namespace measure {
inline constexpr int kGrid = 8;
inline constexpr int kText = 13;  // pixels
inline constexpr int kCaption = 11;
inline constexpr int kEmpty = 15;
inline constexpr int kTitle = 19;
inline constexpr int kTotal = 28;
inline constexpr int kField = 32;   // height
inline constexpr int kReason = 14;  // under a field, kept free for the reason of a refusal
inline constexpr int kRow = 28;
inline constexpr int kCorner = 6;
inline constexpr int kRail = 176;
inline constexpr int kRailNarrow = 48;
inline constexpr int kNarrowWindow = 1200;  // below this the rail shows icons only
}  // namespace measure

class Theme {
 public:
  enum class Mode { System, Light, Dark };

  explicit Theme(Mode mode = Mode::System) : mode_(mode) {}

  void Set(Mode mode) { mode_ = mode; }
  [[nodiscard]] Mode Chosen() const { return mode_; }
  // What is in force: the system's, unless one was chosen.
  [[nodiscard]] bool Dark() const;
  [[nodiscard]] QColor Color(Role role) const { return Color(role, Dark()); }
  static QColor Color(Role role, bool dark);

  // Fonts, palette and style of the whole program. Again after Set, and when the system's theme changes.
  void ApplyTo(QApplication& application) const;

  // What resources/style.qss may name, "@Ink" or "@TextSize", and what stands for it.
  static QHash<QString, QString> Placeholders(bool dark);
  static QString StyleSheet(bool dark);

 private:
  Mode mode_;
};

// Lets a widget take its style anew after one of its properties changed.
void Restyle(QWidget& widget);

}  // namespace tarvik::desktop
