// The info bars a tab shows about its file, reached as a user reaches them: real files opened
// through the document flows in a real window, buttons clicked, keys typed.
#include "ui/document/FileNotices.h"

#include "core/app/Preferences.h"
#include "core/document/TextCodec.h"
#include "core/languages/Language.h"
#include "core/languages/SyntaxHighlighter.h"
#include "support/QStringPrinter.h"
#include "support/TestFiles.h"
#include "ui/app/WindowSession.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/InfoBar.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace mirtex;
using namespace Qt::StringLiterals;
using Kind = FileNotices::Kind;

namespace {

// Types one character as a key press would.
void typeKey(EditorPane *pane, char16_t character)
{
    const QString text(QChar{character});
    QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, text);
    QApplication::sendEvent(pane, &press);
}

// A key pressed in the focused widget, through shortcuts as a real key goes.
void pressKey(Qt::Key key)
{
    QTest::keyClick(QApplication::focusWidget(), key);
    QApplication::processEvents();
}

// Runs the event loop until `done` or two seconds have passed.
template<typename Done>
bool waitFor(Done done)
{
    QElapsedTimer clock;
    clock.start();
    while (!done() && clock.elapsed() < 2000) {
        QApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::msleep(5);
    }
    return done();
}

QString barText(DocumentTab *tab, Kind kind)
{
    InfoBar *bar = tab->notices().bar(kind);
    return bar ? bar->text() : QString();
}

QPushButton *button(DocumentTab *tab, Kind kind)
{
    InfoBar *bar = tab->notices().bar(kind);
    return bar && !bar->buttons().isEmpty() ? bar->buttons().first() : nullptr;
}

class FileNoticesTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_dir.isValid());
        m_prefs = std::make_unique<Preferences>(m_dir.filePath(u"settings.conf"_s));
        m_window = std::make_unique<MainWindow>(*m_prefs);
        m_flows = new DocumentFlows(*m_window, m_questions); // owned by the window
        m_window->resize(800, 500);
        m_window->show();
    }

    QString path(const QString &name) const { return m_dir.filePath(name); }

    DocumentTab *open(const QString &name, const QByteArray &bytes)
    {
        writeFile(path(name), bytes);
        return m_flows->openPath(path(name));
    }

    QTemporaryDir m_dir;
    std::unique_ptr<Preferences> m_prefs;
    ScriptedQuestions m_questions;
    std::unique_ptr<MainWindow> m_window;
    DocumentFlows *m_flows = nullptr;
};

} // namespace

TEST_F(FileNoticesTest, EachFileSaysWhatReadingItFound)
{
    const QString japanese = u"今日は雨が降っていて、駅まで歩くのが大変でした。\n"_s;
    const TextEncoding shiftJis{CharacterSet::shiftJIS, false};
    const QByteArray japaneseBytes = *TextCodec::encode(japanese, shiftJis, LineEnding::lf);

    struct Case
    {
        const char *name;
        QByteArray bytes;
        QString binary, hint, mixed;
    };

    const QString lockedBinary = u"Il file sembra binario: è aperto in sola lettura perché "
                                 u"salvarlo ne cambierebbe i byte."_s;
    const Case cases[] = {
        {"plain.txt", "ciao\nmondo\n", {}, {}, {}},
        {"crlf.txt", "uno\r\ndue\r\n", {}, {}, {}},
        {"mixed.txt",
         "uno\r\ndue\r\ntre\n",
         {},
         {},
         u"Fine riga misti: CRLF 2, LF 1. Al salvataggio tutte le righe useranno CRLF."_s},
        {"lone-cr.txt",
         "a\rb\rc\rd\n",
         {},
         {},
         u"Fine riga misti: CR 3, LF 1. Al salvataggio tutte le righe useranno CR."_s},
        {"program.bin",
         QByteArray("\x7f"
                    "ELF\x02\x01\0\0\0\0",
                    10),
         lockedBinary,
         {},
         {}},
        {"japanese.txt", japaneseBytes, {}, u"Il testo sembra in Shift-JIS."_s, {}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        DocumentTab *tab = open(QString::fromLatin1(c.name), c.bytes);
        ASSERT_NE(tab, nullptr);
        EXPECT_EQ(barText(tab, Kind::binary), c.binary);
        EXPECT_EQ(barText(tab, Kind::encodingHint), c.hint);
        EXPECT_EQ(barText(tab, Kind::mixedLineEndings), c.mixed);
        EXPECT_EQ(barText(tab, Kind::coloursOff), QString());
        const bool anyBar = !c.binary.isEmpty() || !c.hint.isEmpty() || !c.mixed.isEmpty();
        EXPECT_EQ(tab->notices().isVisibleTo(tab->page()), anyBar);
        EXPECT_EQ(tab->document().isReadOnly(), !c.binary.isEmpty());
    }
    EXPECT_TRUE(m_questions.asked().empty());
}

TEST_F(FileNoticesTest, ABinaryFileStaysUnchangedUntilTheUserChoosesToEditIt)
{
    // NUL bytes and breaks of all three kinds, as in a program file.
    const QByteArray bytes("\x7f"
                           "ELF\0\0\x01\r\nab\ncd\re\0\n",
                           18);
    DocumentTab *tab = open(u"tool"_s, bytes);
    ASSERT_NE(tab, nullptr);
    ASSERT_TRUE(tab->notices().bar(Kind::binary));
    ASSERT_TRUE(tab->notices().bar(Kind::mixedLineEndings));
    // The most important message comes first.
    EXPECT_LT(tab->notices().bar(Kind::binary)->y(),
              tab->notices().bar(Kind::mixedLineEndings)->y() + 1);
    EXPECT_FALSE(tab->notices().bar(Kind::binary)->isClosable());
    auto *tabs = m_window->findChild<QTabWidget *>();
    ASSERT_NE(tabs, nullptr);
    EXPECT_EQ(tabs->tabText(0), u"tool (sola lettura)"_s);

    EditorPane *pane = tab->editor()->primaryPane();
    const QByteArray before = tab->editor()->utf8Text();
    typeKey(pane, u'x');
    EXPECT_EQ(tab->editor()->utf8Text(), before);
    // Even a change of format cannot be written over the file.
    m_flows->setLineEnding(tab, LineEnding::lf);
    EXPECT_FALSE(m_flows->save(tab));
    EXPECT_EQ(readFile(path(u"tool"_s)), bytes);
    ASSERT_EQ(m_questions.asked().size(), 1u);
    EXPECT_EQ(m_questions.asked()[0].message,
              u"“tool” sembra binario ed è aperto in sola lettura."_s);

    // F6 reaches the bar's button from the text, Escape goes back.
    m_window->activateWindow();
    pane->setFocus();
    ASSERT_TRUE(waitFor([&] { return QApplication::focusWidget() == pane; }));
    QPushButton *editAnyway = button(tab, Kind::binary);
    ASSERT_NE(editAnyway, nullptr);
    EXPECT_EQ(editAnyway->text(), u"Modifica comunque"_s);
    pressKey(Qt::Key_F6);
    EXPECT_EQ(QApplication::focusWidget(), editAnyway);
    pressKey(Qt::Key_Escape);
    EXPECT_EQ(QApplication::focusWidget(), pane);
    EXPECT_TRUE(tab->document().isReadOnly());

    editAnyway->click();
    ASSERT_TRUE(waitFor([&] { return !tab->document().isReadOnly(); }));
    EXPECT_EQ(tab->notices().bar(Kind::binary), nullptr);
    EXPECT_NE(tab->notices().bar(Kind::mixedLineEndings), nullptr);
    EXPECT_EQ(tabs->tabText(0), u"● tool"_s);
    typeKey(pane, u'x');
    EXPECT_NE(tab->editor()->utf8Text(), before);
    EXPECT_TRUE(m_flows->save(tab));
}

TEST_F(FileNoticesTest, TheMixedEndingsBarNamesTheEndingSavingWillWrite)
{
    DocumentTab *tab = open(u"mixed.txt"_s, "a\r\nb\r\nc\n");
    ASSERT_NE(tab, nullptr);
    m_flows->setLineEnding(tab, LineEnding::lf);
    EXPECT_EQ(barText(tab, Kind::mixedLineEndings),
              u"Fine riga misti: CRLF 2, LF 1. Al salvataggio tutte le righe useranno LF."_s);
    // Closing it keeps the file's bars for the next read.
    tab->notices().bar(Kind::mixedLineEndings)->closeButton()->click();
    ASSERT_TRUE(waitFor([&] { return !tab->notices().bar(Kind::mixedLineEndings); }));
    EXPECT_FALSE(tab->notices().isVisibleTo(tab->page()));
}

TEST_F(FileNoticesTest, TheHintReopensTheFileInTheEncodingItNames)
{
    const QString japanese = u"今日は雨が降っていて、駅まで歩くのが大変でした。\n"_s;
    const TextEncoding shiftJis{CharacterSet::shiftJIS, false};
    DocumentTab *tab = open(u"nota.txt"_s, *TextCodec::encode(japanese, shiftJis, LineEnding::lf));
    ASSERT_NE(tab, nullptr);
    ASSERT_NE(tab->editor()->text(), japanese);
    QPushButton *reopen = button(tab, Kind::encodingHint);
    ASSERT_NE(reopen, nullptr);
    EXPECT_EQ(reopen->text(), u"Riapri come Shift-JIS"_s);

    // With changes of its own the user is asked first; cancelling keeps them.
    typeKey(tab->editor()->primaryPane(), u'x');
    m_questions.pushAnswer(u"Annulla"_s);
    reopen->click();
    ASSERT_TRUE(waitFor([&] { return !m_questions.asked().empty(); }));
    EXPECT_TRUE(tab->document().isDirty());
    EXPECT_NE(tab->notices().bar(Kind::encodingHint), nullptr);

    m_questions.pushAnswer(u"Riapri"_s);
    reopen->click();
    ASSERT_TRUE(waitFor([&] { return tab->document().encoding() == shiftJis; }));
    EXPECT_EQ(tab->editor()->text(), japanese);
    EXPECT_FALSE(tab->document().isDirty());
    EXPECT_EQ(tab->notices().bar(Kind::encodingHint), nullptr);
}

TEST_F(FileNoticesTest, ColoursOffAboveTheLimitIsSaidAndUnsaidWithTheLength)
{
    const qsizetype limit = SyntaxHighlighter::kNoHighlightLimit;
    QByteArray text(limit + 10, 'a');
    for (qsizetype i = 80; i < text.size(); i += 81)
        text[i] = '\n';
    DocumentTab *tab = open(u"huge.cpp"_s, text);
    ASSERT_NE(tab, nullptr);
    ASSERT_TRUE(tab->editor()->highlighter().language()->hasRegex());
    EXPECT_TRUE(barText(tab, Kind::coloursOff).startsWith(u"Colori della sintassi disattivati"_s));

    // Plain text has no colours to turn off; C++ again has.
    tab->setLanguage(Language::byId(u"text"_s));
    EXPECT_EQ(tab->notices().bar(Kind::coloursOff), nullptr);
    tab->setLanguage(Language::byId(u"cpp"_s));
    ASSERT_NE(tab->notices().bar(Kind::coloursOff), nullptr);

    // Below the limit again after an edit, once typing pauses.
    EditorPane *pane = tab->editor()->primaryPane();
    pane->SendScintilla(QsciScintillaBase::SCI_SETSEL, 0L, 100L);
    pane->SendScintilla(QsciScintillaBase::SCI_REPLACESEL, "");
    ASSERT_TRUE(waitFor([&] { return !tab->notices().bar(Kind::coloursOff); }));
    // And over it again.
    pane->SendScintilla(QsciScintillaBase::SCI_REPLACESEL, QByteArray(200, 'b').constData());
    ASSERT_TRUE(waitFor([&] { return tab->notices().bar(Kind::coloursOff) != nullptr; }));
}

TEST_F(FileNoticesTest, FailedReadsSayWhy)
{
    writeFile(path(u"file.txt"_s), "x");
    ASSERT_EQ(::mkfifo(QFile::encodeName(path(u"pipe"_s)).constData(), 0600), 0);

    struct Case
    {
        QString name, message, reason;
    };

    // A missing file in an existing folder opens as a new tab (see TabFlowsTest); in a folder that
    // does not exist it cannot be created.
    const Case cases[] = {
        {u"file.txt/inside.txt"_s, u"Impossibile creare “inside.txt”"_s, QString()},
        {u"pipe"_s, u"Impossibile leggere “pipe”."_s, u"Non è un file normale."_s},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name.toStdString());
        m_questions.clearAsked();
        EXPECT_EQ(m_flows->openPath(path(c.name)), nullptr);
        ASSERT_EQ(m_questions.asked().size(), 1u);
        EXPECT_TRUE(m_questions.asked()[0].message.startsWith(c.message))
            << m_questions.asked()[0].message.toStdString();
        EXPECT_EQ(m_questions.asked()[0].informative, c.reason);
    }

    // Reopening a file that has gone away says so too.
    DocumentTab *tab = m_flows->openPath(path(u"file.txt"_s));
    ASSERT_NE(tab, nullptr);
    ASSERT_TRUE(QFile::remove(path(u"file.txt"_s)));
    m_questions.clearAsked();
    m_flows->reopenWithEncoding(tab, TextEncoding::isoLatin1());
    ASSERT_EQ(m_questions.asked().size(), 1u);
    EXPECT_EQ(m_questions.asked()[0].message, u"Impossibile leggere “file.txt”."_s);
    EXPECT_EQ(m_questions.asked()[0].informative, u"Il file non esiste."_s);
}

TEST_F(FileNoticesTest, ARestoredBinaryTabIsLockedUnlessItHoldsUnsavedEdits)
{
    const QByteArray bytes("\x7f"
                           "ELF\0\0\x01\n",
                           8);
    const QString state = path(u"state"_s);
    {
        DocumentTab *untouched = open(u"untouched.bin"_s, bytes);
        DocumentTab *edited = open(u"edited.bin"_s, bytes);
        ASSERT_TRUE(untouched && edited);
        button(edited, Kind::binary)->click();
        ASSERT_TRUE(waitFor([&] { return !edited->document().isReadOnly(); }));
        typeKey(edited->editor()->primaryPane(), u'x');
        WindowSession(*m_prefs, state).write(*m_window);
    }
    MainWindow window(*m_prefs);
    DocumentFlows flows(window, m_questions);
    ASSERT_TRUE(WindowSession(*m_prefs, state).restore(flows));
    const QList<DocumentTab *> tabs = window.documents();
    ASSERT_EQ(tabs.size(), 2);
    EXPECT_TRUE(tabs[0]->document().isReadOnly());
    EXPECT_TRUE(tabs[0]->notices().locksSaving());
    EXPECT_NE(button(tabs[0], Kind::binary), nullptr);
    EXPECT_FALSE(tabs[1]->document().isReadOnly());
    EXPECT_TRUE(tabs[1]->document().isDirty());
    EXPECT_EQ(barText(tabs[1], Kind::binary),
              u"Il file sembra binario: salvarlo ne cambierebbe i byte."_s);
    EXPECT_FALSE(tabs[1]->notices().locksSaving());
}
