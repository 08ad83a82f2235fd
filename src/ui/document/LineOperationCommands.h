// The Edit menu's line operations ("applyLineOperation:", the operation's name as argument) and
// case conversions ("convertCase:"), each applied at every selection as one undo step named by
// its label, and their two submenus.
#pragma once

class QMenu;

namespace mirtex {

class CommandContext;
class CommandRegistry;

class LineOperationCommands
{
public:
    static void registerIn(CommandRegistry &registry, CommandContext &context);
    // "Operazioni sulle righe" and "Maiuscole e minuscole" at the end of `editMenu`, with their
    // keys.
    static void layOut(CommandRegistry &registry, QMenu *editMenu);
};

} // namespace mirtex
