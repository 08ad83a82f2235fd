// Macros as the user reaches them: the recorder hooked to the editor's input and to the command
// dispatch, the commands to record, play, play several times and save, the "Macro" menu with the
// saved macros (which the command palette lists from it), their shortcuts, the manager window and
// the recording indicator in the status bar. Owns the application's one MacroRecorder. Main
// thread only.
#pragma once

#include "core/editor/MacroLibrary.h"
#include "core/editor/MacroRecorder.h"
#include "ui/document/MacroPlayer.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <optional>

class QAction;
class QKeySequence;
class QLabel;
class QMenu;
class QMenuBar;

namespace mirtex {

class CommandContext;
class CommandRegistry;
class MainWindow;

class MacroCommands : public QObject
{
    Q_OBJECT

public:
    // Registers the commands and loads the saved macros from `libraryPath`.
    MacroCommands(CommandRegistry &registry,
                  CommandContext &context,
                  MainWindow &window,
                  const QString &libraryPath = MacroLibrary::defaultPath());
    ~MacroCommands() override;

    // Adds the "Macro" menu to `menuBar` before `before` (appended when null).
    void addMenu(QMenuBar *menuBar, QMenu *before);

    MacroRecorder &recorder() { return m_recorder; }

    MacroLibrary &library() { return m_library; }

    // The questions the commands ask; dialogs by default, scripted in tests. An answer of nothing
    // means the user cancelled.
    std::function<std::optional<int>()> askCount;
    std::function<std::optional<QString>(const QString &problem)> askName;

    // The last thing the user was told (a refusal, a library problem); for tests.
    const QString &lastMessage() const { return m_lastMessage; }

    // Plays the saved macro `name` once.
    MacroPlayer::Result playSaved(const QString &name);

    // Saves the last macro under a name asked of the user (asked again while it is refused).
    void saveMacro();

    // The manager's changes; each returns what went wrong (empty when done) and tells it.
    // Asks the new name as saving does.
    QString renameSaved(const QString &name);
    QString removeSaved(const QString &name);
    // An empty sequence takes the shortcut away; a key another command or macro has is refused.
    QString setSavedShortcut(const QString &name, const QKeySequence &shortcut);

Q_SIGNALS:
    // The saved macros changed (added, renamed, deleted, given a shortcut).
    void libraryChanged();

private:
    void registerCommands();
    void rebuildMenu();
    void stateChanged();
    void tell(const QString &message);
    MacroPlayer::Result playAndTell(const Macro &steps, int count);

    CommandRegistry &m_registry;
    CommandContext &m_context;
    MainWindow &m_window;
    MacroRecorder m_recorder;
    MacroPlayer m_player;
    MacroLibrary m_library;
    QString m_libraryProblem;
    QString m_lastMessage;
    int m_listener = -1;
    QPointer<CommandRegistry> m_registryAlive; // the registry may go first
    QPointer<QMenu> m_menu;
    QPointer<QLabel> m_indicator;
    QList<QPointer<QAction>> m_savedEntries;
};

} // namespace mirtex
