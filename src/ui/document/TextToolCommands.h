// The text tools of the Tools menu: "applyTextTool:" (the tool's name as argument) at every
// selection as one undo step, "computeHash:" (the algorithm) computed away from the main thread
// and shown in an alert with "Copia", and "insertDateTime:" ("long" or "short") at every caret.
#pragma once

class QMenu;

namespace mirtex {

class CommandContext;
class CommandRegistry;

class TextToolCommands
{
public:
    static void registerIn(CommandRegistry &registry, CommandContext &context);
    // The tools, the "Hash" submenu and the date entries at the end of `toolsMenu`.
    static void layOut(CommandRegistry &registry, QMenu *toolsMenu);
};

} // namespace mirtex
