// "Mostra i fine riga" for files whose line ending is not LF. The editor's text always holds LF
// (the file's ending is written on save), so Scintilla would mark every line "LF"; this paints the
// document's own ending ("CRLF", "CR") over Scintilla's mark on the lines in view.
#pragma once

#include <QString>

class QPainter;

namespace mirtex {

class EditorPane;

class LineEndMarks
{
public:
    // Paints `label` at the end of every line break in view of `pane`, on its viewport.
    static void paint(EditorPane &pane, QPainter &painter, const QString &label);
};

} // namespace mirtex
