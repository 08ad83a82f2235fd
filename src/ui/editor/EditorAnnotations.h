// Draws the annotations that follow the text of one editor: bookmarks in the gutter, marks, the
// other occurrences of the selected word and the matching bracket as indicators, in every pane.
// The ranges themselves live in core (TextAnnotations); this class keeps Scintilla in step with
// them. Smart highlighting and brace matching run once per burst of edits or selection changes;
// smart highlighting searches a copy of the text on a worker thread.
#pragma once

#include "core/editor/TextAnnotations.h"
#include "ui/editor/EditorColors.h"

#include <QObject>

#include <stop_token>
#include <vector>

class QTimer;

namespace mirtex {

class EditorPane;
class EditorView;
class Preferences;

class EditorAnnotations : public QObject
{
    Q_OBJECT

public:
    EditorAnnotations(EditorView &view, Preferences &prefs);
    ~EditorAnnotations() override;

    TextAnnotations &model() { return m_model; }

    // Marker and indicator looks for a pane (new panes, colour changes).
    void configurePane(EditorPane *pane);
    void applyColors(const EditorColors &colors);

    void toggleBookmark(qsizetype lineIndex);
    std::vector<qsizetype> bookmarkedLines() const;
    void setBookmarkedLines(const std::vector<qsizetype> &lines);

    // The marks become exactly these ranges (mark all; empty clears them) and are redrawn.
    void setMarkRanges(std::vector<TextRange> ranges);

    // Forgets the after-edit work (the text was replaced wholesale).
    void textReplaced();

private:
    void onEdited(TextRange editedInNewText, qsizetype changeInLength);
    void onCaretMoved();
    void runAfterEdit();
    void runSelectionWork();
    void updateBraces();
    void startSmartHighlight();
    void paintBookmarks();
    void paintRanges(int indicator, const std::vector<TextRange> &ranges);

    EditorView &m_view;
    Preferences &m_prefs;
    TextAnnotations m_model;
    EditorColors m_colors;
    QTimer *m_afterEdit;
    QTimer *m_afterSelection;
    bool m_bookmarksMoved = false;
    quint64 m_smartGeneration = 0;
    std::stop_source m_smartStop;
};

} // namespace mirtex
