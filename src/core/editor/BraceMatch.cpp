// Bracket matching by depth counting over one kind of bracket, bounded in distance.
#include "core/editor/BraceMatch.h"

#include <algorithm>

namespace mirtex {

namespace {

// The partner of a bracket and the direction in which it lies (+1 forward, -1 backward).
struct Partner
{
    char16_t unit = 0;
    int direction = 0;
};

std::optional<Partner> partnerOf(char16_t unit)
{
    switch (unit) {
    case u'(':
        return Partner{u')', 1};
    case u'[':
        return Partner{u']', 1};
    case u'{':
        return Partner{u'}', 1};
    case u')':
        return Partner{u'(', -1};
    case u']':
        return Partner{u'[', -1};
    case u'}':
        return Partner{u'{', -1};
    default:
        return std::nullopt;
    }
}

std::optional<qsizetype>
findPartner(QStringView text, qsizetype at, Partner partner, qsizetype scanLimit)
{
    const char16_t self = text[at].unicode();
    int depth = 0;
    if (partner.direction > 0) {
        const qsizetype stop = std::min(text.size(), at + 1 + scanLimit);
        for (qsizetype i = at + 1; i < stop; ++i) {
            const char16_t unit = text[i].unicode();
            if (unit == self)
                ++depth;
            else if (unit == partner.unit && depth-- == 0)
                return i;
        }
    } else {
        const qsizetype stop = std::max<qsizetype>(0, at - scanLimit);
        for (qsizetype i = at - 1; i >= stop; --i) {
            const char16_t unit = text[i].unicode();
            if (unit == self)
                ++depth;
            else if (unit == partner.unit && depth-- == 0)
                return i;
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<BraceMatch> matchBraces(QStringView text, qsizetype caret, qsizetype scanLimit)
{
    if (caret < 0 || caret > text.size())
        return std::nullopt;
    for (const qsizetype at : {caret - 1, caret}) {
        if (at < 0 || at >= text.size())
            continue;
        const auto partner = partnerOf(text[at].unicode());
        if (!partner)
            continue;
        BraceMatch match{TextRange{at, 1}, std::nullopt};
        if (const auto found = findPartner(text, at, *partner, scanLimit))
            match.partner = TextRange{*found, 1};
        return match;
    }
    return std::nullopt;
}

} // namespace mirtex
