// The commands that fill the results panel and walk it: find all in the document and in the open
// documents, replace in every open document, the next and previous result (F4, Shift+F4) and
// showing the panel. Options come from the find model; statuses go back into it.
#pragma once

class QMenu;

namespace mirtex {

class CommandContext;
class CommandRegistry;
class FindModel;
class SearchResultsPanel;

namespace SearchResultCommands {

// Everything given must outlive the registry's commands. Also makes double-click and Enter in
// the panel open hits in the context's window.
void registerIn(CommandRegistry &registry,
                CommandContext &context,
                FindModel &model,
                SearchResultsPanel &panel);

// Appends the commands to `menu` (the "Cerca" menu), after a separator.
void layOut(CommandRegistry &registry, QMenu *menu);

} // namespace SearchResultCommands

} // namespace mirtex
