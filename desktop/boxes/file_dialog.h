// File dialogs: the one place of the program where a file or a folder is chosen. They open no file and look
// only at names: an ordinary dialog reads files to choose their icons, and closing a file of the base would
// release this process's locks on it.
#pragma once

#include <QString>

class QWidget;

namespace tarvik::desktop {

// Each shows a dialog over `parent` and waits; gives the path, or an empty text if the operator chose
// nothing. A filter reads "Documento PDF (*.pdf)".

// `proposed` is the whole path at first; a name typed without an ending gets `suffix`. A file that is
// there already is asked about.
QString AskWhereToSave(QWidget* parent, const QString& title, const QString& proposed, const QString& filter,
                       const QString& suffix);
// A file that is there.
QString AskForFile(QWidget* parent, const QString& title, const QString& folder, const QString& filter);
QString AskForFolder(QWidget* parent, const QString& title, const QString& folder);

}  // namespace tarvik::desktop
