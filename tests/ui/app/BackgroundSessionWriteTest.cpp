// The periodic session write runs off the main thread on copies of the texts: what happens to the
// tabs meanwhile (typing, closing) and a write that fails must never cost a backup.
#include "core/app/Preferences.h"
#include "ui/app/WindowSession.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <sys/resource.h>

using namespace mirtex;

namespace {

void type(DocumentTab *tab, const char *text)
{
    tab->editor()->primaryPane()->SendScintilla(QsciScintillaBase::SCI_REPLACESEL, text);
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

class BackgroundSessionWriteTest : public ::testing::Test
{
protected:
    QTemporaryDir dir;
    QString state = dir.filePath(QStringLiteral("state"));
    Preferences prefs{dir.filePath(QStringLiteral("prefs.conf"))};
    ScriptedQuestions questions;
    MainWindow window{prefs};
    DocumentFlows flows{window, questions};
    WindowSession session{prefs, state};

    QString backupOf(DocumentTab *tab) const
    {
        return state + QStringLiteral("/backup/")
               + tab->document().id().toString(QUuid::WithoutBraces) + QStringLiteral(".txt");
    }

    // A text large enough that the write is still running when the test goes on.
    static QByteArray bigText(char fill) { return QByteArray(1 << 20, fill); }
};

} // namespace

TEST_F(BackgroundSessionWriteTest, AnEditDuringTheWriteIsBackedUpByTheNextOne)
{
    DocumentTab *tab = window.newDocument();
    type(tab, bigText('a').constData());
    const qint64 written = tab->document().changeCount();
    session.writeInBackground(window);
    type(tab, "b"); // after the copy was taken, before the write is over
    session.finishWriting();
    EXPECT_EQ(contents(backupOf(tab)), bigText('a')) << "the write holds the text as copied";
    EXPECT_EQ(tab->document().backedUpChangeCount(), written);
    EXPECT_NE(tab->document().backedUpChangeCount(), tab->document().changeCount());

    session.writeInBackground(window);
    session.finishWriting();
    EXPECT_EQ(contents(backupOf(tab)), bigText('a') + "b");
    EXPECT_EQ(tab->document().backedUpChangeCount(), tab->document().changeCount());
}

// Each tick's copy reuses the memory of the one before: a text that shrinks, then grows past that
// memory, is backed up exactly each time.
TEST_F(BackgroundSessionWriteTest, SuccessiveCopiesOfAShrinkingAndGrowingTextAreExact)
{
    DocumentTab *tab = window.newDocument();
    EditorPane *pane = tab->editor()->primaryPane();
    const QByteArray steps[] = {bigText('a'), QByteArray("corto"), bigText('c') + bigText('d')};
    for (const QByteArray &text : steps) {
        pane->SendScintilla(QsciScintillaBase::SCI_SETTEXT, text.constData());
        session.writeInBackground(window);
        session.finishWriting();
        EXPECT_EQ(contents(backupOf(tab)), text) << text.size() << " bytes";
    }
}

TEST_F(BackgroundSessionWriteTest, ATabClosedDuringTheWriteLosesNothingElse)
{
    DocumentTab *kept = window.newDocument();
    type(kept, "resta");
    DocumentTab *closed = window.newDocument();
    type(closed, bigText('c').constData());
    const QString closedBackup = backupOf(closed);
    session.writeInBackground(window);
    window.discardDocument(closed); // the write goes on with its copy
    session.finishWriting();
    EXPECT_EQ(contents(closedBackup), bigText('c')) << "complete, never partial";
    EXPECT_EQ(contents(backupOf(kept)), "resta");

    session.writeInBackground(window);
    session.finishWriting();
    EXPECT_FALSE(QFile::exists(closedBackup)) << "a tab closed on purpose leaves no backup";
    EXPECT_EQ(contents(backupOf(kept)), "resta");
}

// A full disk (every write beyond a few bytes comes up short, also for root) during a background
// write: the old backup stays whole, nothing counts as backed up, the next write tries again.
TEST_F(BackgroundSessionWriteTest, AFailedWriteKeepsTheOldBackupAndIsRetried)
{
    DocumentTab *tab = window.newDocument();
    type(tab, "prima versione");
    ASSERT_FALSE(session.write(window));
    const qint64 first = tab->document().backedUpChangeCount();
    const QByteArray session1 = contents(state + QStringLiteral("/session.json"));
    type(tab, bigText('x').constData());

    std::signal(SIGXFSZ, SIG_IGN);

    struct rlimit saved
    {};

    getrlimit(RLIMIT_FSIZE, &saved);
    struct rlimit small = saved;
    small.rlim_cur = 64;
    setrlimit(RLIMIT_FSIZE, &small);
    session.writeInBackground(window);
    session.finishWriting();
    setrlimit(RLIMIT_FSIZE, &saved);

    EXPECT_EQ(contents(backupOf(tab)), "prima versione");
    EXPECT_EQ(contents(state + QStringLiteral("/session.json")), session1);
    EXPECT_EQ(tab->document().backedUpChangeCount(), first);
    EXPECT_EQ(QDir(state + QStringLiteral("/backup")).entryList(QDir::Files).size(), 1)
        << "no temporary file left behind";

    session.writeInBackground(window);
    session.finishWriting();
    EXPECT_EQ(contents(backupOf(tab)), "prima versione" + bigText('x'));
    EXPECT_EQ(tab->document().backedUpChangeCount(), tab->document().changeCount());
}
