// Keeps a tab's rendered Markdown page up to date in its web view: renders 0.15 s after the text
// stops changing (away from the main thread), replaces only the page's content once the page has
// loaded (no reload, no flicker, the scroll position kept), loads a whole page only for a new
// document or file, holds the latest script asked for while a page loads, follows the editor's
// top line, and decides where links go.
#pragma once

#include "core/markdown/PreviewNavigation.h"

#include <QFutureWatcher>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <optional>

namespace mirtex {

class DocumentTab;
class PreviewWebView;

class MarkdownPreviewController : public QObject
{
    Q_OBJECT

public:
    static constexpr int kRenderDelayMs = 150;

    MarkdownPreviewController(DocumentTab &tab, PreviewWebView &view, QObject *parent = nullptr);
    ~MarkdownPreviewController() override;

    // Called for every change of the text: one render 0.15 s later, however many changes come.
    void scheduleRender();
    // Renders now unless nothing changed since the last render (same change count, same file).
    void update();
    // Shows the editor's top line (0-based) at the top of the page; `atEnd` the page's end.
    void follow(int line, bool atEnd);
    void setZoomStep(int zoomStep);

    bool isPageLoaded() const { return m_pageLoaded; }

    bool isRenderScheduled() const { return m_renderScheduled; }

    // Rendering, or the page still applying the last update.
    bool isRendering() const { return m_watcher.isRunning() || m_updateInFlight; }

    const std::optional<QString> &pendingScript() const { return m_pendingScript; }

    // Open a local text file in a tab; hand a link to the desktop.
    std::function<void(const QString &path)> onOpenFile;
    std::function<void(const QUrl &url)> onOpenExternally;
    // Whether a local file can be opened as text (by default: a known language's extension).
    std::function<bool(const QString &path)> isOpenableText;

    static bool isTextFileByExtension(const QString &path);

Q_SIGNALS:
    // A render reached the view: as an in-place update or as a page load.
    void rendered();

private:
    struct Rendering
    {
        std::string body;
        QString updateScript;
    };

    void start();
    void finished();
    void runScript(const QString &script);
    void sendUpdate(const QString &script);
    void afterUpdate();
    void pageLoaded(bool ok);
    bool navigate(const QUrl &url, bool userStarted, bool mainFrame);
    QUrl baseUrl() const;

    QPointer<DocumentTab> m_tab;
    PreviewWebView &m_view;
    QTimer m_timer;
    QFutureWatcher<Rendering> m_watcher;
    qint64 m_renderedChange = -1;
    std::optional<QString> m_renderedPath; // the file at the last full load
    bool m_everLoaded = false;
    bool m_pageLoaded = false;
    std::optional<QString> m_pendingScript;
    bool m_renderScheduled = false;
    bool m_renderAgain = false;
    // An in-place update sent and not yet applied by the page: the next waits for it, so that a
    // page slower than the typing never falls behind by more than one update.
    bool m_updateInFlight = false;
    QUrl m_loadedBase;
    std::optional<std::pair<int, bool>> m_lastLine;
};

} // namespace mirtex
