#include "core/editor/LineTargets.h"

#include "core/editor/BraceMatch.h"

#include <algorithm>

namespace mirtex {

std::optional<qsizetype> lineForAnswer(const QString &answer, qsizetype lineCount)
{
    const QString trimmed = answer.trimmed();
    QStringView digits = trimmed;
    const bool negative = digits.startsWith(u'-');
    if (negative || digits.startsWith(u'+'))
        digits = digits.sliced(1);
    if (digits.isEmpty()
        || !std::ranges::all_of(digits, [](QChar c) { return c >= u'0' && c <= u'9'; }))
        return std::nullopt;
    const qsizetype last = std::max<qsizetype>(lineCount, 1) - 1;
    if (negative)
        return 0;
    bool ok = false;
    const qlonglong number = digits.toLongLong(&ok);
    if (!ok) // too long for any text
        return last;
    return std::clamp<qlonglong>(number - 1, 0, last);
}

std::optional<qsizetype>
nextBookmarkedLine(const std::vector<qsizetype> &bookmarked, qsizetype currentLine, bool forward)
{
    if (bookmarked.empty())
        return std::nullopt;
    if (forward) {
        const auto after = std::ranges::upper_bound(bookmarked, currentLine);
        return after != bookmarked.end() ? *after : bookmarked.front();
    }
    const auto notBefore = std::ranges::lower_bound(bookmarked, currentLine);
    return notBefore != bookmarked.begin() ? *(notBefore - 1) : bookmarked.back();
}

std::optional<qsizetype> matchingBraceCaret(QStringView text, qsizetype caret)
{
    // matchBraces looks before the caret first: asking just past a bracket checks that one.
    std::optional<BraceMatch> match;
    if (caret < text.size())
        match = matchBraces(text, caret + 1);
    if (!match || match->brace.location != caret || !match->partner) {
        match = caret > 0 ? matchBraces(text, caret) : std::nullopt;
        if (!match || match->brace.location != caret - 1 || !match->partner)
            return std::nullopt;
    }
    const TextRange partner = *match->partner;
    return partner.location > match->brace.location ? partner.end() : partner.location;
}

} // namespace mirtex
