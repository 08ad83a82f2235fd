#include "DiffCommand.h"

#include "core/compare/TextDiff.h"
#include "core/compare/UnifiedDiff.h"

#include <QFile>

#include <cstdio>

namespace mirtex {

int runDiffCommand(const QStringList &arguments)
{
    int context = 3;
    DiffOptions options;
    QStringList paths;
    for (const QString &argument : arguments) {
        if (argument.startsWith(QLatin1String("--unified=")))
            context = argument.mid(10).toInt();
        else if (argument == QLatin1String("--ignore-all-space"))
            options.ignoreWhitespace = true;
        else if (argument == QLatin1String("--ignore-case"))
            options.ignoreCase = true;
        else
            paths.append(argument);
    }
    if (paths.size() != 2) {
        std::fprintf(stderr,
                     "usage: diff [--unified=N] [--ignore-all-space] [--ignore-case] A B\n");
        return 2;
    }
    QString texts[2];
    for (int side = 0; side < 2; ++side) {
        QFile file(paths[side]);
        if (!file.open(QIODevice::ReadOnly)) {
            std::fprintf(stderr, "%s: unreadable\n", qPrintable(paths[side]));
            return 2;
        }
        texts[side] = QString::fromUtf8(file.readAll());
    }
    const TextDiff diff(std::move(texts[0]), std::move(texts[1]), options);
    const QByteArray out = unifiedDiff(diff, paths[0], paths[1], context).toUtf8();
    std::fwrite(out.constData(), 1, size_t(out.size()), stdout);
    return diff.hunks.empty() ? 0 : 1;
}

} // namespace mirtex
