// The results panel's outline: sets, their files, the files' hits. Sets grow by appended batches
// (one row insertion per batch, never a reset), so a long find in files streams in cheaply and a
// set of a hundred thousand hits costs only the rows on screen. Main thread only.
#pragma once

#include "core/search/SearchResults.h"

#include <QAbstractItemModel>

#include <memory>
#include <vector>

namespace mirtex {

class SearchResultsModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    // On hit rows: where the match is in the row's text (DisplayRole), in UTF-16 units.
    enum Role {
        HighlightStartRole = Qt::UserRole + 1,
        HighlightLengthRole
    };

    explicit SearchResultsModel(QObject *parent = nullptr);
    ~SearchResultsModel() override;

    // A new, empty set as the last row; the handle stays valid until clear().
    int beginSet(const QString &query, const QString &scope);
    // Appends files with their hits to a set; an unknown handle (a cleared set) does nothing.
    void appendFiles(int handle, std::vector<SearchFileResult> files);
    // Removes every set.
    void clear();

    QModelIndex setIndex(int handle) const;
    // The file of a file row or of a hit row; null on set rows.
    const SearchFileResult *fileAt(const QModelIndex &index) const;
    // The hit of a hit row; null otherwise.
    const SearchHit *hitAt(const QModelIndex &index) const;

    // The hit row after (or before) `from` in outline order, wrapping around; from a set or file
    // row, the first hit after it (or the last before it); from nowhere, the first (or last) hit.
    // Invalid when there is no hit at all.
    QModelIndex stepHit(const QModelIndex &from, bool backward) const;

    qsizetype hitCount() const { return m_hits; }

    // QAbstractItemModel
    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

private:
    struct Node;
    struct SetNode;
    struct FileNode;

    // Where a hit is: set row, file row and hit row; hit -1 means before the file's first hit.
    struct Position
    {
        int set = 0;
        int file = 0;
        int hit = 0;
    };

    const Node *node(const QModelIndex &index) const;
    QModelIndex hitIndex(const Position &position) const;

    std::vector<std::unique_ptr<SetNode>> m_sets;
    int m_nextHandle = 1;
    qsizetype m_hits = 0;
};

} // namespace mirtex
