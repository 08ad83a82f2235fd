// The kinds of coloured stretch the highlighter produces; the raw value indexes colour tables.
#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace mirtex {

enum class TokenKind : std::uint8_t {
    comment,
    string,
    number,
    keyword,
    type,
    preprocessor,
    tag,
    attribute,
    heading,
    variable,
    added,
    removed,
    meta,
    emphasis,
    link,
};

inline constexpr int kTokenKindCount = 15;

QString toString(TokenKind kind);
std::optional<TokenKind> tokenKindFromString(const QString &name);

} // namespace mirtex
