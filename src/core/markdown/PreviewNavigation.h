// What the live preview does with a navigation in its page: its own loads proceed, a link to a
// place in the page scrolls there, a local text file opens in a tab, a web or mail link goes to
// the desktop, and anything else (script URLs, unknown schemes) is refused.
#pragma once

#include <QString>
#include <QUrl>

#include <functional>

namespace mirtex {

struct PreviewNavigation
{
    enum class Action {
        proceed,          // the page's own load
        refuse,           // nothing happens
        scrollToFragment, // `fragment` names the element
        openInTab,        // `path` is a local text file
        openExternally    // handed to the desktop's handler
    };

    Action action = Action::refuse;
    QString fragment;
    QString path;

    // `userStarted`: a link followed by the user (a click), as opposed to the program's own
    // loads. `pageUrl` is the base URL the page was loaded with. `isOpenableText` tells whether
    // an existing local file can be opened as text.
    static PreviewNavigation decide(const QUrl &target,
                                    bool userStarted,
                                    bool mainFrame,
                                    const QUrl &pageUrl,
                                    const std::function<bool(const QString &path)> &isOpenableText);
};

namespace ExportNames {

// The proposed file name of an export: the document's name with its extension (if any) replaced
// by `extension` (".pdf", ".html").
QString proposedName(const QString &displayName, const QString &extension);
// The proposed path: the name in the document's folder when it has one, else the name alone.
QString
proposedPath(const QString &documentPath, const QString &displayName, const QString &extension);

} // namespace ExportNames

} // namespace mirtex
