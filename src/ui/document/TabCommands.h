// The commands on tabs: switching to the next and previous tab, reloading from disk, closing the
// others, those to the right or all, copying the path and showing the file in the sidebar, and the
// context menu of a tab. Each takes an optional argument, the tab's index (the tab context menu
// passes it); without one it acts on the current tab.
#pragma once

#include <QString>
#include <QVariant>

class QMenu;
class QWidget;

namespace mirtex {

class CommandContext;
class CommandRegistry;
class DocumentTab;

class TabCommands
{
public:
    static void registerIn(CommandRegistry &registry, CommandContext &context);

    // The tab at the index `argument` holds (its position among all tabs, loaded or not), or the
    // current tab when it holds none; nullptr for a tab not loaded yet.
    static DocumentTab *tabFor(const CommandContext &context, const QVariant &argument);
    // The page of that tab, loaded or not.
    static QWidget *pageFor(const CommandContext &context, const QVariant &argument);

    // The menu shown on a right click on the tab at `index`, owned by `parent`.
    static QMenu *tabMenu(CommandRegistry &registry, int index, QWidget *parent);
};

} // namespace mirtex
