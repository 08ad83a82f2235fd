// The workspace: the folders the user opened, as a file tree beside the tabs (a panel of the main
// window; its title is the folder shown). Double-clicking a file opens it.
#pragma once

#include <QWidget>

class QFileSystemModel;
class QTreeView;
class QComboBox;

namespace mirtex {

class Preferences;

class WorkspaceSidebar : public QWidget
{
    Q_OBJECT

public:
    WorkspaceSidebar(Preferences &prefs, QWidget *parent = nullptr);

    void addFolder(const QString &folder);

    QStringList folders() const { return m_folders; }

    void setShowHidden(bool show);

    // Selects `path` in the folder of the workspace that holds it (the innermost), adding the
    // file's own folder when none does.
    void reveal(const QString &path);
    // The folder shown and the entry selected in it (empty when none).
    QString shownFolder() const;
    QString selectedPath() const;

Q_SIGNALS:
    void fileActivated(const QString &path);
    // A right click at `globalPos` on the entry `path` (empty: on no entry).
    void menuRequested(const QString &path, const QPoint &globalPos);

private:
    void showFolder(const QString &folder);

    QStringList m_folders;
    QString m_shownFolder;
    QComboBox *m_folderChooser;
    QFileSystemModel *m_model;
    QTreeView *m_tree;
};

} // namespace mirtex
