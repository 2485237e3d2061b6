// DocumentView: what the views of the two document wizards share: the title with its state, the
// total, the key line, the progress of posting, and the mark on a refused field. Bands and fields
// are the derived views'.
#pragma once

#include <QElapsedTimer>

#include "desktop/reading/look.h"
#include "desktop/screens/screen_view.h"
#include "host/vistazo.h"
#include "wizard/document_wizard.h"

class QProgressBar;
class QStackedWidget;
class QTabWidget;

namespace tarvik::desktop {

class Drawer;
class TapePanel;

class DocumentView : public ScreenView {
  Q_OBJECT

 public:
  DocumentView(Office& office, DocumentWizard& wizard, QWidget* parent);

  [[nodiscard]] Keys KeysNow() const override;
  // The document was completed or changed elsewhere: reads its state again.
  void LookAgain();
  [[nodiscard]] bool Looking() const override { return look_.UnderWay(); }
  // A reading has come or changed.
  void ReadingsChanged();
  // The hand in the tape, which opens if it was shut; and back.
  void ReachTape();
  [[nodiscard]] TapePanel* Tape() const { return tape_; }

 signals:
  void CompleteRequested();

 protected:
  // Keys of this screen beside those that both have.
  [[nodiscard]] virtual Keys OwnKeys() const { return {}; }

  // ---- pieces for the layout ----
  QWidget* TitleRow(QWidget* at_right);
  // A caption over a field; the reason of a refusal stands under it while there is one.
  QWidget* Labelled(QWidget* caption, QWidget* field, int width = 0);
  QWidget* Labelled(const QString& caption, QWidget* field, int width = 0);
  // The lines, and beside them the tape; `sheet` shares its place, as a second tab.
  QWidget* WithTape(QWidget* lines, QWidget* sheet = nullptr, const QString& sheet_title = {});
  QWidget* Foot(QWidget* left);  // checks at the left; total and buttons at the right
  QWidget* KeyLine();

  void AtRest() override;
  void ControlChanged(forms::Control& control, forms::Aspect aspect) override;
  void FocusMoved(forms::Control* from, forms::Control* to) override;
  void CaptionChanged() override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  bool event(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  // Reads the document's state in the background if this program has written since the last reading, or the
  // screen shows another document.
  void LookIfWritten();
  void LookIfOthersWrote();
  void ShowState();
  void ShowReadOnly();
  [[nodiscard]] const host::DocumentoAMedias* Half() const;
  [[nodiscard]] bool InPart() const;
  bool Completes(QEvent& event);
  void ShowStored();
  void ShowKeys();
  void ShowProgress(const DocumentWizard::Avance& posting);
  void Refuse(forms::Control& control, const QString& reason);
  void PlaceReason(QLabel& label, const QWidget& field);
  void Mend(forms::Control& control);

  DocumentWizard& wizard_;
  QLabel* title_ = nullptr;
  QLabel* chip_ = nullptr;
  QLabel* holder_ = nullptr;
  QStackedWidget* line_ = nullptr;  // keys, or progress
  KeyCaps* keys_ = nullptr;
  QLabel* stored_ = nullptr;
  QLabel* progress_text_ = nullptr;
  QLabel* progress_left_ = nullptr;
  QProgressBar* progress_ = nullptr;
  QElapsedTimer posting_;
  QHash<const forms::Control*, QLabel*> reasons_;
  QSet<const forms::Control*> refused_;  // marked, until mended
  int messages_seen_ = 0;
  TapePanel* tape_ = nullptr;
  Drawer* drawer_ = nullptr;
  QTabWidget* beside_ = nullptr;  // where a sheet shares the drawer
  Look look_;
  std::optional<host::Retenido> looked_at_;  // what was read last, and how much had been written by then
  std::int64_t written_ = -1;
  std::int64_t others_wrote_ = 0;
  bool unknown_ = false;  // the base refused the last reading
  std::optional<host::EstadoDeDocumento> state_;
};

}  // namespace tarvik::desktop
