#include "core/languages/Theme.h"

#include <gtest/gtest.h>

using mirtex::Rgba;
using mirtex::Theme;
using mirtex::TokenKind;

TEST(Theme, BuiltInOrderAndChoices)
{
    const std::vector<QString> ids = {
        "classic", "dark", "obsidian", "monokai", "dracula", "solarized-light", "solarized-dark"};
    const auto &themes = Theme::all();
    ASSERT_EQ(themes.size(), ids.size());
    const auto choices = Theme::choices();
    ASSERT_EQ(choices.size(), ids.size() + 1);
    EXPECT_EQ(choices[0].id, "auto");
    EXPECT_EQ(choices[0].name, "Automatico (chiaro/scuro come il sistema)");
    for (std::size_t i = 0; i < ids.size(); ++i) {
        EXPECT_EQ(themes[i].id, ids[i]);
        EXPECT_EQ(choices[i + 1].id, ids[i]);
        EXPECT_EQ(choices[i + 1].name, themes[i].name);
        // Dark themes have dark pages: the flag drives the whole window's appearance.
        const Rgba page = themes[i].background;
        EXPECT_EQ(themes[i].isDark, page.r + page.g + page.b < 3 * 128) << ids[i].toStdString();
    }
    EXPECT_EQ(themes[0].name, "Vellum classico");
    EXPECT_EQ(themes[6].name, "Solarized scuro");
}

TEST(Theme, Resolve)
{
    const std::vector<std::tuple<QString, bool, QString>> cases = {
        {"monokai", false, "monokai"},
        {"monokai", true, "monokai"},
        {"auto", true, "dark"},
        {"auto", false, "classic"},
        {"nope", true, "classic"},
        {"", false, "classic"},
        {"Dracula", false, "classic"},
        {"solarized-dark", false, "solarized-dark"},
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
    EXPECT_EQ(classic.color(TokenKind::removed), Rgba::fromHex("#C00000"));
    EXPECT_EQ(monokai.color(TokenKind::keyword), Rgba::fromHex("#F92672"));

    // A missing kind takes its related kind's colour, and the text colour when that is missing too.
    const std::vector<std::pair<TokenKind, TokenKind>> related = {
        {TokenKind::tag, TokenKind::preprocessor},
        {TokenKind::meta, TokenKind::preprocessor},
        {TokenKind::attribute, TokenKind::type},
        {TokenKind::variable, TokenKind::type},
        {TokenKind::heading, TokenKind::keyword},
        {TokenKind::emphasis, TokenKind::keyword},
        {TokenKind::link, TokenKind::string},
    };
    for (const auto &[kind, stand] : related) {
        Theme theme = Theme::resolve("dark", false);
        theme.tokens[std::size_t(kind)].reset();
        EXPECT_EQ(theme.color(kind), theme.color(stand)) << int(kind);
        EXPECT_NE(theme.color(kind), theme.text);
        theme.tokens[std::size_t(stand)].reset();
        EXPECT_EQ(theme.color(kind), theme.text) << int(kind);
    }
    Theme bare = classic;
    bare.tokens = {};
    for (int kind = 0; kind < mirtex::kTokenKindCount; ++kind) {
        const Rgba expected = kind == int(TokenKind::added)     ? mirtex::kSystemGreen
                              : kind == int(TokenKind::removed) ? mirtex::kSystemRed
                                                                : classic.text;
        EXPECT_EQ(bare.tokenColors()[std::size_t(kind)], expected) << kind;
    }
}

TEST(Rgba, HexAlphaAndPacking)
{
    constexpr Rgba smart = Rgba::fromHex("#5db85c", 0.35);
    static_assert(smart.r == 0x5D && smart.g == 0xB8 && smart.b == 0x5C);
    EXPECT_EQ(smart.a, 89); // 0.35 * 255 = 89.25
    EXPECT_EQ(Rgba::fromHex("#D18616", 0.5).a, 128);
    EXPECT_EQ(smart.argb(), 0x595DB85Cu);
    EXPECT_EQ(smart.hexName(), "#5DB85C");
    EXPECT_EQ(Rgba::fromHex("#0000FF").hexName(), "#0000FF");
}
