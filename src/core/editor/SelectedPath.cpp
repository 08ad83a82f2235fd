#include "core/editor/SelectedPath.h"

#include <QDir>
#include <QUrl>

namespace mirtex {

namespace {

bool endsPath(QChar c)
{
    static const QStringView kStops = u"\"'`<>()[]{},;|";
    return c.isSpace() || kStops.contains(c);
}

} // namespace

std::optional<QString> selectedPath(QStringView text,
                                    const Selection &selection,
                                    const QString &baseFolder,
                                    const QString &homeFolder)
{
    QString path;
    if (!selection.isEmpty()) {
        path = text.sliced(selection.start(), selection.range().length).trimmed().toString();
        if (path.size() >= 2 && (path.front() == u'"' || path.front() == u'\'')
            && path.back() == path.front())
            path = path.sliced(1, path.size() - 2);
    } else {
        qsizetype from = selection.caret;
        qsizetype to = selection.caret;
        while (from > 0 && !endsPath(text[from - 1]))
            --from;
        while (to < text.size() && !endsPath(text[to]))
            ++to;
        path = text.sliced(from, to - from).toString();
        // A sentence's full stop or colon after the path is not part of it.
        while (!path.isEmpty() && (path.back() == u'.' || path.back() == u':'))
            path.chop(1);
    }
    if (path.isEmpty() || path.contains(u'\n'))
        return std::nullopt;
    if (path.startsWith(QLatin1String("file://"))) {
        const QUrl url(path);
        if (!url.isLocalFile())
            return std::nullopt;
        path = url.toLocalFile();
    }
    if (path == u'~' || path.startsWith(QLatin1String("~/")))
        path = homeFolder + path.sliced(1);
    if (QDir::isRelativePath(path) && !baseFolder.isEmpty())
        path = QDir(baseFolder).filePath(path);
    return QDir::cleanPath(path);
}

} // namespace mirtex
