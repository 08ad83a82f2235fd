#include "core/app/CommandLine.h"

#include "support/QStringPrinter.h"

#include <gtest/gtest.h>

using namespace mirtex;
using Mode = CommandLine::Mode;

namespace {

const QString kWorkingDir = QStringLiteral("/home/u/w");

// Words separated by spaces (no argument in these tables has one).
QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(u' ', Qt::SkipEmptyParts);
}

} // namespace

TEST(CommandLineTest, FilesUrlsAndSwitches)
{
    const struct
    {
        const char *arguments;
        Mode mode;
        const char *files;
        const char *urls;
        bool newInstance;
    } cases[] = {
        {"", Mode::run, "", "", false},
        {"a.txt /abs/b.txt ../c.txt ./d/../e.txt sub/",
         Mode::run,
         "/home/u/w/a.txt /abs/b.txt /home/u/c.txt /home/u/w/e.txt /home/u/w/sub",
         "",
         false},
        {"file:///tmp/caff%C3%A8.txt", Mode::run, "/tmp/caffè.txt", "", false},
        // Names that look like Qt resources or URLs of their own are files here.
        {":nota.txt sub/:x file:nota",
         Mode::run,
         "/home/u/w/:nota.txt /home/u/w/sub/:x /home/u/w/file:nota",
         "",
         false},
        // Other programs' URLs are not ours to open.
        {"http://example.com/?text=Ciao a.txt https://x.org ftp://h/f",
         Mode::run,
         "/home/u/w/a.txt",
         "",
         false},
        {"mirtex:?text=Ciao a.txt MIRTEX://open?path=/x",
         Mode::run,
         "/home/u/w/a.txt",
         "mirtex:?text=Ciao MIRTEX://open?path=/x",
         false},
        {"--new-instance a.txt", Mode::run, "/home/u/w/a.txt", "", true},
        {"a.txt --selftest", Mode::selfTest, "", "", false},
        {"--bogus --selftest", Mode::selfTest, "", "", false},
        {"a.txt --bogus", Mode::invalid, "", "", false},
        {"--dark", Mode::invalid, "", "", false}, // a snapshot option without --snapshot
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.arguments);
        const CommandLine line = CommandLine::parse(words(c.arguments), kWorkingDir);
        EXPECT_EQ(line.mode, c.mode);
        EXPECT_EQ(line.error.isEmpty(), c.mode != Mode::invalid);
        if (c.mode == Mode::invalid)
            continue;
        EXPECT_EQ(line.files, words(c.files));
        EXPECT_EQ(line.urls, words(c.urls));
        EXPECT_EQ(line.newInstance, c.newInstance);
    }
}

TEST(CommandLineTest, SnapshotOptions)
{
    const CommandLine line = CommandLine::parse(
        words("--snapshot a.txt --out shots/one.png --size 800X600 --tab 1 --split stacked "
              "--sidebar ../proj --dark b.md"),
        kWorkingDir);
    ASSERT_EQ(line.mode, Mode::snapshot) << line.error.toStdString();
    EXPECT_EQ(line.snapshot.files, words("/home/u/w/a.txt /home/u/w/b.md"));
    EXPECT_EQ(line.snapshot.outputPath, QStringLiteral("/home/u/w/shots/one.png"));
    EXPECT_EQ(line.snapshot.size, QSize(800, 600));
    EXPECT_EQ(line.snapshot.tab, 1);
    EXPECT_EQ(line.snapshot.split, QStringLiteral("stacked"));
    EXPECT_EQ(line.snapshot.sidebarFolder, QStringLiteral("/home/u/proj"));
    EXPECT_TRUE(line.snapshot.dark);

    const CommandLine plain = CommandLine::parse(words("--out /o.png --snapshot"), kWorkingDir);
    ASSERT_EQ(plain.mode, Mode::snapshot);
    EXPECT_EQ(plain.snapshot.size, QSize(1100, 720));
    EXPECT_FALSE(plain.snapshot.tab);
    EXPECT_TRUE(plain.snapshot.split.isEmpty());
    EXPECT_FALSE(plain.snapshot.dark);

    const CommandLine strip
        = CommandLine::parse(words("--snapshot --out /o.png --size 600x120"), kWorkingDir);
    ASSERT_EQ(strip.mode, Mode::snapshot) << strip.error.toStdString();
    EXPECT_EQ(strip.snapshot.size, QSize(600, 120));
}

TEST(CommandLineTest, InvalidSnapshotValuesAreRefused)
{
    const char *const invalid[] = {
        "a.txt", // no output file
        "--out",
        "--out o.png --size 800",
        "--out o.png --size 60x40",
        "--out o.png --size 600x99",
        "--out o.png --size 9000x600",
        "--out o.png --size axb",
        "--out o.png --tab -1",
        "--out o.png --tab due",
        "--out o.png --tab",
        "--out o.png --split diagonal",
        "--out o.png --zoom 2",
    };
    for (const char *arguments : invalid) {
        const CommandLine line = CommandLine::parse(
            QStringList{QStringLiteral("--snapshot")} + words(arguments), kWorkingDir);
        EXPECT_EQ(line.mode, Mode::invalid) << arguments;
        EXPECT_FALSE(line.error.isEmpty()) << arguments;
    }
}

TEST(CommandLineTest, HelpAndVersionWinOverEverythingButTheSelfTest)
{
    const struct
    {
        const char *arguments;
        Mode mode;
    } cases[] = {
        {"--help", Mode::help},
        {"-h", Mode::help},
        {"a.txt --bogus --help", Mode::help},
        {"--snapshot --help", Mode::help},
        {"--version", Mode::version},
        {"--new-instance --version a.txt", Mode::version},
        {"--version --help", Mode::help},
        {"--help --selftest", Mode::selfTest},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.arguments);
        EXPECT_EQ(CommandLine::parse(words(c.arguments), kWorkingDir).mode, c.mode);
    }

    EXPECT_EQ(CommandLine::versionText(), QStringLiteral("Mirtex++ 0.1.0\n"));
    const QString help = CommandLine::helpText();
    EXPECT_TRUE(help.startsWith(QStringLiteral("Uso: mirtex"))) << help.toStdString();
    for (const char *option : {"--new-instance", "--help", "--version", "--snapshot", "--out"})
        EXPECT_TRUE(help.contains(QLatin1String(option))) << option;
}
