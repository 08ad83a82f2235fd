// Finds the matches of a word-list rule by looking whole runs of word characters up in a set,
// instead of running the rule's long alternation at every position.
#pragma once

#include "core/text/TextRange.h"

#include <QStringList>
#include <QStringView>

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

namespace mirtex {

// Equivalent to the pattern "(?<![\w$])(?:w1|w2|...)(?![\w$])" (wrapped in "(?i:...)" when
// caseInsensitive) for words made of ASCII letters, digits and "_" only: such a match is always a
// whole run of characters from [\w$], so it exists exactly where a run equals one of the words
// (after full case folding when caseInsensitive). \w is ICU's: letters, marks, decimal digits,
// connector punctuation, ZWNJ and ZWJ. Immutable after construction; usable from any thread.
class WordListScanner
{
public:
    WordListScanner(const QStringList &words, bool caseInsensitive);

    // Whether a rule's words can be scanned this way.
    static bool canScan(const QStringList &words);

    // The first match starting at or after from, or nothing.
    std::optional<TextRange> nextMatch(QStringView text, qsizetype from) const;

private:
    bool contains(QStringView run) const;
    // False when no word of a case-sensitive list starts with `first` and has `length` units: a
    // cheap test before hashing the run.
    bool mayContain(char16_t first, qsizetype length) const;

    struct Hash
    {
        using is_transparent = void;

        std::size_t operator()(std::u16string_view s) const
        {
            return std::hash<std::u16string_view>{}(s);
        }
    };

    std::unordered_set<std::u16string, Hash, std::equal_to<>>
        m_words; // folded if m_caseInsensitive
    bool m_caseInsensitive = false;
    qsizetype m_shortest = 0;
    qsizetype m_longest = 0;
    // Bit n of entry c: some word starts with ASCII c and has n units (n < 64).
    std::array<quint64, 128> m_lengthsByFirst{};
};

} // namespace mirtex
