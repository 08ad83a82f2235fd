// What an editor pane lets another object draw over its text and answer clicks for (the fold
// markers and the folded-block placeholders).
#pragma once

class QMouseEvent;
class QPainter;

namespace mirtex {

class EditorPane;

class PaneOverlay
{
public:
    virtual ~PaneOverlay() = default;

    // Called after the pane has painted its viewport; `painter` paints on the viewport.
    virtual void paintOver(EditorPane &pane, QPainter &painter) = 0;
    // Called before the pane handles a press; returns whether the press was taken.
    virtual bool mousePressed(EditorPane &pane, QMouseEvent &event) = 0;
};

} // namespace mirtex
