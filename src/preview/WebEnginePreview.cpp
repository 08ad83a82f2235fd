#include "preview/WebEnginePreview.h"

#include "core/markdown/MarkdownExport.h"
#include "core/markdown/MarkdownRenderer.h"
#include "core/markdown/PreviewScripts.h"
#include "ui/document/PreviewCommands.h"
#include "ui/document/PreviewEngine.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QPageLayout>
#include <QPageSize>
#include <QPixmap>
#include <QPointer>
#include <QThread>
#include <QTimer>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineSettings>
#include <QWebEngineView>

#include <cstdio>
#include <unistd.h>

namespace mirtex {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("MarkdownExport", text);
}

// setHtml() carries the page in a data: URL, which Chromium limits to 2 MB: larger pages are
// loaded empty and filled by a script.
constexpr qsizetype kWholeLoadLimit = 400'000;

class PreviewPage : public QWebEnginePage
{
public:
    explicit PreviewPage(QObject *parent)
        : QWebEnginePage(parent)
    {
        QWebEngineSettings *s = settings();
        // The page's own scripts never run; the program's run in their own world.
        s->setAttribute(QWebEngineSettings::JavascriptEnabled, false);
        s->setAttribute(QWebEngineSettings::JavascriptCanOpenWindows, false);
        s->setAttribute(QWebEngineSettings::PluginsEnabled, false);
        s->setAttribute(QWebEngineSettings::LocalContentCanAccessFileUrls, true);
        s->setAttribute(QWebEngineSettings::ErrorPageEnabled, false);
        s->setAttribute(QWebEngineSettings::ScrollAnimatorEnabled, false);
        connect(this, &QWebEnginePage::loadFinished, this, [this](bool ok) { finished(ok); });
    }

    std::function<bool(const QUrl &, bool, bool)> decide;
    std::function<void(bool)> loaded;

    void load(const QString &html, const QUrl &base)
    {
        m_body.clear();
        PreviewScripts::PageParts parts;
        ++m_ownLoads;
        if (html.size() > kWholeLoadLimit && PreviewScripts::splitPage(html, parts)) {
            m_body = PreviewScripts::updateScript(parts.body.toStdString());
            setHtml(parts.shell, base);
        } else {
            setHtml(html, base);
        }
    }

    void run(const QString &script) { runJavaScript(script, QWebEngineScript::ApplicationWorld); }

protected:
    bool acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame) override
    {
        const bool userStarted = type == NavigationTypeLinkClicked;
        if (m_ownLoads > 0 && isMainFrame && !userStarted) {
            --m_ownLoads;
            return true;
        }
        return decide && decide(url, userStarted, isMainFrame);
    }

    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel,
                                  const QString &,
                                  int,
                                  const QString &) override
    {}

private:
    void finished(bool ok)
    {
        if (ok && !m_body.empty()) {
            const QString script = QString::fromStdString(std::exchange(m_body, {}));
            QPointer<PreviewPage> self(this);
            runJavaScript(script, QWebEngineScript::ApplicationWorld, [self](const QVariant &) {
                if (self && self->loaded)
                    self->loaded(true);
            });
            return;
        }
        m_body.clear();
        if (loaded)
            loaded(ok);
    }

    std::string m_body;
    int m_ownLoads = 0;
};

class WebEngineView : public PreviewWebView
{
public:
    explicit WebEngineView(QWidget *parent)
        : m_view(new QWebEngineView(parent))
        , m_page(new PreviewPage(m_view))
    {
        m_view->setPage(m_page);
        m_view->setContextMenuPolicy(Qt::NoContextMenu);
        m_page->decide = [this](const QUrl &url, bool userStarted, bool mainFrame) {
            return navigationRequested && navigationRequested(url, userStarted, mainFrame);
        };
        m_page->loaded = [this](bool ok) {
            if (loadFinished)
                loadFinished(ok);
        };
        QObject::connect(m_page, &QWebEnginePage::scrollPositionChanged, m_view, [this]() {
            if (scrolled)
                scrolled();
        });
    }

    ~WebEngineView() override
    {
        if (m_view) {
            m_page->decide = nullptr;
            m_page->loaded = nullptr;
            m_page->disconnect(m_view);
        }
    }

    QWidget *widget() override { return m_view; }

    void loadPage(const QString &html, const QUrl &baseUrl) override
    {
        m_page->load(html, baseUrl);
    }

    void runScript(const QString &script) override { m_page->run(script); }

    void evaluate(const QString &script, std::function<void(const QVariant &)> done) override
    {
        m_page->runJavaScript(script, QWebEngineScript::ApplicationWorld, std::move(done));
    }

    void setZoom(double factor) override { m_view->setZoomFactor(factor); }

private:
    QPointer<QWebEngineView> m_view;
    PreviewPage *m_page;
};

QPageLayout printLayout()
{
    const bool letter = QLocale().measurementSystem() == QLocale::ImperialUSSystem;
    return QPageLayout(QPageSize(letter ? QPageSize::Letter : QPageSize::A4),
                       QPageLayout::Portrait,
                       QMarginsF(20, 20, 20, 20),
                       QPageLayout::Millimeter);
}

// Loads a page off screen and prints it; deletes itself when done.
class PdfJob : public QObject
{
public:
    PdfJob(const QString &page,
           const QUrl &base,
           const QString &path,
           std::function<void(const QString &)> done)
        : m_page(new PreviewPage(this))
        , m_path(path)
        , m_done(std::move(done))
    {
        // Links are not followed while printing.
        m_page->decide = [](const QUrl &, bool, bool) { return false; };
        m_page->loaded = [this](bool ok) { loaded(ok); };
        // A folder that is not there fails at once, before the page is laid out.
        const QFileInfo folder(QFileInfo(path).absolutePath());
        if (!folder.isDir()) {
            QTimer::singleShot(0, this, [this, folder]() {
                finish(tr("La cartella %1 non esiste.").arg(folder.filePath()));
            });
            return;
        }
        m_page->load(page, base);
    }

private:
    void loaded(bool ok)
    {
        if (!ok) {
            finish(tr("La pagina da stampare non si è caricata."));
            return;
        }
        m_page->printToPdf(
            [this](const QByteArray &pdf) {
                if (pdf.isEmpty()) {
                    finish(tr("La stampa della pagina non è riuscita."));
                    return;
                }
                QString error;
                PreviewCommands::writeWhole(m_path, pdf, error);
                finish(error);
            },
            printLayout());
    }

    void finish(const QString &error)
    {
        if (m_finished)
            return;
        m_finished = true;
        m_page->loaded = nullptr;
        if (m_done)
            m_done(error);
        deleteLater();
    }

    PreviewPage *m_page;
    QString m_path;
    std::function<void(const QString &)> m_done;
    bool m_finished = false;
};

class WebEngine : public PreviewEngine
{
public:
    std::unique_ptr<PreviewWebView> createView(QWidget *parent) override
    {
        return std::make_unique<WebEngineView>(parent);
    }

    void printPdf(const QString &page,
                  const QUrl &baseUrl,
                  const QString &path,
                  const QString &,
                  std::function<void(const QString &)> done) override
    {
        new PdfJob(page, baseUrl, path, std::move(done));
    }
};

void addChromiumFlag(const char *flag)
{
    QByteArray flags = qgetenv("QTWEBENGINE_CHROMIUM_FLAGS");
    if (flags.contains(flag))
        return;
    if (!flags.isEmpty())
        flags += ' ';
    flags += flag;
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS", flags);
}

QUrl folderOf(const QString &path)
{
    return QUrl::fromLocalFile(QFileInfo(path).absolutePath() + u'/');
}

bool readMarkdown(const QString &path, std::string &text, QString &error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        error = tr("Impossibile leggere %1.").arg(path);
        return false;
    }
    text = file.readAll().toStdString();
    return true;
}

std::string renderBody(const QString &sourcePath, std::string text)
{
    MarkdownRenderer renderer;
    renderer.baseURL = folderOf(sourcePath);
    renderer.highlightCode = true;
    return renderer.renderBody(std::move(text));
}

} // namespace

void WebEnginePreview::prepareProcess()
{
    if (::geteuid() == 0)
        addChromiumFlag("--no-sandbox");
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
}

void WebEnginePreview::setDarkPages(bool dark)
{
    if (dark)
        addChromiumFlag("--force-dark-mode");
}

void WebEnginePreview::install()
{
    PreviewEngine::install(std::make_unique<WebEngine>());
}

bool WebEnginePreview::exportPdf(const QString &sourcePath,
                                 const QString &outputPath,
                                 QString &error)
{
    std::string text;
    if (!readMarkdown(sourcePath, text, error))
        return false;
    const QString page = QString::fromStdString(
        MarkdownRenderer::page(renderBody(sourcePath, std::move(text)), true));
    QEventLoop loop;
    bool ended = false;
    QString failure;
    new PdfJob(page, folderOf(sourcePath), outputPath, [&](const QString &reason) {
        failure = reason;
        ended = true;
        loop.quit();
    });
    if (!ended)
        loop.exec();
    // The job's page goes before the profile does.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    if (!failure.isEmpty()) {
        error = tr("Impossibile esportare il PDF.") + u' ' + failure;
        return false;
    }
    return true;
}

int WebEnginePreview::runSnapshot(const QStringList &arguments, const QString &workingDir)
{
    QString source;
    QString output;
    QSize size(900, 1000);
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &arg = arguments[i];
        const bool hasValue = i + 1 < arguments.size();
        if (arg == QLatin1String("--markdown-snapshot") && hasValue) {
            source = QFileInfo(QDir(workingDir), arguments[++i]).absoluteFilePath();
        } else if (arg == QLatin1String("--out") && hasValue) {
            output = QFileInfo(QDir(workingDir), arguments[++i]).absoluteFilePath();
        } else if (arg == QLatin1String("--size") && hasValue) {
            const QStringList parts = arguments[++i].split(u'x');
            if (parts.size() == 2 && parts[0].toInt() > 0 && parts[1].toInt() > 0)
                size = QSize(parts[0].toInt(), parts[1].toInt());
        } else if (arg == QLatin1String("--dark")) {
            setDarkPages(true);
        }
    }
    if (source.isEmpty() || output.isEmpty()) {
        std::fprintf(stderr,
                     "usage: mirtex --markdown-snapshot FILE.md --out X.png|X.pdf "
                     "[--size WxH] [--dark]\n");
        return 2;
    }
    if (output.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive)) {
        QString error;
        if (!exportPdf(source, output, error)) {
            std::fprintf(stderr, "export failed: %s\n", qPrintable(error));
            return 1;
        }
        std::printf("wrote %s\n", qPrintable(output));
        return 0;
    }
    std::string text;
    QString error;
    if (!readMarkdown(source, text, error)) {
        std::fprintf(stderr, "files not opened\n");
        return 1;
    }
    const QString page = QString::fromStdString(
        MarkdownRenderer::page(renderBody(source, std::move(text)), false));
    WebEngineView view(nullptr);
    QWidget *widget = view.widget();
    widget->resize(size);
    widget->show();
    QEventLoop loop;
    bool loaded = false;
    view.loadFinished = [&](bool ok) {
        loaded = ok;
        loop.quit();
    };
    view.navigationRequested = [](const QUrl &, bool, bool) { return false; };
    QTimer::singleShot(20'000, &loop, &QEventLoop::quit);
    view.loadPage(page, folderOf(source));
    loop.exec();
    // The first frame reaches the widget a moment after the load.
    for (int i = 0; i < 30; ++i) {
        QApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::msleep(10);
    }
    const QPixmap picture = widget->grab();
    delete widget;
    if (!loaded || picture.isNull() || !picture.save(output)) {
        std::fprintf(stderr, "render failed\n");
        return 1;
    }
    std::printf("wrote %s\n", qPrintable(output));
    return 0;
}

} // namespace mirtex
