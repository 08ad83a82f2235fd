// Commands that make or drop carets: the next or every occurrence of the selected text, a caret
// on the line above or below, back to one caret. Typing, deleting and moving at every caret are
// the editor panes' own (Scintilla's multiple selection).
#pragma once

class QMenu;

namespace mirtex {

class CommandContext;
class CommandRegistry;

class MultiCaretCommands
{
public:
    static void registerIn(CommandRegistry &registry, CommandContext &context);

    // A "Cursori multipli" submenu at the end of `edit`.
    static void addToMenu(CommandRegistry &registry, QMenu *edit);
};

} // namespace mirtex
