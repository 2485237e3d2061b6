// ProgramLog: what the program writes down for whoever looks after it: errors that no trap caught,
// and what went wrong outside any document. One file, programa.log in the base's folder. It is not
// the log of the day, which belongs to the suite and is never touched here.
#pragma once

#include <QString>
#include <exception>
#include <string>

namespace tarvik::desktop {

class ProgramLog {
 public:
  // `folder` is RutaBase. User and station may still be empty before a base is open.
  explicit ProgramLog(const std::string& folder, const std::string& user = {},
                      const std::string& station = {});

  [[nodiscard]] const QString& Path() const { return path_; }

  // One block, appended in one write, so that stations that share the folder don't mix their lines:
  //   2026-11-21 14:03:22 ANA E1 frmEntradasWizard
  //     text, line by line
  //     sentencia: SELECT ...
  // `where` is the screen or the part of the program; it may be empty. A log that can't be written
  // gives false. Neither throws.
  bool Write(const QString& where, const QString& text) noexcept;
  // The same with the context that a data::Error carries.
  bool Write(const QString& where, const std::exception& error) noexcept;

 private:
  QString path_;
  QString user_;
  QString station_;
};

}  // namespace tarvik::desktop
