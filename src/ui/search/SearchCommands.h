// The "Cerca" commands: showing the find panel on one of its tabs, find next and previous, the
// word at the caret, replace, replace all, count, mark all and clear marks, all on the current
// editor with the options of the find model. Owns the panel (made when first shown), the
// in-document search and the live match highlighting; lives as long as the main window.
#pragma once

#include "core/search/FindModel.h"

#include <QObject>
#include <QPointer>

class QMenu;

namespace mirtex {

class CommandContext;
class CommandRegistry;
class FindPanel;
class InDocumentSearch;
class LiveMatchHighlighter;
class Preferences;

class SearchCommands : public QObject
{
    Q_OBJECT

public:
    // Registers the commands; the returned object belongs to the context's window.
    static SearchCommands *registerIn(CommandRegistry &registry,
                                      CommandContext &context,
                                      FindModel &model,
                                      Preferences &prefs);
    // Lays out the "Cerca" menu.
    static void addToMenu(CommandRegistry &registry, QMenu *menu);

    // The panel, made on first use.
    FindPanel &panel();
    void showPanel(FindTab tab);

    InDocumentSearch &search() const { return *m_search; }

    LiveMatchHighlighter &highlighter() const { return *m_highlighter; }

private:
    SearchCommands(CommandRegistry &registry,
                   CommandContext &context,
                   FindModel &model,
                   Preferences &prefs);
    void registerCommands();

    CommandRegistry &m_registry;
    CommandContext &m_context;
    FindModel &m_model;
    Preferences &m_prefs;
    InDocumentSearch *m_search;
    LiveMatchHighlighter *m_highlighter;
    QPointer<FindPanel> m_panel;
};

} // namespace mirtex
