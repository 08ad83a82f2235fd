// Paints a highlighter's tokens into one pane as Scintilla styles: only the visible range widened
// by the paint margin, again whenever the pane scrolls or resizes. Styles are display-only: they
// are never saved or copied with the text.
#pragma once

#include "core/languages/HighlightTarget.h"
#include "core/text/TextRange.h"

#include <QObject>

namespace mirtex {

class EditorPane;
class EditorView;

class PaneHighlightTarget : public QObject, public HighlightTarget
{
    Q_OBJECT

public:
    // Style numbers: 0 is plain text, token kind k is painted with style k + 1.
    static constexpr int kFirstTokenStyle = 1;

    PaneHighlightTarget(EditorView &view, EditorPane *pane, SyntaxHighlighter &highlighter);

    QString text() const override;
    qsizetype textLength() const override;
    void paintTokens(const SyntaxHighlighter &highlighter) override;

private:
    TextRange visibleRange() const;

    EditorView &m_view;
    EditorPane *m_pane;
    SyntaxHighlighter &m_highlighter;
    int m_lastFirstLine = -1;
    int m_lastLinesOnScreen = -1;
    quint64 m_paintedGeneration = ~quint64(0);
};

} // namespace mirtex
