#include "core/tools/LineSorting.h"

#include "core/tools/Graphemes.h"

#include <unicode/ucol.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>

namespace mirtex {

namespace {

// The first four units as one number, so that most comparisons of a sort read no line text.
std::uint64_t prefixKey(QStringView line)
{
    std::uint64_t key = 0;
    for (qsizetype i = 0; i < 4; ++i)
        key = (key << 16) | (i < line.size() ? line[i].unicode() : 0u);
    return key;
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
    struct Entry
    {
        std::uint64_t key;
        QStringView line;
    };

    std::vector<Entry> entries;
    entries.reserve(lines.size());
    for (const QStringView line : lines)
        entries.push_back({prefixKey(line), line});
    // Equal lines are the same text, so neither direction needs a stable sort.
    auto less = [](const Entry &a, const Entry &b) {
        if (a.key != b.key)
            return a.key < b.key;
        return compareUtf16(a.line, b.line) < 0;
    };
    if (descending)
        std::sort(entries.begin(), entries.end(), [&](const Entry &a, const Entry &b) {
            return less(b, a);
        });
    else
        std::sort(entries.begin(), entries.end(), less);
    std::vector<QStringView> result;
    result.reserve(entries.size());
    for (const Entry &entry : entries)
        result.push_back(entry.line);
    return result;
}

std::vector<QStringView>
sortIgnoringCase(std::span<const QStringView> lines, const QLocale &locale, bool descending)
{
    UErrorCode status = U_ZERO_ERROR;
    const QByteArray localeId = locale.name().toLatin1();
    UCollator *collator = ucol_open(localeId.constData(), &status);
    if (U_FAILURE(status) || !collator)
        return sortLiterally(lines, descending);
    // Secondary strength: letters and accents count, case does not.
    ucol_setStrength(collator, UCOL_SECONDARY);

    // Every line's collation key in one buffer: comparing keys is a byte comparison, far cheaper
    // than collating the lines again at each of the sort's comparisons.
    struct Entry
    {
        std::uint64_t prefix;
        std::uint32_t keyStart;
        std::uint32_t keySize;
        std::uint32_t index;
    };

    std::vector<Entry> entries;
    entries.reserve(lines.size());
    std::vector<std::uint8_t> keys;
    keys.reserve(std::size_t(lines.size()) * 24);
    for (std::size_t index = 0; index < lines.size(); ++index) {
        const QStringView line = lines[index];
        const auto *units = reinterpret_cast<const UChar *>(line.utf16());
        const auto length = int32_t(line.size());
        std::size_t start = keys.size();
        keys.resize(start + 64);
        int32_t size = ucol_getSortKey(collator, units, length, keys.data() + start, 64);
        if (size > 64) {
            keys.resize(start + std::size_t(size));
            size = ucol_getSortKey(collator, units, length, keys.data() + start, size);
        }
        keys.resize(start + std::size_t(size));
        entries.push_back({0, std::uint32_t(start), std::uint32_t(size), std::uint32_t(index)});
    }
    ucol_close(collator);
    for (Entry &entry : entries)
        entry.prefix = bytePrefix(keys.data() + entry.keyStart, entry.keySize);

    const std::uint8_t *base = keys.data();
    auto compareKeys = [base](const Entry &a, const Entry &b) {
        if (a.prefix != b.prefix)
            return a.prefix < b.prefix ? -1 : 1;
        const int order
            = std::memcmp(base + a.keyStart, base + b.keyStart, std::min(a.keySize, b.keySize));
        if (order != 0)
            return order;
        return a.keySize < b.keySize ? -1 : a.keySize > b.keySize ? 1 : 0;
    };
    // Ties broken by input position: a stable order in both directions.
    std::sort(entries.begin(), entries.end(), [&](const Entry &a, const Entry &b) {
        const int order = compareKeys(a, b);
        if (order != 0)
            return descending ? order > 0 : order < 0;
        return a.index < b.index;
    });
    std::vector<QStringView> result;
    result.reserve(entries.size());
    for (const Entry &entry : entries)
        result.push_back(lines[entry.index]);
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
