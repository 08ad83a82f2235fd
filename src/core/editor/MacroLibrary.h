// The macros the user saved by name, kept as JSON in the user's data folder
// ($XDG_DATA_HOME/Mirtex/macros.json) with a format version. A file that cannot be read (corrupt,
// or written by a newer version of the program) is reported and never overwritten: the library
// then refuses every change until it is loaded again. Main thread only.
#pragma once

#include "core/editor/MacroStep.h"

#include <QList>
#include <QString>

#include <expected>

namespace mirtex {

struct SavedMacro
{
    QString name;     // non-empty, unique in the library (ignoring case)
    QString shortcut; // a key sequence in portable text ("Ctrl+Alt+1"); empty for none
    Macro steps;      // never empty

    friend bool operator==(const SavedMacro &, const SavedMacro &) = default;
};

struct MacroLibraryError
{
    enum class Kind {
        emptyName,
        nameInUse,
        unknownName,
        emptyMacro,
        corruptFile,
        newerFile,
        unreadableFile, // a file refused earlier: nothing is written over it
        writeFailed,
    };

    Kind kind;
    QString subject; // the macro's name or the file's path

    // In Italian, for an alert or the status line.
    QString description() const;
};

class MacroLibrary
{
public:
    static constexpr int kFormatVersion = 1;

    // $XDG_DATA_HOME/Mirtex/macros.json (default ~/.local/share/Mirtex/macros.json).
    static QString defaultPath();

    explicit MacroLibrary(QString path);

    const QString &path() const { return m_path; }

    // Reads the file; a missing file is an empty library. On failure the library is empty and
    // refuses changes until a later load succeeds.
    std::expected<void, MacroLibraryError> load();

    const QList<SavedMacro> &macros() const { return m_macros; }

    // Null when there is none by that name (ignoring case).
    const SavedMacro *find(const QString &name) const;

    // Each change is written at once; when it cannot be, nothing changes.
    std::expected<void, MacroLibraryError> add(SavedMacro macro);
    std::expected<void, MacroLibraryError> rename(const QString &name, const QString &newName);
    std::expected<void, MacroLibraryError> remove(const QString &name);
    std::expected<void, MacroLibraryError> setShortcut(const QString &name,
                                                       const QString &shortcut);

    // Why `name` cannot be given to a macro now (`except`: the macro being renamed).
    std::optional<MacroLibraryError> nameProblem(const QString &name,
                                                 const QString &except = {}) const;

private:
    std::expected<void, MacroLibraryError> write(const QList<SavedMacro> &macros);
    qsizetype indexOf(const QString &name) const;

    QString m_path;
    QList<SavedMacro> m_macros;
    bool m_refused = false; // the file on disk was not understood
};

} // namespace mirtex
