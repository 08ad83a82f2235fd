// The command line's --export, and the self-contained page it writes.
#include "core/markdown/MarkdownExport.h"

#include "core/app/CommandLine.h"
#include "support/TestFiles.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace mirtex;

TEST(MarkdownExport, CommandLineTakesSourceAndOutput)
{
    struct Case
    {
        QStringList arguments;
        CommandLine::Mode mode;
        const char *source;
        const char *output;
    };

    const Case cases[] = {
        {{"--export", "a.md", "out/a.html"},
         CommandLine::Mode::exportDocument,
         "/home/u/a.md",
         "/home/u/out/a.html"},
        {{"--export", "/x/a.md", "/y/a.pdf"},
         CommandLine::Mode::exportDocument,
         "/x/a.md",
         "/y/a.pdf"},
        {{"--export", "a.md"}, CommandLine::Mode::invalid, "", ""},
        {{"a.md", "--export", "b.html"}, CommandLine::Mode::invalid, "", ""},
        {{"--export", "a.md", "b.html", "c"}, CommandLine::Mode::invalid, "", ""},
    };
    for (const Case &c : cases) {
        const CommandLine line = CommandLine::parse(c.arguments, QStringLiteral("/home/u"));
        EXPECT_EQ(line.mode, c.mode) << c.arguments.join(u' ').toStdString();
        EXPECT_EQ(line.exportSource, QString::fromUtf8(c.source));
        EXPECT_EQ(line.exportOutput, QString::fromUtf8(c.output));
    }
}

TEST(MarkdownExport, PageEmbedsLocalImagesAndStandsAlone)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QByteArray png
        = QByteArray::fromBase64("iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mP8z8BQD"
                                 "wAEhQGAhKmMIQAAAABJRU5ErkJggg==");
    writeFile(dir.filePath(QStringLiteral("a & b.png")), png);
    writeFile(dir.filePath(QStringLiteral("doc.md")),
              "# Titolo\n\n![uno](a%20&%20b.png) ![due](manca.png) ![tre](http://x.it/y.png)\n\n"
              "```js\nlet x = 1;\n```\n");
    QString error;
    ASSERT_TRUE(MarkdownExport::exportFile(
        dir.filePath(QStringLiteral("doc.md")), dir.filePath(QStringLiteral("doc.html")), error))
        << error.toStdString();
    const QByteArray page = readFile(dir.filePath(QStringLiteral("doc.html")));
    EXPECT_TRUE(page.startsWith("<!doctype html>"));
    EXPECT_TRUE(page.contains("<body class=\"screen\">"));
    const QByteArray embedded
        = QByteArray("<img src=\"data:image/png;base64,") + png.toBase64() + "\" alt=\"uno\">";
    EXPECT_TRUE(page.contains(embedded)) << page.constData();
    EXPECT_TRUE(page.contains("manca.png\" alt=\"due\">"));
    EXPECT_TRUE(page.contains("<img src=\"http://x.it/y.png\" alt=\"tre\">"));
    EXPECT_TRUE(page.contains("<span class=\"t-keyword\">let</span>"));

    EXPECT_FALSE(MarkdownExport::exportFile(
        dir.filePath(QStringLiteral("doc.md")), dir.filePath(QStringLiteral("doc.pdf")), error));
    EXPECT_FALSE(error.isEmpty());
    EXPECT_FALSE(MarkdownExport::exportFile(
        dir.filePath(QStringLiteral("manca.md")), dir.filePath(QStringLiteral("x.html")), error));
    EXPECT_FALSE(MarkdownExport::exportFile(dir.filePath(QStringLiteral("doc.md")),
                                            dir.filePath(QStringLiteral("no/such/dir/x.html")),
                                            error));
}
