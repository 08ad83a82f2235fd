// The tokenizer runs ICU directly over the UTF-16 buffer: no conversion, native offsets are ours.
#include "core/languages/Tokenizer.h"

#include <unicode/regex.h>
#include <unicode/utext.h>

#include <algorithm>
#include <memory>

namespace mirtex {

namespace {

struct UTextCloser
{
    void operator()(UText *text) const { utext_close(text); }
};

qint64 nextLineStart(QStringView text, qint64 from)
{
    const qsizetype newline = text.indexOf(u'\n', from);
    return newline < 0 ? text.size() : newline + 1;
}

} // namespace

QList<Token> tokenize(const Language &language, QStringView text)
{
    const icu::RegexPattern *pattern = language.regex();
    if (!pattern || text.isEmpty())
        return {};
    const QList<TokenKind> kinds = language.ruleKinds();

    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<UText, UTextCloser> input(utext_openUChars(
        nullptr, reinterpret_cast<const UChar *>(text.utf16()), text.size(), &status));
    std::unique_ptr<icu::RegexMatcher> matcher(pattern->matcher(status));
    if (U_FAILURE(status))
        return {};
    matcher->reset(input.get());
    const int groups = std::min<int>(matcher->groupCount(), static_cast<int>(kinds.size()));

    QList<Token> tokens;
    tokens.reserve(text.size() / 16);
    qint64 resumeAt = 0;
    while (true) {
        if (!matcher->find(status)) {
            if (U_SUCCESS(status))
                break;
            // A pathological construct exhausted the backtracking stack; skip its line and go on
            // rather than leave the rest of the text uncoloured.
            status = U_ZERO_ERROR;
            resumeAt = nextLineStart(text, resumeAt);
            if (resumeAt >= text.size())
                break;
            matcher->reset(resumeAt, status);
            if (U_FAILURE(status))
                break;
            continue;
        }
        resumeAt = matcher->end64(status);
        for (int group = 1; group <= groups; ++group) {
            const int64_t start = matcher->start64(group, status);
            if (start < 0)
                continue;
            const int64_t end = matcher->end64(group, status);
            if (end > start)
                tokens.append(Token{start, end - start, kinds[group - 1]});
            break;
        }
    }
    return tokens;
}

bool tokensAreValid(const QList<Token> &tokens, qint64 textLength)
{
    qint64 previousEnd = 0;
    for (const Token &token : tokens) {
        if (token.length < 1 || token.location < previousEnd)
            return false;
        previousEnd = token.end();
    }
    return previousEnd <= textLength;
}

QList<Token> tokensIntersecting(const QList<Token> &tokens, TextRange range)
{
    QList<Token> result;
    auto it = std::upper_bound(
        tokens.cbegin(), tokens.cend(), range.location, [](qint64 offset, const Token &token) {
            return offset < token.end();
        });
    for (; it != tokens.cend() && it->location < range.end(); ++it) {
        const qint64 start = std::max<qint64>(it->location, range.location);
        const qint64 end = std::min<qint64>(it->end(), range.end());
        if (end > start)
            result.append(Token{start, end - start, it->kind});
    }
    return result;
}

QString mixedSampleText()
{
    return QStringLiteral(
        "// commento /* annidato */ \"stringa\" 'c' `parola` 0x1F 3.14e-2 #define X "
        "<tag attr=\"v\"> $var @anno\n"
        "# hash -- sql /* blocco\n"
        "su pi\u00f9 righe */ \"\"\"triplo\"\"\" \\ \t \U0001F600 \u00e9\n"
        "{ [ ( ) ] } ; : , . = + - * / % ! ? & | ^ ~ < >");
}

} // namespace mirtex
