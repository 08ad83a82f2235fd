// The application as the program, the snapshots and the self-test build it: menus laid out from
// the registry, actions enabled as the current tab allows, and the quit sequence.
#include "ui/app/AppAssembly.h"

#include "core/app/Preferences.h"
#include "support/QStringPrinter.h"
#include "ui/app/AppDelegate.h"
#include "ui/app/MainMenu.h"
#include "ui/app/RecoveryCommands.h"
#include "ui/app/SecondaryWindows.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QAction>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QHash>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QTemporaryDir>
#include <QTreeWidget>

#include <gtest/gtest.h>

using namespace mirtex;
using namespace Qt::StringLiterals;

namespace {

void type(DocumentTab *tab, const QString &text)
{
    tab->editor()->primaryPane()->SendScintilla(QsciScintillaBase::SCI_REPLACESEL,
                                                text.toUtf8().constData());
}

class AppAssemblyTest : public ::testing::Test
{
protected:
    QTemporaryDir dir;
    Preferences prefs{dir.filePath(u"settings.conf"_s)};
    ScriptedQuestions questions;
    AppAssembly app{prefs, questions};

    // The states users see, by object name.
    QStringList enabled(const QStringList &names) const
    {
        QStringList result;
        for (const QString &name : names) {
            QAction *action = app.commands().action(name);
            if (action && action->isEnabled())
                result.append(name);
        }
        return result;
    }
};

} // namespace

TEST_F(AppAssemblyTest, ActionsFollowTheCurrentTabItsLockAndItsSelection)
{
    const QStringList names = {u"saveDocument:"_s,
                               u"closeTab:"_s,
                               u"undo:"_s,
                               u"cut:"_s,
                               u"copy:"_s,
                               u"paste:"_s,
                               u"splitSideBySide:"_s,
                               u"convertEncoding:4"_s,
                               u"reopenWithEncoding:4"_s,
                               u"setLineEnding:crlf"_s,
                               u"setLanguage:python"_s,
                               u"newDocument:"_s};
    EXPECT_EQ(enabled(names), QStringList{u"newDocument:"_s}) << "no document";

    DocumentTab *tab = app.window().newDocument();
    type(tab, u"testo"_s);
    const QStringList editable = {u"saveDocument:"_s,
                                  u"closeTab:"_s,
                                  u"undo:"_s,
                                  u"paste:"_s,
                                  u"splitSideBySide:"_s,
                                  u"convertEncoding:4"_s,
                                  u"reopenWithEncoding:4"_s,
                                  u"setLineEnding:crlf"_s,
                                  u"setLanguage:python"_s,
                                  u"newDocument:"_s};
    EXPECT_EQ(enabled(names), editable) << "nothing selected";

    // Scintilla tells of a new selection when it next updates the screen.
    app.window().show();
    tab->editor()->setSelection({0, 4});
    QElapsedTimer waited;
    waited.start();
    while (!app.commands().action(u"copy:"_s)->isEnabled() && waited.elapsed() < 5000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    QStringList selected = editable;
    selected.insert(3, u"cut:"_s);
    selected.insert(4, u"copy:"_s);
    EXPECT_EQ(enabled(names), selected);

    QAction *python = app.commands().action(u"setLanguage:"_s, u"python"_s);
    EXPECT_FALSE(python->isChecked());
    ASSERT_TRUE(app.commands().dispatch(u"setLanguage:"_s, u"python"_s));
    EXPECT_EQ(tab->document().languageId(), u"python"_s);
    EXPECT_TRUE(python->isChecked());

    tab->setReadOnly(true);
    EXPECT_EQ(enabled(names),
              (QStringList{u"saveDocument:"_s,
                           u"closeTab:"_s,
                           u"copy:"_s,
                           u"splitSideBySide:"_s,
                           u"reopenWithEncoding:4"_s,
                           u"setLanguage:python"_s,
                           u"newDocument:"_s}))
        << "read-only";
    EXPECT_FALSE(app.commands().dispatch(u"paste:"_s)) << "a disabled command does not run";

    app.window().discardDocument(tab);
    EXPECT_EQ(enabled(names), QStringList{u"newDocument:"_s}) << "closed again";
}

TEST_F(AppAssemblyTest, MenusLayOutRegisteredCommandsAndTheThemeMenu)
{
    QList<QString> heard;
    app.commands().addListener(
        [&heard](const QString &name, const QVariant &) { heard.append(name); });
    QMenu *view = app.menu().menu(u"mirtex.menu.view"_s);
    ASSERT_TRUE(view);
    QMenu *themes = view->findChild<QMenu *>(u"mirtex.menu.theme"_s);
    ASSERT_TRUE(themes) << "the theme menu is part of every assembly";
    QAction *dark = nullptr;
    for (QAction *action : themes->actions()) {
        if (action->objectName() == u"chooseTheme:dark"_s)
            dark = action;
    }
    ASSERT_TRUE(dark);
    dark->trigger();
    EXPECT_EQ(prefs.themeID(), u"dark"_s);
    EXPECT_TRUE(dark->isChecked());

    // Every action in the menu bar is a registered command or a submenu.
    std::function<void(QMenu *)> walk = [&](QMenu *menu) {
        for (QAction *action : menu->actions()) {
            if (action->menu()) {
                walk(action->menu());
                continue;
            }
            if (action->isSeparator())
                continue;
            const QString name = action->objectName();
            EXPECT_TRUE(app.commands().find(name)
                        || app.commands().find(name.section(u':', 0, 0) + u':'))
                << name.toStdString();
        }
    };
    for (QAction *top : app.window().menuBar()->actions())
        walk(top->menu());

    QAction *wrap = app.commands().action(u"toggleWordWrap:"_s);
    ASSERT_TRUE(view->actions().contains(wrap));
    const bool before = prefs.wordWrap();
    wrap->trigger();
    EXPECT_NE(prefs.wordWrap(), before);
    EXPECT_EQ(wrap->isChecked(), prefs.wordWrap());
    prefs.setWordWrap(before);
    EXPECT_EQ(wrap->isChecked(), before) << "settings changed elsewhere show in the menu";
    EXPECT_EQ(heard, (QList<QString>{u"chooseTheme:"_s, u"toggleWordWrap:"_s}));
}

TEST_F(AppAssemblyTest, TheShortcutsWindowListsCommandsWithKeysAndGoesWhenClosed)
{
    ASSERT_TRUE(app.commands().dispatch(u"showShortcuts:"_s));
    QWidget *window = app.secondaryWindows().find(u"shortcuts"_s);
    ASSERT_TRUE(window);
    ASSERT_TRUE(app.commands().dispatch(u"showShortcuts:"_s));
    EXPECT_EQ(app.secondaryWindows().find(u"shortcuts"_s), window) << "raised, not made again";

    auto *list = window->findChild<QTreeWidget *>();
    ASSERT_TRUE(list);
    QMap<QString, QString> rows;
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        rows.insert(list->topLevelItem(i)->text(0), list->topLevelItem(i)->text(1));
    EXPECT_EQ(list->topLevelItem(0)->text(0), u"File › Nuovo"_s) << "in the menus' order";
    EXPECT_EQ(rows.value(u"Visualizza › Ingrandisci"_s),
              QKeySequence(u"Ctrl++"_s).toString(QKeySequence::NativeText) + u" / "_s
                  + QKeySequence(u"Ctrl+="_s).toString(QKeySequence::NativeText));
    EXPECT_TRUE(rows.contains(u"Modifica › Impostazioni…"_s));
    EXPECT_FALSE(rows.contains(u"Visualizza › Un solo riquadro"_s)) << "no key, not listed";

    QPointer<QWidget> closed = window;
    window->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(closed.isNull());
    EXPECT_EQ(app.secondaryWindows().find(u"shortcuts"_s), nullptr);
}

TEST(AppDelegateTest, QuitWithoutSessionAsksForEachModifiedDocument)
{
    QTemporaryDir dir;
    Preferences prefs(dir.filePath(u"settings.conf"_s));
    prefs.setRememberSession(false);
    ScriptedQuestions questions({u"Non salvare"_s, u"Non salvare"_s});
    AppAssembly app(prefs, questions);
    AppDelegate &delegate = app.delegate();
    delegate.launch(false);
    MainWindow *window = &app.window();
    type(window->documents()[0], u"uno"_s);
    window->newDocument(); // clean: not asked about
    type(window->newDocument(), u"tre"_s);

    EXPECT_TRUE(delegate.shouldTerminate());
    const auto &asked = questions.asked();
    ASSERT_EQ(asked.size(), 2u);
    EXPECT_EQ(asked[0].message, u"Salvare le modifiche a “nuovo 1”?"_s);
    EXPECT_EQ(asked[1].message, u"Salvare le modifiche a “nuovo 3”?"_s);
    EXPECT_EQ(asked[0].informative, u"Se non salvi, le modifiche andranno perse."_s);
    EXPECT_EQ(asked[0].buttons, (QStringList{u"Salva"_s, u"Annulla"_s, u"Non salvare"_s}));

    EXPECT_TRUE(delegate.shouldTerminate()) << "approved once, quitting asks nothing more";
    EXPECT_EQ(asked.size(), 2u);
}

namespace {

// A session whose writes fail a given number of times, as a full or read-only state disk does.
class FailingSession : public SessionKeeper
{
public:
    explicit FailingSession(int failures, bool writer = true)
        : m_failures(failures)
        , m_writer(writer)
    {}

    bool isWriter() const override { return m_writer; }

    bool restore(DocumentFlows &) override { return false; }

    std::optional<QString> write(MainWindow &) override
    {
        ++writes;
        if (m_failures-- > 0)
            return u"/stato/session.json: spazio esaurito sul disco"_s;
        return std::nullopt;
    }

    void remove() override { ++removals; }

    QString folderPath() const override { return {}; }

    int writes = 0;
    int removals = 0;

private:
    int m_failures;
    bool m_writer;
};

} // namespace

TEST(AppDelegateTest, QuitAsksWhenTheSessionCannotBeWritten)
{
    const struct
    {
        QStringList answers;
        int failures;
        bool quits;
        int writes;
        qsizetype asked;
    } cases[] = {
        {{u"Riprova"_s}, 1, true, 2, 1},                           // the retry works
        {{u"Riprova"_s, u"Esci comunque"_s}, 5, true, 2, 2},       // gives up knowingly
        {{u"Salva i documenti…"_s, u"Annulla"_s}, 5, false, 1, 2}, // then cancels saving
        {{}, 0, true, 1, 0},                                       // written: nothing asked
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.answers.join(u", "_s).toStdString());
        QTemporaryDir dir;
        Preferences prefs(dir.filePath(u"settings.conf"_s));
        ScriptedQuestions questions(std::deque<QString>(c.answers.begin(), c.answers.end()));
        auto session = std::make_unique<FailingSession>(c.failures);
        FailingSession *keeper = session.get();
        AppAssembly app(prefs, questions, std::move(session));
        app.delegate().launch(false);
        type(app.window().documents()[0], u"mai salvato"_s);

        EXPECT_EQ(app.delegate().shouldTerminate(), c.quits);
        EXPECT_EQ(keeper->writes, c.writes);
        ASSERT_EQ(questions.asked().size(), size_t(c.asked));
        if (c.asked > 0) {
            const AskedQuestion &first = questions.asked().front();
            EXPECT_EQ(first.message, u"Non è stato possibile salvare la sessione."_s);
            EXPECT_TRUE(first.informative.contains(u"spazio esaurito sul disco"_s));
            EXPECT_EQ(first.buttons,
                      (QStringList{u"Riprova"_s, u"Salva i documenti…"_s, u"Esci comunque"_s}));
        }
    }
}

// A second instance does not keep the session: it says so once, never writes or removes it,
// and asks about its modified tabs at quit since they will not come back.
TEST(AppDelegateTest, AnInstanceWithoutTheSessionSaysSoAndAsksAtQuit)
{
    QTemporaryDir dir;
    Preferences prefs(dir.filePath(u"settings.conf"_s));
    ScriptedQuestions questions({u"Non salvare"_s});
    auto session = std::make_unique<FailingSession>(0, false);
    FailingSession *keeper = session.get();
    AppAssembly app(prefs, questions, std::move(session));
    app.delegate().launch(false);
    QCoreApplication::processEvents();
    ASSERT_EQ(questions.asked().size(), 1u);
    EXPECT_EQ(questions.asked()[0].message,
              u"Un'altra finestra di Mirtex++ sta già salvando la sessione: questa finestra "
              u"non la ricorderà."_s);
    type(app.window().documents()[0], u"testo"_s);
    app.delegate().writeSessionIfRemembered();
    EXPECT_TRUE(app.delegate().shouldTerminate());
    app.delegate().willTerminate();
    EXPECT_EQ(questions.asked().size(), 2u);
    EXPECT_EQ(questions.asked()[1].message, u"Salvare le modifiche a “nuovo 1”?"_s);
    EXPECT_EQ(keeper->writes, 0);
    EXPECT_EQ(keeper->removals, 0);
}

// "Recupera testo non salvato…" in the File menu opens a text set aside as a modified tab.
TEST(RecoveryCommandsTest, ARecoveredTextOpensAsAModifiedUntitledTab)
{
    QTemporaryDir dir;
    Preferences prefs(dir.filePath(u"settings.conf"_s));
    ScriptedQuestions questions;
    AppAssembly app(prefs, questions);
    QAction *recover = app.commands().action(u"recoverUnsavedText:"_s);
    ASSERT_TRUE(recover);
    EXPECT_TRUE(app.menu().menu(u"mirtex.menu.file"_s)->actions().contains(recover));
    recover->trigger();
    ASSERT_EQ(questions.asked().size(), 1u);
    EXPECT_EQ(questions.asked()[0].message, u"Non c'è testo non salvato da recuperare."_s);

    const QString path = dir.filePath(u"20260101-120000-x.txt"_s);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("ritrovato \xFF\n");
    file.close();
    DocumentTab *tab = RecoveryCommands::openRecovered(app.window(), path);
    ASSERT_TRUE(tab);
    EXPECT_EQ(tab->editor()->text(), u"ritrovato \uFFFD\n"_s);
    EXPECT_TRUE(tab->document().isDirty());
    EXPECT_FALSE(tab->document().path());
}

// Two actions on one key: Qt runs neither ("ambiguous shortcut") and the user gets nothing.
TEST_F(AppAssemblyTest, NoTwoActionsShareAKey)
{
    QList<QAction *> actions = app.window().actions();
    QList<QMenu *> menus;
    for (QAction *action : app.window().menuBar()->actions())
        if (action->menu())
            menus.append(action->menu());
    while (!menus.isEmpty()) {
        QMenu *menu = menus.takeLast();
        for (QAction *action : menu->actions()) {
            actions.append(action);
            if (action->menu())
                menus.append(action->menu());
        }
    }
    QHash<QString, QAction *> owner;
    QStringList clashes;
    for (QAction *action : actions) {
        for (const QKeySequence &key : action->shortcuts()) {
            const QString text = key.toString(QKeySequence::PortableText);
            QAction *&first = owner[text];
            if (first && first != action)
                clashes.append(text + u": "_s + first->text() + u" / "_s + action->text());
            else
                first = action;
        }
    }
    EXPECT_GT(owner.size(), 60) << "the menus were not walked";
    clashes.removeDuplicates();
    EXPECT_TRUE(clashes.isEmpty()) << clashes.join(u"; "_s).toStdString();
}
