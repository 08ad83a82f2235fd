// Making several carets and the clipboard at several carets, in caret markup.
#include "core/editor/CaretCommands.h"

#include "support/CaretMarkup.h"
#include "support/QStringPrinter.h"

#include <gtest/gtest.h>

#include <functional>

using namespace mirtex;
using test::parseMarkup;
using test::toMarkup;

namespace {

using Step = std::function<std::optional<Selections>(QStringView, const Selections &)>;

QString select(const Step &step, const QString &before)
{
    const test::MarkedText marked = parseMarkup(before);
    const std::optional<Selections> after = step(marked.text, marked.selections);
    return after ? toMarkup(marked.text, *after) : QString();
}

const Step kNext = addNextOccurrence;
const Step kAll = selectAllOccurrences;
const Step kAbove
    = [](QStringView t, const Selections &s) { return addCaretOnAdjacentLine(t, s, true); };
const Step kBelow
    = [](QStringView t, const Selections &s) { return addCaretOnAdjacentLine(t, s, false); };

} // namespace

TEST(CaretCommands, MakingSelections)
{
    const struct
    {
        Step step;
        QString before;
        QString after; // empty: nothing to do
    } cases[] = {
        {kNext, u"fo|o bar foo"_qs, u"[foo|] bar foo"_qs},
        {kNext, u"[foo|] bar foo"_qs, u"[foo|] bar [foo^]"_qs},
        {kNext, u"[foo|] bar [foo^]"_qs, {}},
        {kNext, u"foo bar [foo|]"_qs, u"[foo|] bar [foo|]"_qs},
        {kNext, u"Foo [foo|] foo"_qs, u"Foo [foo|] [foo^]"_qs},
        {kNext, u"a | b"_qs, {}},
        {kAll, u"a| ab a"_qs, u"[a|] [a|]b [a|]"_qs},
        {kAll, u"x [ab|] ab"_qs, u"x [ab|] [ab|]"_qs},
        {kAll, u" | "_qs, {}},
        {kAll, u"ab [ab|]"_qs, u"[ab|] [ab^]"_qs},
        {kAbove, u"abc\na|\nabcd"_qs, u"a|bc\na|\nabcd"_qs},
        {kBelow, u"ab|c\nx\nabcd"_qs, u"ab|c\nx^\nabcd"_qs},
        {kAbove, u"a|b\nc"_qs, {}},
        {kBelow, u"a\nb|"_qs, {}},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.before.toStdString());
        EXPECT_EQ(select(c.step, c.before), c.after);
    }
}

TEST(CaretCommands, ClipboardAtSeveralSelections)
{
    const test::MarkedText marked = parseMarkup(u"[a|]b[cd|] |e"_qs);
    EXPECT_EQ(textOfSelections(marked.text, marked.selections), u"a\ncd"_qs);

    const struct
    {
        QString before;
        QString clip;
        QString after; // empty: a plain paste
    } cases[] = {
        {u"|x |y"_qs, u"1\n2\n"_qs, u"1|x 2|y"_qs},
        {u"[a|]-[b^]"_qs, u"one\ntwo"_qs, u"one|-two^"_qs},
        {u"|x |y"_qs, u"1\n2\n3"_qs, {}},
        {u"|x"_qs, u"1"_qs, {}},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.before.toStdString());
        const test::MarkedText m = parseMarkup(c.before);
        const std::optional<EditBatch> batch = distributeLines(m.text, m.selections, c.clip);
        EXPECT_EQ(batch ? toMarkup(applyEditBatch(m.text, *batch), batch->selectionsAfter)
                        : QString(),
                  c.after);
    }
}

TEST(CaretCommands, TypingAtEverySelection)
{
    const test::MarkedText m = parseMarkup(u"|a [bc|] d|"_qs);
    const EditBatch batch = typeAtSelections(m.selections, u"x"_qs);
    EXPECT_EQ(toMarkup(applyEditBatch(m.text, batch), batch.selectionsAfter), u"x|a x| dx|"_qs);
}

TEST(CaretCommands, DeletingAtEverySelection)
{
    const struct
    {
        QString before;
        bool backwards;
        QString after;
    } cases[] = {
        {u"a|b c|d |"_qs, true, u"|b |d|"_qs},
        {u"|ab [cd|]e|"_qs, false, u"|b |e|"_qs},
        {u"x😀|y"_qs, true, u"x|y"_qs},
        {u"x|😀y"_qs, false, u"x|y"_qs},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.before.toStdString());
        const test::MarkedText m = parseMarkup(c.before);
        const EditBatch batch = deleteAtSelections(m.text, m.selections, c.backwards);
        ASSERT_TRUE(isWellFormed(batch, m.text.size()));
        EXPECT_EQ(toMarkup(applyEditBatch(m.text, batch), batch.selectionsAfter), c.after);
    }
}
