// Templates: texts of the program's resources, with places to be filled: a name of letters behind a mark,
// "@Ink".
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

namespace tarvik::desktop {

// The text of a resource (":/style.qss") with every name that `values` has replaced by its value; another
// stays as it stands. Empty if there is no such resource.
QString FilledTemplate(const QString& file, const QHash<QString, QString>& values);
// The names in a text, each once, in their order.
QStringList PlaceholdersOf(const QString& text);

}  // namespace tarvik::desktop
