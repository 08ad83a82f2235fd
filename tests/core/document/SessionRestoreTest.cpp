#include "core/document/SessionRestore.h"

#include "core/document/FileNaming.h"

#include <gtest/gtest.h>

using namespace mirtex;
using namespace mirtex::SessionRestore;

TEST(SessionRestoreTest, ClampsWhatNoLongerFitsTheText)
{
    struct Case
    {
        TextRange selection;
        qsizetype textLength;
        TextRange expected;
    };

    for (const Case &c : {Case{{2, 3}, 10, {2, 3}},
                          Case{{8, 5}, 10, {8, 2}},
                          Case{{15, 2}, 10, {10, 0}},
                          Case{{-3, 2}, 10, {0, 2}},
                          Case{{0, 4}, 0, {0, 0}}}) {
        EXPECT_EQ(clampSelection(c.selection, c.textLength), c.expected)
            << c.selection.location << "+" << c.selection.length << " in " << c.textLength;
    }

    EXPECT_EQ(lineCountOf(u""), 1);
    EXPECT_EQ(lineCountOf(u"a\nb\r\nc\rd\n"), 5);
    EXPECT_EQ(bookmarksWithin({4, 0, 2, 3, 2, -1, 9}, lineCountOf(u"a\nb\nc\nd")),
              QList<qsizetype>({0, 2, 3}));

    EXPECT_EQ(clampSelected(5, 3), 2);
    EXPECT_EQ(clampSelected(-1, 3), 0);
    EXPECT_EQ(clampSelected(1, 3), 1);
    EXPECT_EQ(clampSelected(0, 0), std::nullopt);
}

TEST(SessionRestoreTest, NamesUntitledEntriesAfterTheNamesInUse)
{
    EXPECT_EQ(mirtex::nextUntitledName({}), u"nuovo 1");
    EXPECT_EQ(mirtex::nextUntitledName({"nuovo 1", "nuovo 3"}), u"nuovo 2");

    QList<SessionState::Entry> entries(4);
    entries[0].untitledName = QStringLiteral("nuovo 1");
    entries[2].path = QStringLiteral("/tmp/nuovo 2"); // a file: keeps no untitled name
    entries[3].untitledName = QStringLiteral("nuovo 3");
    nameUntitledEntries(entries);
    EXPECT_EQ(entries[1].untitledName, u"nuovo 2");
    EXPECT_EQ(entries[2].untitledName, std::nullopt);
    EXPECT_EQ(entries[3].untitledName, u"nuovo 3");
}
