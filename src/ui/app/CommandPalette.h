// The command palette: every registered command with its menu path and keys, filtered fuzzily as
// the user types, and run through the registry's dispatch like the menu would run it. One
// palette per window, made when first asked for.
#pragma once

#include <QDialog>
#include <QVariant>

class QLineEdit;
class QListWidget;
class QMainWindow;
class QMenuBar;

namespace mirtex {

class CommandRegistry;

class CommandPalette : public QDialog
{
    Q_OBJECT

public:
    CommandPalette(CommandRegistry &registry, QMenuBar *menuBar, QWidget *parent);

    // Registers "showCommandPalette:" (Ctrl+Shift+P), which opens the palette of `window`.
    static void registerIn(CommandRegistry &registry, QMainWindow &window);

    struct Entry
    {
        QString path; // "Modifica › Righe › Duplica riga o selezione"
        QString keys; // as shown
        QString name;
        QVariant argument;
    };

    // Every command reachable from the menus (with its argument), then the others, in order.
    QList<Entry> entries() const;

    // Opens the palette with an empty filter, over the window.
    void popUp();

    QLineEdit *filterField() const { return m_filter; }

    QListWidget *list() const { return m_list; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void refilter();
    void runCurrent();

    CommandRegistry &m_registry;
    QMenuBar *m_menuBar;
    QLineEdit *m_filter;
    QListWidget *m_list;
    QList<Entry> m_entries;
};

} // namespace mirtex
