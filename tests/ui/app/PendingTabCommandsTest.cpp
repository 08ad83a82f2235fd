// The commands on "every tab" reach the tabs of a long session that are not loaded yet: they are
// closed, saved, asked about, switched to and listed in their place among the others, and no
// unsaved text of theirs is lost on the way.
#include "core/app/Preferences.h"
#include "support/QStringPrinter.h"
#include "support/TestFiles.h"
#include "ui/app/AppAssembly.h"
#include "ui/app/AppDelegate.h"
#include "ui/app/MainMenu.h"
#include "ui/app/WindowSession.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/compare/CompareWindow.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/document/PendingTab.h"
#include "ui/editor/EditorView.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMenu>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace mirtex;
using namespace Qt::StringLiterals;

namespace {

constexpr int kTabs = int(WindowSession::kLoadedAtOnce) + 5;

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

// f0 … f24; f0, f10 and f20 have unsaved text ("modificato N"). Only f<selected> is loaded.
class PendingTabCommandsTest : public ::testing::Test
{
protected:
    QTemporaryDir dir;
    Preferences prefs{dir.filePath(u"settings.conf"_s)};
    ScriptedQuestions questions;
    std::unique_ptr<AppAssembly> app;

    QString file(int i) const { return dir.filePath(u"f%1.txt"_s.arg(i)); }

    void restore(int selected = 3)
    {
        const QString state = dir.filePath(u"state"_s);
        ASSERT_TRUE(QDir().mkpath(state + u"/backup"_s));
        QJsonArray entries;
        for (int i = 0; i < kTabs; ++i) {
            writeFile(file(i), "file " + QByteArray::number(i) + "\n");
            const QString id = u"00000000-0000-4000-8000-%1"_s.arg(i, 12, 10, QChar(u'0'));
            const bool dirty = i % 10 == 0;
            if (dirty)
                writeFile(state + u"/backup/"_s + id + u".txt"_s,
                          "modificato " + QByteArray::number(i));
            entries.append(QJsonObject{{"id", id}, {"path", file(i)}, {"hasBackup", dirty}});
        }
        writeFile(
            state + u"/session.json"_s,
            QJsonDocument(QJsonObject{{"entries", entries}, {"selected", selected}}).toJson());
        app = std::make_unique<AppAssembly>(
            prefs, questions, std::make_unique<WindowSession>(prefs, state));
        app->delegate().launch(false);
        QCoreApplication::processEvents();
        ASSERT_EQ(window().pagesInOrder().size(), kTabs);
        ASSERT_EQ(window().documents().size(), 1);
    }

    MainWindow &window() const { return app->window(); }

    // The loaded document of the tab at `index`, if it is loaded.
    DocumentTab *loadedAt(int index) const
    {
        const QList<QWidget *> pages = window().pagesInOrder();
        for (DocumentTab *tab : window().documents())
            if (index < pages.size() && tab->page() == pages[index])
                return tab;
        return nullptr;
    }

    QStringList names() const
    {
        QStringList result;
        const QList<QWidget *> pages = window().pagesInOrder();
        for (int i = 0; i < pages.size(); ++i) {
            if (auto *pending = qobject_cast<PendingTab *>(pages[i]))
                result.append(QFileInfo(*pending->entry().path).fileName());
            else
                result.append(loadedAt(i) ? loadedAt(i)->document().displayName() : QString());
        }
        return result;
    }

    static QStringList range(int from, int to)
    {
        QStringList result;
        for (int i = from; i <= to; ++i)
            result.append(u"f%1.txt"_s.arg(i));
        return result;
    }
};

} // namespace

TEST_F(PendingTabCommandsTest, ClosingSeveralTabsClosesPendingOnesAndAsksAboutTheirUnsavedText)
{
    const struct
    {
        const char *command;
        QStringList answers;
        QStringList left;
        int asked;
    } cases[] = {
        {"closeAllTabs:", {u"Non salvare"_s, u"Non salvare"_s, u"Non salvare"_s}, {}, 3},
        {"closeOtherTabs:",
         {u"Non salvare"_s, u"Non salvare"_s, u"Non salvare"_s},
         {u"f3.txt"_s},
         3},
        {"closeTabsToTheRight:", {u"Non salvare"_s, u"Non salvare"_s}, range(0, 3), 2},
        // Cancelled at f10: f4 … f9 are gone, f10 keeps its unsaved text, the rest stay.
        {"closeTabsToTheRight:", {u"Annulla"_s}, range(0, 3) + range(10, kTabs - 1), 1},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.command);
        app.reset();
        questions.clearAsked();
        for (const QString &answer : c.answers)
            questions.pushAnswer(answer);
        ASSERT_NO_FATAL_FAILURE(restore(3));
        // As from the menu of the current tab, f3, with its position among all the tabs.
        ASSERT_TRUE(app->commands().dispatch(QString::fromLatin1(c.command), 3));
        EXPECT_EQ(names(), c.left);
        EXPECT_EQ(questions.asked().size(), size_t(c.asked));
        if (c.left.contains(u"f10.txt"_s)) {
            DocumentTab *kept = loadedAt(4);
            ASSERT_NE(kept, nullptr);
            EXPECT_EQ(kept->editor()->utf8Text(), "modificato 10");
        }
        for (int i = 0; i < kTabs; ++i)
            EXPECT_EQ(contents(file(i)), "file " + QByteArray::number(i) + "\n") << i;
    }
}

TEST_F(PendingTabCommandsTest, TabMenuActsOnTheTabClickedAmongPendingOnes)
{
    ASSERT_NO_FATAL_FAILURE(restore(3));
    questions.pushAnswer(u"Salva"_s);
    questions.pushAnswer(u"Salva"_s);
    Q_EMIT window().tabMenuRequested(window().currentDocument(), QPoint());
    auto *menu = window().findChild<QMenu *>(u"mirtex.menu.tab"_s);
    ASSERT_NE(menu, nullptr);
    QAction *right = nullptr;
    for (QAction *action : menu->actions())
        if (action->text() == u"Chiudi le schede a destra"_s)
            right = action;
    ASSERT_NE(right, nullptr);
    ASSERT_TRUE(right->isEnabled());
    right->trigger();
    EXPECT_EQ(names(), range(0, 3));
    // Saved, as a loaded tab's unsaved text would be.
    EXPECT_EQ(contents(file(10)), "modificato 10");
    EXPECT_EQ(contents(file(20)), "modificato 20");
}

TEST_F(PendingTabCommandsTest, NextAndPreviousTabGoThroughPendingTabs)
{
    const struct
    {
        const char *command;
        int from;
        int to;
    } cases[] = {
        {"selectNextTab:", 3, 4},
        {"selectNextTab:", kTabs - 1, 0},
        {"selectPreviousTab:", 3, 2},
        {"selectPreviousTab:", 0, kTabs - 1},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(std::string(c.command) + " from " + std::to_string(c.from));
        app.reset();
        ASSERT_NO_FATAL_FAILURE(restore(c.from));
        ASSERT_EQ(window().currentIndex(), c.from);
        ASSERT_TRUE(app->commands().dispatch(QString::fromLatin1(c.command)));
        QCoreApplication::processEvents(); // the tab shown loads
        EXPECT_EQ(window().currentIndex(), c.to);
        ASSERT_NE(window().currentDocument(), nullptr);
        EXPECT_EQ(window().currentDocument()->document().displayName(), u"f%1.txt"_s.arg(c.to));
    }
}

TEST_F(PendingTabCommandsTest, SaveAllSavesPendingTabsUnsavedText)
{
    ASSERT_NO_FATAL_FAILURE(restore(3));
    ASSERT_TRUE(app->commands().dispatch(u"saveAllDocuments:"_s));
    for (int i = 0; i < kTabs; ++i)
        EXPECT_EQ(contents(file(i)),
                  i % 10 == 0 ? QByteArray("modificato " + QByteArray::number(i))
                              : QByteArray("file " + QByteArray::number(i) + "\n"))
            << i;
    EXPECT_EQ(window().pagesInOrder().size(), kTabs);
}

TEST_F(PendingTabCommandsTest, QuittingWithoutSessionAsksAboutPendingTabsUnsavedText)
{
    ASSERT_NO_FATAL_FAILURE(restore(3));
    prefs.setRememberSession(false); // the backups will not be kept: each must be asked about
    questions.pushAnswer(u"Salva"_s);
    questions.pushAnswer(u"Non salvare"_s);
    questions.pushAnswer(u"Annulla"_s);
    EXPECT_FALSE(app->delegate().shouldTerminate());
    EXPECT_EQ(questions.asked().size(), 3u);
    EXPECT_EQ(contents(file(0)), "modificato 0");
    EXPECT_EQ(contents(file(10)), "file 10\n");
    EXPECT_EQ(window().pagesInOrder().size(), kTabs);
}

TEST_F(PendingTabCommandsTest, TabListsNameEveryTabAndComparingLoadsTheOtherOne)
{
    ASSERT_NO_FATAL_FAILURE(restore(3));
    QMenu *windowMenu = app->menu().menu(u"mirtex.menu.window"_s);
    ASSERT_NE(windowMenu, nullptr);
    Q_EMIT windowMenu->aboutToShow();
    QStringList listed;
    for (QAction *action : windowMenu->actions())
        if (action->isCheckable())
            listed.append(action->text());
    EXPECT_EQ(listed, range(0, kTabs - 1));

    QMenu *compare
        = app->menu().menu(u"mirtex.menu.tools"_s)->findChild<QMenu *>(u"mirtex.menu.compare"_s);
    ASSERT_NE(compare, nullptr);
    Q_EMIT compare->aboutToShow();
    QMenu *withTab = compare->findChild<QMenu *>(u"mirtex.menu.compareWithTab"_s);
    ASSERT_NE(withTab, nullptr);
    QStringList others;
    for (QAction *action : withTab->actions())
        others.append(action->text());
    QStringList expected = range(0, kTabs - 1);
    expected.removeAt(3);
    ASSERT_EQ(others, expected);

    withTab->actions()[19]->trigger(); // f20, not loaded yet
    const auto windows
        = window().findChildren<CompareWindow *>(QString(), Qt::FindDirectChildrenOnly);
    ASSERT_EQ(windows.size(), 1);
    DocumentTab *loaded = loadedAt(20);
    ASSERT_NE(loaded, nullptr);
    EXPECT_EQ(loaded->editor()->utf8Text(), "modificato 20");
}

TEST_F(PendingTabCommandsTest, RenamingOrTrashingInTheSidebarCarriesPendingTabsAlong)
{
    ASSERT_NO_FATAL_FAILURE(restore(3));
    questions.pushName(u"rinominato.txt"_s);
    ASSERT_TRUE(app->commands().dispatch(u"renameEntry:"_s, file(10)));
    DocumentTab *renamed = loadedAt(10);
    ASSERT_NE(renamed, nullptr);
    EXPECT_EQ(renamed->document().path(), dir.filePath(u"rinominato.txt"_s));
    EXPECT_EQ(renamed->editor()->utf8Text(), "modificato 10");

    // A file gone from disk: opening its path again selects its tab, not a second one.
    ASSERT_TRUE(QFile::remove(file(20)));
    const int pages = int(window().pagesInOrder().size());
    DocumentTab *reopened = app->flows().openPath(file(20));
    ASSERT_NE(reopened, nullptr);
    EXPECT_EQ(window().pagesInOrder().size(), pages);
    EXPECT_EQ(reopened->editor()->utf8Text(), "modificato 20");
}
