// Which patterns may be searched for by their first character: a wrong "yes" would make the
// tokenizer skip matches, so every doubtful shape must answer no.
#include "core/languages/PatternLead.h"

#include <QString>

#include <gtest/gtest.h>

namespace mirtex {
namespace {

struct LeadCase
{
    const char16_t *pattern;
    char16_t lead; // 0: nothing
};

class PatternLeadTest : public testing::TestWithParam<LeadCase>
{};

TEST_P(PatternLeadTest, FindsOnlyCertainFirstCharacters)
{
    const LeadCase &c = GetParam();
    const std::optional<char16_t> lead = leadingLiteral(QStringView(c.pattern));
    EXPECT_EQ(lead.value_or(0), c.lead) << QString::fromUtf16(c.pattern).toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Table,
    PatternLeadTest,
    testing::Values(LeadCase{uR"(/\*[\s\S]*?(?:\*/|\z))", u'/'},
                    LeadCase{uR"(//.*)", u'/'},
                    LeadCase{uR"re("(?:[^"\\\n]|\\.)*"?)re", u'"'},
                    LeadCase{uR"re('(?:[^'\\\n]|\\.{1,8})')re", u'\''},
                    LeadCase{uR"((?<!:)//.*)", u'/'},
                    LeadCase{uR"((?<![\w)\]])/(?![*/])(?:[^/\\\n]|\\.)+/)", u'/'},
                    LeadCase{uR"(\$\w+)", u'$'},
                    LeadCase{uR"(@[\w-]+)", u'@'},
                    LeadCase{uR"(a+b)", u'a'},
                    // Optional, alternative, flagged, anchored or class-like starts: no answer.
                    LeadCase{uR"(\$?"(?:[^"]|"")*"?)", 0},
                    LeadCase{uR"(a*b)", 0},
                    LeadCase{uR"(a{0,2}b)", 0},
                    LeadCase{uR"(//|#)", 0},
                    LeadCase{uR"(x(?:y)|z)", 0},
                    LeadCase{uR"((?i:select))", 0},
                    LeadCase{uR"((?i)select)", 0},
                    LeadCase{uR"(^[ \t]*#[ \t]*[a-zA-Z]+)", 0},
                    LeadCase{uR"(\d+)", 0},
                    LeadCase{uR"(\x41)", 0},
                    LeadCase{uR"([ab]c)", 0},
                    LeadCase{uR"((?=a)\w)", 0},
                    LeadCase{uR"((?<!a|b)", 0},
                    LeadCase{uR"(é)", 0},
                    LeadCase{u"", 0}));

} // namespace
} // namespace mirtex
