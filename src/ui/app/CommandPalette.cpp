#include "ui/app/CommandPalette.h"

#include "core/app/FuzzyMatch.h"
#include "ui/commands/Beep.h"
#include "ui/commands/CommandRegistry.h"

#include <QAction>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QSet>
#include <QVBoxLayout>

#include <algorithm>

namespace mirtex {

namespace {

constexpr int kEntryRole = Qt::UserRole;

QString keysText(const QList<QKeySequence> &keys)
{
    QStringList shown;
    for (const QKeySequence &key : keys)
        shown.append(key.toString(QKeySequence::NativeText));
    return shown.join(QStringLiteral(" / "));
}

// "name:" of an action named "name:" or "name:argument".
QString commandName(const QString &objectName)
{
    const qsizetype colon = objectName.indexOf(u':');
    return colon < 0 ? QString() : objectName.left(colon + 1);
}

} // namespace

CommandPalette::CommandPalette(CommandRegistry &registry, QMenuBar *menuBar, QWidget *parent)
    : QDialog(parent, Qt::Popup | Qt::FramelessWindowHint)
    , m_registry(registry)
    , m_menuBar(menuBar)
    , m_filter(new QLineEdit(this))
    , m_list(new QListWidget(this))
{
    setObjectName(QStringLiteral("mirtex.commandPalette"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    m_filter->setPlaceholderText(
        QCoreApplication::translate("CommandPalette", "Scrivi il nome di un comando"));
    m_filter->setClearButtonEnabled(true);
    layout->addWidget(m_filter);
    layout->addWidget(m_list);
    m_list->setUniformItemSizes(true);
    m_filter->installEventFilter(this);
    connect(m_filter, &QLineEdit::textChanged, this, &CommandPalette::refilter);
    connect(m_filter, &QLineEdit::returnPressed, this, &CommandPalette::runCurrent);
    connect(m_list, &QListWidget::itemActivated, this, &CommandPalette::runCurrent);
    resize(560, 380);
}

void CommandPalette::registerIn(CommandRegistry &registry, QMainWindow &window)
{
    CommandRegistry *r = &registry;
    QMainWindow *w = &window;
    registry.add({QStringLiteral("showCommandPalette:"),
                  QCoreApplication::translate("MainMenu", "Palette dei comandi…"),
                  {QKeySequence(QStringLiteral("Ctrl+Shift+P"))},
                  [r, w](const QVariant &) {
                      auto *palette = w->findChild<CommandPalette *>(
                          QStringLiteral("mirtex.commandPalette"), Qt::FindDirectChildrenOnly);
                      if (!palette)
                          palette = new CommandPalette(*r, w->menuBar(), w);
                      palette->popUp();
                  }});
}

QList<CommandPalette::Entry> CommandPalette::entries() const
{
    QList<Entry> result;
    QSet<QString> listed; // action names
    QSet<QString> commandsListed;
    std::function<void(QMenu *, const QString &)> walk = [&](QMenu *menu, const QString &path) {
        for (QAction *action : menu->actions()) {
            const QString text = action->text().remove(u'&');
            if (action->menu()) {
                walk(action->menu(), path + QStringLiteral(" › ") + text);
                continue;
            }
            const QString name = commandName(action->objectName());
            const Command *command = name.isEmpty() ? nullptr : m_registry.find(name);
            if (!command || listed.contains(action->objectName()))
                continue;
            listed.insert(action->objectName());
            commandsListed.insert(name);
            result.append({path + QStringLiteral(" › ") + text,
                           action->data().isValid() ? QString() : keysText(command->shortcuts),
                           name,
                           action->data()});
        }
    };
    if (m_menuBar) {
        for (QAction *top : m_menuBar->actions()) {
            if (top->menu())
                walk(top->menu(), top->text().remove(u'&'));
        }
    }
    for (const Command *command : m_registry.commands()) {
        if (!commandsListed.contains(command->name))
            result.append({QString(command->label).remove(u'&'),
                           keysText(command->shortcuts),
                           command->name,
                           {}});
    }
    return result;
}

void CommandPalette::popUp()
{
    m_entries = entries();
    m_filter->clear();
    refilter();
    if (QWidget *over = parentWidget()) {
        const QPoint top = over->mapToGlobal(QPoint((over->width() - width()) / 2, 40));
        move(top);
    }
    show();
    raise();
    activateWindow();
    m_filter->setFocus();
}

void CommandPalette::refilter()
{
    struct Scored
    {
        int score;
        int index;
    };

    std::vector<Scored> shown;
    const QString filter = m_filter->text();
    for (int i = 0; i < m_entries.size(); ++i) {
        if (const auto score = fuzzyScore(filter, m_entries[i].path))
            shown.push_back({*score, i});
    }
    std::ranges::stable_sort(shown, std::greater<>(), &Scored::score);
    m_list->clear();
    for (const Scored &s : shown) {
        const Entry &entry = m_entries[s.index];
        const QString text
            = entry.keys.isEmpty() ? entry.path : entry.path + QStringLiteral("    ") + entry.keys;
        auto *item = new QListWidgetItem(text, m_list);
        item->setData(kEntryRole, s.index);
        if (!m_registry.isEnabled(entry.name, entry.argument))
            item->setFlags(item->flags() & ~Qt::ItemIsEnabled);
    }
    if (m_list->count() > 0)
        m_list->setCurrentRow(0);
}

void CommandPalette::runCurrent()
{
    QListWidgetItem *item = m_list->currentItem();
    if (!item || !(item->flags() & Qt::ItemIsEnabled)) {
        beep();
        return;
    }
    const Entry entry = m_entries[item->data(kEntryRole).toInt()];
    hide();
    if (QWidget *window = parentWidget())
        window->activateWindow();
    m_registry.dispatch(entry.name, entry.argument);
}

bool CommandPalette::eventFilter(QObject *watched, QEvent *event)
{
    // Up and down move in the list while the filter keeps the focus.
    if (watched == m_filter && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp
            || key == Qt::Key_PageDown) {
            QCoreApplication::sendEvent(m_list, event);
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace mirtex
