// The sidebar's context menu as the user reaches it: new files and folders, renaming and moving to
// the trash on real files, the reason in Italian when the system refuses, and tabs that follow
// what happened to their files.
#include "ui/document/SidebarCommands.h"

#include "core/app/Preferences.h"
#include "support/QStringPrinter.h"
#include "support/TestFiles.h"
#include "ui/app/AppAssembly.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QAction>
#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMenu>
#include <QTabWidget>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace mirtex;
using namespace Qt::StringLiterals;

namespace {

class SidebarCommandsTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        // The trash goes in the test's own home.
        m_oldHome = qgetenv("HOME");
        m_oldDataHome = qgetenv("XDG_DATA_HOME");
        qputenv("HOME", root.toUtf8());
        qputenv("XDG_DATA_HOME", path(u"data"_s).toUtf8());
        QDir().mkpath(path(u"work/sub"_s));
        app.window().openWorkspace(path(u"work"_s));
    }

    void TearDown() override
    {
        qputenv("XDG_DATA_HOME", m_oldDataHome);
        qputenv("HOME", m_oldHome);
    }

    QTemporaryDir dir;
    QString root = QFileInfo(dir.path()).canonicalFilePath();
    Preferences prefs{dir.filePath(u"settings.conf"_s)};
    ScriptedQuestions questions;
    AppAssembly app{prefs, questions};
    QByteArray m_oldHome;
    QByteArray m_oldDataHome;

    QString path(const QString &name) const { return root + u'/' + name; }

    DocumentTab *open(const QString &name, const QByteArray &bytes = "testo\n")
    {
        writeFile(path(name), bytes);
        return app.flows().openPath(path(name));
    }

    bool run(const char *command, const QString &entry)
    {
        return app.commands().dispatch(QLatin1String(command), entry);
    }

    QString tabTitle(DocumentTab *tab) const
    {
        auto *tabs = app.window().findChild<QTabWidget *>();
        return tabs->tabText(tabs->indexOf(tab->page()));
    }

    QString lastAlertReason() const
    {
        return questions.asked().empty() ? QString() : questions.asked().back().informative;
    }
};

} // namespace

TEST_F(SidebarCommandsTest, TheMenuOffersTheEntryCommandsInItalian)
{
    writeFile(path(u"work/a.txt"_s), "a");

    const struct
    {
        QString entry;
        QStringList enabled;
    } cases[] = {
        {path(u"work/a.txt"_s),
         {u"Nuovo file…"_s,
          u"Nuova cartella…"_s,
          u"Rinomina…"_s,
          u"Sposta nel cestino"_s,
          u"Copia percorso"_s,
          u"Trova nella cartella…"_s}},
        // The workspace's own folder is not renamed or trashed from inside itself.
        {path(u"work"_s),
         {u"Nuovo file…"_s, u"Nuova cartella…"_s, u"Copia percorso"_s, u"Trova nella cartella…"_s}},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.entry.toStdString());
        std::unique_ptr<QMenu> menu(
            SidebarCommands::entryMenu(app.commands(), c.entry, &app.window()));
        QStringList enabled;
        for (QAction *action : menu->actions()) {
            if (!action->isSeparator() && action->isEnabled())
                enabled.append(action->text());
        }
        EXPECT_EQ(enabled, c.enabled);
    }
    ASSERT_TRUE(run("copyEntryPath:", path(u"work/a.txt"_s)));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), path(u"work/a.txt"_s));
}

TEST_F(SidebarCommandsTest, NewFilesAndFoldersAreMadeBesideTheEntryOrRefusedWithTheReason)
{
    writeFile(path(u"work/sub/taken.txt"_s), "già qui");

    const struct
    {
        const char *command;
        QString entry; // a file: the new entry goes beside it
        QString name;
        QString made;   // empty: refused
        QString reason; // the alert's informative text when refused
    } cases[] = {
        {"newFileInFolder:", path(u"work/sub"_s), u"nuovo.txt"_s, u"work/sub/nuovo.txt"_s, {}},
        {"newFileInFolder:",
         path(u"work/sub/taken.txt"_s),
         u"accanto.md"_s,
         u"work/sub/accanto.md"_s,
         {}},
        {"newFolderInFolder:", path(u"work"_s), u"cartella"_s, u"work/cartella"_s, {}},
        {"newFileInFolder:",
         path(u"work/sub"_s),
         u"taken.txt"_s,
         {},
         u"Esiste già un file o una cartella con questo nome."_s},
        {"newFolderInFolder:",
         path(u"work"_s),
         u"sub"_s,
         {},
         u"Esiste già un file o una cartella con questo nome."_s},
        {"newFileInFolder:", path(u"work"_s), u"a/b"_s, {}, u"Il nome non è valido."_s},
        {"newFolderInFolder:", path(u"work"_s), u".."_s, {}, u"Il nome non è valido."_s},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.name.toStdString());
        questions.clearAsked();
        questions.pushName(c.name);
        const qsizetype tabsBefore = app.window().documents().size();
        ASSERT_TRUE(run(c.command, c.entry));
        if (c.made.isEmpty()) {
            ASSERT_FALSE(questions.asked().empty());
            EXPECT_EQ(lastAlertReason(), c.reason);
            EXPECT_EQ(readFile(path(u"work/sub/taken.txt"_s)), "già qui");
            continue;
        }
        EXPECT_TRUE(QFileInfo::exists(path(c.made)));
        if (QLatin1String(c.command) == u"newFileInFolder:") {
            // A new file opens in a tab at once.
            EXPECT_EQ(app.window().documents().size(), tabsBefore + 1);
            EXPECT_EQ(app.window().currentDocument()->document().path(), path(c.made));
        }
    }
    // Cancelling the name asks nothing more and makes nothing.
    questions.clearAsked();
    questions.pushName(std::nullopt);
    run("newFileInFolder:", path(u"work"_s));
    EXPECT_EQ(questions.asked().size(), 1u);
}

TEST_F(SidebarCommandsTest, RenamingTakesOpenTabsAlongAndNeverReplacesAnotherFile)
{
    DocumentTab *file = open(u"work/note.txt"_s, "prima\n");
    DocumentTab *inside = open(u"work/sub/dentro.txt"_s, "dentro\n");
    writeFile(path(u"work/altro.txt"_s), "altro");
    ASSERT_TRUE(file && inside);

    const struct
    {
        QString entry;
        QString name;
        QString expectedFile;   // where `file` is afterwards
        QString expectedInside; // where `inside` is afterwards
        QString reason;         // when refused
    } cases[] = {
        {path(u"work/note.txt"_s),
         u"note.md"_s,
         path(u"work/note.md"_s),
         path(u"work/sub/dentro.txt"_s),
         {}},
        {path(u"work/sub"_s),
         u"sotto"_s,
         path(u"work/note.md"_s),
         path(u"work/sotto/dentro.txt"_s),
         {}},
        {path(u"work/note.md"_s),
         u"altro.txt"_s,
         path(u"work/note.md"_s),
         path(u"work/sotto/dentro.txt"_s),
         u"Esiste già un file o una cartella con questo nome."_s},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.name.toStdString());
        questions.clearAsked();
        questions.pushName(c.name);
        ASSERT_TRUE(run("renameEntry:", c.entry));
        EXPECT_EQ(file->document().path(), c.expectedFile);
        EXPECT_EQ(inside->document().path(), c.expectedInside);
        EXPECT_TRUE(QFileInfo::exists(c.expectedFile));
        EXPECT_TRUE(QFileInfo::exists(c.expectedInside));
        if (!c.reason.isEmpty()) {
            EXPECT_EQ(lastAlertReason(), c.reason);
        }
    }
    EXPECT_EQ(readFile(path(u"work/altro.txt"_s)), "altro");
    EXPECT_EQ(file->document().languageId(), u"markdown"_s) << "the new extension's language";
    EXPECT_EQ(tabTitle(file), u"note.md"_s);
    // Saving writes to the new place, not back to the old name.
    file->editor()->primaryPane()->SendScintilla(QsciScintillaBase::SCI_APPENDTEXT, 4, "dopo");
    ASSERT_TRUE(app.flows().save(file));
    EXPECT_EQ(readFile(path(u"work/note.md"_s)), "prima\ndopo");
    EXPECT_FALSE(QFileInfo::exists(path(u"work/note.txt"_s)));
}

TEST_F(SidebarCommandsTest, ATrashedFileKeepsItsTabAndTextAndSaysItIsGone)
{
    DocumentTab *file = open(u"work/via.txt"_s, "resto qui\n");
    DocumentTab *inside = open(u"work/sub/dentro.txt"_s, "dentro\n");
    DocumentTab *other = open(u"work/resta.txt"_s, "resta\n");
    ASSERT_TRUE(file && inside && other);

    ASSERT_TRUE(run("moveEntryToTrash:", path(u"work/via.txt"_s)));
    ASSERT_TRUE(run("moveEntryToTrash:", path(u"work/sub"_s)));

    EXPECT_FALSE(QFileInfo::exists(path(u"work/via.txt"_s)));
    EXPECT_FALSE(QFileInfo::exists(path(u"work/sub"_s)));

    EXPECT_EQ(app.window().documents().size(), 3);
    EXPECT_EQ(file->editor()->text(), u"resto qui\n"_s);
    EXPECT_EQ(tabTitle(file), u"via.txt (eliminato)"_s);
    EXPECT_EQ(tabTitle(inside), u"dentro.txt (eliminato)"_s);
    EXPECT_EQ(tabTitle(other), u"resta.txt"_s);

    // The user did it: no question about a file removed by another program.
    questions.clearAsked();
    app.flows().checkExternalChanges();
    EXPECT_TRUE(questions.asked().empty());

    // Nothing there any more: the command cannot act.
    EXPECT_FALSE(run("moveEntryToTrash:", path(u"work/via.txt"_s)));

    // Saving puts the file back and the mark goes.
    ASSERT_TRUE(app.flows().save(file));
    EXPECT_EQ(tabTitle(file), u"via.txt"_s);
}
