// The Markdown preview in the real window, over a fake web engine that records what it is asked:
// one render for a burst of typing, updates in place once the page has loaded, a whole page for a
// new file name with the remembered line followed again, scripts held while a page loads, links,
// the commands and the setting that opens the preview, and the exports' files and failures.
#include "core/app/Preferences.h"
#include "core/markdown/PreviewScripts.h"
#include "ui/app/AppAssembly.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/document/MarkdownPreviewController.h"
#include "ui/document/MarkdownPreviewPane.h"
#include "ui/document/PreviewCommands.h"
#include "ui/document/PreviewEngine.h"
#include "ui/editor/EditorView.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

using namespace mirtex;
using namespace Qt::StringLiterals;

namespace {

const QString kUpdate = u"document.getElementById('page').innerHTML = "_s;

struct FakeView : PreviewWebView
{
    explicit FakeView(QWidget *parent)
        : page(new QWidget(parent))
    {}

    QWidget *widget() override { return page; }

    void loadPage(const QString &html, const QUrl &baseUrl) override
    {
        loads.append({html, baseUrl});
    }

    void runScript(const QString &script) override { scripts.append(script); }

    void evaluate(const QString &script, std::function<void(const QVariant &)> done) override
    {
        scripts.append(script);
        if (answerAtOnce)
            done(QVariant(true));
        else
            replies.push_back(std::move(done));
    }

    void setZoom(double factor) override { zoom = factor; }

    QWidget *page;
    QList<std::pair<QString, QUrl>> loads;
    QStringList scripts;
    double zoom = 0;
    bool answerAtOnce = true;
    std::vector<std::function<void(const QVariant &)>> replies;
};

struct FakeEngine : PreviewEngine
{
    std::unique_ptr<PreviewWebView> createView(QWidget *parent) override
    {
        auto view = std::make_unique<FakeView>(parent);
        last = view.get();
        return view;
    }

    void printPdf(const QString &page,
                  const QUrl &,
                  const QString &path,
                  const QString &,
                  std::function<void(const QString &)> done) override
    {
        printed.append({page, path});
        done(failure);
    }

    FakeView *last = nullptr;
    QList<std::pair<QString, QString>> printed;
    QString failure;
};

class MarkdownPreviewTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        auto owned = std::make_unique<FakeEngine>();
        engine = owned.get();
        PreviewEngine::install(std::move(owned));
        PreviewCommands::setPathChooser(
            [this](QWidget *, const QString &, const QString &proposed, const QString &) {
                proposedPaths.append(proposed);
                return chosenPath;
            });
        app = std::make_unique<AppAssembly>(prefs, questions);
        app->window().show();
    }

    void TearDown() override
    {
        app.reset();
        PreviewEngine::install(nullptr);
    }

    QString write(const QString &name, const QByteArray &text)
    {
        QFile file(dir.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        return QFileInfo(file).canonicalFilePath();
    }

    // A new document with its preview shown and its first page loaded.
    DocumentTab *previewed(const QString &text)
    {
        DocumentTab *tab = app->window().newDocument(text);
        EXPECT_TRUE(app->commands().dispatch(u"toggleMarkdownPreview:"_s));
        EXPECT_TRUE(PreviewCommands::previewOf(tab));
        EXPECT_TRUE(QTest::qWaitFor([&]() { return engine->last->loads.size() == 1; }));
        engine->last->loadFinished(true);
        return tab;
    }

    MarkdownPreviewController &controller(DocumentTab *tab)
    {
        return PreviewCommands::previewOf(tab)->controller();
    }

    QStringList updates() const
    {
        QStringList found;
        for (const QString &script : engine->last->scripts)
            if (script.startsWith(kUpdate))
                found.append(script);
        return found;
    }

    QTemporaryDir dir;
    Preferences prefs{dir.filePath(u"settings.conf"_s)};
    ScriptedQuestions questions;
    std::unique_ptr<AppAssembly> app;
    FakeEngine *engine = nullptr;
    QString chosenPath;
    QStringList proposedPaths;
};

} // namespace

TEST_F(MarkdownPreviewTest, FirstPageLoadsWholeAndHoldsScriptsUntilLoaded)
{
    prefs.setZoom(3);
    DocumentTab *tab = app->window().newDocument(u"# Titolo\n\ntesto\n"_s);
    ASSERT_TRUE(app->commands().dispatch(u"toggleMarkdownPreview:"_s));
    EXPECT_EQ(tab->document().languageId(), u"markdown"_s);
    FakeView *view = engine->last;
    ASSERT_TRUE(QTest::qWaitFor([&]() { return view->loads.size() == 1; }));
    EXPECT_DOUBLE_EQ(view->zoom, 1.3);
    const auto &[html, base] = view->loads.front();
    EXPECT_TRUE(html.contains(u"<body class=\"screen\">"_s));
    EXPECT_TRUE(html.contains(u"<h1 id=\"titolo\" data-line=\"0\">Titolo</h1>"_s));
    EXPECT_EQ(base, QUrl(u"about:blank"_s));

    // While loading, only the latest script waits; nothing reaches the page.
    controller(tab).follow(1, false);
    controller(tab).follow(2, false);
    EXPECT_TRUE(view->scripts.isEmpty());
    EXPECT_EQ(controller(tab).pendingScript(), u"mirtexFollow(2, false);"_s);

    view->loadFinished(true);
    EXPECT_EQ(view->scripts,
              QStringList({PreviewScripts::followFunction(), u"mirtexFollow(2, false);"_s}));
    EXPECT_FALSE(controller(tab).pendingScript());

    prefs.setZoom(-7);
    EXPECT_DOUBLE_EQ(view->zoom, 0.5);
}

TEST_F(MarkdownPreviewTest, TypingIsRenderedOnceAndInPlace)
{
    DocumentTab *tab = previewed(u"# Uno\n"_s);
    QSignalSpy rendered(&controller(tab), &MarkdownPreviewController::rendered);
    tab->editor()->replaceText("# Uno\n\ndue\n");
    tab->editor()->replaceText("# Uno\n\ndue tre\n");
    EXPECT_TRUE(controller(tab).isRenderScheduled());
    ASSERT_TRUE(rendered.wait(2000));
    QTest::qWait(2 * MarkdownPreviewController::kRenderDelayMs);
    EXPECT_EQ(rendered.size(), 1);
    EXPECT_EQ(engine->last->loads.size(), 1); // no reload
    ASSERT_EQ(updates().size(), 1);
    EXPECT_EQ(updates().front(),
              QString::fromStdString(PreviewScripts::updateScript(
                  "<div class=\"keep\"><h1 id=\"uno\" data-line=\"0\">Uno</h1>\n"
                  "<p data-line=\"2\">due tre</p>\n</div>\n")));

    // Nothing changed: no work.
    controller(tab).update();
    QTest::qWait(50);
    EXPECT_EQ(rendered.size(), 1);
}

TEST_F(MarkdownPreviewTest, SavingUnderANewNameLoadsAWholePageAndFollowsTheLineAgain)
{
    DocumentTab *tab = previewed(u"# A\n\nb\n\nc\n"_s);
    controller(tab).follow(4, false);
    const QString path = dir.filePath(u"nota.md"_s);
    questions.pushSaveChoice(SaveChoice{path, u"4"_s, u"lf"_s});
    ASSERT_TRUE(app->flows().saveAs(tab));
    ASSERT_TRUE(QTest::qWaitFor([&]() { return engine->last->loads.size() == 2; }));
    EXPECT_EQ(engine->last->loads.back().second, QUrl::fromLocalFile(dir.path() + u'/'));
    EXPECT_EQ(controller(tab).pendingScript(), u"mirtexFollow(4, false);"_s);
    engine->last->scripts.clear();
    engine->last->loadFinished(true);
    EXPECT_EQ(engine->last->scripts,
              QStringList({PreviewScripts::followFunction(), u"mirtexFollow(4, false);"_s}));
}

TEST_F(MarkdownPreviewTest, LinksOpenInATabScrollOrGoToTheDesktop)
{
    const QString other = write(u"altro.txt"_s, "altro\n");
    const QString markdown = write(u"pagina.md"_s, "# Pagina\n\n[altro](altro.txt)\n");
    prefs.setMarkdownPreviewOnOpen(true);
    DocumentTab *tab = app->flows().openPath(markdown);
    ASSERT_TRUE(tab && PreviewCommands::previewOf(tab));
    FakeView *view = engine->last;
    ASSERT_TRUE(QTest::qWaitFor([&]() { return view->loads.size() == 1; }));
    view->loadFinished(true);
    QList<QUrl> external;
    controller(tab).onOpenExternally = [&](const QUrl &url) { external.append(url); };
    const QUrl base = QUrl::fromLocalFile(dir.path() + u'/');

    EXPECT_FALSE(view->navigationRequested(base.resolved(QUrl(u"#pagina"_s)), true, true));
    EXPECT_EQ(view->scripts.back(), PreviewScripts::fragmentScript(u"pagina"_s));
    EXPECT_FALSE(
        view->navigationRequested(base.resolved(QUrl(u"https://example.org/"_s)), true, true));
    EXPECT_FALSE(view->navigationRequested(QUrl(u"javascript:alert(1)"_s), true, true));
    EXPECT_EQ(external, QList<QUrl>({QUrl(u"https://example.org/"_s)}));
    EXPECT_TRUE(view->navigationRequested(QUrl(u"about:blank"_s), false, true));
    EXPECT_FALSE(app->window().findByPath(other));
    EXPECT_FALSE(view->navigationRequested(base.resolved(QUrl(u"altro.txt"_s)), true, true));
    EXPECT_TRUE(app->window().findByPath(other));
}

TEST_F(MarkdownPreviewTest, OpeningShowsThePreviewOnlyForMarkdownAndOnlyWhenAsked)
{
    const struct
    {
        const char *file;
        bool setting;
        bool shown;
    } cases[] = {
        {"a.md", true, true},
        {"b.md", false, false},
        {"c.txt", true, false},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.file);
        prefs.setMarkdownPreviewOnOpen(c.setting);
        DocumentTab *tab = app->flows().openPath(write(QLatin1String(c.file), "# x\n"));
        ASSERT_TRUE(tab);
        EXPECT_EQ(PreviewCommands::previewOf(tab) != nullptr, c.shown);
    }

    // The commands: show, the page alone, beside again, hide.
    DocumentTab *tab = app->window().currentDocument();
    CommandRegistry &commands = app->commands();
    EXPECT_FALSE(commands.isEnabled(u"togglePreviewOnly:"_s));
    ASSERT_TRUE(commands.dispatch(u"toggleMarkdownPreview:"_s));
    EXPECT_TRUE(commands.find(u"toggleMarkdownPreview:"_s)->isChecked({}));
    ASSERT_TRUE(commands.dispatch(u"togglePreviewOnly:"_s));
    EXPECT_TRUE(tab->editor()->isHidden());
    ASSERT_TRUE(commands.dispatch(u"togglePreviewOnly:"_s));
    EXPECT_FALSE(tab->editor()->isHidden());
    ASSERT_TRUE(commands.dispatch(u"togglePreviewOnly:"_s));
    ASSERT_TRUE(commands.dispatch(u"toggleMarkdownPreview:"_s));
    EXPECT_FALSE(PreviewCommands::previewOf(tab));
    EXPECT_FALSE(tab->editor()->isHidden());

    // Without a web engine there is no preview to show.
    PreviewEngine::install(nullptr);
    commands.refresh();
    EXPECT_FALSE(commands.isEnabled(u"toggleMarkdownPreview:"_s));
    EXPECT_FALSE(commands.isEnabled(u"exportPDF:"_s));
    EXPECT_TRUE(commands.isEnabled(u"exportHTML:"_s));
}

TEST_F(MarkdownPreviewTest, ExportsWriteWholeFilesOrSayWhyNot)
{
    const QString source = write(u"relazione.md"_s, "# Relazione\n\nfine\n");
    prefs.setMarkdownPreviewOnOpen(false);
    ASSERT_TRUE(app->flows().openPath(source));
    CommandRegistry &commands = app->commands();

    // HTML: the proposed name beside the document; the extension added when missing.
    chosenPath = dir.filePath(u"uscita"_s);
    ASSERT_TRUE(commands.dispatch(u"exportHTML:"_s));
    EXPECT_EQ(proposedPaths.back(), dir.path() + u"/relazione.html"_s);
    QFile html(chosenPath + u".html"_s);
    ASSERT_TRUE(html.open(QIODevice::ReadOnly));
    EXPECT_TRUE(html.readAll().contains("<h1 id=\"relazione\" data-line=\"0\">Relazione</h1>"));

    chosenPath = dir.filePath(u"manca/uscita.html"_s);
    ASSERT_TRUE(commands.dispatch(u"exportHTML:"_s));
    ASSERT_EQ(questions.asked().size(), 1u);
    EXPECT_EQ(questions.asked().back().message, u"Impossibile esportare l'HTML."_s);
    EXPECT_FALSE(QFile::exists(chosenPath));

    // PDF: the print variant of the page, and the failure told.
    chosenPath = dir.filePath(u"stampa"_s);
    ASSERT_TRUE(commands.dispatch(u"exportPDF:"_s));
    EXPECT_EQ(proposedPaths.back(), dir.path() + u"/relazione.pdf"_s);
    ASSERT_EQ(engine->printed.size(), 1);
    EXPECT_EQ(engine->printed.back().second, chosenPath + u".pdf"_s);
    EXPECT_TRUE(engine->printed.back().first.contains(u"<body class=\"print\">"_s));
    EXPECT_TRUE(
        engine->printed.back().first.contains(u"<meta name=\"color-scheme\" content=\"light\">"_s));
    EXPECT_EQ(questions.asked().size(), 1u);
    engine->failure = u"disco pieno"_s;
    ASSERT_TRUE(commands.dispatch(u"exportPDF:"_s));
    ASSERT_EQ(questions.asked().size(), 2u);
    EXPECT_EQ(questions.asked().back().message, u"Impossibile esportare il PDF."_s);
    EXPECT_EQ(questions.asked().back().informative, u"disco pieno"_s);
}

TEST_F(MarkdownPreviewTest, APageSlowerThanTheTypingGetsOnlyTheLatestText)
{
    DocumentTab *tab = previewed(u"a\n"_s);
    FakeView *view = engine->last;
    view->answerAtOnce = false;
    QSignalSpy rendered(&controller(tab), &MarkdownPreviewController::rendered);
    tab->editor()->replaceText("b\n");
    ASSERT_TRUE(rendered.wait(2000));
    ASSERT_EQ(updates().size(), 1);
    // The page has not applied "b" yet: later texts wait, and only the last is sent.
    for (const char *text : {"c\n", "d\n"}) {
        tab->editor()->replaceText(text);
        QTest::qWait(2 * MarkdownPreviewController::kRenderDelayMs);
    }
    EXPECT_EQ(updates().size(), 1);
    EXPECT_TRUE(controller(tab).isRendering());
    ASSERT_EQ(view->replies.size(), 1u);
    view->replies.front()(QVariant());
    ASSERT_TRUE(QTest::qWaitFor([&]() { return updates().size() == 2; }));
    EXPECT_TRUE(updates().back().contains(u"<p data-line=\\\"0\\\">d</p>"_s))
        << updates().back().toStdString();
}
