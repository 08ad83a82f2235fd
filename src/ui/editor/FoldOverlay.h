// Draws the fold markers in a pane's fold margin and the "⋯" box after every folded header, and
// turns clicks on them into folding and unfolding.
#pragma once

#include "ui/editor/EditorColors.h"
#include "ui/editor/PaneOverlay.h"

#include <QRect>

#include <optional>

namespace mirtex {

class EditorFolding;

class FoldOverlay final : public PaneOverlay
{
public:
    static constexpr int kMargin = 2; // the Scintilla margin holding the markers

    explicit FoldOverlay(EditorFolding &folding)
        : m_folding(folding)
    {}

    void setColors(const EditorColors &colors) { m_colors = colors; }

    void paintOver(EditorPane &pane, QPainter &painter) override;
    bool mousePressed(EditorPane &pane, QMouseEvent &event) override;

    // Where the placeholder of a folded header line is drawn in the pane's viewport; nothing
    // when the line is not folded or not on screen.
    std::optional<QRect> placeholderRect(EditorPane &pane, qint64 lineIndex) const;
    // The marker area of a line in the fold margin; nothing when the margin is hidden.
    std::optional<QRect> markerRect(EditorPane &pane, qint64 lineIndex) const;

private:
    EditorFolding &m_folding;
    EditorColors m_colors;
};

} // namespace mirtex
