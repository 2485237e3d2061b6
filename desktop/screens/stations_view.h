// StationsView: the view of a transfer between two stations: one hands over, the other receives, an
// arrow between them; the lines; one entry row; three buttons.
#pragma once

#include <string>
#include <utility>

#include "desktop/reading/look.h"
#include "desktop/screens/screen_view.h"
#include "stations/frm_mov_estaciones.h"

namespace tarvik::desktop {

class StationsView final : public ScreenView {
  Q_OBJECT

 public:
  StationsView(Office& office, frmMovEstaciones& transfer, QWidget* parent = nullptr);

  [[nodiscard]] Keys KeysNow() const override;
  [[nodiscard]] bool Looking() const override { return name_.UnderWay(); }

 protected:
  void AtRest() override;
  void CaptionChanged() override;
  void FocusMoved(forms::Control* from, forms::Control* to) override;

 private:
  QWidget* Header();
  QWidget* EntryRow();
  QWidget* Buttons();
  QLabel* NameOfStation(const QString& accessible);
  void DressColumns();
  void NameStations();

  frmMovEstaciones& transfer_;
  GridView* grid_ = nullptr;
  QList<int> numbers_;
  int widest_ = -1;
  QLabel* title_ = nullptr;
  QLabel* from_ = nullptr;  // names of the stations: aids of the host's
  QLabel* to_ = nullptr;
  QLabel* lines_ = nullptr;
  KeyCaps* keys_ = nullptr;
  Look name_;
  using Names = std::pair<std::string, std::string>;
  Names named_;  // the keys whose names were read last
  Names found_;
};

}  // namespace tarvik::desktop
