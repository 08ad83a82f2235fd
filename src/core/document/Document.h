// One open text, one tab: its file, encoding and line ending, whether it differs from what was
// last loaded or saved, and reading and writing it. Lives on the main thread.
#pragma once

#include "core/document/DocumentError.h"
#include "core/document/LineEnding.h"
#include "core/document/LineEndingCount.h"
#include "core/document/TextEncoding.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QUuid>

#include <expected>
#include <functional>
#include <optional>

namespace mirtex {

class DocumentText;

// A file read and decoded, ready to become a document. `utf8` holds the text with LF breaks.
struct LoadedFile
{
    QString path;
    QByteArray utf8;
    TextEncoding encoding;
    LineEnding lineEnding = LineEnding::lf;
    bool readOnly = false;
    QDateTime modified;
    // What the user should know before editing or saving: the bytes look binary; breaks of
    // several kinds (saving writes `lineEnding` for all); the detection rules fell back to a
    // Western set where another encoding is far more likely (not looked for when forced).
    bool binary = false;
    std::optional<LineEndingCount> mixedLineEndings;
    std::optional<TextEncoding> encodingHint;
};

class Document
{
public:
    // Reads and decodes `path` (already canonical). `fallbackEnding` applies to texts without a
    // line break (the preference).
    static std::expected<LoadedFile, DocumentError>
    read(const QString &path, std::optional<TextEncoding> forced, LineEnding fallbackEnding);

    // `editor` outlives the document; `savedUtf8` is the text as loaded (or the initial text of a
    // new document).
    Document(DocumentText *editor,
             QByteArray savedUtf8,
             std::optional<QString> path,
             TextEncoding encoding,
             LineEnding lineEnding,
             QString untitledName,
             QUuid id = QUuid::createUuid());

    const QUuid &id() const { return m_id; }

    const std::optional<QString> &path() const { return m_path; }

    const QString &untitledName() const { return m_untitledName; }

    TextEncoding encoding() const { return m_encoding; }

    LineEnding lineEnding() const { return m_lineEnding; }

    bool isReadOnly() const { return m_readOnly; }

    const std::optional<QDateTime> &fileModificationDate() const { return m_fileModificationDate; }

    qint64 changeCount() const { return m_changeCount; }

    qint64 backedUpChangeCount() const { return m_backedUpChangeCount; }

    void setBackedUpChangeCount(qint64 count) { m_backedUpChangeCount = count; }

    bool isDirty() const { return m_dirty; }

    bool formatChanged() const { return m_formatChanged; }

    const QString &languageId() const { return m_languageId; }

    DocumentText *editor() const { return m_editor; }

    // Last path component, or the untitled name.
    QString displayName() const;

    void setLanguageId(const QString &id) { m_languageId = id; }

    void setReadOnly(bool readOnly);
    // A change of format counts as a modification until the next save.
    void setEncoding(TextEncoding encoding);
    void setLineEnding(LineEnding ending);
    // Text handed over by a URL event after launch: shows as modified from the start.
    void markHandedOver();

    void setFileModificationDate(std::optional<QDateTime> date) { m_fileModificationDate = date; }

    // The file was renamed or moved on disk to `newPath` (by this program): the document follows
    // it, keeping its text and state; a new extension chooses the language again.
    void followMovedFile(const QString &newPath);

    void textDidChange();
    void updateDirty();
    void markSaved();
    // Replaces the text with a fresh read of the file and marks it saved.
    void reload(const LoadedFile &file);

    bool hasChangedOnDisk() const;

    // Encodes and writes the text atomically, keeping the target's permissions. With `adopt`
    // (save, save as) the document takes the file, the encoding and becomes clean.
    // `ending` overrides the document's line ending (the save panel's choice).
    std::expected<void, DocumentError> write(const QString &path,
                                             std::optional<TextEncoding> encoding,
                                             bool adopt,
                                             std::optional<LineEnding> ending = std::nullopt);

    std::function<void()> onStateChange;
    // Called when a save as gives the file another extension: the language is chosen again.
    std::function<void(const QString &newPath)> onPathChange;

private:
    DocumentText *m_editor;
    QUuid m_id;
    std::optional<QString> m_path;
    QString m_untitledName;
    TextEncoding m_encoding;
    LineEnding m_lineEnding;
    bool m_readOnly = false;
    std::optional<QDateTime> m_fileModificationDate;
    qint64 m_changeCount = 0;
    qint64 m_backedUpChangeCount = -1;
    QByteArray m_savedUtf8;
    bool m_dirty = false;
    bool m_formatChanged = false;
    QString m_languageId = QStringLiteral("text");
};

} // namespace mirtex
