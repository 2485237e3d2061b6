// DocumentListModel: goods-in or goods-out documents, newest first, by page and filter. It reads
// only; who opens or deletes a document is the window's matter.
#pragma once

#include <QString>
#include <array>
#include <optional>
#include <string_view>

#include "desktop/reading/half_posted.h"
#include "desktop/reading/paged_model.h"

namespace tarvik::desktop {

enum class ListKind { Entradas, EntradasPendientes, Salidas, SalidasPendientes };
inline constexpr std::array kAllLists{ListKind::Entradas, ListKind::EntradasPendientes, ListKind::Salidas,
                                      ListKind::SalidasPendientes};

std::string_view NameOf(ListKind kind);  // as the suite calls the list: "EntradasPendientes"
QString TitleOf(ListKind kind);          // as an operator reads it
constexpr bool IsGoodsIn(ListKind kind) {
  return kind == ListKind::Entradas || kind == ListKind::EntradasPendientes;
}
constexpr host::Tipo TypeOf(ListKind kind) {
  return IsGoodsIn(kind) ? host::Tipo::Entrada : host::Tipo::Salida;
}
constexpr bool IsPending(ListKind kind) {
  return kind == ListKind::EntradasPendientes || kind == ListKind::SalidasPendientes;
}

// Typed into the field it shows the documents that were posted in part.
inline const QString kHalfFilter = QStringLiteral("a medias");

class DocumentListModel : public PagedModel {
  Q_OBJECT

 public:
  enum Column { Number, IssueDate, Concept, Remarks, Warehouse, Amount, State, Holder, ColumnCount };
  // StateRole: "pendiente", "afectado" or "medias"; HeldRole: true while a screen holds it; HalfRole: true
  // for one that was posted in part.
  enum DataRole { NumberRole = Qt::UserRole, StateRole, HeldRole, HalfRole };

  DocumentListModel(Reader& reader, ListKind kind, std::string amount_pattern, QObject* parent = nullptr);

  [[nodiscard]] ListKind Kind() const { return kind_; }
  // Says which documents are not whole; outlives the model.
  void Use(const HalfPosted& half);
  void SetFilter(const QString& typed);
  [[nodiscard]] QString Filter() const { return FilterText(); }
  [[nodiscard]] int NumberAt(int row) const;  // 0 for no row
  // "1,234 documentos", "Total 56,789.00" when ready.
  [[nodiscard]] QString CountText() const;
  [[nodiscard]] QString TotalText() const;

  bool SortsBy(int column) const override { return column < ColumnCount; }
  std::function<data::Value(const Cells&)> ValueOf(int column) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 protected:
  host::Listado Wanted(const QString& filter) const override;
  void PutInOrder(host::Listado& listing, const Sort& sort) const override;

 private:
  [[nodiscard]] const host::DocumentoAMedias* Half(int number) const;
  [[nodiscard]] QVariant Own(const Cells& cells, int role) const;
  [[nodiscard]] QString StateOf(const Cells& cells) const;
  [[nodiscard]] QVariant TextOf(const Cells& cells, int column) const;

  ListKind kind_;
  std::string amount_pattern_;
  const HalfPosted* half_ = nullptr;
};

}  // namespace tarvik::desktop
