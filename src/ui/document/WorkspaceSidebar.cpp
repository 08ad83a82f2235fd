#include "ui/document/WorkspaceSidebar.h"

#include "core/app/DisplayPath.h"
#include "core/app/Preferences.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QTreeView>
#include <QVBoxLayout>

namespace mirtex {

WorkspaceSidebar::WorkspaceSidebar(Preferences &prefs, QWidget *parent)
    : QWidget(parent)
    , m_folderChooser(new QComboBox)
    , m_model(new QFileSystemModel(this))
    , m_tree(new QTreeView)
{
    setObjectName(QStringLiteral("mirtex.workspace"));
    setWindowTitle(QCoreApplication::translate("WorkspaceSidebar", "Cartelle"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(m_folderChooser);
    layout->addWidget(m_tree);
    m_folderChooser->hide();

    m_model->setReadOnly(true);
    setShowHidden(prefs.showHiddenFiles());
    m_tree->setModel(m_model);
    m_tree->setHeaderHidden(true);
    for (int column = 1; column < m_model->columnCount(); ++column)
        m_tree->hideColumn(column);
    m_tree->setUniformRowHeights(true);
    connect(m_tree, &QTreeView::activated, this, [this](const QModelIndex &index) {
        if (!m_model->isDir(index))
            Q_EMIT fileActivated(m_model->filePath(index));
    });
    m_tree->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_tree, &QWidget::customContextMenuRequested, this, [this](QPoint at) {
        const QModelIndex index = m_tree->indexAt(at);
        if (index.isValid())
            m_tree->setCurrentIndex(index);
        Q_EMIT menuRequested(index.isValid() ? m_model->filePath(index) : QString(),
                             m_tree->viewport()->mapToGlobal(at));
    });
    connect(m_folderChooser, &QComboBox::currentIndexChanged, this, [this](int index) {
        if (index >= 0 && index < m_folders.size())
            showFolder(m_folders[index]);
    });
}

void WorkspaceSidebar::addFolder(const QString &folder)
{
    const QString canonical = QFileInfo(folder).canonicalFilePath();
    if (canonical.isEmpty())
        return;
    if (!m_folders.contains(canonical)) {
        m_folders.append(canonical);
        m_folderChooser->addItem(DisplayPath::forDisplay(canonical));
    }
    m_folderChooser->setVisible(m_folders.size() > 1);
    m_folderChooser->setCurrentIndex(int(m_folders.indexOf(canonical)));
    showFolder(canonical);
}

void WorkspaceSidebar::showFolder(const QString &folder)
{
    m_tree->setRootIndex(m_model->setRootPath(folder));
    m_shownFolder = folder;
    setWindowTitle(QFileInfo(folder).fileName());
}

void WorkspaceSidebar::reveal(const QString &path)
{
    const QFileInfo info(path);
    const QString file = info.exists() ? info.canonicalFilePath() : info.absoluteFilePath();
    QString holder;
    for (const QString &folder : m_folders) {
        if (file.startsWith(folder + u'/') && folder.size() > holder.size())
            holder = folder;
    }
    if (holder.isEmpty()) {
        addFolder(QFileInfo(file).absolutePath());
    } else {
        m_folderChooser->setCurrentIndex(int(m_folders.indexOf(holder)));
        showFolder(holder);
    }
    // The model fills in folders as it reads them; index() makes the path known to it at once.
    const QModelIndex index = m_model->index(file);
    if (!index.isValid())
        return;
    m_tree->setCurrentIndex(index);
    m_tree->scrollTo(index);
}

QString WorkspaceSidebar::shownFolder() const
{
    return m_shownFolder;
}

QString WorkspaceSidebar::selectedPath() const
{
    const QModelIndex index = m_tree->currentIndex();
    return index.isValid() ? m_model->filePath(index) : QString();
}

void WorkspaceSidebar::setShowHidden(bool show)
{
    QDir::Filters filters = QDir::AllEntries | QDir::NoDotAndDotDot | QDir::AllDirs;
    if (show)
        filters |= QDir::Hidden;
    m_model->setFilter(filters);
}

} // namespace mirtex
