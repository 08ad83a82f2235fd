#include "core/text/EditBatch.h"

#include "support/CaretMarkup.h"

#include <gtest/gtest.h>

using namespace mirtex;
using test::MarkedText;
using test::parseMarkup;

namespace {

struct BatchCase
{
    QString before;
    std::vector<TextReplacement> replacements;
    QString after;
};

} // namespace

// The text after the batch, and the selections carried through it by mapSelections.
TEST(EditBatch, AppliesToTextAndCarriesSelections)
{
    const BatchCase cases[] = {
        {u"|let a = b;"_qs, {{{4, 1}, u"x"_qs}, {{8, 1}, u"yy"_qs}}, u"|let x = yy;"_qs},
        {u"ab|c"_qs, {{{2, 0}, u"X"_qs}, {{2, 0}, u"Y"_qs}}, u"abXY|c"_qs},
        {u"a[bc|]d"_qs, {{{1, 2}, {}}}, u"a|d"_qs},
        {u"a[|bc]d"_qs, {{{1, 2}, {}}}, u"a|d"_qs},
        {u"a|b"_qs, {}, u"a|b"_qs},
        {u"fo|o bar"_qs, {{{0, 3}, u"x"_qs}}, u"x| bar"_qs},
        {u"|foo bar|"_qs, {{{0, 3}, u"xy"_qs}}, u"|xy bar|"_qs},
        {u"foo| bar"_qs, {{{0, 3}, u"xy"_qs}, {{3, 0}, u"!"_qs}}, u"xy!| bar"_qs},
        {u"😀|x"_qs, {{{0, 2}, u"é"_qs}}, u"é|x"_qs},
        {u"ab|"_qs, {{{2, 0}, u"cd"_qs}}, u"abcd|"_qs},
        {u"[a|] [b^] c|"_qs, {{{0, 1}, u"AA"_qs}, {{2, 1}, u"BB"_qs}}, u"[AA|] [BB^] c|"_qs},
        {u"one\ntwo\n|"_qs, {{{0, 4}, {}}, {{4, 4}, u"2\n3\n"_qs}}, u"2\n3\n|"_qs},
    };
    for (const BatchCase &c : cases) {
        const MarkedText before = parseMarkup(c.before);
        SCOPED_TRACE(c.before.toStdString() + " -> " + c.after.toStdString());
        EditBatch batch{c.replacements, mapSelections(before.selections, c.replacements), {}};
        ASSERT_TRUE(isWellFormed(batch, before.text.size()));
        EXPECT_EQ((MarkedText{applyEditBatch(before.text, batch), batch.selectionsAfter}),
                  parseMarkup(c.after));
    }
}

TEST(EditBatch, WellFormedMeansSortedDisjointAndInsideTheText)
{
    const struct
    {
        std::vector<TextReplacement> replacements;
        bool wellFormed;
    } cases[] = {
        {{}, true},
        {{{{0, 2}, {}}, {{2, 2}, {}}}, true},
        {{{{1, 0}, u"x"_qs}, {{1, 0}, u"y"_qs}, {{1, 3}, {}}}, true},
        {{{{0, 3}, {}}, {{2, 1}, {}}}, false},
        {{{{3, 1}, {}}, {{0, 1}, {}}}, false},
        {{{{3, 2}, {}}}, false},
        {{{{-1, 1}, {}}}, false},
        {{{{1, -1}, {}}}, false},
    };

    for (const auto &c : cases)
        EXPECT_EQ(isWellFormed(EditBatch{c.replacements, {}, {}}, 4), c.wellFormed)
            << "case " << (&c - cases);
}

TEST(CaretMarkup, ReadsAndWritesCaretsAndSelections)
{
    const struct
    {
        QString markup;
        QString text;
        std::vector<Selection> selections;
        std::size_t mainIndex;
    } cases[] = {
        {u"let [a|] = 1"_qs, u"let a = 1"_qs, {{4, 5}}, 0},
        {u"[|ab]c"_qs, u"abc"_qs, {{2, 0}}, 0},
        {u"|a|"_qs, u"a"_qs, {{0, 0}, {1, 1}}, 0},
        {u"[a|] ^b"_qs, u"a b"_qs, {{0, 1}, {2, 2}}, 1},
        {u"a\\|b\\[|"_qs, u"a|b["_qs, {{4, 4}}, 0},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.markup.toStdString());
        const MarkedText marked = parseMarkup(c.markup);
        EXPECT_EQ(marked.text, c.text);
        EXPECT_EQ(marked.selections, Selections(c.selections, c.mainIndex));
        EXPECT_EQ(test::toMarkup(marked), c.markup);
    }
    for (const QString &bad : {u"ab"_qs, u"[a|b]"_qs, u"[a"_qs, u"a]|"_qs, u"^a^"_qs})
        EXPECT_THROW(parseMarkup(bad), std::invalid_argument) << bad.toStdString();
}
