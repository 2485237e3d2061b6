// How a goods-out looks at the size of a shop's monitor, in both themes.
#include <QHeaderView>
#include <QScrollBar>
#include <QSplitter>

#include "desktop/scanner/drawer.h"
#include "tests/desktop/screens/salidas_en_el_escritorio.h"

namespace tarvik::desktop {
namespace {

TEST_F(SalidasEnElEscritorio, TheSplitterIsRememberedAndMayBeShut) {
  const auto sizes = [&](frmSalidasWizard& form) {
    return program->ViewOf(form)->findChild<QSplitter*>()->sizes();
  };
  const auto drag = [&](frmSalidasWizard& form, int by) {
    auto* splitter = program->ViewOf(form)->findChild<QSplitter*>();
    QWidget* handle = splitter->handle(1);
    const QPoint from = handle->rect().center();
    QTest::mousePress(handle, Qt::LeftButton, {}, from);
    QTest::mouseMove(handle, from + QPoint(by, 0));
    QTest::mouseRelease(handle, Qt::LeftButton, {}, from + QPoint(by, 0));
    Settle();
  };
  const auto strip = [&](frmSalidasWizard& form) -> QAbstractButton& {
    return program->ViewOf(form)->findChild<Drawer*>()->Strip();
  };
  QList<int> wide;
  {
    frmSalidasWizard& form = NewOut();
    const QList<int> before = sizes(form);
    drag(form, -120);
    wide = sizes(form);
    EXPECT_EQ(wide[1] - before[1], 120);
    frmSalidasWizard& other = NewOut();
    EXPECT_EQ(sizes(other), wide);
    other.Close();
    form.Close();
  }
  Start();  // another morning
  {
    frmSalidasWizard& form = NewOut();
    EXPECT_EQ(sizes(form), wide);
    drag(form, 1000);
    EXPECT_GT(sizes(form)[1], 100) << "by the strip alone";
    strip(form).click();
    Settle();
    EXPECT_LT(sizes(form)[1], 40);
    EXPECT_GT(strip(form).height(), 100) << "its words can be read and clicked";
    form.Close();
  }
  Start();  // another morning
  frmSalidasWizard& form = NewOut();
  EXPECT_LT(sizes(form)[1], 40);
  strip(form).click();
  Settle();
  EXPECT_GT(sizes(form)[1], 100);
  drag(form, -1200);
  EXPECT_GT(sizes(form)[0], 0);  // the lines can't be shut
}

class MonitorDeTienda : public SalidasEnElEscritorio {
 protected:
  // As the program starts: fonts and paddings are the theme's.
  MonitorDeTienda() { theme.ApplyTo(App()); }
  void ExpectFits(frmSalidasWizard& form, int controls);
};

void MonitorDeTienda::ExpectFits(frmSalidasWizard& form, int controls) {
  Settle();
  EXPECT_EQ(program->Window().width(), 1366);
  EXPECT_EQ(program->Window().height(), 768);
  ScreenView* view = program->ViewOf(form);
  const QRect room = view->rect();
  int seen = 0;
  for (const forms::Control* control : form.Controls()) {
    const QWidget* widget = view->WidgetOf(*control);
    if (!widget || !widget->isVisible()) continue;
    const QRect place(widget->mapTo(view, QPoint(0, 0)), widget->size());
    EXPECT_TRUE(room.contains(place)) << control->FullName();
    EXPECT_GT(place.width() * place.height(), 0) << control->FullName();
    ++seen;
    const auto* label = qobject_cast<const QLabel*>(widget);
    const auto* button = qobject_cast<const QAbstractButton*>(widget);
    if (label || button) {
      EXPECT_GE(widget->width(), widget->minimumSizeHint().width()) << control->FullName();
    }
  }
  EXPECT_GT(seen, controls);
  EXPECT_EQ(Grid(form)->horizontalScrollBar()->maximum(), 0);
  // Seven lines stand there before any scrolls, as the screen counts them.
  EXPECT_GE(Grid(form)->viewport()->height() / measure::kRow, 7);
}

TEST_F(MonitorDeTienda, ShowsTheScreenWholeWithoutScrolling) {
  frmSalidasWizard& form = Selling();
  Line(QStringLiteral("MAR-16"), QStringLiteral("150"));
  ExpectFits(form, 40);
}

TEST_F(MonitorDeTienda, ShowsWhatARoutineAddsWithoutGrowingBeyondIt) {
  ShowHidden();
  frmSalidasWizard& form = Selling();
  Line(QStringLiteral("MAR-16"), QStringLiteral("150"));
  ExpectFits(form, 43);
}

// A field beside its mark as well as one under its caption.
TEST_F(SalidasEnElEscritorio, ARefusedFieldBesideItsMarkIsMarkedWithItsReasonUntilMended) {
  ShowHidden();
  frmSalidasWizard& form = Selling();
  form.Check3.Value(1);
  const auto refused = [&](int field, forms::CheckBox* mark) {
    if (mark != nullptr) form.Click(*mark);
    form.Enter(form.txtFields(field));
    Settle();
    Type(QStringLiteral("99"));
    Press(Qt::Key_F5);
    QTest::qWait(20);
    ASSERT_EQ(QApplication::focusWidget(), Widget(form, field)) << AllSaid();
    EXPECT_TRUE(Widget(form, field)->property("refused").toBool()) << field;
    EXPECT_FALSE(Widget(form, field)->accessibleDescription().isEmpty()) << field;
    Press(Qt::Key_Backspace);
    EXPECT_FALSE(Widget(form, field)->property("refused").toBool()) << field;
    Press(Qt::Key_Backspace);
    if (mark != nullptr && mark->Value() == 1) form.Click(*mark);
    Settle();
  };
  refused(13, nullptr);
  form.txtFields(campo::Cliente).Text("");
  refused(2, &form.SSCheck1);
  refused(9, &form.SSCheck2);
  form.txtFields(campo::EstacionDestino).Text("");
  refused(16, &form.Check1);
  refused(12, nullptr);
  form.txtFields(campo::Compra).Text("");
  refused(3, nullptr);
}

// As the eye takes a colour: 0 is black, 1 is white.
double Luminance(const QColor& color) {
  const auto part = [](double value) {
    return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * part(color.redF()) + 0.7152 * part(color.greenF()) + 0.0722 * part(color.blueF());
}

// Between the lightest and the darkest dot.
double Contrast(const QImage& image) {
  double least = 1;
  double most = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const double light = Luminance(image.pixelColor(x, y));
      least = std::min(least, light);
      most = std::max(most, light);
    }
  }
  return (most + 0.05) / (least + 0.05);
}

QString TextOf(const QWidget& widget) {
  if (const auto* line = qobject_cast<const QLineEdit*>(&widget)) return line->text();
  if (const auto* label = qobject_cast<const QLabel*>(&widget)) return label->text();
  if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) return button->text();
  return {};
}

TEST_F(SalidasEnElEscritorio, EveryTextCanBeReadInBothThemes) {
  ShowHidden();
  frmSalidasWizard& form = Selling();
  Line(QStringLiteral("CIN-AIS-C12"), QStringLiteral("2"));
  Press(Qt::Key_F9);
  Settle();
  form.txtFields(campo::DireccionDeEmbarque).Text("Obra Los Encinos");
  form.txtFields(campo::AlmacenDestino).Text("2");
  for (const auto mode : {Theme::Mode::Light, Theme::Mode::Dark}) {
    theme.Set(mode);
    theme.ApplyTo(App());
    QTest::qWait(20);
    int read = 0;
    ScreenView* view = program->ViewOf(form);
    for (const forms::Control* control : form.Controls()) {
      QWidget* widget = view->WidgetOf(*control);
      if (!widget || !widget->isVisible() || widget == Grid(form)) continue;
      if (TextOf(*widget).trimmed().isEmpty()) continue;
      // Out of the window, so that a label stands on its band; without the border.
      const QRect place(widget->mapTo(view, QPoint(0, 0)), widget->size());
      const QImage image = view->grab(place.adjusted(3, 3, -3, -3)).toImage();
      EXPECT_GE(Contrast(image), 4.0)  // thin strokes are smoothed by a little
          << control->FullName() << (mode == Theme::Mode::Dark ? ", dark" : ", light");
      ++read;
    }
    EXPECT_GT(read, 25);
    const double ground = Luminance(view->grab(QRect(2, 2, 4, 4)).toImage().pixelColor(1, 1));
    if (mode == Theme::Mode::Dark) {
      EXPECT_LT(ground, 0.1);
    } else {
      EXPECT_GT(ground, 0.7);
    }
    // The field in hand, by its tint as well as by its border.
    QWidget* hand = QApplication::focusWidget();
    ASSERT_EQ(hand, Widget(form, campo::Articulo));
    const QImage field = hand->grab().toImage();
    EXPECT_EQ(field.pixelColor(field.width() - 8, field.height() / 2).rgb(),
              theme.Color(Role::AccentTint).rgb());
    EXPECT_NE(Widget(form, campo::Cantidad)->grab().toImage().pixelColor(8, 8).rgb(),
              theme.Color(Role::AccentTint).rgb());
  }
  theme.Set(Theme::Mode::Light);
  theme.ApplyTo(App());
}

}  // namespace
}  // namespace tarvik::desktop
