#include "core/document/Document.h"

#include "core/document/DocumentText.h"
#include "core/document/HugePageHint.h"
#include "core/document/PlainUtf8.h"
#include "core/document/TextCodec.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cstdlib>

namespace mirtex {

namespace {
// Reads the whole file into one buffer of its size. QIODevice::readAll grows its buffer by
// doubling, which for a large file means a copy and up to twice the file size in memory. A file
// that grows while it is read is read on to its end.
std::optional<QByteArray> readWhole(QFile &file)
{
    QByteArray bytes(file.size(), Qt::Uninitialized);
    adviseHugePages(bytes.data(), std::size_t(bytes.size()));
    qint64 filled = 0;
    while (filled < bytes.size()) {
        const qint64 got = file.read(bytes.data() + filled, bytes.size() - filled);
        if (got < 0)
            return std::nullopt;
        if (got == 0)
            break;
        filled += got;
    }
    bytes.truncate(filled);
    const QByteArray rest = file.readAll(); // normally empty
    if (file.error() != QFileDevice::NoError)
        return std::nullopt;
    if (!rest.isEmpty())
        bytes += rest;
    return bytes;
}
} // namespace

std::expected<LoadedFile, DocumentError>
Document::read(const QString &path, std::optional<TextEncoding> forced, LineEnding fallbackEnding)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::unexpected(DocumentError::unreadable(path));
    std::optional<QByteArray> read = readWhole(file);
    if (!read)
        return std::unexpected(DocumentError::unreadable(path));
    QByteArray bytes = std::move(*read);
    file.close();

    LoadedFile loaded;
    loaded.path = path;
    // Most files are UTF-8 with LF breaks already: their bytes are the text, and skipping the
    // round trip through UTF-16 saves two full-size copies (three times the file in memory).
    const std::optional<LineEnding> plainEnding
        = forced ? std::nullopt : PlainUtf8::lineEnding(bytes, fallbackEnding);
    if (plainEnding) {
        loaded.utf8 = std::move(bytes);
        loaded.encoding = TextEncoding::utf8();
        loaded.lineEnding = *plainEnding;
    } else {
        auto decoded = TextCodec::decode(bytes, forced, fallbackEnding);
        if (!decoded)
            return std::unexpected(
                DocumentError::undecodable(path, forced.value_or(TextEncoding::utf8())));
        bytes = {}; // the raw bytes are not needed past this point; free them before re-encoding
        loaded.utf8 = decoded->text.toUtf8();
        loaded.encoding = decoded->encoding;
        loaded.lineEnding = decoded->lineEnding;
    }

    const QFileInfo info(path);
    loaded.readOnly = !info.isWritable();
    loaded.modified = info.lastModified();
    return loaded;
}

Document::Document(DocumentText *editor,
                   QByteArray savedUtf8,
                   std::optional<QString> path,
                   TextEncoding encoding,
                   LineEnding lineEnding,
                   QString untitledName,
                   QUuid id)
    : m_editor(editor)
    , m_id(id)
    , m_path(std::move(path))
    , m_untitledName(std::move(untitledName))
    , m_encoding(encoding)
    , m_lineEnding(lineEnding)
    , m_savedUtf8(std::move(savedUtf8))
{
    if (m_path) {
        const QFileInfo info(*m_path);
        if (info.exists())
            m_fileModificationDate = info.lastModified();
    }
}

QString Document::displayName() const
{
    if (m_path)
        return QFileInfo(*m_path).fileName();
    return m_untitledName;
}

void Document::setReadOnly(bool readOnly)
{
    m_readOnly = readOnly;
    if (m_editor)
        m_editor->setEditable(!readOnly);
}

void Document::setEncoding(TextEncoding encoding)
{
    if (encoding == m_encoding)
        return;
    m_encoding = encoding;
    m_formatChanged = true;
    updateDirty();
}

void Document::setLineEnding(LineEnding ending)
{
    if (ending == m_lineEnding)
        return;
    m_lineEnding = ending;
    m_formatChanged = true;
    updateDirty();
}

void Document::markHandedOver()
{
    m_formatChanged = true;
    ++m_changeCount;
    updateDirty();
}

void Document::textDidChange()
{
    ++m_changeCount;
    updateDirty();
}

void Document::updateDirty()
{
    if (m_formatChanged)
        m_dirty = true;
    else
        m_dirty = m_editor && !m_editor->utf8Equals(m_savedUtf8);
    if (onStateChange)
        onStateChange();
}

void Document::markSaved()
{
    if (m_editor)
        m_savedUtf8 = m_editor->utf8Text();
    m_formatChanged = false;
    m_dirty = false;
    if (onStateChange)
        onStateChange();
}

void Document::reload(const LoadedFile &file)
{
    if (m_editor)
        m_editor->replaceText(file.utf8);
    m_encoding = file.encoding;
    m_lineEnding = file.lineEnding;
    m_fileModificationDate = file.modified;
    setReadOnly(file.readOnly);
    markSaved();
}

bool Document::hasChangedOnDisk() const
{
    if (!m_path || !m_fileModificationDate)
        return false;
    const QFileInfo info(*m_path);
    if (!info.exists())
        return false;
    const QDateTime current = info.lastModified();
    if (!current.isValid())
        return false;
    return std::abs(current.msecsTo(*m_fileModificationDate)) > 500;
}

std::expected<void, DocumentError> Document::write(const QString &path,
                                                   std::optional<TextEncoding> encoding,
                                                   bool adopt,
                                                   std::optional<LineEnding> ending)
{
    const TextEncoding used = encoding.value_or(m_encoding);
    const LineEnding usedEnding = ending.value_or(m_lineEnding);
    const QString text = m_editor ? m_editor->text() : QString();
    const auto bytes = TextCodec::encode(text, used, usedEnding);
    if (!bytes)
        return std::unexpected(DocumentError::unencodable(used));

    const QFileInfo before(path);
    const bool existed = before.exists();
    const QFile::Permissions permissions = existed ? before.permissions() : QFile::Permissions();

    QSaveFile out(path);
    if (!out.open(QIODevice::WriteOnly))
        return std::unexpected(DocumentError::writeFailed(path, out.errorString()));
    // Flushed here because commit() does not notice a short write of the buffered bytes (disk
    // full, quota, file size limit) and would replace the file with a truncated one.
    if (out.write(*bytes) != bytes->size() || !out.flush()) {
        const QString why = out.errorString();
        out.cancelWriting();
        return std::unexpected(DocumentError::writeFailed(path, why));
    }
    if (!out.commit())
        return std::unexpected(DocumentError::writeFailed(path, out.errorString()));
    if (existed && !QFile::setPermissions(path, permissions))
        return std::unexpected(DocumentError::writeFailed(
            path, QCoreApplication::translate("Document", "permessi non ripristinati")));

    if (adopt) {
        const bool extensionChanged
            = !m_path
              || QFileInfo(*m_path).suffix().compare(QFileInfo(path).suffix(), Qt::CaseInsensitive)
                     != 0;
        m_path = path;
        m_untitledName.clear();
        m_encoding = used;
        m_lineEnding = usedEnding;
        m_fileModificationDate = QFileInfo(path).lastModified();
        setReadOnly(false);
        if (extensionChanged && onPathChange)
            onPathChange(path);
        markSaved();
    }
    return {};
}

} // namespace mirtex
