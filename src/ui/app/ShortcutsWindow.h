// "Scorciatoie da tastiera": every menu command that has a key, grouped by menu.
#pragma once

#include <QDialog>

class QMenuBar;
class QTreeWidget;

namespace mirtex {

class ShortcutsWindow : public QDialog
{
    Q_OBJECT

public:
    ShortcutsWindow(QMenuBar *menuBar, QWidget *parent = nullptr);

protected:
    void showEvent(QShowEvent *event) override;

private:
    void rebuild();

    QMenuBar *m_menuBar;
    QTreeWidget *m_list;
};

} // namespace mirtex
