// The results panel ("Risultati della ricerca"): every result set of the find-all commands and
// of find in files as an outline (set, file, hit), "Svuota" and "Chiudi", and opening a hit by
// double-click, Enter or the next/previous result commands. It lives in a dock of the main
// window and shows it when a set arrives. Main thread only.
#pragma once

#include "ui/search/SearchResultSink.h"

#include <QWidget>

#include <functional>

class QDockWidget;
class QPushButton;
class QTreeView;

namespace mirtex {

class SearchResultsModel;

class SearchResultsPanel : public QWidget, public SearchResultSink
{
    Q_OBJECT

public:
    explicit SearchResultsPanel(QWidget *parent = nullptr);
    ~SearchResultsPanel() override;

    // SearchResultSink
    void addSet(SearchResultSet set) override;
    int beginSet(const QString &query, const QString &scope) override;
    void appendFiles(int set, std::vector<SearchFileResult> files) override;

    // "Svuota": removes every set.
    void clear();

    // The dock holding the panel (or the panel itself, undocked).
    void showPanel();
    void closePanel();
    bool isPanelShown() const;

    // Makes the next (or previous) hit the current row, wrapping around, and opens it. False
    // when there is no hit.
    bool openAdjacentHit(bool backward);

    QTreeView *view() const { return m_view; }

    SearchResultsModel &model() const { return *m_model; }

    QPushButton *clearButton() const { return m_clear; }

    QPushButton *closeButton() const { return m_close; }

    // Opens a hit: its tab (or file), its range selected and scrolled to.
    std::function<void(const SearchFileResult &file, const SearchHit &hit)> onOpenHit;

private:
    QDockWidget *dock() const;
    void open(const QModelIndex &index);
    void expandNewFiles(const QModelIndex &set, int first, int last);

    SearchResultsModel *m_model;
    QTreeView *m_view;
    QPushButton *m_clear;
    QPushButton *m_close;
};

} // namespace mirtex
