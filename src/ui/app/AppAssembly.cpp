#include "ui/app/AppAssembly.h"

#include "core/app/Preferences.h"
#include "core/app/RecentFiles.h"
#include "core/search/FindModel.h"
#include "ui/app/AppCommands.h"
#include "ui/app/AppDelegate.h"
#include "ui/app/AppearanceController.h"
#include "ui/app/CommandPalette.h"
#include "ui/app/MacroCommands.h"
#include "ui/app/MainMenu.h"
#include "ui/app/QtTranslations.h"
#include "ui/app/RecoveryCommands.h"
#include "ui/app/SecondaryWindows.h"
#include "ui/app/SessionKeeper.h"
#include "ui/app/ThemeCommands.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/compare/CompareCommands.h"
#include "ui/document/CommandContext.h"
#include "ui/document/DocumentCommands.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/EditCommands.h"
#include "ui/document/EncodingCommands.h"
#include "ui/document/FoldCommands.h"
#include "ui/document/LanguageCommands.h"
#include "ui/document/LineCommands.h"
#include "ui/document/LineOperationCommands.h"
#include "ui/document/MainWindow.h"
#include "ui/document/MultiCaretCommands.h"
#include "ui/document/PreviewCommands.h"
#include "ui/document/PrintCommands.h"
#include "ui/document/RecentFileCommands.h"
#include "ui/document/SidebarCommands.h"
#include "ui/document/TabCommands.h"
#include "ui/document/TextToolCommands.h"
#include "ui/document/ViewCommands.h"
#include "ui/search/SearchCommands.h"
#include "ui/search/SearchResultCommands.h"
#include "ui/search/SearchResultsPanel.h"
// Find in files.
#include "ui/search/FileSearchCommands.h"
#include "ui/search/FileSearchRunner.h"

#include <QDockWidget>
#include <QMenu>
#include <QMenuBar>

namespace mirtex {

AppAssembly::AppAssembly(Preferences &prefs,
                         Questions &questions,
                         std::unique_ptr<SessionKeeper> session)
    // Qt's own texts are in the interface language before the first widget exists.
    : m_recentFiles((QtTranslations::install(), std::make_unique<RecentFiles>(prefs)))
    , m_findModel(std::make_unique<FindModel>(
          prefs.value(QLatin1String(PreferenceKeys::kFindHistory)).toStringList()))
    , m_window(std::make_unique<MainWindow>(prefs))
    , m_flows(new DocumentFlows(*m_window, questions))
    , m_context(new CommandContext(*m_window, *m_flows))
    , m_appearance(new AppearanceController(prefs, *m_window))
    , m_commands(std::make_unique<CommandRegistry>())
    , m_secondaryWindows(std::make_unique<SecondaryWindows>())
    , m_delegate(std::make_unique<AppDelegate>(prefs, *m_flows, std::move(session)))
{
    QObject::connect(m_findModel.get(),
                     &FindModel::historyChanged,
                     &prefs,
                     [&prefs](const QStringList &history) {
                         prefs.setValue(QLatin1String(PreferenceKeys::kFindHistory), history);
                     });
    CommandRegistry &commands = *m_commands;
    DocumentCommands::registerIn(commands, *m_context);
    EditCommands::registerIn(commands, *m_context);
    TabCommands::registerIn(commands, *m_context);
    RecentFileCommands::registerIn(commands, *m_context, *m_recentFiles);
    ViewCommands::registerIn(commands, *m_context);
    EncodingCommands::registerIn(commands, *m_context);
    LanguageCommands::registerIn(commands, *m_context);
    ThemeCommands::registerIn(commands, prefs);
    AppCommands::registerIn(commands, *m_delegate, *m_window, *m_secondaryWindows);
    RecoveryCommands::registerIn(commands, *m_window, questions, m_delegate->session());
    // Line operations, case conversions and text tools.
    LineOperationCommands::registerIn(commands, *m_context);
    TextToolCommands::registerIn(commands, *m_context);
    SidebarCommands::registerIn(commands, *m_context);
    PrintCommands::registerIn(commands, *m_context);
    // Code folding.
    FoldCommands::registerIn(commands, *m_context);
    // Lines, comments, bookmarks, several carets and the command palette.
    LineCommands::registerIn(commands, *m_context);
    MultiCaretCommands::registerIn(commands, *m_context);
    CommandPalette::registerIn(commands, *m_window);
    // Search: the find panel, the "Cerca" commands and the live match highlighting.
    SearchCommands::registerIn(commands, *m_context, *m_findModel, prefs);
    // Find and replace in the files of a folder, streaming into the results panel.
    m_fileSearch = new FileSearchRunner(
        *m_window,
        *m_findModel,
        questions,
        prefs,
        [this]() -> SearchResultSink * { return m_searchResults; },
        m_window.get());
    FileSearchCommands::registerIn(commands, *m_fileSearch, *m_findModel);

    m_menu = std::make_unique<MainMenu>(*m_window, commands, *m_recentFiles);
    QObject::connect(m_flows,
                     &DocumentFlows::fileOpened,
                     m_window.get(),
                     [this](const QString &path) { m_recentFiles->add(path); });
    ThemeCommands::addThemeMenu(commands, m_menu->menu(QStringLiteral("mirtex.menu.view")));
    // Line operations and case in the Edit menu, the text tools in the Tools menu.
    LineOperationCommands::layOut(commands, m_menu->menu(QStringLiteral("mirtex.menu.edit")));
    TextToolCommands::layOut(commands, m_menu->menu(QStringLiteral("mirtex.menu.tools")));

    // Compare: the "Confronta" submenu in Strumenti and in every tab's menu.
    CompareCommands::registerIn(commands, *m_context);
    CompareCommands::addCompareMenu(
        commands, *m_context, m_menu->menu(QStringLiteral("mirtex.menu.tools")));
    m_menu->addTabMenuEntries([this](QMenu *menu, int tabIndex) {
        menu->addSeparator();
        CompareCommands::addCompareMenu(*m_commands, *m_context, menu, tabIndex);
    });
    // Code folding.
    FoldCommands::addFoldMenu(commands, m_menu->menu(QStringLiteral("mirtex.menu.view")));

    // The results panel under the editor, its commands (find all, replace in open documents,
    // F4 / Shift+F4) and their entries at the end of the "Cerca" menu.
    m_searchResults = new SearchResultsPanel;
    QDockWidget *resultsDock = m_window->addPanel(Qt::BottomDockWidgetArea, m_searchResults);
    resultsDock->hide();
    QObject::connect(resultsDock, &QDockWidget::visibilityChanged, &commands, [&commands]() {
        commands.refresh();
    });
    SearchResultCommands::registerIn(commands, *m_context, *m_findModel, *m_searchResults);
    SearchResultCommands::layOut(commands, m_menu->menu(QStringLiteral("mirtex.menu.search")));
    // Macros: the recorder hears the editors and every dispatch; the "Macro" menu comes before
    // Strumenti.
    m_macros = new MacroCommands(commands, *m_context, *m_window);
    m_macros->addMenu(m_window->menuBar(), m_menu->menu(QStringLiteral("mirtex.menu.tools")));
    // The Markdown preview and the exports of a page.
    PreviewCommands::registerIn(commands, *m_context);
    PreviewCommands::layOut(commands,
                            m_menu->menu(QStringLiteral("mirtex.menu.file")),
                            m_menu->menu(QStringLiteral("mirtex.menu.view")));

    // Enabled and checked states follow the tab, its state and selection, and the settings.
    QObject::connect(
        m_context, &CommandContext::changed, &commands, [&commands]() { commands.refresh(); });
    QObject::connect(
        &prefs, &Preferences::changed, &commands, [&commands]() { commands.refresh(); });
    commands.refresh();
}

SearchResultSink &AppAssembly::searchResults() const
{
    return *m_searchResults;
}

AppAssembly::~AppAssembly()
{
    // The launch/quit sequence and the windows beside go first, the actions before the menus that
    // show them, the window (with the flows, context and appearance) last.
    m_delegate.reset();
    m_secondaryWindows.reset();
    m_menu.reset();
    m_commands.reset();
    m_window.reset();
}

} // namespace mirtex
