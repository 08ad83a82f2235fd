// Throughput of opening and saving large files: detection, strict decoding, line-break work.
// Set MIRTEX_BENCH_DATA_DIR to also write the generated files there (to compare other tools).
#include "core/document/IcuCodec.h"
#include "core/document/TextCodec.h"

#include <QDir>
#include <QFile>

#include <benchmark/benchmark.h>
#include <iconv.h>
#include <random>

using namespace mirtex;

namespace {

void saveForComparison(const QByteArray &data, const char *fileName)
{
    const QString dir = qEnvironmentVariable("MIRTEX_BENCH_DATA_DIR");
    if (dir.isEmpty())
        return;
    QFile file(QDir(dir).filePath(QString::fromLatin1(fileName)));
    if (file.open(QIODevice::WriteOnly))
        file.write(data);
}

// 100 MB of server-log lines in UTF-8: mostly ASCII, an accented word on most lines and an emoji
// on some, as in application logs written by Italian-speaking teams.
const QByteArray &utf8Log()
{
    static const QByteArray data = [] {
        const char *const words[] = {"richiesta",
                                     "città",
                                     "perché",
                                     "completata",
                                     "naïve",
                                     "utente",
                                     "Ærø",
                                     "così",
                                     "über",
                                     "ok"};
        const char *const emoji[] = {"", "", "", "✅", "🚀", "", "😀", ""};
        std::mt19937 random(42);
        QByteArray out;
        out.reserve(100'000'000 + 200);
        char line[256];
        while (out.size() < 100'000'000) {
            const unsigned r = random();
            const int length = std::snprintf(line,
                                             sizeof line,
                                             "2026-11-22 14:%02u:%02u.%03u [%s] worker-%u: %s %s "
                                             "id=%u durata=%ums %s\n",
                                             r % 60,
                                             (r >> 6) % 60,
                                             (r >> 12) % 1000,
                                             (r & 0x100) ? "INFO" : "WARN",
                                             (r >> 9) % 8,
                                             words[(r >> 3) % 10],
                                             words[(r >> 17) % 10],
                                             r % 100000,
                                             (r >> 20) % 5000,
                                             emoji[(r >> 24) % 8]);
            out.append(line, length);
        }
        saveForComparison(out, "codec-bench-utf8.log");
        return out;
    }();
    return data;
}

// 50 MB of Italian prose in Windows-1252 with CR LF breaks, as saved by old Windows editors.
const QByteArray &windows1252Text()
{
    static const QByteArray data = [] {
        const char *const words[] = {"perch\xE9",
                                     "citt\xE0",
                                     "caff\xE8",
                                     "cos\xEC",
                                     "per\xF2",
                                     "virt\xF9",
                                     "la",
                                     "casa",
                                     "del",
                                     "quaderno",
                                     "\x80",
                                     "scrive",
                                     "molto",
                                     "bene",
                                     "oggi"};
        std::mt19937 random(7);
        QByteArray out;
        out.reserve(50'000'000 + 200);
        while (out.size() < 50'000'000) {
            const int wordCount = 6 + random() % 10;
            for (int i = 0; i < wordCount; ++i) {
                out += words[random() % std::size(words)];
                out += i + 1 < wordCount ? ' ' : '.';
            }
            out += "\r\n";
        }
        saveForComparison(out, "codec-bench-cp1252.txt");
        return out;
    }();
    return data;
}

void decodeBench(benchmark::State &state, const QByteArray &data, TextEncoding expected)
{
    for (auto _ : state) {
        std::optional<TextCodec::Decoded> decoded
            = TextCodec::decode(data, std::nullopt, LineEnding::lf);
        if (!decoded || decoded->encoding != expected) {
            state.SkipWithError("detected the wrong encoding");
            return;
        }
        benchmark::DoNotOptimize(decoded->text.constData());
    }
    state.SetBytesProcessed(state.iterations() * data.size());
}

void encodeBench(benchmark::State &state, const QByteArray &data)
{
    const std::optional<TextCodec::Decoded> decoded
        = TextCodec::decode(data, std::nullopt, LineEnding::lf);
    for (auto _ : state) {
        std::optional<QByteArray> bytes
            = TextCodec::encode(decoded->text, decoded->encoding, decoded->lineEnding);
        if (!bytes || bytes->size() != data.size()) {
            state.SkipWithError("the round trip changed the size");
            return;
        }
        benchmark::DoNotOptimize(bytes->constData());
    }
    state.SetBytesProcessed(state.iterations() * data.size());
}

void BM_DecodeUtf8Log(benchmark::State &state)
{
    decodeBench(state, utf8Log(), TextEncoding::utf8());
}

void BM_EncodeUtf8Log(benchmark::State &state)
{
    encodeBench(state, utf8Log());
}

void BM_DecodeWindows1252Crlf(benchmark::State &state)
{
    decodeBench(state, windows1252Text(), TextEncoding::windows1252());
}

void BM_EncodeWindows1252Crlf(benchmark::State &state)
{
    encodeBench(state, windows1252Text());
}

// Reference point: Qt's own lenient decoder, which neither validates nor detects.
void BM_QtFromUtf8Log(benchmark::State &state)
{
    const QByteArray &data = utf8Log();
    for (auto _ : state) {
        QString text = QString::fromUtf8(data);
        benchmark::DoNotOptimize(text.constData());
    }
    state.SetBytesProcessed(state.iterations() * data.size());
}

// Reference point: ICU's generic converters, which the fast paths replace for these sets.
void icuBench(benchmark::State &state, const QByteArray &data, const char *converter)
{
    for (auto _ : state) {
        std::optional<QString> text = IcuCodec::decode(data, converter);
        benchmark::DoNotOptimize(text->constData());
    }
    state.SetBytesProcessed(state.iterations() * data.size());
}

void BM_IcuUtf8Log(benchmark::State &state)
{
    icuBench(state, utf8Log(), "UTF-8");
}

void BM_IcuWindows1252(benchmark::State &state)
{
    icuBench(state, windows1252Text(), "windows-1252");
}

// The one-pass paths the editor uses: a file's bytes straight to its UTF-8 and back.
void decodeToUtf8Bench(benchmark::State &state, const QByteArray &data, TextEncoding expected)
{
    for (auto _ : state) {
        auto decoded = TextCodec::decodeToUtf8(data, expected, LineEnding::lf);
        if (!decoded) {
            state.SkipWithError("did not decode");
            return;
        }
        benchmark::DoNotOptimize(decoded->utf8.constData());
    }
    state.SetBytesProcessed(state.iterations() * data.size());
}

void encodeFromUtf8Bench(benchmark::State &state,
                         const QByteArray &data,
                         TextEncoding from,
                         TextEncoding to)
{
    const auto decoded = TextCodec::decodeToUtf8(data, from, LineEnding::lf);
    for (auto _ : state) {
        auto bytes = TextCodec::encodeFromUtf8(decoded->utf8, to, decoded->lineEnding);
        if (!bytes) {
            state.SkipWithError("did not encode");
            return;
        }
        benchmark::DoNotOptimize(bytes->constData());
    }
    state.SetBytesProcessed(state.iterations() * data.size());
}

const QByteArray &utf16Log()
{
    static const QByteArray data
        = *TextCodec::encodeFromUtf8(utf8Log(), {CharacterSet::utf16LE, false}, LineEnding::lf);
    return data;
}

void BM_DecodeToUtf8Windows1252Crlf(benchmark::State &state)
{
    decodeToUtf8Bench(state, windows1252Text(), TextEncoding::windows1252());
}

void BM_EncodeFromUtf8Windows1252Crlf(benchmark::State &state)
{
    encodeFromUtf8Bench(
        state, windows1252Text(), TextEncoding::windows1252(), TextEncoding::windows1252());
}

// Saving the UTF-8 log as UTF-16 LE (bytes per second of the UTF-8 input, as iconv is timed).
void BM_EncodeFromUtf8Utf16Log(benchmark::State &state)
{
    encodeFromUtf8Bench(state, utf8Log(), TextEncoding::utf8(), {CharacterSet::utf16LE, false});
}

void BM_DecodeToUtf8Utf16Log(benchmark::State &state)
{
    decodeToUtf8Bench(state, utf16Log(), {CharacterSet::utf16LE, false});
}

void BM_EncodeFromUtf8Utf32Log(benchmark::State &state)
{
    encodeFromUtf8Bench(state, utf8Log(), TextEncoding::utf8(), {CharacterSet::utf32BE, false});
}

// Reference point: glibc's iconv(3), what the iconv tool runs, on the same conversion in memory.
void BM_IconvUtf8ToUtf16Log(benchmark::State &state)
{
    const QByteArray &data = utf8Log();
    iconv_t converter = iconv_open("UTF-16LE", "UTF-8");
    QByteArray out(data.size() * 2 + 16, Qt::Uninitialized);
    for (auto _ : state) {
        char *in = const_cast<char *>(data.constData());
        size_t inLeft = size_t(data.size());
        char *to = out.data();
        size_t outLeft = size_t(out.size());
        iconv(converter, nullptr, nullptr, nullptr, nullptr);
        if (iconv(converter, &in, &inLeft, &to, &outLeft) == size_t(-1)) {
            state.SkipWithError("iconv failed");
            break;
        }
        benchmark::DoNotOptimize(out.constData());
    }
    iconv_close(converter);
    state.SetBytesProcessed(state.iterations() * data.size());
}

} // namespace

BENCHMARK(BM_DecodeUtf8Log)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EncodeUtf8Log)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DecodeWindows1252Crlf)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EncodeWindows1252Crlf)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_QtFromUtf8Log)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_IcuUtf8Log)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_IcuWindows1252)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DecodeToUtf8Windows1252Crlf)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EncodeFromUtf8Windows1252Crlf)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EncodeFromUtf8Utf16Log)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DecodeToUtf8Utf16Log)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EncodeFromUtf8Utf32Log)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_IconvUtf8ToUtf16Log)->Unit(benchmark::kMillisecond);
