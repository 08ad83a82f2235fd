// One change of a text: a UTF-16 range of the text as it stands and what replaces it. An empty
// range inserts, an empty text deletes.
#pragma once

#include "core/text/TextRange.h"

#include <QString>

namespace mirtex {

struct TextReplacement
{
    TextRange range;
    QString text;

    friend bool operator==(const TextReplacement &, const TextReplacement &) = default;
};

} // namespace mirtex
