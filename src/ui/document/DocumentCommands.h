// The File menu's commands and the choice of tab: new, open, save in its forms, close, and the
// tab at an index (the Window menu, Alt+1…9).
#pragma once

namespace mirtex {

class CommandContext;
class CommandRegistry;

class DocumentCommands
{
public:
    static void registerIn(CommandRegistry &registry, CommandContext &context);
};

} // namespace mirtex
