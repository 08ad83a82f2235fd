// The View menu's commands: zoom, the display settings shown with a check mark, the split of the
// current tab, the sidebar, the status bar and staying on top.
#pragma once

namespace mirtex {

class CommandContext;
class CommandRegistry;

class ViewCommands
{
public:
    static void registerIn(CommandRegistry &registry, CommandContext &context);
};

} // namespace mirtex
