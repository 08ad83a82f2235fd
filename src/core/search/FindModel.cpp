#include "core/search/FindModel.h"

namespace mirtex {

QString label(FindTab tab)
{
    switch (tab) {
    case FindTab::find:
        return QStringLiteral("Trova");
    case FindTab::replace:
        return QStringLiteral("Sostituisci");
    case FindTab::files:
        return QStringLiteral("Trova nei file");
    case FindTab::mark:
        return QStringLiteral("Contrassegna");
    }
    return {};
}

QStringList withRecentSearch(QStringList history, const QString &query)
{
    if (query.isEmpty())
        return history;
    history.removeAll(query);
    history.prepend(query);
    while (history.size() > kFindHistoryLimit)
        history.removeLast();
    return history;
}

FindModel::FindModel(QStringList history, QObject *parent)
    : QObject(parent)
    , m_history(withRecentSearch({}, {}))
{
    // A stored list may hold duplicates, empty entries or more than the limit: keep its order.
    for (auto it = history.crbegin(); it != history.crend(); ++it)
        m_history = withRecentSearch(std::move(m_history), *it);
}

void FindModel::update(const std::function<void(FindFields &)> &change)
{
    FindFields next = m_fields;
    change(next);
    if (next == m_fields)
        return;
    m_fields = std::move(next);
    Q_EMIT changed();
}

SearchOptions FindModel::options() const
{
    return {m_fields.query,
            m_fields.replacement,
            m_fields.matchCase,
            m_fields.wholeWord,
            m_fields.mode,
            m_fields.dotMatchesNewline};
}

void FindModel::setStatus(const SearchStatus &status)
{
    update([&](FindFields &f) {
        f.status = status.text;
        f.statusIsError = status.isError;
    });
}

void FindModel::setBusy(bool busy)
{
    update([&](FindFields &f) { f.isBusy = busy; });
}

void FindModel::requestFocus()
{
    update([](FindFields &f) { ++f.focusToken; });
}

void FindModel::recordSearch(const QString &query)
{
    QStringList next = withRecentSearch(m_history, query);
    if (next == m_history)
        return;
    m_history = std::move(next);
    Q_EMIT changed();
    Q_EMIT historyChanged(m_history);
}

} // namespace mirtex
