#include "TextDiff.h"

#include "core/compare/LineMatcher.h"

#include <QChar>
#include <QHashFunctions>

#include <bit>

namespace mirtex {

bool isHorizontalSpace(char16_t unit)
{
    if (unit == u' ' || unit == u'\t')
        return true;
    if (unit < 0x80)
        return false;
    return QChar::category(char32_t(unit)) == QChar::Separator_Space;
}

QString normalizedLine(QStringView line, DiffOptions options)
{
    QString key;
    if (options.ignoreWhitespace) {
        key.reserve(line.size());
        for (const QChar c : line) {
            if (!isHorizontalSpace(c.unicode()))
                key.append(c);
        }
    } else {
        key = line.toString();
    }
    if (options.ignoreCase)
        key = std::move(key).toLower();
    return key;
}

namespace {

// Open addressing over views; the table never grows (sized for every line of both sides).
class LineDictionary
{
public:
    explicit LineDictionary(size_t lineCount)
        : m_mask(std::bit_ceil(lineCount * 2 + 16) - 1)
        , m_slots(m_mask + 1, -1)
    {
        m_keys.reserve(lineCount);
    }

    int32_t intern(QStringView text)
    {
        const size_t hash = qHash(text, 0);
        size_t slot = hash & m_mask;
        while (true) {
            const int32_t key = m_slots[slot];
            if (key < 0) {
                m_slots[slot] = int32_t(m_keys.size());
                m_keys.push_back({text, hash});
                return m_slots[slot];
            }
            const Entry &entry = m_keys[size_t(key)];
            if (entry.hash == hash && entry.text == text)
                return key;
            slot = (slot + 1) & m_mask;
        }
    }

    int32_t count() const { return int32_t(m_keys.size()); }

private:
    struct Entry
    {
        QStringView text;
        size_t hash;
    };

    size_t m_mask;
    std::vector<int32_t> m_slots;
    std::vector<Entry> m_keys;
};

} // namespace

int32_t internLines(const TextLines &left,
                    const TextLines &right,
                    DiffOptions options,
                    std::vector<int32_t> &leftKeys,
                    std::vector<int32_t> &rightKeys)
{
    const bool normalise = options.ignoreWhitespace || options.ignoreCase;
    LineDictionary dictionary(size_t(left.size() + right.size()));
    // Normalised keys must outlive the dictionary's views of them.
    std::vector<QString> normalised;
    if (normalise)
        normalised.reserve(size_t(left.size() + right.size()));
    auto keysOf = [&](const TextLines &lines, std::vector<int32_t> &keys) {
        keys.resize(size_t(lines.size()));
        for (qsizetype i = 0; i < lines.size(); ++i) {
            if (normalise) {
                normalised.push_back(normalizedLine(lines[i], options));
                keys[size_t(i)] = dictionary.intern(normalised.back());
            } else {
                keys[size_t(i)] = dictionary.intern(lines[i]);
            }
        }
    };
    keysOf(left, leftKeys);
    keysOf(right, rightKeys);
    return dictionary.count();
}

TextDiff::TextDiff(QString leftText, QString rightText, DiffOptions diffOptions)
    : TextDiff(TextLines(std::move(leftText)), TextLines(std::move(rightText)), diffOptions)
{}

TextDiff::TextDiff(TextLines leftLines, TextLines rightLines, DiffOptions diffOptions)
    : left(std::move(leftLines))
    , right(std::move(rightLines))
    , options(diffOptions)
{
    std::vector<int32_t> leftKeys;
    std::vector<int32_t> rightKeys;
    const int32_t keyCount = internLines(left, right, options, leftKeys, rightKeys);
    std::vector<LineMatch> matches = matchLines(leftKeys, rightKeys, keyCount);
    matches.push_back({int32_t(left.size()), int32_t(right.size())});
    qsizetype i = 0;
    qsizetype j = 0;
    for (const LineMatch &match : matches) {
        if (match.left > i || match.right > j)
            hunks.push_back({{i, match.left}, {j, match.right}});
        i = match.left + 1;
        j = match.right + 1;
    }
}

qsizetype TextDiff::removedLineCount() const
{
    qsizetype count = 0;
    for (const DiffHunk &hunk : hunks)
        count += hunk.left.count();
    return count;
}

qsizetype TextDiff::addedLineCount() const
{
    qsizetype count = 0;
    for (const DiffHunk &hunk : hunks)
        count += hunk.right.count();
    return count;
}

} // namespace mirtex
