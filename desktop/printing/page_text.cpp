#include "desktop/printing/page_text.h"

#include <QImage>
#include <QUrl>
#include <utility>

namespace tarvik::desktop {

namespace {

// Given in place of the file. Not empty: for an empty answer the toolkit reads the file by itself.
QVariant Nothing(int type) {
  if (type != QTextDocument::ImageResource) return QByteArray("");
  QImage point(1, 1, QImage::Format_ARGB32);
  point.fill(Qt::transparent);
  return point;
}

bool OfTheBase(const host::ArchivosDeLaBase& base, const QUrl& name) {
  return base.Incluye((name.isLocalFile() ? name.toLocalFile() : name.path()).toStdString());
}

}  // namespace

QVariant PageDocument::loadResource(int type, const QUrl& name) {
  return OfTheBase(base_, name) ? Nothing(type) : QTextDocument::loadResource(type, name);
}

QVariant PageBrowser::loadResource(int type, const QUrl& name) {
  return OfTheBase(base_, name) ? Nothing(type) : QTextBrowser::loadResource(type, name);
}

}  // namespace tarvik::desktop
