#include "ui/document/StatusBar.h"

#include "core/languages/Language.h"
#include "ui/document/DocumentTab.h"
#include "ui/editor/EditorView.h"

#include <QCoreApplication>
#include <QLabel>
#include <QMenu>
#include <QToolButton>

namespace mirtex {

namespace {

constexpr int kPadding = 6;

QToolButton *makeButton(QWidget *parent)
{
    auto *button = new QToolButton(parent);
    button->setAutoRaise(true);
    button->setPopupMode(QToolButton::InstantPopup);
    button->setToolButtonStyle(Qt::ToolButtonTextOnly);
    return button;
}
} // namespace

StatusBar::StatusBar(QWidget *parent)
    : QStatusBar(parent)
    , m_caret(new QLabel(this))
    , m_selection(new QLabel(this))
    , m_encoding(makeButton(this))
    , m_lineEnding(makeButton(this))
    , m_language(makeButton(this))
    , m_zoom(new QLabel(this))
{
    setSizeGripEnabled(false);
    // Room at both ends and between the items, so no text touches the window's edge or another.
    setContentsMargins(kPadding, 0, kPadding, 0);
    setStyleSheet(QStringLiteral("QStatusBar::item { border: none; }"));
    for (QLabel *label : {m_caret, m_selection, m_zoom})
        label->setContentsMargins(kPadding, 2, kPadding, 2);
    for (QToolButton *button : {m_encoding, m_lineEnding, m_language})
        button->setContentsMargins(kPadding / 2, 0, kPadding / 2, 0);
    addWidget(m_caret);
    addWidget(m_selection);
    addPermanentWidget(m_language);
    addPermanentWidget(m_encoding);
    addPermanentWidget(m_lineEnding);
    addPermanentWidget(m_zoom);

    m_encoding->setToolTip(tr("Codifica"));
    m_lineEnding->setToolTip(tr("Fine riga"));
    m_language->setToolTip(tr("Linguaggio"));
    showDocument(nullptr);
}

void StatusBar::setMenus(QMenu *encoding, QMenu *lineEnding, QMenu *language)
{
    m_encoding->setMenu(encoding);
    m_lineEnding->setMenu(lineEnding);
    m_language->setMenu(language);
}

void StatusBar::showDocument(DocumentTab *tab)
{
    const bool has = tab != nullptr;
    for (QWidget *w : {static_cast<QWidget *>(m_caret),
                       static_cast<QWidget *>(m_selection),
                       static_cast<QWidget *>(m_encoding),
                       static_cast<QWidget *>(m_lineEnding),
                       static_cast<QWidget *>(m_language)})
        w->setVisible(has);
    if (!tab)
        return;
    const Document &doc = tab->document();
    m_encoding->setText(doc.encoding().shortLabel());
    m_lineEnding->setText(toString(doc.lineEnding()).toUpper());
    m_language->setText(Language::byId(doc.languageId())->name());
    showCaret(*tab->editor());
}

void StatusBar::showCaret(const EditorView &editor)
{
    m_caret->setText(
        tr("Riga %1, Col %2").arg(editor.caretLineNumber()).arg(editor.caretColumnNumber()));
    const qsizetype selected = editor.selectionLength();
    m_selection->setText(selected > 0 ? tr("Sel %1").arg(selected) : QString());
}

void StatusBar::showZoom(int zoomStep)
{
    m_zoom->setText(
        zoomStep == 0
            ? QString()
            : tr("Zoom %1%2").arg(zoomStep > 0 ? QStringLiteral("+") : QString()).arg(zoomStep));
}

} // namespace mirtex
