// The commands of the workspace sidebar's context menu: a new file or folder, renaming, moving to
// the desktop's trash and copying the path. Each takes an entry's path as its argument (the menu
// passes the entry clicked, or the folder shown when the click was on no entry); without one it
// acts on the sidebar's selected entry, else on its folder. Tabs follow what happens to their
// files: a renamed file's tab takes the new path, a trashed file's tab keeps its text and says
// the file is gone.
#pragma once

#include <QString>

class QMenu;
class QWidget;

namespace mirtex {

class CommandContext;
class CommandRegistry;

class SidebarCommands
{
public:
    // Also shows the menu on the sidebar's right clicks.
    static void registerIn(CommandRegistry &registry, CommandContext &context);

    // The menu for the entry `path`, owned by `parent`.
    static QMenu *entryMenu(CommandRegistry &registry, const QString &path, QWidget *parent);
};

} // namespace mirtex
