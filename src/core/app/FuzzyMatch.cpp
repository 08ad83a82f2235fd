#include "core/app/FuzzyMatch.h"

#include <QString>

namespace mirtex {

namespace {

bool startsWord(QStringView text, qsizetype at)
{
    if (at == 0)
        return true;
    if (at >= text.size())
        return false;
    const QChar before = text[at - 1];
    return !before.isLetterOrNumber() || (before.isLower() && text[at].isUpper());
}

} // namespace

std::optional<int> fuzzyScore(QStringView filter, QStringView candidate)
{
    // Greedy, but a later occurrence at a word start is preferred to an earlier one inside a word
    // when the rest still matches; a pass from each word start of the first character keeps it
    // simple and good enough for menu labels.
    std::optional<int> best;
    const QString needle = filter.toString().toCaseFolded().remove(u' ');
    const QString hay = candidate.toString().toCaseFolded();
    if (needle.isEmpty())
        return 0;
    for (qsizetype start = hay.indexOf(needle.front()); start >= 0;
         start = hay.indexOf(needle.front(), start + 1)) {
        int score = 0;
        qsizetype at = start;
        qsizetype previous = -2;
        bool matched = true;
        for (const QChar c : needle) {
            at = hay.indexOf(c, at);
            if (at < 0) {
                matched = false;
                break;
            }
            score += 1;
            if (at == previous + 1)
                score += 8;
            if (startsWord(candidate, at))
                score += 6;
            previous = at;
            ++at;
        }
        if (!matched)
            break;
        score -= int(start / 4); // earlier is a little better
        if (!best || score > *best)
            best = score;
    }
    return best;
}

} // namespace mirtex
