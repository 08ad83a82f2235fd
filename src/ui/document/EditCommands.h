// The Edit menu's commands on the active pane: undo, redo, the clipboard and select all.
#pragma once

namespace mirtex {

class CommandContext;
class CommandRegistry;

class EditCommands
{
public:
    static void registerIn(CommandRegistry &registry, CommandContext &context);
};

} // namespace mirtex
