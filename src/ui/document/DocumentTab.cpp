#include "ui/document/DocumentTab.h"

#include "ui/document/DocumentPage.h"
#include "ui/document/FileNotices.h"
#include "ui/editor/EditorView.h"

#include <QFileInfo>

namespace mirtex {

DocumentTab::DocumentTab(Preferences &prefs,
                         const QByteArray &utf8,
                         std::optional<QString> path,
                         TextEncoding encoding,
                         LineEnding lineEnding,
                         const QString &untitledName,
                         QUuid id,
                         std::optional<QByteArray> savedUtf8)
    : m_page(new DocumentPage(new EditorView(prefs)))
    , m_editor(m_page->editor())
{
    m_editor->loadText(utf8);
    m_document = std::make_unique<Document>(m_editor.data(),
                                            savedUtf8.value_or(utf8),
                                            std::move(path),
                                            encoding,
                                            lineEnding,
                                            untitledName,
                                            id);
    if (savedUtf8)
        m_document->updateDirty();
    m_document->onStateChange = [this]() {
        m_editor->setShownLineEnding(m_document->lineEnding());
        Q_EMIT stateChanged();
    };
    m_editor->setShownLineEnding(m_document->lineEnding());
    connect(m_editor, &EditorView::textEdited, this, [this]() { m_document->textDidChange(); });
    m_document->onPathChange = [this](const QString &) { detectLanguage(); };
    m_notices = new FileNotices(*this);
    m_page->setInfoBar(m_notices);
}

FileNotices &DocumentTab::notices() const
{
    return *m_notices;
}

void DocumentTab::setLanguage(LanguagePtr language)
{
    m_document->setLanguageId(language->id());
    m_editor->setLanguage(std::move(language));
    m_notices->checkColourLimit();
    Q_EMIT stateChanged();
}

void DocumentTab::markFileRemoved()
{
    m_fileRemoved = true;
    Q_EMIT stateChanged();
}

bool DocumentTab::isFileRemoved() const
{
    return m_fileRemoved && m_document->path() && !QFileInfo::exists(*m_document->path());
}

void DocumentTab::setReadOnly(bool readOnly)
{
    const bool changed = readOnly != m_document->isReadOnly();
    m_document->setReadOnly(readOnly);
    if (changed)
        Q_EMIT stateChanged();
}

void DocumentTab::detectLanguage()
{
    // The first line is enough: read a bounded prefix rather than the whole text.
    const QByteArray head = m_editor->utf8Prefix(4096);
    const qsizetype newline = head.indexOf('\n');
    const QString firstLine = QString::fromUtf8(newline >= 0 ? head.left(newline) : head);
    setLanguage(Language::detect(m_document->path(), firstLine));
}

DocumentTab::~DocumentTab()
{
    m_document->onStateChange = nullptr;
    delete m_page.data();
}

} // namespace mirtex
