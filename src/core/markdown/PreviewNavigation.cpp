#include "core/markdown/PreviewNavigation.h"

#include <QFileInfo>

namespace mirtex {

namespace {

bool samePage(const QUrl &target, const QUrl &pageUrl)
{
    return target.adjusted(QUrl::RemoveFragment | QUrl::StripTrailingSlash)
           == pageUrl.adjusted(QUrl::RemoveFragment | QUrl::StripTrailingSlash);
}

} // namespace

PreviewNavigation
PreviewNavigation::decide(const QUrl &target,
                          bool userStarted,
                          bool mainFrame,
                          const QUrl &pageUrl,
                          const std::function<bool(const QString &)> &isOpenableText)
{
    PreviewNavigation result;
    const QString scheme = target.scheme().toLower();
    if (!userStarted || !mainFrame) {
        // Only what the program loads itself: a page given as text (data:), about:blank.
        if (scheme == QLatin1String("about") || scheme == QLatin1String("data"))
            result.action = Action::proceed;
        return result;
    }
    if (target.hasFragment() && samePage(target, pageUrl)) {
        result.action = Action::scrollToFragment;
        result.fragment = target.fragment(QUrl::FullyDecoded);
        return result;
    }
    if (target.isLocalFile()) {
        const QString path = target.toLocalFile();
        const QFileInfo info(path);
        if (info.isFile() && isOpenableText && isOpenableText(info.absoluteFilePath())) {
            result.action = Action::openInTab;
            result.path = info.absoluteFilePath();
        } else if (info.exists()) {
            result.action = Action::openExternally;
        }
        return result;
    }
    if (scheme == QLatin1String("http") || scheme == QLatin1String("https")
        || scheme == QLatin1String("mailto") || scheme == QLatin1String("ftp"))
        result.action = Action::openExternally;
    return result;
}

QString ExportNames::proposedName(const QString &displayName, const QString &extension)
{
    QString name = displayName.trimmed();
    if (name.isEmpty())
        name = QStringLiteral("documento");
    const qsizetype dot = name.lastIndexOf(u'.');
    // A leading dot names a hidden file, not an extension.
    if (dot > 0)
        name.truncate(dot);
    return name + extension;
}

QString ExportNames::proposedPath(const QString &documentPath,
                                  const QString &displayName,
                                  const QString &extension)
{
    const QString name = proposedName(displayName, extension);
    if (documentPath.isEmpty())
        return name;
    return QFileInfo(documentPath).absolutePath() + u'/' + name;
}

} // namespace mirtex
