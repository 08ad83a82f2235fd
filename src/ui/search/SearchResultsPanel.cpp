#include "ui/search/SearchResultsPanel.h"

#include "ui/search/SearchHitDelegate.h"
#include "ui/search/SearchResultsModel.h"

#include <QDockWidget>
#include <QHBoxLayout>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>

namespace mirtex {

namespace {

// Files of one set opened out as they arrive; beyond them a huge run stays folded (each row
// opened out re-lays out the view).
constexpr int kExpandedFilesPerSet = 200;

} // namespace

SearchResultsPanel::SearchResultsPanel(QWidget *parent)
    : QWidget(parent)
    , m_model(new SearchResultsModel(this))
    , m_view(new QTreeView(this))
    , m_clear(new QPushButton(tr("Svuota"), this))
    , m_close(new QPushButton(tr("Chiudi"), this))
{
    setObjectName(QStringLiteral("mirtex.searchResults"));
    setWindowTitle(tr("Risultati della ricerca"));
    m_view->setObjectName(QStringLiteral("mirtex.searchResults.outline"));
    m_view->setModel(m_model);
    m_view->setHeaderHidden(true);
    // Every row one line high: the view then lays out only what it shows.
    m_view->setUniformRowHeights(true);
    m_view->setItemDelegate(new SearchHitDelegate(m_view));
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->setTextElideMode(Qt::ElideNone);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_clear);
    buttons->addWidget(m_close);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(m_view);
    layout->addLayout(buttons);

    connect(m_clear, &QPushButton::clicked, this, &SearchResultsPanel::clear);
    connect(m_close, &QPushButton::clicked, this, &SearchResultsPanel::closePanel);
    // Enter, and a double-click.
    connect(m_view, &QTreeView::activated, this, &SearchResultsPanel::open);
    connect(m_model,
            &QAbstractItemModel::rowsInserted,
            this,
            [this](const QModelIndex &under, int first, int last) {
                if (!under.isValid())
                    m_view->expand(m_model->index(last, 0));
                else if (!under.parent().isValid())
                    expandNewFiles(under, first, last);
            });
}

SearchResultsPanel::~SearchResultsPanel() = default;

void SearchResultsPanel::addSet(SearchResultSet set)
{
    const int handle = beginSet(set.query, set.scope);
    appendFiles(handle, std::move(set.files));
    m_view->scrollTo(m_model->setIndex(handle), QAbstractItemView::PositionAtTop);
}

int SearchResultsPanel::beginSet(const QString &query, const QString &scope)
{
    const int handle = m_model->beginSet(query, scope);
    showPanel();
    return handle;
}

void SearchResultsPanel::appendFiles(int set, std::vector<SearchFileResult> files)
{
    m_model->appendFiles(set, std::move(files));
}

void SearchResultsPanel::expandNewFiles(const QModelIndex &set, int first, int last)
{
    for (int row = first; row <= std::min(last, kExpandedFilesPerSet - 1); ++row)
        m_view->expand(m_model->index(row, 0, set));
}

void SearchResultsPanel::clear()
{
    m_model->clear();
}

QDockWidget *SearchResultsPanel::dock() const
{
    return qobject_cast<QDockWidget *>(parentWidget());
}

void SearchResultsPanel::showPanel()
{
    if (QDockWidget *holder = dock()) {
        holder->show();
        holder->raise();
    } else {
        show();
    }
}

void SearchResultsPanel::closePanel()
{
    if (QDockWidget *holder = dock())
        holder->hide();
    else
        hide();
}

bool SearchResultsPanel::isPanelShown() const
{
    if (const QDockWidget *holder = dock())
        return !holder->isHidden();
    return !isHidden();
}

bool SearchResultsPanel::openAdjacentHit(bool backward)
{
    const QModelIndex next = m_model->stepHit(m_view->currentIndex(), backward);
    if (!next.isValid())
        return false;
    m_view->setCurrentIndex(next);
    m_view->scrollTo(next);
    open(next);
    return true;
}

void SearchResultsPanel::open(const QModelIndex &index)
{
    const SearchHit *hit = m_model->hitAt(index);
    if (hit && onOpenHit)
        onOpenHit(*m_model->fileAt(index), *hit);
}

} // namespace mirtex
