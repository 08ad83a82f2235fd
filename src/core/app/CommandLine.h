// What the process was asked to do: the self-test, a snapshot, the usage text or the version, or
// the editor with files and mirtex: URLs to open. Parsing is pure so that it can be tested without
// starting anything.
#pragma once

#include <QSize>
#include <QString>
#include <QStringList>

#include <optional>

namespace mirtex {

struct SnapshotRequest
{
    QStringList files;
    QString outputPath;
    QSize size{1100, 720};
    std::optional<int> tab; // 0-based tab to select
    QString split;          // "", "side" or "stacked"
    QString sidebarFolder;  // empty: no sidebar
    QString selectWord;     // selects the first whole occurrence in the shown tab
    QString findQuery;      // opens the find panel with this query, its matches outlined
    // Header lines (from 1) of the blocks to fold in the shown tab.
    QList<qint64> foldLines;
    bool dark = false;
    // Runs "Trova tutti nei documenti aperti" for this query, showing the results panel.
    QString findAll;
    bool previewOnly = false; // the shown tab's Markdown preview instead of its text
};

struct CommandLine
{
    enum class Mode {
        run,
        selfTest,
        snapshot,
        help,    // print helpText() and exit
        version, // print versionText() and exit
        // --export SOURCE OUTPUT: write a Markdown file as a page and exit
        exportDocument,
        invalid
    };

    Mode mode = Mode::run;
    QStringList files; // absolute paths of files and folders to open
    QStringList urls;  // mirtex: URLs, as given
    bool newInstance = false;
    SnapshotRequest snapshot;
    QString exportSource; // --export: absolute paths
    QString exportOutput;
    QString error; // why the arguments were refused (mode invalid)

    // `arguments` excludes the program name; relative paths are resolved against `workingDir`.
    static CommandLine parse(const QStringList &arguments, const QString &workingDir);

    // What --help and --version print (Italian, each ending with a line break).
    static QString helpText();
    static QString versionText();
};

} // namespace mirtex
