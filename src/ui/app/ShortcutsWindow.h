// "Scorciatoie da tastiera": every registered command that has a key, under the menu that shows
// it ("File › Salva"); commands in no menu come next, by their label; the keys the editor handles
// itself (moving, selecting, deleting) last, under "Editor".
#pragma once

#include <QDialog>

class QMenuBar;
class QTreeWidget;

namespace mirtex {

class CommandRegistry;

class ShortcutsWindow : public QDialog
{
    Q_OBJECT

public:
    ShortcutsWindow(CommandRegistry &registry, QMenuBar *menuBar, QWidget *parent = nullptr);

protected:
    void showEvent(QShowEvent *event) override;

private:
    void rebuild();

    CommandRegistry &m_registry;
    QMenuBar *m_menuBar;
    QTreeWidget *m_list;
};

} // namespace mirtex
