// DesktopPrinter: the host's printer on the desktop. It shows a finished page; it posts nothing and waits for
// no paper.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "host/anfitrion.h"
#include "host/archivos_de_la_base.h"

class QSettings;

namespace tarvik::desktop {

class DesktopPrinter : public host::Impresora {
 public:
  explicit DesktopPrinter(QSettings& settings) : settings_(settings) {}

  // The files that no page is saved over: to be told once, when the base is open.
  void Guard(host::ArchivosDeLaBase base) { base_ = std::move(base); }

  // Shows the preview once the program comes to rest and returns at once: whoever posts does not
  // wait for paper. Throws data::Error if the page can't be read.
  void Imprime(const std::string& page, const std::string& format, std::int32_t number) override;

 private:
  QSettings& settings_;
  host::ArchivosDeLaBase base_;
};

}  // namespace tarvik::desktop
