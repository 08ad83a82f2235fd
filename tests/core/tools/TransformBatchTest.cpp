#include "core/tools/TransformBatch.h"

#include "support/CaretMarkup.h"
#include "support/QStringPrinter.h"

#include <gtest/gtest.h>

using namespace mirtex;
using test::MarkedText;
using test::parseMarkup;
using test::toMarkup;

namespace {

struct BatchCase
{
    QString before;
    QString after; // empty: no change, no undo step
};

// Applies the batch and checks it against the case; an empty batch must leave the selections.
void check(const BatchCase &c, const std::function<EditBatch(const MarkedText &)> &make)
{
    SCOPED_TRACE(c.before.toStdString() + "  ->  " + c.after.toStdString());
    const MarkedText before = parseMarkup(c.before);
    const EditBatch batch = make(before);
    ASSERT_TRUE(isWellFormed(batch, before.text.size()));
    if (c.after.isEmpty()) {
        EXPECT_TRUE(batch.isEmpty());
        return;
    }
    ASSERT_FALSE(batch.isEmpty());
    EXPECT_EQ(toMarkup(applyEditBatch(before.text, batch), batch.selectionsAfter), c.after);
}

LineOperationOptions options()
{
    LineOperationOptions o;
    o.tabWidth = 4;
    o.locale = QLocale(QLocale::Italian, QLocale::Italy);
    return o;
}

} // namespace

TEST(LineOperationBatch, TakesWholeLinesOfEachSelectionOrTheWholeText)
{
    const auto sortAscending = [](const MarkedText &m) {
        return lineOperationBatch(m.text, m.selections, LineOperation::sortAscending, options());
    };
    const BatchCase cases[] = {
        // No selection: the whole text; the final line break stays last.
        {u"c\nb|\na\n"_qs, u"[a\nb\nc\n|]"_qs},
        {u"c\nb|\na"_qs, u"[a\nb\nc|]"_qs},
        // Part of two lines sorts both whole lines, and only them.
        {u"z\nd[d\nc|]c\na"_qs, u"z\n[cc\ndd\n|]a"_qs},
        {u"z\nd[d\nc|]c\na\n"_qs, u"z\n[cc\ndd\n|]a\n"_qs},
        // Ending at the start of a line does not take that line.
        {u"b\n[d\na\n|]c"_qs, u"b\n[a\nd\n|]c"_qs},
        {u"[b\na\n|]c"_qs, u"[a\nb\n|]c"_qs},
        // Each selection's block on its own, one batch.
        {u"[b\na|]\nx\n[d\nc|]"_qs, u"[a\nb\n|]x\n[c\nd|]"_qs},
        {u"a\nb|\nc"_qs, u""_qs}, // already sorted: nothing to do
        {u"|"_qs, u""_qs},
        {u"\n\n|"_qs, u""_qs},
    };
    for (const BatchCase &c : cases)
        check(c, sortAscending);

    const auto removeEmpty = [](const MarkedText &m) {
        return lineOperationBatch(m.text, m.selections, LineOperation::removeEmpty, options());
    };
    check({u"a\n\n\nb\n|"_qs, u"[a\nb\n|]"_qs}, removeEmpty);
    check({u"|\n"_qs, u""_qs}, removeEmpty);
}

TEST(CaseConversionBatch, ConvertsEverySelectionOrTheWordAtEachCaret)
{
    const auto upper = [](const MarkedText &m) {
        return caseConversionBatch(m.text, m.selections, CaseConversion::upper);
    };
    const BatchCase cases[] = {
        {u"|let a = 1\nlet b = 2\n|let c = 3\nlet d = 4"_qs,
         u"[LET|] a = 1\nlet b = 2\n[LET|] c = 3\nlet d = 4"_qs},
        {u"pe|rché no"_qs, u"[PERCHÉ|] no"_qs},
        {u"[ab|] c[d|]"_qs, u"[AB|] c[D|]"_qs},
        {u"a|b a^b"_qs, u"[AB|] [AB^]"_qs},
        {u"straß|e"_qs, u"[STRASSE|]"_qs},
        {u"a + | b"_qs, u""_qs}, // no word at the caret
        {u"[ABC|]"_qs, u""_qs},
    };
    for (const BatchCase &c : cases)
        check(c, upper);
}

TEST(TextToolBatch, EachSelectionOrTheWholeTextAndNothingWhenOneIsInvalid)
{
    const auto tool = [](TextTool t) {
        return [t](const MarkedText &m) {
            return textToolBatch(m.text, m.selections, t, u"\t").value_or(EditBatch{});
        };
    };
    check({u"a<b|"_qs, u"[a&lt;b|]"_qs}, tool(TextTool::htmlEncode));
    check({u"[<|] x [>|]"_qs, u"[&lt;|] x [&gt;|]"_qs}, tool(TextTool::htmlEncode));
    check({u"abc|"_qs, u"[YWJj|]"_qs}, tool(TextTool::base64Encode));
    check({u"plain|"_qs, u""_qs}, tool(TextTool::htmlDecode));

    const MarkedText twoSelections = parseMarkup(u"[YWJj|] [Y*|]"_qs);
    EXPECT_FALSE(
        textToolBatch(twoSelections.text, twoSelections.selections, TextTool::base64Decode, u"\t"));
}

TEST(InsertionBatch, InsertsAtEveryCaretReplacingSelections)
{
    const BatchCase cases[] = {
        {u"a|b"_qs, u"aXY|b"_qs},
        {u"[ab|] c|"_qs, u"XY| cXY|"_qs},
    };
    for (const BatchCase &c : cases)
        check(c, [](const MarkedText &m) {
            return insertionBatch(m.selections, u"XY"_qs, u"Data"_qs);
        });
}
