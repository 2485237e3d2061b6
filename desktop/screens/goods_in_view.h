// GoodsInView: the view of a goods-in document. Header, lines, entry row, total: the lines take the
// room, and the eye follows the work from top to bottom.
#pragma once

#include "desktop/screens/document_view.h"
#include "goods_in/frm_entradas_wizard.h"

namespace tarvik::desktop {

class GoodsInView final : public DocumentView {
  Q_OBJECT

 public:
  GoodsInView(Office& office, frmEntradasWizard& wizard, QWidget* parent = nullptr);

 protected:
  [[nodiscard]] bool Looking() const override { return DocumentView::Looking() || aid_.UnderWay(); }
  [[nodiscard]] Keys OwnKeys() const override;
  void AtRest() override;

 private:
  struct Aid {
    std::string warehouse;
    std::optional<double> stock;
  };
  void LookAtAids();
  void ShowAid(const std::optional<Aid>& aid);
  QWidget* Header();
  QWidget* EntryRow();

  frmEntradasWizard& wizard_;
  QLabel* warehouse_ = nullptr;  // name of the warehouse, and stock of the article: the host's aids
  QLabel* stock_ = nullptr;
  Look aid_;
  std::optional<Aid> found_;
  std::pair<std::string, std::string> aided_;  // warehouse and article that the aids were read for
};

}  // namespace tarvik::desktop
