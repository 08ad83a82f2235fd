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

const QStringList kEntryKeys{QStringLiteral("id"),
                             QStringLiteral("path"),
                             QStringLiteral("untitledName"),
                             QStringLiteral("hasBackup"),
                             QStringLiteral("encoding"),
                             QStringLiteral("lineEnding"),
                             QStringLiteral("language"),
                             QStringLiteral("selection"),
                             QStringLiteral("scroll"),
                             QStringLiteral("bookmarks"),
                             QStringLiteral("readOnly"),
                             QStringLiteral("split"),
                             QStringLiteral("backup"),
                             QStringLiteral("folds")};
const QStringList kStateKeys{QStringLiteral("entries"),
                             QStringLiteral("selected"),
                             QStringLiteral("workspace"),
                             QStringLiteral("sidebarVisible")};

QJsonObject unknownKeys(const QJsonObject &object, const QStringList &known)
{
    QJsonObject unknown;
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (!known.contains(it.key()))
            unknown.insert(it.key(), it.value());
    }
    return unknown;
}

bool hasSessionShape(const QJsonObject &object)
{
    const QJsonValue entries = object.value(u"entries");
    if (!entries.isArray())
        return false;
    for (const QJsonValue &entry : entries.toArray()) {
        if (!entry.isObject() || !entry.toObject().value(u"id").isString())
            return false;
    }
    return true;
}

} // namespace

QJsonObject SessionState::Entry::toJson() const
{
    QJsonObject object = unknown;
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
    if (backupName)
        object.insert(u"backup", *backupName);
    // Folded blocks.
    if (!folds.isEmpty()) {
        QJsonArray folded;
        for (qsizetype line : folds)
            folded.append(qint64(line));
        object.insert(u"folds", folded);
    }
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
    entry.backupName = optionalString(object, QLatin1StringView("backup"));
    // Folded blocks.
    for (const QJsonValue &line : object.value(u"folds").toArray()) {
        if (const auto index = integerOf(line); index && *index >= 0)
            entry.folds.append(qsizetype(*index));
    }
    entry.unknown = unknownKeys(object, kEntryKeys);
    return entry;
}

QJsonObject SessionState::toJson() const
{
    QJsonArray array;
    for (const Entry &entry : entries)
        array.append(entry.toJson());
    QJsonObject object = unknown;
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
    if (error.error != QJsonParseError::NoError || !document.isObject()
        || !hasSessionShape(document.object()))
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
    state.unknown = unknownKeys(object, kStateKeys);
    return state;
}

} // namespace mirtex
