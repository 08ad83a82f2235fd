#include "ui/document/MarkdownPreviewController.h"

#include "core/languages/Language.h"
#include "core/markdown/MarkdownRenderer.h"
#include "core/markdown/PreviewScripts.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/PreviewEngine.h"
#include "ui/editor/EditorView.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QtConcurrent>

namespace mirtex {

MarkdownPreviewController::MarkdownPreviewController(DocumentTab &tab,
                                                     PreviewWebView &view,
                                                     QObject *parent)
    : QObject(parent)
    , onOpenExternally([](const QUrl &url) { QDesktopServices::openUrl(url); })
    , isOpenableText(&MarkdownPreviewController::isTextFileByExtension)
    , m_tab(&tab)
    , m_view(view)
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(kRenderDelayMs);
    connect(&m_timer, &QTimer::timeout, this, [this]() {
        m_renderScheduled = false;
        update();
    });
    connect(&m_watcher, &QFutureWatcher<Rendering>::finished, this, [this]() { finished(); });
    m_view.loadFinished = [this](bool ok) { pageLoaded(ok); };
    m_view.navigationRequested = [this](const QUrl &url, bool userStarted, bool mainFrame) {
        return navigate(url, userStarted, mainFrame);
    };
}

MarkdownPreviewController::~MarkdownPreviewController()
{
    m_view.loadFinished = nullptr;
    m_view.navigationRequested = nullptr;
    m_watcher.disconnect(this);
    m_watcher.waitForFinished();
}

bool MarkdownPreviewController::isTextFileByExtension(const QString &path)
{
    const QString extension = QFileInfo(path).suffix().toLower();
    if (extension.isEmpty())
        return false;
    for (const LanguagePtr &language : Language::all()) {
        if (language->extensions().contains(extension))
            return true;
    }
    return false;
}

void MarkdownPreviewController::scheduleRender()
{
    if (m_renderScheduled)
        return;
    m_renderScheduled = true;
    m_timer.start();
}

QUrl MarkdownPreviewController::baseUrl() const
{
    const auto &path = m_tab->document().path();
    if (!path)
        return QUrl(QStringLiteral("about:blank"));
    return QUrl::fromLocalFile(QFileInfo(*path).absolutePath() + u'/');
}

void MarkdownPreviewController::update()
{
    if (!m_tab)
        return;
    const Document &document = m_tab->document();
    if (m_everLoaded && document.changeCount() == m_renderedChange
        && document.path() == m_renderedPath)
        return;
    // One rendering (and its update of the page) at a time: a change during it is rendered when
    // it ends.
    if (m_watcher.isRunning() || m_updateInFlight) {
        m_renderAgain = true;
        return;
    }
    start();
}

void MarkdownPreviewController::start()
{
    m_renderedChange = m_tab->document().changeCount();
    MarkdownRenderer renderer;
    renderer.highlightCode = true;
    if (m_tab->document().path())
        renderer.baseURL = baseUrl();
    // The text is copied here (one memcpy); parsing, rendering and quoting run on the pool.
    QByteArray utf8 = m_tab->editor()->utf8Text();
    m_watcher.setFuture(QtConcurrent::run([renderer, utf8 = std::move(utf8)]() {
        Rendering result;
        result.body = renderer.renderBody(utf8.toStdString());
        result.updateScript = QString::fromStdString(PreviewScripts::updateScript(result.body));
        return result;
    }));
}

void MarkdownPreviewController::finished()
{
    if (!m_tab)
        return;
    Rendering rendering = m_watcher.result();
    const auto &path = m_tab->document().path();
    if (m_pageLoaded && m_everLoaded && path == m_renderedPath) {
        sendUpdate(rendering.updateScript);
    } else {
        m_updateInFlight = false;
        m_pageLoaded = false;
        m_everLoaded = true;
        m_loadedBase = baseUrl();
        m_view.loadPage(QString::fromStdString(MarkdownRenderer::page(rendering.body, false)),
                        m_loadedBase);
        m_renderedPath = path;
        if (m_lastLine)
            runScript(PreviewScripts::followScript(m_lastLine->first, m_lastLine->second));
    }
    Q_EMIT rendered();
    afterUpdate();
}

void MarkdownPreviewController::sendUpdate(const QString &script)
{
    m_updateInFlight = true;
    QPointer<MarkdownPreviewController> self(this);
    m_view.evaluate(script, [self](const QVariant &) {
        if (!self || !self->m_updateInFlight)
            return;
        self->m_updateInFlight = false;
        self->afterUpdate();
    });
}

void MarkdownPreviewController::afterUpdate()
{
    if (m_renderAgain && !m_updateInFlight && !m_watcher.isRunning()) {
        m_renderAgain = false;
        update();
    }
}

void MarkdownPreviewController::runScript(const QString &script)
{
    if (!m_pageLoaded) {
        m_pendingScript = script;
        return;
    }
    m_view.runScript(script);
}

void MarkdownPreviewController::pageLoaded(bool ok)
{
    if (!ok) {
        // The next render loads the page again.
        m_everLoaded = false;
        return;
    }
    m_pageLoaded = true;
    m_updateInFlight = false;
    m_view.runScript(PreviewScripts::followFunction());
    if (m_pendingScript) {
        const QString script = *std::exchange(m_pendingScript, std::nullopt);
        m_view.runScript(script);
    }
}

void MarkdownPreviewController::follow(int line, bool atEnd)
{
    m_lastLine = std::pair{line, atEnd};
    runScript(PreviewScripts::followScript(line, atEnd));
}

void MarkdownPreviewController::setZoomStep(int zoomStep)
{
    m_view.setZoom(PreviewScripts::pageZoom(zoomStep));
}

bool MarkdownPreviewController::navigate(const QUrl &url, bool userStarted, bool mainFrame)
{
    const PreviewNavigation decision
        = PreviewNavigation::decide(url, userStarted, mainFrame, m_loadedBase, isOpenableText);
    switch (decision.action) {
    case PreviewNavigation::Action::proceed:
        return true;
    case PreviewNavigation::Action::refuse:
        return false;
    case PreviewNavigation::Action::scrollToFragment:
        runScript(PreviewScripts::fragmentScript(decision.fragment));
        return false;
    case PreviewNavigation::Action::openInTab:
        if (onOpenFile)
            onOpenFile(decision.path);
        return false;
    case PreviewNavigation::Action::openExternally:
        if (onOpenExternally)
            onOpenExternally(url);
        return false;
    }
    return false;
}

} // namespace mirtex
