// Makes test failures show ranges as "[location+length]" instead of raw bytes.
#pragma once

#include "core/text/TextRange.h"

#include <ostream>

namespace mirtex {

inline void PrintTo(const TextRange &range, std::ostream *out)
{
    *out << '[' << range.location << '+' << range.length << ']';
}

} // namespace mirtex
