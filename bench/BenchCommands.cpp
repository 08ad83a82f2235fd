#include "BenchCommands.h"

#include "MarkdownCommands.h"
#include "TransformCommands.h"
#include "core/document/CharacterSetTable.h"
#include "core/document/Document.h"
#include "core/document/EncodingHint.h"
#include "core/document/TextCodec.h"
#include "core/languages/Language.h"
#include "core/languages/Tokenizer.h"

#include <QFile>

#include <cstdio>
#include <limits>

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
    explicit HtmlWriter(const QByteArray &utf8)
        : m_utf8(utf8)
    {
        m_html.reserve(utf8.size() * 2 + 64);
    }

    // Copies the text up to UTF-16 offset `to`, escaped, a run of plain bytes at a time.
    void copyTo(qint64 to)
    {
        const char *bytes = m_utf8.constData();
        const qsizetype size = m_utf8.size();
        while (m_units < to && m_byte < size) {
            qsizetype run = m_byte;
            while (run < size && m_units < to) {
                const auto byte = uchar(bytes[run]);
                if (byte == '<' || byte == '>' || byte == '&')
                    break;
                // A lead byte starts a character: one unit, two for the four-byte ones.
                if ((byte & 0xC0) != 0x80)
                    m_units += byte >= 0xF0 ? 2 : 1;
                ++run;
                // Finish the character whose lead byte was just counted.
                while (run < size && (uchar(bytes[run]) & 0xC0) == 0x80)
                    ++run;
            }
            m_html.append(bytes + m_byte, run - m_byte);
            m_byte = run;
            if (m_units >= to || m_byte >= size)
                break;
            const char special = bytes[m_byte++];
            m_html.append(special == '<' ? "&lt;" : special == '>' ? "&gt;" : "&amp;");
            ++m_units;
        }
    }

    void append(const char *markup) { m_html.append(markup); }

    void append(const QByteArray &markup) { m_html.append(markup); }

    const QByteArray &html() const { return m_html; }

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
    const LanguagePtr language = Language::byId(arguments[lexer + 1]);
    const auto loaded = Document::read(arguments.last(), std::nullopt, LineEnding::lf);
    if (!loaded) {
        std::fprintf(stderr, "%s\n", qPrintable(loaded.error().description()));
        return 1;
    }
    const QList<Token> tokens = tokenize(*language, QString::fromUtf8(loaded->utf8));
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
    }
    writer.copyTo(std::numeric_limits<qint64>::max());
    writer.append("</pre>\n");
    std::fwrite(writer.html().constData(), 1, size_t(writer.html().size()), stdout);
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
    // Markdown to the page.
    if (const auto status = runMarkdownCommand(arguments))
        return status;
    return std::nullopt;
}

} // namespace mirtex
