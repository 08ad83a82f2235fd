// The lines of one text, split at every "\n" (the separator is not kept): a text ending with "\n"
// has a last, empty line, and an empty text is one empty line. The text is held once and shared;
// a line is a view into it, so splitting costs one scan and no copies.
#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

#include <vector>

namespace mirtex {

class TextLines
{
public:
    TextLines()
        : TextLines(QString())
    {}

    explicit TextLines(QString text);

    // Lines given one by one (tests, hunk text of arrays of lines).
    static TextLines fromList(const QStringList &lines);

    qsizetype size() const { return qsizetype(m_starts.size()) - 1; }

    // Line `index` without its "\n"; valid while this object (or a copy) lives.
    QStringView operator[](qsizetype index) const
    {
        return QStringView(m_text).mid(m_starts[index], m_starts[index + 1] - m_starts[index] - 1);
    }

    const QString &text() const { return m_text; }

    // UTF-16 offset of the start of line `index`; `size()` gives the text's length + 1.
    qsizetype lineStart(qsizetype index) const { return m_starts[index]; }

    // Whether the text ends with "\n" (its last line is the empty one after it).
    bool endsWithLineBreak() const
    {
        return size() > 1 && m_starts[size()] - m_starts[size() - 1] == 1;
    }

    QStringList toList() const;

private:
    QString m_text;
    std::vector<qsizetype> m_starts; // start of every line, plus text length + 1
};

} // namespace mirtex
