// What a highlighter needs from a view that shows its document; the editor panes implement it.
#pragma once

#include <QString>

#include <memory>

namespace mirtex {

class SyntaxHighlighter;

// A highlighter holds its targets weakly: a target that is destroyed simply stops being painted,
// and a highlighter with no live target treats its document as not shown (no tokens).
// All calls happen on the main thread.
class HighlightTarget
{
public:
    HighlightTarget() = default;
    HighlightTarget(const HighlightTarget &) = delete;
    HighlightTarget &operator=(const HighlightTarget &) = delete;
    virtual ~HighlightTarget() = default;

    // The document's whole text as a cheap shared snapshot (QString shares its data).
    virtual QString text() const = 0;
    virtual qsizetype textLength() const = 0;
    // Repaint the visible range widened by SyntaxHighlighter::kPaintMargin on both sides from
    // highlighter.tokensIn(range): clear the display colours there, then apply the tokens' ones.
    virtual void paintTokens(const SyntaxHighlighter &highlighter) = 0;

    // Expires when the target is destroyed.
    std::weak_ptr<const void> lifetime() const { return m_lifetime; }

private:
    std::shared_ptr<const void> m_lifetime = std::make_shared<int>(0);
};

} // namespace mirtex
