// Macros in the real editor: keys and menu actions recorded by name, playback through the same
// input path (every caret) as one undo step named "Macro", the repetitions, refusals
// that leave the text as it was, and saved macros across a restart.
#include "ui/app/MacroCommands.h"

#include "core/app/Preferences.h"
#include "support/CaretMarkup.h"
#include "support/QStringPrinter.h"
#include "support/TestFiles.h"
#include "ui/app/AppAssembly.h"
#include "ui/commands/Beep.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MacroPlayer.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QAction>
#include <QDir>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

using namespace mirtex;
using namespace Qt::StringLiterals;
using test::parseMarkup;
using test::toMarkup;

namespace {

class MacroCommandsTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        setBeepSilenced(true);
        app->window().show();
    }

    EditorView *open(const QString &markup)
    {
        const test::MarkedText marked = parseMarkup(markup);
        DocumentTab *tab = app->window().newDocument(marked.text);
        tab->editor()->setSelections(marked.selections);
        return tab->editor();
    }

    static QString shown(EditorView *editor)
    {
        return toMarkup(editor->text(), editor->selections());
    }

    static void
    key(EditorView *editor, int key, Qt::KeyboardModifiers modifiers = {}, const QString &text = {})
    {
        QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
        QCoreApplication::sendEvent(editor->activePane(), &press);
    }

    static void type(EditorView *editor, const QString &text)
    {
        for (const QChar c : text)
            key(editor, 0, {}, QString(c));
    }

    bool run(const char *name, const QVariant &argument = {})
    {
        return app->commands().dispatch(QString::fromLatin1(name), argument);
    }

    MacroCommands &macros() { return app->macros(); }

    void restart()
    {
        app.reset();
        app = std::make_unique<AppAssembly>(prefs, questions);
        app->window().show();
    }

    QTemporaryDir dir;
    // Saved macros go to this test's own data folder.
    bool dataHome = qputenv("XDG_DATA_HOME", dir.path().toUtf8());
    Preferences prefs{dir.filePath(u"settings.conf"_s)};
    ScriptedQuestions questions;
    std::unique_ptr<AppAssembly> app = std::make_unique<AppAssembly>(prefs, questions);
};

} // namespace

TEST_F(MacroCommandsTest, TypingAndANewLineReplayAsOneUndoStep)
{
    EditorView *recorded = open(u"|"_s);
    auto *indicator = app->window().findChild<QLabel *>(u"mirtex.macroIndicator"_s);
    ASSERT_TRUE(indicator);
    ASSERT_TRUE(run("toggleMacroRecording:"));
    EXPECT_TRUE(indicator->isVisibleTo(&app->window()));
    type(recorded, u"ab"_s);
    key(recorded, Qt::Key_Return);
    type(recorded, u"c"_s);
    ASSERT_TRUE(run("toggleMacroRecording:"));
    EXPECT_FALSE(indicator->isVisibleTo(&app->window()));
    const Macro expected{MacroStep::insert(u"ab"_s),
                         MacroStep::command(u"insertNewline:"_s),
                         MacroStep::insert(u"c"_s)};
    EXPECT_EQ(macros().recorder().macro(), expected);

    // Stopping an empty recording keeps it.
    ASSERT_TRUE(run("startMacroRecording:"));
    ASSERT_TRUE(run("stopMacroRecording:"));
    EXPECT_EQ(macros().recorder().macro(), expected);

    EditorView *played = open(u"|"_s);
    ASSERT_TRUE(run("playMacro:"));
    EXPECT_EQ(shown(played), u"ab\nc|"_s);
    EXPECT_EQ(played->undoLabel(), u"Macro"_s);
    ASSERT_TRUE(run("undo:"));
    EXPECT_EQ(shown(played), u"|"_s);
    EXPECT_TRUE(macros().recorder().recording().isEmpty()); // playing recorded nothing
}

TEST_F(MacroCommandsTest, KeysAreRecordedByTheirCommandsNames)
{
    const struct
    {
        int key;
        Qt::KeyboardModifiers modifiers;
        const char *name;
    } cases[] = {
        {Qt::Key_Backspace, {}, "deleteBackward:"},
        {Qt::Key_Delete, {}, "deleteForward:"},
        {Qt::Key_Down, {}, "moveDown:"},
        {Qt::Key_Home, {}, "moveToBeginningOfLine:"},
        {Qt::Key_End, {}, "moveToEndOfLine:"},
        {Qt::Key_Right, Qt::ControlModifier, "moveWordRight:"},
        {Qt::Key_Down, Qt::ShiftModifier, "moveDownAndModifySelection:"},
        {Qt::Key_End, Qt::ShiftModifier, "moveToEndOfLineAndModifySelection:"},
        {Qt::Key_Tab, {}, "insertTab:"},
    };

    EditorView *editor = open(u"one two\nthree fo|ur\nfive"_s);
    ASSERT_TRUE(run("startMacroRecording:"));
    Macro expected;
    for (const auto &c : cases) {
        key(editor, c.key, c.modifiers);
        expected.append(MacroStep::command(QString::fromLatin1(c.name)));
    }
    ASSERT_TRUE(run("stopMacroRecording:"));
    EXPECT_EQ(macros().recorder().macro(), expected);
}

TEST_F(MacroCommandsTest, CommentingEveryLineToTheEndStops)
{
    const struct
    {
        QString before;
        QString after;
    } cases[] = {
        {u"a\n|bb\ncc\ndddd"_s, u"a\n// bb\n// cc\n// dddd|"_s},
        // Down from past the end of a shorter last line reaches the end of the text first.
        {u"|abc\nd"_s, u"// abc\nd|"_s},
        {u"|a\nb\n"_s, u"// a\n// b\n|"_s},
        {u"|x"_s, u"// x|"_s},
    };

    macros().recorder().setMacro({MacroStep::command(u"moveToBeginningOfLine:"_s),
                                  MacroStep::insert(u"// "_s),
                                  MacroStep::command(u"moveDown:"_s)});
    macros().askCount = [] { return 0; };
    for (const auto &c : cases) {
        EditorView *editor = open(c.before);
        ASSERT_TRUE(run("runMacroMultipleTimes:"));
        EXPECT_EQ(shown(editor), c.after) << c.before.toStdString();
        ASSERT_TRUE(run("undo:"));
        EXPECT_EQ(editor->text(), parseMarkup(c.before).text);
    }
}

TEST_F(MacroCommandsTest, RepetitionsCountAndStopWithoutProgress)
{
    MacroPlayer player(macros().recorder(), app->commands(), app->context());
    EditorView *editor = open(u"|abc"_s);
    const Macro typeAndTakeBack{MacroStep::insert(u"x"_s),
                                MacroStep::command(u"deleteBackward:"_s)};
    EXPECT_EQ(player.play(typeAndTakeBack, 0).runs, 1);
    EXPECT_EQ(shown(editor), u"|abc"_s);
    EXPECT_EQ(player.play({MacroStep::insert(u"-"_s)}, 3).runs, 3);
    EXPECT_EQ(shown(editor), u"---|abc"_s);
}

TEST_F(MacroCommandsTest, ALineOperationReplaysWithItsIdentifier)
{
    open(u"|b\na\nc"_s);
    ASSERT_TRUE(run("startMacroRecording:"));
    ASSERT_TRUE(run("selectAll:"));
    // As the menu entry sends it: the operation's identifier is the argument.
    ASSERT_TRUE(run("applyLineOperation:", u"sortDescending"_s));
    ASSERT_TRUE(run("stopMacroRecording:"));
    EXPECT_EQ(macros().recorder().macro(),
              (Macro{MacroStep::action(u"selectAll:"_s),
                     MacroStep::action(u"applyLineOperation:"_s, u"sortDescending"_s)}));
    EditorView *played = open(u"x\n|z\ny"_s);
    ASSERT_TRUE(run("playMacro:"));
    EXPECT_EQ(played->text(), u"z\ny\nx"_s);
    EXPECT_EQ(played->undoLabel(), u"Macro"_s);
}

TEST_F(MacroCommandsTest, PlaysAtEveryCaret)
{
    macros().recorder().setMacro({MacroStep::insert(u"// "_s),
                                  MacroStep::command(u"deleteForward:"_s),
                                  MacroStep::command(u"moveRight:"_s),
                                  MacroStep::insert(u"!"_s)});
    EditorView *editor = open(u"  |abc\n  |cde"_s);
    ASSERT_TRUE(run("playMacro:"));
    EXPECT_EQ(shown(editor), u"  // b!|c\n  // d!|e"_s);
    ASSERT_TRUE(run("undo:"));
    EXPECT_EQ(shown(editor), u"  |abc\n  |cde"_s);
}

TEST_F(MacroCommandsTest, WhatCannotPlayLeavesTheTextAsItWas)
{
    EditorView *editor = open(u"ab|c"_s);
    const auto before = editor->text();

    struct Case
    {
        const char *what;
        Macro steps;
        bool readOnly;
        QString told;
    };

    const Case cases[] = {
        {"no macro", {}, false, u"nessuna macro"_s},
        {"read-only", {MacroStep::insert(u"x"_s)}, true, u"sola lettura"_s},
        {"cut without a selection",
         {MacroStep::insert(u"x"_s), MacroStep::action(u"cut:"_s)},
         false,
         u"«cut:»"_s},
        {"unknown command", {MacroStep::command(u"fly:"_s)}, false, u"«fly:»"_s},
    };
    for (const Case &c : cases) {
        app->window().currentDocument()->setReadOnly(c.readOnly);
        macros().recorder().setMacro(c.steps);
        run("playMacro:");
        QCoreApplication::processEvents(); // as the window would before the next command
        EXPECT_EQ(editor->text(), before) << c.what;
        EXPECT_TRUE(macros().lastMessage().contains(c.told, Qt::CaseInsensitive))
            << c.what << ": " << macros().lastMessage().toStdString();
    }
    // A macro that deletes everything is one step too.
    app->window().currentDocument()->setReadOnly(false);
    macros().recorder().setMacro(
        {MacroStep::action(u"selectAll:"_s), MacroStep::command(u"deleteBackward:"_s)});
    ASSERT_TRUE(run("playMacro:"));
    EXPECT_EQ(editor->text(), u""_s);
    ASSERT_TRUE(run("undo:"));
    EXPECT_EQ(editor->text(), before);
}

TEST_F(MacroCommandsTest, SavedMacrosSurviveARestartAndPlayFromTheMenu)
{
    macros().recorder().setMacro({MacroStep::insert(u"// "_s)});
    QStringList asked;
    QStringList answers{u"  "_s, u"Commenta"_s};
    macros().askName = [&](const QString &problem) -> std::optional<QString> {
        asked.append(problem);
        return answers.takeFirst();
    };
    ASSERT_TRUE(run("saveMacro:"));
    ASSERT_EQ(asked.size(), 2);
    EXPECT_TRUE(asked[0].isEmpty());
    EXPECT_FALSE(asked[1].isEmpty()); // the empty name was refused, with a reason
    EXPECT_EQ(macros().setSavedShortcut(u"Commenta"_s, QKeySequence(u"Ctrl+Shift+E"_s)).isEmpty(),
              false); // the key of "Esegui la macro"
    EXPECT_EQ(macros().setSavedShortcut(u"Commenta"_s, QKeySequence(u"Ctrl+Alt+7"_s)), QString());

    restart();
    ASSERT_EQ(macros().library().macros().size(), 1);
    EXPECT_TRUE(macros().recorder().macro().isEmpty());
    QAction *entry = app->window().menuBar()->findChild<QAction *>(u"playSavedMacro:Commenta"_s);
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->shortcut(), QKeySequence(u"Ctrl+Alt+7"_s));
    EditorView *editor = open(u"|x"_s);
    entry->trigger();
    EXPECT_EQ(shown(editor), u"// |x"_s);

    macros().askName = [](const QString &) { return std::optional<QString>(u"Commenta riga"_s); };
    EXPECT_EQ(macros().renameSaved(u"commenta"_s), QString());
    EXPECT_TRUE(app->window().menuBar()->findChild<QAction *>(u"playSavedMacro:Commenta riga"_s));
    EXPECT_EQ(macros().removeSaved(u"Commenta riga"_s), QString());
    restart();
    EXPECT_TRUE(macros().library().macros().isEmpty());
}

TEST_F(MacroCommandsTest, AnUnreadableFileIsToldAndKept)
{
    const QString path = dir.filePath(u"Mirtex/macros.json"_s);
    QDir().mkpath(dir.filePath(u"Mirtex"_s));
    writeFile(path, R"({"version": 9, "macros": []})");
    restart();
    EXPECT_TRUE(macros().lastMessage().contains(path));
    macros().recorder().setMacro({MacroStep::insert(u"x"_s)});
    macros().askName = [](const QString &) { return std::optional<QString>(u"Nuova"_s); };
    run("saveMacro:");
    EXPECT_TRUE(macros().lastMessage().contains(u"non verrà sovrascritto"_s));
    EXPECT_EQ(readFile(path), QByteArray(R"({"version": 9, "macros": []})"));
}
