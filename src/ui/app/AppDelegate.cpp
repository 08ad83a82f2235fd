#include "ui/app/AppDelegate.h"

#include "core/app/Preferences.h"
#include "core/app/UrlEvent.h"
#include "ui/app/SessionKeeper.h"
#include "ui/dialogs/Questions.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/document/PendingTab.h"

#include <QCoreApplication>
#include <QDir>
#include <QPointer>
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
    if (!text) {
        // As for a file named on the command line: the user hears why, once the window is up.
        if (m_launched)
            m_flows.report(text.error());
        else
            m_pendingErrors.append(text.error());
        return;
    }
    if (!m_launched) {
        m_pendingTexts.append(*text);
        return;
    }
    DocumentTab *tab = m_main.newDocument(*text);
    tab->document().markHandedOver();
    reopen();
}

bool AppDelegate::remembersTabs() const
{
    return m_prefs.rememberSession() && m_session && m_session->isWriter();
}

void AppDelegate::launch(bool showWindow)
{
    bool restored = false;
    if (remembersTabs())
        restored = m_session->restore(m_flows);
    if (!restored)
        m_main.newDocument();
    m_launched = true;

    if (!m_pendingPaths.isEmpty())
        m_flows.openPaths(m_pendingPaths);
    for (const QString &text : std::as_const(m_pendingTexts))
        m_main.newDocument(text); // clean: its saved text is the handed-over text
    for (const DocumentError &error : std::as_const(m_pendingErrors))
        m_flows.report(error);
    m_pendingPaths.clear();
    m_pendingTexts.clear();
    m_pendingErrors.clear();

    if (showWindow)
        m_main.show();

    m_sessionTimer = new QTimer(this);
    m_sessionTimer->setInterval(kSessionPeriodMs);
    connect(m_sessionTimer, &QTimer::timeout, this, &AppDelegate::tickSession);
    m_sessionTimer->start();

    // Said once, when the window is up: its tabs will not come back.
    if (m_prefs.rememberSession() && m_session && !m_session->isWriter())
        QTimer::singleShot(0, this, [this]() {
            m_flows.questions().inform(
                &m_main,
                tr("Un'altra finestra di Mirtex++ sta già salvando la sessione: questa finestra "
                   "non la ricorderà."),
                tr("Alla chiusura ti verrà chiesto di salvare i documenti modificati."));
        });
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
    // Never before the restore is over: the session on disk still holds what is not back yet.
    if (m_launched && remembersTabs())
        m_session->write(m_main);
}

void AppDelegate::tickSession()
{
    if (m_launched && remembersTabs())
        m_session->writeInBackground(m_main);
}

bool AppDelegate::shouldTerminate()
{
    if (!m_launched)
        return true;
    if (remembersTabs()) {
        while (const auto failure = m_session->write(m_main)) {
            switch (m_flows.questions().askAboutUnwrittenSession(&m_main, *failure)) {
            case UnwrittenSessionAnswer::retry:
                continue;
            case UnwrittenSessionAnswer::quitAnyway:
                return true;
            case UnwrittenSessionAnswer::saveDocuments:
                return askToSaveEach();
            }
        }
        return true;
    }
    return askToSaveEach();
}

bool AppDelegate::askToSaveEach()
{
    if (m_closeApproved)
        return true;
    // Every tab, loaded or not: a pending tab with unsaved text is loaded to be asked about (one
    // that does not load keeps the application open rather than lose its text).
    const QList<QWidget *> pages = m_main.pagesInOrder();
    const QList<QPointer<QWidget>> guarded(pages.begin(), pages.end());
    for (const QPointer<QWidget> &page : guarded) {
        if (!page || !m_main.pagesInOrder().contains(page.data()))
            continue;
        DocumentTab *tab = m_main.tabForPage(page);
        if (auto *pending = qobject_cast<PendingTab *>(page.data())) {
            if (!pending->entry().hasBackup)
                continue;
            tab = pending->load();
            if (!tab && m_main.pagesInOrder().contains(page.data()))
                return false;
        }
        if (!tab || !tab->document().isDirty())
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
    if (!m_prefs.rememberSession() && m_session && m_session->isWriter())
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
