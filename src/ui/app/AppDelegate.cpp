#include "ui/app/AppDelegate.h"

#include "core/app/Preferences.h"
#include "core/app/UrlEvent.h"
#include "ui/app/SessionKeeper.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"

#include <QCoreApplication>
#include <QDir>
#include <QTimer>

namespace mirtex {

namespace {
constexpr int kSessionPeriodMs = 8000;
} // namespace

AppDelegate::AppDelegate(Preferences &prefs,
                         DocumentFlows &flows,
                         std::unique_ptr<SessionKeeper> session,
                         QObject *parent)
    : QObject(parent)
    , m_prefs(prefs)
    , m_flows(flows)
    , m_main(flows.window())
    , m_session(std::move(session))
{
    m_main.onQuitRequested = [this]() { requestQuit(); };
}

AppDelegate::~AppDelegate()
{
    m_main.onQuitRequested = nullptr;
}

void AppDelegate::openPaths(const QStringList &paths)
{
    if (!m_launched) {
        m_pendingPaths.append(paths);
        return;
    }
    m_flows.openPaths(paths);
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
    DocumentTab *tab = m_main.newDocument(*text);
    tab->document().markHandedOver();
    reopen();
}

void AppDelegate::launch(bool showWindow)
{
    bool restored = false;
    if (m_prefs.rememberSession() && m_session)
        restored = m_session->restore(m_flows);
    if (!restored)
        m_main.newDocument();
    m_launched = true;

    if (!m_pendingPaths.isEmpty())
        m_flows.openPaths(m_pendingPaths);
    for (const QString &text : std::as_const(m_pendingTexts))
        m_main.newDocument(text); // clean: its saved text is the handed-over text
    m_pendingPaths.clear();
    m_pendingTexts.clear();

    if (showWindow)
        m_main.show();

    m_sessionTimer = new QTimer(this);
    m_sessionTimer->setInterval(kSessionPeriodMs);
    connect(m_sessionTimer, &QTimer::timeout, this, &AppDelegate::writeSessionIfRemembered);
    m_sessionTimer->start();
}

void AppDelegate::reopen()
{
    if (!m_launched)
        return;
    m_main.show();
    m_main.raise();
    m_main.activateWindow();
}

void AppDelegate::writeSessionIfRemembered()
{
    if (m_launched && m_session && m_prefs.rememberSession())
        m_session->write(m_main);
}

bool AppDelegate::shouldTerminate()
{
    if (!m_launched)
        return true;
    if (m_prefs.rememberSession()) {
        if (m_session)
            m_session->write(m_main);
        return true;
    }
    if (m_closeApproved)
        return true;
    for (DocumentTab *tab : m_main.documents()) {
        if (!m_main.documents().contains(tab) || !tab->document().isDirty())
            continue;
        if (m_flows.askToSave(tab) == DocumentFlows::SaveOutcome::cancelled)
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
    m_main.hide();
    QCoreApplication::quit();
}

} // namespace mirtex
