#include "BenchCommands.h"

#include "core/document/CharacterSetTable.h"
#include "core/document/EncodingHint.h"
#include "core/document/TextCodec.h"

#include <QFile>

#include <cstdio>

namespace mirtex {

namespace {

QByteArray nameOf(TextEncoding encoding)
{
    const CharacterSetInfo *info = findCharacterSet(encoding.encoding);
    return info ? QByteArray(info->converterName).toUpper() : QByteArray("?");
}

// detect-encoding [--hint] FILE…: "path: ENCODING" per file, as the editor opens it; with --hint,
// the encoding the user gets after accepting the hint, when one is offered.
int detectEncoding(QStringList arguments)
{
    const bool withHint = arguments.removeAll(QStringLiteral("--hint")) > 0;
    for (const QString &path : arguments) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            std::fprintf(stderr, "%s: unreadable\n", qPrintable(path));
            continue;
        }
        const QByteArray bytes = file.readAll();
        const auto decoded = TextCodec::decode(bytes, std::nullopt, LineEnding::lf);
        if (!decoded) {
            std::printf("%s: ?\n", qPrintable(path));
            continue;
        }
        TextEncoding encoding = decoded->encoding;
        if (withHint) {
            if (const auto hint = EncodingHint::suggest(bytes, encoding))
                encoding = *hint;
        }
        std::printf("%s: %s\n", qPrintable(path), nameOf(encoding).constData());
    }
    return 0;
}

} // namespace

std::optional<int> runBenchCommand(const QStringList &arguments)
{
    if (arguments.isEmpty())
        return std::nullopt;
    if (arguments.first() == QLatin1String("detect-encoding"))
        return detectEncoding(arguments.mid(1));
    return std::nullopt;
}

} // namespace mirtex
