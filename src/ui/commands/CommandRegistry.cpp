#include "ui/commands/CommandRegistry.h"

#include <QAction>

namespace mirtex {

namespace {

QString actionName(const QString &name, const QVariant &argument)
{
    return argument.isValid() ? name + argument.toString() : name;
}

} // namespace

CommandRegistry::CommandRegistry(QObject *parent)
    : QObject(parent)
{}

CommandRegistry::~CommandRegistry()
{
    // Actions made for others die with them; the shared ones are ours.
    for (auto &[key, action] : m_shared)
        delete action;
}

void CommandRegistry::add(Command command)
{
    const auto found = m_index.find(command.name);
    if (found != m_index.end()) {
        m_commands[found->second] = std::move(command);
        return;
    }
    m_index.emplace(command.name, m_commands.size());
    m_commands.push_back(std::move(command));
}

const Command *CommandRegistry::find(const QString &name) const
{
    const auto found = m_index.find(name);
    return found == m_index.end() ? nullptr : &m_commands[found->second];
}

QList<const Command *> CommandRegistry::commands() const
{
    QList<const Command *> result;
    result.reserve(qsizetype(m_commands.size()));
    for (const Command &command : m_commands)
        result.append(&command);
    return result;
}

bool CommandRegistry::isEnabled(const QString &name, const QVariant &argument) const
{
    const Command *command = find(name);
    return command && (!command->isEnabled || command->isEnabled(argument));
}

bool CommandRegistry::dispatch(const QString &name, const QVariant &argument)
{
    const Command *command = find(name);
    if (!command || !command->run || (command->isEnabled && !command->isEnabled(argument)))
        return false;
    // Copied: a listener or the handler may register or remove commands.
    const auto run = command->run;
    const auto listeners = m_listeners;
    for (const auto &[id, listener] : listeners)
        listener(name, argument);
    run(argument);
    return true;
}

int CommandRegistry::addListener(Listener listener)
{
    m_listeners.emplace_back(m_nextListener, std::move(listener));
    return m_nextListener++;
}

void CommandRegistry::removeListener(int id)
{
    std::erase_if(m_listeners, [id](const auto &entry) { return entry.first == id; });
}

QAction *CommandRegistry::create(const Command &command,
                                 const QVariant &argument,
                                 const QString &label,
                                 QObject *parent)
{
    auto *action = new QAction(label.isEmpty() ? command.label : label, parent);
    action->setObjectName(actionName(command.name, argument));
    if (!argument.isValid())
        action->setShortcuts(command.shortcuts);
    action->setShortcutContext(Qt::WindowShortcut);
    action->setData(argument);
    action->setCheckable(bool(command.isChecked));
    m_shown.push_back({action, command.name, argument});
    connect(action, &QAction::triggered, this, [this, shown = m_shown.back()]() {
        dispatch(shown.name, shown.argument);
        // A check mark the command did not follow (it changed nothing) goes back.
        refresh(shown);
    });
    refresh(m_shown.back());
    return action;
}

QAction *
CommandRegistry::action(const QString &name, const QVariant &argument, const QString &label)
{
    const QString key = actionName(name, argument);
    if (const auto found = m_shared.find(key); found != m_shared.end())
        return found->second;
    const Command *command = find(name);
    if (!command)
        return nullptr;
    QAction *made = create(*command, argument, label, nullptr);
    m_shared.emplace(key, made);
    return made;
}

QAction *CommandRegistry::makeAction(const QString &name,
                                     const QVariant &argument,
                                     const QString &label,
                                     QObject *parent)
{
    const Command *command = find(name);
    if (!command)
        return nullptr;
    std::erase_if(m_shown, [](const Shown &shown) { return shown.action.isNull(); });
    return create(*command, argument, label, parent);
}

void CommandRegistry::refresh(const Shown &shown) const
{
    const Command *command = find(shown.name);
    if (!command || !shown.action)
        return;
    shown.action->setEnabled(!command->isEnabled || command->isEnabled(shown.argument));
    if (command->isChecked) {
        const QSignalBlocker block(shown.action);
        shown.action->setChecked(command->isChecked(shown.argument));
    }
}

void CommandRegistry::refresh()
{
    for (const Shown &shown : m_shown)
        refresh(shown);
}

} // namespace mirtex
