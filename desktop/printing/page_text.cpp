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

// A picture that is part of the page, and of a kind that nobody here can draw: its place stays empty. The
// toolkit would put a sign of its own there, which is nothing for paper.
bool CanNotBeDrawn(int type, const QUrl& name, const QVariant& loaded) {
  // What can be drawn has become a picture already.
  return type == QTextDocument::ImageResource && name.scheme() == QStringLiteral("data") &&
         loaded.userType() == QMetaType::QByteArray && QImage::fromData(loaded.toByteArray()).isNull();
}

}  // namespace

QVariant PageDocument::loadResource(int type, const QUrl& name) {
  if (OfTheBase(base_, name)) return Nothing(type);
  QVariant loaded = QTextDocument::loadResource(type, name);
  if (!CanNotBeDrawn(type, name, loaded)) return loaded;
  // The toolkit has kept what it loaded, and would ask here no more.
  addResource(type, name, Nothing(type));
  return Nothing(type);
}

QVariant PageBrowser::loadResource(int type, const QUrl& name) {
  return OfTheBase(base_, name) ? Nothing(type) : QTextBrowser::loadResource(type, name);
}

}  // namespace tarvik::desktop
