#include "ui/app/AppDelegate.h"

#include "core/app/Preferences.h"
#include "core/app/UrlEvent.h"
#include "ui/app/MainMenu.h"
#include "ui/app/SessionKeeper.h"
#include "ui/app/SettingsWindow.h"
#include "ui/app/ShortcutsWindow.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"

#include <QApplication>
#include <QDir>
#include <QMenuBar>
#include <QScreen>
#include <QTimer>

namespace mirtex {

namespace {
constexpr int kSessionPeriodMs = 8000;

void centre(QWidget *window)
{
    window->resize(window->size().expandedTo(window->sizeHint())); // its real size, then the place
    if (const QScreen *screen = QGuiApplication::primaryScreen())
        window->move(screen->availableGeometry().center() - window->rect().center());
}
} // namespace

AppDelegate::AppDelegate(Preferences &prefs,
                         std::unique_ptr<SessionKeeper> session,
                         QObject *parent)
    : QObject(parent)
    , m_prefs(prefs)
    , m_session(std::move(session))
{}

AppDelegate::~AppDelegate()
{
    delete m_main.data();
}

void AppDelegate::openPaths(const QStringList &paths)
{
    if (!m_launched) {
        m_pendingPaths.append(paths);
        return;
    }
    m_main->openPaths(paths);
    reopen();
}

void AppDelegate::handleUrlEvent(const QString &url)
{
    const auto event = UrlEvent::parse(url);
    if (!event)
        return;
    const auto text = event->resolveText(QDir::tempPath());
    if (!text)
        return;
    if (!m_launched) {
        m_pendingTexts.append(*text);
        return;
    }
    DocumentTab *tab = m_main->newDocument(*text);
    tab->document().markHandedOver();
    reopen();
}

void AppDelegate::launch(bool showWindow)
{
    m_main = new MainWindow(m_prefs);
    m_menu = new MainMenu(m_main, this);
    m_menu->onQuit = [this]() { requestQuit(); };
    m_menu->onShowPreferences = [this]() { showPreferences(); };
    m_menu->onShowShortcuts = [this]() { showShortcuts(); };
    m_main->onQuitRequested = [this]() { requestQuit(); };

    bool restored = false;
    if (m_prefs.rememberSession() && m_session)
        restored = m_session->restore(*m_main);
    if (!restored)
        m_main->newDocument();
    m_launched = true;

    if (!m_pendingPaths.isEmpty())
        m_main->openPaths(m_pendingPaths);
    for (const QString &text : std::as_const(m_pendingTexts))
        m_main->newDocument(text); // clean: its saved text is the handed-over text
    m_pendingPaths.clear();
    m_pendingTexts.clear();

    if (showWindow)
        m_main->show();

    m_sessionTimer = new QTimer(this);
    m_sessionTimer->setInterval(kSessionPeriodMs);
    connect(m_sessionTimer, &QTimer::timeout, this, &AppDelegate::writeSessionIfRemembered);
    m_sessionTimer->start();
}

void AppDelegate::reopen()
{
    if (!m_main)
        return;
    m_main->show();
    m_main->raise();
    m_main->activateWindow();
}

void AppDelegate::writeSessionIfRemembered()
{
    if (m_main && m_session && m_prefs.rememberSession())
        m_session->write(*m_main);
}

bool AppDelegate::shouldTerminate()
{
    if (!m_main)
        return true;
    if (m_prefs.rememberSession()) {
        if (m_session)
            m_session->write(*m_main);
        return true;
    }
    if (m_closeApproved)
        return true;
    for (DocumentTab *tab : m_main->documents()) {
        if (!m_main->documents().contains(tab) || !tab->document().isDirty())
            continue;
        if (m_main->askToSave(tab) == MainWindow::SaveAnswer::cancelled)
            return false;
    }
    m_closeApproved = true;
    return true;
}

void AppDelegate::willTerminate()
{
    if (m_terminated)
        return;
    m_terminated = true;
    if (m_sessionTimer)
        m_sessionTimer->stop();
    if (!m_prefs.rememberSession() && m_session)
        m_session->remove();
}

void AppDelegate::requestQuit()
{
    if (!shouldTerminate())
        return;
    willTerminate();
    if (m_main)
        m_main->hide();
    QCoreApplication::quit();
}

void AppDelegate::showPreferences()
{
    if (!m_settingsWindow) {
        m_settingsWindow = new SettingsWindow(m_prefs, m_main);
        centre(m_settingsWindow);
    }
    m_settingsWindow->show();
    m_settingsWindow->raise();
    m_settingsWindow->activateWindow();
}

void AppDelegate::showShortcuts()
{
    if (!m_shortcutsWindow) {
        m_shortcutsWindow = new ShortcutsWindow(m_main->menuBar(), m_main);
        centre(m_shortcutsWindow);
    }
    m_shortcutsWindow->show();
    m_shortcutsWindow->raise();
    m_shortcutsWindow->activateWindow();
}

} // namespace mirtex
