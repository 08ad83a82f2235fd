#include "ui/app/SelfTest.h"

#include "core/app/Preferences.h"
#include "core/document/TextCodec.h"
#include "core/languages/Language.h"
#include "core/languages/SyntaxHighlighter.h"
#include "core/languages/Tokenizer.h"
#include "ui/app/AppAssembly.h"
#include "ui/app/AppDelegate.h"
#include "ui/app/ContentSelfTest.h"
#include "ui/app/FoldSelfTest.h"
#include "ui/app/SelfTestRunner.h"
#include "ui/commands/Beep.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>

namespace mirtex {

namespace {

const QString kSamples[]
    = {QStringLiteral("Perché sì: caffè, città, naïve 123\nseconda riga\tcon tab\n"),
       QStringLiteral("Hello world 123\nsecond line\twith tab\n")};

void checkCodec(SelfTestRunner &t)
{
    t.section(QStringLiteral("Codifica"));
    const TextEncoding encodings[] = {TextEncoding::utf8(),
                                      TextEncoding::utf8WithBom(),
                                      TextEncoding::utf16LEWithBom(),
                                      TextEncoding{CharacterSet::utf16LE, false},
                                      TextEncoding::utf16BEWithBom()};
    for (const QString &sample : kSamples) {
        for (const TextEncoding &encoding : encodings) {
            const auto bytes = TextCodec::encode(sample, encoding, LineEnding::lf);
            const auto decoded
                = bytes ? TextCodec::decode(*bytes, std::nullopt, LineEnding::lf) : std::nullopt;
            const QString what = encoding.label();
            if (!t.check(decoded.has_value(), what + QStringLiteral(": non si rilegge")))
                continue;
            t.check(!decoded->text.startsWith(QChar(0xFEFF)),
                    what + QStringLiteral(": il BOM finisce nel testo"));
            t.check(decoded->text == sample, what + QStringLiteral(": il testo cambia"));
            t.check(decoded->encoding == encoding,
                    what + QStringLiteral(": codifica non riconosciuta"));
        }
    }
    const auto latin = TextCodec::encode(kSamples[0], TextEncoding::windows1252(), LineEnding::lf);
    const auto back
        = latin ? TextCodec::decode(*latin, std::nullopt, LineEnding::lf) : std::nullopt;
    t.check(back && back->encoding == TextEncoding::windows1252(),
            QStringLiteral("Windows-1252: codifica non riconosciuta"));
}

void type(DocumentTab *tab, const QString &text)
{
    // As typed: at the caret, which moves behind the text.
    tab->editor()->primaryPane()->SendScintilla(QsciScintillaBase::SCI_REPLACESEL,
                                                text.toUtf8().constData());
}

void checkDocuments(SelfTestRunner &t,
                    const QString &folder,
                    AppAssembly &app,
                    ScriptedQuestions &alerts)
{
    t.section(QStringLiteral("Documenti"));
    MainWindow &window = app.window();
    DocumentFlows &flows = app.flows();

    DocumentTab *first = window.newDocument();
    DocumentTab *second = window.newDocument();
    t.check(first->document().untitledName() == QStringLiteral("nuovo 1")
                && second->document().untitledName() == QStringLiteral("nuovo 2"),
            QStringLiteral("nomi dei nuovi documenti"));
    window.discardDocument(first);
    t.check(window.newDocument()->document().untitledName() == QStringLiteral("nuovo 1"),
            QStringLiteral("il nome libero non viene riusato"));

    type(second, QStringLiteral("x"));
    second->editor()->primaryPane()->SendScintilla(QsciScintillaBase::SCI_DELETEBACK);
    t.check(!second->document().isDirty() && second->document().changeCount() == 2,
            QStringLiteral("scrivere e cancellare lascia il documento modificato"));

    type(second, QStringLiteral("Perché"));
    alerts.pushSaveChoice(SaveChoice{folder + QStringLiteral("/a.txt"),
                                     TextEncoding::windows1252().id(),
                                     QStringLiteral("crlf")});
    t.check(flows.save(second), QStringLiteral("salvataggio con nome fallito"));
    QFile saved(folder + QStringLiteral("/a.txt"));
    t.check(saved.open(QIODevice::ReadOnly) && saved.readAll() == QByteArray("Perch\xE9"),
            QStringLiteral("il file salvato in Windows-1252 non corrisponde"));
    t.check(!second->document().isDirty(), QStringLiteral("dopo il salvataggio resta modificato"));

    type(second, QStringLiteral("ł"));
    alerts.pushAnswer(QStringLiteral("Salva in UTF-8"));
    t.check(flows.save(second) && second->document().encoding() == TextEncoding::utf8(),
            QStringLiteral("l'offerta di UTF-8 non salva in UTF-8"));

    QFile::setPermissions(folder + QStringLiteral("/a.txt"),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
    type(second, QStringLiteral("!"));
    flows.save(second);
    t.check(QFileInfo(folder + QStringLiteral("/a.txt")).permissions()
                == (QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadUser
                    | QFile::WriteUser),
            QStringLiteral("il salvataggio non mantiene i permessi"));

    QFile::link(folder + QStringLiteral("/a.txt"), folder + QStringLiteral("/link.txt"));
    const int before = int(window.documents().size());
    flows.openPath(folder + QStringLiteral("/link.txt"));
    t.check(window.documents().size() == before, QStringLiteral("lo stesso file aperto due volte"));

    type(second, QStringLiteral("?"));
    alerts.pushAnswer(QStringLiteral("Annulla"));
    t.check(!flows.closeDocument(second) && window.documents().contains(second),
            QStringLiteral("\"Annulla\" chiude la scheda"));
    alerts.pushAnswer(QStringLiteral("Non salvare"));
    t.check(flows.closeDocument(second) && !window.documents().contains(second),
            QStringLiteral("\"Non salvare\" non chiude la scheda"));
}

// Runs after checkDocuments on the same, not yet launched, application.
void checkLaunch(SelfTestRunner &t,
                 const QString &folder,
                 AppAssembly &app,
                 ScriptedQuestions &alerts)
{
    t.section(QStringLiteral("Avvio e uscita"));
    MainWindow &window = app.window();
    for (DocumentTab *tab : window.documents())
        window.discardDocument(tab);
    AppDelegate &delegate = app.delegate();
    delegate.handleUrlEvent(QStringLiteral("mirtex:?text=Ciao"));
    delegate.handleUrlEvent(QStringLiteral("other:?text=No"));
    delegate.launch(false);
    auto docs = window.documents();
    t.check(docs.size() == 2 && docs.last()->editor()->text() == QStringLiteral("Ciao")
                && !docs.last()->document().isDirty(),
            QStringLiteral("testo consegnato prima dell'avvio"));
    delegate.handleUrlEvent(QStringLiteral("mirtex:?text=Dopo"));
    docs = window.documents();
    t.check(docs.size() == 3 && docs.last()->document().isDirty(),
            QStringLiteral("testo consegnato dopo l'avvio"));

    // Two modified documents: save the first, cancel at the second.
    type(docs[0], QStringLiteral("uno"));
    alerts.pushAnswer(QStringLiteral("Salva"));
    alerts.pushSaveChoice(
        SaveChoice{folder + QStringLiteral("/uno.txt"), QStringLiteral("4"), QStringLiteral("lf")});
    alerts.pushAnswer(QStringLiteral("Annulla"));
    alerts.clearAsked();
    t.check(!delegate.shouldTerminate(), QStringLiteral("\"Annulla\" non ferma l'uscita"));
    t.check(QFileInfo::exists(folder + QStringLiteral("/uno.txt")) && alerts.asked().size() == 2,
            QStringLiteral("uscita: domande o salvataggi sbagliati"));
}

void checkSyntax(SelfTestRunner &t, const QString &folder)
{
    t.section(QStringLiteral("Sintassi"));
    const QString sample = mixedSampleText();
    for (const LanguagePtr &language : Language::all()) {
        t.check(tokensAreValid(tokenize(*language, sample), sample.size()),
                language->name() + QStringLiteral(": colori sovrapposti o fuori dal testo"));
    }

    // Random typing and deleting in a text too long to re-colour whole on every edit.
    Preferences prefs(folder + QStringLiteral("/syntax.conf"));
    QString longText;
    while (longText.size() <= SyntaxHighlighter::kSynchronousLimit + 10'000)
        longText += sample + u'\n';
    const QByteArray utf8 = longText.toUtf8();
    QRandomGenerator random(20261122);
    for (const LanguagePtr &language : Language::all()) {
        EditorView editor(prefs);
        editor.loadText(utf8);
        editor.setLanguage(language);
        EditorPane *pane = editor.primaryPane();
        bool valid = true;
        for (int step = 0; step < 30 && valid; ++step) {
            const long length = pane->SendScintilla(QsciScintillaBase::SCI_GETLENGTH);
            pane->SendScintilla(QsciScintillaBase::SCI_GOTOPOS, long(random.bounded(int(length))));
            if (random.bounded(3) == 0) {
                pane->SendScintilla(QsciScintillaBase::SCI_DELETEBACK);
            } else {
                static const char *const kPieces[]
                    = {"\"", "/*", "*/", "\n", "x", "#", "'", "<a>", "é", "😀"};
                pane->SendScintilla(QsciScintillaBase::SCI_REPLACESEL, kPieces[random.bounded(10)]);
            }
            valid = tokensAreValid(editor.highlighter().tokens(), editor.textLength());
        }
        QElapsedTimer waited;
        waited.start();
        while (valid && editor.highlighter().isPassPending() && waited.elapsed() < 5000)
            QApplication::processEvents(QEventLoop::AllEvents, 20);
        valid = valid && tokensAreValid(editor.highlighter().tokens(), editor.textLength());
        t.check(valid, language->name() + QStringLiteral(": colori della sintassi incoerenti"));
    }
}

} // namespace

int SelfTest::run()
{
    SelfTestRunner t;
    setBeepSilenced(true);
    QTemporaryDir folder;
    {
        // One application, as the program builds it, with scripted answers.
        Preferences prefs(folder.filePath(QStringLiteral("selftest.conf")));
        prefs.setRememberSession(false);
        ScriptedQuestions alerts;
        AppAssembly app(prefs, alerts);
        checkDocuments(t, folder.path(), app, alerts);
        checkLaunch(t, folder.path(), app, alerts);
    }
    checkCodec(t);
    checkSyntax(t, folder.path());
    checkFolding(t, folder.path());
    checkCompare(t);
    checkMarkdown(t);
    return t.finish();
}

} // namespace mirtex
