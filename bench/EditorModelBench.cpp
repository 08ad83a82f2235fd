// Editor text model: line index rebuild, annotation upkeep per edit, smart highlighting and brace
// matching over texts of the size of large source files and logs.
#include "core/editor/BraceMatch.h"
#include "core/editor/LineIndex.h"
#include "core/editor/SmartHighlight.h"
#include "core/editor/TextAnnotations.h"

#include <QString>

#include <unicode/uregex.h>
#include <unicode/utext.h>

#include <benchmark/benchmark.h>
#include <random>

namespace {

using mirtex::TextRange;

// Prose-like text: lowercase words of 2 to 10 letters, lines of about 60 units, some brackets.
QString generateText(qsizetype units, unsigned seed = 1)
{
    std::mt19937 random(seed);
    QString text;
    text.reserve(units + 16);
    qsizetype lineLength = 0;
    while (text.size() < units) {
        const int wordLength = 2 + int(random() % 9);
        for (int i = 0; i < wordLength; ++i)
            text += QChar(char16_t(u'a' + random() % 26));
        lineLength += wordLength + 1;
        if (lineLength > 60) {
            text += random() % 8 == 0 ? u"();\n" : u"\n";
            lineLength = 0;
        } else {
            text += u' ';
        }
    }
    text.truncate(units);
    return text;
}

const QString &eightMillionUnits()
{
    static const QString text = generateText(8'000'000);
    return text;
}

// Puts `word` at a few places of a copy of the text, each surrounded by spaces.
QString withWord(const QString &text, const QString &word, int copies)
{
    QString result = text;
    for (int i = 0; i < copies; ++i) {
        const qsizetype at = (result.size() / (copies + 1)) * (i + 1);
        result.replace(at, word.size() + 2, u' ' + word + u' ');
    }
    return result;
}

void LineIndexRebuild(benchmark::State &state)
{
    const QString text = generateText(50'000'000); // 100 MB of UTF-16
    mirtex::LineIndex index;
    for (auto _ : state) {
        index.invalidate();
        index.rebuild(text);
        benchmark::DoNotOptimize(index.starts().data());
    }
    state.SetBytesProcessed(state.iterations() * text.size() * qint64(sizeof(QChar)));
    state.counters["lines"] = double(index.lineCount());
}

BENCHMARK(LineIndexRebuild)->Unit(benchmark::kMillisecond);

// One edit with 10,000 bookmarks and 50,000 marks; alternately typing and deleting one unit in
// the middle, so that the annotations stay in place from one iteration to the next.
void AnnotationUpkeep(benchmark::State &state)
{
    const qint64 textLength = 8'000'000;
    const qint64 editAt = textLength / 2 + 3;
    std::mt19937 random(5);
    mirtex::TextAnnotations annotations;
    for (int i = 0; i < 10'000; ++i)
        annotations.bookmarkOffsets.push_back(qint64(random() % textLength));
    while (annotations.markRanges.size() < 50'000) {
        const TextRange mark{qint64(random() % textLength), 1 + qint64(random() % 12)};
        if (mark.end() <= editAt || mark.location > editAt)
            annotations.markRanges.push_back(mark);
    }
    std::ranges::sort(annotations.bookmarkOffsets);
    bool insert = true;
    for (auto _ : state) {
        if (insert)
            annotations.adjustAfterEdit(TextRange{editAt, 1}, 1);
        else
            annotations.adjustAfterEdit(TextRange{editAt, 0}, -1);
        insert = !insert;
    }
    if (annotations.markRanges.size() != 50'000)
        state.SkipWithError("marks were dropped");
}

BENCHMARK(AnnotationUpkeep)->Unit(benchmark::kMicrosecond);

// A word that occurs a few times (the whole text is scanned), a single letter that is everywhere
// inside words but rarely alone (every candidate gets the boundary tests), and a frequent word that
// fills the 5,000-range limit early.
void SmartHighlight(benchmark::State &state)
{
    const QString word = state.range(0) == 0   ? QStringLiteral("mirtexword")
                         : state.range(0) == 1 ? QStringLiteral("e")
                                               : QStringLiteral("the");
    const QString text = withWord(eightMillionUnits(), word, state.range(0) == 2 ? 8000 : 20);
    const qsizetype at = text.indexOf(u' ' + word + u' ') + 1;
    std::size_t found = 0;
    for (auto _ : state) {
        found = mirtex::findSmartHighlights(text, TextRange{at, word.size()}).size();
        benchmark::DoNotOptimize(found);
    }
    state.SetBytesProcessed(state.iterations() * text.size() * qint64(sizeof(QChar)));
    state.counters["ranges"] = double(found);
}

BENCHMARK(SmartHighlight)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

// The same rare word through the regular expression engine, for comparison.
void SmartHighlightByRegex(benchmark::State &state)
{
    const QString word = QStringLiteral("mirtexword");
    const QString text = withWord(eightMillionUnits(), word, 20);
    const QString pattern = mirtex::smartHighlightPattern(word);
    UErrorCode status = U_ZERO_ERROR;
    URegularExpression *regex = uregex_open(reinterpret_cast<const UChar *>(pattern.utf16()),
                                            int32_t(pattern.size()),
                                            0,
                                            nullptr,
                                            &status);
    UText *utext = utext_openUChars(
        nullptr, reinterpret_cast<const UChar *>(text.utf16()), text.size(), &status);
    for (auto _ : state) {
        uregex_setUText(regex, utext, &status);
        int found = 0;
        while (U_SUCCESS(status) && uregex_findNext(regex, &status))
            ++found;
        benchmark::DoNotOptimize(found);
    }
    uregex_close(regex);
    utext_close(utext);
    state.SetBytesProcessed(state.iterations() * text.size() * qint64(sizeof(QChar)));
}

BENCHMARK(SmartHighlightByRegex)->Unit(benchmark::kMillisecond);

// A bracket whose partner is out of reach: the whole bounded scan runs.
void BraceMatchUnmatched(benchmark::State &state)
{
    const QString text = u'(' + generateText(1'000'000).remove(u'(').remove(u')');
    for (auto _ : state)
        benchmark::DoNotOptimize(mirtex::matchBraces(text, 1));
}

BENCHMARK(BraceMatchUnmatched)->Unit(benchmark::kMicrosecond);

} // namespace
