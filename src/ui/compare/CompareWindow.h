// The compare window: two texts side by side, aligned by their line diff (filler rows keep equal
// lines facing each other), coloured in their languages, with changed lines tinted and changed
// words highlighted, an overview strip, synchronised scrolling, the totals "+N −M" and the
// position "differenza i di n". F7 and Shift+F7 move between differences; a difference can be
// carried to either side (an undoable edit in that tab); the comparison is redone after every
// edit of either tab (in the background for large texts, newest request wins); white space and
// case can be ignored; the comparison can be saved as a patch. Main thread only.
#pragma once

#include "core/compare/DiffAlignment.h"
#include "core/compare/TextDiff.h"
#include "ui/compare/CompareSide.h"
#include "ui/compare/DiffPaneMarks.h"

#include <QFutureWatcher>
#include <QWidget>

#include <memory>

class QAction;
class QLabel;
class QTimer;

namespace mirtex {

class DiffOverview;
class EditorView;
class Preferences;
class Questions;
struct EditorColors;

class CompareWindow : public QWidget
{
    Q_OBJECT

public:
    // Texts of both sides together above this many UTF-16 units are compared in the background.
    static constexpr qsizetype kBackgroundAboveUnits = 399999;

    CompareWindow(Preferences &prefs,
                  Questions &questions,
                  CompareSide left,
                  CompareSide right,
                  const EditorColors &colors,
                  QWidget *parent = nullptr);
    ~CompareWindow() override;

    const TextDiff &diff() const { return *m_shown->diff; }

    const DiffAlignment &alignment() const { return m_shown->alignment; }

    // The difference the position and the carry commands refer to; -1 when there is none.
    qsizetype currentHunk() const { return m_current; }

    void goToHunk(qsizetype hunk);
    void goToNext();
    void goToPrevious();
    // The current difference made equal on the right (left) side; false when it cannot be (no
    // difference, or that side is not an editable tab).
    bool carryToRight();
    bool carryToLeft();

    void setOptions(DiffOptions options);

    DiffOptions options() const { return m_options; }

    // Compares the sides' current texts now, on this thread.
    void compareNow();

    // Whether the comparison on screen is the newest one asked for (none is still being made).
    bool isUpToDate() const { return m_shown->generation == m_generation; }

    QString totalsText() const;
    QString positionText() const;
    EditorView &pane(CompareSideIndex side) const;

    // Writes the comparison as a unified diff; false when the file cannot be written.
    bool writePatch(const QString &path) const;

Q_SIGNALS:
    // A new comparison is on screen.
    void shown();

protected:
    // A pane grown taller shows rows that were never numbered.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Result
    {
        std::shared_ptr<const TextDiff> diff;
        DiffAlignment alignment;
        quint64 generation = 0;
    };

    static Result compute(QString left, QString right, DiffOptions options, quint64 generation);
    void requestComparison();
    void showResult(Result result);
    bool carry(CompareSideIndex target);
    void syncScroll(CompareSideIndex from);
    void refreshVisibleRows();
    void updateLabels();
    void savePatch();
    QWidget *sideWidget(CompareSideIndex index);

    CompareSide &side(CompareSideIndex index)
    {
        return index == CompareSideIndex::left ? m_left : m_right;
    }

    Preferences &m_prefs;
    Questions &m_questions;
    CompareSide m_left;
    CompareSide m_right;
    DiffOptions m_options;
    std::unique_ptr<Result> m_shown;
    EditorView *m_panes[2] = {nullptr, nullptr};
    std::unique_ptr<DiffPaneMarks> m_marks[2];
    DiffOverview *m_overview = nullptr;
    QLabel *m_totals = nullptr;
    QLabel *m_position = nullptr;
    QAction *m_carryRight = nullptr;
    QAction *m_carryLeft = nullptr;
    QTimer *m_debounce = nullptr;
    QFutureWatcher<Result> m_watcher;
    quint64 m_generation = 0;
    qsizetype m_current = -1;
    bool m_syncing = false;
    bool m_dark = false;
};

} // namespace mirtex
