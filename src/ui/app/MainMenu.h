// The menu bar. Each command is a QAction whose objectName is its stable identifier (macros
// record these names); later subsystems add their own actions to the menus found by name.
#pragma once

#include <QObject>
#include <QPointer>

#include <functional>

class QMenu;
class QAction;

namespace mirtex {

class MainWindow;
class Preferences;

class MainMenu : public QObject
{
    Q_OBJECT

public:
    MainMenu(MainWindow *window, QObject *parent = nullptr);

    QMenu *menu(const QString &objectName) const;
    QAction *action(const QString &objectName) const;

    std::function<void()> onShowPreferences;
    std::function<void()> onShowShortcuts;
    std::function<void()> onQuit;

private:
    void buildFile();
    void buildEdit();
    void buildView();
    void buildEncoding();
    void buildLanguage();
    void buildWindow();
    void buildHelp();
    QAction *add(QMenu *menu,
                 const QString &name,
                 const QString &label,
                 const QKeySequence &shortcut,
                 std::function<void()> run);
    using Getter = bool (Preferences::*)() const;
    using Setter = void (Preferences::*)(bool);
    QAction *
    addToggle(QMenu *menu, const QString &name, const QString &label, Getter get, Setter set);
    void syncToggles();

    QPointer<MainWindow> m_window;
    QList<std::pair<QAction *, Getter>> m_toggles;
};

} // namespace mirtex
