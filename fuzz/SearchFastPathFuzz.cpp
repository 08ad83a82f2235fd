// The search's shortcuts never change a result: the literal scan finds exactly what the regex
// engine finds (every range, seen as a text of its own or with its surroundings), and the UTF-8
// routes (literal, lines holding the required text, whole text) give the same matches in UTF-16
// units and the same replace all as the UTF-16 commands. Texts and queries are drawn from an
// alphabet of what breaks such shortcuts: characters whose case folding changes length, simple
// against full folding, word characters beyond the BMP, lone surrogates, NUL, line breaks and the
// pattern syntax the required-text reader understands.
#include "FuzzMain.h"
#include "core/search/SearchEngine.h"
#include "core/search/Utf8Search.h"

#include <QList>

#include <cstdlib>

using namespace mirtex;

namespace {

const char16_t *const kAlphabet[] = {
    u"a",      u"A",      u"s",          u"S",  u"ß",   u"ẞ",   u"ſ",      u"k",      u"K",
    u"\u212A", u"ﬁ",      u"f",          u"i",  u"I",   u"İ",   u"\u0307", u"\u0345", u"ι",
    u"Σ",      u"σ",      u"ς",          u"ǅ",  u"ǆ",   u"é",   u"É",      u"_",      u"1",
    u"٣",      u"😀",      u"\U0001D400", u"\n", u" ",   u"-",   u".",      u"\\",     u"\0",
    u"\xD800", u"\xDC00", u"(",          u")",  u"[",   u"]",   u"*",      u"+",      u"?",
    u"{2}",    u"^",      u"$",          u"|",  u"\\d", u"\\w", u"\\b",    u"\\s",    u"(?<=a)",
    u"[^a]",   u"T",      u"ss",         u"fi",
};
constexpr size_t kLetters = sizeof(kAlphabet) / sizeof(kAlphabet[0]);

QString spell(const uint8_t *data, size_t size)
{
    QString text;
    for (size_t i = 0; i < size; ++i) {
        const char16_t *piece = kAlphabet[data[i] % kLetters];
        // NUL is a letter of its own.
        text += piece[0] == 0 ? QString(QChar(0)) : QString::fromUtf16(piece);
    }
    return text;
}

QList<TextRange> matches(const SearchRegex &regex, QStringView text, TextRange range, bool isText)
{
    SearchMatcher matcher(regex, text, 20);
    matcher.setRange(range, isText);
    QList<TextRange> found;
    while (true) {
        const auto match = matcher.next();
        if (!match)
            return {{-1, -1}}; // a failure, the same on both sides or caught below
        if (!*match)
            return found;
        found.append(**match);
    }
}

bool hasLoneSurrogate(const QString &text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            ++i;
        else if (text[i].isSurrogate())
            return true;
    }
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    ensureApplication();
    if (size < 3)
        return 0;
    const uint8_t flags = data[0];
    const size_t queryLength = 1 + data[1] % 6;
    if (size < 2 + queryLength)
        return 0;
    SearchOptions options;
    options.query = spell(data + 2, queryLength);
    options.replacement = QStringLiteral("<$0>");
    options.mode = kSearchModes[flags % 3];
    options.matchCase = flags & 4;
    options.wholeWord = flags & 8;
    options.dotMatchesNewline = flags & 16;
    const QString text = spell(data + 2 + queryLength, size - 2 - queryLength);

    const auto regex = makeRegex(options);
    if (!regex)
        return 0;
    const SearchRegex reference = regex->regexEngineOnly();
    const TextRange whole{0, text.size()};
    const auto expected = matches(reference, text, whole, true);
    if (regex->literal()) {
        if (matches(*regex, text, whole, true) != expected)
            std::abort();
        const TextRange inner{text.size() / 3, text.size() / 2};
        for (const bool isText : {true, false}) {
            if (matches(*regex, text, inner, isText) != matches(reference, text, inner, isText))
                std::abort();
        }
    }
    if (hasLoneSurrogate(text) || expected.value(0).location < 0)
        return 0;

    const std::string utf8 = text.toStdString();
    Utf8Search search(*regex, utf8, true, 20);
    QList<TextRange> found;
    while (true) {
        const auto match = search.next();
        if (!match)
            return 0; // the time limit: the UTF-16 side may have stopped elsewhere
        if (!*match)
            break;
        found.append((*match)->range);
        if (QString::fromUtf8(utf8.data() + (*match)->byteStart,
                              (*match)->byteEnd - (*match)->byteStart)
            != text.sliced((*match)->range.location, (*match)->range.length))
            std::abort();
    }
    if (found != expected)
        std::abort();

    const ReplaceAllResult replaced = replaceAll(text, {}, false, false, options, 20);
    const Utf8ReplaceAllResult replacedUtf8 = replaceAllUtf8(utf8, false, options, 20);
    if (replaced.beep || replacedUtf8.beep)
        return 0;
    if (replaced.count != replacedUtf8.count)
        std::abort();
    if (replaced.count > 0) {
        const TextReplacement &edit = replaced.batch.replacements.front();
        if (edit.range != replacedUtf8.span
            || edit.text
                   != QString::fromUtf8(replacedUtf8.replacement.data(),
                                        qsizetype(replacedUtf8.replacement.size())))
            std::abort();
    }
    return 0;
}
