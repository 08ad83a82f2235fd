// The detectors that look at one line at a time: indentation, Markdown headings, INI sections.
#include "core/editor/FoldDetection.h"

#include <algorithm>

namespace mirtex {

namespace {

bool isBlankUnit(char16_t c)
{
    return c == u' ' || c == u'\t' || c == u'\r';
}

// Calls visit(lineNumber, lineText) for every line of the text.
template<typename Visit>
void forEachLine(QStringView text, Visit visit)
{
    const char16_t *units = reinterpret_cast<const char16_t *>(text.data());
    const char16_t *end = units + text.size();
    qint64 line = 0;
    for (const char16_t *start = units;; ++line) {
        const char16_t *lf = std::find(start, end, u'\n');
        visit(line, QStringView(start, lf - start));
        if (lf == end)
            return;
        start = lf + 1;
    }
}

bool isBlankLine(QStringView line)
{
    return std::all_of(line.begin(), line.end(), [](QChar c) { return isBlankUnit(c.unicode()); });
}

// Leading blanks (spaces and tabs) of a line.
qsizetype leadingBlanks(QStringView line)
{
    qsizetype n = 0;
    while (n < line.size() && (line[n] == u' ' || line[n] == u'\t'))
        ++n;
    return n;
}

} // namespace

std::vector<FoldLines> indentationFoldLines(QStringView text, int tabWidth)
{
    struct Open
    {
        qint64 indent;
        qint64 line;
    };

    const qint64 tab = std::max(1, tabWidth);
    std::vector<Open> stack;
    std::vector<FoldLines> pairs;
    qint64 lastNonBlank = -1;
    auto popFrom = [&](qint64 indent) {
        while (!stack.empty() && stack.back().indent >= indent) {
            if (stack.back().line < lastNonBlank)
                pairs.push_back({stack.back().line, lastNonBlank});
            stack.pop_back();
        }
    };
    forEachLine(text, [&](qint64 line, QStringView content) {
        qint64 indent = 0;
        qsizetype i = 0;
        for (; i < content.size(); ++i) {
            const char16_t c = content[i].unicode();
            if (c == u' ')
                ++indent;
            else if (c == u'\t')
                indent = (indent / tab + 1) * tab;
            else if (c != u'\r')
                break;
        }
        if (i == content.size())
            return; // blank lines neither open nor close blocks
        popFrom(indent);
        stack.push_back({indent, line});
        lastNonBlank = line;
    });
    popFrom(0);
    return pairs;
}

std::vector<FoldLines> headingFoldLines(QStringView text)
{
    struct Open
    {
        int level;
        qint64 line;
    };

    std::vector<Open> stack;
    std::vector<FoldLines> pairs;
    qint64 lastNonBlank = -1;
    bool inFence = false;
    auto popFrom = [&](int level) {
        while (!stack.empty() && stack.back().level >= level) {
            if (stack.back().line < lastNonBlank)
                pairs.push_back({stack.back().line, lastNonBlank});
            stack.pop_back();
        }
    };
    forEachLine(text, [&](qint64 line, QStringView content) {
        if (isBlankLine(content))
            return;
        const QStringView rest = content.mid(leadingBlanks(content));
        if (rest.startsWith(u"```") || rest.startsWith(u"~~~")) {
            inFence = !inFence;
        } else if (!inFence) {
            qsizetype spaces = 0;
            while (spaces < content.size() && content[spaces] == u' ')
                ++spaces;
            qsizetype hashes = 0;
            while (spaces + hashes < content.size() && content[spaces + hashes] == u'#')
                ++hashes;
            const qsizetype after = spaces + hashes;
            // A CR before the line's LF ends the heading as the end of the line does.
            const bool ends = after == content.size() || content[after] == u' '
                              || content[after] == u'\t' || content[after] == u'\r';
            if (spaces <= 3 && hashes >= 1 && hashes <= 6 && ends) {
                popFrom(int(hashes));
                stack.push_back({int(hashes), line});
            }
        }
        lastNonBlank = line;
    });
    popFrom(0);
    return pairs;
}

std::vector<FoldLines> sectionFoldLines(QStringView text)
{
    std::vector<FoldLines> pairs;
    qint64 header = -1;
    qint64 lastNonBlank = -1;
    auto close = [&]() {
        if (header >= 0 && lastNonBlank > header)
            pairs.push_back({header, lastNonBlank});
    };
    forEachLine(text, [&](qint64 line, QStringView content) {
        const QStringView trimmed = content.trimmed();
        if (trimmed.isEmpty())
            return;
        if (trimmed.startsWith(u'[')) {
            close();
            header = line;
        }
        lastNonBlank = line;
    });
    close();
    return pairs;
}

} // namespace mirtex
