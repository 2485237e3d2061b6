// DocumentView: what the views of the two document wizards share: the title with its state, the
// total, the key line, the progress of posting, and the mark on a refused field. Bands and fields
// are the derived views'.
#pragma once

#include <QElapsedTimer>

#include "desktop/half_posted.h"
#include "desktop/screen_view.h"
#include "wizard/document_wizard.h"

class QProgressBar;
class QStackedWidget;

namespace tarvik::desktop {

class DocumentView : public ScreenView {
  Q_OBJECT

 public:
  DocumentView(Office& office, DocumentWizard& wizard, QWidget* parent);

  [[nodiscard]] Keys KeysNow() const override;
  // The document was completed, or changed by another hand: its state is read anew.
  void LookAgain();

 signals:
  void CompleteRequested();

 protected:
  // What the document's row says now, for the chip: number 0 is a document that is not there yet.
  struct State {
    std::int32_t number = 0;
    const char* table = "";
    const char* key = "";
    const char* lines = "";  // table of its lines
  };
  [[nodiscard]] virtual State Document() const = 0;
  // Keys of this screen beside those that both have.
  [[nodiscard]] virtual Keys OwnKeys() const { return {}; }

  // ---- pieces for the layout ----
  QWidget* TitleRow(QWidget* at_right);
  // A caption over a field; the reason of a refusal stands under it while there is one.
  QWidget* Labelled(QWidget* caption, QWidget* field, int width = 0);
  QWidget* Labelled(const QString& caption, QWidget* field, int width = 0);
  QWidget* Foot(QWidget* left);  // checks at the left; total and buttons at the right
  QWidget* KeyLine();

  void AtRest() override;
  void ControlChanged(forms::Control& control, forms::Aspect aspect) override;
  void FocusMoved(forms::Control* from, forms::Control* to) override;
  void CaptionChanged() override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  bool event(QEvent* event) override;

 private:
  void ShowState();
  // Whether it was posted in part, read once for each state of the document.
  void ReadWhole(const State& document, bool posted);
  [[nodiscard]] bool InPart() const;
  bool Completes(QEvent& event);
  void ShowStored(const State& document);
  void ShowKeys();
  void ShowProgress(const QString& text);
  void Refuse(forms::Control& control, const QString& reason);
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
  std::optional<std::pair<int, bool>> looked_;  // number and whether posted, when it was last read
  std::optional<host::DocumentoAMedias> half_;
};

}  // namespace tarvik::desktop
