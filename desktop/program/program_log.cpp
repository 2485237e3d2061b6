#include "desktop/program/program_log.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "data/error.h"
#include "forms/platform.h"

namespace tarvik::desktop {

ProgramLog::ProgramLog(const std::string& folder, const std::string& user, const std::string& station)
    : path_(QDir(QString::fromStdString(forms::NativePath(folder))).filePath(QStringLiteral("programa.log"))),
      user_(QString::fromStdString(user)),
      station_(QString::fromStdString(station)) {}

bool ProgramLog::Write(const QString& where, const QString& text) noexcept {
  try {
    QString block = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    for (const QString& word : {user_, station_, where}) {
      if (!word.isEmpty()) block += QLatin1Char(' ') + word;
    }
    block += QLatin1Char('\n');
    QString body = text;
    body.remove(QLatin1Char('\r'));
    for (const QString& line : body.split(QLatin1Char('\n'))) {
      if (!line.trimmed().isEmpty()) block += QStringLiteral("  ") + line + QLatin1Char('\n');
    }
    QDir().mkpath(QFileInfo(path_).absolutePath());
    QFile file(path_);
    // Unbuffered: the block leaves in one write, at the file's end wherever that is by then.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered)) return false;
    const QByteArray bytes = block.toUtf8();
    return file.write(bytes) == bytes.size();
  } catch (...) {  // at worst out of memory: there is no way left to report it
    return false;
  }
}

bool ProgramLog::Write(const QString& where, const std::exception& error) noexcept {
  try {
    QString text = QString::fromStdString(error.what());
    if (const auto* known = dynamic_cast<const data::Error*>(&error)) {
      for (const auto& [key, value] : known->Context()) {
        text += QStringLiteral("\n%1: %2").arg(QString::fromStdString(key), QString::fromStdString(value));
      }
    }
    return Write(where, text);
  } catch (...) {
    return false;
  }
}

}  // namespace tarvik::desktop
