#include "core/tools/LineSorting.h"

#include "core/tools/Graphemes.h"

#include <QtConcurrent>

#include <unicode/ucol.h>
#include <unicode/uiter.h>

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>

namespace mirtex {

namespace {

// Four units from `from` as one number, zero past the end, so that most comparisons of a sort
// read no line text.
std::uint64_t prefixKey(QStringView line, qsizetype from)
{
    std::uint64_t key = 0;
    for (qsizetype i = from; i < from + 4; ++i)
        key = (key << 16) | (i < line.size() ? line[i].unicode() : 0u);
    return key;
}

// Below this many items a second thread costs more than it saves.
constexpr std::size_t kParallelSortFrom = 1 << 15;

// `items` sorted by `less`, a strict weak order under which equivalent items are interchangeable
// (a total order, or one whose ties cannot be told apart in the result), each passed through
// `project` into the result: each half sorted on its own thread, then merged straight into the
// result (no second copy of the items). `items` is left in an unspecified order.
template<typename T, typename Less, typename Project>
auto sortInTwo(std::vector<T> &items, Less less, Project project)
{
    std::vector<decltype(project(items.front()))> result;
    result.reserve(items.size());
    if (items.size() < kParallelSortFrom || QThreadPool::globalInstance()->maxThreadCount() < 2) {
        std::sort(items.begin(), items.end(), less);
        for (const T &item : items)
            result.push_back(project(item));
        return result;
    }
    const auto middle = items.begin() + std::ptrdiff_t(items.size() / 2);
    QFuture<void> first
        = QtConcurrent::run([&items, middle, less] { std::sort(items.begin(), middle, less); });
    std::sort(middle, items.end(), less);
    first.waitForFinished();
    auto a = items.begin();
    auto b = middle;
    while (a != middle && b != items.end())
        result.push_back(project(less(*b, *a) ? *b++ : *a++));
    for (; a != middle; ++a)
        result.push_back(project(*a));
    for (; b != items.end(); ++b)
        result.push_back(project(*b));
    return result;
}

// The first eight bytes of a collation key, most significant first.
std::uint64_t bytePrefix(const std::uint8_t *bytes, std::size_t size)
{
    std::uint64_t key = 0;
    for (std::size_t i = 0; i < 8; ++i)
        key = (key << 8) | (i < size ? bytes[i] : 0u);
    return key;
}

std::vector<QStringView> inOrder(std::span<const QStringView> lines,
                                 const std::vector<std::uint32_t> &order)
{
    std::vector<QStringView> result;
    result.reserve(order.size());
    for (const std::uint32_t index : order)
        result.push_back(lines[index]);
    return result;
}

bool isTrimmedSpace(QChar c)
{
    return c.isSpace();
}

} // namespace

int compareUtf16(QStringView a, QStringView b)
{
    const qsizetype common = std::min(a.size(), b.size());
    const char16_t *pa = a.utf16();
    const char16_t *pb = b.utf16();
    qsizetype i = 0;
    // Four units at a time until they differ.
    for (; i + 4 <= common; i += 4) {
        std::uint64_t wa;
        std::uint64_t wb;
        std::memcpy(&wa, pa + i, 8);
        std::memcpy(&wb, pb + i, 8);
        if (wa != wb)
            break;
    }
    for (; i < common; ++i) {
        if (pa[i] != pb[i])
            return pa[i] < pb[i] ? -1 : 1;
    }
    return a.size() < b.size() ? -1 : a.size() > b.size() ? 1 : 0;
}

std::vector<QStringView> sortLiterally(std::span<const QStringView> lines, bool descending)
{
    // The first eight units as two numbers: lines often share their first word's first letters.
    struct Entry
    {
        std::uint64_t head;
        std::uint64_t next;
        QStringView line;
    };

    std::vector<Entry> entries;
    entries.reserve(lines.size());
    for (const QStringView line : lines)
        entries.push_back({prefixKey(line, 0), prefixKey(line, 4), line});
    // Equal lines are the same text, so neither direction needs a stable sort.
    auto less = [](const Entry &a, const Entry &b) {
        if (a.head != b.head)
            return a.head < b.head;
        if (a.next != b.next)
            return a.next < b.next;
        return compareUtf16(a.line, b.line) < 0;
    };
    auto line = [](const Entry &entry) { return entry.line; };
    if (descending)
        return sortInTwo(
            entries, [&](const Entry &a, const Entry &b) { return less(b, a); }, line);
    return sortInTwo(entries, less, line);
}

namespace {

// UTF-8 bytes in the order of the UTF-16 units they encode. Byte order is code point order, and
// UTF-16 differs from that in one place: U+E000–U+FFFF (lead bytes EE and EF) come after the
// characters beyond U+FFFF (lead bytes F0–F4), whose surrogates are D800–DFFF. Those two lead
// bytes move above F4 (valid UTF-8 holds no byte above F4); no other byte moves.
constexpr std::uint8_t utf16Rank(std::uint8_t byte)
{
    return byte == 0xEE || byte == 0xEF ? std::uint8_t(byte + 0x10) : byte;
}

// Eight bytes from `from` ranked, most significant first, zero past the end.
std::uint64_t rankedPrefix(std::string_view line, std::size_t from)
{
    if (line.size() >= from + 8) {
        std::uint64_t word;
        std::memcpy(&word, line.data() + from, 8);
        // ASCII only (the common case): no byte to rank, the bytes read as one number.
        if ((word & 0x8080808080808080ull) == 0)
            return std::endian::native == std::endian::little ? std::byteswap(word) : word;
    }
    std::uint64_t key = 0;
    for (std::size_t i = from; i < from + 8; ++i)
        key = (key << 8) | (i < line.size() ? utf16Rank(std::uint8_t(line[i])) : 0u);
    return key;
}

int compareUtf8AsUtf16(std::string_view a, std::string_view b)
{
    const std::size_t common = std::min(a.size(), b.size());
    std::size_t i = 0;
    for (; i + 8 <= common; i += 8) {
        std::uint64_t wa;
        std::uint64_t wb;
        std::memcpy(&wa, a.data() + i, 8);
        std::memcpy(&wb, b.data() + i, 8);
        if (wa != wb)
            break;
    }
    for (; i < common; ++i) {
        const auto ca = utf16Rank(std::uint8_t(a[i]));
        const auto cb = utf16Rank(std::uint8_t(b[i]));
        if (ca != cb)
            return ca < cb ? -1 : 1;
    }
    return a.size() < b.size() ? -1 : a.size() > b.size() ? 1 : 0;
}

} // namespace

std::vector<std::string_view> sortUtf8Literally(std::span<const std::string_view> lines,
                                                bool descending)
{
    struct Entry
    {
        std::uint64_t head;
        std::string_view line;
    };

    std::vector<Entry> entries;
    entries.reserve(lines.size());
    for (const std::string_view line : lines)
        entries.push_back({rankedPrefix(line, 0), line});
    auto less = [](const Entry &a, const Entry &b) {
        if (a.head != b.head)
            return a.head < b.head;
        return a.line.size() > 8 && b.line.size() > 8
                   ? compareUtf8AsUtf16(a.line.substr(8), b.line.substr(8)) < 0
                   : a.line.size() < b.line.size();
    };
    // Equal lines are the same text, so neither direction needs a stable sort.
    auto line = [](const Entry &entry) { return entry.line; };
    if (descending)
        return sortInTwo(
            entries, [&](const Entry &a, const Entry &b) { return less(b, a); }, line);
    return sortInTwo(entries, less, line);
}

namespace {

// One line's collation key appended to `keys`.
void appendKey(UCollator *collator, QStringView line, std::vector<std::uint8_t> &keys)
{
    const auto *units = reinterpret_cast<const UChar *>(line.utf16());
    const auto length = int32_t(line.size());
    const std::size_t start = keys.size();
    keys.resize(start + 64);
    int32_t size = ucol_getSortKey(collator, units, length, keys.data() + start, 64);
    if (size > 64) {
        keys.resize(start + std::size_t(size));
        size = ucol_getSortKey(collator, units, length, keys.data() + start, size);
    }
    keys.resize(start + std::size_t(size));
}

// The same key read straight from UTF-8, in parts (the parts joined compare as the whole key).
void appendKey(UCollator *collator, std::string_view line, std::vector<std::uint8_t> &keys)
{
    UCharIterator text;
    uiter_setUTF8(&text, line.data(), int32_t(line.size()));
    std::uint32_t state[2] = {0, 0};
    std::size_t start = keys.size();
    for (int32_t room = 64;; room *= 2) {
        keys.resize(start + std::size_t(room));
        UErrorCode status = U_ZERO_ERROR;
        const int32_t written
            = ucol_nextSortKeyPart(collator, &text, state, keys.data() + start, room, &status);
        start += std::size_t(std::max(0, written));
        if (U_FAILURE(status) || written < room)
            break;
    }
    keys.resize(start);
}

// The collation keys of `lines`, one after the other in `keys`, and where each ends.
template<typename Line>
void collationKeys(UCollator *collator,
                   std::span<const Line> lines,
                   std::vector<std::uint8_t> &keys,
                   std::vector<std::uint32_t> &ends)
{
    keys.reserve(lines.size() * 24);
    ends.reserve(lines.size());
    for (const Line line : lines) {
        appendKey(collator, line, keys);
        ends.push_back(std::uint32_t(keys.size()));
    }
}

// The lines' positions in the locale's collation with case ignored (ties in input order), or
// nothing when the locale has no collator.
template<typename Line>
std::optional<std::vector<std::uint32_t>>
orderIgnoringCase(std::span<const Line> lines, const QLocale &locale, bool descending)
{
    UErrorCode status = U_ZERO_ERROR;
    const QByteArray localeId = locale.name().toLatin1();
    UCollator *collator = ucol_open(localeId.constData(), &status);
    if (U_FAILURE(status) || !collator)
        return std::nullopt;
    // Secondary strength: letters and accents count, case does not.
    ucol_setStrength(collator, UCOL_SECONDARY);

    // Every line's collation key, computed once: comparing keys is a byte comparison, far
    // cheaper than collating the lines again at each of the sort's comparisons. Two threads
    // compute them, each half of the lines with its own collator.
    const bool inTwo
        = lines.size() >= kParallelSortFrom && QThreadPool::globalInstance()->maxThreadCount() >= 2;
    const std::size_t half = inTwo ? lines.size() / 2 : lines.size();
    std::vector<std::uint8_t> keys[2];
    std::vector<std::uint32_t> ends[2];
    UCollator *second = nullptr;
    if (inTwo) {
        UErrorCode cloneStatus = U_ZERO_ERROR;
        second = ucol_clone(collator, &cloneStatus);
        if (U_FAILURE(cloneStatus))
            second = nullptr;
    }
    if (second) {
        QFuture<void> other = QtConcurrent::run(
            [&] { collationKeys(second, lines.subspan(half), keys[1], ends[1]); });
        collationKeys(collator, lines.first(half), keys[0], ends[0]);
        other.waitForFinished();
        ucol_close(second);
    } else {
        collationKeys(collator, lines, keys[0], ends[0]);
    }
    ucol_close(collator);

    struct Entry
    {
        std::uint64_t prefix;
        const std::uint8_t *key;
        std::uint32_t keySize;
        std::uint32_t index;
    };

    std::vector<Entry> entries;
    entries.reserve(lines.size());
    for (int part = 0; part < 2; ++part) {
        const std::uint32_t first = part == 0 ? 0 : std::uint32_t(half);
        std::uint32_t start = 0;
        for (std::size_t i = 0; i < ends[part].size(); ++i) {
            const std::uint8_t *key = keys[part].data() + start;
            const std::uint32_t size = ends[part][i] - start;
            entries.push_back({bytePrefix(key, size), key, size, first + std::uint32_t(i)});
            start = ends[part][i];
        }
    }

    auto compareKeys = [](const Entry &a, const Entry &b) {
        if (a.prefix != b.prefix)
            return a.prefix < b.prefix ? -1 : 1;
        const int order = std::memcmp(a.key, b.key, std::min(a.keySize, b.keySize));
        if (order != 0)
            return order;
        return a.keySize < b.keySize ? -1 : a.keySize > b.keySize ? 1 : 0;
    };
    // Ties broken by input position: a stable order in both directions, and a total order, so
    // sorting in two halves gives the same result.
    return sortInTwo(
        entries,
        [&](const Entry &a, const Entry &b) {
            const int order = compareKeys(a, b);
            if (order != 0)
                return descending ? order > 0 : order < 0;
            return a.index < b.index;
        },
        [](const Entry &entry) { return entry.index; });
}

} // namespace

std::vector<QStringView>
sortIgnoringCase(std::span<const QStringView> lines, const QLocale &locale, bool descending)
{
    const auto order = orderIgnoringCase(lines, locale, descending);
    return order ? inOrder(lines, *order) : sortLiterally(lines, descending);
}

std::vector<std::string_view> sortUtf8IgnoringCase(std::span<const std::string_view> lines,
                                                   const QLocale &locale,
                                                   bool descending)
{
    const auto order = orderIgnoringCase(lines, locale, descending);
    if (!order)
        return sortUtf8Literally(lines, descending);
    std::vector<std::string_view> result;
    result.reserve(order->size());
    for (const std::uint32_t index : *order)
        result.push_back(lines[index]);
    return result;
}

std::optional<double> leadingNumber(QStringView line)
{
    qsizetype start = 0;
    qsizetype end = line.size();
    while (start < end && isTrimmedSpace(line[start]))
        ++start;
    while (end > start && isTrimmedSpace(line[end - 1]))
        --end;
    // The longest prefix of the form [+-]digits[.digits][e[+-]digits], with "," as ".".
    std::string number;
    qsizetype i = start;
    auto unit = [&](qsizetype at) -> char16_t {
        if (at >= end)
            return 0;
        const char16_t c = line[at].unicode();
        return c == u',' ? u'.' : c;
    };
    auto isDigit = [](char16_t c) { return c >= u'0' && c <= u'9'; };
    bool negative = false;
    if (unit(i) == u'+' || unit(i) == u'-') {
        negative = unit(i) == u'-';
        ++i;
    }
    bool digits = false;
    while (isDigit(unit(i))) {
        number += char(unit(i++));
        digits = true;
    }
    if (unit(i) == u'.') {
        qsizetype j = i + 1;
        std::string fraction = ".";
        while (isDigit(unit(j)))
            fraction += char(unit(j++));
        if (fraction.size() > 1 || digits) {
            number += fraction;
            digits = digits || fraction.size() > 1;
            i = j;
        }
    }
    if (!digits)
        return std::nullopt;
    if (unit(i) == u'e' || unit(i) == u'E') {
        qsizetype j = i + 1;
        std::string exponent = "e";
        if (unit(j) == u'+' || unit(j) == u'-')
            exponent += char(unit(j++));
        if (isDigit(unit(j))) {
            while (isDigit(unit(j)))
                exponent += char(unit(j++));
            number += exponent;
        }
    }
    double value = 0;
    const auto [rest, error] = std::from_chars(number.data(), number.data() + number.size(), value);
    if (error == std::errc::result_out_of_range) {
        // Too large becomes infinite, too small zero.
        const auto e = number.find('e');
        const bool tiny = e != std::string::npos && number.size() > e + 1 && number[e + 1] == '-';
        value = tiny ? 0.0 : std::numeric_limits<double>::infinity();
    }
    (void)rest;
    return negative ? -value : value;
}

std::vector<QStringView> sortNumerically(std::span<const QStringView> lines, bool descending)
{
    std::vector<std::pair<double, std::uint32_t>> numeric;
    std::vector<std::uint32_t> other;
    for (std::size_t index = 0; index < lines.size(); ++index) {
        if (const auto value = leadingNumber(lines[index]))
            numeric.push_back({*value, std::uint32_t(index)});
        else
            other.push_back(std::uint32_t(index));
    }
    std::stable_sort(numeric.begin(), numeric.end(), [descending](const auto &a, const auto &b) {
        return descending ? a.first > b.first : a.first < b.first;
    });
    std::vector<std::uint32_t> order;
    order.reserve(lines.size());
    for (const auto &entry : numeric)
        order.push_back(entry.second);
    order.insert(order.end(), other.begin(), other.end());
    return inOrder(lines, order);
}

std::vector<QStringView> sortByLength(std::span<const QStringView> lines)
{
    Graphemes graphemes;
    std::vector<std::pair<qsizetype, std::uint32_t>> entries;
    entries.reserve(lines.size());
    for (std::size_t index = 0; index < lines.size(); ++index)
        entries.push_back({graphemes.count(lines[index]), std::uint32_t(index)});
    std::stable_sort(entries.begin(), entries.end(), [](const auto &a, const auto &b) {
        return a.first < b.first;
    });
    std::vector<std::uint32_t> order;
    order.reserve(entries.size());
    for (const auto &entry : entries)
        order.push_back(entry.second);
    return inOrder(lines, order);
}

} // namespace mirtex
