// The narrow strip beside the compare window's panes: where the differences lie in the whole
// comparison, and which part is on screen. A click scrolls there.
#pragma once

#include "core/compare/DiffAlignment.h"

#include <QColor>
#include <QWidget>

namespace mirtex {

class DiffOverview : public QWidget
{
    Q_OBJECT

public:
    struct Colors
    {
        QColor changed, added, removed, viewport;
    };

    explicit DiffOverview(QWidget *parent = nullptr);

    void setAlignment(const DiffAlignment *alignment, Colors colors);
    void setVisibleRows(qsizetype first, qsizetype count);

    QSize sizeHint() const override { return {14, 100}; }

Q_SIGNALS:
    void rowClicked(qsizetype row);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    const DiffAlignment *m_alignment = nullptr;
    Colors m_colors;
    qsizetype m_firstVisible = 0;
    qsizetype m_visibleCount = 0;
};

} // namespace mirtex
