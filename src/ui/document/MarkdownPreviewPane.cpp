#include "ui/document/MarkdownPreviewPane.h"

#include "core/app/Preferences.h"
#include "core/markdown/PreviewScripts.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MarkdownPreviewController.h"
#include "ui/document/PreviewEngine.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QDateTime>
#include <QHBoxLayout>
#include <QLabel>
#include <QScrollBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace mirtex {

namespace {

using Sci = QsciScintillaBase;

// After the preview was scrolled to follow the editor, its own scroll notices are ignored this
// long (the page scrolls smoothly in several steps).
constexpr qint64 kEchoMs = 400;

} // namespace

MarkdownPreviewPane::MarkdownPreviewPane(DocumentTab &tab,
                                         PreviewEngine &engine,
                                         Preferences &prefs,
                                         QWidget *parent)
    : QWidget(parent)
    , m_tab(&tab)
    , m_editor(tab.editor())
    , m_view(engine.createView(this))
    , m_controller(new MarkdownPreviewController(tab, *m_view, this))
    , m_modeButton(new QToolButton(this))
{
    setObjectName(QStringLiteral("mirtex.preview"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    auto *bar = new QWidget(this);
    bar->setObjectName(QStringLiteral("mirtex.preview.bar"));
    auto *barLayout = new QHBoxLayout(bar);
    barLayout->setContentsMargins(8, 2, 4, 2);
    auto *title = new QLabel(tr("ANTEPRIMA"), bar);
    QFont small = title->font();
    small.setBold(true);
    small.setPointSizeF(small.pointSizeF() * 0.85);
    title->setFont(small);
    barLayout->addWidget(title);
    barLayout->addStretch(1);
    m_modeButton->setObjectName(QStringLiteral("mirtex.preview.mode"));
    m_modeButton->setAutoRaise(true);
    barLayout->addWidget(m_modeButton);
    auto *exportButton = new QToolButton(bar);
    exportButton->setObjectName(QStringLiteral("mirtex.preview.exportPDF"));
    exportButton->setAutoRaise(true);
    exportButton->setText(tr("Esporta in PDF…"));
    barLayout->addWidget(exportButton);
    auto *closeButton = new QToolButton(bar);
    closeButton->setObjectName(QStringLiteral("mirtex.preview.close"));
    closeButton->setAutoRaise(true);
    closeButton->setText(QStringLiteral("✕"));
    closeButton->setToolTip(tr("Chiudi l'anteprima"));
    closeButton->setAccessibleName(tr("Chiudi l'anteprima"));
    barLayout->addWidget(closeButton);
    layout->addWidget(bar);
    layout->addWidget(m_view->widget(), 1);
    setMode(Mode::split);

    connect(m_modeButton, &QToolButton::clicked, this, [this]() {
        setMode(m_mode == Mode::split ? Mode::only : Mode::split);
    });
    connect(exportButton, &QToolButton::clicked, this, [this]() {
        if (onExportPdf)
            onExportPdf();
    });
    connect(closeButton, &QToolButton::clicked, this, [this]() {
        if (onClose)
            onClose();
    });

    // The text: a render 0.15 s after it stops changing; a new file name reloads the page.
    connect(&tab, &DocumentTab::stateChanged, m_controller, [this]() {
        m_controller->scheduleRender();
    });
    connect(m_editor, &EditorView::textEdited, m_controller, [this]() {
        m_controller->scheduleRender();
    });

    // The zoom: the editor's step, now and whenever it changes.
    m_controller->setZoomStep(prefs.zoom());
    connect(&prefs, &Preferences::changed, this, [this, &prefs](Preferences::Field field) {
        if (field == Preferences::Field::zoom)
            m_controller->setZoomStep(prefs.zoom());
    });

    // Scrolling: the page follows the editor's top line; scrolling the page moves the editor.
    m_followTimer.setSingleShot(true);
    m_followTimer.setInterval(16);
    connect(&m_followTimer, &QTimer::timeout, this, [this]() { followEditor(); });
    if (m_editor) {
        QScrollBar *scrollBar = m_editor->primaryPane()->verticalScrollBar();
        connect(scrollBar, &QScrollBar::valueChanged, this, [this]() {
            if (QDateTime::currentMSecsSinceEpoch() < m_editorScrolledByPreviewUntil)
                return;
            if (!m_followTimer.isActive())
                m_followTimer.start();
        });
    }
    m_view->scrolled = [this]() { followPreview(); };

    m_controller->update();
    followEditor();
}

MarkdownPreviewPane::~MarkdownPreviewPane()
{
    m_view->scrolled = nullptr;
    // The controller speaks to the view: it goes first.
    delete m_controller;
    if (m_editor)
        m_editor->setVisible(true);
}

void MarkdownPreviewPane::setMode(Mode mode)
{
    m_mode = mode;
    if (mode == Mode::split) {
        m_modeButton->setText(tr("Solo anteprima"));
        m_modeButton->setIcon(QIcon::fromTheme(QStringLiteral("view-preview")));
    } else {
        m_modeButton->setText(tr("Affianca all'editor"));
        m_modeButton->setIcon(QIcon::fromTheme(QStringLiteral("view-split-left-right")));
    }
    if (m_editor)
        m_editor->setVisible(mode == Mode::split);
}

void MarkdownPreviewPane::followEditor()
{
    if (!m_editor)
        return;
    EditorPane *pane = m_editor->primaryPane();
    const long displayLine = pane->SendScintilla(Sci::SCI_GETFIRSTVISIBLELINE);
    const int line = int(pane->SendScintilla(Sci::SCI_DOCLINEFROMVISIBLE, displayLine));
    const QScrollBar *bar = pane->verticalScrollBar();
    const bool atEnd = bar->maximum() > 0 && bar->value() >= bar->maximum();
    m_previewScrolledByEditorUntil = QDateTime::currentMSecsSinceEpoch() + kEchoMs;
    m_controller->follow(line, atEnd);
}

void MarkdownPreviewPane::followPreview()
{
    // Only the user's own scrolling of the page: the pointer over it or the keyboard in it.
    if (!m_editor || m_mode == Mode::only
        || QDateTime::currentMSecsSinceEpoch() < m_previewScrolledByEditorUntil)
        return;
    QWidget *page = m_view->widget();
    if (!page->underMouse() && !page->hasFocus() && !page->isAncestorOf(focusWidget()))
        return;
    QPointer<MarkdownPreviewPane> self(this);
    m_view->evaluate(PreviewScripts::topLineScript(), [self](const QVariant &value) {
        if (!self || !self->m_editor || !value.isValid())
            return;
        bool ok = false;
        const int line = value.toInt(&ok);
        if (!ok || line < 0)
            return;
        EditorPane *pane = self->m_editor->primaryPane();
        const long display = pane->SendScintilla(Sci::SCI_VISIBLEFROMDOCLINE, long(line));
        if (display == pane->SendScintilla(Sci::SCI_GETFIRSTVISIBLELINE))
            return;
        self->m_editorScrolledByPreviewUntil = QDateTime::currentMSecsSinceEpoch() + kEchoMs;
        pane->SendScintilla(Sci::SCI_SETFIRSTVISIBLELINE, display);
    });
}

} // namespace mirtex
