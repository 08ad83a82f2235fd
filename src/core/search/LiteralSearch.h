// Finds a literal query without running the regex engine, with exactly the matches the compiled
// expression has: the same case folding (full folding for a literal of several code points, one
// code point's simple folding for a literal that folds to one), the same whole-word guards
// ([\p{L}\p{N}_] by code point, closed over case when case is ignored) and the same start
// positions. Candidates come from a vector scan of one or two code units; each is then checked in
// full. Works on UTF-16 (the program's texts) and on UTF-8 (the editor's own buffer).
#pragma once

#include "core/search/SearchOptions.h"

#include <QString>
#include <QStringView>

#include <memory>
#include <optional>
#include <string_view>

namespace mirtex {

struct LiteralMatch
{
    qsizetype start = 0; // in the units of the text searched
    qsizetype end = 0;
};

// Immutable and shared, usable from any thread.
class LiteralSearch
{
public:
    // The literal these options look for, when it can be found without the regex engine: normal
    // and extended mode, and regex mode when the query has no character with a meaning in a
    // pattern. Nothing otherwise (a query with surrogates, for one), and the regex engine runs.
    static std::optional<LiteralSearch> forOptions(const SearchOptions &options);

    // The first match starting in [from, limit) and ending by `limit`; the whole-word guards see
    // all of `text` and nothing outside it.
    std::optional<LiteralMatch> find(QStringView text, qsizetype from, qsizetype limit) const;
    // The same over valid UTF-8, in bytes.
    std::optional<LiteralMatch> find(std::string_view text, qsizetype from, qsizetype limit) const;

    // The literal searched for (after the extended escapes).
    const QString &literal() const;
    bool containsLineBreak() const;

    struct Compiled;

private:
    std::shared_ptr<const Compiled> m_compiled;
};

} // namespace mirtex
