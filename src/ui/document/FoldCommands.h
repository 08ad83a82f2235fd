// The "Piegatura del codice" commands: fold or unfold the caret's block, everything, one level,
// or everything but the caret's block.
#pragma once

class QMenu;

namespace mirtex {

class CommandContext;
class CommandRegistry;

class FoldCommands
{
public:
    static void registerIn(CommandRegistry &registry, CommandContext &context);
    // Adds the "Piegatura del codice" submenu to `parent`.
    static QMenu *addFoldMenu(CommandRegistry &registry, QMenu *parent);
};

} // namespace mirtex
