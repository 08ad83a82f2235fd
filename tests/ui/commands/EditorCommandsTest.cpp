// The editor and the registry together: the context menu is made of registered commands, every
// command ends the typing undo step, registered keys reach the window rather than Scintilla, and
// the shortcuts window lists the keys the editor keeps.
#include "core/app/Preferences.h"
#include "support/QStringPrinter.h"
#include "ui/app/AppAssembly.h"
#include "ui/app/SecondaryWindows.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorKeys.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QTemporaryDir>
#include <QTreeWidget>

#include <gtest/gtest.h>

using namespace mirtex;
using namespace Qt::StringLiterals;

namespace {

class EditorCommandsTest : public ::testing::Test
{
protected:
    void SetUp() override { app.window().show(); }

    // Right click in the pane; the menu it shows, closed, as (label, enabled) pairs.
    QList<std::pair<QString, bool>> contextMenu(EditorPane *pane)
    {
        const QPoint at(10, 10);
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, pane->viewport()->mapToGlobal(at));
        QCoreApplication::sendEvent(pane->viewport(), &event);
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QList<std::pair<QString, bool>> entries;
        if (!menu)
            return entries;
        for (QAction *action : menu->actions()) {
            if (!action->isSeparator())
                entries.append({action->text(), action->isEnabled()});
        }
        menu->close();
        return entries;
    }

    QTemporaryDir dir;
    Preferences prefs{dir.filePath(u"settings.conf"_s)};
    ScriptedQuestions questions;
    AppAssembly app{prefs, questions};
};

void typeKeys(QWidget *pane, const QString &text)
{
    for (const QChar c : text) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_A + (c.unicode() - u'a'), {}, QString(c));
        QCoreApplication::sendEvent(pane, &press);
    }
}

} // namespace

TEST_F(EditorCommandsTest, TheContextMenuShowsRegisteredCommandsAsTheyStand)
{
    struct Case
    {
        const char *name;
        bool selected;
        bool readOnly;
        QStringList enabled;
    };

    const Case cases[] = {
        {"no selection",
         false,
         false,
         {u"Annulla"_s, u"Ripeti"_s, u"Incolla"_s, u"Seleziona tutto"_s}},
        {"a selection",
         true,
         false,
         {u"Annulla"_s,
          u"Ripeti"_s,
          u"Taglia"_s,
          u"Copia"_s,
          u"Incolla"_s,
          u"Elimina"_s,
          u"Seleziona tutto"_s}},
        {"read-only with a selection", true, true, {u"Copia"_s, u"Seleziona tutto"_s}},
    };
    const QStringList labels = {u"Annulla"_s,
                                u"Ripeti"_s,
                                u"Taglia"_s,
                                u"Copia"_s,
                                u"Incolla"_s,
                                u"Elimina"_s,
                                u"Seleziona tutto"_s};
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        DocumentTab *tab = app.window().newDocument();
        EditorPane *pane = tab->editor()->primaryPane();
        typeKeys(pane, u"uno"_s);
        if (c.selected)
            pane->selectAll();
        tab->setReadOnly(c.readOnly);
        const auto entries = contextMenu(pane);
        QStringList shown, enabled;
        for (const auto &[label, on] : entries) {
            shown.append(label);
            if (on)
                enabled.append(label);
        }
        EXPECT_EQ(shown, labels);
        EXPECT_EQ(enabled, c.enabled);
    }
}

TEST_F(EditorCommandsTest, AnEntryOfTheContextMenuRunsItsCommand)
{
    DocumentTab *tab = app.window().newDocument(u"uno due"_s);
    EditorPane *pane = tab->editor()->primaryPane();
    pane->setSelection(0, 3, 0, 7);
    QStringList heard;
    app.commands().addListener(
        [&heard](const QString &name, const QVariant &) { heard.append(name); });
    const QPoint at(10, 10);
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, pane->viewport()->mapToGlobal(at));
    QCoreApplication::sendEvent(pane->viewport(), &event);
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    ASSERT_TRUE(menu);
    const auto actions = menu->actions();
    const auto erase = std::find_if(
        actions.begin(), actions.end(), [](QAction *a) { return a->text() == u"Elimina"_s; });
    ASSERT_NE(erase, actions.end());
    (*erase)->trigger();
    menu->close();
    EXPECT_EQ(tab->editor()->text(), u"uno"_s);
    EXPECT_EQ(heard, QStringList{u"delete:"_s});
}

TEST_F(EditorCommandsTest, ARunningCommandEndsTheTypingStep)
{
    DocumentTab *tab = app.window().newDocument();
    EditorPane *pane = tab->editor()->primaryPane();
    typeKeys(pane, u"uno"_s);
    ASSERT_TRUE(app.commands().dispatch(u"zoomIn:"_s)); // leaves the caret where it is
    typeKeys(pane, u"due"_s);
    ASSERT_TRUE(app.commands().dispatch(u"undo:"_s));
    EXPECT_EQ(tab->editor()->text(), u"uno"_s);
    ASSERT_TRUE(app.commands().dispatch(u"undo:"_s));
    EXPECT_EQ(tab->editor()->text(), u""_s);
}

TEST_F(EditorCommandsTest, RegisteredKeysReachTheWindowAndTheEditorKeepsOthers)
{
    DocumentTab *tab = app.window().newDocument(u"uno"_s);
    EditorPane *pane = tab->editor()->primaryPane();
    QList<QKeySequence> kept;
    for (const EditorKeys::Binding &binding : EditorKeys::bindings())
        kept.append(binding.keys);
    for (const Command *command : app.commands().commands()) {
        for (const QKeySequence &shortcut : command->shortcuts) {
            SCOPED_TRACE(shortcut.toString().toStdString());
            const QKeyCombination combination = shortcut[0];
            QKeyEvent override(
                QEvent::ShortcutOverride, combination.key(), combination.keyboardModifiers());
            override.ignore();
            QCoreApplication::sendEvent(pane, &override);
            EXPECT_FALSE(override.isAccepted()) << "the pane would take the command's key";
            EXPECT_FALSE(kept.contains(shortcut)) << "an editor key and a command share a key";
        }
    }
}

TEST_F(EditorCommandsTest, TheShortcutsWindowListsTheEditorsOwnKeys)
{
    ASSERT_TRUE(app.commands().dispatch(u"showShortcuts:"_s));
    QWidget *window = app.secondaryWindows().find(u"shortcuts"_s);
    ASSERT_TRUE(window);
    auto *list = window->findChild<QTreeWidget *>();
    ASSERT_TRUE(list);
    QMap<QString, QString> rows;
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        rows.insert(list->topLevelItem(i)->text(0), list->topLevelItem(i)->text(1));
    ASSERT_FALSE(EditorKeys::bindings().isEmpty());
    for (const EditorKeys::Binding &binding : EditorKeys::bindings()) {
        const QString row = u"Editor › "_s + binding.label;
        ASSERT_TRUE(rows.contains(row)) << row.toStdString();
        for (const QKeySequence &key : binding.keys)
            EXPECT_TRUE(rows.value(row).contains(key.toString(QKeySequence::NativeText)))
                << row.toStdString();
    }
    EXPECT_TRUE(rows.value(u"Editor › Cancella il carattere precedente"_s)
                    .contains(QKeySequence(Qt::Key_Backspace).toString(QKeySequence::NativeText)));
    EXPECT_TRUE(rows.value(u"Editor › Fine della riga"_s)
                    .contains(QKeySequence(Qt::Key_End).toString(QKeySequence::NativeText)));
    window->close();
}
