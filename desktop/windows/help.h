// HelpWindow: F1. Left the keys of the screen in hand, right the operator's manual, with a search
// over all of its pages. It reads the manual that the program carries; it needs no base.
#pragma once

#include <QHash>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QWidget>

class QLabel;
class QLayout;
class QLineEdit;
class QListWidget;
class QSettings;
class QTextBrowser;
class QVBoxLayout;

namespace tarvik::desktop {

// Names of the pages in their order: "indice", "entradas", "salidas", "listas", "existencias",
// "ajustes", "problemas", "servidor".
QStringList ManualPages();
// The text of a page as Markdown; empty for another name.
QString ManualPage(const QString& name);
// The page for a screen's name ("frmEntradasWizard"); "indice" for one that has none of its own.
QString ManualPageFor(const QString& screen);

class HelpWindow : public QWidget {
  Q_OBJECT

 public:
  // A window of its own. The settings (window's place) outlive it; nullptr: nothing is remembered.
  explicit HelpWindow(QSettings* settings = nullptr, QWidget* parent = nullptr);
  ~HelpWindow() override;

  // Shows the window with these keys, at this page of the manual.
  //   help.Open(view.Caption(), view.KeysNow(), ManualPageFor(form.Name()));
  void Open(const QString& screen, const QList<QPair<QString, QString>>& keys, const QString& page);
  void ShowPage(const QString& name);
  [[nodiscard]] const QString& Page() const { return page_; }
  // Pages that hold every word, without regard to case and accents; the page shown marks them.
  void Search(const QString& words);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QWidget* KeysAndPages();
  void MakePages(QWidget* left);
  QLayout* Manual();
  QWidget* MakePaper();
  void ShowKeys(const QString& screen, const QList<QPair<QString, QString>>& keys);
  void Mark();

  QSettings* settings_;
  QLabel* screen_;
  QWidget* keys_;
  QVBoxLayout* keys_layout_;
  QLineEdit* search_;
  QListWidget* pages_;
  QLabel* found_;
  QTextBrowser* text_;
  QString page_;
};

}  // namespace tarvik::desktop
