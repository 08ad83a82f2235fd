#include "core/editor/SmartHighlight.h"

#include "support/TextRangePrinter.h"

#include <QString>
#include <QStringList>

#include <unicode/uregex.h>
#include <unicode/utext.h>

#include <gtest/gtest.h>

#include <random>

using mirtex::findSmartHighlights;
using mirtex::TextRange;
using namespace Qt::StringLiterals;

namespace {

// The same question answered by the regular expression engine, match by match.
std::vector<TextRange> regexHighlights(QStringView text, TextRange selection, qsizetype limit)
{
    std::vector<TextRange> ranges;
    const QStringView word = text.sliced(selection.location, selection.length);
    if (!mirtex::isSmartHighlightWord(word))
        return ranges;
    const QString pattern = mirtex::smartHighlightPattern(word);
    UErrorCode status = U_ZERO_ERROR;
    URegularExpression *regex = uregex_open(reinterpret_cast<const UChar *>(pattern.utf16()),
                                            int32_t(pattern.size()),
                                            0,
                                            nullptr,
                                            &status);
    UText *utext = utext_openUChars(
        nullptr, reinterpret_cast<const UChar *>(text.utf16()), text.size(), &status);
    uregex_setUText(regex, utext, &status);
    EXPECT_TRUE(U_SUCCESS(status)) << u_errorName(status);
    while (U_SUCCESS(status) && uregex_findNext(regex, &status)) {
        const TextRange match{uregex_start64(regex, 0, &status),
                              uregex_end64(regex, 0, &status) - uregex_start64(regex, 0, &status)};
        if (match.location == selection.location)
            continue;
        ranges.push_back(match);
        if (qsizetype(ranges.size()) >= limit)
            break;
    }
    uregex_close(regex);
    utext_close(utext);
    return ranges;
}

} // namespace

TEST(SmartHighlight, WholeWordsOnly)
{
    struct Case
    {
        QString text;
        TextRange selection;
        std::vector<TextRange> expected;
    };

    const QString longWord(200, u'w');
    const std::vector<Case> cases = {
        {u"foo food foo_bar foo"_s, {0, 3}, {{17, 3}}},
        {u"foo food foo_bar foo"_s, {17, 3}, {{0, 3}}},
        {u"a b a b"_s, {0, 3}, {}},                 // not a word
        {longWord + u' ' + longWord, {0, 200}, {}}, // too long
        {longWord.left(199) + u' ' + longWord.left(199), {0, 199}, {{200, 199}}},
        {u"x1 x1x x1 2x1 éx1 x1é x1."_s, {0, 2}, {{7, 2}, {22, 2}}},
        {u"café cafés café"_s, {11, 4}, {{0, 4}}}, // letters beyond ASCII
        {u"n n"_s, {0, 0}, {}},                    // empty selection
        {u"a\u0301 a\u0301"_s, {0, 2}, {{3, 2}}},  // combining mark in the word
    };
    for (const Case &c : cases) {
        EXPECT_EQ(findSmartHighlights(c.text, c.selection), c.expected) << c.text.toStdString();
        EXPECT_EQ(regexHighlights(c.text, c.selection, 5000), c.expected) << c.text.toStdString();
    }
}

TEST(SmartHighlight, LimitWindowsAndStopRequests)
{
    // Longer than one search window, with occurrences straddling the window edges.
    const QString text = (u"ab abab ab_ ab "_s).repeated(80'000);
    const TextRange selection{12, 2};
    const auto all = findSmartHighlights(text, selection, 1'000'000);
    EXPECT_EQ(all.size(), std::size_t(2 * 80'000 - 1));
    EXPECT_EQ(all, regexHighlights(text, selection, 1'000'000));

    const auto limited = findSmartHighlights(text, selection);
    ASSERT_EQ(limited.size(), std::size_t(mirtex::kSmartRangesLimit));
    EXPECT_EQ(limited[1], (TextRange{15, 2})); // the selection at 12 is skipped

    std::stop_source source;
    source.request_stop();
    EXPECT_TRUE(findSmartHighlights(text, selection, 5000, source.get_token()).empty());
}

TEST(SmartHighlight, AgreesWithRegexOnRandomTexts)
{
    // Word characters of every kind the boundary cares about, including astral letters and digits,
    // an astral symbol, combining marks, lone surrogates and punctuation.
    QStringList pieces
        = u"a b ab _ 1 é \u0301 \u0663 \u2167 \U0001D400 \U0001D7CE \U0001F600 . \n \u00B2"_s.split(
            u' ');
    pieces << QString(QChar(0xD835)) << QString(QChar(0xDC00));
    std::mt19937 random(99);
    int nonEmpty = 0;
    for (int round = 0; round < 2000; ++round) {
        QString text;
        std::vector<qsizetype> boundaries{0};
        const int count = 1 + int(random() % 120);
        for (int i = 0; i < count; ++i) {
            // Half of the pieces are spaces, so that short words recur.
            text += random() % 2 ? pieces[random() % pieces.size()] : u" "_s;
            boundaries.push_back(text.size());
        }
        // Mostly one whole piece, so that selections are often words; sometimes any units.
        const std::size_t piece = random() % (boundaries.size() - 1);
        TextRange selection{boundaries[piece], boundaries[piece + 1] - boundaries[piece]};
        if (round % 4 == 0) {
            selection.location = random() % text.size();
            selection.length
                = 1 + random() % std::min<qsizetype>(4, text.size() - selection.location);
        }
        const qsizetype limit = 1 + random() % 8;
        const auto ranges = findSmartHighlights(text, selection, limit);
        nonEmpty += ranges.empty() ? 0 : 1;
        ASSERT_EQ(ranges, regexHighlights(text, selection, limit))
            << text.toStdString() << " @" << selection.location << "+" << selection.length;
    }
    EXPECT_GT(nonEmpty, 150); // the cases above really exercise matching
}
