// Word runs are read code point by code point with ICU's definition of \w, so that the matches are
// the very ones the regular expression would find, non-ASCII letters and marks included.
#include "core/languages/WordListScanner.h"

#include <unicode/uniset.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>

namespace mirtex {

namespace {

const icu::UnicodeSet &nonAsciiWordCharacters()
{
    static const icu::UnicodeSet set = [] {
        UErrorCode status = U_ZERO_ERROR;
        icu::UnicodeSet s(icu::UnicodeString(u"[\\p{Alphabetic}\\p{Mark}\\p{Decimal_Number}"
                                             u"\\p{Connector_Punctuation}\\u200c\\u200d]"),
                          status);
        s.freeze();
        return s;
    }();
    return set;
}

constexpr std::array<bool, 128> kAsciiWord = [] {
    std::array<bool, 128> table{};
    for (int c = 0; c < 128; ++c)
        table[c] = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')
                   || c == '_' || c == '$';
    return table;
}();

// Word character of the rule's [\w$], with the width in UTF-16 units of the code point at index.
bool isWordAt(QStringView text, qsizetype index, qsizetype *width)
{
    const char16_t unit = text[index].unicode();
    *width = 1;
    if (unit < 128)
        return kAsciiWord[unit];
    char32_t codePoint = unit;
    if (QChar::isHighSurrogate(unit) && index + 1 < text.size()
        && text[index + 1].isLowSurrogate()) {
        codePoint = QChar::surrogateToUcs4(unit, text[index + 1].unicode());
        *width = 2;
    }
    return nonAsciiWordCharacters().contains(static_cast<UChar32>(codePoint));
}

bool isWordBefore(QStringView text, qsizetype index)
{
    qsizetype start = index - 1;
    if (start > 0 && text[start].isLowSurrogate() && text[start - 1].isHighSurrogate())
        --start;
    qsizetype width = 0;
    return isWordAt(text, start, &width);
}

qsizetype runEnd(QStringView text, qsizetype index)
{
    qsizetype width = 0;
    while (index < text.size() && isWordAt(text, index, &width))
        index += width;
    return index;
}

std::u16string folded(QStringView run)
{
    std::u16string result(reinterpret_cast<const char16_t *>(run.utf16()), run.size());
    if (std::all_of(result.begin(), result.end(), [](char16_t c) { return c < 128; })) {
        for (char16_t &c : result) {
            if (c >= u'A' && c <= u'Z')
                c = c - u'A' + u'a';
        }
        return result;
    }
    icu::UnicodeString text(result.data(), static_cast<int32_t>(result.size()));
    text.foldCase();
    return std::u16string(text.getBuffer(), text.length());
}

} // namespace

WordListScanner::WordListScanner(const QStringList &words, bool caseInsensitive)
    : m_caseInsensitive(caseInsensitive)
{
    for (const QString &word : words) {
        m_words.insert(
            caseInsensitive
                ? folded(word)
                : std::u16string(reinterpret_cast<const char16_t *>(word.utf16()), word.size()));
    }
    m_shortest = words.isEmpty() ? 0 : words.front().size();
    for (const QString &word : words) {
        m_shortest = std::min(m_shortest, word.size());
        m_longest = std::max(m_longest, word.size());
    }
    for (const QString &word : words) {
        if (!word.isEmpty() && word.front().unicode() < 128 && word.size() < 64)
            m_lengthsByFirst[word.front().unicode()] |= quint64(1) << word.size();
    }
    if (caseInsensitive) {
        // Full case folding can lengthen a run ("ß" folds to "ss") but never halves it.
        m_shortest = 1;
        m_longest *= 2;
    }
}

bool WordListScanner::canScan(const QStringList &words)
{
    return !words.isEmpty() && std::all_of(words.cbegin(), words.cend(), [](const QString &word) {
        return std::all_of(word.cbegin(), word.cend(), [](QChar ch) {
            return ch.unicode() < 128 && ch != u'$' && kAsciiWord[ch.unicode()];
        });
    });
}

std::optional<TextRange> WordListScanner::nextMatch(QStringView text, qsizetype from) const
{
    qsizetype at = std::max<qsizetype>(from, 0);
    // Inside a run no position can match: its start would have a word character before it.
    if (at > 0 && at < text.size() && isWordBefore(text, at))
        at = runEnd(text, at);
    const char16_t *units = text.utf16();
    const qsizetype size = text.size();
    qsizetype width = 0;
    while (at < size) {
        // ASCII between words is skipped without the general lookup.
        while (at < size && units[at] < 128 && !kAsciiWord[units[at]])
            ++at;
        if (at >= size)
            break;
        if (units[at] >= 128 && !isWordAt(text, at, &width)) {
            at += width;
            continue;
        }
        qsizetype end = at;
        while (end < size && units[end] < 128 && kAsciiWord[units[end]])
            ++end;
        if (end < size && units[end] >= 128)
            end = runEnd(text, end);
        const qsizetype length = end - at;
        if (length >= m_shortest && length <= m_longest && mayContain(units[at], length)
            && contains(text.sliced(at, length)))
            return TextRange{at, length};
        at = end;
    }
    return std::nullopt;
}

bool WordListScanner::mayContain(char16_t first, qsizetype length) const
{
    // Runs of a case-insensitive list, or that start outside ASCII, go to the set itself.
    if (m_caseInsensitive || first >= 128 || length >= 64)
        return true;
    return (m_lengthsByFirst[first] >> length) & 1;
}

bool WordListScanner::contains(QStringView run) const
{
    if (m_caseInsensitive)
        return m_words.contains(folded(run));
    return m_words.contains(
        std::u16string_view(reinterpret_cast<const char16_t *>(run.utf16()), run.size()));
}

} // namespace mirtex
