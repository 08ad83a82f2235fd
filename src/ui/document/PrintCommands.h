// Printing the current tab with the editor's colours ("Stampa…", Ctrl+P) and looking at the pages
// first ("Anteprima di stampa…"), through the system's print dialog.
#pragma once

namespace mirtex {

class CommandContext;
class CommandRegistry;

class PrintCommands
{
public:
    static void registerIn(CommandRegistry &registry, CommandContext &context);
};

} // namespace mirtex
