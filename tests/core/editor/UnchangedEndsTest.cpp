// The unchanged ends after random edits agree with the texts themselves, so comparing only the
// middle decides equality with the reference exactly as a full comparison does.
#include "core/editor/UnchangedEnds.h"

#include <QByteArray>
#include <QRandomGenerator>

#include <gtest/gtest.h>

namespace mirtex {
namespace {

TEST(UnchangedEnds, MiddleComparisonMatchesAFullComparison)
{
    QRandomGenerator random(5);
    int backToReference = 0;
    for (int round = 0; round < 2000; ++round) {
        const QByteArray reference = QByteArray("abcab").repeated(random.bounded(1, 6));
        QByteArray text = reference;
        UnchangedEnds ends;
        ends.reset(text.size());
        for (int step = 0; step < random.bounded(1, 6); ++step) {
            const qsizetype position = random.bounded(int(text.size()) + 1);
            const qsizetype removed
                = random.bounded(int(std::min<qsizetype>(3, text.size() - position)) + 1);
            QByteArray inserted;
            for (int i = random.bounded(3); i > 0; --i)
                inserted += "abc"[random.bounded(3)];
            text.replace(position, removed, inserted);
            ends.edited(position, inserted.size(), text.size());
            // The claim itself: these ends are the reference's.
            ASSERT_LE(ends.head(), text.size());
            ASSERT_EQ(text.first(std::min(ends.head(), text.size())),
                      reference.first(std::min(ends.head(), reference.size())));
            const qsizetype tail = std::min({ends.tail(), text.size(), reference.size()});
            ASSERT_EQ(text.last(tail), reference.last(tail));
            // And the decision made from them.
            bool same = text.size() == reference.size();
            if (same) {
                const qsizetype from = std::min(ends.head(), text.size());
                const qsizetype to = std::max(from, text.size() - ends.tail());
                same = text.sliced(from, to - from) == reference.sliced(from, to - from);
            }
            ASSERT_EQ(same, text == reference)
                << text.toStdString() << " / " << reference.toStdString();
            backToReference += same;
        }
    }
    EXPECT_GT(backToReference, 50); // the interesting case happens often enough to be tested
}

} // namespace
} // namespace mirtex
