#include "ui/app/FoldSelfTest.h"

#include "core/app/Preferences.h"
#include "core/editor/FoldDetection.h"
#include "core/languages/Language.h"
#include "core/languages/Tokenizer.h"
#include "ui/app/SelfTestRunner.h"
#include "ui/editor/EditorFolding.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QElapsedTimer>

#include <cstdio>

namespace mirtex {

namespace {

using Sci = QsciScintillaBase;

std::vector<FoldRegion> detect(const QString &languageId, const QStringList &lines)
{
    const QString text = lines.join(u'\n');
    const QList<Token> tokens = tokenize(*Language::byId(languageId), text);
    return detectFoldRegions(
        {text, foldStyleFor(languageId), foldsHtmlTags(languageId), &tokens, 4});
}

struct StyleCase
{
    const char *languageId;
    QStringList lines;
    std::vector<FoldRegion> expected;
};

void checkStyles(SelfTestRunner &t)
{
    const StyleCase cases[] = {
        {"swift",
         {"struct A {",
          "    func f() {",
          "        if x {",
          "            let s = \"{ non conta\"",
          "        } else {",
          "            // }",
          "        }",
          "    }",
          "    /* commento",
          "       su due righe */",
          "}"},
         {{0, 10, 1}, {1, 7, 2}, {2, 3, 3}, {4, 6, 3}, {8, 9, 2}}},
        {"json",
         {"{", "  \"a\": [", "    1,", "    2", "  ],", "  \"b\": {}", "}"},
         {{0, 6, 1}, {1, 4, 2}}},
        {"python",
         {"def f():", "    x = 1", "", "    if x:", "        y()", "", "print(f())"},
         {{0, 4, 1}, {3, 4, 2}}},
        {"markdown",
         {"# Uno",
          "testo",
          "## Due",
          "altro",
          "```",
          "# non è un titolo",
          "```",
          "",
          "# Tre",
          "fine"},
         {{0, 6, 1}, {2, 6, 2}, {8, 9, 1}}},
        {"html",
         {"<div>", "  <p>uno</p>", "  <br>", "  <ul>", "    <li>a</li>", "  </ul>", "</div>"},
         {{0, 6, 1}, {3, 5, 2}}},
        {"ini", {"[uno]", "a=1", "", "[due]", "b=2", "c=3"}, {{0, 1, 1}, {3, 5, 1}}},
        {"text", {"testo", "  rientrato"}, {}},
    };
    for (const StyleCase &c : cases) {
        t.check(detect(QString::fromLatin1(c.languageId), c.lines) == c.expected,
                QString::fromLatin1(c.languageId) + QStringLiteral(": blocchi sbagliati"));
    }
}

QString visibility(EditorPane *pane)
{
    QString shown;
    const long lines = pane->SendScintilla(Sci::SCI_GETLINECOUNT);
    for (long line = 0; line < lines; ++line)
        shown += pane->SendScintilla(Sci::SCI_GETLINEVISIBLE, line) ? u'1' : u'0';
    return shown;
}

void checkEditor(SelfTestRunner &t, const QString &folder)
{
    Preferences prefs(folder + QStringLiteral("/folding.conf"));
    EditorView editor(prefs);
    const QString text = QStringLiteral("func f() {\n    if a {\n        b()\n    }\n}\nx");
    editor.loadText(text.toUtf8());
    editor.setLanguage(Language::byId(u"swift"));
    EditorFolding &folding = editor.folding();
    folding.detectNow();
    editor.setSelection({text.indexOf(u"b()"), 0});
    folding.fold(0);
    t.check(visibility(editor.primaryPane()) == QStringLiteral("100001"),
            QStringLiteral("piegare \"func f() {\" non nasconde le righe 2-5"));
    t.check(editor.text() == text, QStringLiteral("piegare cambia il testo"));
    t.check(editor.caretOffset() == 10, QStringLiteral("il cursore resta nel testo nascosto"));
    folding.unfoldAll();
    folding.foldLevel(2);
    t.check(folding.foldedLines() == std::vector<qint64>{1},
            QStringLiteral("il livello 2 non piega solo \"if a {\""));
    folding.reveal({text.indexOf(u"b()"), 3});
    t.check(folding.foldedLines().empty(),
            QStringLiteral("una ricerca non apre il blocco intorno al risultato"));
    folding.fold(0);
    editor.primaryPane()->SendScintilla(
        Sci::SCI_INSERTTEXT, long(text.indexOf(u"b()")), "c()\n        ");
    t.check(folding.isFolded(0), QStringLiteral("scrivere nel testo piegato toglie la piega"));
    editor.primaryPane()->undo();
    t.check(editor.text() == text,
            QStringLiteral("annullare dopo la piega non ripristina il testo"));
}

void timeDetection(SelfTestRunner &t)
{
    QString text;
    text.reserve(100'000 * 24);
    for (int n = 0; n < 100'000 / 5; ++n)
        text += QStringLiteral("int f%1(void)\n{\n    if (x) {\n        y();\n    }\n}\n").arg(n);
    text.truncate(text.size() - 1);
    const QList<Token> tokens = tokenize(*Language::byId(u"c"), text);
    QElapsedTimer clock;
    clock.start();
    const auto regions = detectFoldRegions({text, FoldStyle::braces, false, &tokens, 4});
    const double seconds = double(clock.nsecsElapsed()) / 1e9;
    std::printf("  blocchi di 100.000 righe: %.2f s\n", seconds);
    std::fflush(stdout);
    t.check(regions.size() == 100'000 / 5 * 2, QStringLiteral("blocchi di 100.000 righe: conto"));
    // A generous limit: the figure is a report, not a benchmark.
    t.check(seconds < 2.0, QStringLiteral("blocchi di 100.000 righe: troppo lento"));
}

} // namespace

void checkFolding(SelfTestRunner &t, const QString &folder)
{
    t.section(QStringLiteral("Piegatura del codice"));
    checkStyles(t);
    checkEditor(t, folder);
    timeDetection(t);
}

} // namespace mirtex
