#include "ui/document/CommandContext.h"

#include "core/document/Document.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

namespace mirtex {

namespace {

QString formatOf(const Document &doc)
{
    return doc.encoding().id() + u'/' + toString(doc.lineEnding());
}

} // namespace

CommandContext::CommandContext(MainWindow &window, DocumentFlows &flows)
    : QObject(&window)
    , m_window(window)
    , m_flows(flows)
{
    connect(&m_window, &MainWindow::currentDocumentChanged, this, &CommandContext::follow);
    connect(&m_window, &MainWindow::documentsChanged, this, &CommandContext::changed);
    follow(m_window.currentDocument());
}

Preferences &CommandContext::preferences() const
{
    return m_window.preferences();
}

DocumentTab *CommandContext::currentTab() const
{
    return m_window.currentDocument();
}

EditorView *CommandContext::currentEditor() const
{
    DocumentTab *tab = currentTab();
    return tab ? tab->editor() : nullptr;
}

EditorPane *CommandContext::activePane() const
{
    EditorView *editor = currentEditor();
    return editor ? editor->activePane() : nullptr;
}

bool CommandContext::isEditable() const
{
    DocumentTab *tab = currentTab();
    return tab && !tab->document().isReadOnly();
}

bool CommandContext::hasSelection() const
{
    EditorView *editor = currentEditor();
    return editor && editor->selectionLength() > 0;
}

void CommandContext::follow(DocumentTab *tab)
{
    disconnect(m_stateConnection);
    disconnect(m_caretConnection);
    disconnect(m_menuConnection);
    if (tab) {
        m_stateConnection
            = connect(tab, &DocumentTab::stateChanged, this, &CommandContext::onStateChanged);
        m_caretConnection
            = connect(tab->editor(), &EditorView::caretMoved, this, &CommandContext::onCaretMoved);
        m_menuConnection = connect(tab->editor(),
                                   &EditorView::contextMenuRequested,
                                   this,
                                   &CommandContext::editorContextMenuRequested);
    }
    m_hadSelection = hasSelection();
    m_wasReadOnly = tab && tab->document().isReadOnly();
    m_languageId = tab ? tab->document().languageId() : QString();
    m_format = tab ? formatOf(tab->document()) : QString();
    Q_EMIT changed();
}

void CommandContext::onStateChanged()
{
    const DocumentTab *tab = currentTab();
    if (!tab)
        return;
    const Document &doc = tab->document();
    const QString format = formatOf(doc);
    if (doc.isReadOnly() == m_wasReadOnly && doc.languageId() == m_languageId && format == m_format)
        return;
    m_wasReadOnly = doc.isReadOnly();
    m_languageId = doc.languageId();
    m_format = format;
    Q_EMIT changed();
}

void CommandContext::onCaretMoved()
{
    // Most caret moves leave the selection empty (typing); only a change of emptiness matters.
    const bool selected = hasSelection();
    if (selected == m_hadSelection)
        return;
    m_hadSelection = selected;
    Q_EMIT changed();
}

} // namespace mirtex
