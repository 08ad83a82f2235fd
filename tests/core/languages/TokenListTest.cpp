// The blocked token list against a plain list that applies the same edits token by token.
#include "core/languages/TokenList.h"

#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace mirtex;

namespace {

// The reference: drop what overlaps the old stretch, move what follows, never cut.
QList<Token> shifted(const QList<Token> &tokens, const TokenEdit &edit)
{
    QList<Token> out;
    for (Token token : tokens) {
        if (token.end() <= edit.start) {
            out.append(token);
        } else if (token.location >= edit.oldEnd) {
            token.location += edit.delta;
            out.append(token);
        }
    }
    return out;
}

QList<Token> randomTokens(QRandomGenerator &random, int count, qint64 *end)
{
    QList<Token> tokens;
    qint64 at = 0;
    for (int i = 0; i < count; ++i) {
        at += random.bounded(0, 4);
        const qint64 length = random.bounded(1, 6);
        tokens.append(Token{at, length, static_cast<TokenKind>(random.bounded(15))});
        at += length;
    }
    *end = at;
    return tokens;
}

} // namespace

TEST(TokenList, RandomEditsAndRepairsMatchThePlainList)
{
    QRandomGenerator random(7);
    for (int round = 0; round < 20; ++round) {
        qint64 end = 0;
        QList<Token> expected = randomTokens(random, random.bounded(0, 3000), &end);
        TokenList list;
        list.assign(expected);
        for (int step = 0; step < 200; ++step) {
            const qint64 start = random.bounded(0, static_cast<int>(end + 2));
            const qint64 oldEnd = start + random.bounded(0, 20);
            if (random.bounded(3) == 0) {
                // A line repair: new tokens inside [start, oldEnd).
                const qint64 first = [&] {
                    qsizetype i = 0;
                    while (i < expected.size() && expected[i].end() <= start)
                        ++i;
                    return i;
                }();
                qsizetype last = first;
                while (last < expected.size() && expected[last].location < oldEnd)
                    ++last;
                QList<Token> fresh;
                for (qint64 at = start; at + 2 <= oldEnd; at += 3)
                    fresh.append(Token{at, 2, TokenKind::string});
                expected.remove(first, last - first);
                for (qsizetype i = 0; i < fresh.size(); ++i)
                    expected.insert(first + i, fresh[i]);
                list.replace(start, oldEnd, fresh);
            } else {
                const TokenEdit edit{start, oldEnd, random.bounded(-5, 40)};
                if (edit.oldEnd + edit.delta < edit.start)
                    continue;
                expected = shifted(expected, edit);
                list.applyEdit(edit);
                end += edit.delta;
            }
            ASSERT_EQ(list.toList(), expected) << "round " << round << " step " << step;
        }
        const TextRange window{end / 3, 50};
        QList<Token> inside;
        for (const Token &token : expected) {
            const qint64 a = std::max<qint64>(token.location, window.location);
            const qint64 b = std::min<qint64>(token.end(), window.end());
            if (b > a)
                inside.append(Token{a, b - a, token.kind});
        }
        EXPECT_EQ(list.intersecting(window), inside);
    }
}

TEST(TokenList, SeveralEditsAtOnceEqualTheSameEditsOneByOneFromTheEnd)
{
    QRandomGenerator random(11);
    for (int round = 0; round < 50; ++round) {
        qint64 end = 0;
        const QList<Token> tokens = randomTokens(random, 500, &end);
        // Edits in one set of coordinates, none overlapping, listed in random order.
        QList<TokenEdit> edits;
        for (qint64 at = random.bounded(0, 30); at < end; at += random.bounded(1, 60)) {
            const qint64 oldEnd = at + random.bounded(0, 5);
            edits.append(TokenEdit{at, oldEnd, random.bounded(-(oldEnd - at), 10)});
            at = oldEnd;
        }
        QList<Token> expected = tokens;
        for (auto it = edits.crbegin(); it != edits.crend(); ++it)
            expected = shifted(expected, *it);
        std::shuffle(edits.begin(), edits.end(), std::mt19937(round));
        TokenList list;
        list.assign(tokens);
        list.applyEdits(edits);
        ASSERT_EQ(list.toList(), expected) << "round " << round;
    }
}
