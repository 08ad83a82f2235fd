// The file is read with Document::read, as the editor opens it (decoded to its UTF-8 text with LF
// breaks); the count or the replace all then runs on that text through the same engine calls the
// editor makes. With MIRTEX_BENCH_PHASES set, the CPU time of each step goes to standard error.
#include "SearchCommands.h"

#include "core/document/Document.h"
#include "core/search/SearchEngine.h"
#include "core/search/Utf8Search.h"

#include <cstdio>
#include <cstring>
#include <time.h>

namespace mirtex {

namespace {

struct Invocation
{
    SearchOptions options;
    bool countLines = true;
    bool utf16 = false;
    QStringList operands;
};

std::optional<Invocation> parse(const QStringList &arguments)
{
    Invocation invocation;
    invocation.options.matchCase = true;
    for (const QString &argument : arguments) {
        if (argument == QLatin1String("--count-lines"))
            invocation.countLines = true;
        else if (argument == QLatin1String("--count"))
            invocation.countLines = false;
        else if (argument == QLatin1String("--literal"))
            invocation.options.mode = SearchMode::normal;
        else if (argument == QLatin1String("--extended"))
            invocation.options.mode = SearchMode::extended;
        else if (argument == QLatin1String("--regex"))
            invocation.options.mode = SearchMode::regex;
        else if (argument == QLatin1String("-i") || argument == QLatin1String("--ignore-case"))
            invocation.options.matchCase = false;
        else if (argument == QLatin1String("-w") || argument == QLatin1String("--word"))
            invocation.options.wholeWord = true;
        else if (argument == QLatin1String("--utf16"))
            invocation.utf16 = true;
        else if (argument.startsWith(QLatin1String("--")))
            return std::nullopt;
        else
            invocation.operands.append(argument);
    }
    return invocation;
}

class Phases
{
public:
    void lap(const char *step)
    {
        const double now = cpuMs();
        if (m_enabled)
            std::fprintf(stderr, "%s: %.1f ms CPU\n", step, now - m_since);
        m_since = now;
    }

private:
    static double cpuMs()
    {
        timespec now{};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
        return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
    }

    bool m_enabled = qEnvironmentVariableIsSet("MIRTEX_BENCH_PHASES");
    double m_since = cpuMs();
};

std::optional<LoadedFile> load(const QString &path)
{
    auto loaded = Document::read(path, std::nullopt, LineEnding::lf);
    if (!loaded) {
        std::fprintf(stderr, "%s\n", qPrintable(loaded.error().description()));
        return std::nullopt;
    }
    return std::move(*loaded);
}

// Lines on which a match starts: after a match the search goes on at the next line.
std::optional<qsizetype> countLines(std::string_view text, const SearchRegex &regex)
{
    Utf8Search search(regex, text, false);
    qsizetype lines = 0;
    while (true) {
        const auto match = search.next();
        if (!match) {
            std::fprintf(stderr, "%s\n", qPrintable(match.error().description()));
            return std::nullopt;
        }
        if (!*match)
            return lines;
        ++lines;
        const auto from = size_t((*match)->byteStart);
        const void *lineEnd = std::memchr(text.data() + from, '\n', text.size() - from);
        search.skipTo(lineEnd ? static_cast<const char *>(lineEnd) - text.data() + 1
                              : qsizetype(text.size()));
    }
}

int search(const QStringList &arguments)
{
    const auto invocation = parse(arguments);
    if (!invocation || invocation->operands.size() != 2) {
        std::fprintf(stderr,
                     "usage: search [--count-lines|--count] [--literal|--extended|--regex] "
                     "[-i] [-w] [--utf16] PATTERN FILE\n");
        return 2;
    }
    Phases phases;
    SearchOptions options = invocation->options;
    options.query = invocation->operands[0];
    const auto loaded = load(invocation->operands[1]);
    if (!loaded)
        return 1;
    phases.lap("read");
    const std::string_view text(loaded->utf8.constData(), size_t(loaded->utf8.size()));
    qsizetype count = 0;
    if (invocation->utf16) {
        const QString copy = QString::fromUtf8(loaded->utf8);
        phases.lap("to UTF-16");
        const CountResult counted = countMatches(copy, {}, false, options);
        if (counted.beep) {
            std::fprintf(stderr, "%s\n", qPrintable(counted.status.text));
            return 1;
        }
        count = counted.count;
    } else if (invocation->countLines) {
        const auto regex = makeRegex(options);
        if (!regex) {
            std::fprintf(stderr, "%s\n", qPrintable(regex.error().description()));
            return 1;
        }
        const auto lines = countLines(text, *regex);
        if (!lines)
            return 1;
        count = *lines;
    } else {
        const CountResult counted = countMatchesUtf8(text, options);
        if (counted.beep) {
            std::fprintf(stderr, "%s\n", qPrintable(counted.status.text));
            return 1;
        }
        count = counted.count;
    }
    phases.lap("search");
    std::printf("%lld\n", static_cast<long long>(count));
    return 0;
}

int replace(const QStringList &arguments)
{
    const auto invocation = parse(arguments);
    if (!invocation || invocation->operands.size() != 3) {
        std::fprintf(stderr,
                     "usage: replace [--literal|--extended|--regex] [-i] [-w] [--utf16] "
                     "PATTERN REPLACEMENT FILE\n");
        return 2;
    }
    Phases phases;
    SearchOptions options = invocation->options;
    options.query = invocation->operands[0];
    options.replacement = invocation->operands[1];
    const auto loaded = load(invocation->operands[2]);
    if (!loaded)
        return 1;
    phases.lap("read");
    if (invocation->utf16) {
        const QString copy = QString::fromUtf8(loaded->utf8);
        phases.lap("to UTF-16");
        const ReplaceAllResult replaced = replaceAll(copy, {}, false, false, options);
        if (replaced.beep) {
            std::fprintf(stderr, "%s\n", qPrintable(replaced.status.text));
            return 1;
        }
        phases.lap("replace all");
        const QByteArray out = applyEditBatch(copy, replaced.batch).toUtf8();
        std::fwrite(out.constData(), 1, size_t(out.size()), stdout);
        phases.lap("write");
        return 0;
    }
    const std::string_view text(loaded->utf8.constData(), size_t(loaded->utf8.size()));
    const Utf8ReplaceAllResult replaced = replaceAllUtf8(text, false, options);
    if (replaced.beep) {
        std::fprintf(stderr, "%s\n", qPrintable(replaced.status.text));
        return 1;
    }
    phases.lap("replace all");
    if (replaced.count == 0) {
        std::fwrite(text.data(), 1, text.size(), stdout);
    } else {
        const auto end = size_t(replaced.byteStart + replaced.byteLength);
        std::fwrite(text.data(), 1, size_t(replaced.byteStart), stdout);
        std::fwrite(replaced.replacement.data(), 1, replaced.replacement.size(), stdout);
        std::fwrite(text.data() + end, 1, text.size() - end, stdout);
    }
    std::fflush(stdout);
    phases.lap("write");
    return 0;
}

} // namespace

std::optional<int> runSearchCommand(const QStringList &arguments)
{
    if (arguments.isEmpty())
        return std::nullopt;
    if (arguments.first() == QLatin1String("search"))
        return search(arguments.mid(1));
    if (arguments.first() == QLatin1String("replace"))
        return replace(arguments.mid(1));
    return std::nullopt;
}

} // namespace mirtex
