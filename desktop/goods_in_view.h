// GoodsInView: the view of a goods-in document. Header, lines, entry row, total: the lines take the
// room, and the eye follows the work from top to bottom.
#pragma once

#include "desktop/document_view.h"
#include "goods_in/frm_entradas_wizard.h"

namespace tarvik::desktop {

class GoodsInView final : public DocumentView {
  Q_OBJECT

 public:
  GoodsInView(Office& office, frmEntradasWizard& wizard, QWidget* parent = nullptr);

 protected:
  [[nodiscard]] State Document() const override {
    return {wizard_.Entrada, "entradas", "entrada", "entpart"};
  }
  [[nodiscard]] Keys OwnKeys() const override;
  void AtRest() override;

 private:
  QWidget* Header();
  QWidget* EntryRow();

  frmEntradasWizard& wizard_;
  QLabel* warehouse_ = nullptr;  // name of the warehouse, and stock of the article: the host's aids
  QLabel* stock_ = nullptr;
  std::string aided_;  // what the aids were read for
};

}  // namespace tarvik::desktop
