#include "ui/document/LineOperationCommands.h"

#include "core/app/Preferences.h"
#include "core/tools/TransformBatch.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/document/BatchCommand.h"
#include "ui/document/CommandContext.h"

#include <QAction>
#include <QCoreApplication>
#include <QMenu>

namespace mirtex {

namespace {

// Keys on the F9 row and Ctrl+K chords, clear of the desktop's Ctrl+Alt and Super bindings and of
// Ctrl+Shift+U (Unicode input).
struct EntryKey
{
    const char *name;
    const char *key;
};

constexpr EntryKey kLineKeys[] = {
    {"sortAscending", "F9"},
    {"sortDescending", "Shift+F9"},
    {"sortAscendingIgnoringCase", "Ctrl+F9"},
    {"removeDuplicates", "Ctrl+K, Ctrl+D"},
    {"trimTrailing", "Ctrl+K, Ctrl+X"},
};

constexpr EntryKey kCaseKeys[] = {
    {"upper", "Ctrl+K, Ctrl+U"},
    {"lower", "Ctrl+K, Ctrl+L"},
    {"title", "Ctrl+K, Ctrl+T"},
};

QKeySequence keyOf(const QString &name, std::span<const EntryKey> keys)
{
    for (const EntryKey &entry : keys) {
        if (name == QLatin1String(entry.name))
            return QKeySequence(QString::fromLatin1(entry.key));
    }
    return {};
}

} // namespace

void LineOperationCommands::registerIn(CommandRegistry &registry, CommandContext &context)
{
    CommandContext *c = &context;
    auto tr = [](const char *text) { return QCoreApplication::translate("MainMenu", text); };
    auto hasDocument = [c](const QVariant &) { return c->hasDocument(); };

    registry.add({QStringLiteral("applyLineOperation:"),
                  tr("Operazioni sulle righe"),
                  {},
                  [c](const QVariant &argument) {
                      const auto operation = lineOperationFromString(argument.toString());
                      if (!operation)
                          return;
                      LineOperationOptions options;
                      options.tabWidth = c->preferences().tabWidth();
                      runBatchCommand(*c, [&](QStringView text, const Selections &selections) {
                          return lineOperationBatch(text, selections, *operation, options);
                      });
                  },
                  hasDocument});
    registry.add({QStringLiteral("convertCase:"),
                  tr("Maiuscole e minuscole"),
                  {},
                  [c](const QVariant &argument) {
                      const auto conversion = caseConversionFromString(argument.toString());
                      if (!conversion)
                          return;
                      runBatchCommand(*c, [&](QStringView text, const Selections &selections) {
                          return caseConversionBatch(text, selections, *conversion);
                      });
                  },
                  hasDocument});
}

void LineOperationCommands::layOut(CommandRegistry &registry, QMenu *editMenu)
{
    editMenu->addSeparator();
    QMenu *lines
        = editMenu->addMenu(QCoreApplication::translate("MainMenu", "Operazioni sulle righe"));
    lines->setObjectName(QStringLiteral("mirtex.menu.lineOperations"));
    // Sorts, reordering, removals, spaces: a separator before each group.
    const int groupStarts[] = {7, 9, 13};
    for (int i = 0; i < kLineOperationCount; ++i) {
        if (std::find(std::begin(groupStarts), std::end(groupStarts), i) != std::end(groupStarts))
            lines->addSeparator();
        const auto operation = LineOperation(i);
        QAction *action = registry.action(
            QStringLiteral("applyLineOperation:"), toString(operation), label(operation));
        action->setShortcut(keyOf(toString(operation), kLineKeys));
        lines->addAction(action);
    }
    QMenu *cases
        = editMenu->addMenu(QCoreApplication::translate("MainMenu", "Maiuscole e minuscole"));
    cases->setObjectName(QStringLiteral("mirtex.menu.caseConversions"));
    for (int i = 0; i < kCaseConversionCount; ++i) {
        const auto conversion = CaseConversion(i);
        QAction *action = registry.action(
            QStringLiteral("convertCase:"), toString(conversion), label(conversion));
        action->setShortcut(keyOf(toString(conversion), kCaseKeys));
        cases->addAction(action);
    }
}

} // namespace mirtex
