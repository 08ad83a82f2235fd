// The folding of one tab's text: finds its blocks (at once on open or language change, 0.25 s
// after edits, on a worker thread for long texts), carries the folds through edits, hides the
// folded lines in every pane and keeps carets out of them. The folds themselves live in core
// (FoldState); this class keeps the panes in step with them. Main thread only.
#pragma once

#include "core/editor/FoldState.h"
#include "core/editor/FoldStyle.h"
#include "core/editor/LineSpans.h"
#include "core/text/TextRange.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

namespace mirtex {

class EditorPane;
class EditorView;
class FoldOverlay;
class Preferences;
struct EditorColors;

class EditorFolding : public QObject
{
    Q_OBJECT

public:
    // Texts at least this long (UTF-16 units) are analysed on a worker thread.
    static constexpr qint64 kBackgroundFrom = 300'000;
    static constexpr int kDelayAfterEditMs = 250;

    EditorFolding(EditorView &view, const Preferences &prefs);
    ~EditorFolding() override;

    const FoldState &state() const { return m_state; }

    FoldStyle style() const { return m_style; }

    // A pane shows the folds from now on (a new pane of a split included).
    void configurePane(EditorPane *pane);
    void applyColors(const EditorColors &colors);

    // Detection: at once after a load or a language change, later after edits.
    void textLoaded();
    void languageChanged();
    void preferencesChanged();
    // Runs a pending or running detection now, on this thread (commands, pictures, tests).
    void detectNow();

    bool isDetectionPending() const { return m_timer.isActive() || m_running > 0; }

    // Lines are numbered from 0. Each returns whether something was folded or unfolded.
    bool fold(qint64 lineIndex);
    bool unfold(qint64 lineIndex);
    bool toggle(qint64 lineIndex);
    bool isFolded(qint64 lineIndex) const;
    bool foldCurrentBlock();
    bool unfoldCurrentBlock();
    bool foldAll();
    bool unfoldAll();
    bool foldLevel(int depth);
    bool foldAllExceptCurrentBlock();
    // Opens every fold around a range about to be shown (a found match, a line or a bookmark
    // jumped to), so that it is never selected inside hidden text.
    bool reveal(TextRange range);

    // The header lines of the folds, ascending.
    std::vector<qint64> foldedLines() const;
    // Folds these header lines once the blocks are known (after the next detection if one is
    // pending); lines that start no block are ignored. `then` runs once they are folded (at once
    // when nothing waits): what depends on the lines shown, such as the line at the top.
    void restoreFoldedLines(std::vector<qint64> lines, std::function<void()> then = {});

    // The panes' hidden lines as last applied (tests compare them with what Scintilla hides).
    const LineSpans &hiddenLines() const { return m_target; }

Q_SIGNALS:
    // The regions or the folds changed (menus, the gutter).
    void foldsChanged();

private:
    class Lines;
    void schedule(int delayMs);
    void startDetection();
    void install(quint64 generation, std::vector<FoldRegion> regions);
    void onEdited(TextRange editedInNewText, qsizetype changeInLength);

    // What one pane hides: as last applied (moved through edits since, as the pane moves its
    // lines), and the lines edits touched since, whose state in the pane is unknown.
    struct PaneLines
    {
        QPointer<EditorPane> pane;
        LineSpans applied;
        LineSpans touched;
    };

    // Brings every pane's hidden lines to the state's hidden ranges.
    void syncPanes(bool recompute = true);
    void followEdit(const LineEdit &edit, bool onlyMoved);
    void applyTo(PaneLines &pane);
    LineSpans spansOfHiddenRanges() const;
    bool touchesHiddenText(TextRange range) const;
    void moveCaretsOutOfHiddenText();
    void repaint();
    bool changed(bool hiddenChanged);
    qint64 caretLine() const;
    void updateMargins();

    EditorView &m_view;
    const Preferences &m_prefs;
    std::unique_ptr<Lines> m_lines;
    std::unique_ptr<FoldOverlay> m_overlay;
    FoldState m_state;
    FoldStyle m_style = FoldStyle::none;
    bool m_htmlTags = false;
    LineSpans m_target; // the lines the folds hide
    std::vector<PaneLines> m_panes;
    bool m_catchUpPosted = false;
    qint64 m_lineCount = 1;
    QTimer m_timer;
    quint64 m_generation = 0;
    int m_running = 0; // detections on the worker thread
    std::optional<std::vector<qint64>> m_restore;
    std::function<void()> m_afterRestore;
};

} // namespace mirtex
