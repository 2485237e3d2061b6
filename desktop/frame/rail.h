// Rail: the column at the left, with sections, items and counts. Narrow, it shows icons alone, with
// the words as tips. It does nothing by itself: the window connects the items.
#pragma once

#include <QList>
#include <QPushButton>
#include <QString>
#include <QWidget>

class QLabel;
class QVBoxLayout;

namespace tarvik::desktop {

// Small drawings for the rail, in the ink of the theme.
enum class Glyph {
  In,
  InPending,
  Out,
  OutPending,
  Stock,
  Transfer,
  Review,
  Catalogue,
  Settings,
  Hook,
  Other
};

class Theme;

class RailItem : public QPushButton {
  Q_OBJECT

 public:
  RailItem(const Theme& theme, const QString& text, Glyph glyph, QWidget* parent);

  void SetCount(int count, bool more = false);  // 0 shows none; `more`: there are at least so many
  void SetNarrow(bool narrow);
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void Describe();

  const Theme& theme_;
  QString text_;
  Glyph glyph_;
  int count_ = 0;
  bool more_ = false;
  bool narrow_ = false;
};

class Rail : public QWidget {
  Q_OBJECT

 public:
  explicit Rail(const Theme& theme, QWidget* parent = nullptr);

  void AddSection(const QString& title);
  // A page is chosen and stays so; a tool is only pressed.
  RailItem* AddPage(const QString& text, Glyph glyph);
  RailItem* AddTool(const QString& text, Glyph glyph);
  void SetNarrow(bool narrow);
  [[nodiscard]] bool Narrow() const { return narrow_; }
  [[nodiscard]] const QList<RailItem*>& Items() const { return items_; }

 private:
  RailItem* Add(const QString& text, Glyph glyph);

  const Theme& theme_;
  QVBoxLayout* column_ = nullptr;
  QList<QLabel*> titles_;
  QList<RailItem*> items_;
  bool narrow_ = false;
};

}  // namespace tarvik::desktop
