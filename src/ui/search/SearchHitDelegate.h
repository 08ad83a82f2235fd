// Draws a hit row of the results panel with its match on a highlighted background.
#pragma once

#include <QStyledItemDelegate>

namespace mirtex {

class SearchHitDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter,
               const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
};

} // namespace mirtex
