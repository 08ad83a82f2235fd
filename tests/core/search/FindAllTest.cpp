#include "core/search/FindAll.h"

#include "core/search/SearchResultRows.h"
#include "support/QStringPrinter.h"
#include "support/TextRangePrinter.h"

#include <gtest/gtest.h>

using namespace mirtex;
using namespace Qt::StringLiterals;

namespace {

SearchOptions
search(const QString &query, SearchMode mode = SearchMode::normal, const QString &replacement = {})
{
    SearchOptions options;
    options.query = query;
    options.mode = mode;
    options.replacement = replacement;
    return options;
}

std::vector<SearchHit> hitsOf(const QString &text,
                              const SearchOptions &options,
                              std::optional<TextRange> scope = std::nullopt)
{
    const auto regex = makeRegex(options);
    EXPECT_TRUE(regex.has_value());
    auto hits = findHits(*regex, text, scope.value_or(TextRange{0, text.size()}));
    EXPECT_TRUE(hits.has_value());
    return hits.value_or(std::vector<SearchHit>{});
}

SearchedDocument document(const QString &title, const QString &text, bool readOnly = false)
{
    return {title, std::nullopt, std::nullopt, text, {}, readOnly};
}

} // namespace

namespace mirtex {
void PrintTo(const SearchHit &hit, std::ostream *out)
{
    *out << "line " << hit.line << " \"" << hit.lineText.toStdString() << "\" ["
         << hit.rangeInLine.location << '+' << hit.rangeInLine.length << ']';
}
} // namespace mirtex

TEST(FindAll, HitsCarryTheirLineAndTheMatchWithinIt)
{
    using enum SearchMode;

    const struct
    {
        QString text;
        SearchOptions options;
        std::optional<TextRange> scope;
        std::vector<SearchHit> expected;
    } cases[] = {
        {u"uno due\ntre due due\n"_s,
         search(u"due"_s),
         {},
         {{0, u"uno due"_s, {4, 3}}, {1, u"tre due due"_s, {4, 3}}, {1, u"tre due due"_s, {8, 3}}}},
        // A match running over the line break is clipped to the line's end.
        {u"ab\ncd"_s, search(u"b\\nc"_s, regex), {}, {{0, u"ab"_s, {1, 1}}}},
        // Empty matches are skipped.
        {u"axxb\n\nxb"_s,
         search(u"x*"_s, regex),
         {},
         {{0, u"axxb"_s, {1, 2}}, {2, u"xb"_s, {0, 1}}}},
        // Offsets count UTF-16 units; the last line has no break.
        {u"😀 x\n\n\nfine x"_s,
         search(u"x"_s),
         {},
         {{0, u"😀 x"_s, {3, 1}}, {3, u"fine x"_s, {5, 1}}}},
        // The selection is searched as a text of its own, lines counted in the whole text.
        {u"due due\ndue due"_s,
         search(u"due"_s),
         TextRange{4, 7},
         {{0, u"due due"_s, {4, 3}}, {1, u"due due"_s, {0, 3}}}},
        {u"concatenate"_s,
         [] {
             SearchOptions o = search(u"cat"_s);
             o.wholeWord = true;
             return o;
         }(),
         TextRange{3, 3},
         {{0, u"concatenate"_s, {3, 3}}}},
        {u"niente"_s, search(u"x"_s), {}, {}},
    };

    for (const auto &c : cases)
        EXPECT_EQ(hitsOf(c.text, c.options, c.scope), c.expected) << c.text.toStdString();
}

TEST(FindAll, StopsAtTheHitLimitPerDocument)
{
    const QString text = u"a a\n"_s.repeated(15000); // 30,000 matches on 15,000 lines
    const std::vector<SearchHit> hits = hitsOf(text, search(u"a"_s));
    ASSERT_EQ(qsizetype(hits.size()), kFindAllHitLimit);
    EXPECT_EQ(hits.back().line, 9999);
    EXPECT_EQ(hits.back().rangeInLine, (TextRange{2, 1}));

    const SearchedDocument docs[] = {document(u"uno"_s, text), document(u"due"_s, text)};
    const FindAllResult all = findAllInDocuments(docs, search(u"a"_s));
    ASSERT_EQ(all.set.files.size(), 2u);
    EXPECT_EQ(qsizetype(all.set.files[1].hits.size()), kFindAllHitLimit);
    EXPECT_EQ(all.status.text, u"40000 risultati in 2 file."_s);
}

TEST(FindAll, SetsAndStatusesOfTheDocumentCommands)
{
    const QString first = u"alfa beta\nbeta"_s;
    const QString second = u"gamma"_s;
    const QString third = u"beta"_s;
    SearchedDocument current = document(u"nuovo 1"_s, first);
    current.selection = {0, 9};
    current.documentID = QUuid::createUuid();

    const FindAllResult inSelection = findAllInDocument(current, true, search(u"beta"_s));
    EXPECT_EQ(inSelection.set.scope, u"documento corrente"_s);
    ASSERT_EQ(inSelection.set.files.size(), 1u);
    EXPECT_EQ(inSelection.set.files[0].documentID, current.documentID);
    EXPECT_EQ(inSelection.set.files[0].hits.size(), 1u);
    EXPECT_EQ(inSelection.status, (SearchStatus{u"1 risultato in 1 file."_s, false}));
    EXPECT_EQ(findAllInDocument(current, false, search(u"beta"_s)).status.text,
              u"2 risultati in 1 file."_s);

    const SearchedDocument docs[]
        = {current, document(u"b.txt"_s, second), document(u"c.txt"_s, third, true)};
    const FindAllResult open = findAllInDocuments(docs, search(u"beta"_s));
    EXPECT_EQ(open.set.scope, u"documenti aperti"_s);
    ASSERT_EQ(open.set.files.size(), 2u);
    EXPECT_EQ(open.set.files[0].title, u"nuovo 1"_s);
    EXPECT_EQ(open.set.files[1].title, u"c.txt"_s);
    EXPECT_EQ(open.status, (SearchStatus{u"3 risultati in 2 file."_s, false}));

    const struct
    {
        SearchOptions options;
        SearchStatus status;
        bool beep;
    } failures[] = {
        {search(u"zeta"_s), SearchStatus::noResult(u"zeta"_s), false},
        {search(QString()), SearchStatus::failure(SearchError::empty()), true},
        {search(u"("_s, SearchMode::regex), {}, true},
    };

    for (const auto &f : failures) {
        const FindAllResult result = findAllInDocuments(docs, f.options);
        EXPECT_TRUE(result.set.files.empty());
        EXPECT_TRUE(result.status.isError);
        EXPECT_EQ(result.beep, f.beep) << f.options.query.toStdString();
        if (!f.status.text.isEmpty()) {
            EXPECT_EQ(result.status, f.status);
        }
    }
}

TEST(FindAll, RowTexts)
{
    const SearchHit hit{4, u"x"_s, {0, 1}};
    const auto set = [&](qsizetype hits, qsizetype files) {
        SearchResultSet result{u"due"_s, u"documenti aperti"_s, {}};
        for (qsizetype f = 0; f < files; ++f)
            result.files.push_back({u"f"_s, {}, {}, {}});
        for (qsizetype h = 0; h < hits; ++h)
            result.files[h % files].hits.push_back(hit);
        return result;
    };
    EXPECT_EQ(setRowText(set(1, 1)), u"“due” (1 risultato in 1 file) — documenti aperti"_s);
    EXPECT_EQ(setRowText(set(2, 1)), u"“due” (2 risultati in 1 file) — documenti aperti"_s);
    EXPECT_EQ(setRowText(set(5, 3)), u"“due” (5 risultati in 3 file) — documenti aperti"_s);

    const QString longLine = u"x"_s.repeated(500) + u"trova"_s + u"y"_s.repeated(500);

    const struct
    {
        SearchHit hit;
        QString text;
        TextRange highlight;
    } rows[] = {
        {{0, u"if (a) b;"_s, {4, 1}}, u"Riga 1: if (a) b;"_s, {12, 1}},
        {{41, u" \t  return x;"_s, {11, 1}}, u"Riga 42: return x;"_s, {16, 1}},
        // A match starting in the indentation keeps only what is shown.
        {{2, u"    x"_s, {2, 3}}, u"Riga 3: x"_s, {8, 1}},
        {{2, u"  "_s, {0, 2}}, u"Riga 3: "_s, {8, 0}},
        // A long line is cut around its match.
        {{0, longLine, {500, 5}},
         u"Riga 1: …"_s + u"x"_s.repeated(80) + u"trova"_s + u"y"_s.repeated(315) + u"…"_s,
         {9 + 80, 5}},
    };

    for (const auto &r : rows) {
        const HitRow row = hitRow(r.hit);
        EXPECT_EQ(row.text, r.text);
        EXPECT_EQ(row.highlight, r.highlight) << r.text.left(40).toStdString();
    }
}

TEST(FindAll, ReplacesInEveryWritableDocumentAsItsOwnStep)
{
    const QString a = u"uno due uno"_s;
    const QString b = u"uno"_s;
    const QString c = u"niente"_s;
    SearchedDocument docs[] = {
        document(u"a"_s, a), document(u"ro"_s, b, true), document(u"c"_s, c), document(u"b"_s, b)};
    docs[0].selection = {4, 3};
    const DocumentsReplaceResult result = replaceInDocuments(docs, search(u"uno"_s, {}, u"1"_s));
    ASSERT_EQ(result.batches.size(), 4u);
    EXPECT_EQ(applyEditBatch(a, result.batches[0]), u"1 due 1"_s);
    EXPECT_EQ(result.batches[0].undoLabel, u"Sostituisci tutto"_s);
    EXPECT_EQ(result.batches[0].selectionsAfter.main().range(), (TextRange{4, 0}));
    EXPECT_TRUE(result.batches[1].isEmpty());
    EXPECT_TRUE(result.batches[2].isEmpty());
    EXPECT_EQ(applyEditBatch(b, result.batches[3]), u"1"_s);
    EXPECT_EQ(result.status, (SearchStatus{u"3 sostituzioni in 2 documenti."_s, false}));

    const struct
    {
        SearchOptions options;
        QString status;
        bool isError;
    } cases[] = {
        {search(u"due"_s, {}, u"2"_s), u"1 sostituzioni in 1 documento."_s, false},
        {search(u"zeta"_s), u"Nessun risultato per “zeta”."_s, true},
        {search(u"(u)no"_s, SearchMode::regex, u"$2"_s), {}, true},
    };

    for (const auto &x : cases) {
        const DocumentsReplaceResult r = replaceInDocuments(docs, x.options);
        EXPECT_EQ(r.status.isError, x.isError) << x.options.query.toStdString();
        if (!x.status.isEmpty()) {
            EXPECT_EQ(r.status.text, x.status);
        }
        if (x.isError) {
            EXPECT_TRUE(std::ranges::all_of(r.batches, &EditBatch::isEmpty));
        }
    }
}

TEST(FindAll, AFailureInALaterDocumentLeavesTheEarlierOnesAlone)
{
    const QString fine = u"x"_s;
    const QString hard = u"a"_s.repeated(40) + u"!"_s;
    const SearchedDocument docs[] = {document(u"1"_s, fine), document(u"2"_s, hard)};
    const DocumentsReplaceResult r
        = replaceInDocuments(docs, search(u"(x|a+)+$"_s, SearchMode::regex, u"y"_s), 1);
    EXPECT_TRUE(r.beep);
    EXPECT_TRUE(r.status.isError);
    EXPECT_TRUE(std::ranges::all_of(r.batches, &EditBatch::isEmpty));
}
