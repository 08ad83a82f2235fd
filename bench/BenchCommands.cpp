#include "BenchCommands.h"

#include "DiffCommand.h"
#include "FindInFilesCommand.h"
#include "MarkdownCommands.h"
#include "SearchCommands.h"
#include "TransformCommands.h"
#include "core/document/CharacterSetTable.h"
#include "core/document/Document.h"
#include "core/document/EncodingHint.h"
#include "core/document/TextCodec.h"
#include "core/languages/Language.h"
#include "core/languages/Tokenizer.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>
#include <time.h>

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

// Writes UTF-8 text as HTML with its tokens as spans, walking the bytes once: token offsets are
// UTF-16 units, counted here from the UTF-8 lead bytes as the walk goes.
class HtmlWriter
{
public:
    static constexpr qsizetype kFlushAt = 256 * 1024;

    explicit HtmlWriter(const QByteArray &utf8)
        : m_utf8(utf8)
    {
        m_html.reserve(kFlushAt + 4096);
    }

    // Copies the text up to UTF-16 offset `to`, escaped, a run of plain bytes at a time: plain
    // ASCII is one unit per byte, so a run needs no counting.
    void copyTo(qint64 to)
    {
        static constexpr std::array<bool, 256> kSpecial = [] {
            std::array<bool, 256> table{};
            for (int byte = 0x80; byte < 256; ++byte)
                table[byte] = true;
            table['<'] = table['>'] = table['&'] = true;
            return table;
        }();
        const auto *bytes = reinterpret_cast<const uchar *>(m_utf8.constData());
        const qsizetype size = m_utf8.size();
        while (m_units < to && m_byte < size) {
            const qsizetype limit = std::min<qint64>(size - m_byte, to - m_units) + m_byte;
            qsizetype run = m_byte;
            while (run < limit && !kSpecial[bytes[run]])
                ++run;
            m_html.append(reinterpret_cast<const char *>(bytes) + m_byte, run - m_byte);
            m_units += run - m_byte;
            m_byte = run;
            if (run >= limit)
                continue;
            const uchar special = bytes[m_byte];
            if (special < 0x80) {
                m_html.append(special == '<' ? "&lt;" : special == '>' ? "&gt;" : "&amp;");
                ++m_byte;
                ++m_units;
                continue;
            }
            // A character of several bytes: one unit, two for the four-byte ones.
            qsizetype end = m_byte + 1;
            while (end < size && (bytes[end] & 0xC0) == 0x80)
                ++end;
            m_html.append(reinterpret_cast<const char *>(bytes) + m_byte, end - m_byte);
            m_units += special >= 0xF0 ? 2 : 1;
            m_byte = end;
        }
    }

    void append(const char *markup) { m_html.append(markup); }

    void append(const QByteArray &markup) { m_html.append(markup); }

    // Writes what is pending to `out` once it passes kFlushAt (or always with `force`), reusing
    // the buffer: a small buffer stays in the cache and costs no fresh pages.
    void flush(FILE *out, bool force = false)
    {
        if (!force && m_html.size() < kFlushAt)
            return;
        std::fwrite(m_html.constData(), 1, size_t(m_html.size()), out);
        m_html.resize(0);
    }

private:
    const QByteArray &m_utf8;
    QByteArray m_html;
    qsizetype m_byte = 0;
    qint64 m_units = 0;
};

// highlight --lexer ID FILE: the file read as the editor reads it, coloured by the editor's
// tokenizer, written as HTML spans (class t-<kind>) to standard output, as the peers do.
int highlightToHtml(const QStringList &arguments)
{
    const qsizetype lexer = arguments.indexOf(QStringLiteral("--lexer"));
    if (lexer < 0 || lexer + 2 >= arguments.size()) {
        std::fprintf(stderr, "usage: highlight --lexer ID FILE\n");
        return 2;
    }
    // With MIRTEX_BENCH_PHASES set, the time of each step goes to standard error.
    const bool phases = qEnvironmentVariableIsSet("MIRTEX_BENCH_PHASES");
    const auto cpuMs = [] {
        timespec now{};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
        return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
    };
    double since = cpuMs();
    const auto lap = [&](const char *step) {
        const double now = cpuMs();
        if (phases)
            std::fprintf(stderr, "%s: %.1f ms CPU\n", step, now - since);
        since = now;
    };
    const LanguagePtr language = Language::byId(arguments[lexer + 1]);
    language->ruleScanners();
    lap("language");
    const auto loaded = Document::read(arguments.last(), std::nullopt, LineEnding::lf);
    if (!loaded) {
        std::fprintf(stderr, "%s\n", qPrintable(loaded.error().description()));
        return 1;
    }
    const QString text = QString::fromUtf8(loaded->utf8);
    lap("read");
    const QList<Token> tokens = tokenize(*language, text);
    lap("tokenize");
    QByteArray opening[16];
    for (int kind = 0; kind < 16; ++kind)
        opening[kind] = "<span class=\"t-" + toString(TokenKind(kind)).toLatin1() + "\">";
    HtmlWriter writer(loaded->utf8);
    writer.append("<pre class=\"mirtex\">");
    for (const Token &token : tokens) {
        writer.copyTo(token.location);
        writer.append(opening[int(token.kind) & 15]);
        writer.copyTo(token.end());
        writer.append("</span>");
        writer.flush(stdout);
    }
    writer.copyTo(std::numeric_limits<qint64>::max());
    writer.append("</pre>\n");
    writer.flush(stdout, true);
    lap("html");
    return 0;
}

// convert --from SET --to SET [--stage open|save] FILE: the file opened as the editor opens it
// when told SET (bytes straight to the editor's UTF-8, breaks as LF), then saved in the other set
// with the file's own line ending, to standard output: the work `iconv -f SET -t SET` does, as two
// steps.
// --stage open stops after the opening (nothing written); --stage save times the saving alone
// (the opening is done, then the save is repeated --repeat N times and written once).
int convert(const QStringList &arguments)
{
    const auto option = [&](const char *name) -> QString {
        const qsizetype at = arguments.indexOf(QLatin1String(name));
        return at >= 0 && at + 1 < arguments.size() ? arguments[at + 1] : QString();
    };
    const CharacterSetInfo *from = findCharacterSetNamed(option("--from").toLatin1().constData());
    const CharacterSetInfo *to = findCharacterSetNamed(option("--to").toLatin1().constData());
    if (!from || !to || arguments.size() < 5) {
        std::fprintf(stderr, "usage: convert --from SET --to SET [--stage open|save] FILE\n");
        return 2;
    }
    const QString stage = option("--stage");
    const auto opened
        = Document::read(arguments.last(), TextEncoding{from->number, false}, LineEnding::lf);
    if (!opened) {
        std::fprintf(stderr, "%s\n", qPrintable(opened.error().description()));
        return 1;
    }
    if (stage == QLatin1String("open"))
        return 0;
    const int repeat = stage == QLatin1String("save") ? std::max(1, option("--repeat").toInt()) : 1;
    std::optional<QByteArray> saved;
    for (int i = 0; i < repeat; ++i)
        saved = TextCodec::encodeFromUtf8(
            opened->utf8, TextEncoding{to->number, false}, opened->lineEnding);
    if (!saved) {
        std::fprintf(stderr, "not representable in %s\n", to->converterName);
        return 1;
    }
    std::fwrite(saved->constData(), 1, size_t(saved->size()), stdout);
    return 0;
}

} // namespace

std::optional<int> runBenchCommand(const QStringList &arguments)
{
    if (arguments.isEmpty())
        return std::nullopt;
    if (arguments.first() == QLatin1String("detect-encoding"))
        return detectEncoding(arguments.mid(1));
    if (arguments.first() == QLatin1String("highlight"))
        return highlightToHtml(arguments.mid(1));
    // Line operations and digests.
    if (const auto status = runTransformCommand(arguments))
        return status;
    if (arguments.first() == QLatin1String("diff"))
        return runDiffCommand(arguments.mid(1));
    if (arguments.first() == QLatin1String("convert"))
        return convert(arguments.mid(1));
    // Markdown to the page.
    if (const auto status = runMarkdownCommand(arguments))
        return status;
    // Count and replace all.
    if (const auto status = runSearchCommand(arguments))
        return status;
    // Find in files over a folder.
    if (const auto status = runFindInFilesCommand(arguments))
        return status;
    return std::nullopt;
}

} // namespace mirtex
