// The document flows in a real window, with scripted answers: what is asked, in which words, and
// what each answer does.
#include "ui/document/DocumentFlows.h"

#include "core/app/Preferences.h"
#include "support/QStringPrinter.h"
#include "support/TestFiles.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QCoreApplication>
#include <QDir>
#include <QDropEvent>
#include <QFile>
#include <QFileInfo>
#include <QMimeData>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace mirtex;
using namespace Qt::StringLiterals;

namespace {

void type(EditorPane *pane, const QString &text)
{
    pane->SendScintilla(QsciScintillaBase::SCI_REPLACESEL, text.toUtf8().constData());
}

void type(DocumentTab *tab, const QString &text)
{
    type(tab->editor()->primaryPane(), text);
}

// Every test gets its own settings file and scripted questions.
class DocumentFlowsTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_dir.isValid());
        m_prefs = std::make_unique<Preferences>(m_dir.filePath(u"settings.conf"_s));
        m_prefs->setCheckExternalChanges(true);
        m_window = std::make_unique<MainWindow>(*m_prefs);
        m_flows = new DocumentFlows(*m_window, m_questions); // owned by the window
    }

    QString path(const QString &name) const { return m_dir.filePath(name); }

    const std::deque<AskedQuestion> &asked() const { return m_questions.asked(); }

    // Sets the file's modification time `seconds` away from now.
    static void touch(const QString &path, int seconds)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(file.setFileTime(QDateTime::currentDateTime().addSecs(seconds),
                                     QFileDevice::FileModificationTime));
    }

    QTemporaryDir m_dir;
    std::unique_ptr<Preferences> m_prefs;
    ScriptedQuestions m_questions;
    std::unique_ptr<MainWindow> m_window;
    DocumentFlows *m_flows = nullptr;
};

} // namespace

TEST_F(DocumentFlowsTest, LargeFilesAreOpenedOnlyWhenTheUserAgrees)
{
    // Sparse, so no disk space is used. The first byte cannot start UTF-8: reading the file at
    // exactly the limit then ends in a decoding error instead of a 200 MB tab.
    const QString big = path(u"big.log"_s);
    writeFile(big, "\xFF");
    ASSERT_TRUE(QFile::resize(big, 200'000'000));
    EXPECT_EQ(m_flows->openPath(big, TextEncoding::utf8()), nullptr);
    ASSERT_EQ(asked().size(), 1u);
    EXPECT_EQ(asked()[0].message, u"“big.log” non si può leggere come UTF-8."_s)
        << "exactly at the limit nothing is asked";

    ASSERT_TRUE(QFile::resize(big, 200'000'001));
    for (const QString &answer : {u"Annulla"_s, QString()}) {
        m_questions.clearAsked();
        if (!answer.isEmpty())
            m_questions.pushAnswer(answer);
        EXPECT_EQ(m_flows->openPath(big), nullptr);
        ASSERT_EQ(asked().size(), 1u) << "a cancelled open reads nothing and reports nothing";
        EXPECT_EQ(asked()[0].message, u"“big.log” è molto grande (200 MB)."_s);
        EXPECT_EQ(asked()[0].informative, u"Aprirlo può richiedere tempo e molta memoria."_s);
        EXPECT_EQ(asked()[0].buttons, (QStringList{u"Apri comunque"_s, u"Annulla"_s}));
    }
    EXPECT_TRUE(m_window->documents().isEmpty());
}

TEST_F(DocumentFlowsTest, UnreadableFilesAreReported)
{
    // A missing file opens as a new one (TabFlowsTest); a link to nothing does not.
    ASSERT_TRUE(QFile::link(path(u"gone.txt"_s), path(u"dangling.txt"_s)));
    EXPECT_EQ(m_flows->openPath(path(u"dangling.txt"_s)), nullptr);
    ASSERT_EQ(asked().size(), 1u);
    EXPECT_EQ(asked()[0].message, u"Impossibile leggere “dangling.txt”."_s);
    EXPECT_TRUE(m_window->documents().isEmpty());
}

TEST_F(DocumentFlowsTest, AFailedSaveKeepsTheTextAndTheModification)
{
    ASSERT_TRUE(QDir(m_dir.path()).mkdir(u"taken.txt"_s)); // a folder where the file should go
    DocumentTab *tab = m_window->newDocument();
    type(tab, u"da non perdere"_s);

    m_questions.pushAnswer(u"Salva"_s);
    m_questions.pushSaveChoice(SaveChoice{path(u"taken.txt"_s), u"4"_s, u"lf"_s});
    EXPECT_FALSE(m_flows->closeDocument(tab));

    ASSERT_TRUE(m_window->documents().contains(tab));
    EXPECT_EQ(tab->editor()->text(), u"da non perdere"_s);
    EXPECT_TRUE(tab->document().isDirty());
    EXPECT_FALSE(tab->document().path());
    ASSERT_EQ(asked().size(), 2u);
    EXPECT_TRUE(asked()[1].message.startsWith(u"Impossibile salvare “taken.txt”"_s));
    EXPECT_TRUE(QFileInfo(path(u"taken.txt"_s)).isDir());
}

TEST_F(DocumentFlowsTest, AFileGoneFromDiskIsReportedOnce)
{
    writeFile(path(u"a.txt"_s), "testo\n");
    DocumentTab *tab = m_flows->openPath(path(u"a.txt"_s));
    ASSERT_TRUE(tab);
    ASSERT_TRUE(QFile::remove(path(u"a.txt"_s)));

    m_flows->checkExternalChanges();
    ASSERT_EQ(asked().size(), 1u);
    EXPECT_EQ(asked()[0].message, u"“a.txt” non esiste più sul disco."_s);
    EXPECT_EQ(asked()[0].informative, u"Vuoi tenerlo aperto? Salvandolo lo ricrei."_s);
    ASSERT_TRUE(m_window->documents().contains(tab)) << "kept open by default";
    EXPECT_EQ(tab->editor()->text(), u"testo\n"_s);

    m_flows->checkExternalChanges();
    EXPECT_EQ(asked().size(), 1u);
    ASSERT_TRUE(m_flows->save(tab));
    EXPECT_TRUE(QFileInfo::exists(path(u"a.txt"_s)));
}

TEST_F(DocumentFlowsTest, AFileChangedOnDiskIsReloadedOrIgnored)
{
    const QString file = path(u"b.txt"_s);
    writeFile(file, "primo\n");
    DocumentTab *tab = m_flows->openPath(file);
    ASSERT_TRUE(tab);
    const QString reloadQuestion = u"È stato modificato da un altro programma. Vuoi ricaricarlo?"_s;
    const QString loseQuestion
        = u"È stato modificato da un altro programma. Ricaricandolo perderai le modifiche fatte qui."_s;

    writeFile(file, "secondo\n");
    touch(file, 10);
    m_questions.pushAnswer(u"Ricarica"_s);
    m_flows->checkExternalChanges();
    ASSERT_EQ(asked().size(), 1u);
    EXPECT_EQ(asked()[0].informative, reloadQuestion);
    EXPECT_EQ(asked()[0].buttons, (QStringList{u"Ricarica"_s, u"Ignora"_s}));
    EXPECT_EQ(tab->editor()->text(), u"secondo\n"_s);
    EXPECT_FALSE(tab->document().isDirty());

    // Not checked while the preference is off.
    m_prefs->setCheckExternalChanges(false);
    touch(file, 20);
    m_flows->checkExternalChanges();
    EXPECT_EQ(asked().size(), 1u);
    m_prefs->setCheckExternalChanges(true);

    type(tab, u"mio "_s);
    writeFile(file, "terzo\n");
    touch(file, 30);
    m_questions.pushAnswer(u"Ignora"_s);
    m_flows->checkExternalChanges();
    ASSERT_EQ(asked().size(), 2u);
    EXPECT_EQ(asked()[1].informative, loseQuestion);
    EXPECT_EQ(tab->editor()->text(), u"mio secondo\n"_s);
    EXPECT_TRUE(tab->document().isDirty());

    m_flows->checkExternalChanges();
    EXPECT_EQ(asked().size(), 2u) << "an ignored change is asked about once";
}

TEST_F(DocumentFlowsTest, NewDocumentsTakeTheDefaultFormat)
{
    const struct
    {
        QString encodingId;
        QString endingId;
        TextEncoding encoding;
        LineEnding ending;
    } cases[] = {
        {u"12"_s, u"crlf"_s, TextEncoding::windows1252(), LineEnding::crlf},
        {u"4+bom"_s, u"cr"_s, TextEncoding::utf8WithBom(), LineEnding::cr},
        {u"999"_s, u"CRLF"_s, TextEncoding::utf8(), LineEnding::lf}, // names no encoding
        {u"utf8"_s, QString(), TextEncoding::utf8(), LineEnding::lf},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.encodingId.toStdString());
        m_prefs->setDefaultEncodingID(c.encodingId);
        m_prefs->setDefaultLineEndingID(c.endingId);
        const Document &doc = m_window->newDocument()->document();
        EXPECT_EQ(doc.encoding().id(), c.encoding.id());
        EXPECT_EQ(doc.lineEnding(), c.ending);
    }
}

TEST_F(DocumentFlowsTest, AFolderOpensAsTheWorkspace)
{
    ASSERT_TRUE(QDir(m_dir.path()).mkdir(u"project"_s));
    writeFile(path(u"project/main.c"_s), "int main;\n");
    EXPECT_EQ(m_flows->openPaths({path(u"project"_s), path(u"project/main.c"_s)}), 1);
    ASSERT_EQ(m_window->documents().size(), 1);
    EXPECT_EQ(m_window->documents()[0]->document().displayName(), u"main.c"_s);
    EXPECT_TRUE(
        m_window->workspaceFolders().contains(QFileInfo(path(u"project"_s)).canonicalFilePath()));
    EXPECT_TRUE(m_window->isSidebarVisible());
    EXPECT_TRUE(asked().empty());
}

TEST_F(DocumentFlowsTest, FilesDroppedOnTheEditorOpenInTabs)
{
    writeFile(path(u"dropped.txt"_s), "portato qui\n");
    DocumentTab *tab = m_window->newDocument();
    type(tab, u"x"_s); // an untouched tab would give way to the file
    m_window->show();
    QWidget *viewport = tab->editor()->primaryPane()->viewport();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path(u"dropped.txt"_s))});
    data.setText(path(u"dropped.txt"_s)); // file managers send the path as text too
    const QPoint at = viewport->rect().center();
    QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(viewport, &enter);
    QDropEvent drop(QPointF(at), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(viewport, &drop);
    ASSERT_EQ(m_window->documents().size(), 2);
    EXPECT_EQ(m_window->documents().last()->editor()->text(), u"portato qui\n"_s);
    EXPECT_EQ(tab->editor()->text(), u"x"_s) << "the path was pasted into the editor";
}
