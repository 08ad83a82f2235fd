#include "ui/search/SearchCommands.h"

#include "ui/commands/CommandRegistry.h"
#include "ui/document/CommandContext.h"
#include "ui/document/MainWindow.h"
#include "ui/search/FindPanel.h"
#include "ui/search/InDocumentSearch.h"
#include "ui/search/LiveMatchHighlighter.h"

#include <QCoreApplication>
#include <QMenu>

namespace mirtex {

namespace {

QString menuText(const char *text)
{
    return QCoreApplication::translate("MainMenu", text);
}

QKeySequence key(const char *text)
{
    return QKeySequence(QString::fromLatin1(text));
}

} // namespace

SearchCommands::SearchCommands(CommandRegistry &registry,
                               CommandContext &context,
                               FindModel &model,
                               Preferences &prefs)
    : QObject(&context.window())
    , m_registry(registry)
    , m_context(context)
    , m_model(model)
    , m_prefs(prefs)
    , m_search(new InDocumentSearch(context, model, this))
    , m_highlighter(new LiveMatchHighlighter(context, model, this))
{
    setObjectName(QStringLiteral("mirtex.searchCommands"));
}

SearchCommands *SearchCommands::registerIn(CommandRegistry &registry,
                                           CommandContext &context,
                                           FindModel &model,
                                           Preferences &prefs)
{
    auto *commands = new SearchCommands(registry, context, model, prefs);
    commands->registerCommands();
    return commands;
}

void SearchCommands::registerCommands()
{
    CommandContext *c = &m_context;
    const auto hasDocument = [c](const QVariant &) { return c->hasDocument(); };
    const auto showing
        = [this](FindTab tab) { return [this, tab](const QVariant &) { showPanel(tab); }; };

    // Ctrl+M goes to the matching bracket already; the mark tab takes the shifted key.
    const struct
    {
        const char *name;
        const char *label;
        const char *shortcut;
        FindTab tab;
    } panels[] = {
        {"showFindPanel:", "Trova…", "Ctrl+F", FindTab::find},
        {"showReplacePanel:", "Sostituisci…", "Ctrl+H", FindTab::replace},
        {"showFindInFilesPanel:", "Trova nei file…", "Ctrl+Shift+F", FindTab::files},
        {"showMarkPanel:", "Contrassegna…", "Ctrl+Shift+M", FindTab::mark},
    };

    for (const auto &p : panels)
        m_registry.add(
            {QString::fromLatin1(p.name), menuText(p.label), {key(p.shortcut)}, showing(p.tab)});
    m_registry.add({QStringLiteral("hideFindPanel:"),
                    menuText("Chiudi il pannello di ricerca"),
                    {},
                    [this](const QVariant &) {
                        if (m_panel)
                            m_panel->hide();
                    }});
    m_registry.add({QStringLiteral("cancelSearch:"),
                    menuText("Annulla la ricerca in corso"),
                    {},
                    [this](const QVariant &) { m_search->cancel(); }});

    InDocumentSearch *s = m_search;

    const struct
    {
        const char *name;
        const char *label;
        const char *shortcut;
        void (InDocumentSearch::*run)();
    } actions[] = {
        {"findNext:", "Trova successivo", "F3", &InDocumentSearch::findNext},
        {"findPrevious:", "Trova precedente", "Shift+F3", &InDocumentSearch::findPrevious},
        {"findWordAtCaret:",
         "Trova la parola al cursore",
         "Ctrl+F3",
         &InDocumentSearch::findWordAtCaret},
        {"replace:", "Sostituisci", nullptr, &InDocumentSearch::replace},
        {"replaceAll:", "Sostituisci tutto", nullptr, &InDocumentSearch::replaceAll},
        {"countMatches:", "Conta", nullptr, &InDocumentSearch::count},
        {"markAll:", "Contrassegna tutto", nullptr, &InDocumentSearch::markAll},
        {"clearMarks:", "Cancella i contrassegni", nullptr, &InDocumentSearch::clearMarks},
    };

    for (const auto &a : actions) {
        QList<QKeySequence> keys;
        if (a.shortcut)
            keys.append(key(a.shortcut));
        m_registry.add({QString::fromLatin1(a.name),
                        menuText(a.label),
                        keys,
                        [s, run = a.run](const QVariant &) { (s->*run)(); },
                        hasDocument});
    }
}

void SearchCommands::addToMenu(CommandRegistry &registry, QMenu *menu)
{
    if (!menu)
        return;
    const char *const names[] = {"showFindPanel:",
                                 "showReplacePanel:",
                                 "showFindInFilesPanel:",
                                 "showMarkPanel:",
                                 nullptr,
                                 "findNext:",
                                 "findPrevious:",
                                 "findWordAtCaret:",
                                 nullptr,
                                 "replace:",
                                 "replaceAll:",
                                 "countMatches:",
                                 nullptr,
                                 "markAll:",
                                 "clearMarks:"};
    for (const char *name : names) {
        if (!name)
            menu->addSeparator();
        else if (QAction *action = registry.action(QString::fromLatin1(name)))
            menu->addAction(action);
    }
}

FindPanel &SearchCommands::panel()
{
    if (!m_panel) {
        m_panel = new FindPanel(m_model, m_registry, m_prefs, &m_context.window());
        connect(m_panel,
                &FindPanel::visibilityChanged,
                m_highlighter,
                &LiveMatchHighlighter::setActive);
        connect(
            m_highlighter, &LiveMatchHighlighter::counterChanged, m_panel, &FindPanel::setCounter);
    }
    return *m_panel;
}

void SearchCommands::showPanel(FindTab tab)
{
    FindPanel &shown = panel();
    m_model.update([tab](FindFields &f) { f.tab = tab; });
    shown.show();
    shown.raise();
    m_model.requestFocus();
}

} // namespace mirtex
