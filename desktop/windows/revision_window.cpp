#include "desktop/windows/revision_window.h"

#include <QApplication>
#include <QClipboard>
#include <QDate>
#include <QFrame>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSaveFile>
#include <QStackedWidget>
#include <QTableWidget>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

#include "data/number.h"
#include "desktop/boxes/file_dialog.h"
#include "desktop/style/key_caps.h"
#include "desktop/style/list_cells.h"
#include "desktop/style/theme.h"
#include "host/a_medias.h"
#include "host/anfitrion.h"
#include "host/archivos_de_la_base.h"

namespace tarvik::desktop {

namespace {

using measure::kGrid;

enum Column { kClass, kDocument, kLine, kArticle, kWarehouse, kText, kMend, kColumns };

const char* const kHeads[kColumns] = {
    "Qué es", "Documento", "Renglón", "Artículo", "Almacén", "Qué pasa y qué hacer", "Reparación"};

constexpr std::pair<const char*, const char*> kClasses[] = {
    {"existencia", "Existencia distinta de sus movimientos"},
    {"columna", "Columna del almacén"},
    {"a medias", "Afectado a medias"},
    {"adelantado", "Pendiente ya movido en parte"},
    {"doble", "Renglón movido dos veces"},
    {"distinto", "Movimiento distinto de su renglón"},
    {"huerfano", "Movimiento sin documento"},
    {"suelto", "Renglón sin documento"},
    {"numero", "Numeración"},
    {"tenencia", "Documento que nadie tiene abierto"},
    {"motor", "Archivo de la base"},
};

QString ClassName(const std::string& name) {
  for (const auto& [known, words] : kClasses) {
    if (name == known) return QString::fromUtf8(words);
  }
  return QString::fromStdString(name);
}

std::optional<host::Retenido> DocumentOf(const host::Observacion& one) {
  if (!one.tipo || !one.documento) return {};
  return host::Retenido{host::TipoDe(*one.tipo), *one.documento};
}

// A finding's cells, in the order of the columns.
QStringList Cells(const host::Observacion& one) {
  const QString kind = one.tipo ? QString::fromStdString(*one.tipo) + QLatin1Char(' ') : QString();
  return {ClassName(one.clase),
          one.documento ? kind + QString::number(*one.documento) : QString(),
          one.renglon ? QString::number(*one.renglon) : QString(),
          one.articulo ? QString::fromStdString(*one.articulo) : QString(),
          one.almacen ? QString::fromStdString(data::ToText(data::Value(*one.almacen))) : QString(),
          QString::fromStdString(one.texto).simplified(),
          one.reparado    ? RevisionWindow::tr("reparado")
          : one.reparable ? RevisionWindow::tr("se puede reparar")
                          : QString()};
}

QPushButton* Button(QWidget* parent, const QString& text, const QString& accessible, const char* role) {
  auto* button = new QPushButton(text, parent);
  button->setProperty("role", role);
  button->setAccessibleName(accessible);
  button->setAutoDefault(false);
  return button;
}

}  // namespace

RevisionWindow::RevisionWindow(Office& office, QWidget* parent)
    : QWidget(parent, Qt::Window),
      office_(office),
      reader_(std::make_unique<Reader>(office.host.Base())),
      ticking_(new QTimer(this)) {
  setWindowTitle(tr("Revisar la base"));
  setAttribute(Qt::WA_QuitOnClose, false);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  auto* body = new QVBoxLayout;
  body->setContentsMargins(2 * kGrid, 2 * kGrid, 2 * kGrid, kGrid);
  body->setSpacing(kGrid + kGrid / 2);
  body->addWidget(Head());
  body->addWidget(List(), 1);
  column->addLayout(body, 1);
  column->addWidget(Foot());

  AddKey(*this, QKeySequence(Qt::Key_F5), [this] { Check(); });
  AddKey(*this, QKeySequence::Copy, [this] { Copy(); });
  AddKey(*this, QKeySequence::Save, [this] { Save(); });
  AddKey(*this, QKeySequence(Qt::Key_Escape), [this] {
    if (busy_) return Cancel();
    close();
  });
  connect(ticking_, &QTimer::timeout, this, &RevisionWindow::ShowWords);
  setFocusProxy(table_);
  resize(136 * kGrid, 76 * kGrid);
  ShowWords();
}

RevisionWindow::~RevisionWindow() {
  if (task_) task_->Drop();
}

QWidget* RevisionWindow::Head() {
  auto* head = new QWidget(this);
  auto* row = new QHBoxLayout(head);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(kGrid);
  auto* texts = new QVBoxLayout;
  texts->setSpacing(kGrid / 4);
  auto* title = new QLabel(windowTitle(), head);
  title->setProperty("role", "title");
  words_ = new QLabel(head);
  words_->setProperty("role", "soft");
  words_->setAccessibleName(tr("Resultado de la revisión"));
  texts->addWidget(title);
  texts->addWidget(words_);
  row->addLayout(texts, 1);
  copy_ = Button(head, tr("&Copiar"), tr("Copiar la lista"), "outlined");
  save_ = Button(head, tr("&Guardar…"), tr("Guardar la lista en un archivo"), "outlined");
  mend_ = Button(head, tr("&Reparar lo seguro"), tr("Reparar lo que se puede reparar sin duda"), "outlined");
  check_ = Button(head, tr("Re&visar"), tr("Revisar la base"), "primary");
  connect(copy_, &QPushButton::clicked, this, &RevisionWindow::Copy);
  connect(save_, &QPushButton::clicked, this, &RevisionWindow::Save);
  connect(mend_, &QPushButton::clicked, this, &RevisionWindow::Mend);
  connect(check_, &QPushButton::clicked, this, &RevisionWindow::Check);
  for (auto* button : {copy_, save_, mend_, check_}) row->addWidget(button);
  return head;
}

QWidget* RevisionWindow::List() {
  stack_ = new QStackedWidget(this);
  empty_ = new QLabel(stack_);
  empty_->setProperty("role", "empty");
  empty_->setAlignment(Qt::AlignCenter);
  empty_->setWordWrap(true);
  auto* findings = new QWidget(stack_);
  auto* column = new QVBoxLayout(findings);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(kGrid);
  table_ = new QTableWidget(0, kColumns, findings);
  QStringList heads;
  for (const char* head : kHeads) heads << QString::fromUtf8(head);
  table_->setHorizontalHeaderLabels(heads);
  DressTable(*table_, office_.theme, tr("Lo que se encontró"), kText);
  SetWidths(*table_, {34, 14, 9, 14, 8, 40, 15});
  table_->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  table_->installEventFilter(this);
  connect(table_, &QTableWidget::currentCellChanged, this, &RevisionWindow::ShowDetail);
  connect(table_, &QTableWidget::cellDoubleClicked, this, &RevisionWindow::Open);
  auto* band = new QFrame(findings);
  band->setProperty("role", "band");
  auto* air = new QVBoxLayout(band);
  air->setContentsMargins(2 * kGrid, kGrid, 2 * kGrid, kGrid);
  detail_ = new QLabel(band);
  detail_->setTextFormat(Qt::PlainText);
  detail_->setWordWrap(true);
  detail_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  detail_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  detail_->setMinimumHeight(8 * kGrid);
  detail_->setAccessibleName(tr("Qué pasa y qué hacer"));
  air->addWidget(detail_);
  column->addWidget(table_, 1);
  column->addWidget(band);
  stack_->addWidget(empty_);
  stack_->addWidget(findings);
  return stack_;
}

QWidget* RevisionWindow::Foot() {
  line_ = new QStackedWidget(this);
  line_->setProperty("role", "keyline");
  line_->setFixedHeight(5 * kGrid);
  auto* keys = new KeyCaps;
  keys->Show({{tr("Intro"), tr("abrir documento")},
              {QStringLiteral("F5"), tr("revisar")},
              {tr("Ctrl+C"), tr("copiar")},
              {tr("Ctrl+S"), tr("guardar")},
              {tr("Esc"), tr("cerrar")}});
  line_->addWidget(FootLine(*keys));
  auto* busy = new QWidget;
  auto* row = new QHBoxLayout(busy);
  row->setContentsMargins(2 * kGrid, 0, 2 * kGrid, 0);
  row->setSpacing(2 * kGrid);
  progress_text_ = new QLabel(busy);
  auto* bar = new QProgressBar(busy);
  bar->setRange(0, 0);  // its duration is not known beforehand
  bar->setTextVisible(false);
  bar->setAccessibleName(tr("Avance"));
  leave_ = new QLabel(tr("Esc cancela"), busy);
  leave_->setProperty("role", "soft");
  row->addWidget(progress_text_);
  row->addWidget(bar, 1);
  row->addWidget(leave_);
  line_->addWidget(busy);
  return line_;
}

void RevisionWindow::Reach() {
  show();
  raise();
  activateWindow();
  if (when_.isEmpty() && !busy_) Check();
}

void RevisionWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  (table_->isVisible() ? static_cast<QWidget*>(table_) : check_)->setFocus();
}

// ---- what is done ----

void RevisionWindow::Check() {
  if (!busy_) Run(false);
}

int RevisionWindow::Mendable() const {
  return static_cast<int>(std::count_if(found_.begin(), found_.end(),
                                        [](const auto& one) { return one.reparable && !one.reparado; }));
}

void RevisionWindow::Mend() {
  const int count = Mendable();
  if (busy_ || count == 0) return;
  const QString what = count == 1 ? tr("1 hallazgo que se puede reparar sin duda")
                                  : tr("%1 hallazgos que se pueden reparar sin duda").arg(count);
  const QString text =
      tr("Hay %1: existencias según sus movimientos, columnas de almacén, documentos a medias y "
         "documentos que nadie tiene abiertos. Lo demás no se toca, y todo queda anotado.\n\n"
         "¿Desea repararlos?")
          .arg(what);
  if (office_.host.Plataforma().ShowBox(forms::BoxKind::Question, text.toStdString(),
                                        forms::kBoxYesNo + forms::kBoxQuestion + forms::kBoxSecondDefault)) {
    Run(true);
  }
}

void RevisionWindow::Run(bool mends) {
  mends_ = mends;
  task_ = std::make_shared<Reader::Task>();
  trouble_.clear();
  SetBusy(true);
  auto& context = office_.host.Ambiente();
  const auto text = [&](const char* name) { return data::ToText(context.Lee(name)); };
  const std::string user = text("Usuario");
  const std::string station = text("Estacion");
  const std::string local = text("ClaveLocal");
  forms::Platform& platform = office_.host.Plataforma();  // only its clock is used on the other thread
  auto step = [this, reader = reader_.get(), task = task_, mends, user, station, local,
               &platform](data::EngineConnection& connection) {
    host::Testigo nobody;
    const host::Completador who{connection, platform, nobody, local, user, station};
    const host::Revisor reviser{
        connection, platform.Now(), user, station,
        [&](host::Tipo type, std::int32_t number) { return host::Completa(who, type, number); }};
    auto found = host::Revisa(reviser, mends);
    reader->Deliver(task, [this, found = std::move(found), mends] { Take(found, mends); });
    return false;
  };
  reader_->Run(task_, Urgency::Page, std::move(step), [this](const QString& reason) {
    trouble_ = reason;
    SetBusy(false);
  });
}

void RevisionWindow::Cancel() {
  if (!busy_ || mends_) return;  // a repair runs to its end and is reported then
  task_->Drop();
  SetBusy(false);
}

void RevisionWindow::Take(std::vector<host::Observacion> found, bool mended) {
  found_ = std::move(found);
  const data::DateTime now = office_.host.Plataforma().Now();
  when_ = tr("%1 a las %2")
              .arg(QDate(now.date.year, now.date.month, now.date.day).toString(QStringLiteral("dd/MM/yyyy")),
                   QString::fromStdString(now.time.Text()).left(5));
  Fill();
  SetBusy(false);
  if (mended) emit Mended();
}

void RevisionWindow::Open() {
  const int row = table_->currentRow();
  if (row < 0 || row >= static_cast<int>(found_.size())) return;
  if (const auto document = DocumentOf(found_[static_cast<std::size_t>(row)])) emit OpenRequested(*document);
}

QString RevisionWindow::AsText() const {
  QString text;
  for (int column = 0; column < kColumns; ++column) {
    text += (column > 0 ? QStringLiteral("\t") : QString()) + QString::fromUtf8(kHeads[column]);
  }
  for (const auto& one : found_) text += QLatin1Char('\n') + Cells(one).join(QLatin1Char('\t'));
  return text + QLatin1Char('\n');
}

void RevisionWindow::Copy() {
  if (!found_.empty()) QApplication::clipboard()->setText(AsText());
}

void RevisionWindow::Save() {
  if (found_.empty()) return;
  const QString path = AskWhereToSave(this, tr("Guardar la lista"), tr("revision.txt"), tr("Texto (*.txt)"),
                                      QStringLiteral("txt"));
  if (path.isEmpty()) return;
  QString why;
  if (host::ArchivosDeLaBase(office_.host.Base().Address()).Incluye(path.toStdString())) {
    why = tr("El nombre es de la base de datos");
  } else {
    QSaveFile file(path);
    const QByteArray text = AsText().toUtf8();
    const bool done = file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit();
    if (!done) why = file.errorString();
  }
  if (why.isEmpty()) return;
  const QString told = tr("No se guardó la lista: %1. Elija otro nombre o carpeta.").arg(why);
  office_.host.Plataforma().ShowBox(forms::BoxKind::Error, told.toStdString(), forms::kBoxStop);
}

// ---- what is shown ----

void RevisionWindow::Fill() {
  table_->setRowCount(static_cast<int>(found_.size()));
  int row = 0;
  for (const auto& one : found_) {
    int column = 0;
    for (const QString& cell : Cells(one)) {
      auto* item = new QTableWidgetItem(cell);
      item->setToolTip(cell);
      table_->setItem(row, column++, item);
    }
    ++row;
  }
  if (!found_.empty()) table_->setCurrentCell(0, 0);
  ShowDetail();
}

void RevisionWindow::ShowDetail() {
  const int row = table_->currentRow();
  const bool any = row >= 0 && row < static_cast<int>(found_.size());
  detail_->setText(any ? QString::fromStdString(found_[static_cast<std::size_t>(row)].texto) : QString());
}

void RevisionWindow::SetBusy(bool busy) {
  busy_ = busy;
  if (busy) {
    since_.start();
    ticking_->start(1000);
  } else {
    ticking_->stop();
  }
  ShowWords();
  if (!busy && isActiveWindow() && table_->isVisible()) table_->setFocus();
}

void RevisionWindow::ShowWords() {
  line_->setCurrentIndex(busy_ ? 1 : 0);
  leave_->setVisible(!mends_);
  progress_text_->setText((mends_ ? tr("Reparando: %1 s") : tr("Revisando la base: %1 s"))
                              .arg(busy_ ? since_.elapsed() / 1000 : 0));
  check_->setEnabled(!busy_);
  mend_->setEnabled(!busy_ && Mendable() > 0);
  for (auto* button : {copy_, save_}) button->setEnabled(!found_.empty());
  stack_->setCurrentIndex(found_.empty() ? 0 : 1);
  const auto count = static_cast<int>(found_.size());
  if (!trouble_.isEmpty()) {
    words_->setText(tr("No se pudo revisar."));
    empty_->setText(
        tr("No se pudo revisar la base: %1.\nLa base está como estaba. Oprima F5 para intentarlo de "
           "nuevo.")
            .arg(trouble_));
  } else if (when_.isEmpty()) {
    words_->setText(tr("Existencias, movimientos, documentos, números y el archivo mismo."));
    empty_->setText(busy_ ? tr("Revisando…")
                          : tr("Todavía no se ha revisado.\nOprima F5 para revisar la base."));
  } else if (count == 0) {
    words_->setText(tr("Sin hallazgos, el %1.").arg(when_));
    empty_->setText(tr("La base está sana.\nRevisada el %1.").arg(when_));
  } else {
    const QString found = count == 1 ? tr("1 hallazgo") : tr("%1 hallazgos").arg(count);
    words_->setText(tr("%1 · %2 se pueden reparar · el %3").arg(found).arg(Mendable()).arg(when_));
  }
}

bool RevisionWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == table_ && event->type() == QEvent::KeyPress) {
    const auto* key = static_cast<QKeyEvent*>(event);
    const bool enter = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
    if (enter && !key->isAutoRepeat()) {
      Open();
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace tarvik::desktop
