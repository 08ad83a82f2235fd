#include "core/editor/AutoClose.h"

#include "support/CaretMarkup.h"

#include <gtest/gtest.h>

using namespace mirtex;
using test::MarkedText;
using test::parseMarkup;

// Before, the key typed, and the text with its selections afterwards; no "after" means the key is
// typed as usual.
TEST(AutoClose, PairsWrapsAndStepsOver)
{
    const struct
    {
        QString before;
        QChar typed;
        std::optional<QString> after;
    } cases[] = {
        {u"f|"_qs, u'(', u"f(|)"_qs},
        {u"|x"_qs, u'{', u"{|}x"_qs},
        {u"a [bc|] d"_qs, u'(', u"a ([bc|]) d"_qs},
        {u"a [|bc] d"_qs, u'"', u"a \"[bc|]\" d"_qs},
        {u"[x|]"_qs, u'[', u"\\[[x|]\\]"_qs},
        {u"f(|)"_qs, u')', u"f()|"_qs},
        {u"\"|\""_qs, u'"', u"\"\"|"_qs},
        {u"f(|x"_qs, u')', std::nullopt},
        {u"f\\[(|)\\]"_qs, u')', u"f\\[()|\\]"_qs},
        {u"a|"_qs, u'x', std::nullopt},
        {u" |"_qs, u'"', u" \"|\""_qs},
        {u"it|s"_qs, u'\'', std::nullopt},
        {u"x_|"_qs, u'\'', std::nullopt},
        {u" |a"_qs, u'`', std::nullopt},
        {u" |_"_qs, u'\'', u" '|'_"_qs},
        {u"perché|"_qs, u'\'', u"perché'|'"_qs},
        {u"|a |b"_qs, u'(', u"(|)a (|)b"_qs},
        {u"|a ^b"_qs, u'[', u"\\[|\\]a \\[^\\]b"_qs},
        {u"(|) (|)"_qs, u')', u"()| ()|"_qs},
        {u"(|) (|x"_qs, u')', std::nullopt},
        {u"|x |"_qs, u'"', std::nullopt},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.before.toStdString() + " + " + QString(c.typed).toStdString());
        const MarkedText before = parseMarkup(c.before);
        const auto charAt = [&](qsizetype offset) {
            return offset >= 0 && offset < before.text.size() ? before.text[offset] : QChar();
        };
        const std::optional<EditBatch> batch = autoCloseEdit(c.typed, before.selections, charAt);
        ASSERT_EQ(batch.has_value(), c.after.has_value());
        if (!batch)
            continue;
        EXPECT_TRUE(isWellFormed(*batch, before.text.size()));
        EXPECT_TRUE(batch->undoLabel.isEmpty());
        EXPECT_EQ((MarkedText{applyEditBatch(before.text, *batch), batch->selectionsAfter}),
                  parseMarkup(*c.after));
    }
}
