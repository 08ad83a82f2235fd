// How one pane of the compare window shows the comparison on top of its coloured text: line
// backgrounds for changed, added, removed and filler rows, the changed words inside paired changed
// lines, and the side's own line numbers (filler rows have none). Numbers and words are painted
// for the rows on screen only, so that huge comparisons open at once. Main thread only.
#pragma once

#include "core/compare/DiffAlignment.h"

#include <QColor>

#include <vector>

namespace mirtex {

class EditorPane;

enum class CompareSideIndex {
    left,
    right
};

struct DiffPaneColors
{
    QColor changed, added, removed, filler, changedWords, lineNumber;

    static DiffPaneColors forTheme(bool dark);
};

class DiffPaneMarks
{
public:
    DiffPaneMarks(EditorPane &pane, CompareSideIndex side);

    void setColors(const DiffPaneColors &colors);

    // A new comparison is shown (the pane already holds its aligned text).
    void show(const TextDiff *diff, const DiffAlignment *alignment);

    // Paints numbers and changed words on the rows from `firstRow`, `count` of them.
    void paintRows(qsizetype firstRow, qsizetype count);

private:
    void paintWords(qsizetype hunk);

    EditorPane &m_pane;
    CompareSideIndex m_side;
    const TextDiff *m_diff = nullptr;
    const DiffAlignment *m_alignment = nullptr;
    std::vector<bool> m_numbered;  // per row
    std::vector<bool> m_wordsDone; // per hunk
};

} // namespace mirtex
