// A span of text in UTF-16 code units: the one range type of the program.
#pragma once

#include <QtGlobal>

namespace mirtex {

struct TextRange
{
    qsizetype location = 0;
    qsizetype length = 0;

    constexpr qsizetype end() const { return location + length; }

    constexpr bool contains(qsizetype utf16Offset) const
    {
        return utf16Offset >= location && utf16Offset < end();
    }

    friend constexpr bool operator==(const TextRange &, const TextRange &) = default;
};

} // namespace mirtex
