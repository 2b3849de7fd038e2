// How the rows of the configuration check are painted: the one in work marked, and a sign and a
// colour with each result.
#pragma once

#include <QStyledItemDelegate>

namespace tarnlink {

class CfgResultDelegate final : public QStyledItemDelegate {
 public:
  // What an item's data say besides its text: a `CfgVerdict`; true in the row in work.
  enum Role { kVerdict = Qt::UserRole, kInWork };

  using QStyledItemDelegate::QStyledItemDelegate;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

}  // namespace tarnlink
