// The preview's web engine for real (Chromium, offscreen): a page loads with its own scripts
// disabled while the program's scripts run, its content is replaced in place, a page too large for
// one load arrives whole, and a PDF is printed with the page's text or not written at all.
#include "preview/WebEnginePreview.h"

#include "core/markdown/MarkdownRenderer.h"
#include "core/markdown/PreviewScripts.h"
#include "ui/document/PreviewEngine.h"

#include <QApplication>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

#include <cstring>
#include <optional>

using namespace mirtex;
using namespace Qt::StringLiterals;

namespace {

QVariant evaluated(PreviewWebView &view, const QString &script)
{
    std::optional<QVariant> value;
    view.evaluate(script, [&](const QVariant &result) { value = result; });
    EXPECT_TRUE(QTest::qWaitFor([&]() { return value.has_value(); }, 10'000))
        << script.toStdString();
    return value.value_or(QVariant());
}

QString page(const std::string &markdown, bool forPrint)
{
    MarkdownRenderer renderer;
    return QString::fromStdString(MarkdownRenderer::page(renderer.renderBody(markdown), forPrint));
}

} // namespace

TEST(WebEnginePreview, RendersUpdatesInPlaceAndPrints)
{
    PreviewEngine *engine = PreviewEngine::installed();
    ASSERT_TRUE(engine);
    std::unique_ptr<PreviewWebView> view = engine->createView(nullptr);
    view->widget()->resize(800, 600);
    view->widget()->show();
    std::optional<bool> loaded;
    view->loadFinished = [&](bool ok) { loaded = ok; };
    view->navigationRequested = [](const QUrl &, bool, bool) { return false; };

    // The page's own script does not run; the program's do.
    view->loadPage(page("# Titolo\n\n<script>document.title = 'eseguito';</script>\n", false),
                   QUrl(u"about:blank"_s));
    ASSERT_TRUE(QTest::qWaitFor([&]() { return loaded.has_value(); }, 15'000));
    ASSERT_TRUE(*loaded);
    EXPECT_NE(evaluated(*view, u"document.title"_s).toString(), u"eseguito"_s);
    view->runScript(PreviewScripts::followFunction());
    EXPECT_EQ(evaluated(*view, u"typeof window.mirtexFollow"_s).toString(), u"function"_s);

    view->runScript(QString::fromStdString(
        PreviewScripts::updateScript("<p data-line=\"0\">nuovo \"testo\" \\ città</p>\n")));
    EXPECT_EQ(evaluated(*view, u"document.getElementById('page').textContent"_s).toString(),
              u"nuovo \"testo\" \\ città\n"_s);

    // Larger than one load carries: the page still arrives whole.
    std::string big;
    for (int i = 0; i < 8000; ++i)
        big += "Paragrafo numero " + std::to_string(i) + " con un po' di testo.\n\n";
    loaded.reset();
    view->loadPage(page(big, false), QUrl(u"about:blank"_s));
    ASSERT_TRUE(QTest::qWaitFor([&]() { return loaded.has_value(); }, 15'000));
    EXPECT_TRUE(*loaded);
    EXPECT_EQ(evaluated(*view, u"document.querySelectorAll('#page p').length"_s).toInt(), 8000);
    view->runScript(PreviewScripts::followFunction());
    view->runScript(PreviewScripts::followScript(4000, false));
    EXPECT_TRUE(QTest::qWaitFor(
        [&]() { return evaluated(*view, u"window.scrollY"_s).toDouble() > 1000; }, 5000));

    // PDF: complete with the page's text, or nothing at all.
    QTemporaryDir dir;

    const struct
    {
        QString path;
        bool written;
    } cases[] = {
        {dir.filePath(u"relazione.pdf"_s), true},
        {dir.filePath(u"manca/relazione.pdf"_s), false},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.path.toStdString());
        std::optional<QString> error;
        engine->printPdf(page("# Relazione finale\n\nCiao mondo.\n", true),
                         QUrl(u"about:blank"_s),
                         c.path,
                         u"relazione"_s,
                         [&](const QString &reason) { error = reason; });
        ASSERT_TRUE(QTest::qWaitFor([&]() { return error.has_value(); }, 15'000));
        EXPECT_EQ(error->isEmpty(), c.written) << error->toStdString();
        EXPECT_EQ(QFile::exists(c.path), c.written);
        if (!c.written)
            continue;
        QFile pdf(c.path);
        ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
        EXPECT_TRUE(pdf.read(5).startsWith("%PDF-"));
        if (QStandardPaths::findExecutable(u"pdftotext"_s).isEmpty())
            continue;
        QProcess text;
        text.start(u"pdftotext"_s, {c.path, u"-"_s});
        ASSERT_TRUE(text.waitForFinished(10'000));
        const QString extracted = QString::fromUtf8(text.readAllStandardOutput());
        EXPECT_TRUE(extracted.contains(u"Relazione finale"_s)) << extracted.toStdString();
        EXPECT_TRUE(extracted.contains(u"Ciao mondo."_s));
    }
    view->widget()->deleteLater();
    view.reset();
}

int main(int argc, char **argv)
{
    bool listing = false;
    for (int i = 1; i < argc; ++i)
        listing = listing || std::strcmp(argv[i], "--gtest_list_tests") == 0;
    std::optional<QApplication> app;
    if (!listing) {
        WebEnginePreview::prepareProcess();
        app.emplace(argc, argv);
        WebEnginePreview::install();
    }
    ::testing::InitGoogleTest(&argc, argv);
    const int result = RUN_ALL_TESTS();
    PreviewEngine::install(nullptr);
    return result;
}
