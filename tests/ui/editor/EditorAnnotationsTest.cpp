// What the editor draws for the annotations: the selected word's other occurrences, the matching
// bracket, and bookmarks that stay with their line's content as text is typed before them.
#include "ui/editor/EditorAnnotations.h"

#include "core/app/Preferences.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace mirtex;
using Sci = QsciScintillaBase;

namespace {

constexpr int kSmartIndicator = 8;
constexpr int kBraceIndicator = 9;

bool marked(EditorPane *pane, int indicator, long bytePosition)
{
    return pane->SendScintilla(Sci::SCI_INDICATORVALUEAT, indicator, bytePosition) != 0;
}

void wait(int ms)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < ms)
        QApplication::processEvents(QEventLoop::AllEvents, 10);
}

} // namespace

TEST(EditorAnnotations, SelectedWordBracesAndBookmarksAreDrawnInBothPanes)
{
    QTemporaryDir dir;
    Preferences prefs(dir.filePath(QStringLiteral("p.conf")));
    EditorView view(prefs);
    view.loadText("foo food (foo_bar) foo\nriga due\n");
    view.setSplit(Qt::Vertical);

    view.setSelection({0, 3}); // "foo"
    wait(400);
    EditorPane *second = view.secondaryPane();
    EXPECT_TRUE(marked(second, kSmartIndicator, 19)) << "the last, whole-word foo";
    EXPECT_FALSE(marked(second, kSmartIndicator, 4)) << "food is another word";
    EXPECT_FALSE(marked(second, kSmartIndicator, 10)) << "foo_bar is another word";
    EXPECT_FALSE(marked(second, kSmartIndicator, 0)) << "the selection itself";

    view.setSelection({10, 0}); // caret just after "("
    wait(400);
    EXPECT_TRUE(marked(second, kBraceIndicator, 9));
    EXPECT_FALSE(marked(second, kBraceIndicator, 10));
    EXPECT_TRUE(marked(second, kBraceIndicator, 17));

    // A bookmark on the second line follows its text when a line is typed above it.
    view.annotations().setBookmarkedLines({1});
    EditorPane *first = view.primaryPane();
    first->SendScintilla(Sci::SCI_GOTOPOS, 23L);
    first->SendScintilla(Sci::SCI_REPLACESEL, "nuova\n");
    wait(200);
    EXPECT_EQ(view.annotations().bookmarkedLines(), std::vector<qsizetype>{2});
    EXPECT_EQ(second->SendScintilla(Sci::SCI_MARKERGET, 2L) != 0, true);
    EXPECT_EQ(second->SendScintilla(Sci::SCI_MARKERGET, 1L), 0);
}

// Typing over a selection or an edit batch replaces text: a bookmark inside the replaced text goes
// to the edit's start, like any replacement, not behind the new text.
TEST(EditorAnnotations, BookmarkInsideReplacedTextGoesToTheEditStart)
{
    QTemporaryDir dir;
    Preferences prefs(dir.filePath(QStringLiteral("p.conf")));

    const struct
    {
        TextRange selection;
        QString typed; // a key, or several characters put in by an edit batch
        qint64 bookmark;
    } cases[] = {
        {{2, 4}, QStringLiteral("X"), 2}, // the bookmarked line's start is replaced
        {{4, 2}, QStringLiteral("Z"), 4}, // the replacement starts at the bookmark
        {{1, 2}, QStringLiteral("Q"), 3}, // before the bookmark: it shifts
        {{2, 4}, QStringLiteral("X\nY\n"), 2},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.typed.toStdString());
        EditorView view(prefs);
        view.loadText("abc\ndef\n");
        view.annotations().setBookmarkedLines({1}); // offset 4
        view.setSelection(c.selection);
        if (c.typed.size() == 1) {
            QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, c.typed);
            QApplication::sendEvent(view.primaryPane(), &press);
        } else {
            ASSERT_TRUE(view.applyBatch({{{c.selection, c.typed}}, {}, {}}));
        }
        EXPECT_EQ(view.annotations().model().bookmarkOffsets, std::vector<qint64>{c.bookmark});
    }
}
