// The status line: caret line and column, selection length, encoding (a menu to convert or
// reopen), line ending (a menu), language and zoom.
#pragma once

#include "core/document/LineEnding.h"
#include "core/document/TextEncoding.h"

#include <QStatusBar>

class QLabel;
class QToolButton;

namespace mirtex {

class DocumentTab;
class EditorView;

class StatusBar : public QStatusBar
{
    Q_OBJECT

public:
    explicit StatusBar(QWidget *parent = nullptr);

    void showDocument(DocumentTab *tab);
    void showCaret(const EditorView &editor);
    void showZoom(int zoomStep);

    QToolButton *languageButton() const { return m_language; }

Q_SIGNALS:
    void convertRequested(mirtex::TextEncoding encoding);
    void reopenRequested(mirtex::TextEncoding encoding);
    void lineEndingRequested(mirtex::LineEnding ending);

private:
    QLabel *m_caret;
    QLabel *m_selection;
    QToolButton *m_encoding;
    QToolButton *m_lineEnding;
    QToolButton *m_language;
    QLabel *m_zoom;
};

} // namespace mirtex
