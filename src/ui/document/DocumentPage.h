// The page of one tab: a column holding the editor, with places kept for what shows around it
// (an info bar above, a find bar above or below the editor, a preview beside it). The page owns
// what is put in it.
#pragma once

#include <QPointer>
#include <QWidget>

class QSplitter;
class QVBoxLayout;

namespace mirtex {

class EditorView;

class DocumentPage : public QWidget
{
    Q_OBJECT

public:
    explicit DocumentPage(EditorView *editor, QWidget *parent = nullptr);

    EditorView *editor() const { return m_editor; }

    // Each slot holds one widget; a new one replaces (and deletes) the old, null empties it.
    void setInfoBar(QWidget *bar);
    enum class FindBarPlace {
        above,
        below
    };
    void setFindBar(QWidget *bar, FindBarPlace place = FindBarPlace::below);
    void setPreview(QWidget *preview);

    QWidget *infoBar() const { return m_infoBar; }

    QWidget *findBar() const { return m_findBar; }

    QWidget *preview() const { return m_preview; }

private:
    void replace(QPointer<QWidget> &slot, QWidget *widget, int layoutIndex);

    QVBoxLayout *m_layout;
    QSplitter *m_body; // the editor and the preview, side by side
    QPointer<EditorView> m_editor;
    QPointer<QWidget> m_infoBar;
    QPointer<QWidget> m_findBar;
    QPointer<QWidget> m_preview;
};

} // namespace mirtex
