// The seven built-in themes, as data. Token colours follow TokenKind's order; a missing entry
// (std::nullopt) leaves the kind to Theme::color's fallbacks.
#include "core/languages/Theme.h"

#include <QCoreApplication>

namespace mirtex {

namespace {

consteval Rgba c(std::string_view hex, double alpha = 1.0)
{
    return Rgba::fromHex(hex, alpha);
}

constexpr std::nullopt_t none = std::nullopt;

struct ThemeData
{
    const char *id;
    const char *name;
    bool localisable;
    bool isDark;
    Rgba background, text, caret, selection, currentLine, gutter, gutterText, gutterCurrent,
        invisibles, smartHighlight, braceMatch, mark, bookmark;
    // comment, string, number, keyword, type, preprocessor, tag, attribute, heading, variable,
    // added, removed, meta, emphasis, link
    std::array<std::optional<Rgba>, kTokenKindCount> tokens;
};

constexpr Rgba kBookmarkBlue = c("#3B82F6");

// clang-format off
constexpr std::array<ThemeData, 7> kThemes{{
    {"classic", QT_TRANSLATE_NOOP("Theme", "Vellum classico"), true, false,
     c("#FFFFFF"), c("#000000"), c("#000000"), c("#C0D8F8"), c("#E8E8FF"), c("#E4E4E4"),
     c("#808080"), c("#000000"), c("#B0B0B0"), c("#00FF00", 0.35), c("#FF0000", 0.22),
     c("#FF9900", 0.45), kBookmarkBlue,
     {c("#008000"), c("#808080"), c("#FF8000"), c("#0000FF"), c("#8000FF"), c("#804000"),
      c("#0000FF"), c("#FF0000"), c("#0000FF"), c("#000080"), c("#008000"), c("#C00000"),
      c("#808000"), c("#8000FF"), c("#0000C0")}},
    {"dark", QT_TRANSLATE_NOOP("Theme", "Scuro moderno"), true, true,
     c("#1E1E1E"), c("#D4D4D4"), c("#AEAFAD"), c("#264F78"), c("#2A2D2E"), c("#1E1E1E"),
     c("#858585"), c("#C6C6C6"), c("#4B4B4B"), c("#5DB85C", 0.35), c("#888888", 0.45),
     c("#D18616", 0.50), kBookmarkBlue,
     {c("#6A9955"), c("#CE9178"), c("#B5CEA8"), c("#569CD6"), c("#4EC9B0"), c("#C586C0"),
      c("#569CD6"), c("#9CDCFE"), c("#569CD6"), c("#9CDCFE"), c("#81B88B"), c("#F14C4C"),
      c("#DCDCAA"), c("#C586C0"), c("#3794FF")}},
    {"obsidian", "Obsidian", false, true,
     c("#293134"), c("#E0E2E4"), c("#E0E2E4"), c("#404E51"), c("#2F393C"), c("#3F4B4E"),
     c("#81969A"), c("#E0E2E4"), c("#506066"), c("#93C763", 0.30), c("#FFCD22", 0.35),
     c("#EC7600", 0.45), kBookmarkBlue,
     {c("#66747B"), c("#EC7600"), c("#FFCD22"), c("#93C763"), c("#678CB1"), c("#A082BD"),
      c("#93C763"), c("#678CB1"), c("#93C763"), c("#E8E2B7"), none, none,
      c("#A082BD"), c("#FFCD22"), c("#678CB1")}},
    {"monokai", "Monokai", false, true,
     c("#272822"), c("#F8F8F2"), c("#F8F8F2"), c("#49483E"), c("#3E3D32"), c("#2F3129"),
     c("#8F908A"), c("#F8F8F2"), c("#5B5A50"), c("#A6E22E", 0.30), c("#F8F8F2", 0.25),
     c("#FD971F", 0.45), kBookmarkBlue,
     {c("#75715E"), c("#E6DB74"), c("#AE81FF"), c("#F92672"), c("#66D9EF"), c("#F92672"),
      c("#F92672"), c("#A6E22E"), c("#A6E22E"), c("#FD971F"), none, none,
      c("#75715E"), c("#FD971F"), c("#66D9EF")}},
    {"dracula", "Dracula", false, true,
     c("#282A36"), c("#F8F8F2"), c("#F8F8F2"), c("#44475A"), c("#323442"), c("#282A36"),
     c("#6272A4"), c("#F8F8F2"), c("#4D5066"), c("#50FA7B", 0.28), c("#F8F8F2", 0.25),
     c("#FFB86C", 0.45), kBookmarkBlue,
     {c("#6272A4"), c("#F1FA8C"), c("#BD93F9"), c("#FF79C6"), c("#8BE9FD"), c("#FF79C6"),
      c("#FF79C6"), c("#50FA7B"), c("#BD93F9"), c("#FFB86C"), none, none,
      c("#6272A4"), c("#FFB86C"), c("#8BE9FD")}},
    {"solarized-light", QT_TRANSLATE_NOOP("Theme", "Solarized chiaro"), true, false,
     c("#FDF6E3"), c("#586E75"), c("#586E75"), c("#EEE8D5"), c("#F5EFDC"), c("#EEE8D5"),
     c("#93A1A1"), c("#586E75"), c("#C9C2AE"), c("#859900", 0.25), c("#DC322F", 0.20),
     c("#CB4B16", 0.30), kBookmarkBlue,
     {c("#93A1A1"), c("#2AA198"), c("#D33682"), c("#859900"), c("#B58900"), c("#CB4B16"),
      c("#268BD2"), c("#B58900"), c("#268BD2"), c("#268BD2"), none, none,
      c("#6C71C4"), c("#6C71C4"), c("#268BD2")}},
    {"solarized-dark", QT_TRANSLATE_NOOP("Theme", "Solarized scuro"), true, true,
     c("#002B36"), c("#93A1A1"), c("#93A1A1"), c("#0E4958"), c("#073642"), c("#073642"),
     c("#586E75"), c("#93A1A1"), c("#2A4A52"), c("#859900", 0.30), c("#DC322F", 0.30),
     c("#CB4B16", 0.40), kBookmarkBlue,
     {c("#586E75"), c("#2AA198"), c("#D33682"), c("#859900"), c("#B58900"), c("#CB4B16"),
      c("#268BD2"), c("#B58900"), c("#268BD2"), c("#268BD2"), none, none,
      c("#6C71C4"), c("#6C71C4"), c("#268BD2")}},
}};

// clang-format on

std::vector<Theme> buildThemes()
{
    std::vector<Theme> themes;
    themes.reserve(kThemes.size());
    for (const ThemeData &d : kThemes) {
        themes.push_back(Theme{
            .id = QString::fromLatin1(d.id),
            .name = d.localisable ? QCoreApplication::translate("Theme", d.name)
                                  : QString::fromLatin1(d.name),
            .isDark = d.isDark,
            .background = d.background,
            .text = d.text,
            .caret = d.caret,
            .selection = d.selection,
            .currentLine = d.currentLine,
            .gutter = d.gutter,
            .gutterText = d.gutterText,
            .gutterCurrent = d.gutterCurrent,
            .invisibles = d.invisibles,
            .smartHighlight = d.smartHighlight,
            .braceMatch = d.braceMatch,
            .mark = d.mark,
            .bookmark = d.bookmark,
            .tokens = d.tokens,
        });
    }
    return themes;
}

} // namespace

const std::vector<Theme> &Theme::all()
{
    static const std::vector<Theme> themes = buildThemes();
    return themes;
}

} // namespace mirtex
