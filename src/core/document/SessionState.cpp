// JSON form of the session. Reading is lenient on purpose: a session written by an earlier or a
// damaged run still restores whatever it can.
#include "core/document/SessionState.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QJsonValue>

#include <algorithm>
#include <cmath>
#include <limits>

namespace mirtex {

namespace {

// An empty string counts as absent: an empty path or name is no path or name.
std::optional<QString> optionalString(const QJsonObject &object, QLatin1StringView key)
{
    const QJsonValue value = object.value(key);
    if (!value.isString() || value.toString().isEmpty())
        return std::nullopt;
    return value.toString();
}

QString stringOr(const QJsonObject &object, QLatin1StringView key, const QString &fallback)
{
    return optionalString(object, key).value_or(fallback);
}

bool boolOr(const QJsonObject &object, QLatin1StringView key, bool fallback)
{
    const QJsonValue value = object.value(key);
    return value.isBool() ? value.toBool() : fallback;
}

// Whole numbers only; 1.5 or "3" are of the wrong type.
std::optional<qint64> integerOf(const QJsonValue &value)
{
    if (!value.isDouble())
        return std::nullopt;
    constexpr qint64 kNotWhole = std::numeric_limits<qint64>::min();
    const qint64 number = value.toInteger(kNotWhole);
    if (number == kNotWhole)
        return std::nullopt;
    return number;
}

QString encodingFrom(const QJsonValue &value, const QString &fallback)
{
    if (value.isString()) {
        const QString text = value.toString();
        // Earlier versions stored encodings by name; UTF-8 was the only one they wrote.
        if (text.compare(u"utf8", Qt::CaseInsensitive) == 0
            || text.compare(u"utf-8", Qt::CaseInsensitive) == 0)
            return QStringLiteral("4");
        return text.isEmpty() ? fallback : text;
    }
    if (const auto number = integerOf(value); number && *number >= 0)
        return QString::number(*number);
    return fallback;
}

TextRange selectionFrom(const QJsonValue &value)
{
    const QJsonArray pair = value.toArray();
    if (pair.size() != 2)
        return {};
    const auto location = integerOf(pair[0]);
    const auto length = integerOf(pair[1]);
    if (!location || !length || *location < 0 || *length < 0)
        return {};
    return {*location, *length};
}

} // namespace

QJsonObject SessionState::Entry::toJson() const
{
    QJsonObject object;
    object.insert(u"id", id);
    if (path)
        object.insert(u"path", *path);
    if (untitledName)
        object.insert(u"untitledName", *untitledName);
    object.insert(u"hasBackup", hasBackup);
    object.insert(u"encoding", encoding);
    object.insert(u"lineEnding", lineEnding);
    object.insert(u"language", language);
    object.insert(u"selection", QJsonArray{qint64(selection.location), qint64(selection.length)});
    object.insert(u"scroll", scroll);
    QJsonArray lines;
    for (qsizetype line : bookmarks)
        lines.append(qint64(line));
    object.insert(u"bookmarks", lines);
    object.insert(u"readOnly", readOnly);
    if (split)
        object.insert(u"split", *split);
    return object;
}

SessionState::Entry SessionState::Entry::fromJson(const QJsonObject &object)
{
    Entry entry;
    entry.id = stringOr(object, QLatin1StringView("id"), entry.id);
    entry.path = optionalString(object, QLatin1StringView("path"));
    entry.untitledName = optionalString(object, QLatin1StringView("untitledName"));
    entry.hasBackup = boolOr(object, QLatin1StringView("hasBackup"), entry.hasBackup);
    entry.encoding = encodingFrom(object.value(u"encoding"), entry.encoding);

    const QString ending = stringOr(object, QLatin1StringView("lineEnding"), entry.lineEnding);
    if (ending == u"lf" || ending == u"crlf" || ending == u"cr")
        entry.lineEnding = ending;

    const QString language = stringOr(object, QLatin1StringView("language"), entry.language);
    if (!language.isEmpty())
        entry.language = language;
    entry.selection = selectionFrom(object.value(u"selection"));

    // Clamped to what an editor's line number can hold, so that turning it into one is defined.
    const QJsonValue scroll = object.value(u"scroll");
    if (scroll.isDouble() && scroll.toDouble() >= 0)
        entry.scroll
            = std::floor(std::min(scroll.toDouble(), double(std::numeric_limits<int>::max())));

    for (const QJsonValue &line : object.value(u"bookmarks").toArray()) {
        if (const auto index = integerOf(line); index && *index >= 0)
            entry.bookmarks.append(qsizetype(*index));
    }
    entry.readOnly = boolOr(object, QLatin1StringView("readOnly"), entry.readOnly);

    const auto split = optionalString(object, QLatin1StringView("split"));
    if (split == u"side" || split == u"stacked")
        entry.split = split;
    return entry;
}

QJsonObject SessionState::toJson() const
{
    QJsonArray array;
    for (const Entry &entry : entries)
        array.append(entry.toJson());
    QJsonObject object;
    object.insert(u"entries", array);
    object.insert(u"selected", qint64(selected));
    object.insert(u"workspace", QJsonArray::fromStringList(workspace));
    object.insert(u"sidebarVisible", sidebarVisible);
    return object;
}

QByteArray SessionState::toJsonBytes() const
{
    return QJsonDocument(toJson()).toJson(QJsonDocument::Indented);
}

std::optional<SessionState> SessionState::fromJson(const QByteArray &bytes)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return std::nullopt;
    return fromJson(document.object());
}

SessionState SessionState::fromJson(const QJsonObject &object)
{
    SessionState state;
    for (const QJsonValue &value : object.value(u"entries").toArray()) {
        if (value.isObject())
            state.entries.append(Entry::fromJson(value.toObject()));
    }
    if (const auto selected = integerOf(object.value(u"selected")))
        state.selected = qsizetype(*selected);
    for (const QJsonValue &folder : object.value(u"workspace").toArray()) {
        if (folder.isString())
            state.workspace.append(folder.toString());
    }
    state.sidebarVisible = boolOr(object, QLatin1StringView("sidebarVisible"), false);
    return state;
}

} // namespace mirtex
