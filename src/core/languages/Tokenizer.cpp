// The tokenizer runs ICU directly over the UTF-16 buffer: no conversion, native offsets are ours.
#include "core/languages/Tokenizer.h"

#include "core/languages/PatternLead.h"

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

// The matcher's first match starting at or after `from`, as RegexMatcher::find(from) finds it.
// With the unit every match starts with, only the places holding it are tried, found by a
// vectorised search instead of the matcher's unit-by-unit scan.
bool findFrom(icu::RegexMatcher *matcher,
              char16_t leadingUnit,
              QStringView text,
              qint64 from,
              UErrorCode &status)
{
    if (leadingUnit == 0)
        return matcher->find(from, status) && U_SUCCESS(status);
    while (from < text.size()) {
        const qsizetype at = text.indexOf(QChar(leadingUnit), from);
        if (at < 0)
            return false;
        if (matcher->lookingAt(at, status))
            return U_SUCCESS(status);
        if (U_FAILURE(status))
            return false;
        from = at + 1;
    }
    return false;
}

} // namespace

QList<Token> tokenizeWithJoinedExpression(const Language &language, QStringView text)
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

QList<Token> tokenize(const Language &language, QStringView text)
{
    const std::vector<Language::RuleScanner> &scanners = language.ruleScanners();
    if (scanners.empty() || text.isEmpty())
        return {};
    const QList<TokenKind> kinds = language.ruleKinds();
    const qint64 length = text.size();

    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<UText, UTextCloser> input(
        utext_openUChars(nullptr, reinterpret_cast<const UChar *>(text.utf16()), length, &status));

    struct RuleScan
    {
        const WordListScanner *words = nullptr;
        std::unique_ptr<icu::RegexMatcher> matcher;
        char16_t leadingUnit = 0;
        qint64 start = -1; // of the rule's first match at or after the scan position
        qint64 end = -1;
        bool exhausted = false;
    };

    std::vector<RuleScan> scans(scanners.size());
    for (std::size_t i = 0; i < scanners.size(); ++i) {
        scans[i].words = scanners[i].words.get();
        if (scans[i].words)
            continue;
        const icu::UnicodeString source = scanners[i].pattern->pattern();
        scans[i].leadingUnit
            = leadingLiteral(QStringView(source.getBuffer(), source.length())).value_or(0);
        scans[i].matcher.reset(scanners[i].pattern->matcher(status));
        if (U_FAILURE(status))
            return {};
        scans[i].matcher->reset(input.get());
    }

    // At each step the earliest match wins, and among matches at the same place the rule listed
    // first: exactly what the joined alternation picks. A rule's next match is looked up again
    // only once the scan has passed its start, so each rule reads the text about once.
    QList<Token> tokens;
    tokens.reserve(length / 16);
    qint64 position = 0;
    while (position <= length) {
        RuleScan *best = nullptr;
        std::size_t bestIndex = 0;
        for (std::size_t i = 0; i < scans.size(); ++i) {
            RuleScan &scan = scans[i];
            if (scan.exhausted)
                continue;
            if (scan.start < position && scan.words) {
                const std::optional<TextRange> match = scan.words->nextMatch(text, position);
                if (!match) {
                    scan.exhausted = true;
                    continue;
                }
                scan.start = match->location;
                scan.end = match->end();
            } else if (scan.start < position) {
                status = U_ZERO_ERROR;
                if (!findFrom(scan.matcher.get(), scan.leadingUnit, text, position, status)) {
                    scan.exhausted = true;
                    continue;
                }
                scan.start = scan.matcher->start64(status);
                scan.end = scan.matcher->end64(status);
            }
            if (!best || scan.start < best->start) {
                best = &scan;
                bestIndex = i;
            }
        }
        if (!best)
            break;
        if (best->end > best->start) {
            tokens.append(Token{best->start, best->end - best->start, kinds[bestIndex]});
            position = best->end;
        } else {
            // An empty match colours nothing; the scan moves on by one character.
            const bool pair = best->start + 1 < length && text[best->start].isHighSurrogate()
                              && text[best->start + 1].isLowSurrogate();
            position = best->start + (pair ? 2 : 1);
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
