#include "core/app/DisplayPath.h"

#include "support/QStringPrinter.h"

#include <gtest/gtest.h>

using namespace mirtex;
using namespace Qt::StringLiterals;

TEST(DisplayPathTest, PrefixIsReplaced)
{
    const struct
    {
        QString setting;
        QString path;
        QString shown;
    } cases[] = {
        {u"/Users/x=~"_s, u"/Users/x/a.txt"_s, u"~/a.txt"_s},
        {u"/Users/x=~"_s, u"/Users/y/a.txt"_s, u"/Users/y/a.txt"_s},
        {u"/Users/x=~"_s, u"/home/Users/x/a"_s, u"/home/Users/x/a"_s},
        {u"/Users/x=~"_s, u"/Users/x"_s, u"~"_s},
        {u"/home/u=/Users/demo"_s, u"/home/u/p/q.md"_s, u"/Users/demo/p/q.md"_s},
        {u"/a=b=c"_s, u"/a/f"_s, u"b=c/f"_s}, // split at the first "="
        {u"/home/u="_s, u"/home/u/f"_s, u"/f"_s},
        {u"/home/u"_s, u"/home/u/f"_s, u"/home/u/f"_s}, // no "="
        {QString(), u"/home/u/f"_s, u"/home/u/f"_s},
        {u"=~"_s, u"/home/u/f"_s, u"/home/u/f"_s}, // no prefix: nothing to hide
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(QString(c.setting + u" " + c.path).toStdString());
        EXPECT_EQ(DisplayPath::substitute(c.path, c.setting), c.shown);
    }
}

TEST(DisplayPathTest, ReadsTheEnvironment)
{
    const QByteArray previous = qgetenv("MIRTEX_DISPLAY_ROOT");
    qputenv("MIRTEX_DISPLAY_ROOT", "/Users/x=~");
    EXPECT_EQ(DisplayPath::forDisplay(u"/Users/x/a.txt"_s), u"~/a.txt"_s);
    qunsetenv("MIRTEX_DISPLAY_ROOT");
    EXPECT_EQ(DisplayPath::forDisplay(u"/Users/x/a.txt"_s), u"/Users/x/a.txt"_s);
    if (!previous.isNull())
        qputenv("MIRTEX_DISPLAY_ROOT", previous);
}
