// Theme lookup and token colour fallbacks; the theme table itself is in BuiltInThemes.cpp.
#include "core/languages/Theme.h"

#include <QCoreApplication>

#include <algorithm>

namespace mirtex {

namespace {

std::optional<Rgba> entry(const Theme &theme, TokenKind kind)
{
    return theme.tokens[std::size_t(kind)];
}

// The kind whose colour stands in for a kind the theme does not colour, if any.
std::optional<TokenKind> relatedKind(TokenKind kind)
{
    switch (kind) {
    case TokenKind::tag:
    case TokenKind::meta:
        return TokenKind::preprocessor;
    case TokenKind::attribute:
    case TokenKind::variable:
        return TokenKind::type;
    case TokenKind::heading:
    case TokenKind::emphasis:
        return TokenKind::keyword;
    case TokenKind::link:
        return TokenKind::string;
    default:
        return std::nullopt;
    }
}

} // namespace

std::vector<ThemeChoice> Theme::choices()
{
    std::vector<ThemeChoice> result;
    result.push_back(
        {kAutoId,
         QCoreApplication::translate("Theme", "Automatico (chiaro/scuro come il sistema)")});
    for (const Theme &theme : all())
        result.push_back({theme.id, theme.name});
    return result;
}

const Theme &Theme::resolve(const QString &id, bool systemIsDark)
{
    const std::vector<Theme> &themes = all();
    const QString wanted
        = id == kAutoId ? (systemIsDark ? QStringLiteral("dark") : QStringLiteral("classic")) : id;
    const auto found = std::ranges::find(themes, wanted, &Theme::id);
    return found != themes.end() ? *found : themes.front();
}

Rgba Theme::color(TokenKind kind) const
{
    if (const auto own = entry(*this, kind))
        return *own;
    if (kind == TokenKind::added)
        return kSystemGreen;
    if (kind == TokenKind::removed)
        return kSystemRed;
    if (const auto related = relatedKind(kind)) {
        if (const auto stand = entry(*this, *related))
            return *stand;
    }
    return text;
}

std::array<Rgba, kTokenKindCount> Theme::tokenColors() const
{
    std::array<Rgba, kTokenKindCount> colors;
    for (int i = 0; i < kTokenKindCount; ++i)
        colors[std::size_t(i)] = color(static_cast<TokenKind>(i));
    return colors;
}

} // namespace mirtex
