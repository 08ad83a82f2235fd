#include "ui/document/DocumentTab.h"

#include "ui/editor/EditorView.h"

namespace mirtex {

DocumentTab::DocumentTab(Preferences &prefs,
                         const QByteArray &utf8,
                         std::optional<QString> path,
                         TextEncoding encoding,
                         LineEnding lineEnding,
                         const QString &untitledName,
                         QUuid id,
                         std::optional<QByteArray> savedUtf8)
    : m_editor(new EditorView(prefs))
{
    m_editor->loadText(utf8);
    m_document = std::make_unique<Document>(
        m_editor.data(), savedUtf8.value_or(utf8), std::move(path), encoding, lineEnding, untitledName, id);
    if (savedUtf8)
        m_document->updateDirty();
    m_document->onStateChange = [this]() { Q_EMIT stateChanged(); };
    connect(m_editor, &EditorView::textEdited, this, [this]() { m_document->textDidChange(); });
}

DocumentTab::~DocumentTab()
{
    m_document->onStateChange = nullptr;
    delete m_editor.data();
}

} // namespace mirtex
