#include "ui/app/ContentSelfTest.h"

#include "core/compare/TextDiff.h"
#include "core/compare/WordChanges.h"
#include "core/markdown/MarkdownRenderer.h"
#include "ui/app/SelfTestRunner.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QStringList>

#include <cstdio>

namespace mirtex {

namespace {

// The right lines rebuilt from the left ones and the hunks: what every diff must allow.
bool rebuildsRight(const TextDiff &diff)
{
    QStringList rebuilt;
    qsizetype leftLine = 0;
    for (const DiffHunk &hunk : diff.hunks) {
        for (; leftLine < hunk.left.start; ++leftLine)
            rebuilt.append(diff.left[leftLine].toString());
        for (qsizetype r = hunk.right.start; r < hunk.right.end; ++r)
            rebuilt.append(diff.right[r].toString());
        leftLine = hunk.left.end;
    }
    for (; leftLine < diff.left.size(); ++leftLine)
        rebuilt.append(diff.left[leftLine].toString());
    return rebuilt.join(u'\n') == diff.right.text();
}

QString numberedLines(int count, const QString &prefix)
{
    QStringList lines;
    lines.reserve(count);
    for (int i = 0; i < count; ++i)
        lines.append(prefix + QString::number(i));
    return lines.join(u'\n');
}

} // namespace

void checkCompare(SelfTestRunner &t)
{
    t.section(QStringLiteral("Confronto"));

    const TextDiff removedFirst(QStringLiteral("a\nb\nc"), QStringLiteral("b\nc"));
    t.check(removedFirst.hunks.size() == 1 && removedFirst.hunks[0] == DiffHunk{{0, 1}, {0, 0}},
            QStringLiteral("riga tolta all'inizio"));

    const TextDiff fromEmpty(QString(), QStringLiteral("uno\ndue"));
    t.check(fromEmpty.hunks.size() == 1 && rebuildsRight(fromEmpty),
            QStringLiteral("da vuoto a pieno"));

    t.check(
        TextDiff(QStringLiteral("Titolo"), QStringLiteral("titolo"), {false, true}).hunks.empty(),
        QStringLiteral("maiuscole ignorate"));
    t.check(TextDiff(QStringLiteral("Titolo"), QStringLiteral("titolo")).hunks.size() == 1,
            QStringLiteral("maiuscole contano"));

    const QString functions
        = QStringLiteral("func a() {\n return 1\n}\n\nfunc b() {\n return 2\n}\n");
    QString inserted = functions;
    inserted.insert(functions.indexOf(u"func b"), u"func c() {\n return 3\n}\n\n");
    const TextDiff function(functions, inserted);
    t.check(function.hunks.size() == 1 && function.hunks[0] == DiffHunk{{4, 4}, {4, 8}},
            QStringLiteral("funzione inserita tra due altre"));

    const auto words
        = wordChanges(u"il prezzo è 10 euro al mese", u"il prezzo è 12 euro al mese", {});
    t.check(words && words->left == std::vector<TextRange>{{12, 2}}
                && words->right == std::vector<TextRange>{{12, 2}},
            QStringLiteral("parole cambiate in una riga"));

    // Random edits: applying the hunks always gives the right text back.
    QRandomGenerator random(20'240'501);
    bool rebuilt = true;
    for (int round = 0; round < 50 && rebuilt; ++round) {
        QStringList left;
        for (int i = 0; i < 60; ++i)
            left.append(QString::number(random.bounded(12)));
        QStringList right = left;
        for (int edit = 0; edit < 8; ++edit) {
            const int at = random.bounded(int(right.size()) + 1);
            switch (random.bounded(3)) {
            case 0:
                right.insert(at, QStringLiteral("nuova"));
                break;
            case 1:
                if (at < right.size())
                    right.removeAt(at);
                break;
            default:
                if (at < right.size())
                    right[at] = QString::number(random.bounded(12));
            }
        }
        rebuilt = rebuildsRight(TextDiff(left.join(u'\n'), right.join(u'\n')));
    }
    t.check(rebuilt, QStringLiteral("modifiche casuali non ricostruite"));

    // 30,000 lines with 31 scattered one-line changes.
    QStringList big = numberedLines(30'000, QStringLiteral("riga ")).split(u'\n');
    QStringList changed = big;
    for (int i = 0; i < 31; ++i)
        changed[500 + i * 900] = QStringLiteral("modificata %1").arg(i);
    QElapsedTimer timer;
    timer.start();
    const TextDiff large(big.join(u'\n'), changed.join(u'\n'));
    const double seconds = double(timer.nsecsElapsed()) / 1e9;
    std::printf("  30.000 righe con 31 differenze: %.2f s\n", seconds);
    std::fflush(stdout);
    t.check(large.hunks.size() == 31, QStringLiteral("31 differenze attese"));
    t.check(
        seconds < 2.0,
        QStringLiteral("confronto di un file grande troppo lento: %1 s").arg(seconds, 0, 'f', 2));

    timer.restart();
    const TextDiff unrelated(numberedLines(100'000, QStringLiteral("sinistra ")),
                             numberedLines(100'000, QStringLiteral("destra ")));
    const double unrelatedSeconds = double(timer.nsecsElapsed()) / 1e9;
    t.check(unrelated.hunks.size() == 1 && unrelatedSeconds < 5.0,
            QStringLiteral("testi tutti diversi: %1 differenze in %2 s")
                .arg(unrelated.hunks.size())
                .arg(unrelatedSeconds, 0, 'f', 2));
}

void checkMarkdown(SelfTestRunner &t)
{
    t.section(QStringLiteral("Markdown"));
    const MarkdownRenderer renderer;
    t.check(renderer.renderBody(QStringLiteral("# Titolo"))
                .contains(QStringLiteral("<h1 id=\"titolo\" data-line=\"0\">Titolo</h1>")),
            QStringLiteral("titolo di primo livello"));

    const std::string sample = "## Sezione\n\nTesto **forte** con `codice` e un "
                               "[collegamento](https://example.org).\n\n- uno\n- due\n\n"
                               "| A | B |\n|:--|--:|\n| 1 | 2 |\n\n```c\nint x = 1;\n```\n\n";
    constexpr int kRepeats = 5'000;
    std::string large;
    large.reserve(sample.size() * kRepeats);
    for (int i = 0; i < kRepeats; ++i)
        large += sample;
    const auto kilobytes = int(large.size() / 1024);
    QElapsedTimer timer;
    timer.start();
    const std::string html = renderer.renderBody(std::move(large));
    const double seconds = double(timer.nsecsElapsed()) / 1e9;
    std::printf("  %d KB di Markdown in %.2f s\n", kilobytes, seconds);
    std::fflush(stdout);
    t.check(seconds < 3.0, QStringLiteral("Markdown troppo lento: %1 s").arg(seconds, 0, 'f', 2));
    qsizetype tables = 0;
    for (auto at = html.find("<table"); at != std::string::npos; at = html.find("<table", at + 1))
        ++tables;
    t.check(tables == kRepeats, QStringLiteral("tabelle nel testo grande: %1").arg(tables));
}

} // namespace mirtex
