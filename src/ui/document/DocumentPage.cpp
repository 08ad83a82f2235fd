#include "ui/document/DocumentPage.h"

#include "ui/editor/EditorView.h"

#include <QSplitter>
#include <QVBoxLayout>

namespace mirtex {

DocumentPage::DocumentPage(EditorView *editor, QWidget *parent)
    : QWidget(parent)
    , m_layout(new QVBoxLayout(this))
    , m_body(new QSplitter(Qt::Horizontal, this))
    , m_editor(editor)
{
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);
    m_body->setChildrenCollapsible(false);
    m_body->addWidget(editor);
    m_layout->addWidget(m_body, 1);
    setFocusProxy(editor);
}

void DocumentPage::replace(QPointer<QWidget> &slot, QWidget *widget, int layoutIndex)
{
    delete slot.data();
    slot = widget;
    if (widget)
        m_layout->insertWidget(layoutIndex, widget);
}

void DocumentPage::setInfoBar(QWidget *bar)
{
    replace(m_infoBar, bar, 0);
}

void DocumentPage::setFindBar(QWidget *bar, FindBarPlace place)
{
    delete m_findBar.data();
    m_findBar = nullptr;
    if (!bar)
        return;
    // Above: just over the editor, below any info bar.
    const int bodyIndex = m_layout->indexOf(m_body);
    replace(m_findBar, bar, place == FindBarPlace::above ? bodyIndex : bodyIndex + 1);
}

void DocumentPage::setPreview(QWidget *preview)
{
    delete m_preview.data();
    m_preview = preview;
    if (preview) {
        m_body->addWidget(preview);
        // Side by side in equal halves.
        const int half = std::max(1, m_body->width() / 2);
        m_body->setSizes({half, half});
    }
}

} // namespace mirtex
