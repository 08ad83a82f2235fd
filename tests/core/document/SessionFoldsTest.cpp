#include "core/document/SessionState.h"

#include <QJsonArray>

#include <gtest/gtest.h>

using mirtex::SessionState;

// Folded header lines go to the session and come back; an entry without folds writes no key, and
// an earlier entry without the key has none.
TEST(SessionFolds, FoldedLinesRoundTrip)
{
    SessionState::Entry entry;
    entry.id = QStringLiteral("x");
    EXPECT_FALSE(entry.toJson().contains(u"folds"));
    entry.folds = {0, 12, 40};
    const QJsonObject json = entry.toJson();
    EXPECT_EQ(json.value(u"folds").toArray(), (QJsonArray{0, 12, 40}));
    EXPECT_EQ(SessionState::Entry::fromJson(json), entry);

    QJsonObject odd = json;
    odd.insert(u"folds", QJsonArray{3, -1, QStringLiteral("7"), 5});
    EXPECT_EQ(SessionState::Entry::fromJson(odd).folds, (QList<qsizetype>{3, 5}));
}
