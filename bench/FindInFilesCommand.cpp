#include "FindInFilesCommand.h"

#include "core/search/FileSearch.h"

#include <QFile>

#include <cstdio>

namespace mirtex {

namespace {

int usage()
{
    std::fprintf(stderr,
                 "usage: mirtex-bench find-in-files [--count|--list] [--regex|--literal] [-i] "
                 "[--hidden] [--gitignore|--no-ignore] [--include PATTERNS] [--threads N] "
                 "PATTERN FOLDER\n");
    return 2;
}

} // namespace

std::optional<int> runFindInFilesCommand(const QStringList &arguments)
{
    if (arguments.isEmpty() || arguments.first() != QLatin1String("find-in-files"))
        return std::nullopt;
    SearchOptions options;
    options.matchCase = true;
    FileSearchRequest request;
    bool list = false;
    QStringList positional;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString &argument = arguments[i];
        if (argument == QLatin1String("--count"))
            list = false;
        else if (argument == QLatin1String("--list"))
            list = true;
        else if (argument == QLatin1String("--regex"))
            options.mode = SearchMode::regex;
        else if (argument == QLatin1String("--literal"))
            options.mode = SearchMode::normal;
        else if (argument == QLatin1String("-i"))
            options.matchCase = false;
        else if (argument == QLatin1String("--hidden"))
            request.hiddenFolders = true;
        else if (argument == QLatin1String("--gitignore"))
            request.respectGitignore = true;
        else if (argument == QLatin1String("--no-ignore"))
            request.respectGitignore = false;
        else if (argument == QLatin1String("--include") && i + 1 < arguments.size())
            request.filters = parseFileFilters(arguments[++i]);
        else if (argument == QLatin1String("--threads") && i + 1 < arguments.size())
            request.threads = arguments[++i].toInt();
        else if (argument.startsWith(u'-') && argument.size() > 1)
            return usage();
        else
            positional.append(argument);
    }
    if (positional.size() != 2)
        return usage();
    options.query = positional[0];
    request.folder = positional[1];
    const auto regex = makeRegex(options);
    if (!regex) {
        std::fprintf(stderr, "%s\n", qPrintable(regex.error().description()));
        return 2;
    }
    request.regex = *regex;
    request.batchInterval = std::chrono::milliseconds(200);

    std::atomic_bool stop{false};
    const FileSearchOutcome outcome = runFileSearch(request, stop, [list](FileSearchBatch batch) {
        for (const SearchFileResult &file : batch.files) {
            const QByteArray path = QFile::encodeName(file.path.value_or(file.title));
            if (!list) {
                std::printf("%s:%zu\n", path.constData(), file.hits.size());
                continue;
            }
            for (const SearchHit &hit : file.hits) {
                std::printf("%s:%lld:%s\n",
                            path.constData(),
                            static_cast<long long>(hit.line + 1),
                            hit.lineText.toUtf8().constData());
            }
        }
    });
    if (outcome.error) {
        std::fprintf(stderr, "%s\n", qPrintable(outcome.error->description()));
        return 2;
    }
    return outcome.count > 0 ? 0 : 1;
}

} // namespace mirtex
