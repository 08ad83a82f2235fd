// The Language menu: one command whose argument is the language's identifier, shown checked for
// the current tab's language; the menu is shared by the menu bar and the status bar.
#pragma once

#include <QString>

class QMenu;

namespace mirtex {

class CommandContext;
class CommandRegistry;

class LanguageCommands
{
public:
    static inline const QString kSetLanguage = QStringLiteral("setLanguage:");

    static void registerIn(CommandRegistry &registry, CommandContext &context);
    // Adds every language to `menu`, as one exclusive group.
    static void layOut(CommandRegistry &registry, QMenu *menu);
};

} // namespace mirtex
