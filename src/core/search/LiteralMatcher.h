// The SearchMatcher's way through a literal query: the same enumeration, ranges and template
// expansion as the regex engine gives, with the literal found by LiteralSearch.
#pragma once

#include "core/search/LiteralSearch.h"
#include "core/search/SearchError.h"
#include "core/text/TextRange.h"

#include <QHash>
#include <QString>
#include <QStringView>

#include <unicode/regex.h>

#include <expected>
#include <optional>

namespace mirtex {

// `text` and `pattern` must outlive the matcher; one thread at a time.
class LiteralMatcher
{
public:
    LiteralMatcher(LiteralSearch search, const icu::RegexPattern &pattern, QStringView text);

    // As SearchMatcher::setRange: with `rangeIsText` the whole-word guards see nothing outside the
    // range; otherwise they see the whole text, and only the matches must lie inside the range.
    void setRange(TextRange range, bool rangeIsText);
    void setRange(TextRange range, TextRange context);
    std::optional<TextRange> next();

    // The expansion of an ICU template for the last match. The pattern is a literal, so the
    // expansion depends only on the matched text: the regex engine expands it once per distinct
    // match text.
    std::expected<QString, SearchError> expand(QStringView icuTemplate);

private:
    LiteralSearch m_search;
    const icu::RegexPattern &m_pattern;
    QStringView m_text;
    qsizetype m_contextStart = 0;
    qsizetype m_contextEnd = 0;
    qsizetype m_position = 0;
    qsizetype m_limit = 0;
    std::optional<TextRange> m_last;
    QString m_expandedTemplate;
    QHash<QString, QString> m_expansions; // by matched text, for m_expandedTemplate
};

} // namespace mirtex
