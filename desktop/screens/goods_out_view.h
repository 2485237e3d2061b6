// GoodsOutView: the view of a goods-out document, in its three panels: header with customer and
// transfer marks, lines with the distribution sheet beside them, entry row with addresses and totals.
#pragma once

#include "desktop/screens/document_view.h"
#include "goods_out/frm_salidas_wizard.h"

class QSplitter;
class QTextBrowser;

namespace tarvik::desktop {

class GoodsOutView final : public DocumentView {
  Q_OBJECT

 public:
  GoodsOutView(Office& office, frmSalidasWizard& wizard, QWidget* parent = nullptr);

  // Shows the distribution sheet that was written to this file.
  void ShowSheet(const std::string& file);

 protected:
  [[nodiscard]] Keys OwnKeys() const override;

 private:
  QWidget* Header();
  QWidget* Lines();
  QWidget* EntryRow();
  QWidget* Remarks();

  frmSalidasWizard& wizard_;
  QTextBrowser* sheet_ = nullptr;
};

}  // namespace tarvik::desktop
