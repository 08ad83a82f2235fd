#include "TransformCommands.h"

#include "core/document/Document.h"
#include "core/tools/LineSorting.h"
#include "core/tools/TextDigest.h"
#include "core/tools/TransformBatch.h"

#include <QFile>

#include <cstdio>

namespace mirtex {

namespace {

std::optional<QString> readText(const QString &path)
{
    const auto loaded = Document::read(path, std::nullopt, LineEnding::lf);
    if (!loaded) {
        std::fprintf(stderr, "%s\n", qPrintable(loaded.error().description()));
        return std::nullopt;
    }
    return QString::fromUtf8(loaded->utf8);
}

// The whole text through the operations, as the editor's command does with nothing selected.
int transformLines(const QString &path,
                   std::initializer_list<LineOperation> operations,
                   const LineOperationOptions &options)
{
    auto text = readText(path);
    if (!text)
        return 1;
    for (const LineOperation operation : operations) {
        const EditBatch batch = lineOperationBatch(*text, Selections(), operation, options);
        if (!batch.isEmpty())
            text = applyEditBatch(*text, batch);
    }
    const QByteArray utf8 = text->toUtf8();
    text.reset();
    std::fwrite(utf8.constData(), 1, std::size_t(utf8.size()), stdout);
    return 0;
}

// The sort straight over the file's UTF-8 text (the same order as the UTF-16 path: lines split at
// LF, a final line break kept at the end).
int sortUtf8Lines(const QString &path,
                  bool descending,
                  std::optional<QLocale> ignoringCaseIn = std::nullopt)
{
    const auto loaded = Document::read(path, std::nullopt, LineEnding::lf);
    if (!loaded) {
        std::fprintf(stderr, "%s\n", qPrintable(loaded.error().description()));
        return 1;
    }
    std::string_view text(loaded->utf8.constData(), std::size_t(loaded->utf8.size()));
    const bool finalBreak = !text.empty() && text.back() == '\n';
    if (finalBreak)
        text.remove_suffix(1);
    std::vector<std::string_view> lines;
    lines.reserve(std::size_t(std::count(text.begin(), text.end(), '\n')) + 1);
    for (std::size_t start = 0;;) {
        const std::size_t lf = text.find('\n', start);
        lines.push_back(text.substr(start, lf == std::string_view::npos ? lf : lf - start));
        if (lf == std::string_view::npos)
            break;
        start = lf + 1;
    }
    lines = ignoringCaseIn ? sortUtf8IgnoringCase(lines, *ignoringCaseIn, descending)
                           : sortUtf8Literally(lines, descending);
    std::string out;
    out.reserve(text.size() + 1);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (i > 0)
            out += '\n';
        out += lines[i];
    }
    if (finalBreak)
        out += '\n';
    std::fwrite(out.data(), 1, out.size(), stdout);
    return 0;
}

int sortLines(QStringList arguments)
{
    LineOperationOptions options;
    const bool descending = arguments.removeAll(QStringLiteral("--descending")) > 0;
    const bool unique = arguments.removeAll(QStringLiteral("--unique")) > 0;
    // The editor's own path: the text as UTF-16, the sort as an edit batch.
    const bool utf16 = arguments.removeAll(QStringLiteral("--utf16")) > 0;
    bool ignoringCase = arguments.removeAll(QStringLiteral("--ignore-case")) > 0;
    arguments.removeAll(QStringLiteral("--bytewise"));
    if (const qsizetype at = arguments.indexOf(QStringLiteral("--locale")); at >= 0) {
        if (at + 1 < arguments.size())
            options.locale = QLocale(arguments[at + 1].section(u'.', 0, 0));
        arguments.remove(at, std::min<qsizetype>(2, arguments.size() - at));
        ignoringCase = true;
    }
    if (arguments.size() != 1) {
        std::fprintf(stderr,
                     "usage: sort-lines [--bytewise|--ignore-case|--locale NAME] "
                     "[--descending] [--unique] [--utf16] FILE\n");
        return 2;
    }
    using enum LineOperation;
    const LineOperation sort
        = ignoringCase ? (descending ? sortDescendingIgnoringCase : sortAscendingIgnoringCase)
                       : (descending ? sortDescending : sortAscending);
    if (unique)
        return transformLines(arguments[0], {sort, removeConsecutiveDuplicates}, options);
    if (!utf16)
        return sortUtf8Lines(
            arguments[0], descending, ignoringCase ? std::optional(options.locale) : std::nullopt);
    return transformLines(arguments[0], {sort}, options);
}

// Streams the file's bytes through the digest (the editor digests its UTF-8 text, which for a
// UTF-8 file with LF line breaks is exactly these bytes).
int hashFile(const QStringList &arguments)
{
    std::optional<DigestAlgorithm> algorithm;
    QString path;
    for (const QString &argument : arguments) {
        if (argument.startsWith(QLatin1String("--")))
            algorithm = digestAlgorithmFromString(argument.mid(2));
        else if (!algorithm && digestAlgorithmFromString(argument))
            algorithm = digestAlgorithmFromString(argument);
        else
            path = argument;
    }
    QFile file(path);
    if (!algorithm || !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        std::fprintf(stderr, "usage: hash --md5|--sha1|--sha256|--sha512 FILE\n");
        return 2;
    }
    TextDigest digest(*algorithm);
    QByteArray buffer(1 << 20, Qt::Uninitialized);
    for (;;) {
        const qint64 read = file.read(buffer.data(), buffer.size());
        if (read <= 0)
            break;
        digest.add(QByteArrayView(buffer.constData(), read));
    }
    std::printf("%s  %s\n", qPrintable(digest.hex()), qPrintable(path));
    return 0;
}

} // namespace

std::optional<int> runTransformCommand(const QStringList &arguments)
{
    QStringList rest = arguments;
    if (!rest.isEmpty() && rest.first() == QLatin1String("run"))
        rest.removeFirst();
    if (rest.isEmpty())
        return std::nullopt;
    const QString command = rest.takeFirst();
    if (command == QLatin1String("sort-lines"))
        return sortLines(rest);
    if (command == QLatin1String("dedupe-lines") && rest.size() == 1)
        return transformLines(rest[0], {LineOperation::removeDuplicates}, {});
    if (command == QLatin1String("uniq-lines") && rest.size() == 1)
        return transformLines(rest[0], {LineOperation::removeConsecutiveDuplicates}, {});
    if (command == QLatin1String("hash") || command == QLatin1String("digest"))
        return hashFile(rest);
    return std::nullopt;
}

} // namespace mirtex
