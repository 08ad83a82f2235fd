// Highlighting speed on a generated 1,000,000-line C file: full pass over the first 8,000,000
// units, one keystroke's upkeep in that text (p50/p99), and the first 100,000 lines.
#include "core/languages/SyntaxHighlighter.h"
#include "core/languages/Tokenizer.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QRandomGenerator>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <vector>

using namespace mirtex;

namespace {

// About 29 UTF-16 units a line on average, mixing every construct the C rules colour.
QString generatedCSource(int lineCount)
{
    QString text;
    text.reserve(qsizetype(lineCount) * 30);
    for (int i = 0; i < lineCount; ++i) {
        const QString n = QString::number(i);
        switch (i % 12) {
        case 0:
            text += u"#include <stdio.h>\n";
            break;
        case 1:
            text += u"/* block comment " + n + u" */\n";
            break;
        case 2:
            text += u"static int fn_" + n + u"(int a, char *b) {\n";
            break;
        case 3:
            text += u"    size_t count = " + n + u";\n";
            break;
        case 4:
            text += u"    if (a > 0x1F) return count;\n";
            break;
        case 5:
            text += u"    printf(\"value %d\\n\", a);\n";
            break;
        case 6:
            text += u"    double d = 1.5e-3 * a; // scale\n";
            break;
        case 7:
            text += u"    char c = 'x';\n";
            break;
        case 8:
            text += u"    while (b[a] != '\\0') ++a;\n";
            break;
        case 9:
            text += u"    return (int)d + c;\n";
            break;
        case 10:
            text += u"}  /* end of fn_" + n + u" */\n";
            break;
        default:
            text += u"    total += fn_" + n + u"(count, \"label\") * 2; /* sum */\n";
            break;
        }
    }
    return text;
}

const QString &largeText()
{
    static const QString text = generatedCSource(1'000'000);
    return text;
}

QStringView firstUnits(qsizetype units)
{
    return QStringView(largeText()).first(std::min(units, largeText().size()));
}

QStringView firstLines(int lines)
{
    qsizetype end = 0;
    for (int i = 0; i < lines && end >= 0; ++i)
        end = largeText().indexOf(u'\n', end) + 1;
    return QStringView(largeText()).first(end);
}

class BenchTarget : public HighlightTarget
{
public:
    QString text() const override { return content; }

    qsizetype textLength() const override { return content.size(); }

    void paintTokens(const SyntaxHighlighter &) override {}

    QString content;
};

void BM_HighlightFullPass8M(benchmark::State &state)
{
    const Language &c = *Language::byId(u"c");
    const QStringView text = firstUnits(SyntaxHighlighter::kNoHighlightLimit);
    qsizetype tokens = 0;
    for (auto _ : state) {
        tokens = tokenize(c, text).size();
        benchmark::DoNotOptimize(tokens);
    }
    state.counters["units"] = double(text.size());
    state.counters["tokens"] = double(tokens);
    state.counters["fileUnits"] = double(largeText().size());
}

void BM_HighlightFirst100kLines(benchmark::State &state)
{
    const Language &c = *Language::byId(u"c");
    const QStringView text = firstLines(100'000);
    // The same lines on disk, for comparing with other highlighters from the shell.
    QFile file(QDir::temp().filePath(QStringLiteral("mirtex-bench-100k.c")));
    if (file.open(QIODevice::WriteOnly))
        file.write(text.toUtf8());
    for (auto _ : state)
        benchmark::DoNotOptimize(tokenize(c, text).size());
    state.counters["units"] = double(text.size());
}

// One keystroke at a random place: token shift plus the edited line's re-tokenization.
void BM_HighlightKeystroke8M(benchmark::State &state)
{
    BenchTarget target;
    target.content = firstUnits(SyntaxHighlighter::kNoHighlightLimit - 2000).toString();
    SyntaxHighlighter highlighter(&target, Language::byId(u"c"));
    highlighter.rehighlight();
    const QDeadlineTimer deadline(60'000);
    while (highlighter.isPassPending() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    const qsizetype tokenCount = highlighter.tokens().size();

    QRandomGenerator random(1);
    std::vector<double> micros;
    for (auto _ : state) {
        const qsizetype at = random.bounded(target.content.size());
        target.content.insert(at, u'x');
        const auto start = std::chrono::steady_clock::now();
        highlighter.textDidChange(TextRange{at, 1}, 1);
        const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
        state.SetIterationTime(elapsed.count());
        micros.push_back(elapsed.count() * 1e6);
    }
    std::sort(micros.begin(), micros.end());
    const auto percentile = [&](double p) {
        return micros.empty() ? 0.0 : micros[std::size_t(p * double(micros.size() - 1))];
    };
    state.counters["p50_us"] = percentile(0.50);
    state.counters["p99_us"] = percentile(0.99);
    state.counters["max_us"] = micros.empty() ? 0.0 : micros.back();
    state.counters["tokens"] = double(tokenCount);
}

} // namespace

BENCHMARK(BM_HighlightFullPass8M)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_HighlightFirst100kLines)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_HighlightKeystroke8M)
    ->Unit(benchmark::kMicrosecond)
    ->UseManualTime()
    ->Iterations(1000);
