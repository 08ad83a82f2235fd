#include "core/search/FindModel.h"

#include <gtest/gtest.h>

namespace mirtex {
namespace {

QStringList searched(const QStringList &queries)
{
    QStringList history;
    for (const QString &q : queries)
        history = withRecentSearch(std::move(history), q);
    return history;
}

TEST(FindModelTest, RecentSearchesKeepTheNewestDistinctTwenty)
{
    EXPECT_EQ(searched({"a", "b", "a"}), (QStringList{"a", "b"}));
    EXPECT_EQ(searched({"a", "", "b"}), (QStringList{"b", "a"}));
    EXPECT_EQ(searched({"A", "a"}), (QStringList{"a", "A"})); // exact comparison

    QStringList many;
    for (int i = 0; i < 25; ++i)
        many << QString::number(i);
    const QStringList kept = searched(many);
    ASSERT_EQ(kept.size(), 20);
    EXPECT_EQ(kept.first(), "24");
    EXPECT_EQ(kept.last(), "5");
}

TEST(FindModelTest, StoredHistoryIsCleanedAndChangesAreSignalledOnce)
{
    FindModel model({"x", "", "y", "x"});
    EXPECT_EQ(model.history(), (QStringList{"x", "y"}));

    int changes = 0;
    QStringList stored;
    QObject::connect(&model, &FindModel::changed, [&] { ++changes; });
    QObject::connect(&model, &FindModel::historyChanged, [&](const QStringList &h) { stored = h; });

    model.update([](FindFields &f) {
        f.query = "q";
        f.matchCase = true;
    });
    model.update([](FindFields &f) { f.query = "q"; }); // no change, no signal
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(model.options().query, "q");
    EXPECT_TRUE(model.options().matchCase);

    model.recordSearch("y");
    EXPECT_EQ(stored, (QStringList{"y", "x"}));
    model.recordSearch("y"); // already first: nothing to store
    EXPECT_EQ(changes, 2);

    model.setStatus(SearchStatus::noResult("q"));
    EXPECT_TRUE(model.fields().statusIsError);
    EXPECT_EQ(model.fields().status, QStringLiteral("Nessun risultato per \u201Cq\u201D."));
}

} // namespace
} // namespace mirtex
