// One coloured stretch of text: UTF-16 location and length (at least 1) and its kind.
#pragma once

#include "core/languages/TokenKind.h"

#include <QtGlobal>

namespace mirtex {

struct Token
{
    qint64 location = 0;
    qint64 length = 0;
    TokenKind kind = TokenKind::comment;

    constexpr qint64 end() const { return location + length; }

    friend constexpr bool operator==(const Token &, const Token &) = default;
};

} // namespace mirtex
