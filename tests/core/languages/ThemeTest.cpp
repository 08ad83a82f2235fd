#include "core/languages/Theme.h"

#include <gtest/gtest.h>

using mirtex::Rgba;
using mirtex::Theme;
using mirtex::TokenKind;

TEST(Theme, ChoicesAndResolve)
{
    const auto choices = Theme::choices();
    ASSERT_EQ(choices.size(), Theme::all().size() + 1);
    EXPECT_EQ(choices[0].id, "auto");
    EXPECT_EQ(choices[0].name, "Automatico (chiaro/scuro come il sistema)");
    EXPECT_EQ(choices[1].name, "Vellum classico");
    for (std::size_t i = 0; i < Theme::all().size(); ++i) {
        const Theme &theme = Theme::all()[i];
        EXPECT_EQ(choices[i + 1].id, theme.id);
        EXPECT_EQ(&Theme::resolve(theme.id, true), &theme);
        // The flag drives the whole window's appearance, so it must agree with the page.
        const Rgba page = theme.background;
        EXPECT_EQ(theme.isDark, page.r + page.g + page.b < 3 * 128) << theme.id.toStdString();
    }
    const std::vector<std::tuple<QString, bool, QString>> cases = {
        {"monokai", false, "monokai"},
        {"auto", true, "dark"},
        {"auto", false, "classic"},
        {"nope", true, "classic"},
        {"", false, "classic"},
        {"Dracula", false, "classic"},
    };
    for (const auto &[id, systemIsDark, expected] : cases)
        EXPECT_EQ(Theme::resolve(id, systemIsDark).id, expected) << id.toStdString();
}

TEST(Theme, TokenColourFallbacks)
{
    const Theme &monokai = Theme::resolve("monokai", false);
    const Theme &classic = Theme::resolve("classic", false);
    EXPECT_EQ(monokai.color(TokenKind::added), mirtex::kSystemGreen);
    EXPECT_EQ(monokai.color(TokenKind::removed), mirtex::kSystemRed);
    EXPECT_EQ(classic.color(TokenKind::added), Rgba::fromHex("#008000"));
    EXPECT_EQ(classic.tokenColors()[std::size_t(TokenKind::removed)], Rgba::fromHex("#C00000"));

    // A missing kind takes its related kind's colour, and the text colour when that is missing too.
    const std::vector<std::pair<TokenKind, TokenKind>> related = {
        {TokenKind::tag, TokenKind::preprocessor},
        {TokenKind::meta, TokenKind::preprocessor},
        {TokenKind::attribute, TokenKind::type},
        {TokenKind::variable, TokenKind::type},
        {TokenKind::heading, TokenKind::keyword},
        {TokenKind::emphasis, TokenKind::keyword},
        {TokenKind::link, TokenKind::string},
        {TokenKind::comment, TokenKind::comment},
    };
    for (const auto &[kind, stand] : related) {
        Theme theme = Theme::resolve("dark", false);
        theme.tokens[std::size_t(kind)].reset();
        EXPECT_EQ(theme.color(kind), theme.color(stand)) << int(kind);
        theme.tokens[std::size_t(stand)].reset();
        EXPECT_EQ(theme.color(kind), theme.text) << int(kind);
    }
}

TEST(Rgba, HexAlphaAndPacking)
{
    constexpr Rgba smart = Rgba::fromHex("#5db85c", 0.35);
    EXPECT_EQ(smart.argb(), 0x595DB85Cu); // 0.35 * 255 = 89.25 -> 0x59
    EXPECT_EQ(Rgba::fromHex("#D18616", 0.5).a, 128);
    EXPECT_EQ(smart.hexName(), "#5DB85C");
}
