#include "desktop/boxes/file_dialog.h"

#include <QFileDialog>
#include <QFileIconProvider>
#include <QFileInfo>
#include <memory>

namespace tarvik::desktop {

namespace {

// By its ending alone.
class IconsByName final : public QFileIconProvider {
 public:
  [[nodiscard]] QIcon icon(IconType type) const override { return QFileIconProvider::icon(type); }
  [[nodiscard]] QIcon icon(const QFileInfo& info) const override {
    return QFileIconProvider::icon(info.isDir() ? Folder : File);
  }
  [[nodiscard]] QString type(const QFileInfo& info) const override {
    if (info.isDir()) return QStringLiteral("Carpeta");
    const QString ending = info.suffix().toUpper();
    return ending.isEmpty() ? QStringLiteral("Archivo") : QStringLiteral("Archivo ") + ending;
  }
};

// Not the desktop's native dialog, which may read files. Renaming and removing are off too: the base's files
// may be in the list.
class Dialog final {
 public:
  Dialog(QWidget* parent, const QString& title) : dialog_(parent, Qt::WindowFlags()) {
    dialog_.setOptions(QFileDialog::DontUseNativeDialog | QFileDialog::DontUseCustomDirectoryIcons |
                       QFileDialog::ReadOnly);
    dialog_.setIconProvider(&icons_);  // before a folder is read
    dialog_.setWindowTitle(title);
  }
  QFileDialog* operator->() { return &dialog_; }
  QString Chosen() {
    if (dialog_.exec() != QDialog::Accepted) return {};
    return dialog_.selectedFiles().value(0);
  }

 private:
  IconsByName icons_;  // outlives the dialog
  QFileDialog dialog_;
};

}  // namespace

QString AskWhereToSave(QWidget* parent, const QString& title, const QString& proposed, const QString& filter,
                       const QString& suffix) {
  const QFileInfo place(proposed);
  Dialog dialog(parent, title);
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->setFileMode(QFileDialog::AnyFile);
  dialog->setDefaultSuffix(suffix);
  dialog->setNameFilter(filter);
  dialog->setDirectory(place.absolutePath());
  dialog->selectFile(place.fileName());
  return dialog.Chosen();
}

QString AskForFile(QWidget* parent, const QString& title, const QString& folder, const QString& filter) {
  Dialog dialog(parent, title);
  dialog->setFileMode(QFileDialog::ExistingFile);
  dialog->setNameFilter(filter);
  dialog->setDirectory(folder);
  return dialog.Chosen();
}

QString AskForFolder(QWidget* parent, const QString& title, const QString& folder) {
  Dialog dialog(parent, title);
  dialog->setFileMode(QFileDialog::Directory);
  dialog->setDirectory(folder);
  return dialog.Chosen();
}

}  // namespace tarvik::desktop
