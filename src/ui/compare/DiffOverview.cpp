#include "DiffOverview.h"

#include <QMouseEvent>
#include <QPainter>

namespace mirtex {

DiffOverview::DiffOverview(QWidget *parent)
    : QWidget(parent)
{
    setFixedWidth(14);
    setCursor(Qt::PointingHandCursor);
}

void DiffOverview::setAlignment(const DiffAlignment *alignment, Colors colors)
{
    m_alignment = alignment;
    m_colors = colors;
    update();
}

void DiffOverview::setVisibleRows(qsizetype first, qsizetype count)
{
    m_firstVisible = first;
    m_visibleCount = count;
    update();
}

void DiffOverview::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().window());
    if (!m_alignment || m_alignment->rowCount() == 0)
        return;
    const double scale = double(height()) / double(m_alignment->rowCount());
    for (size_t h = 0; h < m_alignment->hunkRows.size(); ++h) {
        const LineRange rows = m_alignment->hunkRows[h];
        const AlignedRowKind left = m_alignment->left.kindOfRow[size_t(rows.start)];
        const AlignedRowKind right = m_alignment->right.kindOfRow[size_t(rows.start)];
        QColor color = m_colors.changed;
        if (left == AlignedRowKind::filler && right == AlignedRowKind::added)
            color = m_colors.added;
        else if (right == AlignedRowKind::filler && left == AlignedRowKind::removed)
            color = m_colors.removed;
        const double top = double(rows.start) * scale;
        const double extent = std::max(2.0, double(rows.count()) * scale);
        painter.fillRect(QRectF(2, top, width() - 4, extent), color);
    }
    const double top = double(m_firstVisible) * scale;
    const double extent = std::max(3.0, double(m_visibleCount) * scale);
    painter.setPen(m_colors.viewport);
    painter.drawRect(QRectF(0.5, top + 0.5, width() - 1.0, extent - 1.0));
}

void DiffOverview::mousePressEvent(QMouseEvent *event)
{
    if (!m_alignment || height() == 0)
        return;
    const double share = event->position().y() / double(height());
    Q_EMIT rowClicked(qsizetype(share * double(m_alignment->rowCount())));
}

} // namespace mirtex
