// The composition root: builds the main window, the document flows, the command registry with
// every subsystem's commands, the menus (the theme menu included), the appearance and the
// launch/quit sequence with its session. The program, the snapshot modes and the self-test all
// build the application here. Nothing is shown until delegate().launch().
#pragma once

#include "ui/app/SessionKeeper.h"

#include <memory>

namespace mirtex {

class AppDelegate;
class AppearanceController;
class CommandContext;
class CommandRegistry;
class DocumentFlows;
class FileSearchRunner;
class FindModel;
class MacroCommands;
class MainMenu;
class MainWindow;
class Preferences;
class Questions;
class RecentFiles;
class SecondaryWindows;
class SearchResultSink;
class SearchResultsPanel;

class AppAssembly
{
public:
    // `prefs` and `questions` must outlive the assembly; `session` may be null.
    AppAssembly(Preferences &prefs,
                Questions &questions,
                std::unique_ptr<SessionKeeper> session = nullptr);
    ~AppAssembly();

    AppAssembly(const AppAssembly &) = delete;
    AppAssembly &operator=(const AppAssembly &) = delete;

    MainWindow &window() const { return *m_window; }

    DocumentFlows &flows() const { return *m_flows; }

    CommandContext &context() const { return *m_context; }

    CommandRegistry &commands() const { return *m_commands; }

    MainMenu &menu() const { return *m_menu; }

    AppearanceController &appearance() const { return *m_appearance; }

    SecondaryWindows &secondaryWindows() const { return *m_secondaryWindows; }

    AppDelegate &delegate() const { return *m_delegate; }

    RecentFiles &recentFiles() const { return *m_recentFiles; }

    // The find panel's state, shared by every search command; its recent searches are stored.
    FindModel &findModel() const { return *m_findModel; }

    // The results panel ("Risultati della ricerca", docked under the editor): where the find-all
    // commands and find in files hand their result sets.
    SearchResultSink &searchResults() const;

    SearchResultsPanel &searchResultsPanel() const { return *m_searchResults; }

    // Find and replace in the files of a folder.
    FileSearchRunner &fileSearch() const { return *m_fileSearch; }

    // Macro recording, playback and the saved macros (owned by the window).
    MacroCommands &macros() const { return *m_macros; }

private:
    std::unique_ptr<RecentFiles> m_recentFiles;
    std::unique_ptr<FindModel> m_findModel;
    std::unique_ptr<MainWindow> m_window;
    DocumentFlows *m_flows;             // owned by the window
    CommandContext *m_context;          // owned by the window
    AppearanceController *m_appearance; // owned by the window
    std::unique_ptr<CommandRegistry> m_commands;
    std::unique_ptr<SecondaryWindows> m_secondaryWindows;
    std::unique_ptr<AppDelegate> m_delegate;
    std::unique_ptr<MainMenu> m_menu;
    SearchResultsPanel *m_searchResults = nullptr; // owned by the window (in its dock)
    FileSearchRunner *m_fileSearch = nullptr;      // owned by the window
    MacroCommands *m_macros = nullptr;             // owned by the window
};

} // namespace mirtex
