#include "DiffCommand.h"

#include "core/compare/TextDiff.h"
#include "core/compare/UnifiedDiff.h"
#include "core/document/HugePageHint.h"

#include <QFile>
#include <QStringDecoder>

#include <cstdio>

namespace mirtex {

namespace {

// The file's text, decoded from the mapped file straight into its final buffer: no copy of the
// bytes, and the buffer is backed by huge pages where the system allows (page faults are most of
// the cost of filling fresh memory on virtual machines).
std::optional<QString> readUtf8(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const qint64 size = file.size();
    QByteArray read;
    QByteArrayView bytes;
    if (uchar *mapped = size > 0 ? file.map(0, size) : nullptr) {
        bytes = QByteArrayView(reinterpret_cast<const char *>(mapped), size);
    } else {
        read = file.readAll();
        bytes = read;
    }
    QString text(bytes.size(), Qt::Uninitialized);
    adviseHugePages(text.data(), size_t(text.size()) * sizeof(QChar));
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QChar *end = decoder.appendToBuffer(text.data(), bytes);
    text.truncate(end - text.constData());
    return text;
}

} // namespace

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
        std::optional<QString> text = readUtf8(paths[side]);
        if (!text) {
            std::fprintf(stderr, "%s: unreadable\n", qPrintable(paths[side]));
            return 2;
        }
        texts[side] = std::move(*text);
    }
    const TextDiff diff(std::move(texts[0]), std::move(texts[1]), options);
    const QByteArray out = unifiedDiff(diff, paths[0], paths[1], context).toUtf8();
    std::fwrite(out.constData(), 1, size_t(out.size()), stdout);
    return diff.hunks.empty() ? 0 : 1;
}

} // namespace mirtex
