// The menu bar, laid out from registered commands (a command's name is its action's object name,
// which macros record); later subsystems add their own commands to the menus found by name. It
// also gives the status bar its encoding, line-ending and language menus.
#pragma once

#include <QObject>
#include <QPoint>
#include <QStringList>

#include <functional>
#include <vector>

class QMenu;

namespace mirtex {

class CommandRegistry;
class MainWindow;
class RecentFiles;

class MainMenu : public QObject
{
    Q_OBJECT

public:
    // Every command laid out must already be registered; `recent` must outlive the menus.
    MainMenu(MainWindow &window,
             CommandRegistry &registry,
             RecentFiles &recent,
             QObject *parent = nullptr);

    QMenu *menu(const QString &objectName) const;

    // Adds entries of another subsystem to every tab menu (given the menu and the tab's index).
    void addTabMenuEntries(std::function<void(QMenu *menu, int tabIndex)> add)
    {
        m_tabMenuEntries.push_back(std::move(add));
    }

private:
    QMenu *addMenu(const QString &objectName, const QString &title);
    // The commands in order; an empty name is a separator.
    void place(QMenu *menu, const QStringList &names);
    void buildEncoding();
    void buildLanguage();
    void buildFile(RecentFiles &recent);
    void buildWindow();
    void showTabMenu(int index, const QPoint &globalPos);

    MainWindow &m_window;
    CommandRegistry &m_registry;
    QMenu *m_statusEncodingMenu = nullptr;
    QMenu *m_lineEndingMenu = nullptr;
    QMenu *m_languageMenu = nullptr;
    std::vector<std::function<void(QMenu *, int)>> m_tabMenuEntries;
};

} // namespace mirtex
