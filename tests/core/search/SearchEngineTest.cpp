#include "core/search/SearchEngine.h"

#include "support/QStringPrinter.h"
#include "support/TextRangePrinter.h"

#include <QString>

#include <gtest/gtest.h>

using namespace mirtex;
using namespace Qt::StringLiterals;

namespace {

SearchOptions options(SearchMode mode, const QString &query, const QString &replacement = {})
{
    SearchOptions result;
    result.mode = mode;
    result.query = query;
    result.replacement = replacement;
    return result;
}

SearchOptions wholeWords(SearchOptions base)
{
    base.wholeWord = true;
    return base;
}

SearchOptions caseSensitive(SearchOptions base)
{
    base.matchCase = true;
    return base;
}

SearchOptions dotAll(SearchOptions base)
{
    base.dotMatchesNewline = true;
    return base;
}

const QString kCaffe = u"caffè Caffè CAFFÈ\nriga due 😀 caffè\n\nultima riga"_s;

struct CountCase
{
    SearchOptions options;
    QString text;
    qsizetype expected;
};

TEST(SearchEngine, CountsMatchesOfEachModeAndOption)
{
    using enum SearchMode;
    const std::vector<CountCase> cases = {
        {options(normal, u"a.b(c)"_s), u"a.b(c) axb(c)"_s, 1},
        {options(normal, u"["_s), u"a[b["_s, 2},
        {options(normal, uR"(\E\Q$)"_s), uR"(x\E\Q$y)"_s, 1},
        {options(normal, u"😀"_s), u"x😀y😀"_s, 2},
        {wholeWords(options(normal, u"cat"_s)), u"cat concatenate cat."_s, 2},
        {wholeWords(options(normal, u"è"_s)), u"è caffè è_ 1è è"_s, 2},
        {options(normal, u"CAFFÈ"_s), u"caffè Caffè"_s, 2},
        {caseSensitive(options(normal, u"CAFFÈ"_s)), u"caffè Caffè"_s, 0},
        {options(normal, u"caffe"_s), u"caffè"_s, 0},    // accents are not folded away
        {options(normal, u"STRASSE"_s), u"straße"_s, 1}, // full case folding
        {options(extended, uR"(\t)"_s), u"a\tb\tc"_s, 2},
        {options(extended, uR"(a.\0)"_s), u"a.\u0000 axb"_s, 1},
        {options(extended, uR"(\x41.)"_s), u"A. AB"_s, 1}, // escapes add, regex stays off
        {options(regex, uR"(\d+)"_s), u"a1 22 333"_s, 3},
        {options(regex, u"a.b"_s), u"a\nb"_s, 0},
        {dotAll(options(regex, u"a.b"_s)), u"a\nb"_s, 1},
        {dotAll(options(normal, u"a.b"_s)), u"a\nb"_s, 0},
        {options(regex, u"^"_s), u"a\nb"_s, 2}, // multiline, empty matches counted
        {wholeWords(options(regex, u"a|b"_s)), u"a ab b"_s, 2},
        {options(normal, u" "_s), u"a b  c"_s, 3}, // blanks are searched
    };
    for (const CountCase &c : cases) {
        const CountResult result = countMatches(c.text, {}, false, c.options);
        EXPECT_EQ(result.count, c.expected)
            << c.options.query.toStdString() << " in " << c.text.toStdString();
        EXPECT_FALSE(result.beep);
    }
}

TEST(SearchEngine, CountStatusAndScope)
{
    const auto search = options(SearchMode::normal, u"a"_s);
    EXPECT_EQ(countMatches(u"a a a a"_s, {}, false, search).status,
              (SearchStatus{u"4 occorrenze."_s, false}));
    EXPECT_EQ(countMatches(u"b a"_s, {}, false, search).status,
              (SearchStatus{u"1 occorrenza."_s, false}));
    EXPECT_EQ(countMatches(u"b"_s, {}, false, search).status,
              (SearchStatus{u"0 occorrenze."_s, true}));
    // Only in the selection; an empty selection means the whole text.
    EXPECT_EQ(countMatches(u"a a a a"_s, {2, 3}, true, search).count, 2);
    EXPECT_EQ(countMatches(u"a a a a"_s, {2, 0}, true, search).count, 4);
    EXPECT_EQ(countMatches(u"a a a a"_s, {2, 3}, false, search).count, 4);
    // The selection is searched as a text of its own.
    EXPECT_EQ(countMatches(u"xab"_s, {1, 2}, true, options(SearchMode::regex, u"^a"_s)).count, 1);
    EXPECT_EQ(countMatches(u"xa a"_s, {1, 3}, true, wholeWords(options(SearchMode::normal, u"a"_s)))
                  .count,
              2);
}

TEST(SearchEngine, CompileFailuresAreReported)
{
    for (const SearchMode mode : kSearchModes) {
        const auto empty = makeRegex(options(mode, {}));
        ASSERT_FALSE(empty);
        EXPECT_EQ(empty.error(), SearchError::empty());
        const FindResult found = findNext(u"abc"_s, {}, options(mode, {}), true);
        EXPECT_EQ(found.status, (SearchStatus{u"Scrivi cosa cercare."_s, true}));
        EXPECT_TRUE(found.beep);
    }
    const auto invalid = makeRegex(options(SearchMode::regex, u"("_s));
    ASSERT_FALSE(invalid);
    EXPECT_EQ(invalid.error().kind, SearchError::Kind::invalid);
    EXPECT_EQ(invalid.error().detail, u"("_s);
    EXPECT_EQ(invalid.error().description(),
              u"Espressione non valida: ( (U_REGEX_MISMATCHED_PAREN)"_s);
    // The same characters are literal outside regex mode.
    EXPECT_TRUE(makeRegex(options(SearchMode::normal, u"("_s)));
    EXPECT_TRUE(makeRegex(options(SearchMode::extended, uR"((\)"_s)));
}

TEST(SearchEngine, FindNextVisitsEveryOccurrenceAndWraps)
{
    const auto search = options(SearchMode::normal, u"caffè"_s);
    const std::vector<std::pair<TextRange, SearchStatus>> visits = {
        {{0, 5}, {}},
        {{6, 5}, {}},
        {{12, 5}, {}},
        {{30, 5}, {}}, // after an emoji of two units
        {{0, 5}, SearchStatus::wrappedToStart()},
    };
    TextRange selection{0, 0};
    for (const auto &[expected, status] : visits) {
        const FindResult result = findNext(kCaffe, selection, search, true);
        ASSERT_EQ(result.found, expected);
        EXPECT_EQ(result.status, status);
        selection = *result.found;
    }
    EXPECT_EQ(findNext(kCaffe, {30, 5}, search, false).status,
              (SearchStatus{u"Nessun risultato per \u201Ccaffè\u201D."_s, true}));
}

TEST(SearchEngine, FindPreviousWalksBackAndWraps)
{
    const auto search = options(SearchMode::normal, u"caffè"_s);
    const std::vector<std::pair<TextRange, SearchStatus>> visits = {
        {{12, 5}, {}},
        {{6, 5}, {}},
        {{0, 5}, {}},
        {{30, 5}, SearchStatus::wrappedToEnd()},
    };
    TextRange selection{30, 5};
    for (const auto &[expected, status] : visits) {
        const FindResult result = findPrevious(kCaffe, selection, search, true);
        ASSERT_EQ(result.found, expected);
        EXPECT_EQ(result.status, status);
        selection = *result.found;
    }
    EXPECT_FALSE(findPrevious(kCaffe, {0, 5}, search, false).found);
}

TEST(SearchEngine, EmptyMatchesDoNotPinTheCaret)
{
    struct Case
    {
        QString pattern;
        TextRange selection;
        TextRange expected;
    };

    const QString text = u"ab\ncd"_s;
    const std::vector<Case> cases = {
        {u"^"_s, {0, 0}, {3, 0}}, // the empty match at the caret is stepped over
        {u"^"_s, {3, 0}, {0, 0}}, // and the search wraps to the first line
        {u"^"_s, {0, 2}, {3, 0}}, // after a selection: from its end
        {u"x*"_s, {0, 0}, {1, 0}},
        {u"x*"_s, {5, 0}, {5, 0}}, // never past the end of the text
        {u"c|$"_s, {2, 0}, {3, 1}},
    };
    for (const Case &c : cases) {
        const FindResult result
            = findNext(text, c.selection, options(SearchMode::regex, c.pattern), true);
        EXPECT_EQ(result.found, c.expected)
            << c.pattern.toStdString() << " from " << c.selection.location;
    }
    // Backwards, an empty match right at the selection start counts.
    EXPECT_EQ(findPrevious(text, {3, 0}, options(SearchMode::regex, u"^"_s), true).found,
              (TextRange{3, 0}));
}

struct ReplaceCase
{
    SearchOptions options;
    QString text;
    TextRange selection;
    bool inSelection;
    QString expected;
    QString status;
};

TEST(SearchEngine, ReplaceAllIsOneEditThatUndoesExactly)
{
    using enum SearchMode;
    const std::vector<ReplaceCase> cases = {
        {wholeWords(options(normal, u"cat"_s, u"dog"_s)),
         u"cat concatenate cat."_s,
         {},
         false,
         u"dog concatenate dog."_s,
         u"2 sostituzioni."_s},
        {options(regex, uR"((\d{4})-(\d{2})-(\d{2})T)"_s, uR"(\3/\2/\1 )"_s),
         u"2024-01-31T10:00 e 1999-12-01T"_s,
         {},
         false,
         u"31/01/2024 10:00 e 01/12/1999 "_s,
         u"2 sostituzioni."_s},
        {options(regex, u"(\\w+)@"_s, uR"($1\$\\\t)"_s),
         u"io@x"_s,
         {},
         false,
         u"io$\\\tx"_s,
         u"1 sostituzione."_s},
        {options(regex, u"(é)"_s, uR"(<\0>)"_s),
         u"ÉTÉ"_s,
         {},
         false,
         u"<É>T<É>"_s,
         u"2 sostituzioni."_s},
        {options(extended, u", "_s, uR"(\n)"_s),
         u"a, b, c"_s,
         {},
         false,
         u"a\nb\nc"_s,
         u"2 sostituzioni."_s},
        {options(normal, u"a"_s, uR"($1\n)"_s),
         u"ba"_s,
         {},
         false,
         uR"(b$1\n)"_s,
         u"1 sostituzione."_s},
        {options(regex, u"^"_s, u"> "_s),
         u"a\nb"_s,
         {},
         false,
         u"> a\n> b"_s,
         u"2 sostituzioni."_s},
        {options(normal, u"a"_s, u"b"_s),
         u"a a a a"_s,
         {2, 3},
         true,
         u"a b b a"_s,
         u"2 sostituzioni."_s},
        {options(normal, u"a"_s, u"bb"_s),
         u"a a"_s,
         {2, 0},
         true,
         u"bb bb"_s,
         u"2 sostituzioni."_s},
        {options(normal, u"😀"_s, u""_s), u"x😀y😀"_s, {}, false, u"xy"_s, u"2 sostituzioni."_s},
    };
    for (const ReplaceCase &c : cases) {
        SCOPED_TRACE(c.options.query.toStdString() + " in " + c.text.toStdString());
        const ReplaceAllResult result
            = replaceAll(c.text, c.selection, c.inSelection, false, c.options);
        EXPECT_EQ(result.status, (SearchStatus{c.status, false}));
        ASSERT_EQ(result.batch.replacements.size(), 1u);
        ASSERT_TRUE(isWellFormed(result.batch, c.text.size()));
        EXPECT_EQ(result.batch.undoLabel, u"Sostituisci tutto"_s);
        const QString after = applyEditBatch(c.text, result.batch);
        EXPECT_EQ(after, c.expected);
        EXPECT_EQ(result.batch.selectionsAfter.main(),
                  Selection::caretAt(std::min(c.selection.location, after.size())));
        // The one step undone: the new span put back as it was.
        const TextReplacement &done = result.batch.replacements.front();
        EditBatch undo;
        undo.replacements.push_back({{done.range.location, done.text.size()},
                                     c.text.sliced(done.range.location, done.range.length)});
        EXPECT_EQ(applyEditBatch(after, undo), c.text);
    }
}

TEST(SearchEngine, ReplaceAllFailsWithoutTouchingTheText)
{
    using enum SearchMode;
    const auto missing
        = replaceAll(u"aa"_s, {}, false, false, options(regex, u"(a)"_s, uR"(\2)"_s));
    EXPECT_TRUE(missing.batch.isEmpty());
    EXPECT_TRUE(missing.beep);
    EXPECT_TRUE(missing.status.isError);
    EXPECT_TRUE(missing.status.text.startsWith(u"La sostituzione usa un gruppo"_s));

    const auto readOnly = replaceAll(u"aa"_s, {}, false, true, options(normal, u"a"_s, u"b"_s));
    EXPECT_TRUE(readOnly.batch.isEmpty());
    EXPECT_EQ(readOnly.status, (SearchStatus{u"Il documento è in sola lettura."_s, true}));

    const auto none = replaceAll(u"aa"_s, {}, false, false, options(normal, u"z"_s, u"b"_s));
    EXPECT_TRUE(none.batch.isEmpty());
    EXPECT_FALSE(none.beep);
    EXPECT_EQ(none.status, SearchStatus::noResult(u"z"_s));
}

TEST(SearchEngine, ReplaceOneReplacesOnlyAnExactMatchOfTheSelection)
{
    using enum SearchMode;

    struct Case
    {
        SearchOptions options;
        QString text;
        TextRange selection;
        QString expected; // the text afterwards
        std::optional<TextRange> next;
    };

    const std::vector<Case> cases = {
        {options(normal, u"cat"_s, u"dog"_s), u"cat cat"_s, {0, 3}, u"dog cat"_s, TextRange{4, 3}},
        {options(normal, u"cat"_s, u"dog"_s), u"cat cat"_s, {0, 0}, u"cat cat"_s, TextRange{0, 3}},
        {options(normal, u"cat"_s, u"dog"_s), u"cats"_s, {0, 4}, u"cats"_s, TextRange{0, 3}},
        {options(regex, u"(a)(b)"_s, uR"(\2\1)"_s),
         u"ab ab"_s,
         {3, 2},
         u"ab ba"_s,
         TextRange{0, 2}},
        {options(regex, u"^"_s, u"> "_s), u"a\nb"_s, {2, 0}, u"a\n> b"_s, TextRange{0, 0}},
        {wholeWords(options(normal, u"a"_s, u"b"_s)),
         u"xa a"_s,
         {1, 1},
         u"xb a"_s,
         TextRange{3, 1}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.options.query.toStdString() + " in " + c.text.toStdString());
        const ReplaceOneResult result = replaceOne(c.text, c.selection, false, c.options, true);
        EXPECT_EQ(applyEditBatch(c.text, result.batch), c.expected);
        EXPECT_EQ(result.next.found, c.next);
        if (!result.batch.isEmpty()) {
            EXPECT_EQ(result.batch.undoLabel, u"Sostituisci"_s);
        }
    }
    EXPECT_EQ(replaceOne(u"a"_s, {0, 1}, true, options(normal, u"a"_s), true).next.status,
              (SearchStatus{u"Il documento è in sola lettura."_s, true}));
}

TEST(SearchEngine, APathologicalPatternStopsAtTheTimeLimit)
{
    const QString text = QString(40, u'a') + u"b\n"_s + QString(40, u'a') + u'b';
    const auto search = options(SearchMode::regex, u"(a+)+$"_s, u"x"_s);
    const int fewSteps = 20;
    const CountResult counted = countMatches(text, {}, false, search, fewSteps);
    EXPECT_TRUE(counted.beep);
    EXPECT_EQ(counted.status.text,
              u"Ricerca interrotta: l'espressione richiede troppo tempo su questo testo."_s);
    const ReplaceAllResult replaced = replaceAll(text, {}, false, false, search, fewSteps);
    EXPECT_TRUE(replaced.batch.isEmpty());
    EXPECT_TRUE(replaced.status.isError);
    EXPECT_TRUE(findNext(text, {}, search, true, fewSteps).beep);
    EXPECT_TRUE(findPrevious(text, {}, search, true, fewSteps).beep);

    // The budget is per start position: a long text that merely holds no match is searched whole.
    QString large;
    for (int i = 0; i < 100'000; ++i)
        large += u"abc defg, "_s;
    const CountResult plain
        = countMatches(large, {}, false, options(SearchMode::regex, uR"(\w+Q)"_s), fewSteps);
    EXPECT_FALSE(plain.beep);
    EXPECT_EQ(plain.status.text, u"0 occorrenze."_s);
}

} // namespace
