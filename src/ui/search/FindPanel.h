// The floating find panel: a non-modal tool window over the main window with the tabs "Trova",
// "Sostituisci", "Trova nei file" and "Contrassegna", every option of the find model, the status
// line and the recent searches. It only reads and writes the FindModel; every button runs a
// registered command by name through CommandRegistry::dispatch (so macros record it), and a button
// whose command is not registered is disabled. Main thread only.
#pragma once

#include "core/search/FindModel.h"

#include <QWidget>

#include <map>

class QAbstractButton;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QMenu;
class QPushButton;
class QRadioButton;
class QTabBar;
class QToolButton;

namespace mirtex {

class CommandRegistry;
class Preferences;

class FindPanel : public QWidget
{
    Q_OBJECT

public:
    // Settings key of the folders searched last (newest first), beside findDirectory.
    static constexpr auto kRecentDirectoriesKey = "findRecentDirectories";
    static constexpr int kRecentDirectoriesLimit = 10;

    // `parent` is the main window the panel floats over.
    FindPanel(FindModel &model, CommandRegistry &registry, Preferences &prefs, QWidget *parent);

    // "3 di 12": which match the selection is, shown beside the status line.
    void setCounter(const QString &text);

    // The command a button runs, and the button running a command (tests).
    QPushButton *button(const QString &commandName) const;

    QLineEdit *queryField() const { return m_query; }

    QLabel *statusLabel() const { return m_status; }

    QLabel *counterLabel() const { return m_counter; }

    // The recent-searches menu as it would open now.
    QMenu *historyMenu();

Q_SIGNALS:
    void visibilityChanged(bool visible);

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void build();
    QPushButton *addButton(const QString &commandName, const QString &text);
    void bindOptions();
    void syncFromModel();
    void showTabWidgets(FindTab tab);
    void runEnterCommand();
    void dispatch(const QString &commandName);
    void rememberDirectory();
    void fillHistoryMenu();

    FindModel &m_model;
    CommandRegistry &m_registry;
    Preferences &m_prefs;
    int m_focusToken;
    bool m_placed = false;

    QTabBar *m_tabs = nullptr;
    QLineEdit *m_query = nullptr;
    QToolButton *m_historyButton = nullptr;
    QMenu *m_history = nullptr;
    QLineEdit *m_replacement = nullptr;
    QComboBox *m_directory = nullptr;
    QLineEdit *m_filters = nullptr;
    QCheckBox *m_matchCase = nullptr;
    QCheckBox *m_wholeWord = nullptr;
    QCheckBox *m_wrapAround = nullptr;
    QCheckBox *m_inSelection = nullptr;
    QLabel *m_inSelectionHint = nullptr;
    std::map<SearchMode, QRadioButton *> m_modes;
    QCheckBox *m_dotAll = nullptr;
    QCheckBox *m_subfolders = nullptr;
    QCheckBox *m_hiddenFolders = nullptr;
    QCheckBox *m_respectGitignore = nullptr;
    QCheckBox *m_bookmarkLines = nullptr;
    QLabel *m_status = nullptr;
    QLabel *m_counter = nullptr;
    QPushButton *m_cancel = nullptr;
    std::map<QString, QPushButton *> m_buttons;
    // What each tab shows besides the query: rows of labelled fields and option boxes.
    std::map<FindTab, std::vector<QWidget *>> m_tabWidgets;
    std::vector<QWidget *> m_allTabWidgets;
};

} // namespace mirtex
