// Keeps one document's tokens in step with its text: synchronous re-tokenization of small texts,
// local line repair plus a debounced background full pass for large ones, nothing for enormous
// ones.
#pragma once

#include "core/languages/HighlightTarget.h"
#include "core/languages/Language.h"
#include "core/languages/TokenList.h"
#include "core/text/TextRange.h"

#include <QList>
#include <QObject>
#include <QTimer>

#include <functional>
#include <optional>

namespace mirtex {

// Main thread only. Offsets and lengths are UTF-16 units. Invariant: tokens() is sorted, never
// overlapping, every token at least one unit long and inside the text.
class SyntaxHighlighter : public QObject
{
    Q_OBJECT

public:
    static constexpr qint64 kNoHighlightLimit = 8'000'000; // longer texts get no tokens
    static constexpr qint64 kSynchronousLimit = 30'000;    // re-tokenized whole on every change
    static constexpr qint64 kFirstScreenPrefix = 30'000;   // first pass of a longer text
    static constexpr qint64 kBatchRepairLimit = 100'000;   // larger batches wait for the full pass
    static constexpr qint64 kPaintMargin = 3'000; // painted beyond the visible range, each side
    static constexpr int kPassDelayAfterEditMs = 300;
    // On lines longer than this, an edit repairs only this much on each side of it.
    static constexpr qint64 kLongLineRepairWindow = 10'000;

    SyntaxHighlighter(HighlightTarget *target, LanguagePtr language, QObject *parent = nullptr);
    ~SyntaxHighlighter() override;

    void attach(HighlightTarget *target);
    void detach(HighlightTarget *target);

    const LanguagePtr &language() const { return m_language; }

    // Replaces the language and rehighlights; a pass in flight for the old one is dropped.
    void setLanguage(LanguagePtr language);
    void rehighlight();

    // For every change of characters: editedRange in the new text, delta = new length - old.
    void textDidChange(TextRange editedRange, qint64 delta);
    // Brackets a group of edits (multi-caret typing, replace all...) so repair happens once.
    void beginBatch();
    void endBatch();

    // Whether edits are being gathered between beginBatch and endBatch.
    bool isInBatch() const { return m_batchDepth > 0; }

    QList<Token> tokens() const { return m_tokens.toList(); }

    // The tokens intersecting range, cut to it: what a target paints.
    QList<Token> tokensIn(TextRange range) const { return m_tokens.intersecting(range); }

    quint64 generation() const { return m_generation; }

    // Whether a full pass is scheduled or running and not yet installed or dropped.
    bool isPassPending() const { return m_passTimer.isActive() || m_passesInFlight > 0; }

    // Whether a full pass has been handed to the background queue and not yet come back.
    bool isPassRunning() const { return m_passesInFlight > 0; }

    // Called after a background pass has installed new tokens.
    void setOnTokensChanged(std::function<void()> callback);
    // Asks every live target to repaint (after a theme change, after edits).
    void repaint();

private:
    struct WeakTarget
    {
        HighlightTarget *target = nullptr;
        std::weak_ptr<const void> lifetime;
    };

    HighlightTarget *liveTarget() const;
    // True when the text may be highlighted: a live target, an expression, not too long.
    bool canHighlight(qint64 textLength) const;
    void retokenizeRange(const QString &text, TextRange range);
    void schedulePass(int delayMs);
    void startPass();
    void installPass(quint64 generation, const LanguagePtr &language, const QList<Token> &tokens);
    void applyPendingEdits();

    QList<WeakTarget> m_targets;
    LanguagePtr m_language;
    TokenList m_tokens;
    quint64 m_generation = 0;
    QTimer m_passTimer;
    int m_passesInFlight = 0;
    std::function<void()> m_onTokensChanged;
    int m_batchDepth = 0;
    std::optional<TextRange> m_batchRange;
    QList<TokenEdit> m_pendingEdits;
};

// The line range (terminator included) containing range, found by scanning for '\n'.
TextRange lineRangeOf(QStringView text, TextRange range);

} // namespace mirtex
