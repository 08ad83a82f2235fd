#include "ui/editor/EditorView.h"

#include "core/app/Preferences.h"
#include "support/QStringPrinter.h"
#include "support/TextRangePrinter.h"
#include "ui/document/DocumentTab.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/TextPositions.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace mirtex;
using namespace Qt::StringLiterals;

namespace {

using Sci = QsciScintillaBase;

struct Edit
{
    TextRange range;
    qsizetype changeInLength;

    friend bool operator==(const Edit &, const Edit &) = default;

    friend void PrintTo(const Edit &edit, std::ostream *out)
    {
        PrintTo(edit.range, out);
        *out << (edit.changeInLength >= 0 ? "+" : "") << edit.changeInLength;
    }
};

const QString kTexts[] = {
    u"a😀b"_s,
    u"città è\n😀😀\n\nnaïve 🇮🇹 fine"_s,
    u"\n\n"_s,
    u""_s,
};

class EditorViewTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_dir.isValid());
        m_prefs = std::make_unique<Preferences>(m_dir.filePath(u"settings.conf"_s));
    }

    QTemporaryDir m_dir;
    std::unique_ptr<Preferences> m_prefs;
};

} // namespace

TEST_F(EditorViewTest, PositionsRoundTripBetweenBytesAndUtf16)
{
    EditorView view(*m_prefs);
    for (const QString &text : kTexts) {
        SCOPED_TRACE(text.toStdString());
        view.loadText(text.toUtf8());
        const TextPositions &positions = view.positions();
        EXPECT_EQ(positions.utf16Length(), text.size());
        EXPECT_EQ(positions.byteLength(), text.toUtf8().size());
        for (qsizetype offset = 0; offset <= text.size(); ++offset) {
            if (offset < text.size() && text[offset].isLowSurrogate())
                continue; // not a character boundary
            const qsizetype byte = text.left(offset).toUtf8().size();
            EXPECT_EQ(positions.toByte(offset), byte) << "offset " << offset;
            EXPECT_EQ(positions.toUtf16(byte), offset) << "byte " << byte;
            EXPECT_EQ(positions.utf16Count(0, byte), offset);
        }
        EXPECT_EQ(positions.toByte(-3), 0);
        EXPECT_EQ(positions.toByte(text.size() + 5), positions.byteLength());
    }
}

TEST_F(EditorViewTest, EditsAreReportedInUtf16)
{
    const struct
    {
        QString before;
        TextRange selection;
        QString typed;
        QString after;
        std::vector<Edit> edits;
    } cases[] = {
        {u"a😀b"_s, {3, 0}, u"é"_s, u"a😀éb"_s, {{{3, 1}, 1}}},
        {u"a😀b"_s, {1, 0}, u"😀"_s, u"a😀😀b"_s, {{{1, 2}, 2}}},
        {u"a😀b"_s, {1, 2}, QString(), u"ab"_s, {{{1, 0}, -2}}},
        {u"x\n😀😀\ny"_s, {4, 2}, u"zw"_s, u"x\n😀zw\ny"_s, {{{4, 0}, -2}, {{4, 2}, 2}}},
        {u"è\nè"_s, {0, 3}, u"1\n2\n3"_s, u"1\n2\n3"_s, {{{0, 0}, -3}, {{0, 5}, 5}}},
        {u"😀\n"_s, {3, 0}, u"é😀\n"_s, u"😀\né😀\n"_s, {{{3, 4}, 4}}},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.before.toStdString() + " -> " + c.after.toStdString());
        EditorView view(*m_prefs);
        view.loadText(c.before.toUtf8());
        std::vector<Edit> edits;
        QObject::connect(
            &view, &EditorView::textEdited, [&edits](TextRange range, qsizetype change) {
                edits.push_back({range, change});
            });
        (void)view.text(); // a cached snapshot must not survive the edit
        view.setSelection(c.selection);
        EXPECT_EQ(view.selection(), c.selection);
        view.primaryPane()->SendScintilla(Sci::SCI_REPLACESEL, c.typed.toUtf8().constData());
        EXPECT_EQ(edits, c.edits);
        EXPECT_EQ(view.text(), c.after);
        EXPECT_EQ(view.textLength(), c.after.size());
    }
}

TEST_F(EditorViewTest, SplitPanesShareTextAndUndo)
{
    DocumentTab tab(
        *m_prefs, "base", std::nullopt, TextEncoding::utf8(), LineEnding::lf, u"nuovo 1"_s);
    EditorView *view = tab.editor();
    view->setSplit(Qt::Vertical);
    ASSERT_TRUE(view->secondaryPane());
    EditorPane *panes[] = {view->primaryPane(), view->secondaryPane()};

    for (int typedIn = 0; typedIn < 2; ++typedIn) {
        SCOPED_TRACE(typedIn == 0 ? "typed in the first pane" : "typed in the second pane");
        EditorPane *typing = panes[typedIn];
        EditorPane *other = panes[1 - typedIn];
        typing->SendScintilla(Sci::SCI_DOCUMENTEND);
        typing->SendScintilla(Sci::SCI_REPLACESEL, "😀!");
        EXPECT_EQ(view->text(), u"base😀!"_s);
        EXPECT_EQ(other->text(), u"base😀!"_s);
        EXPECT_TRUE(tab.document().isDirty());

        ASSERT_TRUE(other->isUndoAvailable());
        other->undo();
        EXPECT_EQ(view->text(), u"base"_s);
        EXPECT_EQ(typing->text(), u"base"_s);
        EXPECT_FALSE(tab.document().isDirty());
    }
    EXPECT_EQ(tab.document().changeCount(), 4);

    view->setSplit(std::nullopt);
    EXPECT_FALSE(view->secondaryPane());
    view->primaryPane()->SendScintilla(Sci::SCI_REPLACESEL, "x");
    EXPECT_TRUE(tab.document().isDirty()) << "edits still reach the document after unsplitting";
}
