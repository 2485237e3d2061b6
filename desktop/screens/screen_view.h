// ScreenView: the view of one screen. It shows what the form holds and turns what the operator does
// into the form's acts. There is no rule in it: no test of a mode, no statement.
//
// A derived view makes a widget for each control it shows and binds it by the control's name. The
// model owns text, caret, selection and focus; a bound widget never edits itself.
#pragma once

#include <QHash>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QWidget>
#include <functional>
#include <memory>
#include <string_view>

#include "desktop/office.h"
#include "desktop/style/key_caps.h"
#include "forms/form.h"
#include "forms/listener.h"

class QAbstractButton;
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

class ScreenView : public QWidget, public forms::FormListener {
  Q_OBJECT

 public:
  // Holds the form as long as it lives itself.
  ScreenView(Office& office, forms::Form& form, QWidget* parent = nullptr);
  ~ScreenView() override;

  [[nodiscard]] forms::Form& Screen() const { return *form_; }
  // Controls that have a widget here, by their full names: "txtFields(4)".
  [[nodiscard]] QStringList Bound() const;
  [[nodiscard]] QWidget* WidgetOf(const forms::Control& control) const;
  // After an act that came from outside the view: what it shows beside the form is read anew.
  void Refresh() { Rest(); }
  // Deletes the view, at the latest once the operator's act that it is in the middle of has ended: an act
  // may close its own screen, and box or modal screen inside it run the loop on. May be called twice.
  void Dismiss();
  // Paints at once, with no event let through: progress while a document is posted.
  void PaintNow();

  // The keys that work here and now: {"F9", "guardar línea"} ...
  [[nodiscard]] virtual Keys KeysNow() const { return {}; }
  // A reading for what stands beside the screen is under way.
  [[nodiscard]] virtual bool Looking() const { return false; }
  // Whether it is at home on the whole desk; else it opens as large as sizeHint() says.
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
  // Any other widget for a control: a browser's page.
  void Show(std::string_view name, QWidget& widget, const QString& accessible);
  // A control that has no widget of its own here, shown or not shown by another's.
  void Covered(std::string_view name, std::optional<int> index = {});

  // Called once when the form has come to rest after an act: the place for aids of the host's.
  virtual void AtRest() {}

  [[nodiscard]] Office& office() const { return office_; }
  forms::Control& Required(std::string_view name, std::optional<int> index = {}) const;

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
  class Hand {
   public:
    explicit Hand(ScreenView& view) : view_(view) { ++view_.hands_; }
    ~Hand() {
      if (--view_.hands_ == 0 && view_.dismissed_) view_.deleteLater();
    }
    Hand(const Hand&) = delete;
    Hand& operator=(const Hand&) = delete;

   private:
    ScreenView& view_;
  };

  void Bind(forms::Control& control, QWidget& widget, const QString& accessible);
  void Update(forms::Control& control);
  bool Forward(QKeyEvent& event);
  void CatchUp();
  void Follow(QLineEdit& line, forms::TextBox& box);
  void SelectionMoved(forms::TextBox& box, int start, int end);
  void Rest();
  void Exposed();

  Office& office_;
  std::shared_ptr<forms::Form> form_;
  QHash<const forms::Control*, QWidget*> widgets_;
  QHash<const QObject*, forms::Control*> controls_;
  QPointer<QLineEdit> cell_editor_;
  const forms::Control* cell_editor_control_ = nullptr;
  GridView* cell_grid_ = nullptr;
  bool taking_focus_ = false;
  int hands_ = 0;
  bool dismissed_ = false;
  bool resting_ = false;
  bool showing_ = false;    // what the widget tells of is what it was told
  bool following_ = false;  // what the model tells of came from the widget
  bool catching_up_ = false;
  QSet<forms::Control*> waiting_;  // texts to be shown once the act is over
  bool painting_ = false;
};

}  // namespace tarvik::desktop
