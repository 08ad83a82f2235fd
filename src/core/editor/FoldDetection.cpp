#include "core/editor/FoldDetection.h"

#include <algorithm>

namespace mirtex {

namespace {

// Counts LFs forward through a text for offsets that never decrease.
class LineCursor
{
public:
    explicit LineCursor(QStringView text)
        : m_text(text)
    {}

    qint64 lineAt(qint64 offset)
    {
        offset = std::clamp<qint64>(offset, 0, m_text.size());
        if (offset > m_offset) {
            const char16_t *units = reinterpret_cast<const char16_t *>(m_text.data());
            m_line += std::count(units + m_offset, units + offset, u'\n');
            m_offset = offset;
        }
        return m_line;
    }

private:
    QStringView m_text;
    qint64 m_offset = 0;
    qint64 m_line = 0;
};

bool isSkipKind(TokenKind kind)
{
    return kind == TokenKind::comment || kind == TokenKind::string;
}

} // namespace

qint64 foldLineCount(QStringView text)
{
    const char16_t *units = reinterpret_cast<const char16_t *>(text.data());
    return std::count(units, units + text.size(), u'\n') + 1;
}

std::vector<FoldLines> braceFoldLines(QStringView text, const QList<Token> *tokens)
{
    // The open brackets, with the positions of each kind in it, so that finding the nearest
    // opener of a kind costs nothing however deep the nesting or however many closers lack one.
    std::vector<qint64> openLines;
    std::vector<std::size_t> braces;   // indexes into openLines of the "{"s
    std::vector<std::size_t> brackets; // and of the "["s
    std::vector<FoldLines> pairs;
    const char16_t *units = reinterpret_cast<const char16_t *>(text.data());
    const qint64 length = text.size();
    // Skip ranges are walked with a cursor that only moves forward.
    qsizetype skip = 0;
    const qsizetype skipCount = tokens ? tokens->size() : 0;
    auto skipped = [&](qint64 offset) {
        while (skip < skipCount
               && ((*tokens)[skip].end() <= offset || !isSkipKind((*tokens)[skip].kind)))
            ++skip;
        return skip < skipCount && (*tokens)[skip].location <= offset;
    };
    qint64 line = 0;
    for (qint64 i = 0; i < length; ++i) {
        const char16_t c = units[i];
        if (c == u'\n') {
            ++line;
            continue;
        }
        // "[" and "]" differ from "{" and "}" only in bit 0x20.
        const char16_t folded = c | 0x20;
        if (folded != u'{' && folded != u'}')
            continue;
        if (skipped(i))
            continue;
        if (c == u'{' || c == u'[') {
            (c == u'{' ? braces : brackets).push_back(openLines.size());
            openLines.push_back(line);
            continue;
        }
        std::vector<std::size_t> &same = c == u'}' ? braces : brackets;
        std::vector<std::size_t> &other = c == u'}' ? brackets : braces;
        if (same.empty())
            continue;
        const std::size_t at = same.back();
        same.pop_back();
        while (!other.empty() && other.back() > at)
            other.pop_back();
        const qint64 openLine = openLines[at];
        openLines.resize(at);
        if (openLine < line)
            pairs.push_back({openLine, line});
    }
    // "} else {": a block ending on the line where another starts ends one line earlier, so the
    // next block keeps its header visible.
    std::vector<qint64> starts;
    starts.reserve(pairs.size());
    for (const FoldLines &p : pairs)
        starts.push_back(p.start);
    std::sort(starts.begin(), starts.end());
    for (FoldLines &p : pairs) {
        if (std::binary_search(starts.begin(), starts.end(), p.end))
            --p.end;
    }
    appendCommentFoldLines(text, tokens, pairs);
    return pairs;
}

void appendCommentFoldLines(QStringView text,
                            const QList<Token> *tokens,
                            std::vector<FoldLines> &lines)
{
    if (!tokens)
        return;
    LineCursor cursor(text);
    for (const Token &token : *tokens) {
        if (token.kind != TokenKind::comment || token.length < 2)
            continue;
        const qint64 first = cursor.lineAt(token.location);
        const qint64 last = cursor.lineAt(token.end() - 1);
        if (last > first)
            lines.push_back({first, last});
    }
}

std::vector<FoldRegion> normaliseFoldLines(const std::vector<FoldLines> &pairs, qint64 lineCount)
{
    // The largest end per start line, bucketed by line: linear, and sorted for free.
    std::vector<FoldLines> kept;
    if (pairs.empty())
        return {};
    const bool sparse = qint64(pairs.size()) * 16 < lineCount;
    if (sparse) {
        kept = pairs;
        std::sort(kept.begin(), kept.end(), [](const FoldLines &a, const FoldLines &b) {
            return a.start != b.start ? a.start < b.start : a.end > b.end;
        });
        std::erase_if(kept, [lineCount](const FoldLines &p) {
            return p.start < 0 || p.end >= lineCount || p.end <= p.start;
        });
        kept.erase(
            std::unique(kept.begin(),
                        kept.end(),
                        [](const FoldLines &a, const FoldLines &b) { return a.start == b.start; }),
            kept.end());
    } else {
        std::vector<qint64> endOf(std::size_t(lineCount), -1);
        for (const FoldLines &p : pairs) {
            if (p.start >= 0 && p.end < lineCount && p.end > p.start)
                endOf[std::size_t(p.start)] = std::max(endOf[std::size_t(p.start)], p.end);
        }
        for (qint64 line = 0; line < lineCount; ++line) {
            if (endOf[std::size_t(line)] >= 0)
                kept.push_back({line, endOf[std::size_t(line)]});
        }
    }
    std::vector<FoldRegion> regions;
    regions.reserve(kept.size());
    std::vector<qint64> openEnds;
    for (const FoldLines &p : kept) {
        while (!openEnds.empty() && openEnds.back() < p.start)
            openEnds.pop_back();
        regions.push_back({p.start, p.end, int(openEnds.size()) + 1});
        openEnds.push_back(p.end);
    }
    return regions;
}

std::vector<FoldRegion> detectFoldRegions(const FoldInput &input)
{
    std::vector<FoldLines> pairs;
    switch (input.style) {
    case FoldStyle::braces:
        pairs = braceFoldLines(input.text, input.tokens);
        break;
    case FoldStyle::indentation:
        pairs = indentationFoldLines(input.text, input.tabWidth);
        break;
    case FoldStyle::headings:
        pairs = headingFoldLines(input.text);
        break;
    case FoldStyle::tags:
        pairs = tagFoldLines(input.text, input.htmlTags, input.tokens);
        appendCommentFoldLines(input.text, input.tokens, pairs);
        break;
    case FoldStyle::sections:
        pairs = sectionFoldLines(input.text);
        break;
    case FoldStyle::none:
        return {};
    }
    if (pairs.empty())
        return {};
    return normaliseFoldLines(pairs, foldLineCount(input.text));
}

} // namespace mirtex
