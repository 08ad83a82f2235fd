// Colour schemes of the editor: page, text, overlays and one colour per token kind.
#pragma once

#include "core/languages/Rgba.h"
#include "core/languages/TokenKind.h"

#include <QString>

#include <array>
#include <optional>
#include <vector>

namespace mirtex {

// Token colours for kinds a theme leaves out and that fall back to the system's green and red.
inline constexpr Rgba kSystemGreen = Rgba::fromHex("#2DA44E");
inline constexpr Rgba kSystemRed = Rgba::fromHex("#CF222E");

// One entry of the theme menu and the settings: a theme id (or "auto") and its shown name.
struct ThemeChoice
{
    QString id;
    QString name;
};

// A built-in theme. Values, immutable once built; the table is built on first use (on the main
// thread, after the interface translation is installed, since names are translated then).
struct Theme
{
    QString id;
    QString name;
    bool isDark = false;
    Rgba background;
    Rgba text;
    Rgba caret;
    Rgba selection;
    Rgba currentLine;
    Rgba gutter;
    Rgba gutterText;
    Rgba gutterCurrent;
    Rgba invisibles;
    Rgba smartHighlight;
    Rgba braceMatch;
    Rgba mark;
    Rgba bookmark;
    // Indexed by the raw value of TokenKind; a theme may leave kinds out.
    std::array<std::optional<Rgba>, kTokenKindCount> tokens{};

    // The pseudo-id that follows the system's light or dark appearance.
    static inline const QString kAutoId = QStringLiteral("auto");

    // classic, dark, obsidian, monokai, dracula, solarized-light, solarized-dark.
    static const std::vector<Theme> &all();

    // ("auto", its description) followed by every theme's id and name, in order.
    static std::vector<ThemeChoice> choices();

    // The theme with that id ("auto": dark or classic by the system appearance); classic when no
    // theme has the id.
    static const Theme &resolve(const QString &id, bool systemIsDark);

    // The token's own colour, else its related kind's, else the system green or red for added and
    // removed lines, else the text colour.
    Rgba color(TokenKind kind) const;

    // The colours the highlighter uses, indexed by the raw value of TokenKind.
    std::array<Rgba, kTokenKindCount> tokenColors() const;
};

} // namespace mirtex
