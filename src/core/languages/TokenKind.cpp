#include "core/languages/TokenKind.h"

#include <array>

namespace mirtex {

namespace {
constexpr std::array<const char *, kTokenKindCount> kNames = {"comment",
                                                              "string",
                                                              "number",
                                                              "keyword",
                                                              "type",
                                                              "preprocessor",
                                                              "tag",
                                                              "attribute",
                                                              "heading",
                                                              "variable",
                                                              "added",
                                                              "removed",
                                                              "meta",
                                                              "emphasis",
                                                              "link"};
}

QString toString(TokenKind kind)
{
    return QString::fromLatin1(kNames[static_cast<std::size_t>(kind)]);
}

std::optional<TokenKind> tokenKindFromString(const QString &name)
{
    for (std::size_t i = 0; i < kNames.size(); ++i) {
        if (name == QLatin1String(kNames[i]))
            return static_cast<TokenKind>(i);
    }
    return std::nullopt;
}

} // namespace mirtex
