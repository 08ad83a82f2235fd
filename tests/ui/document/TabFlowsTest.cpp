// Files and tabs as the user reaches them through the assembled application: closing several tabs
// with the save question, a tab for a file not yet on disk, the untouched "nuovo 1" giving way to
// the first file opened, reloading from disk, recent files and the tab context menu.
#include "core/app/Preferences.h"
#include "core/app/RecentFiles.h"
#include "support/QStringPrinter.h"
#include "support/TestFiles.h"
#include "ui/app/AppAssembly.h"
#include "ui/app/MainMenu.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/document/WorkspaceSidebar.h"
#include "ui/editor/EditorPane.h"

#include <QAction>
#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QMenu>
#include <QMenuBar>
#include <QTabBar>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace mirtex;
using namespace Qt::StringLiterals;

namespace {

void type(DocumentTab *tab, const QString &text)
{
    tab->editor()->primaryPane()->SendScintilla(QsciScintillaBase::SCI_REPLACESEL,
                                                text.toUtf8().constData());
}

class TabFlowsTest : public ::testing::Test
{
protected:
    QTemporaryDir dir;
    Preferences prefs{dir.filePath(u"settings.conf"_s)};
    ScriptedQuestions questions;
    AppAssembly app{prefs, questions};

    QString path(const QString &name) const { return dir.filePath(name); }

    DocumentTab *open(const QString &name, const QByteArray &bytes = "testo\n")
    {
        writeFile(path(name), bytes);
        return app.flows().openPath(path(name));
    }

    QStringList names() const
    {
        QStringList result;
        for (DocumentTab *tab : app.window().documents())
            result.append(tab->document().displayName());
        return result;
    }
};

} // namespace

TEST_F(TabFlowsTest, ClosingSeveralTabsAsksForEachUnsavedOneAndStopsAtCancel)
{
    const struct
    {
        const char *command;
        int argument;       // the tab right-clicked
        const char *answer; // to the one save question (tab "b" is the unsaved one)
        QStringList left;
    } cases[] = {
        {"closeOtherTabs:", 2, "Non salvare", {u"c.txt"_s}},
        {"closeOtherTabs:", 2, "Annulla", {u"b.txt"_s, u"c.txt"_s, u"d.txt"_s}},
        {"closeTabsToTheRight:", 0, "Annulla", {u"a.txt"_s, u"b.txt"_s, u"c.txt"_s, u"d.txt"_s}},
        {"closeTabsToTheRight:", 0, "Non salvare", {u"a.txt"_s}},
        {"closeTabsToTheRight:", 2, "", {u"a.txt"_s, u"b.txt"_s, u"c.txt"_s}},
        {"closeAllTabs:", -1, "Non salvare", {}},
        {"closeAllTabs:", -1, "Annulla", {u"b.txt"_s, u"c.txt"_s, u"d.txt"_s}},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(std::string(c.command) + " " + c.answer);
        for (DocumentTab *tab : app.window().documents())
            app.window().discardDocument(tab);
        for (const char *name : {"a.txt", "b.txt", "c.txt", "d.txt"})
            open(QString::fromLatin1(name));
        type(app.window().documents()[1], u"non salvato"_s);
        questions.clearAsked();
        if (*c.answer)
            questions.pushAnswer(QString::fromUtf8(c.answer));

        const QVariant argument = c.argument >= 0 ? QVariant(c.argument) : QVariant();
        ASSERT_TRUE(app.commands().dispatch(QString::fromLatin1(c.command), argument));
        EXPECT_EQ(names(), c.left);
        const size_t expectedQuestions = *c.answer ? 1 : 0;
        ASSERT_EQ(questions.asked().size(), expectedQuestions);
        if (expectedQuestions) {
            EXPECT_EQ(questions.asked()[0].message, u"Salvare le modifiche a “b.txt”?"_s);
        }
    }
}

TEST_F(TabFlowsTest, APathNotOnDiskOpensEmptyAndIsCreatedByTheFirstSave)
{
    const QString fresh = path(u"nuovo.txt"_s);
    DocumentTab *tab = app.flows().openPath(fresh);
    ASSERT_TRUE(tab);
    EXPECT_EQ(tab->document().path(), fresh);
    EXPECT_EQ(tab->document().displayName(), u"nuovo.txt"_s);
    EXPECT_FALSE(QFile::exists(fresh)) << "nothing is written before a save";
    EXPECT_EQ(app.flows().openPath(fresh), tab) << "the same path again selects the tab";

    app.flows().checkExternalChanges();
    EXPECT_TRUE(questions.asked().empty()) << "a file not yet created is not a missing one";

    type(tab, u"prima riga"_s);
    ASSERT_TRUE(app.commands().dispatch(u"saveDocument:"_s));
    EXPECT_EQ(readFile(fresh), "prima riga");
    EXPECT_FALSE(tab->document().isDirty());

    EXPECT_EQ(app.flows().openPath(path(u"manca/nuovo.txt"_s)), nullptr);
    ASSERT_EQ(questions.asked().size(), 1u);
    EXPECT_EQ(
        questions.asked()[0].message,
        u"Impossibile creare “nuovo.txt”: la cartella “%1” non esiste."_s.arg(path(u"manca"_s)));
}

TEST_F(TabFlowsTest, AnUntouchedNewTabGivesWayToTheFirstFileOpened)
{
    const struct
    {
        const char *name;
        QString typed; // into "nuovo 1" before the file opens
        QStringList left;
    } cases[] = {
        {"untouched", {}, {u"a.txt"_s}},
        {"edited", u"x"_s, {u"nuovo 1"_s, u"a.txt"_s}},
        {"edited back to empty", u"x\b"_s, {u"nuovo 1"_s, u"a.txt"_s}},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        for (DocumentTab *tab : app.window().documents())
            app.window().discardDocument(tab);
        DocumentTab *untitled = app.window().newDocument();
        for (QChar ch : c.typed) {
            if (ch == u'\b')
                untitled->editor()->primaryPane()->SendScintilla(QsciScintillaBase::SCI_DELETEBACK);
            else
                type(untitled, ch);
        }
        open(u"a.txt"_s);
        EXPECT_EQ(names(), c.left);
        app.window().newDocument();
        open(u"b.txt"_s);
        EXPECT_EQ(names().size(), c.left.size() + 2) << "only the first file replaces it";
    }
}

TEST_F(TabFlowsTest, ReloadFromDiskAsksBeforeDroppingChanges)
{
    DocumentTab *tab = open(u"r.txt"_s, "disco\n");
    type(tab, u"mio "_s);
    writeFile(path(u"r.txt"_s), "disco nuovo\n");

    questions.pushAnswer(u"Annulla"_s);
    ASSERT_TRUE(app.commands().dispatch(u"reloadFromDisk:"_s));
    EXPECT_EQ(tab->editor()->text(), u"mio disco\n"_s);
    ASSERT_EQ(questions.asked().size(), 1u);
    EXPECT_EQ(questions.asked()[0].message, u"Ricaricare “r.txt” dal disco?"_s);
    EXPECT_EQ(questions.asked()[0].buttons, (QStringList{u"Ricarica"_s, u"Annulla"_s}));

    questions.pushAnswer(u"Ricarica"_s);
    ASSERT_TRUE(app.commands().dispatch(u"reloadFromDisk:"_s));
    EXPECT_EQ(tab->editor()->text(), u"disco nuovo\n"_s);
    EXPECT_FALSE(tab->document().isDirty());

    writeFile(path(u"r.txt"_s), "terza\n");
    ASSERT_TRUE(app.commands().dispatch(u"reloadFromDisk:"_s));
    EXPECT_EQ(tab->editor()->text(), u"terza\n"_s) << "a clean tab reloads without asking";
    EXPECT_EQ(questions.asked().size(), 2u);
}

TEST_F(TabFlowsTest, RecentFilesListTheNewestFirstAndForgetWhatIsGone)
{
    QMenu *file = app.menu().menu(u"mirtex.menu.file"_s);
    ASSERT_TRUE(file);
    auto *recent = file->findChild<QMenu *>(u"mirtex.menu.recent"_s);
    ASSERT_TRUE(recent);
    auto entries = [recent]() {
        Q_EMIT recent->aboutToShow();
        QStringList result;
        for (QAction *action : recent->actions()) {
            if (action->isSeparator())
                result.append(u"--"_s);
            else if (action->objectName().startsWith(u"openRecentFile:"_s))
                result.append(QFileInfo(action->data().toString()).fileName());
            else
                result.append(action->text() + (action->isEnabled() ? u""_s : u" (off)"_s));
        }
        return result;
    };
    EXPECT_EQ(entries(), (QStringList{u"--"_s, u"Svuota l'elenco (off)"_s}));

    open(u"uno.txt"_s);
    open(u"due.txt"_s);
    EXPECT_EQ(entries(), (QStringList{u"due.txt"_s, u"uno.txt"_s, u"--"_s, u"Svuota l'elenco"_s}));

    // Opening one again from the list brings it to the top.
    app.window().discardDocument(app.window().documents()[0]);
    recent->actions()[1]->trigger();
    EXPECT_EQ(names(), (QStringList{u"due.txt"_s, u"uno.txt"_s}));
    EXPECT_EQ(entries(), (QStringList{u"uno.txt"_s, u"due.txt"_s, u"--"_s, u"Svuota l'elenco"_s}));

    ASSERT_TRUE(QFile::remove(path(u"uno.txt"_s)));
    EXPECT_EQ(entries(), (QStringList{u"due.txt"_s, u"--"_s, u"Svuota l'elenco"_s}));

    for (int i = 0; i < 12; ++i)
        open(u"f%1.txt"_s.arg(i));
    EXPECT_EQ(app.recentFiles().paths().size(), RecentFiles::kLimit);
    EXPECT_EQ(app.recentFiles().paths().first(), path(u"f11.txt"_s));

    recent->actions().last()->trigger();
    EXPECT_EQ(entries(), (QStringList{u"--"_s, u"Svuota l'elenco (off)"_s}));
    EXPECT_TRUE(prefs.value(QLatin1String(RecentFiles::kKey)).toStringList().isEmpty());
}

TEST_F(TabFlowsTest, TheTabContextMenuActsOnTheTabClicked)
{
    ASSERT_TRUE(QDir(dir.path()).mkpath(u"sub/deep"_s));
    open(u"a.txt"_s);
    open(u"sub/deep/b.txt"_s);
    open(u"c.txt"_s);
    app.window().show();
    QTabBar *bar = app.window().findChild<QTabBar *>();
    ASSERT_TRUE(bar);
    Q_EMIT bar->customContextMenuRequested(bar->tabRect(1).center());
    auto *menu = app.window().findChild<QMenu *>(u"mirtex.menu.tab"_s);
    ASSERT_TRUE(menu);
    QStringList labels;
    QMap<QString, QAction *> byName;
    for (QAction *action : menu->actions()) {
        if (!action->isSeparator())
            labels.append(action->text());
        byName.insert(action->objectName(), action);
    }
    EXPECT_EQ(labels,
              (QStringList{u"Chiudi scheda"_s,
                           u"Chiudi le altre schede"_s,
                           u"Chiudi le schede a destra"_s,
                           u"Chiudi tutte le schede"_s,
                           u"Ricarica dal disco"_s,
                           u"Copia percorso"_s,
                           u"Mostra nella barra laterale"_s,
                           u"Confronta"_s}));

    byName.value(u"copyPath:1"_s)->trigger();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), path(u"sub/deep/b.txt"_s));

    // In no workspace folder: its own folder is added; inside some: shown in the innermost.
    WorkspaceSidebar *sidebar = app.window().sidebar();
    byName.value(u"revealInSidebar:1"_s)->trigger();
    EXPECT_TRUE(app.window().isSidebarVisible());
    EXPECT_EQ(sidebar->folders(), QStringList{QFileInfo(path(u"sub/deep"_s)).canonicalFilePath()});
    app.window().openWorkspace(dir.path());
    app.window().openWorkspace(path(u"sub"_s));
    Q_EMIT bar->customContextMenuRequested(bar->tabRect(0).center());
    menu = app.window().findChildren<QMenu *>(u"mirtex.menu.tab"_s).last();
    menu->findChild<QAction *>(u"revealInSidebar:0"_s)->trigger();
    const QString top = QFileInfo(dir.path()).canonicalFilePath();
    EXPECT_EQ(sidebar->shownFolder(), top) << "sub holds no a.txt";
    EXPECT_EQ(sidebar->selectedPath(), top + u"/a.txt"_s);
    EXPECT_EQ(sidebar->folders().size(), 3);

    byName.value(u"closeOtherTabs:1"_s)->trigger();
    EXPECT_EQ(names(), QStringList{u"b.txt"_s});
}
