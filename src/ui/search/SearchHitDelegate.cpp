#include "ui/search/SearchHitDelegate.h"

#include "ui/search/SearchResultsModel.h"

#include <QApplication>
#include <QPainter>

namespace mirtex {

namespace {

// Amber under the text, light enough for dark text and translucent enough for light text.
const QColor kMatchBackground(255, 196, 0, 120);

} // namespace

void SearchHitDelegate::paint(QPainter *painter,
                              const QStyleOptionViewItem &option,
                              const QModelIndex &index) const
{
    const QVariant start = index.data(SearchResultsModel::HighlightStartRole);
    if (!start.isValid()) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    // TABs inside the line are drawn as one space each, so measuring and drawing agree.
    const QString text = item.text.replace(u'\t', u' ');
    item.text.clear();
    const QWidget *widget = item.widget;
    QStyle *style = widget ? widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &item, painter, widget);

    QRect textRect = style->subElementRect(QStyle::SE_ItemViewItemText, &item, widget);
    const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, widget) + 1;
    textRect.adjust(margin, 0, -margin, 0);
    const QFontMetrics metrics(item.font);
    const int from = start.toInt();
    const int length = index.data(SearchResultsModel::HighlightLengthRole).toInt();
    const int x = textRect.left() + metrics.horizontalAdvance(text.left(from));
    const int width = metrics.horizontalAdvance(text.mid(from, length));

    painter->save();
    painter->setClipRect(textRect);
    painter->fillRect(QRect(x, textRect.top() + 1, width, textRect.height() - 2), kMatchBackground);
    const bool selected = item.state & QStyle::State_Selected;
    painter->setPen(item.palette.color(selected ? QPalette::HighlightedText : QPalette::Text));
    painter->setFont(item.font);
    painter->drawText(textRect, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
    painter->restore();
}

} // namespace mirtex
