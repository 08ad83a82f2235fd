// Blocks of a few hundred tokens keep an edit's cost at a binary search, one block's memmove and
// one offset per following block, whatever the file's size.
#include "core/languages/TokenList.h"

#include <algorithm>

namespace mirtex {

namespace {
constexpr std::size_t kBlockSize = 256;
}

void TokenList::assign(const QList<Token> &tokens)
{
    m_blocks.clear();
    m_blocks.reserve(tokens.size() / kBlockSize + 1);
    for (qsizetype i = 0; i < tokens.size(); i += kBlockSize) {
        const qsizetype n = std::min<qsizetype>(kBlockSize, tokens.size() - i);
        m_blocks.push_back(
            Block{0, std::vector<Token>(tokens.begin() + i, tokens.begin() + i + n)});
    }
}

qsizetype TokenList::size() const
{
    qsizetype count = 0;
    for (const Block &block : m_blocks)
        count += static_cast<qsizetype>(block.items.size());
    return count;
}

QList<Token> TokenList::toList() const
{
    QList<Token> list;
    list.reserve(size());
    for (const Block &block : m_blocks) {
        for (Token token : block.items) {
            token.location += block.offset;
            list.append(token);
        }
    }
    return list;
}

QList<Token> TokenList::intersecting(TextRange range) const
{
    QList<Token> result;
    for (Position at = firstEndingAfter(range.location); at.block < m_blocks.size();
         ++at.block, at.index = 0) {
        const Block &block = m_blocks[at.block];
        for (; at.index < block.items.size(); ++at.index) {
            const Token &token = block.items[at.index];
            const qint64 start = std::max<qint64>(token.location + block.offset, range.location);
            const qint64 end = std::min<qint64>(token.end() + block.offset, range.end());
            if (token.location + block.offset >= range.end())
                return result;
            if (end > start)
                result.append(Token{start, end - start, token.kind});
        }
    }
    return result;
}

void TokenList::applyEdit(const TokenEdit &edit)
{
    erase(firstEndingAfter(edit.start),
          firstStartingAtOrAfter(edit.oldEnd, firstEndingAfter(edit.start)));
    // What is left from the first token ending after the start begins at or after the old end.
    shiftFrom(firstEndingAfter(edit.start), edit.delta);
}

void TokenList::applyEdits(QList<TokenEdit> edits)
{
    if (edits.isEmpty() || m_blocks.empty())
        return;
    std::stable_sort(edits.begin(), edits.end(), [](const TokenEdit &a, const TokenEdit &b) {
        return a.start < b.start;
    });
    const QList<Token> old = toList();
    QList<Token> kept;
    kept.reserve(old.size());
    qsizetype next = 0; // first edit not wholly before the current token
    qint64 passedDelta = 0;
    for (Token token : old) {
        while (next < edits.size() && edits[next].oldEnd <= token.location)
            passedDelta += edits[next++].delta;
        if (next < edits.size() && edits[next].start < token.end()
            && token.location < edits[next].oldEnd)
            continue;
        token.location += passedDelta;
        kept.append(token);
    }
    assign(kept);
}

void TokenList::replace(qint64 start, qint64 end, const QList<Token> &replacement)
{
    const Position from = firstEndingAfter(start);
    erase(from, firstStartingAtOrAfter(end, from));
    insert(firstEndingAfter(start), replacement);
}

TokenList::Position TokenList::firstEndingAfter(qint64 offset) const
{
    const auto block = std::partition_point(
        m_blocks.begin(), m_blocks.end(), [&](const Block &b) { return b.lastEnd() <= offset; });
    if (block == m_blocks.end())
        return {m_blocks.size(), 0};
    const auto item
        = std::partition_point(block->items.begin(), block->items.end(), [&](const Token &t) {
              return t.end() + block->offset <= offset;
          });
    return {static_cast<std::size_t>(block - m_blocks.begin()),
            static_cast<std::size_t>(item - block->items.begin())};
}

TokenList::Position TokenList::firstStartingAtOrAfter(qint64 offset, Position from) const
{
    if (from.block >= m_blocks.size())
        return {m_blocks.size(), 0};
    const auto startsBefore
        = [offset](const Block &b) { return b.items.back().location + b.offset < offset; };
    if (startsBefore(m_blocks[from.block])) {
        const auto block
            = std::partition_point(m_blocks.begin() + from.block + 1, m_blocks.end(), startsBefore);
        if (block == m_blocks.end())
            return {m_blocks.size(), 0};
        from = {static_cast<std::size_t>(block - m_blocks.begin()), 0};
    }
    const Block &block = m_blocks[from.block];
    const auto item
        = std::partition_point(block.items.begin() + from.index,
                               block.items.end(),
                               [&](const Token &t) { return t.location + block.offset < offset; });
    return {from.block, static_cast<std::size_t>(item - block.items.begin())};
}

void TokenList::erase(Position from, Position to)
{
    if (from.block >= m_blocks.size())
        return;
    if (from.block == to.block) {
        auto &items = m_blocks[from.block].items;
        items.erase(items.begin() + from.index, items.begin() + to.index);
    } else {
        m_blocks[from.block].items.resize(from.index);
        if (to.block < m_blocks.size()) {
            auto &items = m_blocks[to.block].items;
            items.erase(items.begin(), items.begin() + to.index);
        }
        m_blocks.erase(m_blocks.begin() + from.block + 1, m_blocks.begin() + to.block);
    }
    dropEmptyBlocks();
}

void TokenList::insert(Position at, const QList<Token> &tokens)
{
    if (tokens.isEmpty())
        return;
    if (m_blocks.empty()) {
        assign(tokens);
        return;
    }
    if (at.block >= m_blocks.size())
        at = {m_blocks.size() - 1, m_blocks.back().items.size()};
    Block &block = m_blocks[at.block];
    std::vector<Token> local(tokens.begin(), tokens.end());
    for (Token &token : local)
        token.location -= block.offset;
    block.items.insert(block.items.begin() + at.index, local.begin(), local.end());
    if (block.items.size() <= 2 * kBlockSize)
        return;
    // Split an overgrown block so that later edits stay cheap.
    const qint64 offset = block.offset;
    std::vector<Token> items = std::move(block.items);
    std::vector<Block> pieces;
    for (std::size_t i = 0; i < items.size(); i += kBlockSize) {
        const std::size_t n = std::min(kBlockSize, items.size() - i);
        pieces.push_back(
            Block{offset, std::vector<Token>(items.begin() + i, items.begin() + i + n)});
    }
    m_blocks.erase(m_blocks.begin() + at.block);
    m_blocks.insert(m_blocks.begin() + at.block,
                    std::make_move_iterator(pieces.begin()),
                    std::make_move_iterator(pieces.end()));
}

void TokenList::shiftFrom(Position from, qint64 delta)
{
    if (delta == 0 || from.block >= m_blocks.size())
        return;
    auto &items = m_blocks[from.block].items;
    for (auto it = items.begin() + from.index; it != items.end(); ++it)
        it->location += delta;
    for (std::size_t b = from.block + 1; b < m_blocks.size(); ++b)
        m_blocks[b].offset += delta;
}

void TokenList::dropEmptyBlocks()
{
    std::erase_if(m_blocks, [](const Block &block) { return block.items.empty(); });
}

} // namespace mirtex
