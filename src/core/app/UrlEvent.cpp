#include "core/app/UrlEvent.h"

#include "core/document/Document.h"
#include "core/document/LineEnding.h"
#include "core/document/TextCodec.h"
#include "core/document/Utf8Codec.h"

#include <QFile>
#include <QFileInfo>
#include <QUrl>
#include <QUrlQuery>

namespace mirtex {

std::optional<UrlEvent> UrlEvent::parse(const QString &url)
{
    const QUrl parsed(url);
    if (!parsed.isValid()
        || parsed.scheme().compare(QLatin1String("mirtex"), Qt::CaseInsensitive) != 0)
        return std::nullopt;
    const QUrlQuery query(parsed);
    const auto items = query.queryItems(QUrl::FullyDecoded);
    for (const auto &item : items) {
        if (item.first == QLatin1String("path")) {
            if (!item.second.isEmpty())
                return UrlEvent{Kind::path, item.second};
            break; // only the first "path" counts
        }
    }
    for (const auto &item : items) {
        if (item.first == QLatin1String("text"))
            return UrlEvent{Kind::text, item.second};
    }
    return std::nullopt;
}

bool UrlEvent::isInsideFolder(const QString &path, const QString &folder)
{
    const QString canonicalFolder = QFileInfo(folder).canonicalFilePath();
    const QString canonicalPath = QFileInfo(path).canonicalFilePath();
    if (canonicalFolder.isEmpty() || canonicalPath.isEmpty())
        return false;
    const QString withSlash
        = canonicalFolder.endsWith(u'/') ? canonicalFolder : canonicalFolder + u'/';
    return canonicalPath.startsWith(withSlash);
}

std::expected<QString, DocumentError> UrlEvent::resolveText(const QString &tempDir) const
{
    // Editors hold LF-only text; CR LF left in would be written as CR CR LF in a CRLF file.
    if (kind == Kind::text)
        return TextCodec::normalizeLineEndings(value);
    // Read and decoded as any file the editor opens.
    const auto loaded = Document::read(value, std::nullopt, LineEnding::lf);
    // A hand-over file in the temporary folder is removed once read, even when it did not decode.
    if (isInsideFolder(value, tempDir))
        QFile::remove(value);
    if (!loaded)
        return std::unexpected(loaded.error());
    return Utf8Codec::toUtf16(loaded->utf8);
}

} // namespace mirtex
