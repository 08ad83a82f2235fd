// Tokens follow every edit at a cost bounded by the edited lines; the exact colouring of large
// texts comes from a full pass off the main thread, dropped if an edit or a new language overtook
// it.
#include "core/languages/SyntaxHighlighter.h"

#include "core/languages/Tokenizer.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPointer>
#include <QThreadPool>

#include <algorithm>
#include <cstdio>

namespace mirtex {

namespace {

// One serial queue for every document's full passes.
QThreadPool *highlightQueue()
{
    static QThreadPool *queue = [] {
        auto *pool = new QThreadPool;
        pool->setMaxThreadCount(1);
        pool->setObjectName(QStringLiteral("mirtex.highlight"));
        // A pass still running at exit must not post to a half-destroyed application.
        qAddPostRoutine([] { highlightQueue()->waitForDone(); });
        return pool;
    }();
    return queue;
}

} // namespace

TextRange lineRangeOf(QStringView text, TextRange range)
{
    const qint64 length = text.size();
    const qint64 location = std::clamp<qint64>(range.location, 0, length);
    const qint64 end = std::clamp<qint64>(range.end(), location, length);
    const qint64 start = location == 0 ? 0 : text.lastIndexOf(u'\n', location - 1) + 1;
    const qint64 searchFrom = end > location ? end - 1 : location;
    const qsizetype newline = searchFrom < length ? text.indexOf(u'\n', searchFrom) : -1;
    const qint64 lineEnd = newline < 0 ? length : newline + 1;
    return TextRange{start, lineEnd - start};
}

SyntaxHighlighter::SyntaxHighlighter(HighlightTarget *target, LanguagePtr language, QObject *parent)
    : QObject(parent)
    , m_language(language ? std::move(language) : Language::text())
{
    m_passTimer.setSingleShot(true);
    connect(&m_passTimer, &QTimer::timeout, this, &SyntaxHighlighter::startPass);
    if (target)
        attach(target);
}

SyntaxHighlighter::~SyntaxHighlighter() = default;

void SyntaxHighlighter::attach(HighlightTarget *target)
{
    detach(target);
    m_targets.append(WeakTarget{target, target->lifetime()});
}

void SyntaxHighlighter::detach(HighlightTarget *target)
{
    m_targets.removeIf([target](const WeakTarget &entry) {
        return entry.target == target || entry.lifetime.expired();
    });
}

void SyntaxHighlighter::setLanguage(LanguagePtr language)
{
    m_language = language ? std::move(language) : Language::text();
    rehighlight();
}

void SyntaxHighlighter::rehighlight()
{
    ++m_generation;
    // The tokens computed here already reflect every edit of an open batch.
    m_pendingEdits.clear();
    HighlightTarget *target = liveTarget();
    if (!target || !canHighlight(target->textLength())) {
        m_tokens.clear();
        repaint();
        return;
    }
    const QString text = target->text();
    if (text.size() > kSynchronousLimit) {
        const qint64 prefixEnd
            = lineRangeOf(text, TextRange{std::min<qint64>(text.size(), kFirstScreenPrefix), 0})
                  .end();
        m_tokens.assign(tokenize(*m_language, QStringView(text).first(prefixEnd)));
        schedulePass(0);
    } else {
        m_tokens.assign(tokenize(*m_language, text));
    }
    repaint();
}

void SyntaxHighlighter::textDidChange(TextRange editedRange, qint64 delta)
{
    ++m_generation;
    HighlightTarget *target = liveTarget();
    if (!target || !canHighlight(target->textLength())) {
        m_tokens.clear();
        return;
    }
    const qint64 oldEnd = editedRange.end() - delta;
    if (m_batchDepth < 1) {
        const QString text = target->text();
        if (text.size() > kSynchronousLimit) {
            m_tokens.applyEdit(TokenEdit{editedRange.location, oldEnd, delta});
            retokenizeRange(text, editedRange);
            schedulePass(kPassDelayAfterEditMs);
        } else {
            m_tokens.assign(tokenize(*m_language, text));
        }
        return;
    }
    if (!m_pendingEdits.isEmpty() && m_pendingEdits.constLast().start < oldEnd)
        applyPendingEdits();
    m_pendingEdits.append(TokenEdit{editedRange.location, oldEnd, delta});
    if (!m_batchRange) {
        m_batchRange = editedRange;
        return;
    }
    // Carry the earlier range through this edit, then take the union with the edited range.
    const TextRange previous = *m_batchRange;
    const qint64 start
        = previous.location >= oldEnd ? previous.location + delta : previous.location;
    const qint64 end = previous.end() >= oldEnd ? previous.end() + delta : previous.end();
    const qint64 unionStart = std::min(start, editedRange.location);
    const qint64 unionEnd = std::max(end, editedRange.end());
    m_batchRange = TextRange{unionStart, unionEnd - unionStart};
}

void SyntaxHighlighter::beginBatch()
{
    ++m_batchDepth;
}

void SyntaxHighlighter::endBatch()
{
    m_batchDepth = std::max(0, m_batchDepth - 1);
    if (m_batchDepth > 0)
        return;
    applyPendingEdits();
    if (!m_batchRange)
        return;
    const TextRange range = *m_batchRange;
    m_batchRange.reset();
    HighlightTarget *target = liveTarget();
    if (!target || !canHighlight(target->textLength())) {
        m_tokens.clear();
        return;
    }
    const QString text = target->text();
    if (text.size() > kSynchronousLimit) {
        if (range.length <= kBatchRepairLimit)
            retokenizeRange(text, range);
        schedulePass(kPassDelayAfterEditMs);
    } else {
        m_tokens.assign(tokenize(*m_language, text));
    }
}

void SyntaxHighlighter::setOnTokensChanged(std::function<void()> callback)
{
    m_onTokensChanged = std::move(callback);
}

void SyntaxHighlighter::repaint()
{
    // Painting may run arbitrary view code; iterate over a copy.
    const QList<WeakTarget> targets = m_targets;
    for (const WeakTarget &entry : targets) {
        if (!entry.lifetime.expired())
            entry.target->paintTokens(*this);
    }
}

HighlightTarget *SyntaxHighlighter::liveTarget() const
{
    for (const WeakTarget &entry : m_targets) {
        if (!entry.lifetime.expired())
            return entry.target;
    }
    return nullptr;
}

bool SyntaxHighlighter::canHighlight(qint64 textLength) const
{
    return m_language->hasRegex() && textLength <= kNoHighlightLimit;
}

void SyntaxHighlighter::retokenizeRange(const QString &text, TextRange range)
{
    // Whole lines, except on a very long line (minified code): there only a window around the
    // edit is repaired, so a keystroke never re-reads megabytes; the full pass that follows
    // colours the line exactly.
    const qint64 length = text.size();
    qint64 start = std::clamp<qint64>(range.location, 0, length);
    qint64 end = std::clamp<qint64>(range.end(), start, length);
    const qint64 startLimit = std::max<qint64>(0, start - kLongLineRepairWindow);
    const qint64 endLimit = std::min(length, end + kLongLineRepairWindow);
    while (start > startLimit && text[start - 1] != u'\n')
        --start;
    while (end < endLimit && text[end] != u'\n')
        ++end;
    if (end < length && text[end] == u'\n')
        ++end; // a line range holds its terminator
    const TextRange lines{start, end - start};
    QList<Token> fresh
        = tokenize(*m_language, QStringView(text).sliced(lines.location, lines.length));
    for (Token &token : fresh)
        token.location += lines.location;
    m_tokens.replace(lines.location, lines.end(), fresh);
}

void SyntaxHighlighter::applyPendingEdits()
{
    m_tokens.applyEdits(m_pendingEdits);
    m_pendingEdits.clear();
}

void SyntaxHighlighter::schedulePass(int delayMs)
{
    m_passTimer.start(delayMs);
}

void SyntaxHighlighter::startPass()
{
    HighlightTarget *target = liveTarget();
    if (!target || !m_language->hasRegex() || target->textLength() > kNoHighlightLimit)
        return;
    const QString text = target->text();
    const quint64 generation = m_generation;
    const LanguagePtr language = m_language;
    const QPointer<SyntaxHighlighter> self(this);
    ++m_passesInFlight;
    highlightQueue()->start([text, generation, language, self] {
        QElapsedTimer clock;
        clock.start();
        const QList<Token> tokens = tokenize(*language, text);
        if (qEnvironmentVariableIsSet("MIRTEX_DEBUG")) {
            std::printf("highlight pass: %lld tokens in %.2f s\n",
                        static_cast<long long>(tokens.size()),
                        static_cast<double>(clock.nsecsElapsed()) / 1e9);
            std::fflush(stdout);
        }
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [self, generation, language, tokens] {
                if (self)
                    self->installPass(generation, language, tokens);
            },
            Qt::QueuedConnection);
    });
}

void SyntaxHighlighter::installPass(quint64 generation,
                                    const LanguagePtr &language,
                                    const QList<Token> &tokens)
{
    m_passesInFlight = std::max(0, m_passesInFlight - 1);
    if (generation != m_generation || language != m_language)
        return; // a newer edit, rehighlight or language superseded this pass
    m_tokens.assign(tokens);
    m_pendingEdits.clear(); // an open batch's edits so far are already in these tokens
    repaint();
    if (m_onTokensChanged)
        m_onTokensChanged();
}

} // namespace mirtex
