// One tab of the main window: the document, its editor and the page that shows the editor, kept
// in step (every edit reaches the document; the document's read-only state reaches the editor).
#pragma once

#include "core/document/Document.h"
#include "ui/document/DocumentPage.h"
#include "ui/editor/EditorView.h"

#include <QObject>
#include <QPointer>

#include <memory>

namespace mirtex {

class DocumentPage;
class EditorView;
class FileNotices;
class Preferences;

class DocumentTab : public QObject
{
    Q_OBJECT

public:
    // Creates the editor in its page (a widget the tab owns) with `utf8` as its initial text;
    // `savedUtf8`, when given, is the text on disk (a session backup may differ from it).
    DocumentTab(Preferences &prefs,
                const QByteArray &utf8,
                std::optional<QString> path,
                TextEncoding encoding,
                LineEnding lineEnding,
                const QString &untitledName,
                QUuid id = QUuid::createUuid(),
                std::optional<QByteArray> savedUtf8 = std::nullopt);
    ~DocumentTab() override;

    Document &document() { return *m_document; }

    const Document &document() const { return *m_document; }

    EditorView *editor() const { return m_editor; }

    DocumentPage *page() const { return m_page; }

    // The info bars about the file, in the page's info-bar place.
    FileNotices &notices() const;

    // Locks or unlocks the text; the tab's state changes with it.
    void setReadOnly(bool readOnly);

    // The tab's file was removed (moved to the trash, deleted by another program) and the tab
    // kept: it says so until the file is on disk again (the next save).
    void markFileRemoved();
    bool isFileRemoved() const;

    // Colours the tab in `language` and records it in the document (and says when the text is
    // too long to be coloured).
    void setLanguage(LanguagePtr language);
    // Chooses the language from the file name and the first line of the text.
    void detectLanguage();

Q_SIGNALS:
    void stateChanged();

private:
    QPointer<DocumentPage> m_page;
    QPointer<EditorView> m_editor;
    QPointer<FileNotices> m_notices;
    std::unique_ptr<Document> m_document;
    bool m_fileRemoved = false;
};

} // namespace mirtex
