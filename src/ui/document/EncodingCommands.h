// The Encoding menu's commands, each taking the represented object as its argument: convert to
// and reopen with an encoding (its identifier), and the line ending ("lf", "crlf", "cr"); and the
// menus that lay them out (common encodings first, then the groups), shared by the menu bar and
// the status bar.
#pragma once

#include <QString>

class QMenu;
class QWidget;

namespace mirtex {

class CommandContext;
class CommandRegistry;

class EncodingCommands
{
public:
    static inline const QString kConvert = QStringLiteral("convertEncoding:");
    static inline const QString kReopen = QStringLiteral("reopenWithEncoding:");
    static inline const QString kLineEnding = QStringLiteral("setLineEnding:");

    static void registerIn(CommandRegistry &registry, CommandContext &context);

    // A menu of every encoding for `command` (kConvert or kReopen).
    static QMenu *encodingMenu(CommandRegistry &registry,
                               const QString &command,
                               const QString &title,
                               QWidget *parent);
    static QMenu *lineEndingMenu(CommandRegistry &registry, const QString &title, QWidget *parent);
};

} // namespace mirtex
