#include "core/app/FuzzyMatch.h"

#include <gtest/gtest.h>

using namespace mirtex;

TEST(FuzzyMatch, SubsequenceIgnoringCase)
{
    EXPECT_TRUE(fuzzyScore(u"dup", u"Duplica riga o selezione"));
    EXPECT_TRUE(fuzzyScore(u"drs", u"Duplica riga o selezione"));
    EXPECT_TRUE(fuzzyScore(u"", u"anything"));
    EXPECT_FALSE(fuzzyScore(u"xyz", u"Duplica riga"));
    EXPECT_FALSE(fuzzyScore(u"agd", u"Duplica riga")); // out of order
    EXPECT_TRUE(fuzzyScore(u"vai riga", u"Modifica › Vai alla riga…"));
}

TEST(FuzzyMatch, WordStartsAndRunsRankFirst)
{
    // "rig" at the start of a word beats the same letters scattered.
    EXPECT_GT(*fuzzyScore(u"rig", u"Elimina riga"),
              *fuzzyScore(u"rig", u"Torna a un solo cursore di g"));
    EXPECT_GT(*fuzzyScore(u"seg", u"Segnalibro successivo"),
              *fuzzyScore(u"seg", u"Seleziona tutte le occorrenze g"));
    EXPECT_GT(*fuzzyScore(u"cm", u"Commenta/decommenta"), 0);
}
