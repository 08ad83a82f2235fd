// Every widget writes its field into the model as the user changes it, and the whole panel is
// redrawn from the model on each change (signals blocked, unchanged values left alone so a field
// being typed in keeps its cursor). The buttons' enabled states follow the registry's actions.
#include "ui/search/FindPanel.h"

#include "core/app/Preferences.h"
#include "ui/commands/CommandRegistry.h"

#include <QAction>
#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QCompleter>
#include <QCoreApplication>
#include <QFileSystemModel>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QTabBar>
#include <QToolButton>

namespace mirtex {

namespace {

// The buttons of each tab, top to bottom, with their texts.
struct TabButton
{
    FindTab tab;
    const char *command;
    const char *text;
};

constexpr TabButton kTabButtons[] = {
    {FindTab::find, "findNext:", "Trova successivo"},
    {FindTab::find, "findPrevious:", "Trova precedente"},
    {FindTab::find, "countMatches:", "Conta"},
    {FindTab::find, "findAllInDocument:", "Trova tutti nel documento"},
    {FindTab::find, "findAllInOpenDocuments:", "Trova tutti nei documenti aperti"},
    {FindTab::replace, "findNext:", "Trova successivo"},
    {FindTab::replace, "replace:", "Sostituisci"},
    {FindTab::replace, "replaceAll:", "Sostituisci tutto"},
    {FindTab::replace, "replaceInOpenDocuments:", "Sostituisci in tutti i documenti aperti"},
    {FindTab::files, "findInFiles:", "Trova nei file"},
    {FindTab::files, "replaceInFiles:", "Sostituisci nei file"},
    {FindTab::mark, "markAll:", "Contrassegna tutto"},
    {FindTab::mark, "clearMarks:", "Cancella i contrassegni"},
};

// What Enter runs on each tab.
QString enterCommand(FindTab tab)
{
    switch (tab) {
    case FindTab::files:
        return QStringLiteral("findInFiles:");
    case FindTab::mark:
        return QStringLiteral("markAll:");
    case FindTab::find:
    case FindTab::replace:
        break;
    }
    return QStringLiteral("findNext:");
}

void setText(QLineEdit *field, const QString &text)
{
    if (field->text() != text)
        field->setText(text);
}

} // namespace

FindPanel::FindPanel(FindModel &model,
                     CommandRegistry &registry,
                     Preferences &prefs,
                     QWidget *parent)
    : QWidget(parent, Qt::Tool)
    , m_model(model)
    , m_registry(registry)
    , m_prefs(prefs)
    , m_focusToken(model.fields().focusToken)
{
    setObjectName(QStringLiteral("mirtex.findPanel"));
    setWindowTitle(tr("Trova"));
    build();
    bindOptions();
    if (m_model.fields().directory.isEmpty()) {
        const QString last = prefs.value(QLatin1String(PreferenceKeys::kFindDirectory)).toString();
        if (!last.isEmpty())
            m_model.update([&](FindFields &f) { f.directory = last; });
    }
    connect(&model, &FindModel::changed, this, &FindPanel::syncFromModel);
    syncFromModel();
}

void FindPanel::build()
{
    auto *outer = new QVBoxLayout(this);
    m_tabs = new QTabBar(this);
    for (const FindTab tab : kFindTabs)
        m_tabs->addTab(label(tab));
    outer->addWidget(m_tabs);

    auto *body = new QHBoxLayout;
    outer->addLayout(body);
    auto *form = new QGridLayout;
    body->addLayout(form, 1);
    int row = 0;
    const auto addRow
        = [&](const QString &text, QWidget *field, std::initializer_list<FindTab> tabs) {
              auto *caption = new QLabel(text, this);
              caption->setBuddy(field);
              form->addWidget(caption, row, 0);
              form->addWidget(field, row, 1);
              ++row;
              for (const FindTab tab : tabs) {
                  m_tabWidgets[tab].push_back(caption);
                  m_tabWidgets[tab].push_back(field);
              }
              m_allTabWidgets.push_back(caption);
              m_allTabWidgets.push_back(field);
          };
    const auto addBox = [&](QWidget *box, std::initializer_list<FindTab> tabs) {
        form->addWidget(box, row++, 1);
        for (const FindTab tab : tabs)
            m_tabWidgets[tab].push_back(box);
        m_allTabWidgets.push_back(box);
    };

    // The query, with the recent searches behind a small button.
    auto *queryRow = new QWidget(this);
    auto *queryLayout = new QHBoxLayout(queryRow);
    queryLayout->setContentsMargins(0, 0, 0, 0);
    m_query = new QLineEdit(queryRow);
    m_historyButton = new QToolButton(queryRow);
    m_historyButton->setText(QStringLiteral("▾"));
    m_historyButton->setToolTip(tr("Ricerche recenti"));
    m_historyButton->setPopupMode(QToolButton::InstantPopup);
    m_history = new QMenu(tr("Ricerche recenti"), m_historyButton);
    m_historyButton->setMenu(m_history);
    connect(m_history, &QMenu::aboutToShow, this, &FindPanel::fillHistoryMenu);
    queryLayout->addWidget(m_query, 1);
    queryLayout->addWidget(m_historyButton);
    auto *queryCaption = new QLabel(tr("Trova:"), this);
    queryCaption->setBuddy(m_query);
    form->addWidget(queryCaption, row, 0);
    form->addWidget(queryRow, row++, 1);

    m_replacement = new QLineEdit(this);
    addRow(tr("Sostituisci con:"), m_replacement, {FindTab::replace, FindTab::files});

    m_directory = new QComboBox(this);
    m_directory->setEditable(true);
    m_directory->setInsertPolicy(QComboBox::NoInsert);
    auto *folders = new QFileSystemModel(m_directory);
    folders->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot);
    folders->setRootPath(QString());
    auto *completer = new QCompleter(folders, m_directory);
    completer->setCompletionMode(QCompleter::PopupCompletion);
    m_directory->setCompleter(completer);
    addRow(tr("Cartella:"), m_directory, {FindTab::files});
    m_filters = new QLineEdit(this);
    m_filters->setPlaceholderText(QStringLiteral("*.txt *.swift !*.min.js"));
    addRow(tr("Filtri:"), m_filters, {FindTab::files});
    m_subfolders = new QCheckBox(tr("Anche nelle sottocartelle"), this);
    addBox(m_subfolders, {FindTab::files});
    m_hiddenFolders = new QCheckBox(tr("Anche nelle cartelle nascoste"), this);
    addBox(m_hiddenFolders, {FindTab::files});
    m_respectGitignore = new QCheckBox(tr("Rispetta .gitignore"), this);
    addBox(m_respectGitignore, {FindTab::files});

    m_matchCase = new QCheckBox(tr("Maiuscole/minuscole"), this);
    addBox(m_matchCase, {FindTab::find, FindTab::replace, FindTab::files, FindTab::mark});
    m_wholeWord = new QCheckBox(tr("Solo parole intere"), this);
    addBox(m_wholeWord, {FindTab::find, FindTab::replace, FindTab::files, FindTab::mark});
    m_wrapAround = new QCheckBox(tr("Ricomincia dall'inizio"), this);
    addBox(m_wrapAround, {FindTab::find, FindTab::replace});
    m_inSelection = new QCheckBox(tr("Solo nella selezione"), this);
    m_inSelection->setToolTip(tr("Per Conta, Sostituisci tutto e Contrassegna"));
    addBox(m_inSelection, {FindTab::find, FindTab::replace, FindTab::mark});
    m_inSelectionHint = new QLabel(tr("Per Conta, Sostituisci tutto e Contrassegna"), this);
    m_inSelectionHint->setEnabled(false); // drawn as a quiet hint
    m_inSelectionHint->setIndent(22);
    addBox(m_inSelectionHint, {FindTab::find, FindTab::replace, FindTab::mark});
    m_bookmarkLines = new QCheckBox(tr("Segnalibro sulla riga"), this);
    addBox(m_bookmarkLines, {FindTab::mark});

    auto *modes = new QGroupBox(tr("Modalità di ricerca"), this);
    auto *modesLayout = new QVBoxLayout(modes);
    for (const SearchMode mode : kSearchModes) {
        auto *button = new QRadioButton(label(mode), modes);
        m_modes[mode] = button;
        modesLayout->addWidget(button);
    }
    m_dotAll = new QCheckBox(tr(". trova anche gli a capo"), modes);
    modesLayout->addWidget(m_dotAll);
    form->addWidget(modes, row++, 1);
    form->setRowStretch(row, 1);

    // The buttons of every tab in one column; a tab shows its own.
    auto *buttons = new QVBoxLayout;
    body->addLayout(buttons);
    for (const TabButton &b : kTabButtons) {
        QPushButton *button = addButton(QString::fromLatin1(b.command), tr(b.text));
        m_tabWidgets[b.tab].push_back(button);
        if (buttons->indexOf(button) < 0)
            buttons->addWidget(button);
        if (std::find(m_allTabWidgets.begin(), m_allTabWidgets.end(), button)
            == m_allTabWidgets.end())
            m_allTabWidgets.push_back(button);
    }
    buttons->addStretch(1);
    buttons->addWidget(addButton(QStringLiteral("hideFindPanel:"), tr("Chiudi")));

    auto *statusRow = new QHBoxLayout;
    outer->addLayout(statusRow);
    m_status = new QLabel(this);
    m_status->setWordWrap(true);
    m_counter = new QLabel(this);
    m_cancel = new QPushButton(tr("Annulla"), this);
    connect(m_cancel, &QPushButton::clicked, this, [this] {
        dispatch(QStringLiteral("cancelSearch:"));
        dispatch(QStringLiteral("stopFileSearch:"));
    });
    statusRow->addWidget(m_status, 1);
    statusRow->addWidget(m_counter);
    statusRow->addWidget(m_cancel);

    // The search keys work while the panel has the focus too.
    for (const char *name : {"findNext:",
                             "findPrevious:",
                             "findWordAtCaret:",
                             "showFindPanel:",
                             "showReplacePanel:",
                             "showMarkPanel:",
                             "showFindInFilesPanel:"}) {
        if (QAction *action = m_registry.action(QString::fromLatin1(name)))
            addAction(action);
    }
}

QPushButton *FindPanel::addButton(const QString &commandName, const QString &text)
{
    if (const auto found = m_buttons.find(commandName); found != m_buttons.end())
        return found->second;
    auto *button = new QPushButton(text, this);
    button->setObjectName(commandName);
    m_buttons[commandName] = button;
    connect(button, &QPushButton::clicked, this, [this, commandName] {
        if (commandName == QLatin1String("findInFiles:")
            || commandName == QLatin1String("replaceInFiles:"))
            rememberDirectory();
        dispatch(commandName);
    });
    // Enabled as the command is; never for a command nobody registered.
    QAction *action = m_registry.action(commandName);
    button->setEnabled(action && action->isEnabled());
    if (action)
        connect(action, &QAction::changed, button, [button, action] {
            button->setEnabled(action->isEnabled());
        });
    return button;
}

void FindPanel::bindOptions()
{
    const auto write = [this](auto change) {
        return [this, change](auto value) {
            m_model.update([&](FindFields &f) { change(f, value); });
        };
    };
    connect(m_tabs, &QTabBar::currentChanged, this, write([](FindFields &f, int index) {
                if (index >= 0)
                    f.tab = kFindTabs[std::size_t(index)];
            }));
    connect(m_query, &QLineEdit::textEdited, this, write([](FindFields &f, const QString &text) {
                f.query = text;
            }));
    connect(m_replacement,
            &QLineEdit::textEdited,
            this,
            write([](FindFields &f, const QString &text) { f.replacement = text; }));
    connect(m_directory,
            &QComboBox::currentTextChanged,
            this,
            write([](FindFields &f, const QString &text) { f.directory = text; }));
    connect(m_filters, &QLineEdit::textEdited, this, write([](FindFields &f, const QString &text) {
                f.filters = text;
            }));
    const std::pair<QCheckBox *, bool FindFields::*> boxes[] = {
        {m_matchCase, &FindFields::matchCase},
        {m_wholeWord, &FindFields::wholeWord},
        {m_wrapAround, &FindFields::wrapAround},
        {m_inSelection, &FindFields::inSelection},
        {m_dotAll, &FindFields::dotMatchesNewline},
        {m_subfolders, &FindFields::subfolders},
        {m_hiddenFolders, &FindFields::hiddenFolders},
        {m_respectGitignore, &FindFields::respectGitignore},
        {m_bookmarkLines, &FindFields::bookmarkLines},
    };
    for (const auto &[box, field] : boxes) {
        connect(box, &QCheckBox::toggled, this, [this, field](bool on) {
            m_model.update([&](FindFields &f) { f.*field = on; });
        });
    }
    for (const auto &[mode, button] : m_modes) {
        connect(button, &QRadioButton::toggled, this, [this, mode](bool on) {
            if (on)
                m_model.update([&](FindFields &f) { f.mode = mode; });
        });
    }
    connect(m_query, &QLineEdit::returnPressed, this, &FindPanel::runEnterCommand);
    connect(m_replacement, &QLineEdit::returnPressed, this, &FindPanel::runEnterCommand);
    connect(m_filters, &QLineEdit::returnPressed, this, &FindPanel::runEnterCommand);
}

void FindPanel::syncFromModel()
{
    const FindFields &f = m_model.fields();
    const QSignalBlocker blockTabs(m_tabs);
    m_tabs->setCurrentIndex(int(f.tab));
    setText(m_query, f.query);
    setText(m_replacement, f.replacement);
    setText(m_filters, f.filters);
    if (m_directory->currentText() != f.directory) {
        const QSignalBlocker block(m_directory);
        m_directory->setEditText(f.directory);
    }
    const std::pair<QCheckBox *, bool> boxes[] = {
        {m_matchCase, f.matchCase},
        {m_wholeWord, f.wholeWord},
        {m_wrapAround, f.wrapAround},
        {m_inSelection, f.inSelection},
        {m_dotAll, f.dotMatchesNewline},
        {m_subfolders, f.subfolders},
        {m_hiddenFolders, f.hiddenFolders},
        {m_respectGitignore, f.respectGitignore},
        {m_bookmarkLines, f.bookmarkLines},
    };
    for (const auto &[box, on] : boxes) {
        const QSignalBlocker block(box);
        box->setChecked(on);
    }
    for (const auto &[mode, button] : m_modes) {
        const QSignalBlocker block(button);
        button->setChecked(mode == f.mode);
    }
    m_dotAll->setVisible(f.mode == SearchMode::regex);
    showTabWidgets(f.tab);

    m_status->setText(f.status);
    m_status->setStyleSheet(f.statusIsError ? QStringLiteral("color: #c62828;") : QString());
    // A folder walk is stopped (what was found stays); work on one text is cancelled.
    m_cancel->setText(f.tab == FindTab::files ? tr("Ferma") : tr("Annulla"));
    m_cancel->setVisible(f.isBusy);

    if (f.focusToken != m_focusToken) {
        m_focusToken = f.focusToken;
        raise();
        activateWindow();
        m_query->setFocus(Qt::OtherFocusReason);
        m_query->selectAll();
    }
}

void FindPanel::showTabWidgets(FindTab tab)
{
    const std::vector<QWidget *> &shown = m_tabWidgets[tab];
    for (QWidget *widget : m_allTabWidgets)
        widget->setVisible(std::find(shown.begin(), shown.end(), widget) != shown.end());
    setWindowTitle(label(tab));
}

void FindPanel::setCounter(const QString &text)
{
    m_counter->setText(text);
}

QPushButton *FindPanel::button(const QString &commandName) const
{
    const auto found = m_buttons.find(commandName);
    return found == m_buttons.end() ? nullptr : found->second;
}

QMenu *FindPanel::historyMenu()
{
    fillHistoryMenu();
    return m_history;
}

void FindPanel::fillHistoryMenu()
{
    m_history->clear();
    const QStringList &history = m_model.history();
    if (history.isEmpty()) {
        m_history->addAction(tr("Nessuna ricerca recente"))->setEnabled(false);
        return;
    }
    for (const QString &query : history) {
        QAction *entry = m_history->addAction(query);
        connect(entry, &QAction::triggered, this, [this, query] {
            m_model.update([&](FindFields &f) { f.query = query; });
            m_query->setFocus(Qt::OtherFocusReason);
        });
    }
}

void FindPanel::runEnterCommand()
{
    dispatch(enterCommand(m_model.fields().tab));
}

void FindPanel::dispatch(const QString &commandName)
{
    m_registry.dispatch(commandName);
}

void FindPanel::rememberDirectory()
{
    const QString directory = m_model.fields().directory.trimmed();
    if (directory.isEmpty())
        return;
    QStringList recent = m_prefs.value(QLatin1String(kRecentDirectoriesKey)).toStringList();
    recent.removeAll(directory);
    recent.prepend(directory);
    while (recent.size() > kRecentDirectoriesLimit)
        recent.removeLast();
    m_prefs.setValue(QLatin1String(kRecentDirectoriesKey), recent);
    const QSignalBlocker block(m_directory);
    m_directory->clear();
    m_directory->addItems(recent);
    m_directory->setEditText(directory);
}

void FindPanel::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (!m_placed && parentWidget()) {
        // Over the main window's top right corner, clear of the menu bar.
        m_placed = true;
        adjustSize();
        const QRect window = parentWidget()->frameGeometry();
        move(window.right() - width() - 32, window.top() + 80);
    }
    if (m_directory->count() == 0) {
        const QSignalBlocker block(m_directory);
        m_directory->addItems(m_prefs.value(QLatin1String(kRecentDirectoriesKey)).toStringList());
        m_directory->setEditText(m_model.fields().directory);
    }
    Q_EMIT visibilityChanged(true);
}

void FindPanel::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    Q_EMIT visibilityChanged(false);
}

void FindPanel::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        if (m_model.fields().isBusy) {
            dispatch(QStringLiteral("cancelSearch:"));
            dispatch(QStringLiteral("stopFileSearch:"));
        } else {
            dispatch(QStringLiteral("hideFindPanel:"));
        }
        event->accept();
        return;
    }
    QWidget::keyPressEvent(event);
}

} // namespace mirtex
