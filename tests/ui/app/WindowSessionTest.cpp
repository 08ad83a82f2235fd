// The session of a real main window: what comes back after a restart, and what is kept on disk.
#include "ui/app/WindowSession.h"

#include "core/app/Preferences.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorAnnotations.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QDir>
#include <QFile>
#include <QTabWidget>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace mirtex;

namespace {

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

void type(DocumentTab *tab, const char *text)
{
    tab->editor()->primaryPane()->SendScintilla(QsciScintillaBase::SCI_REPLACESEL, text);
}

class WindowSessionTest : public ::testing::Test
{
protected:
    QTemporaryDir dir;
    QString state = dir.filePath(QStringLiteral("state"));
    Preferences prefs{dir.filePath(QStringLiteral("prefs.conf"))};
    ScriptedQuestions questions;

    QStringList backups() const
    {
        return QDir(state + QStringLiteral("/backup")).entryList(QDir::Files);
    }
};

} // namespace

TEST_F(WindowSessionTest, UnsavedTextComesBackModifiedAndCleanFilesComeFromDisk)
{
    const QString edited = dir.filePath(QStringLiteral("edited.txt"));
    const QString clean = dir.filePath(QStringLiteral("clean.py"));
    writeFile(edited, "riga uno\nriga due\n");
    writeFile(clean, "print('ciao')\n");
    {
        MainWindow window(prefs);
        DocumentFlows flows(window, questions);
        WindowSession session(prefs, state);
        type(window.newDocument(), "mai salvato");
        DocumentTab *editedTab = flows.openPath(edited);
        type(editedTab, "aggiunta ");
        editedTab->editor()->annotations().setBookmarkedLines({1});
        editedTab->editor()->setSplit(Qt::Vertical);
        flows.openPath(clean);
        window.selectIndex(1);
        session.write(window);
        EXPECT_EQ(backups().size(), 2) << "only the two modified tabs need a backup";
    }
    MainWindow window(prefs);
    DocumentFlows flows(window, questions);
    WindowSession session(prefs, state);
    ASSERT_TRUE(session.restore(flows));
    const auto tabs = window.documents();
    ASSERT_EQ(tabs.size(), 3);
    EXPECT_EQ(tabs[0]->editor()->text(), QStringLiteral("mai salvato"));
    EXPECT_TRUE(tabs[0]->document().isDirty());
    EXPECT_EQ(tabs[0]->document().untitledName(), QStringLiteral("nuovo 1"));
    EXPECT_EQ(tabs[1]->editor()->text(), QStringLiteral("aggiunta riga uno\nriga due\n"));
    EXPECT_TRUE(tabs[1]->document().isDirty());
    EXPECT_EQ(tabs[1]->editor()->annotations().bookmarkedLines(), std::vector<qsizetype>{1});
    EXPECT_EQ(tabs[1]->editor()->split(), Qt::Vertical);
    EXPECT_FALSE(tabs[2]->document().isDirty());
    EXPECT_EQ(tabs[2]->document().languageId(), QStringLiteral("python"));
    EXPECT_EQ(window.currentIndex(), 1);

    // Undoing the restored edit back to the file's text makes the tab clean again.
    tabs[1]->editor()->primaryPane()->SendScintilla(QsciScintillaBase::SCI_SETSEL, 0L, 9L);
    tabs[1]->editor()->primaryPane()->SendScintilla(QsciScintillaBase::SCI_REPLACESEL, "");
    EXPECT_FALSE(tabs[1]->document().isDirty());
}

TEST_F(WindowSessionTest, ClosedTabLeavesNoBackupAndGoneFilesAreSkipped)
{
    const QString gone = dir.filePath(QStringLiteral("gone.txt"));
    writeFile(gone, "presto sparirà\n");
    {
        MainWindow window(prefs);
        DocumentFlows flows(window, questions);
        WindowSession session(prefs, state);
        DocumentTab *untitled = window.newDocument();
        type(untitled, "da chiudere");
        flows.openPath(gone);
        session.write(window);
        ASSERT_EQ(backups().size(), 1);
        window.discardDocument(untitled);
        session.write(window);
        EXPECT_TRUE(backups().isEmpty());
    }
    QFile::remove(gone);
    MainWindow window(prefs);
    DocumentFlows flows(window, questions);
    WindowSession session(prefs, state);
    EXPECT_FALSE(session.restore(flows)) << "a clean tab whose file is gone has nothing to restore";
    EXPECT_TRUE(window.documents().isEmpty());
}

TEST_F(WindowSessionTest, EarlierFormatRestoresOneTab)
{
    QDir().mkpath(state + QStringLiteral("/backup"));
    writeFile(state + QStringLiteral("/backup/x.txt"), "testo");
    writeFile(
        state + QStringLiteral("/session.json"),
        R"({"entries":[{"id":"x","hasBackup":true,"encoding":"utf8","lineEnding":"lf",)"
        R"("language":"text","selection":[0,99],"scroll":0,"bookmarks":[7],"readOnly":false}],)"
        R"("selected":5})");
    MainWindow window(prefs);
    DocumentFlows flows(window, questions);
    WindowSession session(prefs, state);
    ASSERT_TRUE(session.restore(flows));
    ASSERT_EQ(window.documents().size(), 1);
    DocumentTab *tab = window.documents().first();
    EXPECT_EQ(tab->editor()->text(), QStringLiteral("testo"));
    EXPECT_EQ(tab->document().encoding().id(), QStringLiteral("4"));
    EXPECT_EQ(tab->document().untitledName(), QStringLiteral("nuovo 1"));
    EXPECT_EQ(tab->editor()->selection(), (TextRange{0, 5}))
        << "the selection is clamped to the text";
    EXPECT_TRUE(tab->editor()->annotations().bookmarkedLines().empty());
}

TEST_F(WindowSessionTest, ReadOnlyTabsComeBackLockedAndMarked)
{
    const QString path = dir.filePath(QStringLiteral("bloccato.txt"));
    writeFile(path, "non toccare\n");
    {
        MainWindow window(prefs);
        DocumentFlows flows(window, questions);
        WindowSession session(prefs, state);
        flows.openPath(path)->setReadOnly(true);
        session.write(window);
    }
    MainWindow window(prefs);
    DocumentFlows flows(window, questions);
    WindowSession session(prefs, state);
    ASSERT_TRUE(session.restore(flows));
    DocumentTab *tab = window.documents().value(0);
    ASSERT_TRUE(tab);
    EXPECT_TRUE(tab->document().isReadOnly());
    EXPECT_TRUE(tab->editor()->primaryPane()->isReadOnly());
    auto *tabs = window.findChild<QTabWidget *>();
    ASSERT_TRUE(tabs);
    EXPECT_EQ(tabs->tabText(0), QStringLiteral("bloccato.txt (sola lettura)"));
}

// A second window on the same state folder neither restores nor rewrites the first's session.
TEST_F(WindowSessionTest, OnlyTheFirstInstanceKeepsTheSession)
{
    MainWindow window(prefs);
    DocumentFlows flows(window, questions);
    WindowSession first(prefs, state);
    ASSERT_TRUE(first.isWriter());
    type(window.newDocument(), "della prima");
    ASSERT_FALSE(first.write(window));
    const QStringList firstBackups = backups();
    ASSERT_EQ(firstBackups.size(), 1);

    MainWindow other(prefs);
    DocumentFlows otherFlows(other, questions);
    WindowSession second(prefs, state);
    EXPECT_FALSE(second.isWriter());
    EXPECT_FALSE(second.restore(otherFlows));
    EXPECT_TRUE(other.documents().isEmpty());
    type(other.newDocument(), "della seconda");
    EXPECT_FALSE(second.write(other));
    second.remove();
    EXPECT_EQ(backups(), firstBackups);
    EXPECT_TRUE(QFile::exists(state + QStringLiteral("/session.json")));
}

TEST_F(WindowSessionTest, DamagedEntriesAreSkippedOrRepairedNeverEmptied)
{
    QDir().mkpath(state + QStringLiteral("/backup"));
    writeFile(state + QStringLiteral("/backup/rotto.txt"), "caff\xE8 \xC3\xA8");
    writeFile(state + QStringLiteral("/session.json"),
              R"({"entries":[{"id":"perso","hasBackup":true,"untitledName":"nuovo 1"},)"
              R"({"id":"vuoto","untitledName":"nuovo 2"},)"
              R"({"id":"rotto","hasBackup":true,"untitledName":"nuovo 3"}]})");
    MainWindow window(prefs);
    DocumentFlows flows(window, questions);
    WindowSession session(prefs, state);
    ASSERT_TRUE(session.restore(flows));
    ASSERT_EQ(window.documents().size(), 1) << "untitled entries with no backup are skipped";
    DocumentTab *tab = window.documents()[0];
    EXPECT_EQ(tab->editor()->text(), QStringLiteral("caff\uFFFD è"));
    EXPECT_TRUE(tab->document().isDirty());
    EXPECT_EQ(QDir(state + QStringLiteral("/recovery")).entryList(QDir::Files).size(), 1);

    // The repaired text replaces the damaged backup at the next write.
    ASSERT_FALSE(session.write(window));
    ASSERT_EQ(backups().size(), 1);
    QFile backup(state + QStringLiteral("/backup/") + backups()[0]);
    ASSERT_TRUE(backup.open(QIODevice::ReadOnly));
    EXPECT_EQ(backup.readAll(), QStringLiteral("caff\uFFFD è").toUtf8());
}
