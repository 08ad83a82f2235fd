// What the live preview sends to its page and decides about links: the quoting of a body into a
// script, the follow and fragment scripts, the zoom, the split of a large page, where a link goes,
// and the names proposed for exports.
#include "core/markdown/PreviewScripts.h"

#include "core/markdown/PreviewNavigation.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace mirtex;
using Action = PreviewNavigation::Action;

TEST(PreviewScripts, QuotesEveryCharacterThatWouldEndOrBreakTheLiteral)
{
    const struct
    {
        std::string text;
        std::string literal;
    } cases[] = {
        {"", R"("")"},
        {"<p data-line=\"0\">a</p>\n", R"("<p data-line=\"0\">a</p>\n")"},
        {"C:\\dir\\", R"("C:\\dir\\")"},
        {"a\r\nb\tc", R"("a\r\nb\tc")"},
        {std::string("x\x01y\x1fz", 5), R"("x\u0001y\u001fz")"},
        {std::string("nul\0end", 7), R"("nul\u0000end")"},
        // Line and paragraph separators end a line in older JavaScript.
        {"a\u2028b\u2029c", R"("a\u2028b\u2029c")"},
        // Other non-ASCII characters pass as they are.
        {"città 😀 </script>", "\"città 😀 </script>\""},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(PreviewScripts::jsonStringLiteral(c.text), c.literal);
    }
}

TEST(PreviewScripts, ScriptsSentToThePage)
{
    EXPECT_EQ(PreviewScripts::updateScript("<p data-line=\"2\">Ciao</p>\n"),
              R"(document.getElementById('page').innerHTML = "<p data-line=\"2\">Ciao</p>\n";)");
    EXPECT_EQ(PreviewScripts::followScript(0, false), QStringLiteral("mirtexFollow(0, false);"));
    EXPECT_EQ(PreviewScripts::followScript(41, true), QStringLiteral("mirtexFollow(41, true);"));
    EXPECT_EQ(PreviewScripts::fragmentScript(QStringLiteral("come-si-usa\"")),
              QStringLiteral("var e = document.getElementById(\"come-si-usa\\\"\"); if (e) "
                             "e.scrollIntoView({behavior: 'smooth'});"));
    const QString follow = PreviewScripts::followFunction();
    EXPECT_TRUE(follow.contains(QLatin1String("window.mirtexFollow = function (line, atEnd)")));
    EXPECT_TRUE(follow.contains(QLatin1String("top - 28")));
}

TEST(PreviewScripts, PageZoomFollowsTheEditorsStepWithAFloor)
{
    const std::pair<int, double> cases[] = {{0, 1.0}, {3, 1.3}, {-2, 0.8}, {-5, 0.5}, {-9, 0.5}};
    for (const auto &[step, zoom] : cases)
        EXPECT_DOUBLE_EQ(PreviewScripts::pageZoom(step), zoom) << step;
}

TEST(PreviewScripts, SplitsAPageIntoShellAndBody)
{
    const QString page
        = QStringLiteral("<!doctype html><html><head></head>\n<body class=\"screen\">"
                         "<article class=\"page\" id=\"page\"><h1>T</h1>\n"
                         "</article></body></html>");
    PreviewScripts::PageParts parts;
    ASSERT_TRUE(PreviewScripts::splitPage(page, parts));
    EXPECT_EQ(parts.body, QStringLiteral("<h1>T</h1>\n"));
    EXPECT_EQ(parts.shell,
              QStringLiteral("<!doctype html><html><head></head>\n<body class=\"screen\">"
                             "<article class=\"page\" id=\"page\"></article></body></html>"));
    EXPECT_FALSE(PreviewScripts::splitPage(QStringLiteral("<p>no page</p>"), parts));
}

TEST(PreviewNavigation, DecidesWhereEachNavigationGoes)
{
    QTemporaryDir dir;
    const QString folder = dir.path() + u'/';
    for (const char *name : {"altro.md", "note.txt", "foto.png"}) {
        QFile file(folder + QLatin1String(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    QDir(dir.path()).mkdir(QStringLiteral("cartella"));
    const QUrl page = QUrl::fromLocalFile(folder);
    auto isText = [](const QString &path) {
        return path.endsWith(QLatin1String(".md")) || path.endsWith(QLatin1String(".txt"));
    };
    auto file = [&](const char *name) { return QUrl::fromLocalFile(folder + QLatin1String(name)); };

    const struct
    {
        const char *name;
        QUrl target;
        bool userStarted;
        bool mainFrame;
        Action action;
        QString detail; // the fragment or the file name
    } cases[] = {
        {"own page", QUrl(QStringLiteral("data:text/html,x")), false, true, Action::proceed, {}},
        {"about", QUrl(QStringLiteral("about:blank")), false, true, Action::proceed, {}},
        {"redirect elsewhere",
         QUrl(QStringLiteral("https://x.org/")),
         false,
         true,
         Action::refuse,
         {}},
        {"fragment",
         page.resolved(QUrl(QStringLiteral("#come-si-usa"))),
         true,
         true,
         Action::scrollToFragment,
         QStringLiteral("come-si-usa")},
        {"fragment with accents",
         page.resolved(QUrl(QStringLiteral("#citt%C3%A0"))),
         true,
         true,
         Action::scrollToFragment,
         QStringLiteral("città")},
        {"text file", file("altro.md"), true, true, Action::openInTab, QStringLiteral("altro.md")},
        {"text file with fragment",
         page.resolved(QUrl(QStringLiteral("note.txt#x"))),
         true,
         true,
         Action::openInTab,
         QStringLiteral("note.txt")},
        {"picture", file("foto.png"), true, true, Action::openExternally, {}},
        {"folder", file("cartella"), true, true, Action::openExternally, {}},
        {"missing file", file("manca.md"), true, true, Action::refuse, {}},
        {"web",
         QUrl(QStringLiteral("https://example.org/a")),
         true,
         true,
         Action::openExternally,
         {}},
        {"mail", QUrl(QStringLiteral("mailto:a@b.it")), true, true, Action::openExternally, {}},
        {"script", QUrl(QStringLiteral("javascript:alert(1)")), true, true, Action::refuse, {}},
        {"odd scheme", QUrl(QStringLiteral("smb://host/x")), true, true, Action::refuse, {}},
        {"link in a frame",
         QUrl(QStringLiteral("https://example.org/")),
         true,
         false,
         Action::refuse,
         {}},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const PreviewNavigation decision
            = PreviewNavigation::decide(c.target, c.userStarted, c.mainFrame, page, isText);
        EXPECT_EQ(decision.action, c.action);
        if (c.action == Action::scrollToFragment) {
            EXPECT_EQ(decision.fragment, c.detail);
        } else if (c.action == Action::openInTab) {
            EXPECT_EQ(QFileInfo(decision.path).fileName(), c.detail);
        }
    }
}

TEST(ExportNames, ProposesTheDocumentsNameWithTheExportsExtension)
{
    const struct
    {
        QString path;
        QString displayName;
        QString extension;
        QString proposed;
    } cases[] = {
        {"/home/a/note.md", "note.md", ".pdf", "/home/a/note.pdf"},
        {"/home/a/archivio.tar.md", "archivio.tar.md", ".html", "/home/a/archivio.tar.html"},
        {"/home/a/LEGGIMI", "LEGGIMI", ".pdf", "/home/a/LEGGIMI.pdf"},
        {"/home/a/.appunti", ".appunti", ".pdf", "/home/a/.appunti.pdf"},
        {"", "nuovo 1", ".pdf", "nuovo 1.pdf"},
        {"", "", ".pdf", "documento.pdf"},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.displayName.toStdString());
        EXPECT_EQ(ExportNames::proposedPath(c.path, c.displayName, c.extension), c.proposed);
    }
}
