// Word changes, the assistant's hunk text and chunks, and the unified diff that patch applies.
#include "core/compare/HunkText.h"
#include "core/compare/TextDiff.h"
#include "core/compare/UnifiedDiff.h"
#include "core/compare/WordChanges.h"
#include "support/QStringPrinter.h"
#include "support/TestFiles.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <random>

namespace mirtex {

namespace {

struct WordCase
{
    const char *name;
    QString left;
    QString right;
    DiffOptions options;
    std::optional<std::vector<QString>> leftChanged; // texts of the changed ranges
    std::vector<QString> rightChanged;
};

void PrintTo(const WordCase &c, std::ostream *os)
{
    *os << c.name;
}

class WordChangesTable : public testing::TestWithParam<WordCase>
{};

std::vector<QString> textsOf(const QString &line, const std::vector<TextRange> &ranges)
{
    std::vector<QString> texts;
    for (const TextRange &range : ranges)
        texts.push_back(line.mid(range.location, range.length));
    return texts;
}

TEST_P(WordChangesTable, ReturnsTheChangedStretches)
{
    const WordCase &c = GetParam();
    const auto changes = wordChanges(c.left, c.right, c.options);
    ASSERT_EQ(changes.has_value(), c.leftChanged.has_value());
    if (!changes)
        return;
    EXPECT_EQ(textsOf(c.left, changes->left), *c.leftChanged);
    EXPECT_EQ(textsOf(c.right, changes->right), c.rightChanged);
}

const QString kLong = QString(3999, u'a');

INSTANTIATE_TEST_SUITE_P(
    Cases,
    WordChangesTable,
    testing::Values(
        WordCase{"one number",
                 "il prezzo è 10 euro al mese",
                 "il prezzo è 12 euro al mese",
                 {},
                 {{"10"}},
                 {"12"}},
        WordCase{
            "nothing in common", "tutto diverso qui", "nulla in comune xyz", {}, std::nullopt, {}},
        WordCase{"an empty side", "", "abc", {}, std::nullopt, {}},
        WordCase{"too long", kLong + "a", kLong + "b", {}, std::nullopt, {}},
        WordCase{"just below the limit",
                 kLong.left(3997) + " a",
                 kLong.left(3997) + " b",
                 {},
                 {{"a"}},
                 {"b"}},
        WordCase{"adjacent words merge over white space",
                 "uno due tre quattro cinque",
                 "uno DUE TRE quattro cinque",
                 {},
                 {{"due tre"}},
                 {"DUE TRE"}},
        WordCase{"case ignored", "Uno due tre", "uno DUE tre!", {false, true}, {{}}, {"!"}},
        WordCase{"white space ignored", "a  =  b + c", "a = b + d", {true, false}, {{"c"}}, {"d"}},
        WordCase{"a surrogate pair stands alone", "ok 😀 fine", "ok 😃 fine", {}, {{"😀"}}, {"😃"}},
        WordCase{"a combining mark stays with its base",
                 "x = e\u0301;",
                 "x = a\u0301;",
                 {},
                 {{"e\u0301"}},
                 {"a\u0301"}}));

TEST(HunkText, HeaderContextAndCut)
{
    const QString longLine = QString(450, u'z');
    const TextDiff diff(QStringLiteral("a\nb\nc\nd\ne"),
                        QStringLiteral("a\nb\nX\n") + longLine + QStringLiteral("\nd\ne"));
    ASSERT_EQ(diff.hunks.size(), 1u);
    const QStringList lines = hunkText(0, 1, diff.left, diff.right, diff.hunks, diff.options);
    EXPECT_EQ(lines,
              QStringList({QStringLiteral("@@ 3,1 → 3,2 @@"),
                           QStringLiteral(" b"),
                           QStringLiteral("-c"),
                           QStringLiteral("+X"),
                           QStringLiteral("+") + QString(400, u'z') + QStringLiteral("…"),
                           QStringLiteral(" d")}));

    const TextDiff inserted(QStringLiteral("a"), QStringLiteral("x\ny\na"));
    EXPECT_EQ(hunkText(0, 3, inserted.left, inserted.right, inserted.hunks, {}).first(),
              QStringLiteral("@@ 1,0 → 1,2 @@"));
}

TEST(HunkText, AssistantChunks)
{
    QStringList left;
    for (int i = 0; i < 1000; ++i)
        left.append(QStringLiteral("riga %1").arg(i));
    QStringList right = left;
    right[500] = QStringLiteral("modificata 500");
    const TextDiff diff(left.join(u'\n'), right.join(u'\n'));
    const QStringList chunks = assistantChunks(2, 3000, diff.left, diff.right, diff.hunks, {});
    ASSERT_EQ(chunks.size(), 1);
    EXPECT_TRUE(chunks[0].startsWith(QStringLiteral("@@ 501,1 → 501,1 @@\n")));
    EXPECT_TRUE(chunks[0].contains(QStringLiteral("\n+modificata 500\n")));

    // Small chunks: every chunk but an over-long single line stays within the limit.
    for (int i = 0; i < 1000; i += 50)
        right[i] = QStringLiteral("cambiata %1").arg(i);
    const TextDiff many(left.join(u'\n'), right.join(u'\n'));
    const QStringList small = assistantChunks(2, 40, many.left, many.right, many.hunks, {});
    EXPECT_GT(small.size(), 10);
    for (const QString &chunk : small) {
        EXPECT_TRUE(chunk.size() <= 40 || chunk.count(u'\n') == 1) << chunk.toStdString();
        EXPECT_TRUE(chunk.endsWith(u'\n'));
    }
}

struct PatchCase
{
    QString left;
    QString right;
};

// `patch` applied to the left file must give the right text byte for byte.
TEST(UnifiedDiff, PatchRebuildsTheRightFile)
{
    const QString patchProgram = QStandardPaths::findExecutable(QStringLiteral("patch"));
    if (patchProgram.isEmpty())
        GTEST_SKIP() << "patch is not installed";
    std::vector<PatchCase> cases{
        {"a\nb\nc\n", "a\nB\nc\n"},
        {"a\nb\nc", "a\nb\nc\n"},
        {"a\nb\nc\n", "a\nb\nc"},
        {"a\nb", "a\nb\nc"},
        {"", "uno\ndue\n"},
        {"uno\n", ""},
        {"x\n", "x\n\ny"},
    };
    std::mt19937 random(7);
    for (int round = 0; round < 20; ++round) {
        QStringList left;
        for (int i = 0; i < 80; ++i)
            left.append(QStringLiteral("l%1").arg(random() % 30));
        QStringList right = left;
        for (int e = 0; e < 6; ++e) {
            const int at = int(random() % right.size());
            if (random() % 2)
                right.insert(at, QStringLiteral("nuova %1").arg(e));
            else
                right.removeAt(at);
        }
        cases.push_back({left.join(u'\n') + u'\n', right.join(u'\n') + (round % 3 ? "\n" : "")});
    }
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    for (const PatchCase &c : cases) {
        SCOPED_TRACE(c.left.toStdString() + " -> " + c.right.toStdString());
        const QString text = unifiedDiff(TextDiff(c.left, c.right), "old.txt", "old.txt");
        writeFile(dir.filePath("old.txt"), c.left.toUtf8());
        writeFile(dir.filePath("change.patch"), text.toUtf8());
        QProcess patch;
        patch.setWorkingDirectory(dir.path());
        patch.start(patchProgram,
                    {"-p0", "--quiet", "--force", "--no-backup-if-mismatch", "-i", "change.patch"});
        ASSERT_TRUE(patch.waitForFinished(10000));
        EXPECT_EQ(patch.exitCode(), 0)
            << patch.readAllStandardError().toStdString() << text.toStdString();
        EXPECT_EQ(readFile(dir.filePath("old.txt")), c.right.toUtf8()) << text.toStdString();
    }
}

TEST(UnifiedDiff, StandardHeaders)
{
    const TextDiff diff(QStringLiteral("a\nb\nc\nd\ne\nf\ng\nh\n"),
                        QStringLiteral("x\na\nb\nc\nd\ne\nf\ng\n"));
    EXPECT_EQ(unifiedDiff(diff, "l", "r", 0),
              QStringLiteral("--- l\n+++ r\n@@ -0,0 +1 @@\n+x\n@@ -8 +8,0 @@\n-h\n"));
    EXPECT_EQ(unifiedDiff(diff, "l", "r", 1).section(u'\n', 2, 2), QStringLiteral("@@ -1 +1,2 @@"));
    EXPECT_TRUE(unifiedDiff(TextDiff("same\n", "same\n"), "l", "r").isEmpty());
}

} // namespace

} // namespace mirtex
