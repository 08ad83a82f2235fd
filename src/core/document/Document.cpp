#include "core/document/Document.h"

#include "core/document/DocumentText.h"
#include "core/document/EncodingHint.h"
#include "core/document/FileSaver.h"
#include "core/document/HugePageHint.h"
#include "core/document/PlainUtf8.h"
#include "core/document/TextCodec.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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
    // Opened without blocking and checked before any read: a pipe would wait for a writer forever
    // and a device such as /dev/zero never ends.
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0)
        return std::unexpected(DocumentError::unreadable(path, fileProblemFromErrno(errno)));

    struct stat status
    {};

    if (::fstat(fd, &status) != 0 || !S_ISREG(status.st_mode)) {
        const bool folder = S_ISDIR(status.st_mode);
        ::close(fd);
        return std::unexpected(DocumentError::unreadable(
            path, folder ? FileProblem::isFolder : FileProblem::notRegularFile));
    }
    QFile file;
    if (!file.open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(fd);
        return std::unexpected(DocumentError::unreadable(path));
    }
    std::optional<QByteArray> read = readWhole(file);
    if (!read)
        return std::unexpected(DocumentError::unreadable(path, fileProblemFromErrno(errno)));
    QByteArray bytes = std::move(*read);
    file.close();

    LoadedFile loaded;
    loaded.path = path;
    // Most files are UTF-8 with LF breaks already: their bytes are the text, and skipping the
    // round trip through UTF-16 saves two full-size copies (three times the file in memory).
    const std::optional<LineEnding> plainEnding
        = forced ? std::nullopt : PlainUtf8::lineEnding(bytes, fallbackEnding);
    loaded.binary = TextCodec::isBinary(bytes);
    if (plainEnding) {
        loaded.utf8 = std::move(bytes);
        loaded.encoding = TextEncoding::utf8();
        loaded.lineEnding = *plainEnding;
    } else {
        auto decoded = TextCodec::decodeToUtf8(bytes, forced, fallbackEnding);
        if (!decoded)
            return std::unexpected(
                DocumentError::undecodable(path, forced.value_or(TextEncoding::utf8())));
        // Plain files have no CR, so only these can mix their breaks.
        if (const LineEndingCount count = countLineEndings(bytes, decoded->encoding);
            count.isMixed())
            loaded.mixedLineEndings = count;
        if (!forced && !loaded.binary)
            loaded.encodingHint = EncodingHint::suggest(bytes, decoded->encoding);
        bytes = {};
        loaded.utf8 = std::move(decoded->utf8);
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
        m_savedUtf8 = m_editor->savedUtf8Text();
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

void Document::followMovedFile(const QString &newPath)
{
    const bool extensionChanged
        = !m_path
          || QFileInfo(*m_path).suffix().compare(QFileInfo(newPath).suffix(), Qt::CaseInsensitive)
                 != 0;
    m_path = newPath;
    m_untitledName.clear();
    if (extensionChanged && onPathChange)
        onPathChange(newPath);
    if (onStateChange)
        onStateChange();
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
    // Straight from the editor's UTF-8: no UTF-16 copy of the whole text.
    const QByteArray utf8 = m_editor ? m_editor->utf8Text() : QByteArray();
    const auto bytes = TextCodec::encodeFromUtf8(utf8, used, usedEnding);
    if (!bytes)
        return std::unexpected(DocumentError::unencodable(used));

    if (auto saved = FileSaver::save(path, *bytes); !saved)
        return std::unexpected(DocumentError::writeFailed(path, saved.error()));

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
