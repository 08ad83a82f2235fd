// Handing Scintilla documents between panes directly: a document created with options (no style
// bytes for huge texts), and one document shared by the two panes of a split. Main thread only.
#pragma once

class QsciScintillaBase;

namespace mirtex::ScintillaDocuments {

// Gives `pane` a new empty document that keeps no style byte per character (it can never be
// coloured), carrying over the document-level settings of the old one (code page, line ending
// mode, tabs and indentation, character classes, read-only). Call before the text goes in; the
// old document is released. Per-document indexes (the UTF-16 line index) must be re-allocated.
void replaceWithUnstyled(QsciScintillaBase *pane);

// Shows the document of `from` in `to` as well (shared text and undo). Unlike
// QsciScintilla::setDocument this works with documents created by replaceWithUnstyled, which
// QScintilla's own document bookkeeping does not know about.
void share(QsciScintillaBase *from, QsciScintillaBase *to);

} // namespace mirtex::ScintillaDocuments
