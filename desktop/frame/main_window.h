// MainWindow: the frame of the program. The rail, the lists, stock, the open screens as tabs or as
// windows of their own, the menus and the status line. It keeps the host's list form in step with the
// list on show. It opens and deletes through the door alone and knows no rule of a document.
#pragma once

#include <QMainWindow>
#include <QPointer>
#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "data/value.h"
#include "desktop/frame/rail.h"
#include "desktop/lists/document_list_model.h"
#include "desktop/office.h"
#include "desktop/reading/look.h"
#include "host/documentos.h"

class QAction;
class QActionGroup;
class QBoxLayout;
class QLabel;
class QStackedWidget;
class QTabBar;

namespace tarvik {
class EntradasSalidas;
}

namespace tarvik::desktop {

class DocumentList;
class HalfPosted;
class NoticeStrip;
class Recovery;
class Requests;
class RevisionWindow;
class ScreenView;
class StockView;

class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  // `office` and `door` outlive the window. The window sets office.host.Parent().al_llamar.
  MainWindow(Office& office, EntradasSalidas& door);
  ~MainWindow() override;

  // Asks the operator for a line of text; nothing if the operator cancels. A dialog, until set otherwise.
  std::function<std::optional<QString>(const QString& title, const QString& label)> ask_text;

  // Shows a screen's view: as a tab, or as a window of its own if the operator chose so; a modal one
  // always as a window before which the others wait. The view belongs to this window from here on:
  // after ScreenView::Gone it is taken out and deleted later.
  void Adopt(ScreenView& view, bool modal);

  // A tool of the program beside the built-in ones: an item of the menu "Herramientas" and of the
  // rail. The caller connects triggered().
  QAction* AddTool(const QString& text, const QKeySequence& key, Glyph glyph);
  // A further item of the menu "Ver", whose key works in every window of the program.
  QAction* AddView(const QString& text, const QKeySequence& key);

  // "Entradas", "EntradasPendientes", "Salidas", "SalidasPendientes", "Existencias". False for another.
  bool ShowPage(std::string_view name);
  [[nodiscard]] DocumentList& List(ListKind kind) const;
  [[nodiscard]] StockView& Stock() const { return *stock_; }
  // The cards above the lists, and which documents were posted in part.
  [[nodiscard]] NoticeStrip& Notices() const { return *notices_; }
  [[nodiscard]] HalfPosted& Half() const { return *half_; }
  // The window that proves the base, made at its first use.
  RevisionWindow& Revision();
  [[nodiscard]] Requests& Asked() const { return *requests_; }
  // The screen that the operator works in, whatever stands over it: that of the active window, or the tab in
  // front; nullptr where a list is.
  [[nodiscard]] ScreenView* Front() const;
  // The open screens, tabs first.
  [[nodiscard]] std::vector<ScreenView*> Open() const;

 signals:
  void HelpRequested();   // F1
  void HooksRequested();  // Ver > Ganchos
  void ThemeChanged();    // after a change of theme: widgets that paint themselves repaint

 protected:
  void resizeEvent(QResizeEvent* event) override;
  // Asks each open screen to close first; any may refuse.
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  static constexpr int kStockPage = 4;  // behind the four lists

  struct Screen {
    ScreenView* view;
    bool window;
    std::optional<host::Retenido> held;
    QPointer<QWidget> before = {};  // the window that a modal one came up over
  };

  void MakePages();
  void MakeRecovery();
  void MakeRail();
  void MakeMenus();
  void MakeNewItems(QMenu& document);
  void MakeListItems(QMenu& document);
  void MakeLeavingItems(QMenu& document);
  void MakePageItems(QMenu& view);
  void MakeScreenItems(QMenu& view);
  void MakeThemeItems(QMenu& view);
  void MakeStatus();
  static QAction* Everywhere(QAction* action);
  QAction* Add(QMenu& menu, const QString& text, const QList<QKeySequence>& keys);
  void ShowTab(int index);
  void NextTab(int step);
  void ShowPageAt(int page);
  void FitRail();
  void Raise(ScreenView& view);
  void Retitle(ScreenView& view);
  void CloseOrLeave(ScreenView& view);
  void RemoveTab(ScreenView& view);
  void OnGone(ScreenView* view);
  // Which document the screen holds by now: the lists show it.
  void HoldFor(ScreenView* view);
  Screen* Find(const ScreenView* view);
  [[nodiscard]] QString WindowSetting(const ScreenView& view) const;

  [[nodiscard]] DocumentList* ListOnShow() const;
  void New(bool goods_in);
  void Transfer();
  void OpenTransfer();
  void OpenDocument(DocumentList& list, int number, bool read_only);
  void DeleteDocument(DocumentList& list, int number);
  void Release(DocumentList& list, int number);
  void CompleteDocument();
  void AskFor(DocumentList& list, int number);
  void MakeRequests(QBoxLayout& column);
  void OpenForChange(const host::Retenido& document);
  // Brings this program's own screen of the document to the front; false if there is none.
  bool RaiseOwn(const host::Retenido& document);
  void SyncParent();
  void OnParentCall(std::string_view name, const std::vector<data::Value>& arguments);
  void RefreshLists();
  void UpdateCounts();
  void UpdateActions();
  void UpdateStatus();
  void ChooseTheme(int mode);
  // Runs what may throw, and shows the operator the reason, what is safe, and what to do.
  void Try(const QString& what, const std::function<void()>& act);

  Office& office_;
  EntradasSalidas& door_;
  std::unique_ptr<HalfPosted> half_;
  Look count_;  // of pending documents
  Rail* rail_ = nullptr;
  QTabBar* tabs_ = nullptr;
  QStackedWidget* stack_ = nullptr;  // the pages first, then the screens, as the tabs
  QStackedWidget* pages_ = nullptr;
  std::array<DocumentList*, 4> lists_{};
  StockView* stock_ = nullptr;
  NoticeStrip* notices_ = nullptr;
  Recovery* recovery_ = nullptr;
  RevisionWindow* revision_ = nullptr;
  Requests* requests_ = nullptr;
  std::vector<Screen> screens_;
  std::array<RailItem*, 5> rail_pages_{};

  QMenu* views_ = nullptr;
  QMenu* tools_ = nullptr;
  QMenu* help_ = nullptr;
  QAction* new_ = nullptr;
  QAction* open_ = nullptr;
  QAction* read_ = nullptr;
  QAction* delete_ = nullptr;
  QAction* release_ = nullptr;
  QAction* complete_ = nullptr;
  QAction* ask_ = nullptr;
  QAction* refresh_ = nullptr;
  QAction* find_ = nullptr;
  QAction* close_screen_ = nullptr;
  QAction* as_windows_ = nullptr;
  QAction* narrow_ = nullptr;
  QActionGroup* themes_ = nullptr;
  QLabel* status_base_ = nullptr;
  QLabel* status_user_ = nullptr;
  QLabel* status_station_ = nullptr;
  QLabel* status_date_ = nullptr;
  bool closing_ = false;
};

}  // namespace tarvik::desktop
