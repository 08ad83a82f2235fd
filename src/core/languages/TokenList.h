// The highlighter's token list, stored in blocks so that one edit costs far less than the list's
// length: tokens after an edit move by adjusting a per-block offset, not each token.
#pragma once

#include "core/languages/Token.h"
#include "core/text/TextRange.h"

#include <QList>

#include <vector>

namespace mirtex {

// One edit in the coordinates before it: the old stretch [start, oldEnd) became delta longer.
struct TokenEdit
{
    qint64 start = 0;
    qint64 oldEnd = 0;
    qint64 delta = 0;
};

// Sorted, non-overlapping tokens (UTF-16 offsets). Main thread only, like its highlighter.
class TokenList
{
public:
    void assign(const QList<Token> &tokens);

    void clear() { m_blocks.clear(); }

    bool isEmpty() const { return m_blocks.empty(); }

    qsizetype size() const;
    QList<Token> toList() const;
    // The tokens intersecting range, cut to it.
    QList<Token> intersecting(TextRange range) const;

    // Drops every token overlapping the old stretch and moves every token at or after its end by
    // the edit's delta; tokens ending at or before its start stay. Tokens are never cut.
    void applyEdit(const TokenEdit &edit);
    // The same for several edits in one set of coordinates (none overlapping another).
    void applyEdits(QList<TokenEdit> edits);
    // Replaces the tokens from the first ending after start up to the first (from there) starting
    // at or after end by replacement, whose tokens must lie within [start, end).
    void replace(qint64 start, qint64 end, const QList<Token> &replacement);

private:
    struct Block
    {
        qint64 offset = 0; // added to every stored location
        std::vector<Token> items;

        qint64 lastEnd() const { return items.back().end() + offset; }
    };

    struct Position
    {
        std::size_t block = 0;
        std::size_t index = 0;
    };

    Position firstEndingAfter(qint64 offset) const;
    Position firstStartingAtOrAfter(qint64 offset, Position from) const;
    void erase(Position from, Position to);
    void insert(Position at, const QList<Token> &tokens);
    void shiftFrom(Position from, qint64 delta);
    void dropEmptyBlocks();

    std::vector<Block> m_blocks; // never an empty block between operations
};

} // namespace mirtex
