#include "desktop/printing/desktop_printer.h"

#include <QFile>
#include <QTimer>

#include "data/error.h"
#include "desktop/printing/preview_window.h"

namespace tarvik::desktop {

void DesktopPrinter::Imprime(const std::string& page, const std::string& format, std::int32_t number) {
  base_.Rechaza(page);
  QFile file(QString::fromStdString(page));
  if (!file.open(QIODevice::ReadOnly)) {
    throw data::Error("No se puede leer la página " + page + ": " + file.errorString().toStdString());
  }
  const QString html = QString::fromUtf8(file.readAll());
  const QString name = QString::fromStdString(format);
  QSettings* settings = &settings_;
  const host::ArchivosDeLaBase base = base_;
  // After the posting has come to rest: its screen is still closing.
  QTimer::singleShot(0, [settings, html, name, number, base] {
    auto* window = new PreviewWindow(*settings, html, name, number, base);
    window->show();
    window->raise();
    window->activateWindow();
  });
}

}  // namespace tarvik::desktop
