// The commands that open a compare window: the current tab (or the tab a context menu was opened
// on) with another tab, with its saved file, or with the clipboard, and two files chosen from
// disk; and the "Confronta" submenu that lays them out in the Strumenti menu and a tab's menu.
#pragma once

#include "ui/compare/CompareSide.h"

#include <expected>

class QMenu;

namespace mirtex {

class CommandContext;
class CommandRegistry;
class CompareWindow;
class DocumentTab;

class CompareCommands
{
public:
    static void registerIn(CommandRegistry &registry, CommandContext &context);

    // Adds the "Confronta" submenu to `menu`; its entries act on the tab at `tabIndex`, or on the
    // current tab when it is -1.
    static QMenu *addCompareMenu(CommandRegistry &registry,
                                 CommandContext &context,
                                 QMenu *menu,
                                 int tabIndex = -1);

    // The tab as one side: its displayed path (or name), its editor and language.
    static CompareSide sideOf(DocumentTab &tab);

    // Opens a compare window beside the main window (deleted when closed).
    static CompareWindow *open(CommandContext &context, CompareSide left, CompareSide right);

    // A file read as one side, or why it cannot be compared (unreadable or binary), in Italian.
    static std::expected<CompareSide, QString> sideOfFile(const QString &path);
};

} // namespace mirtex
