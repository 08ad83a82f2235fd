// The keys QScintilla binds by default, sent to a pane: those that change the text or the
// clipboard are only those the editor lists as its own.
#include "ui/editor/EditorKeys.h"

#include "core/app/Preferences.h"
#include "support/QStringPrinter.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QTemporaryDir>
#include <Qsci/qscicommand.h>
#include <Qsci/qscicommandset.h>

#include <gtest/gtest.h>

using namespace mirtex;
using namespace Qt::StringLiterals;

namespace {

const QString kText = u"uno\ndue\ntre\n"_s;
const QString kClipboard = u"appunti"_s;

class EditorKeysTest : public ::testing::Test
{
protected:
    // A pane with the second line selected, an edit to undo and some text on the clipboard.
    void prepare()
    {
        view.loadText(kText.toUtf8());
        EditorPane *pane = view.primaryPane();
        pane->SendScintilla(QsciScintillaBase::SCI_GOTOPOS, 12L);
        pane->SendScintilla(QsciScintillaBase::SCI_REPLACESEL, "x");
        pane->SendScintilla(QsciScintillaBase::SCI_DELETEBACK);
        pane->setSelection(1, 0, 1, 3);
        QGuiApplication::clipboard()->setText(kClipboard);
    }

    // Whether the key changed the text or the clipboard.
    bool changes(int key)
    {
        prepare();
        const auto modifiers = Qt::KeyboardModifiers(key & Qt::KeyboardModifierMask);
        QKeyEvent press(QEvent::KeyPress, key & ~Qt::KeyboardModifierMask, modifiers);
        QCoreApplication::sendEvent(view.primaryPane(), &press);
        return view.text() != kText || QGuiApplication::clipboard()->text() != kClipboard;
    }

    QTemporaryDir dir;
    Preferences prefs{dir.filePath(u"settings.conf"_s)};
    EditorView view{prefs};
};

} // namespace

TEST_F(EditorKeysTest, KeysThatChangeTextAreOnlyTheListedOnes)
{
    QList<QKeySequence> listed;
    for (const EditorKeys::Binding &binding : EditorKeys::bindings())
        listed.append(binding.keys);
    // QScintilla's own defaults, as a pane left alone has them.
    QsciScintilla reference;
    int changing = 0;
    for (const QsciCommand *command : reference.standardCommands()->commands()) {
        for (const int key : {command->key(), command->alternateKey()}) {
            if (key == 0 || !changes(key))
                continue;
            ++changing;
            EXPECT_TRUE(listed.contains(QKeySequence(key)))
                << QKeySequence(key).toString().toStdString() << " ("
                << command->description().toStdString() << ") changes the text unlisted";
        }
    }
    EXPECT_GE(changing, 4) << "Backspace, Delete, Enter and Tab at least change the text";
}

TEST_F(EditorKeysTest, LineAndCaseKeysChangeNothing)
{
    const QKeyCombination keys[] = {
        Qt::CTRL | Qt::Key_L,
        Qt::CTRL | Qt::SHIFT | Qt::Key_L,
        Qt::CTRL | Qt::Key_T,
        Qt::CTRL | Qt::SHIFT | Qt::Key_T,
        Qt::CTRL | Qt::Key_D,
        Qt::CTRL | Qt::Key_U,
        Qt::CTRL | Qt::SHIFT | Qt::Key_U,
        Qt::ALT | Qt::Key_Backspace,
        Qt::CTRL | Qt::Key_Z,
        Qt::CTRL | Qt::Key_Y,
        Qt::CTRL | Qt::Key_X,
        Qt::CTRL | Qt::Key_V,
        Qt::SHIFT | Qt::Key_Delete,
        Qt::SHIFT | Qt::Key_Insert,
        Qt::CTRL | Qt::SHIFT | Qt::Key_Delete,
        Qt::CTRL | Qt::SHIFT | Qt::Key_Backspace,
    };
    for (const QKeyCombination key : keys) {
        const std::string name = QKeySequence(key).toString().toStdString();
        EXPECT_FALSE(changes(key.toCombined())) << name;
        EXPECT_EQ(view.primaryPane()->selectedText(), u"due"_s) << name;
    }
}
