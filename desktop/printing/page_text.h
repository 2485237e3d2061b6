// Texts made from a page: what a page asks for besides (pictures, another page) is read from its files,
// but never from the base's own.
#pragma once

#include <QTextBrowser>
#include <QTextDocument>

#include "host/archivos_de_la_base.h"

namespace tarvik::desktop {

class PageDocument : public QTextDocument {
 public:
  explicit PageDocument(host::ArchivosDeLaBase base) : base_(std::move(base)) {}

 protected:
  QVariant loadResource(int type, const QUrl& name) override;

 private:
  host::ArchivosDeLaBase base_;
};

class PageBrowser : public QTextBrowser {
 public:
  PageBrowser(host::ArchivosDeLaBase base, QWidget* parent) : QTextBrowser(parent), base_(std::move(base)) {}

  QVariant loadResource(int type, const QUrl& name) override;

 private:
  host::ArchivosDeLaBase base_;
};

}  // namespace tarvik::desktop
