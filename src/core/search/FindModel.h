// The state behind the find panel: the visible tab, every option, the status line, the busy flag
// and the recent searches. The panel only reads and writes it; the search commands take their
// options from it and leave their status in it. Main thread only.
#pragma once

#include "core/search/SearchMode.h"
#include "core/search/SearchOptions.h"
#include "core/search/SearchStatus.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <array>
#include <functional>

namespace mirtex {

// Stored as its raw value, in this order.
enum class FindTab {
    find,    // "Trova"
    replace, // "Sostituisci"
    files,   // "Trova nei file"
    mark     // "Contrassegna"
};

inline constexpr std::array<FindTab, 4> kFindTabs{
    FindTab::find, FindTab::replace, FindTab::files, FindTab::mark};

QString label(FindTab tab);

// Every field of the panel but the recent searches, with its initial value.
struct FindFields
{
    FindTab tab = FindTab::find;
    QString query;       // "Trova:"
    QString replacement; // "Sostituisci con:"
    bool matchCase = false;
    bool wholeWord = false;
    SearchMode mode = SearchMode::normal;
    bool dotMatchesNewline = false; // regex mode only
    bool wrapAround = true;
    bool inSelection = false; // count, replace all, mark all, find all in the document
    QString directory;        // find in files; a leading "~" is the home folder
    QString filters = QStringLiteral("*.*");
    bool subfolders = true;
    bool hiddenFolders = false;
    bool respectGitignore = false; // "Rispetta .gitignore": skip what .gitignore files exclude
    bool bookmarkLines = false;    // mark all also bookmarks the lines
    QString status;
    bool statusIsError = false;
    bool isBusy = false;
    int focusToken = 0; // bumped to ask the panel to focus the query field
    bool isDescribing = false;
    QString searchDescription;
    int describeFocusToken = 0;
    bool assistantReady = false;

    friend bool operator==(const FindFields &, const FindFields &) = default;
};

inline constexpr int kFindHistoryLimit = 20;

// The recent searches after searching `query`: every equal entry removed, the query put first, at
// most kFindHistoryLimit kept. An empty query changes nothing.
QStringList withRecentSearch(QStringList history, const QString &query);

class FindModel : public QObject
{
    Q_OBJECT

public:
    explicit FindModel(QStringList history = {}, QObject *parent = nullptr);

    const FindFields &fields() const { return m_fields; }

    // Changes any fields at once; `changed` is emitted once, and only when something changed.
    void update(const std::function<void(FindFields &)> &change);

    // The options of a command about to run, read from the fields now.
    SearchOptions options() const;

    void setStatus(const SearchStatus &status);
    void setBusy(bool busy);
    // Asks the panel to focus its query field.
    void requestFocus();

    const QStringList &history() const { return m_history; }

    // Records a query run by find next or find previous (see withRecentSearch); emits
    // historyChanged when the list changed, for the owner to store it at once.
    void recordSearch(const QString &query);

Q_SIGNALS:
    void changed();
    void historyChanged(const QStringList &history);

private:
    FindFields m_fields;
    QStringList m_history;
};

} // namespace mirtex
