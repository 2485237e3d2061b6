// ScreenView: the view of one screen. It shows what the form holds and turns what the operator does
// into the form's acts. There is no rule in it: no test of a mode, no statement.
//
// A derived view asks for a widget for each control that it shows, by the control's name, and lays the
// widgets out. Each widget has a tie (tie.h); the view looks it up by the control that reports a change, or
// by the widget that receives an event. The model owns text, caret, selection and focus.
#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <unordered_map>

#include "desktop/office.h"
#include "desktop/screens/tie.h"
#include "desktop/style/key_caps.h"
#include "forms/form.h"
#include "forms/listener.h"

class QCheckBox;
class QComboBox;
class QDateEdit;
class QKeyEvent;
class QLabel;
class QLineEdit;
class QPushButton;
class QTextEdit;

namespace tarvik::desktop {

class GridView;

class ScreenView : public QWidget, public forms::FormListener, private Hand {
  Q_OBJECT

 public:
  // Keeps the form alive.
  ScreenView(Office& office, forms::Form& form, QWidget* parent = nullptr);
  ~ScreenView() override;

  [[nodiscard]] forms::Form& Screen() const { return *form_; }
  // Controls that have a widget here, by their full names: "txtFields(4)".
  [[nodiscard]] QStringList Bound() const;
  [[nodiscard]] QWidget* WidgetOf(const forms::Control& control) const;
  // To be called after an act from outside the view, so that AtRest runs.
  void Refresh() { Rest(); }
  // Deletes the view, but not before the operator's act that is under way has ended: an act may close its own
  // screen, and a box inside it runs the event loop. May be called twice.
  void Dismiss();
  // Paints at once, with no event let through: progress while a document is posted.
  void PaintNow();

  // The keys that work here and now: {"F9", "guardar línea"} ...
  [[nodiscard]] virtual Keys KeysNow() const { return {}; }
  // A reading for what stands beside the screen is under way.
  [[nodiscard]] virtual bool Looking() const { return false; }
  // Whether it opens as large as the main window; otherwise as large as sizeHint() says.
  [[nodiscard]] virtual bool FillsTheDesk() const { return true; }

 signals:
  void HelpRequested();
  void CaptionChanged(const QString& caption);
  void Gone();  // the form was unloaded; the view may be deleted

 protected:
  // ---- binding; each gives the widget, named and labelled for accessibility ----
  QLineEdit* Field(int index, const QString& accessible);
  QLineEdit* Field(std::string_view name, const QString& accessible);
  QTextEdit* Notes(std::string_view name, const QString& accessible);
  // A text box that is only shown.
  QLabel* Text(std::string_view name, std::optional<int> index, const QString& accessible);
  // Alt and the letter, underlined where the caption has it, click the box.
  QCheckBox* Check(std::string_view name, const QString& accessible = {}, QChar letter = {});
  QPushButton* Button(std::string_view name, const QString& role, const QString& accessible = {});
  QDateEdit* Date(std::string_view name, const QString& accessible);
  QComboBox* Combo(std::string_view name, const QString& accessible);
  QLabel* Caption(std::string_view name, std::optional<int> index = {});
  GridView* Grid(std::string_view name, const QString& accessible);
  // The box that floats over the grid's current cell.
  void CellEditor(std::string_view name, GridView& grid);
  // The focus to a control, as by a click.
  void Go(forms::Control& control);
  // A page that the derived view has made, and fills.
  void Page(std::string_view name, QWidget& page, const QString& accessible);
  // A control without a widget: it is not shown, or another widget shows it.
  void Covered(std::string_view name, std::optional<int> index = {});

  // Called once when the form has come to rest after an act: the place for aids of the host's.
  virtual void AtRest() {}

  [[nodiscard]] Office& office() const { return office_; }
  // nullptr for a control or a widget that has none.
  [[nodiscard]] Tie* TieOf(const forms::Control* control) const;
  [[nodiscard]] Tie* TieOf(const QWidget* widget) const;

  // ---- forms::FormListener ----
  void ControlChanged(forms::Control& control, forms::Aspect aspect) override;
  void CellChanged(forms::FlexGrid& grid, int row, int col) override;
  void RowsChanged(forms::FlexGrid& grid, int from) override;
  void CurrentCellMoved(forms::FlexGrid& grid) override;
  void FocusMoved(forms::Control* from, forms::Control* to) override;
  void CaptionChanged() override;
  void Shown(bool modal) override;
  void Hidden() override;
  void Unloaded() override;

  bool eventFilter(QObject* watched, QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  bool event(QEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  // While it lives, the view is in the middle of an operator's act.
  class Held {
   public:
    explicit Held(ScreenView& view) : view_(view) { ++view_.held_; }
    ~Held() {
      if (--view_.held_ == 0 && view_.dismissed_) view_.deleteLater();
    }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;

   private:
    ScreenView& view_;
  };

  // ---- Hand: by what the ties act ----
  void Act(const std::function<void(forms::Form&)>& act) override;
  bool Press(const QKeyEvent& event) override;
  [[nodiscard]] bool FormMovesFocus() const override { return moving_focus_; }
  [[nodiscard]] QWidget& View() override { return *this; }

  [[nodiscard]] forms::Control& Required(std::string_view name, std::optional<int> index) const;
  template <class Kind, class... More>
  Kind& Tied(std::string_view name, std::optional<int> index, const QString& accessible, More&&... more);
  void Keep(std::unique_ptr<Tie> tie, const QString& accessible);
  void CatchUp();
  void MoveFocus(QWidget& widget);
  void Rest();
  void Exposed();

  Office& office_;
  std::shared_ptr<forms::Form> form_;
  std::unordered_map<const forms::Control*, std::unique_ptr<Tie>> ties_;  // nullptr: covered
  QHash<const QObject*, Tie*> by_widget_;
  QSet<forms::Control*> waiting_;  // texts to be shown once the act is over
  int held_ = 0;
  bool moving_focus_ = false;
  bool dismissed_ = false;
  bool resting_ = false;
  bool catching_up_ = false;
  bool painting_ = false;
};

}  // namespace tarvik::desktop
