// Find all over a 100 MB log: the hits of a literal, capped at 20,000 per document as the command
// keeps them, with their lines and line texts. The text is decoded once, outside the timing (the
// editor hands its UTF-16 snapshot). Data: /tmp/mirtex-bench-data/big.log (../shared/bench), or
// MIRTEX_BENCH_LOG.
#include "core/search/FindAll.h"

#include <QFile>

#include <benchmark/benchmark.h>

namespace {

using namespace mirtex;

const QString &bigLog()
{
    static const QString text = [] {
        QString path = qEnvironmentVariable("MIRTEX_BENCH_LOG");
        if (path.isEmpty())
            path = QStringLiteral("/tmp/mirtex-bench-data/big.log");
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }();
    return text;
}

void findAllInLog(benchmark::State &state, const QString &query, bool matchCase)
{
    const QString &text = bigLog();
    if (text.isEmpty()) {
        state.SkipWithError("big.log not found");
        return;
    }
    SearchOptions options;
    options.query = query;
    options.matchCase = matchCase;
    const SearchedDocument document{QStringLiteral("big.log"), {}, {}, text, {}, false};
    qsizetype hits = 0;
    for (auto _ : state) {
        const FindAllResult result = findAllInDocument(document, false, options);
        hits = result.set.files.empty() ? 0 : qsizetype(result.set.files[0].hits.size());
        benchmark::DoNotOptimize(result);
    }
    state.counters["hits"] = double(hits);
}

void FindAllCapped(benchmark::State &state)
{
    findAllInLog(state, QStringLiteral("ERROR"), true);
}

void FindAllCappedIgnoringCase(benchmark::State &state)
{
    findAllInLog(state, QStringLiteral("error"), false);
}

// A query found only a few times: the whole text is searched.
void FindAllRare(benchmark::State &state)
{
    findAllInLog(state, QStringLiteral("Saved file /perché/home/luigi"), true);
}

// The matcher alone up to the same 20,000th match: what find all adds is the difference.
void FindAllCappedMatchesOnly(benchmark::State &state)
{
    const QString &text = bigLog();
    SearchOptions options;
    options.query = QStringLiteral("ERROR");
    options.matchCase = true;
    const auto regex = makeRegex(options);
    for (auto _ : state) {
        SearchMatcher matcher(*regex, text);
        matcher.setRange({0, text.size()}, true);
        qsizetype found = 0;
        while (found < kFindAllHitLimit && matcher.next().value_or(std::nullopt))
            ++found;
        benchmark::DoNotOptimize(found);
    }
}

} // namespace

BENCHMARK(FindAllCappedMatchesOnly)->Unit(benchmark::kMillisecond);
BENCHMARK(FindAllCapped)->Unit(benchmark::kMillisecond);
BENCHMARK(FindAllCappedIgnoringCase)->Unit(benchmark::kMillisecond);
BENCHMARK(FindAllRare)->Unit(benchmark::kMillisecond);
