#include "ui/compare/CompareWindow.h"

#include "core/app/Preferences.h"
#include "support/QStringPrinter.h"
#include "support/TestFiles.h"
#include "ui/compare/CompareCommands.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QAction>
#include <QTemporaryDir>
#include <QTest>
#include <Qsci/qsciscintillabase.h>

#include <gtest/gtest.h>

namespace mirtex {

namespace {

using Sci = QsciScintillaBase;

class CompareWindowTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_dir.isValid());
        m_prefs = std::make_unique<Preferences>(m_dir.filePath(QStringLiteral("p.conf")));
        m_left = std::make_unique<EditorView>(*m_prefs);
        m_right = std::make_unique<EditorView>(*m_prefs);
    }

    std::unique_ptr<CompareWindow> open(const QString &left, const QString &right)
    {
        m_left->loadText(left.toUtf8());
        m_right->loadText(right.toUtf8());
        CompareSide l{
            QStringLiteral("/tmp/sinistra.txt"), QStringLiteral("a.txt"), m_left.get(), {}, {}};
        CompareSide r{
            QStringLiteral("/tmp/destra.txt"), QStringLiteral("a.txt"), m_right.get(), {}, {}};
        auto window
            = std::make_unique<CompareWindow>(*m_prefs, m_questions, l, r, m_left->colors());
        window->resize(900, 500);
        window->show();
        window->compareNow();
        return window;
    }

    static QString paneText(const CompareWindow &window, CompareSideIndex side)
    {
        return window.pane(side).text();
    }

    QTemporaryDir m_dir;
    std::unique_ptr<Preferences> m_prefs;
    ScriptedQuestions m_questions;
    std::unique_ptr<EditorView> m_left;
    std::unique_ptr<EditorView> m_right;
};

TEST_F(CompareWindowTest, PanesAreAlignedWithFillerRowsAndLabelsCount)
{
    auto window = open(QStringLiteral("uno\ndue\ntre\nquattro\n"),
                       QStringLiteral("uno\nDUE\nnuova\ntre\nquattro\ncinque\n"));
    EXPECT_EQ(paneText(*window, CompareSideIndex::left),
              QStringLiteral("uno\ndue\n\ntre\nquattro\n\n"));
    EXPECT_EQ(paneText(*window, CompareSideIndex::right),
              QStringLiteral("uno\nDUE\nnuova\ntre\nquattro\ncinque\n"));
    EXPECT_EQ(window->totalsText(), QStringLiteral("+3 −1"));
    EXPECT_EQ(window->positionText(), QStringLiteral("2 differenze"));

    // F7 and Shift+F7 walk the differences.
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    QTest::keyClick(window.get(), Qt::Key_F7);
    EXPECT_EQ(window->positionText(), QStringLiteral("differenza 1 di 2"));
    QTest::keyClick(window.get(), Qt::Key_F7);
    EXPECT_EQ(window->positionText(), QStringLiteral("differenza 2 di 2"));
    QTest::keyClick(window.get(), Qt::Key_F7, Qt::ShiftModifier);
    EXPECT_EQ(window->currentHunk(), 0);
    ASSERT_NE(window->findChild<QAction *>(QStringLiteral("mirtex.compare.next")), nullptr);
    ASSERT_NE(window->findChild<QAction *>(QStringLiteral("mirtex.compare.previous")), nullptr);

    // Scrolling one pane scrolls the other.
    const QString many = QStringLiteral("riga\n").repeated(500);
    m_left->loadText((many + QStringLiteral("x\n")).toUtf8());
    m_right->loadText((many + QStringLiteral("y\n")).toUtf8());
    window->compareNow();
    window->pane(CompareSideIndex::left).setFirstVisibleLine(300);
    EXPECT_TRUE(QTest::qWaitFor(
        [&]() { return window->pane(CompareSideIndex::right).firstVisibleLine() == 300; }));
}

// Line numbers are written for the rows on screen: a window made taller numbers the rows it
// now shows, and one difference is counted in the singular.
TEST_F(CompareWindowTest, RowsShownAfterAResizeAreNumbered)
{
    const QString many = QStringLiteral("riga\n").repeated(200);
    auto window = open(many + QStringLiteral("x\n"), many + QStringLiteral("y\n"));
    EXPECT_EQ(window->positionText(), QStringLiteral("1 differenza"));
    window->resize(900, 1400);
    EditorView &left = window->pane(CompareSideIndex::left);
    const long lastShown = long(left.primaryPane()->SendScintilla(Sci::SCI_GETFIRSTVISIBLELINE))
                           + long(left.primaryPane()->SendScintilla(Sci::SCI_LINESONSCREEN)) - 1;
    ASSERT_GT(lastShown, 40);
    EXPECT_TRUE(QTest::qWaitFor([&]() {
        return left.primaryPane()->SendScintilla(
                   Sci::SCI_MARGINGETTEXT, (unsigned long)lastShown, (long)0)
               > 1;
    })) << "row "
        << lastShown << " has no number";
}

TEST_F(CompareWindowTest, CarryingADifferenceIsOneUndoStepInThatTab)
{
    const QString left = QStringLiteral("a\nb\nc\nd\ne");
    const QString right = QStringLiteral("a\nB\nc\nd\ne\nf");
    auto window = open(left, right);
    ASSERT_EQ(window->diff().hunks.size(), 2u);

    window->goToHunk(0);
    ASSERT_TRUE(window->carryToRight());
    EXPECT_EQ(m_right->text(), QStringLiteral("a\nb\nc\nd\ne\nf"));
    EXPECT_EQ(window->diff().hunks.size(), 1u);

    window->goToHunk(0); // the added last line
    ASSERT_TRUE(window->carryToLeft());
    EXPECT_EQ(m_left->text(), QStringLiteral("a\nb\nc\nd\ne\nf"));
    EXPECT_EQ(window->positionText(), QStringLiteral("nessuna differenza"));
    EXPECT_FALSE(window->carryToLeft());

    // Undo in the tab brings the difference back, and the window follows the edit by itself.
    m_left->primaryPane()->SendScintilla(Sci::SCI_UNDO);
    EXPECT_EQ(m_left->text(), left);
    EXPECT_TRUE(QTest::qWaitFor([&]() { return window->diff().hunks.size() == 1; }));
    EXPECT_EQ(window->totalsText(), QStringLiteral("+1 −0"));
}

TEST_F(CompareWindowTest, OptionsAndPatch)
{
    auto window = open(QStringLiteral("Titolo\nuno due\n"), QStringLiteral("titolo\nunodue\n"));
    EXPECT_EQ(window->diff().hunks.size(), 1u);
    window->setOptions({true, true});
    EXPECT_TRUE(QTest::qWaitFor([&]() { return window->isUpToDate(); }));
    EXPECT_TRUE(window->diff().hunks.empty());
    window->setOptions({});
    EXPECT_TRUE(QTest::qWaitFor([&]() { return window->isUpToDate(); }));
    const QString patch = m_dir.filePath(QStringLiteral("c.patch"));
    ASSERT_TRUE(window->writePatch(patch));
    EXPECT_EQ(
        readFile(patch),
        QByteArray("--- a.txt\n+++ a.txt\n@@ -1,2 +1,2 @@\n-Titolo\n-uno due\n+titolo\n+unodue\n"));
}

TEST(CompareSources, UnreadableAndBinaryFilesAreRefusedInItalian)
{
    QTemporaryDir dir;
    writeFile(dir.filePath(QStringLiteral("bin.dat")), QByteArray("ab\0cd", 5));
    writeFile(dir.filePath(QStringLiteral("t.c")), QByteArray("int x;\r\n"));
    const auto binary = CompareCommands::sideOfFile(dir.filePath(QStringLiteral("bin.dat")));
    ASSERT_FALSE(binary);
    EXPECT_TRUE(binary.error().contains(QStringLiteral("non è un testo")));
    const auto missing = CompareCommands::sideOfFile(dir.filePath(QStringLiteral("nessuno")));
    ASSERT_FALSE(missing);
    EXPECT_TRUE(missing.error().startsWith(QStringLiteral("Impossibile leggere")));
    const auto text = CompareCommands::sideOfFile(dir.filePath(QStringLiteral("t.c")));
    ASSERT_TRUE(text);
    EXPECT_EQ(text->text, QStringLiteral("int x;\n"));
    EXPECT_EQ(text->language->id(), QStringLiteral("c"));
}

} // namespace

} // namespace mirtex
