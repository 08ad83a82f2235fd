// Each index points at its parent node (nothing for set rows), so that rows need no node of
// their own: a hit row is its file's node and a row number.
#include "ui/search/SearchResultsModel.h"

#include "core/search/SearchResultRows.h"

namespace mirtex {

struct SearchResultsModel::Node
{
    bool isSet = false;
};

struct SearchResultsModel::FileNode : Node
{
    SetNode *set = nullptr;
    int row = 0;
    SearchFileResult file;
};

struct SearchResultsModel::SetNode : Node
{
    int handle = 0;
    int row = 0;
    QString query;
    QString scope;
    qsizetype hits = 0;
    std::vector<std::unique_ptr<FileNode>> files;
};

SearchResultsModel::SearchResultsModel(QObject *parent)
    : QAbstractItemModel(parent)
{}

SearchResultsModel::~SearchResultsModel() = default;

int SearchResultsModel::beginSet(const QString &query, const QString &scope)
{
    auto set = std::make_unique<SetNode>();
    set->isSet = true;
    set->handle = m_nextHandle++;
    set->row = int(m_sets.size());
    set->query = query;
    set->scope = scope;
    beginInsertRows({}, set->row, set->row);
    m_sets.push_back(std::move(set));
    endInsertRows();
    return m_sets.back()->handle;
}

void SearchResultsModel::appendFiles(int handle, std::vector<SearchFileResult> files)
{
    const QModelIndex parentIndex = setIndex(handle);
    if (!parentIndex.isValid() || files.empty())
        return;
    SetNode &set = *m_sets[parentIndex.row()];
    const int first = int(set.files.size());
    beginInsertRows(parentIndex, first, first + int(files.size()) - 1);
    for (SearchFileResult &file : files) {
        auto node = std::make_unique<FileNode>();
        node->set = &set;
        node->row = int(set.files.size());
        set.hits += qsizetype(file.hits.size());
        m_hits += qsizetype(file.hits.size());
        node->file = std::move(file);
        set.files.push_back(std::move(node));
    }
    endInsertRows();
    // The set's row counts its hits and files.
    Q_EMIT dataChanged(parentIndex, parentIndex, {Qt::DisplayRole});
}

void SearchResultsModel::clear()
{
    if (m_sets.empty())
        return;
    beginRemoveRows({}, 0, int(m_sets.size()) - 1);
    m_sets.clear();
    m_hits = 0;
    endRemoveRows();
}

QModelIndex SearchResultsModel::setIndex(int handle) const
{
    // Handles grow with the rows, and only clear() removes sets.
    const auto found = std::ranges::lower_bound(m_sets, handle, {}, &SetNode::handle);
    if (found == m_sets.end() || (*found)->handle != handle)
        return {};
    return createIndex((*found)->row, 0, nullptr);
}

const SearchResultsModel::Node *SearchResultsModel::node(const QModelIndex &index) const
{
    if (!index.isValid())
        return nullptr;
    const auto *parentNode = static_cast<const Node *>(index.internalPointer());
    if (!parentNode)
        return m_sets[index.row()].get();
    if (parentNode->isSet)
        return static_cast<const SetNode *>(parentNode)->files[index.row()].get();
    return nullptr; // a hit row
}

const SearchFileResult *SearchResultsModel::fileAt(const QModelIndex &index) const
{
    if (!index.isValid() || !index.internalPointer())
        return nullptr;
    const auto *parentNode = static_cast<const Node *>(index.internalPointer());
    if (parentNode->isSet)
        return &static_cast<const SetNode *>(parentNode)->files[index.row()]->file;
    return &static_cast<const FileNode *>(parentNode)->file;
}

const SearchHit *SearchResultsModel::hitAt(const QModelIndex &index) const
{
    if (!index.isValid() || !index.internalPointer())
        return nullptr;
    const auto *parentNode = static_cast<const Node *>(index.internalPointer());
    if (parentNode->isSet)
        return nullptr;
    return &static_cast<const FileNode *>(parentNode)->file.hits[std::size_t(index.row())];
}

QModelIndex SearchResultsModel::hitIndex(const Position &position) const
{
    FileNode *file = m_sets[std::size_t(position.set)]->files[std::size_t(position.file)].get();
    return createIndex(position.hit, 0, file);
}

QModelIndex SearchResultsModel::stepHit(const QModelIndex &from, bool backward) const
{
    if (m_hits == 0)
        return {};
    // Hits are numbered in outline order; `before` counts the hits ahead of `from`.
    qsizetype before = 0;
    bool onHit = false;
    if (from.isValid()) {
        const auto *parentNode = static_cast<const Node *>(from.internalPointer());
        const SetNode *set = nullptr;
        int files = 0; // files of `set` ahead of `from`
        if (!parentNode) {
            set = m_sets[std::size_t(from.row())].get();
        } else if (parentNode->isSet) {
            set = static_cast<const SetNode *>(parentNode);
            files = from.row();
        } else {
            const auto *file = static_cast<const FileNode *>(parentNode);
            set = file->set;
            files = file->row;
            before = from.row();
            onHit = true;
        }
        for (int s = 0; s < set->row; ++s)
            before += m_sets[std::size_t(s)]->hits;
        for (int f = 0; f < files; ++f)
            before += qsizetype(set->files[std::size_t(f)]->file.hits.size());
    } else if (!backward) {
        before = 0;
    } else {
        before = m_hits;
    }
    qsizetype target = backward ? before - 1 : (onHit ? before + 1 : before);
    target = ((target % m_hits) + m_hits) % m_hits;

    for (const auto &set : m_sets) {
        if (target >= set->hits) {
            target -= set->hits;
            continue;
        }
        for (const auto &file : set->files) {
            const qsizetype count = qsizetype(file->file.hits.size());
            if (target < count)
                return hitIndex({set->row, file->row, int(target)});
            target -= count;
        }
    }
    return {};
}

QModelIndex SearchResultsModel::index(int row, int column, const QModelIndex &parent) const
{
    if (column != 0 || row < 0 || row >= rowCount(parent))
        return {};
    if (!parent.isValid())
        return createIndex(row, 0, nullptr);
    return createIndex(row, 0, const_cast<Node *>(node(parent)));
}

QModelIndex SearchResultsModel::parent(const QModelIndex &child) const
{
    if (!child.isValid() || !child.internalPointer())
        return {};
    const auto *parentNode = static_cast<const Node *>(child.internalPointer());
    if (parentNode->isSet)
        return createIndex(static_cast<const SetNode *>(parentNode)->row, 0, nullptr);
    const auto *file = static_cast<const FileNode *>(parentNode);
    return createIndex(file->row, 0, file->set);
}

int SearchResultsModel::rowCount(const QModelIndex &parent) const
{
    if (!parent.isValid())
        return int(m_sets.size());
    const Node *parentNode = node(parent);
    if (!parentNode)
        return 0; // hit rows have no children
    if (parentNode->isSet)
        return int(static_cast<const SetNode *>(parentNode)->files.size());
    return int(static_cast<const FileNode *>(parentNode)->file.hits.size());
}

int SearchResultsModel::columnCount(const QModelIndex &) const
{
    return 1;
}

QVariant SearchResultsModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    if (const SearchHit *hit = hitAt(index)) {
        if (role != Qt::DisplayRole && role != HighlightStartRole && role != HighlightLengthRole)
            return {};
        const HitRow row = hitRow(*hit);
        if (role == HighlightStartRole)
            return int(row.highlight.location);
        if (role == HighlightLengthRole)
            return int(row.highlight.length);
        return row.text;
    }
    const Node *thisNode = node(index);
    if (thisNode->isSet) {
        const auto *set = static_cast<const SetNode *>(thisNode);
        if (role == Qt::DisplayRole)
            return setRowText(set->query, set->scope, set->hits, qsizetype(set->files.size()));
        return {};
    }
    const SearchFileResult &file = static_cast<const FileNode *>(thisNode)->file;
    if (role == Qt::DisplayRole)
        return file.title;
    if (role == Qt::ToolTipRole && file.path)
        return *file.path;
    return {};
}

} // namespace mirtex
