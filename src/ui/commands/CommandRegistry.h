// Every command registered once, by name; every invocation (menu, shortcut, and later the
// toolbar and the palette) passes through dispatch(), where listeners such as the macro recorder
// see it. The registry also makes the QActions that show commands and keeps their enabled and
// checked states current when refresh() is called. Main thread only.
#pragma once

#include "ui/commands/Command.h"

#include <QObject>
#include <QPointer>

#include <map>
#include <vector>

class QAction;

namespace mirtex {

class CommandRegistry : public QObject
{
    Q_OBJECT

public:
    explicit CommandRegistry(QObject *parent = nullptr);
    ~CommandRegistry() override;

    // A second command with the same name replaces the first.
    void add(Command command);
    const Command *find(const QString &name) const;
    // In the order of registration.
    QList<const Command *> commands() const;

    bool isEnabled(const QString &name, const QVariant &argument = {}) const;

    // Runs the command when it exists and is enabled; returns whether it ran. Listeners hear of
    // it just before the handler runs (the handler may close the window).
    bool dispatch(const QString &name, const QVariant &argument = {});

    using Listener = std::function<void(const QString &name, const QVariant &argument)>;
    // Returns an identifier for removeListener.
    int addListener(Listener listener);
    void removeListener(int id);

    // The action showing `name` with `argument` (made once, then shared by every menu that lays it
    // out); `label` replaces the command's own (the encoding's or the language's name). The
    // registry owns it. Null for an unknown command.
    QAction *
    action(const QString &name, const QVariant &argument = {}, const QString &label = QString());
    // A new action owned by `parent` (entries of menus rebuilt each time they open).
    QAction *makeAction(const QString &name,
                        const QVariant &argument,
                        const QString &label,
                        QObject *parent);

    // Brings every action's enabled and checked state up to date.
    void refresh();

private:
    struct Shown
    {
        QPointer<QAction> action;
        QString name;
        QVariant argument;
    };

    QAction *
    create(const Command &command, const QVariant &argument, const QString &label, QObject *parent);
    void refresh(const Shown &shown) const;

    std::vector<Command> m_commands;
    std::map<QString, std::size_t> m_index;
    std::map<QString, QAction *> m_shared; // by name and argument
    std::vector<Shown> m_shown;
    std::vector<std::pair<int, Listener>> m_listeners;
    int m_nextListener = 0;
};

} // namespace mirtex
