// Line and comment commands as "before -> after" tables in caret markup, at one and several
// carets, and the cases that must change nothing.
#include "core/editor/LineCommands.h"

#include "core/editor/CommentCommands.h"
#include "support/CaretMarkup.h"
#include "support/QStringPrinter.h"

#include <gtest/gtest.h>

#include <functional>

using namespace mirtex;
using test::parseMarkup;
using test::toMarkup;

namespace {

using Command = std::function<EditBatch(QStringView, const Selections &)>;

struct Case
{
    const char *name;
    Command command;
    QString before;
    QString after; // empty: the command changes nothing
};

// The text and selections after the command, in markup; the batch must be well formed.
QString run(const Command &command, const QString &before)
{
    const test::MarkedText marked = parseMarkup(before);
    const EditBatch batch = command(marked.text, marked.selections);
    if (batch.isEmpty())
        return {};
    EXPECT_TRUE(isWellFormed(batch, marked.text.size()));
    return toMarkup(applyEditBatch(marked.text, batch), batch.selectionsAfter);
}

const Command kComment = [](QStringView t, const Selections &s) {
    return toggleLineComment(t, s, QStringLiteral("//"));
};
const Command kHashComment = [](QStringView t, const Selections &s) {
    return toggleLineComment(t, s, QStringLiteral("#"));
};
const Command kBlock = [](QStringView t, const Selections &s) {
    return toggleBlockComment(t, s, QStringLiteral("/*"), QStringLiteral("*/"));
};
const Command kDuplicate = duplicateLines;
const Command kDelete = deleteLines;
const Command kUp = [](QStringView t, const Selections &s) { return moveLines(t, s, true); };
const Command kDown = [](QStringView t, const Selections &s) { return moveLines(t, s, false); };
const Command kJoin = joinLines;
const Command kAbove
    = [](QStringView t, const Selections &s) { return insertBlankLine(t, s, true); };
const Command kBelow
    = [](QStringView t, const Selections &s) { return insertBlankLine(t, s, false); };

// Four lines, a caret on the first and one on the third.
const QString kFour = u"|let a = 1\nlet b = 2\n|let c = 3\nlet d = 4"_qs;

} // namespace

TEST(LineCommands, TablesOfBeforeAndAfter)
{
    const Case cases[] = {
        // Several carets: every command acts at each of them.
        {"comment", kComment, kFour, u"// |let a = 1\nlet b = 2\n// |let c = 3\nlet d = 4"_qs},
        {"duplicate",
         kDuplicate,
         kFour,
         u"let a = 1\n|let a = 1\nlet b = 2\nlet c = 3\n|let c = 3\nlet d = 4"_qs},
        {"delete", kDelete, kFour, u"|let b = 2\n|let d = 4"_qs},
        {"move down", kDown, kFour, u"let b = 2\n|let a = 1\nlet d = 4\n|let c = 3"_qs},
        {"move block up",
         kUp,
         u"let a = 1\n[let b = 2\nlet c = 3|]\nlet d = 4"_qs,
         u"[let b = 2\nlet c = 3|]\nlet a = 1\nlet d = 4"_qs},
        {"move up keeps the column", kUp, u"ab\ncd|e"_qs, u"cd|e\nab"_qs},
        {"move up from the first line", kUp, kFour, {}},
        {"move down from the last line", kDown, u"a\n|b"_qs, {}},
        // Line comments.
        {"comment at the smallest indent",
         kComment,
         u"[  a\n    b|]"_qs,
         u"[  // a\n  //   b|]"_qs},
        {"blank lines stay empty", kComment, u"[a\n\n  \nb|]"_qs, u"[// a\n\n  \n// b|]"_qs},
        {"uncomment with a space", kComment, u"|// x"_qs, u"|x"_qs},
        {"uncomment without a space", kComment, u"//x|"_qs, u"x|"_qs},
        {"uncomment keeps the indent", kComment, u"[  // a\n  //b|]"_qs, u"[  a\n  b|]"_qs},
        {"comment when one line is not", kComment, u"[// a\nb|]"_qs, u"[// // a\n// b|]"_qs},
        {"another token", kHashComment, u"x = 1|"_qs, u"# x = 1|"_qs},
        {"only blank lines", kComment, u"[\n  |]"_qs, {}},
        {"two carets on one line", kComment, u"a|b|c"_qs, u"// a|b|c"_qs},
        // Block comments.
        {"wrap the selection", kBlock, u"x [a b|] y"_qs, u"x [/* a b */|] y"_qs},
        {"unwrap the selection", kBlock, u"[/* a b */|]"_qs, u"[a b|]"_qs},
        {"unwrap inside white space", kBlock, u"[  /* a */  |]"_qs, u"  [a|]  "_qs},
        {"an empty selection takes its line", kBlock, u"a\nx|y"_qs, u"a\n[/* xy */|]"_qs},
        // Duplicate.
        {"duplicate the selected text", kDuplicate, u"a[bc|]d"_qs, u"abc[bc|]d"_qs},
        {"duplicate the last line", kDuplicate, u"a\nb|c"_qs, u"a\nbc\nb|c"_qs},
        // Delete.
        {"delete the last line", kDelete, u"a\nb\n|c"_qs, u"a\n|b"_qs},
        {"delete the only line", kDelete, u"a|bc"_qs, u"|"_qs},
        {"delete a selection's lines", kDelete, u"[a\nb|]\nc"_qs, u"|c"_qs},
        {"nothing to delete", kDelete, u"|"_qs, {}},
        // Join.
        {"join with the next line", kJoin, u"a  |\n   b\nc"_qs, u"a| b\nc"_qs},
        {"join the selected lines", kJoin, u"[a\nb\nc|]"_qs, u"a b| c"_qs},
        {"join with an empty line", kJoin, u"a|\n\nb"_qs, u"a|\nb"_qs},
        {"join on the last line", kJoin, u"a\n|b"_qs, {}},
        // Blank lines.
        {"blank line above", kAbove, u"x\nab|c"_qs, u"x\n|\nabc"_qs},
        {"blank line below", kBelow, u"a|bc\nd"_qs, u"abc\n|\nd"_qs},
        {"blank line below the last line", kBelow, u"x\ny|"_qs, u"x\ny\n|"_qs},
        {"blank lines at two carets", kBelow, u"|a\n|b"_qs, u"a\n|\nb\n|"_qs},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(run(c.command, c.before), c.after);
    }
}

TEST(LineCommands, BookmarkedLines)
{
    const test::MarkedText marked = parseMarkup(u"a\nb\nc|"_qs);
    const EditBatch batch = deleteLineNumbers(marked.text, marked.selections, {2, 0, 7, -1});
    EXPECT_EQ(toMarkup(applyEditBatch(marked.text, batch), batch.selectionsAfter), u"b|"_qs);
    EXPECT_TRUE(deleteLineNumbers(marked.text, marked.selections, {9}).isEmpty());
    EXPECT_EQ(textOfLines(marked.text, {2, 0, 0}), u"a\nc\n"_qs);
    EXPECT_EQ(textOfLines(marked.text, {}), QString());
}

// Ten thousand carets take one pass, not one pass per caret.
TEST(LineCommands, ManyCaretsGiveOneBatch)
{
    QString text;
    std::vector<Selection> carets;
    for (int i = 0; i < 10000; ++i) {
        carets.push_back(Selection::caretAt(text.size()));
        text += u"line\n"_qs;
    }
    const Selections selections(carets);
    const EditBatch batch = toggleLineComment(text, selections, QStringLiteral("//"));
    ASSERT_EQ(batch.replacements.size(), 10000u);
    EXPECT_EQ(applyEditBatch(text, batch).count(u"// line\n"_qs), 10000);
    EXPECT_EQ(batch.selectionsAfter.size(), 10000u);
    EXPECT_EQ(batch.selectionsAfter.ranges().back().caret, 9999 * 8 + 3);
}
