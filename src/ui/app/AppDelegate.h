// The application's own behaviour around the main window: the launch sequence, files and texts
// handed over (queued until launch has run), the periodic session save, and the quit sequence.
#pragma once

#include "core/document/DocumentError.h"
#include "ui/app/SessionKeeper.h"

#include <QList>
#include <QObject>
#include <QStringList>

#include <memory>

class QTimer;

namespace mirtex {

class DocumentFlows;
class MainWindow;
class Preferences;

class AppDelegate : public QObject
{
    Q_OBJECT

public:
    // `session` may be null (no session storage). The window is shown by launch().
    AppDelegate(Preferences &prefs,
                DocumentFlows &flows,
                std::unique_ptr<SessionKeeper> session,
                QObject *parent = nullptr);
    ~AppDelegate() override;

    // Null when there is no session storage.
    const SessionKeeper *session() const { return m_session.get(); }

    const QStringList &pendingPaths() const { return m_pendingPaths; }

    const QStringList &pendingTexts() const { return m_pendingTexts; }

    // Files given by the system or a second launch; queued before launch.
    void openPaths(const QStringList &paths);
    // A mirtex: URL; see UrlEvent for the rules.
    void handleUrlEvent(const QString &url);
    // The launch sequence: the session or a new document, then what was handed over before.
    // `showWindow` is false for tests.
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
    // The periodic write, in the background, if the preference is on.
    void tickSession();

private:
    // The session is on and this process is its writer.
    bool remembersTabs() const;
    // Asks about each modified tab; false when the user cancelled.
    bool askToSaveEach();

    Preferences &m_prefs;
    DocumentFlows &m_flows;
    MainWindow &m_main;
    std::unique_ptr<SessionKeeper> m_session;
    QTimer *m_sessionTimer = nullptr;
    QStringList m_pendingPaths;
    QStringList m_pendingTexts;
    QList<DocumentError> m_pendingErrors; // URLs whose file could not be read before launch
    bool m_launched = false;
    bool m_closeApproved = false;
    bool m_terminated = false;
};

} // namespace mirtex
