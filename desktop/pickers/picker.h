// The pickers in windows: the search of a catalogue, the list of articles, and the small calculator.
// They choose a text; whoever asked puts it into the field.
#pragma once

#include <QDialog>
#include <QString>

#include "desktop/office.h"
#include "desktop/pickers/search_panel.h"
#include "host/anfitrion.h"

namespace tarvik::desktop {

class PickerDialog : public QDialog {
  Q_OBJECT

 public:
  explicit PickerDialog(SearchSource source, QWidget* parent = nullptr);

  [[nodiscard]] SearchPanel& Panel() const { return *panel_; }
  [[nodiscard]] const QString& Chosen() const { return chosen_; }  // once accepted

 private:
  SearchPanel* panel_;
  QString chosen_;
};

class DesktopSelector : public host::Selector {
 public:
  // The host is given its selector before there is an office. Until then nothing is chosen.
  void Use(Office& office) { office_ = &office; }

  bool Elige(const std::string& clase, const std::string& titulo, forms::TextBox& campo,
             std::string& elegido) override;

 private:
  Office* office_ = nullptr;
};

}  // namespace tarvik::desktop
