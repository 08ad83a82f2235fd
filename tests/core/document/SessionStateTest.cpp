#include "core/document/SessionState.h"

#include <QJsonArray>

#include <gtest/gtest.h>

using namespace mirtex;

TEST(SessionStateTest, ReadsTheEarlierFormat)
{
    const auto state = SessionState::fromJson(QByteArrayLiteral(
        R"({"entries":[{"id":"x","hasBackup":false,"encoding":"utf8","lineEnding":"lf",)"
        R"("language":"text","selection":[0,0],"scroll":0,"bookmarks":[],"readOnly":false}],)"
        R"("selected":0,"workspace":[],"sidebarVisible":false})"));
    ASSERT_TRUE(state);
    ASSERT_EQ(state->entries.size(), 1);
    SessionState::Entry expected;
    expected.id = QStringLiteral("x");
    EXPECT_EQ(state->entries[0], expected);
    EXPECT_EQ(state->entries[0].encoding, u"4");
    EXPECT_EQ(state->entries[0].language, u"text");
}

TEST(SessionStateTest, RoundTripsEveryField)
{
    SessionState state;
    SessionState::Entry saved;
    saved.id = QStringLiteral("5E1D");
    saved.path = QStringLiteral("/home/anna/è.txt");
    saved.encoding = QStringLiteral("2483028224+bom");
    saved.lineEnding = QStringLiteral("crlf");
    saved.language = QStringLiteral("python");
    saved.selection = {12, 3};
    saved.scroll = 40;
    saved.bookmarks = {0, 7, 99};
    saved.readOnly = true;
    saved.split = QStringLiteral("stacked");
    SessionState::Entry untitled;
    untitled.id = QStringLiteral("A1");
    untitled.untitledName = QStringLiteral("nuovo 2");
    untitled.hasBackup = true;
    untitled.backupName = QStringLiteral("A1.1.txt");
    state.entries = {saved, untitled};
    state.selected = 1;
    state.workspace = {QStringLiteral("/home/anna/src")};
    state.sidebarVisible = true;

    EXPECT_EQ(SessionState::fromJson(state.toJsonBytes()), state);
}

TEST(SessionStateTest, WrongValuesTakeDefaultsAndNonObjectsDoNotDecode)
{
    const auto state = SessionState::fromJson(QByteArrayLiteral(
        R"({"entries":[{"id":"k","path":"","encoding":12,"lineEnding":"mac","language":"",)"
        R"("selection":[5,-1],"scroll":"top","bookmarks":[2,"3",-1,4.5,6],"readOnly":1,)"
        R"("split":"diagonal","untitledName":"nuovo 3"}],"selected":"1","workspace":["/a",2]})"));
    ASSERT_TRUE(state);
    ASSERT_EQ(state->entries.size(), 1);
    SessionState::Entry expected;
    expected.id = QStringLiteral("k");
    expected.untitledName = QStringLiteral("nuovo 3");
    expected.encoding = QStringLiteral("12");
    expected.bookmarks = {2, 6};
    EXPECT_EQ(state->entries[0], expected);
    EXPECT_EQ(state->selected, 0);
    EXPECT_EQ(state->workspace, QStringList{QStringLiteral("/a")});

    // Valid JSON of the wrong shape is as damaged as a truncated file.
    for (const char *bytes : {"",
                              "[]",
                              "42",
                              "\"x\"",
                              R"({"entries":[{"id":"x")",
                              "{}",
                              R"({"entries":{}})",
                              R"({"entries":[3]})",
                              R"({"entries":[{"id":7}]})",
                              R"({"entries":[{"path":"/a"}]})"})
        EXPECT_FALSE(SessionState::fromJson(QByteArray(bytes))) << bytes;
}

TEST(SessionStateTest, KeysOfANewerVersionAreKept)
{
    const QByteArray newer
        = R"({"entries":[{"id":"a","colour":"blu","pins":[1,2]}],"layout":{"grid":3}})";
    const auto state = SessionState::fromJson(newer);
    ASSERT_TRUE(state);
    const auto again = SessionState::fromJson(state->toJsonBytes());
    ASSERT_TRUE(again);
    EXPECT_EQ(again->unknown.value(u"layout").toObject().value(u"grid").toInt(), 3);
    EXPECT_EQ(again->entries[0].unknown.value(u"colour").toString(), u"blu");
    EXPECT_EQ(again->entries[0].unknown.value(u"pins").toArray().size(), 2);
    EXPECT_EQ(again->entries[0].id, u"a");
}

TEST(SessionStateTest, ScrollIsALineNumberAnEditorCanTake)
{
    const struct
    {
        const char *scroll;
        double expected;
    } cases[] = {{"12", 12}, {"1e300", 2147483647.0}, {"3000000000", 2147483647.0}, {"-4", 0}};

    for (const auto &c : cases) {
        const auto state = SessionState::fromJson(QByteArray(R"({"entries":[{"id":"a","scroll":)")
                                                  + c.scroll + "}]}");
        ASSERT_TRUE(state) << c.scroll;
        EXPECT_EQ(state->entries[0].scroll, c.expected) << c.scroll;
    }
}
