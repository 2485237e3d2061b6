// Escritorio: the whole program on a demonstration base of its own, with no screen, and an operator's
// keys as real key events.
#pragma once

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <cmath>

#include "desktop/frame/main_window.h"
#include "desktop/platform/qt_platform.h"
#include "desktop/program/program.h"
#include "desktop/screens/goods_in_view.h"
#include "desktop/screens/grid_view.h"
#include "desktop/style/theme.h"
#include "host/anfitrion.h"
#include "service/door/entradas_salidas.h"
#include "tests/desktop/support.h"
#include "tests/support/base_de_prueba.h"

namespace tarvik::desktop {

class Escritorio : public ::testing::Test {
  tests::BaseDePrueba base_{tests::BaseDePrueba::Con::kNada};  // outlives the program

 protected:
  Escritorio() {
    App();
    Start();
  }

  // The program on the base as it lies there, in front, its boxes answered.
  void Start() {
    program.reset();
    program = std::make_unique<Program>(
        theme,
        ProgramOptions{Address(), QStringLiteral("ANA"), QStringLiteral("E1"), folder.path(), {}, true});
    program->Platform().on_box = [this](forms::BoxKind kind, const std::string& text, int) {
      boxes.push_back(text);
      return kind != forms::BoxKind::Question || yes;
    };
    program->Window().resize(1366, 768);
    program->Window().show();
    program->Window().activateWindow();
    (void)QTest::qWaitForWindowActive(&program->Window());
  }
  // A file in the folder; on a server a base of its own.
  QString Address() {
    return base_.EnServidor() ? QString::fromStdString(base_.Direccion())
                              : QStringLiteral("sqlite:") + folder.filePath(QStringLiteral("tienda.db"));
  }
  frmEntradasWizard& New() {
    program->Door().NuevaEntrada();
    Settle();
    auto& form = dynamic_cast<frmEntradasWizard&>(*program->Platform().Screens().back());
    form.Check2.Value(0);  // no paper: the preview is a window of its own
    return form;
  }
  // A new goods-in with its concept, the hand in the article field.
  frmEntradasWizard& Receiving() {
    frmEntradasWizard& form = New();
    Type(QStringLiteral("COM"));
    Press(Qt::Key_Return);
    Press(Qt::Key_Return);
    EXPECT_EQ(form.ActiveControl(), &form.txtFields(campo::Articulo));
    return form;
  }
  // What the keys set off has come to rest, and what the views read beside the window has arrived.
  static void Settle() {
    QTest::qWait(0);
    (void)QTest::qWaitFor([] {
      const auto widgets = QApplication::allWidgets();
      return std::none_of(widgets.begin(), widgets.end(), [](QWidget* widget) {
        const auto* view = qobject_cast<ScreenView*>(widget);
        return view != nullptr && view->Looking();
      });
    });
  }
  static void Type(const QString& text) {
    for (const QChar letter : text) QTest::keyClick(QApplication::focusWidget(), letter.toLatin1());
  }
  static void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
  }
  static void Line(const QString& article, const QString& quantity) {
    Type(article);
    Press(Qt::Key_Return);
    Type(quantity);
    Press(Qt::Key_Return);
    Press(Qt::Key_Return);
  }
  std::string Article(int which) {
    const auto rows = program->Host().Conexion().Run(
        "SELECT articulo FROM prods WHERE precio1 > 0 ORDER BY articulo LIMIT 1 OFFSET ?", {which});
    return data::ToText(rows.rows.at(0)[0]);
  }
  std::string One(const std::string& sql) {
    const auto rows = program->Host().Conexion().Run(sql, {});
    return rows.rows.empty() ? "(nada)" : data::ToText(rows.rows[0][0]);
  }
  QLineEdit* Widget(DocumentWizard& form, int index) {
    return qobject_cast<QLineEdit*>(program->ViewOf(form)->WidgetOf(form.txtFields(index)));
  }
  // Every control of the form has its place in the view, and every one that takes the focus a name.
  void ExpectWhole(forms::Form& form) {
    ScreenView* view = program->ViewOf(form);
    const QStringList bound = view->Bound();
    for (const forms::Control* control : form.Controls()) {
      const QString name = QString::fromStdString(control->FullName());
      EXPECT_TRUE(bound.contains(name)) << control->FullName() << " has no place in the view";
      const QWidget* widget = view->WidgetOf(*control);
      if (!widget || !control->Focusable()) continue;
      // As a reader of the screen sees it.
      QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(const_cast<QWidget*>(widget));
      ASSERT_NE(spoken, nullptr) << control->FullName();
      EXPECT_FALSE(spoken->text(QAccessible::Name).isEmpty()) << control->FullName();
      EXPECT_NE(spoken->role(), QAccessible::NoRole) << control->FullName();
      EXPECT_NE(spoken->role(), QAccessible::Client) << control->FullName();
    }
  }
  // Wherever the hand goes, nothing on the screen changes its place or its size, but for the editor that
  // floats over its cell, and the words in the line of keys.
  void ExpectStill(forms::Form& form) {
    ScreenView* view = program->ViewOf(form);
    const auto in_line_of_keys = [view](const QWidget* widget) {
      for (; widget && widget != view; widget = widget->parentWidget()) {
        if (widget->property("role") == QLatin1String("keyline")) return true;
      }
      return false;
    };
    const auto places = [&] {
      QHash<const QWidget*, QRect> found;
      for (const QWidget* widget : view->findChildren<QWidget*>()) {
        if (!widget->isVisible() || widget->objectName() == QLatin1String("txtEdit")) continue;
        if (!in_line_of_keys(widget)) found[widget] = QRect(widget->mapTo(view, QPoint()), widget->size());
      }
      return found;
    };
    Settle();
    const auto before = places();
    int stops = 0;
    for (forms::Control* control : form.Controls()) {
      if (!control->Focusable() || !control->Visible() || !control->Enabled()) continue;
      form.Enter(*control);
      Settle();
      stops += form.ActiveControl() == control;
      const auto now = places();
      for (auto at = before.begin(); at != before.end(); ++at) {
        EXPECT_EQ(now.value(at.key()), at.value())
            << at.key()->metaObject()->className() << ' ' << at.key()->objectName().toStdString()
            << " moved when the hand went to " << control->FullName();
      }
      if (HasFailure()) return;
    }
    EXPECT_GT(stops, 0);
  }

  QTemporaryDir folder;
  Theme theme{Theme::Mode::Light};
  std::unique_ptr<Program> program;
  std::vector<std::string> boxes;
  bool yes = true;
};

}  // namespace tarvik::desktop
