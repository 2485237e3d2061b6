#include "desktop/style/template.h"

#include <QFile>
#include <QRegularExpression>

namespace tarvik::desktop {

namespace {

const QRegularExpression& Placeholder() {
  static const QRegularExpression name(QStringLiteral("@([A-Za-z]+)"));
  return name;
}

}  // namespace

QString FilledTemplate(const QString& path, const QHash<QString, QString>& values) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return {};
  const QString text = QString::fromUtf8(file.readAll());
  QString filled;
  qsizetype from = 0;
  for (auto found = Placeholder().globalMatch(text); found.hasNext();) {
    const auto place = found.next();
    filled +=
        text.mid(from, place.capturedStart() - from) + values.value(place.captured(1), place.captured(0));
    from = place.capturedEnd();
  }
  return filled + text.mid(from);
}

QStringList PlaceholdersOf(const QString& text) {
  QStringList names;
  for (auto found = Placeholder().globalMatch(text); found.hasNext();) names += found.next().captured(1);
  names.removeDuplicates();
  return names;
}

}  // namespace tarvik::desktop
