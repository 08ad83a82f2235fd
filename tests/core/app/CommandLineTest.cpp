#include "core/app/CommandLine.h"

#include "support/QStringPrinter.h"

#include <gtest/gtest.h>

using namespace mirtex;
using namespace Qt::StringLiterals;
using Mode = CommandLine::Mode;

namespace {

const QString kWorkingDir = u"/home/u/w"_s;

QStringList args(std::initializer_list<const char *> list)
{
    QStringList result;
    for (const char *arg : list)
        result.append(QString::fromUtf8(arg));
    return result;
}

} // namespace

TEST(CommandLineTest, FilesUrlsAndSwitches)
{
    const struct
    {
        QStringList arguments;
        Mode mode;
        QStringList files;
        QStringList urls;
        bool newInstance;
    } cases[] = {
        {{}, Mode::run, {}, {}, false},
        {args({"a.txt", "/abs/b.txt", "../c.txt", "./d/../e.txt", "sub/"}),
         Mode::run,
         args({"/home/u/w/a.txt",
               "/abs/b.txt",
               "/home/u/c.txt",
               "/home/u/w/e.txt",
               "/home/u/w/sub"}),
         {},
         false},
        {args({"file:///tmp/x%20y.txt"}), Mode::run, args({"/tmp/x y.txt"}), {}, false},
        {args({"mirtex:?text=Ciao", "a.txt", "MIRTEX://open?path=/x"}),
         Mode::run,
         args({"/home/u/w/a.txt"}),
         args({"mirtex:?text=Ciao", "MIRTEX://open?path=/x"}),
         false},
        {args({"--new-instance", "a.txt"}), Mode::run, args({"/home/u/w/a.txt"}), {}, true},
        {args({"a.txt", "--selftest"}), Mode::selfTest, {}, {}, false},
        {args({"--bogus", "--selftest"}), Mode::selfTest, {}, {}, false},
        {args({"a.txt", "--bogus"}), Mode::invalid, {}, {}, false},
        {args({"--dark"}), Mode::invalid, {}, {}, false}, // a snapshot option without --snapshot
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.arguments.join(u' ').toStdString());
        const CommandLine line = CommandLine::parse(c.arguments, kWorkingDir);
        EXPECT_EQ(line.mode, c.mode);
        EXPECT_EQ(line.error.isEmpty(), c.mode != Mode::invalid);
        if (c.mode == Mode::invalid)
            continue;
        EXPECT_EQ(line.files, c.files);
        EXPECT_EQ(line.urls, c.urls);
        EXPECT_EQ(line.newInstance, c.newInstance);
    }
}

TEST(CommandLineTest, SnapshotOptions)
{
    const CommandLine line = CommandLine::parse(args({"--snapshot",
                                                      "a.txt",
                                                      "--out",
                                                      "shots/one.png",
                                                      "--size",
                                                      "800X600",
                                                      "--tab",
                                                      "1",
                                                      "--split",
                                                      "stacked",
                                                      "--sidebar",
                                                      "../proj",
                                                      "--dark",
                                                      "b.md"}),
                                                kWorkingDir);
    ASSERT_EQ(line.mode, Mode::snapshot) << line.error.toStdString();
    EXPECT_EQ(line.snapshot.files, args({"/home/u/w/a.txt", "/home/u/w/b.md"}));
    EXPECT_EQ(line.snapshot.outputPath, u"/home/u/w/shots/one.png"_s);
    EXPECT_EQ(line.snapshot.size, QSize(800, 600));
    EXPECT_EQ(line.snapshot.tab, 1);
    EXPECT_EQ(line.snapshot.split, u"stacked"_s);
    EXPECT_EQ(line.snapshot.sidebarFolder, u"/home/u/proj"_s);
    EXPECT_TRUE(line.snapshot.dark);

    const CommandLine plain
        = CommandLine::parse(args({"--out", "/o.png", "--snapshot"}), kWorkingDir);
    ASSERT_EQ(plain.mode, Mode::snapshot);
    EXPECT_EQ(plain.snapshot.size, QSize(1100, 720));
    EXPECT_FALSE(plain.snapshot.tab);
    EXPECT_TRUE(plain.snapshot.split.isEmpty());
    EXPECT_FALSE(plain.snapshot.dark);
}

TEST(CommandLineTest, InvalidSnapshotValuesAreRefused)
{
    const QStringList invalid[] = {
        args({"--snapshot", "a.txt"}), // no output
        args({"--snapshot", "--out"}),
        args({"--snapshot", "--out", "o.png", "--size", "800"}),
        args({"--snapshot", "--out", "o.png", "--size", "100x100"}),
        args({"--snapshot", "--out", "o.png", "--size", "9000x600"}),
        args({"--snapshot", "--out", "o.png", "--size", "axb"}),
        args({"--snapshot", "--out", "o.png", "--tab", "-1"}),
        args({"--snapshot", "--out", "o.png", "--tab", "due"}),
        args({"--snapshot", "--out", "o.png", "--split", "diagonal"}),
        args({"--snapshot", "--out", "o.png", "--zoom", "2"}),
        args({"--snapshot", "--out", "o.png", "--tab"}),
    };
    for (const QStringList &arguments : invalid) {
        const CommandLine line = CommandLine::parse(arguments, kWorkingDir);
        EXPECT_EQ(line.mode, Mode::invalid) << arguments.join(u' ').toStdString();
        EXPECT_FALSE(line.error.isEmpty());
    }
}
