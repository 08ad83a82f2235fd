// The open tabs, the selected one and the workspace as remembered between runs, and their JSON.
#pragma once

#include "core/text/TextRange.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace mirtex {

struct SessionState
{
    // One tab. Exactly one of path and untitledName is normally present.
    struct Entry
    {
        QString id;                  // the document's identifier; also names its backup file
        std::optional<QString> path; // absolute file path; absent for an untitled document
        std::optional<QString> untitledName;    // "nuovo 1"...; absent when path is present
        bool hasBackup = false;                 // the text is in the backup, not (only) in the file
        QString encoding = QStringLiteral("4"); // TextEncoding identifier, e.g. "4" or "4+bom"
        QString lineEnding = QStringLiteral("lf"); // "lf", "crlf" or "cr"
        QString language = QStringLiteral("text"); // a language id
        TextRange selection;                       // main selection, UTF-16 units
        double scroll = 0;                         // top visible line index (from 0)
        QList<qsizetype> bookmarks;                // line indexes from 0
        bool readOnly = false;
        std::optional<QString> split; // "side" or "stacked"; absent when not split
        // The backup's file name when it is not "<id>.txt" (that path was taken by a folder).
        std::optional<QString> backupName;
        // Header lines (from 0) of the folded blocks; the key is absent when nothing is folded.
        QList<qsizetype> folds;
        // Keys this version does not know (written by a newer one), kept as they were.
        QJsonObject unknown;

        QJsonObject toJson() const;
        // Never fails: values that are absent or of the wrong type take the defaults above;
        // unknown keys go to `unknown`. The earlier encoding name "utf8" reads as "4".
        static Entry fromJson(const QJsonObject &object);

        friend bool operator==(const Entry &, const Entry &) = default;
    };

    QList<Entry> entries;   // tab order
    qsizetype selected = 0; // index into entries; not clamped here
    QStringList workspace;  // folder paths of the workspace sidebar
    bool sidebarVisible = false;
    QJsonObject unknown; // top-level keys this version does not know, kept as they were

    QJsonObject toJson() const;
    QByteArray toJsonBytes() const;
    // nullopt when the bytes are not JSON or not of the session's shape ("does not decode"): an
    // object whose "entries" is an array of objects, each with a string "id". Other wrong values
    // take their defaults.
    static std::optional<SessionState> fromJson(const QByteArray &bytes);
    static SessionState fromJson(const QJsonObject &object);

    friend bool operator==(const SessionState &, const SessionState &) = default;
};

} // namespace mirtex
