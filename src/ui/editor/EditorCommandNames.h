// The editor's named commands: one table maps each name a macro records ("insertNewline:",
// "deleteBackward:", "moveDown:", "moveToBeginningOfLine:"…) to the Scintilla command that performs
// it. Recording looks up the command a key is bound to; playback performs the command by name.
#pragma once

#include <QString>
#include <Qsci/qscicommand.h>

#include <optional>

namespace mirtex {

class EditorCommandNames
{
public:
    static std::optional<QsciCommand::Command> command(const QString &name);
    // Empty for a command that has no name (and is therefore never recorded).
    static QString name(QsciCommand::Command command);
};

} // namespace mirtex
