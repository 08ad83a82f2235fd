// One recorded step of a macro: text typed, a key-bound editor command by name, or a menu action
// by name with its optional string argument (the represented object). Plain values, comparable,
// and convertible to and from the JSON kept for saved macros.
#pragma once

#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringView>

#include <optional>

namespace mirtex {

struct MacroStep
{
    enum class Kind {
        insert,  // `text` is what was typed
        command, // `text` is an editor command's name ("insertNewline:", "moveDown:")
        action,  // `text` is a menu action's name, `argument` its represented object if a string
    };

    Kind kind = Kind::insert;
    QString text;
    std::optional<QString> argument;

    static MacroStep insert(QString typed) { return {Kind::insert, std::move(typed), {}}; }

    static MacroStep command(QString name) { return {Kind::command, std::move(name), {}}; }

    static MacroStep action(QString name, std::optional<QString> argument = std::nullopt)
    {
        return {Kind::action, std::move(name), std::move(argument)};
    }

    friend bool operator==(const MacroStep &, const MacroStep &) = default;

    QJsonObject toJson() const;
    // Nothing for an object that is not a step (unknown kind, missing or empty name).
    static std::optional<MacroStep> fromJson(const QJsonObject &object);
};

using Macro = QList<MacroStep>;

// The menu actions a macro records; every other action (opening files, switching tabs, panels)
// is left out.
bool isRecordableAction(QStringView name);

} // namespace mirtex
