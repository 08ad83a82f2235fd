// "Apri recenti": a command that opens one of the recent files (its argument is the path), one
// that empties the list, and the submenu listing them, rebuilt each time it opens.
#pragma once

class QMenu;
class QString;

namespace mirtex {

class CommandContext;
class CommandRegistry;
class RecentFiles;

class RecentFileCommands
{
public:
    // `recent` must outlive the registry's use of the commands.
    static void registerIn(CommandRegistry &registry, CommandContext &context, RecentFiles &recent);

    // Adds the submenu to `menu`: the files that still exist, newest first, then "Svuota l'elenco".
    static QMenu *addRecentMenu(CommandRegistry &registry, RecentFiles &recent, QMenu *menu);
};

} // namespace mirtex
