// The small manager of saved macros: play, rename, delete and give a shortcut. One per main
// window, not modal; it follows the library as it changes.
#pragma once

#include <QDialog>

class QKeySequenceEdit;
class QListWidget;
class QPushButton;

namespace mirtex {

class MacroCommands;

class MacroLibraryWindow : public QDialog
{
    Q_OBJECT

public:
    // Shows the manager of `parent`, making it the first time.
    static MacroLibraryWindow *showFor(MacroCommands &macros, QWidget *parent);

    MacroLibraryWindow(MacroCommands &macros, QWidget *parent);

private:
    void fill();
    QString selectedName() const;
    void selectionChanged();

    MacroCommands &m_macros;
    QListWidget *m_list;
    QKeySequenceEdit *m_shortcut;
    QList<QPushButton *> m_needSelection;
};

} // namespace mirtex
