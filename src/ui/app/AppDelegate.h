// The application's own behaviour around the main window: the launch sequence, files and texts
// handed over (queued until launch has run), the periodic session save, and the quit sequence.
#pragma once

#include "ui/app/SessionKeeper.h"

#include <QObject>
#include <QPointer>
#include <QStringList>

#include <memory>

class QTimer;

namespace mirtex {

class MainMenu;
class MainWindow;
class Preferences;
class SettingsWindow;
class ShortcutsWindow;

class AppDelegate : public QObject
{
    Q_OBJECT

public:
    // `session` may be null (no session storage).
    AppDelegate(Preferences &prefs,
                std::unique_ptr<SessionKeeper> session,
                QObject *parent = nullptr);
    ~AppDelegate() override;

    MainWindow *mainWindow() const { return m_main; }

    MainMenu *mainMenu() const { return m_menu; }

    const QStringList &pendingPaths() const { return m_pendingPaths; }

    const QStringList &pendingTexts() const { return m_pendingTexts; }

    // Files given by the system or a second launch; queued before launch.
    void openPaths(const QStringList &paths);
    // A mirtex: URL; see UrlEvent for the rules.
    void handleUrlEvent(const QString &url);
    // The launch sequence. `showWindow` is false for snapshots and tests.
    void launch(bool showWindow = true);
    // A second launch with nothing to hand over: bring the window forward.
    void reopen();

    // The quit sequence: true when the application may quit now.
    bool shouldTerminate();
    void willTerminate();
    // Asks, then quits the event loop when allowed.
    void requestQuit();
    // Writes the session now if the preference is on (timer tick, termination signal).
    void writeSessionIfRemembered();

    void showPreferences();
    void showShortcuts();

private:
    Preferences &m_prefs;
    std::unique_ptr<SessionKeeper> m_session;
    QPointer<MainWindow> m_main;
    MainMenu *m_menu = nullptr;
    QPointer<SettingsWindow> m_settingsWindow;
    QPointer<ShortcutsWindow> m_shortcutsWindow;
    QTimer *m_sessionTimer = nullptr;
    QStringList m_pendingPaths;
    QStringList m_pendingTexts;
    bool m_launched = false;
    bool m_closeApproved = false;
    bool m_terminated = false;
};

} // namespace mirtex
