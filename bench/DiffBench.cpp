// Line diff of large texts: a few scattered edits in 30,000 lines, 2% of 200,000 lines changed in
// clusters, and two unrelated texts (the bounded fallback's case).
#include "core/compare/TextDiff.h"

#include <benchmark/benchmark.h>
#include <random>

using namespace mirtex;

namespace {

QString codeLines(int count, uint32_t seed)
{
    std::mt19937 random(seed);
    const char *const words[]
        = {"if (", "return ", "value", "count", "}", "{", "node->next", "+ 1;"};
    QString text;
    for (int i = 0; i < count; ++i) {
        const int n = 1 + int(random() % 6);
        for (int w = 0; w < n; ++w)
            text += QLatin1String(words[random() % 8]);
        text += QString::number(random() % 5000) + u'\n';
    }
    return text;
}

QString edited(const QString &text, int everyLines, int clusterLength)
{
    QStringList lines = text.split(u'\n');
    for (int i = everyLines / 2; i + clusterLength < lines.size(); i += everyLines) {
        for (int k = 0; k < clusterLength; ++k)
            lines[i + k] += QStringLiteral(" /* changed */");
    }
    return lines.join(u'\n');
}

void BM_DiffScattered30k(benchmark::State &state)
{
    const QString left = codeLines(30000, 1);
    const QString right = edited(left, 967, 1);
    for (auto _ : state)
        benchmark::DoNotOptimize(TextDiff(left, right).hunks.size());
}

void BM_DiffClusters200k(benchmark::State &state)
{
    const QString left = codeLines(200000, 2);
    const QString right = edited(left, 400, 8);
    for (auto _ : state)
        benchmark::DoNotOptimize(TextDiff(left, right).hunks.size());
}

void BM_DiffUnrelated100k(benchmark::State &state)
{
    const QString left = codeLines(100000, 3);
    const QString right = codeLines(100000, 4);
    for (auto _ : state)
        benchmark::DoNotOptimize(TextDiff(left, right).hunks.size());
}

} // namespace

BENCHMARK(BM_DiffScattered30k)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DiffClusters200k)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DiffUnrelated100k)->Unit(benchmark::kMillisecond);
