// Edit batches applied to a real editor: one undo step that gives back the text and every
// selection, redo that brings back the state after, the highlighter's batch around the edits.
#include "ui/editor/EditBatchApplier.h"

#include "core/app/Preferences.h"
#include "core/languages/SyntaxHighlighter.h"
#include "support/CaretMarkup.h"
#include "support/QStringPrinter.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"
#include "ui/editor/TextPositions.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace mirtex;
using test::MarkedText;
using test::parseMarkup;
using Sci = QsciScintillaBase;

namespace {

MarkedText state(const EditorView &view)
{
    return {view.text(), view.selections()};
}

void show(EditorView &view, const QString &markup)
{
    const MarkedText marked = parseMarkup(markup);
    view.loadText(marked.text.toUtf8());
    view.setSelections(marked.selections);
}

bool canUndo(const EditorView &view)
{
    return view.primaryPane()->SendScintilla(Sci::SCI_CANUNDO) != 0;
}

class EditBatchApplierTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_dir.isValid());
        m_prefs = std::make_unique<Preferences>(m_dir.filePath(QStringLiteral("p.conf")));
    }

    QTemporaryDir m_dir;
    std::unique_ptr<Preferences> m_prefs;
};

} // namespace

TEST_F(EditBatchApplierTest, OneUndoStepRestoresTextAndEverySelection)
{
    const struct
    {
        QString before;
        std::vector<TextReplacement> replacements;
        QString after; // the batch's selections afterwards are the ones written here
    } cases[] = {
        {u"let [a|] = 1"_qs, {{{4, 1}, u"b"_qs}}, u"let [b|] = 1"_qs},
        {u"città |è\n😀"_qs, {{{6, 1}, u"e"_qs}, {{8, 2}, u"🇮🇹"_qs}}, u"città e|\n🇮🇹"_qs},
        {u"|a |b [|c]"_qs,
         {{{0, 0}, u"("_qs}, {{2, 0}, u"("_qs}, {{4, 1}, u"cc"_qs}},
         u"(|a (^b [cc|]"_qs},
        {u"[uno\ndue|]"_qs, {{{0, 7}, {}}}, u"|"_qs},
        {u"x|"_qs, {{{1, 0}, u"\n"_qs}, {{1, 0}, u"y"_qs}}, u"x\ny|"_qs},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.before.toStdString() + " -> " + c.after.toStdString());
        EditorView view(*m_prefs);
        show(view, c.before);
        const MarkedText before = state(view);
        ASSERT_EQ(before, parseMarkup(c.before));
        const MarkedText after = parseMarkup(c.after);

        std::vector<bool> inHighlighterBatch;
        QObject::connect(&view, &EditorView::textEdited, [&]() {
            inHighlighterBatch.push_back(view.highlighter().isInBatch());
        });
        ASSERT_TRUE(view.applyBatch({c.replacements, after.selections, u"Prova"_qs}));
        EXPECT_EQ(state(view), after);
        EXPECT_FALSE(inHighlighterBatch.empty());
        EXPECT_EQ(std::ranges::count(inHighlighterBatch, false), 0)
            << "every edit is reported inside the highlighter's batch";
        EXPECT_FALSE(view.highlighter().isInBatch());

        view.primaryPane()->undo();
        EXPECT_EQ(state(view), before);
        EXPECT_FALSE(canUndo(view)) << "the batch was one undo step";
        view.primaryPane()->redo();
        EXPECT_EQ(state(view), after);
        view.primaryPane()->undo();
        EXPECT_EQ(state(view), before);
    }
}

TEST_F(EditBatchApplierTest, EmptyOrMalformedBatchesChangeNothing)
{
    EditorView view(*m_prefs);
    show(view, u"ab|c"_qs);
    EXPECT_FALSE(view.applyBatch({{}, parseMarkup(u"|abc"_qs).selections, u"Niente"_qs}));
    EXPECT_FALSE(view.applyBatch({{{{2, 1}, u"x"_qs}, {{0, 1}, u"y"_qs}}, {}, {}}));
    EXPECT_FALSE(view.applyBatch({{{{2, 5}, u"x"_qs}}, {}, {}}));
    EXPECT_EQ(state(view), parseMarkup(u"ab|c"_qs));
    EXPECT_FALSE(canUndo(view));
    EXPECT_TRUE(view.undoLabel().isEmpty());
}

TEST_F(EditBatchApplierTest, UndoAndRedoLabelsFollowTheHistory)
{
    EditorView view(*m_prefs);
    show(view, u"abc|"_qs);
    ASSERT_TRUE(view.applyBatch(
        {{{{0, 3}, u"ABC"_qs}}, parseMarkup(u"ABC|"_qs).selections, u"Maiuscole"_qs}));
    EXPECT_EQ(view.undoLabel(), u"Maiuscole"_qs);
    EXPECT_EQ(view.redoLabel(), QString());
    view.primaryPane()->undo();
    EXPECT_EQ(view.undoLabel(), QString());
    EXPECT_EQ(view.redoLabel(), u"Maiuscole"_qs);
    view.primaryPane()->redo();
    EXPECT_EQ(view.undoLabel(), u"Maiuscole"_qs);
    view.primaryPane()->SendScintilla(Sci::SCI_REPLACESEL, "x"); // typing
    EXPECT_EQ(view.undoLabel(), QString());
    view.primaryPane()->undo();
    view.primaryPane()->undo();
    EXPECT_EQ(view.text(), u"abc"_qs);
    EXPECT_EQ(view.redoLabel(), u"Maiuscole"_qs);
}

// Many replacements go to Scintilla as one replacement of the span they cover; the text must be
// the same as replacement by replacement, and one undo must give everything back. Large texts
// announce their edits before the batch returns.
TEST_F(EditBatchApplierTest, LargeBatchesAndLargeTextsMatchThePureResult)
{
    const struct
    {
        qsizetype lines;
        std::size_t replacements;
    } cases[] = {{2000, 500}, {2000, 1500}, {400'000, 500}, {400'000, 1500}};

    for (const auto &[lines, count] : cases) {
        SCOPED_TRACE(std::to_string(lines) + " lines, " + std::to_string(count) + " replacements");
        QString text;
        for (qsizetype i = 0; i < lines; ++i)
            text += i % 3 == 0 ? u"però 😀\n"_qs : u"riga\n"_qs;
        EditorView view(*m_prefs);
        view.loadText(text.toUtf8());
        ASSERT_EQ(view.positions().byteLength() > EditorView::kDeferredEditsAboveBytes,
                  lines > 2000);
        const MarkedText before = state(view);
        EditBatch batch;
        for (qsizetype at = 0; at < text.size() && batch.replacements.size() < count; at += 7) {
            if (!text[at].isSurrogate())
                batch.replacements.push_back({{at, 1}, at % 2 ? QString() : u"«»"_qs});
        }
        batch.selectionsAfter = Selection::caretAt(5);
        qsizetype reported = 0;
        QObject::connect(
            &view, &EditorView::textEdited, [&](TextRange, qsizetype delta) { reported += delta; });
        ASSERT_TRUE(view.applyBatch(batch));
        const QString expected = applyEditBatch(text, batch);
        EXPECT_EQ(reported, expected.size() - text.size());
        EXPECT_TRUE(view.utf8Equals(expected.toUtf8()));
        EXPECT_TRUE(view.text() == expected);
        view.primaryPane()->undo();
        EXPECT_EQ(state(view), before);
    }
}

TEST_F(EditBatchApplierTest, AutoCloseTypesThroughTheApplier)
{
    m_prefs->setAutoClose(true);

    const struct
    {
        QString before;
        QString typed;
        QString after;
    } cases[] = {
        {u"f|"_qs, u"("_qs, u"f(|)"_qs},
        {u"a [bc|] d"_qs, u"\""_qs, u"a \"[bc|]\" d"_qs},
        {u"f(|)"_qs, u")"_qs, u"f()|"_qs},
        {u"it|"_qs, u"'"_qs, u"it'|"_qs},
        {u"😀|"_qs, u"["_qs, u"😀\\[|\\]"_qs},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.before.toStdString() + " + " + c.typed.toStdString());
        EditorView view(*m_prefs);
        view.applyPreferences();
        show(view, c.before);
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, c.typed);
        QCoreApplication::sendEvent(view.primaryPane(), &press);
        EXPECT_EQ(state(view), parseMarkup(c.after));
        if (canUndo(view)) {
            view.primaryPane()->undo();
            EXPECT_EQ(state(view), parseMarkup(c.before));
        }
    }
}
