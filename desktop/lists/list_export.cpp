#include "desktop/lists/list_export.h"

#include <QFileInfo>
#include <QLabel>
#include <QProgressBar>
#include <algorithm>

#include "data/number.h"
#include "desktop/style/theme.h"

namespace tarvik::desktop {
namespace {

constexpr int kSums = 0, kBar = 1, kWords = 2;

QString Grouped(std::int64_t number) {
  return QString::fromStdString(data::FormatNumber(static_cast<double>(number), "###,###,###,##0"));
}

}  // namespace

ListExport::ListExport(Reader& reader, QWidget* sums)
    : reader_(reader), bar_(new QProgressBar(this)), words_(new QLabel(this)) {
  // As wide as the longest of the three: nothing moves when another takes the place.
  setFixedWidth(42 * measure::kGrid);
  addWidget(sums);
  auto* middle = new QWidget(this);
  auto* row = new QHBoxLayout(middle);
  row->setContentsMargins(0, 0, 0, 0);
  bar_->setAccessibleName(QStringLiteral("Avance de la exportación"));
  bar_->setTextVisible(false);
  bar_->setFixedSize(10 * measure::kGrid, measure::kGrid);
  auto* told = new QLabel(middle);
  told->setObjectName(QStringLiteral("avance"));
  told->setProperty("role", "soft");
  row->addStretch();
  row->addWidget(told);
  row->addWidget(bar_);
  addWidget(middle);
  words_->setProperty("role", "soft");
  words_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  addWidget(words_);
}

ListExport::~ListExport() {
  if (task_) task_->Drop();
}

void ListExport::Start(std::shared_ptr<host::ListadoEnCsv> file, const QString& path, std::int64_t expected) {
  Cancel();
  expected_ = expected;
  clock_.start();
  task_ = std::make_shared<Reader::Task>();
  ShowProgress(0);
  auto step = [this, &reader = reader_, task = task_, file = std::move(file),
               path](data::EngineConnection& connection) {
    const bool more = file->Paso(connection);
    reader.Deliver(task, [this, more, rows = file->Renglones(), path] {
      if (more) return ShowProgress(rows);
      task_.reset();
      Say(rows == 1 ? QStringLiteral("Se exportó 1 renglón a %1").arg(QFileInfo(path).fileName())
                    : QStringLiteral("Se exportaron %1 renglones a %2")
                          .arg(Grouped(rows), QFileInfo(path).fileName()));
    });
    return more;
  };
  reader_.Run(task_, Urgency::Sum, std::move(step), [this](const QString& reason) {
    task_.reset();
    Say(QStringLiteral("No se exportó: %1").arg(reason));
  });
}

void ListExport::ShowProgress(std::int64_t rows) {
  bar_->setRange(0, static_cast<int>(expected_));
  bar_->setValue(static_cast<int>(std::min(rows, expected_)));
  QString text = Grouped(rows);
  if (expected_ > 0) text += QStringLiteral(" de %1").arg(Grouped(expected_));
  if (rows > 0 && expected_ > rows) {
    const auto left = clock_.elapsed() * (expected_ - rows) / rows / 1000 + 1;
    text += QStringLiteral(" · %1 s").arg(left);
  }
  findChild<QLabel*>(QStringLiteral("avance"))->setText(text + QStringLiteral(" · Esc cancela"));
  setCurrentIndex(kBar);
}

void ListExport::Cancel() {
  if (!task_) return;
  task_->Drop();
  task_.reset();
  Say(QStringLiteral("Exportación cancelada."));
}

void ListExport::Say(const QString& words) {
  words_->setText(words_->fontMetrics().elidedText(words, Qt::ElideMiddle, width()));
  words_->setToolTip(words);
  setCurrentIndex(kWords);
}

QString ListExport::Said() const { return currentIndex() == kWords ? words_->toolTip() : QString(); }

void ListExport::Quiet() {
  if (currentIndex() == kWords) setCurrentIndex(kSums);
}

}  // namespace tarvik::desktop
