// The web view the Markdown preview shows its page in, and the engine that makes such views and
// prints pages to PDF. The desktop program installs the Chromium-based engine at start-up; the
// rest of the interface only knows these two small interfaces, so that it builds and is tested
// without Chromium (the tests install a fake engine).
#pragma once

#include <QString>
#include <QUrl>
#include <QVariant>

#include <functional>
#include <memory>

class QWidget;

namespace mirtex {

class PreviewWebView
{
public:
    virtual ~PreviewWebView() = default;

    virtual QWidget *widget() = 0;
    // Loads a whole page; `loadFinished` is called when it has loaded (or failed).
    virtual void loadPage(const QString &html, const QUrl &baseUrl) = 0;
    // Runs one of the program's scripts in the page (never the page's own, which are disabled).
    virtual void runScript(const QString &script) = 0;
    // Runs a script and hands its value back on the main thread.
    virtual void evaluate(const QString &script, std::function<void(const QVariant &)> done) = 0;
    virtual void setZoom(double factor) = 0;

    // Set by the preview.
    std::function<void(bool ok)> loadFinished;
    // Whether the view may go to `url`; `userStarted` for a link the user followed.
    std::function<bool(const QUrl &url, bool userStarted, bool mainFrame)> navigationRequested;
    // The user scrolled the page.
    std::function<void()> scrolled;
};

class PreviewEngine
{
public:
    virtual ~PreviewEngine() = default;

    virtual std::unique_ptr<PreviewWebView> createView(QWidget *parent) = 0;

    // Prints `page` (loaded with `baseUrl`) to a PDF file at `path`: A4 or Letter as the locale
    // has it, 2 cm margins. The file appears complete or not at all. `done` is called once, on
    // the main thread, with an Italian reason on failure (empty on success).
    virtual void printPdf(const QString &page,
                          const QUrl &baseUrl,
                          const QString &path,
                          const QString &title,
                          std::function<void(const QString &error)> done)
        = 0;

    // The engine the program uses; null until one is installed (then the preview is unavailable).
    static PreviewEngine *installed();
    static void install(std::unique_ptr<PreviewEngine> engine);
};

} // namespace mirtex
