// The Edit menu's commands on lines, comments and bookmarks, and the navigation and summary
// commands that go with them. Each edit is a pure function of core/editor applied through the
// editor's one edit path (EditCommandRunner).
#pragma once

class QMenu;

namespace mirtex {

class CommandContext;
class CommandRegistry;

class LineCommands
{
public:
    static void registerIn(CommandRegistry &registry, CommandContext &context);

    // Lays the commands out in `edit` (the Edit menu): submenus for lines, comments and
    // bookmarks, then navigation and the summary.
    static void addToMenu(CommandRegistry &registry, QMenu *edit);
};

} // namespace mirtex
