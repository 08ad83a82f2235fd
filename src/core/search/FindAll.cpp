// Lines are found along the way: the line-start scan runs only over the text between one hit and
// the next, so a capped find all in a huge text stops scanning where its last hit is.
#include "core/search/FindAll.h"

#include "core/editor/LineIndex.h"
#include "core/search/SearchEngine.h"
#include "core/search/SearchResultRows.h"

#include <QCoreApplication>

namespace mirtex {

namespace {

// Follows the line of ascending offsets through a text.
class LineFollower
{
public:
    explicit LineFollower(QStringView text)
        : m_text(text)
    {}

    // Moves to the line holding `utf16Offset` (never backwards).
    void moveTo(qsizetype utf16Offset)
    {
        if (utf16Offset <= m_scanned)
            return;
        m_scratch.clear();
        appendLineStarts(reinterpret_cast<const char16_t *>(m_text.utf16()) + m_scanned,
                         utf16Offset - m_scanned,
                         m_scanned,
                         m_scratch);
        m_scanned = utf16Offset;
        if (m_scratch.empty())
            return;
        m_line += qsizetype(m_scratch.size());
        m_lineStart = m_scratch.back();
        m_lineText.reset();
    }

    qsizetype line() const { return m_line; }

    qsizetype lineStart() const { return m_lineStart; }

    // The current line without its LF (made once per line, shared by its hits).
    const QString &lineText()
    {
        if (!m_lineText) {
            qsizetype end = m_text.indexOf(u'\n', std::max(m_lineStart, m_scanned));
            if (end < 0)
                end = m_text.size();
            m_lineText = m_text.sliced(m_lineStart, end - m_lineStart).toString();
        }
        return *m_lineText;
    }

private:
    QStringView m_text;
    qsizetype m_scanned = 0; // the lines of [0, m_scanned) are counted
    qsizetype m_line = 0;
    qsizetype m_lineStart = 0;
    std::optional<QString> m_lineText;
    std::vector<qint64> m_scratch;
};

QString tr(const char *text)
{
    return QCoreApplication::translate("Search", text);
}

FindAllResult failed(const QString &query, const QString &scope, const SearchError &error)
{
    return {{query, scope, {}}, SearchStatus::failure(error), true};
}

SearchFileResult fileResult(const SearchedDocument &document, std::vector<SearchHit> hits)
{
    return {document.title, document.path, document.documentID, std::move(hits)};
}

FindAllResult finished(SearchResultSet set)
{
    const SearchStatus status
        = SearchStatus::foundAll(hitCount(set), qsizetype(set.files.size()), set.query);
    return {std::move(set), status, false};
}

} // namespace

qsizetype hitCount(const SearchResultSet &set)
{
    qsizetype count = 0;
    for (const SearchFileResult &file : set.files)
        count += qsizetype(file.hits.size());
    return count;
}

std::expected<std::vector<SearchHit>, SearchError> findHits(const SearchRegex &regex,
                                                            QStringView text,
                                                            TextRange scope,
                                                            qsizetype limit,
                                                            int timeLimitSteps)
{
    SearchMatcher matcher(regex, text, timeLimitSteps);
    matcher.setRange(scope, true);
    LineFollower lines(text);
    std::vector<SearchHit> hits;
    while (qsizetype(hits.size()) < limit) {
        const auto match = matcher.next();
        if (!match)
            return std::unexpected(match.error());
        if (!*match)
            break;
        const TextRange range = **match;
        if (range.length == 0)
            continue;
        lines.moveTo(range.location);
        const QString &lineText = lines.lineText();
        const qsizetype inLine = range.location - lines.lineStart();
        hits.push_back(
            {lines.line(), lineText, {inLine, std::min(range.length, lineText.size() - inLine)}});
    }
    return hits;
}

QString currentDocumentScope()
{
    return tr("documento corrente");
}

QString openDocumentsScope()
{
    return tr("documenti aperti");
}

FindAllResult findAllInDocument(const SearchedDocument &document,
                                bool inSelection,
                                const SearchOptions &options,
                                int timeLimitSteps)
{
    const QString scope = currentDocumentScope();
    const auto regex = makeRegex(options);
    if (!regex)
        return failed(options.query, scope, regex.error());
    const TextRange range = searchScope(document.text.size(), document.selection, inSelection);
    auto hits = findHits(*regex, document.text, range, kFindAllHitLimit, timeLimitSteps);
    if (!hits)
        return failed(options.query, scope, hits.error());
    SearchResultSet set{options.query, scope, {}};
    if (!hits->empty())
        set.files.push_back(fileResult(document, std::move(*hits)));
    return finished(std::move(set));
}

FindAllResult findAllInDocuments(std::span<const SearchedDocument> documents,
                                 const SearchOptions &options,
                                 int timeLimitSteps)
{
    const QString scope = openDocumentsScope();
    const auto regex = makeRegex(options);
    if (!regex)
        return failed(options.query, scope, regex.error());
    SearchResultSet set{options.query, scope, {}};
    for (const SearchedDocument &document : documents) {
        auto hits = findHits(
            *regex, document.text, {0, document.text.size()}, kFindAllHitLimit, timeLimitSteps);
        if (!hits)
            return failed(options.query, scope, hits.error());
        if (!hits->empty())
            set.files.push_back(fileResult(document, std::move(*hits)));
    }
    return finished(std::move(set));
}

DocumentsReplaceResult replaceInDocuments(std::span<const SearchedDocument> documents,
                                          const SearchOptions &options,
                                          int timeLimitSteps)
{
    DocumentsReplaceResult result;
    const auto fail = [](const SearchStatus &status) {
        DocumentsReplaceResult failure;
        failure.status = status;
        failure.beep = true;
        return failure;
    };
    if (const auto regex = makeRegex(options); !regex)
        return fail(SearchStatus::failure(regex.error()));
    result.batches.resize(documents.size());
    for (std::size_t i = 0; i < documents.size(); ++i) {
        const SearchedDocument &document = documents[i];
        if (document.readOnly)
            continue;
        ReplaceAllResult replaced
            = replaceAll(document.text, document.selection, false, false, options, timeLimitSteps);
        if (replaced.beep)
            return fail(replaced.status);
        if (replaced.count == 0)
            continue;
        result.batches[i] = std::move(replaced.batch);
        result.replacements += replaced.count;
        ++result.documentsChanged;
    }
    result.status = SearchStatus::replacedInDocuments(
        result.replacements, result.documentsChanged, options.query);
    return result;
}

} // namespace mirtex
