#include "core/text/TextRange.h"

#include <gtest/gtest.h>

using mirtex::TextRange;

TEST(TextRange, ContainsIsHalfOpen)
{
    const TextRange r{4, 3};
    EXPECT_FALSE(r.contains(3));
    EXPECT_TRUE(r.contains(4));
    EXPECT_TRUE(r.contains(6));
    EXPECT_FALSE(r.contains(7));
    EXPECT_FALSE((TextRange{5, 0}).contains(5));
}
