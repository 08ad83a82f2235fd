// The Edit menu's commands on the active pane: undo, redo, the clipboard, delete and select all;
// the editor's context menu, made of registered commands; and the end of the current typing undo
// step whenever any command runs.
#pragma once

class QMenu;
class QWidget;

namespace mirtex {

class CommandContext;
class CommandRegistry;

class EditCommands
{
public:
    static void registerIn(CommandRegistry &registry, CommandContext &context);

    // The editor's context menu, its entries enabled as the commands are now; owned by `parent`.
    static QMenu *makeContextMenu(CommandRegistry &registry, QWidget *parent);
};

} // namespace mirtex
