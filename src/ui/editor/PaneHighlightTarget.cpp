#include "ui/editor/PaneHighlightTarget.h"

#include "core/languages/SyntaxHighlighter.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"
#include "ui/editor/TextPositions.h"

namespace mirtex {

using Sci = QsciScintillaBase;

PaneHighlightTarget::PaneHighlightTarget(EditorView &view,
                                         EditorPane *pane,
                                         SyntaxHighlighter &highlighter)
    : QObject(pane)
    , m_view(view)
    , m_pane(pane)
    , m_highlighter(highlighter)
{
    // Repainted once an edit's notifications are over (never inside them), and when the pane
    // scrolls or grows and exposes other text.
    connect(pane, &Sci::SCN_UPDATEUI, this, [this]() {
        const int first = int(m_pane->SendScintilla(Sci::SCI_GETFIRSTVISIBLELINE));
        const int lines = int(m_pane->SendScintilla(Sci::SCI_LINESONSCREEN));
        if (first != m_lastFirstLine || lines != m_lastLinesOnScreen
            || m_highlighter.generation() != m_paintedGeneration)
            paintTokens(m_highlighter);
    });
}

QString PaneHighlightTarget::text() const
{
    return m_view.text();
}

qsizetype PaneHighlightTarget::textLength() const
{
    return m_view.textLength();
}

TextRange PaneHighlightTarget::visibleRange() const
{
    const long firstDisplayLine = m_pane->SendScintilla(Sci::SCI_GETFIRSTVISIBLELINE);
    const long linesOnScreen = m_pane->SendScintilla(Sci::SCI_LINESONSCREEN);
    const long firstLine = m_pane->SendScintilla(Sci::SCI_DOCLINEFROMVISIBLE, firstDisplayLine);
    const long lastLine
        = m_pane->SendScintilla(Sci::SCI_DOCLINEFROMVISIBLE, firstDisplayLine + linesOnScreen + 1);
    const long fromByte = m_pane->SendScintilla(Sci::SCI_POSITIONFROMLINE, firstLine);
    const long toByte = m_pane->SendScintilla(Sci::SCI_GETLINEENDPOSITION, lastLine);
    return m_view.positions().toUtf16Range(fromByte, toByte);
}

void PaneHighlightTarget::paintTokens(const SyntaxHighlighter &highlighter)
{
    m_paintedGeneration = highlighter.generation();
    m_lastFirstLine = int(m_pane->SendScintilla(Sci::SCI_GETFIRSTVISIBLELINE));
    m_lastLinesOnScreen = int(m_pane->SendScintilla(Sci::SCI_LINESONSCREEN));
    const TextPositions &positions = m_view.positions();
    const qsizetype length = positions.utf16Length();
    if (length == 0)
        return;
    const TextRange visible = visibleRange();
    const qsizetype from
        = std::max<qsizetype>(0, visible.location - SyntaxHighlighter::kPaintMargin);
    const qsizetype to = std::min(length, visible.end() + SyntaxHighlighter::kPaintMargin);
    const TextRange paint{from, to - from};

    const long fromByte = long(positions.toByte(paint.location));
    const long toByte = long(positions.toByte(paint.end()));
    m_pane->SendScintilla(Sci::SCI_STARTSTYLING, fromByte, 0L);
    m_pane->SendScintilla(Sci::SCI_SETSTYLING, toByte - fromByte, 0L);
    if (length > SyntaxHighlighter::kNoHighlightLimit)
        return;

    // Tokens come sorted, so one forward walk over the painted bytes converts every boundary.
    TextPositions::ForwardWalk walk = positions.walk(fromByte, toByte);
    for (const Token &token : highlighter.tokensIn(paint)) {
        const qsizetype start = std::max<qsizetype>(token.location, paint.location);
        const qsizetype end = std::min<qsizetype>(token.end(), paint.end());
        if (end <= start)
            continue;
        const long startByte = long(walk.byteAt(start));
        const long endByte = long(walk.byteAt(end));
        m_pane->SendScintilla(Sci::SCI_STARTSTYLING, startByte, 0L);
        m_pane->SendScintilla(
            Sci::SCI_SETSTYLING, endByte - startByte, long(kFirstTokenStyle + int(token.kind)));
    }
}

} // namespace mirtex
