// Any bytes as two texts (split at the first 0xFF byte; the first byte picks the options): the
// hunks are ordered, in range and separated by matched lines that really match; the left lines
// with every hunk replaced by its right lines are the right lines; and without ignore options the
// unified diff, applied to the left text, gives the right text.
#include "FuzzMain.h"
#include "core/compare/TextDiff.h"
#include "core/compare/UnifiedDiff.h"

#include <cstdlib>
#include <string_view>

using namespace mirtex;

namespace {

void check(bool condition)
{
    if (!condition)
        std::abort();
}

// The left text's lines with their "\n" (the last may lack it; an empty text has none).
QList<QStringView> fileLines(const QString &text)
{
    QList<QStringView> lines;
    qsizetype start = 0;
    while (start < text.size()) {
        const qsizetype newline = text.indexOf(u'\n', start);
        const qsizetype end = newline < 0 ? text.size() : newline + 1;
        lines.append(QStringView(text).sliced(start, end - start));
        start = end;
    }
    return lines;
}

// Applies a unified diff to `left` as `patch` does with exact context; aborts on any mismatch.
QString applyUnified(const QString &left, const QString &diff)
{
    const QList<QStringView> source = fileLines(left);
    const QList<QStringView> patchLines = fileLines(diff);
    check(patchLines.size() >= 3 && patchLines[0] == u"--- a\n" && patchLines[1] == u"+++ b\n");
    QString out;
    qsizetype at = 0; // next source line
    for (qsizetype p = 2; p < patchLines.size();) {
        const QStringView header = patchLines[p++];
        check(header.startsWith(u"@@ -") && header.endsWith(u" @@\n"));
        const QStringView range = header.sliced(4).split(u' ').first();
        const QList<QStringView> parts = range.split(u',');
        const qsizetype first = parts[0].toLongLong();
        const qsizetype count = parts.size() > 1 ? parts[1].toLongLong() : 1;
        const qsizetype start = count == 0 ? first : first - 1;
        check(start >= at && start <= source.size());
        for (; at < start; ++at)
            out += source[at];
        while (p < patchLines.size() && !patchLines[p].startsWith(u"@@")) {
            const QStringView line = patchLines[p++];
            check(!line.isEmpty() && line.endsWith(u'\n'));
            const bool unterminated
                = p < patchLines.size() && patchLines[p] == u"\\ No newline at end of file\n";
            if (unterminated)
                ++p;
            const QStringView body = line.sliced(1).chopped(1);
            if (line[0] == u'+') {
                out += body;
                if (!unterminated)
                    out += u'\n';
                continue;
            }
            check(line[0] == u' ' || line[0] == u'-');
            check(at < source.size());
            const QStringView expected = source[at];
            check(expected.endsWith(u'\n') != unterminated);
            check((unterminated ? expected : expected.chopped(1)) == body);
            if (line[0] == u' ')
                out += expected;
            ++at;
        }
    }
    for (; at < source.size(); ++at)
        out += source[at];
    return out;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    ensureApplication();
    if (size == 0)
        return 0;
    const DiffOptions options = DiffOptions::fromBits((data[0] & 1) | ((data[0] & 2) << 7));
    const std::string_view rest(reinterpret_cast<const char *>(data + 1), size - 1);
    const size_t split = rest.find('\xff');
    const std::string_view leftBytes = rest.substr(0, split);
    const std::string_view rightBytes
        = split == rest.npos ? std::string_view() : rest.substr(split + 1);
    const QString leftText = QString::fromUtf8(leftBytes.data(), qsizetype(leftBytes.size()));
    const QString rightText = QString::fromUtf8(rightBytes.data(), qsizetype(rightBytes.size()));
    const TextDiff diff(leftText, rightText, options);
    check(diff.left.text() == leftText && diff.right.text() == rightText);

    // Walk the hunks: matched stretches between them pair equal lines, one for one.
    QStringList rebuilt;
    qsizetype i = 0;
    qsizetype j = 0;
    for (const DiffHunk &hunk : diff.hunks) {
        check(!hunk.left.isEmpty() || !hunk.right.isEmpty());
        check(hunk.left.start >= i && hunk.left.end >= hunk.left.start
              && hunk.left.end <= diff.left.size());
        check(hunk.right.start >= j && hunk.right.end >= hunk.right.start
              && hunk.right.end <= diff.right.size());
        check(hunk.left.start - i == hunk.right.start - j);
        check(&hunk == &diff.hunks.front() || hunk.left.start > i);
        for (; i < hunk.left.start; ++i, ++j) {
            check(normalizedLine(diff.left[i], options) == normalizedLine(diff.right[j], options));
            rebuilt.append(diff.left[i].toString());
        }
        for (qsizetype k = hunk.right.start; k < hunk.right.end; ++k)
            rebuilt.append(diff.right[k].toString());
        i = hunk.left.end;
        j = hunk.right.end;
    }
    check(diff.left.size() - i == diff.right.size() - j);
    for (; i < diff.left.size(); ++i, ++j) {
        check(normalizedLine(diff.left[i], options) == normalizedLine(diff.right[j], options));
        rebuilt.append(diff.left[i].toString());
    }
    check(rebuilt.size() == diff.right.size());
    for (qsizetype k = 0; k < rebuilt.size(); ++k)
        check(normalizedLine(rebuilt[k], options) == normalizedLine(diff.right[k], options));
    if (options == DiffOptions{})
        check(rebuilt == diff.right.toList());

    const QString unified
        = unifiedDiff(diff, QStringLiteral("a"), QStringLiteral("b"), data[0] >> 4);
    if (options == DiffOptions{}) {
        check(unified.isEmpty() == (leftText == rightText));
        if (!unified.isEmpty())
            check(applyUnified(leftText, unified) == rightText);
    }
    return 0;
}
