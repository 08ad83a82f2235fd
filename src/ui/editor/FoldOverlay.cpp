#include "ui/editor/FoldOverlay.h"

#include "ui/editor/EditorFolding.h"
#include "ui/editor/EditorPane.h"

#include <QFontMetrics>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

namespace mirtex {

using Sci = QsciScintillaBase;

namespace {

const QString kEllipsis = QStringLiteral("⋯");

long lineTop(EditorPane &pane, qint64 lineIndex)
{
    const long start = pane.SendScintilla(Sci::SCI_POSITIONFROMLINE, long(lineIndex));
    return pane.SendScintilla(Sci::SCI_POINTYFROMPOSITION, 0UL, start);
}

QFont placeholderFont(EditorPane &pane)
{
    QFont font = pane.font();
    const long zoom = pane.SendScintilla(Sci::SCI_GETZOOM);
    font.setPointSizeF(std::max(4.0, font.pointSizeF() + double(zoom)));
    font.setWeight(QFont::Black);
    return font;
}

// The display lines on screen, each with the line of the text it starts (wrapped rows after the
// first are left out).
template<typename Visit>
void forEachLineOnScreen(EditorPane &pane, Visit visit)
{
    const long first = pane.SendScintilla(Sci::SCI_GETFIRSTVISIBLELINE);
    const long rows = pane.SendScintilla(Sci::SCI_LINESONSCREEN) + 1;
    const long lineCount = pane.SendScintilla(Sci::SCI_GETLINECOUNT);
    for (long row = first; row <= first + rows; ++row) {
        const long line = pane.SendScintilla(Sci::SCI_DOCLINEFROMVISIBLE, row);
        if (line >= lineCount)
            return;
        if (pane.SendScintilla(Sci::SCI_VISIBLEFROMDOCLINE, line) != row)
            continue;
        visit(qint64(line));
        if (line == lineCount - 1)
            return;
    }
}

} // namespace

std::optional<QRect> FoldOverlay::markerRect(EditorPane &pane, qint64 lineIndex) const
{
    const int width = int(pane.SendScintilla(Sci::SCI_GETMARGINWIDTHN, long(kMargin)));
    if (width <= 0)
        return std::nullopt;
    int left = 0;
    for (int margin = 0; margin < kMargin; ++margin)
        left += int(pane.SendScintilla(Sci::SCI_GETMARGINWIDTHN, long(margin)));
    const int height = int(pane.SendScintilla(Sci::SCI_TEXTHEIGHT, long(lineIndex)));
    return QRect(left, int(lineTop(pane, lineIndex)), width, height);
}

std::optional<QRect> FoldOverlay::placeholderRect(EditorPane &pane, qint64 lineIndex) const
{
    if (!m_folding.isFolded(lineIndex))
        return std::nullopt;
    const long end = pane.SendScintilla(Sci::SCI_GETLINEENDPOSITION, long(lineIndex));
    const int x = int(pane.SendScintilla(Sci::SCI_POINTXFROMPOSITION, 0UL, end));
    const int height = int(pane.SendScintilla(Sci::SCI_TEXTHEIGHT, long(lineIndex)));
    const int width = QFontMetrics(placeholderFont(pane)).horizontalAdvance(kEllipsis) + 16;
    return QRect(x + 6, int(lineTop(pane, lineIndex)) + 2, width, std::max(4, height - 4));
}

void FoldOverlay::paintOver(EditorPane &pane, QPainter &painter)
{
    if (m_folding.state().regions().empty())
        return;
    painter.setRenderHint(QPainter::Antialiasing);
    const QFont font = placeholderFont(pane);
    QColor stroke = m_colors.invisibles;
    stroke.setAlphaF(0.6f);
    forEachLineOnScreen(pane, [&](qint64 line) {
        if (!m_folding.state().regionStartingAt(line))
            return;
        const bool folded = m_folding.isFolded(line);
        if (const auto marker = markerRect(pane, line)) {
            // A small triangle: pointing right when folded, down when open.
            const QPointF c = QRectF(*marker).center();
            const double r = std::min(marker->width(), marker->height()) * 0.22;
            QPainterPath path;
            if (folded) {
                path.moveTo(c.x() - r * 0.6, c.y() - r);
                path.lineTo(c.x() + r * 0.9, c.y());
                path.lineTo(c.x() - r * 0.6, c.y() + r);
            } else {
                path.moveTo(c.x() - r, c.y() - r * 0.6);
                path.lineTo(c.x() + r, c.y() - r * 0.6);
                path.lineTo(c.x(), c.y() + r * 0.9);
            }
            path.closeSubpath();
            painter.fillPath(path, folded ? m_colors.gutterCurrent : m_colors.gutterText);
        }
        if (!folded)
            return;
        if (const auto box = placeholderRect(pane, line)) {
            QPainterPath rounded;
            rounded.addRoundedRect(QRectF(*box).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
            painter.fillPath(rounded, m_colors.gutter);
            painter.setPen(QPen(stroke, 1));
            painter.drawPath(rounded);
            painter.setFont(font);
            painter.setPen(m_colors.gutterCurrent);
            painter.drawText(*box, Qt::AlignCenter, kEllipsis);
        }
    });
}

bool FoldOverlay::mousePressed(EditorPane &pane, QMouseEvent &event)
{
    if (event.button() != Qt::LeftButton || m_folding.state().regions().empty())
        return false;
    const QPoint at = event.position().toPoint();
    std::optional<qint64> clicked;
    bool onMarker = false;
    forEachLineOnScreen(pane, [&](qint64 line) {
        if (clicked || !m_folding.state().regionStartingAt(line))
            return;
        if (const auto marker = markerRect(pane, line);
            marker && at.y() >= marker->top() && at.y() <= marker->bottom()
            && at.x() >= marker->left() && at.x() <= marker->right()) {
            clicked = line;
            onMarker = true;
        } else if (const auto box = placeholderRect(pane, line); box && box->contains(at)) {
            clicked = line;
        }
    });
    if (!clicked)
        return false;
    if (onMarker)
        m_folding.toggle(*clicked);
    else
        m_folding.unfold(*clicked);
    return true;
}

} // namespace mirtex
