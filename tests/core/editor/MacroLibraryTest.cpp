#include "core/editor/MacroLibrary.h"

#include "support/QStringPrinter.h"
#include "support/TestFiles.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace mirtex;

namespace {

SavedMacro commenting(const QString &name)
{
    return {name,
            u"Ctrl+Alt+1"_qs,
            {MacroStep::command(u"moveToBeginningOfLine:"_qs),
             MacroStep::insert(u"// "_qs),
             MacroStep::command(u"moveDown:"_qs),
             MacroStep::action(u"applyLineOperation:"_qs, u"sortAscending"_qs)}};
}

} // namespace

TEST(MacroLibrary, ChangesSurviveAReload)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(u"nested/Mirtex/macros.json"_qs);
    MacroLibrary library(path);
    ASSERT_TRUE(library.load()); // no file yet: empty
    ASSERT_TRUE(library.add(commenting(u" Commenta "_qs)));
    ASSERT_TRUE(library.add({u"Due"_qs, {}, {MacroStep::insert(u"x"_qs)}}));
    ASSERT_TRUE(library.rename(u"commenta"_qs, u"Commenta righe"_qs));
    ASSERT_TRUE(library.setShortcut(u"Due"_qs, u"Ctrl+Alt+2"_qs));
    ASSERT_TRUE(library.add({u"Tre"_qs, {}, {MacroStep::insert(u"y"_qs)}}));
    ASSERT_TRUE(library.remove(u"TRE"_qs));

    MacroLibrary reloaded(path);
    ASSERT_TRUE(reloaded.load());
    const QList<SavedMacro> expected{commenting(u"Commenta righe"_qs),
                                     {u"Due"_qs, u"Ctrl+Alt+2"_qs, {MacroStep::insert(u"x"_qs)}}};
    EXPECT_EQ(reloaded.macros(), expected);
}

TEST(MacroLibrary, RefusesBadNamesAndChangesNothing)
{
    QTemporaryDir dir;
    MacroLibrary library(dir.filePath(u"macros.json"_qs));
    ASSERT_TRUE(library.add(commenting(u"Commenta"_qs)));
    ASSERT_TRUE(library.add(commenting(u"Altro"_qs)));
    using Kind = MacroLibraryError::Kind;
    EXPECT_EQ(library.add(commenting(u"  "_qs)).error().kind, Kind::emptyName);
    EXPECT_EQ(library.add(commenting(u"COMMENTA"_qs)).error().kind, Kind::nameInUse);
    EXPECT_EQ(library.add({u"Vuota"_qs, {}, {}}).error().kind, Kind::emptyMacro);
    EXPECT_EQ(library.rename(u"Altro"_qs, u"commenta"_qs).error().kind, Kind::nameInUse);
    EXPECT_EQ(library.rename(u"Nessuna"_qs, u"X"_qs).error().kind, Kind::unknownName);
    EXPECT_TRUE(library.rename(u"Altro"_qs, u"ALTRO"_qs)); // only the case changes
    EXPECT_EQ(library.macros().size(), 2);
    EXPECT_TRUE(library.nameProblem(u"Altro"_qs)->description().contains(u"ALTRO"_qs)
                || library.nameProblem(u"Altro"_qs)->description().contains(u"Altro"_qs));
}

TEST(MacroLibrary, UnreadableFilesAreReportedAndNeverOverwritten)
{
    struct Case
    {
        const char *contents;
        MacroLibraryError::Kind kind;
    };

    using Kind = MacroLibraryError::Kind;
    const Case cases[] = {
        {"{not json", Kind::corruptFile},
        {"[1, 2]", Kind::corruptFile},
        {R"({"macros": []})", Kind::corruptFile},
        {R"({"version": 1.5, "macros": []})", Kind::corruptFile},
        {R"({"version": 1, "macros": {}})", Kind::corruptFile},
        {R"({"version": 1, "macros": [{"name": "a", "steps": []}]})", Kind::corruptFile},
        {R"({"version": 1, "macros": [{"name": "a", "steps": [{"kind": "x"}]}]})",
         Kind::corruptFile},
        {R"({"version": 1, "macros": [{"name": "a", "steps": [{"kind": "insert", "text": "1"}]},
                                       {"name": "A", "steps": [{"kind": "insert", "text": "2"}]}]})",
         Kind::corruptFile},
        {R"({"version": 2, "macros": []})", Kind::newerFile},
    };
    QTemporaryDir dir;
    const QString path = dir.filePath(u"macros.json"_qs);
    for (const Case &c : cases) {
        writeFile(path, c.contents);
        MacroLibrary library(path);
        const auto loaded = library.load();
        ASSERT_FALSE(loaded) << c.contents;
        EXPECT_EQ(loaded.error().kind, c.kind) << c.contents;
        EXPECT_TRUE(loaded.error().description().contains(path));
        EXPECT_TRUE(library.macros().isEmpty());
        EXPECT_EQ(library.add(commenting(u"Nuova"_qs)).error().kind, Kind::unreadableFile);
        EXPECT_EQ(readFile(path), QByteArray(c.contents));
    }
}
