// The search engine on a 9 MB log held in memory (150,000 lines, some accents and emoji): count
// and replace all of a literal, a case-insensitive whole word and a regex with groups, through
// the UTF-16 commands (`Utf16`, on the editor's UTF-16 copy) and the UTF-8 entries (`Utf8`, on
// its own buffer), and the same with the literal scan switched off (`RegexEngine`), which is the
// regex engine alone. Files of 100 MB: `mirtex-search search|replace`, timed against rg and sed.
#include "core/search/SearchEngine.h"
#include "core/search/Utf8Search.h"

#include <QString>

#include <benchmark/benchmark.h>
#include <random>

namespace {

using namespace mirtex;

const QString &logText()
{
    static const QString text = [] {
        const char16_t *levels[] = {u"INFO", u"WARN", u"ERROR", u"DEBUG", u"TRACE"};
        const char16_t *messages[] = {u"connessione aperta verso db-01",
                                      u"timeout dopo 30 s, nuovo tentativo",
                                      u"utente mario.rossi@example.it entrato",
                                      u"caffè pronto ☕ per tutti",
                                      u"richiesta GET /api/v2/items?id=42 completata",
                                      u"Timeout_ms superato 😀 riprovo",
                                      u"coda piena: 1024 elementi in attesa"};
        std::mt19937 random(20241123);
        QString made;
        made.reserve(10'000'000);
        for (int line = 0; line < 150'000; ++line) {
            made += QStringLiteral("2024-%1-%2T%3:%4:%5.123Z ")
                        .arg(1 + random() % 12, 2, 10, QChar(u'0'))
                        .arg(1 + random() % 28, 2, 10, QChar(u'0'))
                        .arg(random() % 24, 2, 10, QChar(u'0'))
                        .arg(random() % 60, 2, 10, QChar(u'0'))
                        .arg(random() % 60, 2, 10, QChar(u'0'));
            made += QString::fromUtf16(levels[random() % 5]);
            made += u' ';
            made += QString::fromUtf16(messages[random() % 7]);
            made += u'\n';
        }
        return made;
    }();
    return text;
}

const std::string &logUtf8()
{
    static const std::string text = logText().toStdString();
    return text;
}

SearchOptions optionsFor(int which)
{
    SearchOptions options;
    switch (which) {
    case 0: // a literal
        options.query = QStringLiteral("ERROR");
        options.replacement = QStringLiteral("NOTE");
        options.matchCase = true;
        break;
    case 1: // a case-insensitive whole word
        options.query = QStringLiteral("timeout");
        options.replacement = QStringLiteral("attesa");
        options.wholeWord = true;
        break;
    default: // a regex with groups
        options.query = QStringLiteral("(\\d{4})-(\\d{2})-(\\d{2})T");
        options.replacement = QStringLiteral("\\3/\\2/\\1 ");
        options.mode = SearchMode::regex;
        options.matchCase = true;
        break;
    }
    return options;
}

void setBytes(benchmark::State &state)
{
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(logUtf8().size()));
}

void SearchCountUtf16(benchmark::State &state)
{
    const SearchOptions options = optionsFor(int(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(countMatches(logText(), {}, false, options).count);
    setBytes(state);
}

BENCHMARK(SearchCountUtf16)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

void SearchCountUtf8(benchmark::State &state)
{
    const SearchOptions options = optionsFor(int(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(countMatchesUtf8(logUtf8(), options).count);
    setBytes(state);
}

BENCHMARK(SearchCountUtf8)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

void SearchCountRegexEngine(benchmark::State &state)
{
    const auto regex = makeRegex(optionsFor(int(state.range(0))))->regexEngineOnly();
    for (auto _ : state) {
        SearchMatcher matcher(regex, logText());
        matcher.setRange({0, logText().size()}, true);
        qsizetype count = 0;
        while (matcher.next().value_or(std::nullopt))
            ++count;
        benchmark::DoNotOptimize(count);
    }
    setBytes(state);
}

BENCHMARK(SearchCountRegexEngine)->DenseRange(0, 1)->Unit(benchmark::kMillisecond);

void SearchReplaceAllUtf16(benchmark::State &state)
{
    const SearchOptions options = optionsFor(int(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(replaceAll(logText(), {}, false, false, options).count);
    setBytes(state);
}

BENCHMARK(SearchReplaceAllUtf16)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

void SearchReplaceAllUtf8(benchmark::State &state)
{
    const SearchOptions options = optionsFor(int(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(replaceAllUtf8(logUtf8(), false, options).count);
    setBytes(state);
}

BENCHMARK(SearchReplaceAllUtf8)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

} // namespace
