// Line, comment and caret commands in the real editor through the registry: one undo step named
// by the label that also restores the carets, no step when nothing changes, beeps where a command
// refuses; rectangular selection, typing, copying and pasting at several carets; the palette.
#include "core/app/Preferences.h"
#include "core/languages/Language.h"
#include "support/CaretMarkup.h"
#include "support/QStringPrinter.h"
#include "ui/app/AppAssembly.h"
#include "ui/app/CommandPalette.h"
#include "ui/commands/Beep.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace mirtex;
using namespace Qt::StringLiterals;
using test::parseMarkup;
using test::toMarkup;

namespace {

class LineCommandsUiTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        setBeepSilenced(true);
        app.window().show();
    }

    // A new tab in `languageId` holding the marked text and selections.
    EditorView *open(const QString &markup, const QString &languageId = u"c"_s)
    {
        const test::MarkedText marked = parseMarkup(markup);
        DocumentTab *tab = app.window().newDocument(marked.text);
        tab->setLanguage(Language::byId(languageId));
        tab->editor()->setSelections(marked.selections);
        return tab->editor();
    }

    static QString shown(EditorView *editor)
    {
        return toMarkup(editor->text(), editor->selections());
    }

    void key(EditorView *editor, int key, Qt::KeyboardModifiers modifiers, const QString &text = {})
    {
        QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
        QCoreApplication::sendEvent(editor->activePane(), &press);
    }

    QTemporaryDir dir;
    Preferences prefs{dir.filePath(u"settings.conf"_s)};
    ScriptedQuestions questions;
    AppAssembly app{prefs, questions};
};

const QString kFour = u"|let a = 1\nlet b = 2\n|let c = 3\nlet d = 4"_s;

} // namespace

// Each command at two carets is one named undo step; undo brings back text and both carets.
TEST_F(LineCommandsUiTest, OneUndoStepNamedByTheLabelRestoresTextAndCarets)
{
    const struct
    {
        const char *command;
        QString label;
        QString after;
    } cases[] = {
        {"toggleLineComment:",
         u"Commenta/decommenta le righe"_s,
         u"// |let a = 1\nlet b = 2\n// |let c = 3\nlet d = 4"_s},
        {"duplicateLine:",
         u"Duplica riga o selezione"_s,
         u"let a = 1\n|let a = 1\nlet b = 2\nlet c = 3\n|let c = 3\nlet d = 4"_s},
        {"deleteLine:", u"Elimina riga"_s, u"|let b = 2\n|let d = 4"_s},
        {"moveLineDown:",
         u"Sposta la riga in giù"_s,
         u"let b = 2\n|let a = 1\nlet d = 4\n|let c = 3"_s},
        {"insertBlankLineBelow:",
         u"Riga vuota sotto"_s,
         u"let a = 1\n|\nlet b = 2\nlet c = 3\n|\nlet d = 4"_s},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.command);
        EditorView *editor = open(kFour);
        ASSERT_TRUE(app.commands().dispatch(QString::fromLatin1(c.command)));
        EXPECT_EQ(shown(editor), c.after);
        EXPECT_EQ(editor->undoLabel(), c.label);
        ASSERT_TRUE(app.commands().dispatch(u"undo:"_s));
        QCoreApplication::processEvents();
        EXPECT_EQ(shown(editor), kFour);
        ASSERT_TRUE(app.commands().dispatch(u"redo:"_s));
        QCoreApplication::processEvents();
        EXPECT_EQ(shown(editor), c.after);
    }
}

TEST_F(LineCommandsUiTest, RefusalsAndNoOpsLeaveNoUndoStep)
{
    const struct
    {
        const char *name;
        QString language;
        bool readOnly;
        const char *command;
        bool beeps;
    } cases[] = {
        {"first line up", u"c"_s, false, "moveLineUp:", false},
        {"read-only", u"c"_s, true, "toggleLineComment:", true},
        {"read-only duplicate", u"c"_s, true, "duplicateLine:", true},
        {"no comment tokens", u"text"_s, false, "toggleLineComment:", true},
        {"no block tokens", u"text"_s, false, "toggleBlockComment:", true},
        {"no bookmarks", u"c"_s, false, "nextBookmark:", true},
        {"no bookmarked lines", u"c"_s, false, "deleteBookmarkedLines:", true},
        {"no brace", u"c"_s, false, "goToMatchingBrace:", true},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        EditorView *editor = open(kFour, c.language);
        app.window().currentDocument()->setReadOnly(c.readOnly);
        const int beeps = beepCount();
        app.commands().dispatch(QString::fromLatin1(c.command));
        EXPECT_EQ(shown(editor), kFour);
        EXPECT_EQ(editor->undoLabel(), QString());
        EXPECT_FALSE(editor->primaryPane()->isUndoAvailable());
        EXPECT_EQ(beepCount() - beeps, c.beeps ? 1 : 0);
    }
}

TEST_F(LineCommandsUiTest, BlockCommentsWhenTheLanguageHasNoLineToken)
{
    EditorView *editor = open(u"<p>|</p>"_s, u"html"_s);
    ASSERT_TRUE(app.commands().dispatch(u"toggleLineComment:"_s));
    EXPECT_EQ(shown(editor), u"[<!-- <p></p> -->|]"_s);
}

TEST_F(LineCommandsUiTest, BookmarksGoRoundAndTheirLinesGo)
{
    EditorView *editor = open(u"a\n|b\nc\nd"_s);
    ASSERT_TRUE(app.commands().dispatch(u"toggleBookmark:"_s));
    editor->setSelections(Selection::caretAt(6));
    ASSERT_TRUE(app.commands().dispatch(u"toggleBookmark:"_s));
    ASSERT_TRUE(app.commands().dispatch(u"nextBookmark:"_s));
    EXPECT_EQ(shown(editor), u"a\n|b\nc\nd"_s); // wrapped round from the last one
    ASSERT_TRUE(app.commands().dispatch(u"previousBookmark:"_s));
    EXPECT_EQ(shown(editor), u"a\nb\nc\n|d"_s);
    ASSERT_TRUE(app.commands().dispatch(u"cutBookmarkedLines:"_s));
    EXPECT_EQ(QApplication::clipboard()->text(), u"b\nd\n"_s);
    EXPECT_EQ(editor->text(), u"a\nc"_s);
    EXPECT_EQ(editor->undoLabel(), u"Taglia le righe con segnalibro"_s);
}

TEST_F(LineCommandsUiTest, GoToLineClampsOrIgnoresTheAnswer)
{
    const struct
    {
        QString answer;
        QString after;
    } cases[] = {
        {u" 3 "_s, u"a\nb\n|c"_s},
        {u"0"_s, u"|a\nb\nc"_s},
        {u"-2"_s, u"|a\nb\nc"_s},
        {u"40"_s, u"a\nb\n|c"_s},
        {u"tre"_s, u"a\n|b\nc"_s},
    };

    for (const auto &c : cases) {
        EditorView *editor = open(u"a\n|b\nc"_s);
        questions.clearAsked();
        questions.pushAnswer(c.answer);
        ASSERT_TRUE(app.commands().dispatch(u"goToLine:"_s));
        EXPECT_EQ(shown(editor), c.after) << c.answer.toStdString();
        ASSERT_EQ(questions.asked().size(), 1u);
        EXPECT_EQ(questions.asked().front().message, u"Vai alla riga"_s);
        EXPECT_EQ(questions.asked().front().informative, u"Riga da 1 a 3 (ora sei alla 2)"_s);
    }
}

// Alt+Shift+Down makes a rectangle; typing then goes into every line of it, and Escape leaves
// one caret.
TEST_F(LineCommandsUiTest, RectangularSelectionTypesIntoEveryLine)
{
    EditorView *editor = open(u"a|bc\ndef\nghi"_s);
    key(editor, Qt::Key_Down, Qt::AltModifier | Qt::ShiftModifier);
    key(editor, Qt::Key_Down, Qt::AltModifier | Qt::ShiftModifier);
    EXPECT_EQ(editor->selections().size(), 3u);
    key(editor, Qt::Key_X, {}, u"x"_s);
    EXPECT_EQ(editor->text(), u"axbc\ndxef\ngxhi"_s);
    key(editor, Qt::Key_Backspace, {});
    EXPECT_EQ(editor->text(), u"abc\ndef\nghi"_s);
    key(editor, Qt::Key_Escape, {});
    EXPECT_EQ(shown(editor), u"abc\ndef\ng|hi"_s);
    editor->setSelections(parseMarkup(u"[a|]bc\n|def\nghi"_s).selections);
    key(editor, Qt::Key_Escape, {});
    EXPECT_EQ(shown(editor), u"a|bc\ndef\nghi"_s);
}

// Past a few dozen carets typing and deleting take one edit for all of them; the result is the
// same as Scintilla's own, and undo restores the text and every caret.
TEST_F(LineCommandsUiTest, TypingAtManyCarets)
{
    QString markup;
    for (int i = 0; i < 100; ++i)
        markup += u"a|b\n"_s;
    EditorView *editor = open(markup);
    key(editor, Qt::Key_X, {}, u"x"_s);
    EXPECT_EQ(editor->text(), u"axb\n"_s.repeated(100));
    EXPECT_EQ(editor->selections().size(), 100u);
    key(editor, Qt::Key_Delete, {});
    key(editor, Qt::Key_Backspace, {});
    EXPECT_EQ(shown(editor), u"a|\n"_s.repeated(100));
    ASSERT_TRUE(app.commands().dispatch(u"undo:"_s));
    ASSERT_TRUE(app.commands().dispatch(u"undo:"_s));
    ASSERT_TRUE(app.commands().dispatch(u"undo:"_s));
    QCoreApplication::processEvents();
    EXPECT_EQ(shown(editor), markup);
}

TEST_F(LineCommandsUiTest, ClipboardAtSeveralCarets)
{
    EditorView *editor = open(u"[one|] x [two|]"_s);
    ASSERT_TRUE(app.commands().dispatch(u"copy:"_s));
    EXPECT_EQ(QApplication::clipboard()->text(), u"one\ntwo"_s);

    editor = open(u"|a\n|b"_s);
    QApplication::clipboard()->setText(u"1\n2\n"_s);
    ASSERT_TRUE(app.commands().dispatch(u"paste:"_s));
    EXPECT_EQ(shown(editor), u"1|a\n2|b"_s);
    ASSERT_TRUE(app.commands().dispatch(u"undo:"_s));
    EXPECT_EQ(editor->text(), u"a\nb"_s);

    // Another number of lines goes whole to every caret.
    QApplication::clipboard()->setText(u"z"_s);
    editor->setSelections(parseMarkup(u"|a\n|b"_s).selections);
    ASSERT_TRUE(app.commands().dispatch(u"paste:"_s));
    EXPECT_EQ(editor->text(), u"za\nzb"_s);
}

TEST_F(LineCommandsUiTest, NextOccurrenceAndCaretsAboveAndBelow)
{
    EditorView *editor = open(u"fo|o foo\nfoo"_s);
    ASSERT_TRUE(app.commands().dispatch(u"selectNextOccurrence:"_s));
    ASSERT_TRUE(app.commands().dispatch(u"selectNextOccurrence:"_s));
    EXPECT_EQ(shown(editor), u"[foo|] [foo^]\nfoo"_s);
    ASSERT_TRUE(app.commands().dispatch(u"selectAllOccurrences:"_s));
    EXPECT_EQ(editor->selections().size(), 3u);

    editor = open(u"ab|c\nde\nfgh"_s);
    ASSERT_TRUE(app.commands().dispatch(u"addCaretBelow:"_s));
    ASSERT_TRUE(app.commands().dispatch(u"addCaretBelow:"_s));
    key(editor, Qt::Key_Z, {}, u"z"_s);
    EXPECT_EQ(editor->text(), u"abzc\ndez\nfgzh"_s);
}

TEST_F(LineCommandsUiTest, ThePaletteListsFiltersAndRunsCommands)
{
    EditorView *editor = open(kFour);
    ASSERT_TRUE(app.commands().dispatch(u"showCommandPalette:"_s));
    auto *palette = app.window().findChild<CommandPalette *>();
    ASSERT_TRUE(palette);
    const QList<CommandPalette::Entry> entries = palette->entries();
    const auto duplicate
        = std::ranges::find(entries, u"duplicateLine:"_s, &CommandPalette::Entry::name);
    ASSERT_NE(duplicate, entries.end());
    EXPECT_EQ(duplicate->path, u"Modifica › Righe › Duplica riga o selezione"_s);
    EXPECT_EQ(duplicate->keys, QKeySequence(u"Ctrl+Shift+D"_s).toString(QKeySequence::NativeText));
    EXPECT_TRUE(std::ranges::any_of(entries, [](const CommandPalette::Entry &e) {
        return e.name == u"setLanguage:"_s;
    })) << "commands with an argument are listed by their menu entries";

    palette->filterField()->setText(u"duplica riga"_s);
    ASSERT_GT(palette->list()->count(), 0);
    EXPECT_TRUE(palette->list()->item(0)->text().startsWith(duplicate->path));
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, {});
    QCoreApplication::sendEvent(palette->filterField(), &enter);
    EXPECT_EQ(editor->text().count(u"let a = 1"_s), 2);
    EXPECT_FALSE(palette->isVisible());
}
