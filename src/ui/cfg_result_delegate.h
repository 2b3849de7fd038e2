// How the rows of the configuration check are painted: the one in work marked, and a sign and a
// colour with each result.
#pragma once

#include <QIcon>
#include <QStyledItemDelegate>
#include <map>
#include <tuple>

namespace tarnlink {

class CfgResultDelegate final : public QStyledItemDelegate {
 public:
  // What an item's data say besides its text: a `CfgVerdict`; true in the row in work.
  enum Role { kVerdict = Qt::UserRole, kInWork };

  using QStyledItemDelegate::QStyledItemDelegate;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

 private:
  enum class Shape { kNothing, kArrow, kGood, kWrong, kUnknown };
  using Look = std::tuple<Shape, QRgb, double>;

  static Shape ShapeOf(const QModelIndex& index);
  // Of the size of its place, for the pixels of the widget.
  const QIcon& Sign(const QStyleOptionViewItem& option, Shape shape, const QColor& colour) const;

  // Those that have been drawn so far: a few for each scheme of colours.
  mutable std::map<Look, QIcon> signs_;
};

}  // namespace tarnlink
