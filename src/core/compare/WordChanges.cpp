#include "WordChanges.h"

#include "core/compare/LineMatcher.h"
#include "core/compare/TextDiff.h"

#include <QChar>
#include <QHash>
#include <QString>

namespace mirtex {

namespace {

struct WordToken
{
    TextRange range;
    QString comparisonText;
};

bool isWordUnit(char16_t unit)
{
    const QChar c(unit);
    return c.isLetterOrNumber() || c.isMark() || unit == u'_';
}

// Runs of word characters, runs of white space, and single composed characters (a base with its
// combining marks, or a surrogate pair). A surrogate always stands alone and ends a run.
std::vector<WordToken> tokenize(QStringView line, DiffOptions options)
{
    std::vector<WordToken> tokens;
    const qsizetype length = line.size();
    qsizetype at = 0;
    while (at < length) {
        const char16_t unit = line[at].unicode();
        qsizetype end = at + 1;
        bool space = false;
        if (QChar::isSurrogate(unit)) {
            if (QChar::isHighSurrogate(unit) && end < length && line[end].isLowSurrogate())
                ++end;
            while (end < length && !line[end].isSurrogate() && line[end].isMark())
                ++end;
        } else if (isHorizontalSpace(unit)) {
            space = true;
            while (end < length && isHorizontalSpace(line[end].unicode()))
                ++end;
        } else if (isWordUnit(unit)) {
            while (end < length && !line[end].isSurrogate() && isWordUnit(line[end].unicode()))
                ++end;
        } else {
            while (end < length && !line[end].isSurrogate() && line[end].isMark())
                ++end;
        }
        if (!(space && options.ignoreWhitespace)) {
            QString text = line.mid(at, end - at).toString();
            if (options.ignoreCase)
                text = std::move(text).toLower();
            tokens.push_back({{at, end - at}, std::move(text)});
        }
        at = end;
    }
    return tokens;
}

bool onlySpaceBetween(QStringView line, qsizetype from, qsizetype to)
{
    for (qsizetype i = from; i < to; ++i) {
        if (!line[i].isSpace() && !isHorizontalSpace(line[i].unicode()))
            return false;
    }
    return true;
}

std::vector<TextRange> unmatchedRanges(QStringView line,
                                       const std::vector<WordToken> &tokens,
                                       const std::vector<bool> &matched)
{
    std::vector<TextRange> ranges;
    for (size_t t = 0; t < tokens.size(); ++t) {
        if (matched[t])
            continue;
        const TextRange token = tokens[t].range;
        if (!ranges.empty() && onlySpaceBetween(line, ranges.back().end(), token.location))
            ranges.back().length = token.end() - ranges.back().location;
        else
            ranges.push_back(token);
    }
    return ranges;
}

} // namespace

std::optional<WordChangeRanges>
wordChanges(QStringView left, QStringView right, DiffOptions options)
{
    if (left.isEmpty() || right.isEmpty() || left.size() >= kWordCompareLimit
        || right.size() >= kWordCompareLimit)
        return std::nullopt;
    const std::vector<WordToken> leftTokens = tokenize(left, options);
    const std::vector<WordToken> rightTokens = tokenize(right, options);

    QHash<QString, int32_t> dictionary;
    dictionary.reserve(qsizetype(leftTokens.size() + rightTokens.size()));
    auto keysOf = [&dictionary](const std::vector<WordToken> &tokens) {
        std::vector<int32_t> keys;
        keys.reserve(tokens.size());
        for (const WordToken &token : tokens) {
            auto it = dictionary.constFind(token.comparisonText);
            if (it == dictionary.constEnd())
                it = dictionary.insert(token.comparisonText, int32_t(dictionary.size()));
            keys.push_back(it.value());
        }
        return keys;
    };
    const std::vector<int32_t> leftKeys = keysOf(leftTokens);
    const std::vector<int32_t> rightKeys = keysOf(rightTokens);
    const std::vector<LineMatch> matches
        = matchLines(leftKeys, rightKeys, int32_t(dictionary.size()));

    std::vector<bool> leftMatched(leftTokens.size(), false);
    std::vector<bool> rightMatched(rightTokens.size(), false);
    qsizetype matchedLength = 0;
    for (const LineMatch &match : matches) {
        leftMatched[size_t(match.left)] = true;
        rightMatched[size_t(match.right)] = true;
        matchedLength += leftTokens[size_t(match.left)].range.length;
    }
    const double similarity = double(matchedLength) / double(std::max(left.size(), right.size()));
    if (similarity < kWordSimilarityFloor)
        return std::nullopt;
    return WordChangeRanges{unmatchedRanges(left, leftTokens, leftMatched),
                            unmatchedRanges(right, rightTokens, rightMatched)};
}

} // namespace mirtex
