// Template expansion is left to the regex engine, run on the matched text alone: a literal
// pattern matches its own match there, and its only group is the whole match.
#include "core/search/LiteralMatcher.h"

#include <unicode/unistr.h>

#include <algorithm>
#include <memory>

namespace mirtex {

LiteralMatcher::LiteralMatcher(LiteralSearch search,
                               const icu::RegexPattern &pattern,
                               QStringView text)
    : m_search(std::move(search))
    , m_pattern(pattern)
    , m_text(text)
    , m_contextEnd(text.size())
    , m_limit(text.size())
{}

void LiteralMatcher::setRange(TextRange range, bool rangeIsText)
{
    const qsizetype start = std::clamp<qsizetype>(range.location, 0, m_text.size());
    const qsizetype end = std::clamp<qsizetype>(range.end(), start, m_text.size());
    m_contextStart = rangeIsText ? start : 0;
    m_contextEnd = rangeIsText ? end : m_text.size();
    m_position = start;
    m_limit = end;
    m_last.reset();
}

void LiteralMatcher::setRange(TextRange range, TextRange context)
{
    m_contextStart = std::clamp<qsizetype>(context.location, 0, m_text.size());
    m_contextEnd = std::clamp<qsizetype>(context.end(), m_contextStart, m_text.size());
    m_position = std::clamp<qsizetype>(range.location, m_contextStart, m_contextEnd);
    m_limit = std::clamp<qsizetype>(range.end(), m_position, m_contextEnd);
    m_last.reset();
}

std::optional<TextRange> LiteralMatcher::next()
{
    const QStringView context = m_text.sliced(m_contextStart, m_contextEnd - m_contextStart);
    const auto match
        = m_search.find(context, m_position - m_contextStart, m_limit - m_contextStart);
    if (!match) {
        m_position = m_limit;
        m_last.reset();
        return std::nullopt;
    }
    m_position = m_contextStart + match->end;
    m_last = TextRange{m_contextStart + match->start, match->end - match->start};
    return m_last;
}

std::expected<QString, SearchError> LiteralMatcher::expand(QStringView icuTemplate)
{
    if (!m_last)
        return QString();
    if (icuTemplate != m_expandedTemplate) {
        m_expandedTemplate = icuTemplate.toString();
        m_expansions.clear();
    }
    const QString matched = m_text.sliced(m_last->location, m_last->length).toString();
    if (const auto found = m_expansions.constFind(matched); found != m_expansions.constEnd())
        return *found;
    const icu::UnicodeString input(
        false, reinterpret_cast<const char16_t *>(matched.utf16()), int32_t(matched.size()));
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::RegexMatcher> matcher(m_pattern.matcher(input, status));
    icu::UnicodeString expanded;
    if (U_SUCCESS(status) && matcher->find(status))
        matcher->appendReplacement(
            expanded,
            icu::UnicodeString(false,
                               reinterpret_cast<const char16_t *>(icuTemplate.utf16()),
                               int32_t(icuTemplate.size())),
            status);
    if (U_FAILURE(status)) {
        const QString name = QString::fromLatin1(u_errorName(status));
        if (status == U_INDEX_OUTOFBOUNDS_ERROR || status == U_REGEX_INVALID_CAPTURE_GROUP_NAME)
            return std::unexpected(
                SearchError{SearchError::Kind::missingGroup, icuTemplate.toString(), name});
        return std::unexpected(SearchError{SearchError::Kind::invalid, {}, name});
    }
    QString result(reinterpret_cast<const QChar *>(expanded.getBuffer()), expanded.length());
    if (m_expansions.size() < 256)
        m_expansions.insert(matched, result);
    return result;
}

} // namespace mirtex
