// The theme choice as a command whose argument is the theme's identifier, shown checked for the
// chosen one, and the "Tema" menu that lays the choices out.
#pragma once

#include <QString>

class QMenu;

namespace mirtex {

class CommandRegistry;
class Preferences;

class ThemeCommands
{
public:
    static inline const QString kChooseTheme = QStringLiteral("chooseTheme:");

    static void registerIn(CommandRegistry &registry, Preferences &prefs);
    // Adds "Tema" with the theme choices to `menu`.
    static QMenu *addThemeMenu(CommandRegistry &registry, QMenu *menu);
};

} // namespace mirtex
