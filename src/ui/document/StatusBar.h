// The status line: caret line and column, selection length, encoding (a menu to convert or
// reopen), line ending (a menu), language and zoom.
#pragma once

#include <QStatusBar>

class QLabel;
class QMenu;
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

    // The menus of the encoding, line-ending and language buttons (not owned).
    void setMenus(QMenu *encoding, QMenu *lineEnding, QMenu *language);

private:
    QLabel *m_caret;
    QLabel *m_selection;
    QToolButton *m_encoding;
    QToolButton *m_lineEnding;
    QToolButton *m_language;
    QLabel *m_zoom;
};

} // namespace mirtex
