#include "core/search/FileFilters.h"

#include <QString>

#include <fnmatch.h>

namespace mirtex {

namespace {

bool matchesAny(const std::vector<QByteArray> &patterns, const char *name)
{
    for (const QByteArray &pattern : patterns) {
        if (fnmatch(pattern.constData(), name, FNM_CASEFOLD) == 0)
            return true;
    }
    return false;
}

} // namespace

bool FileFilters::accepts(const char *name) const
{
    if (!include.empty() && !matchesAny(include, name))
        return false;
    return !matchesAny(exclude, name);
}

FileFilters parseFileFilters(QStringView text)
{
    FileFilters filters;
    qsizetype start = 0;
    const auto take = [&](qsizetype end) {
        const QStringView piece = text.sliced(start, end - start);
        start = end + 1;
        if (piece.isEmpty())
            return;
        if (piece.startsWith(u'!')) {
            if (piece.size() > 1)
                filters.exclude.push_back(piece.sliced(1).toUtf8());
            return;
        }
        if (piece == u"*" || piece == u"*.*")
            return;
        filters.include.push_back(piece.toUtf8());
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == u' ' || c == u',' || c == u';' || c == u'\t')
            take(i);
    }
    take(text.size());
    return filters;
}

} // namespace mirtex
