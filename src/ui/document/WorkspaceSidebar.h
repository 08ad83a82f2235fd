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

Q_SIGNALS:
    void fileActivated(const QString &path);

private:
    void showFolder(const QString &folder);

    QStringList m_folders;
    QComboBox *m_folderChooser;
    QFileSystemModel *m_model;
    QTreeView *m_tree;
};

} // namespace mirtex
