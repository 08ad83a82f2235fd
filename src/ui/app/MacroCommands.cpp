#include "ui/app/MacroCommands.h"

#include "ui/app/MacroDialogs.h"
#include "ui/app/MacroLibraryWindow.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/document/CommandContext.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/MacroInput.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>

namespace mirtex {

namespace {
constexpr int kMessageMs = 8000;
} // namespace

MacroCommands::MacroCommands(CommandRegistry &registry,
                             CommandContext &context,
                             MainWindow &window,
                             const QString &libraryPath)
    : QObject(&window)
    , m_registry(registry)
    , m_context(context)
    , m_window(window)
    , m_player(m_recorder, registry, context)
    , m_library(libraryPath)
    , m_registryAlive(&registry)
{
    askCount = [this]() { return MacroDialogs::askCount(&m_window); };
    askName = [this](const QString &problem) { return MacroDialogs::askName(&m_window, problem); };
    if (const auto loaded = m_library.load(); !loaded)
        m_libraryProblem = loaded.error().description();
    MacroInput::setRecorder(&m_recorder);
    // Every recordable action is recorded with its argument when that is a string (the identifier
    // a menu entry of a family carries) before it runs.
    m_listener = m_registry.addListener([this](const QString &name, const QVariant &argument) {
        if (!m_recorder.wantsSteps() || !isRecordableAction(name))
            return;
        std::optional<QString> text;
        if (argument.typeId() == QMetaType::QString)
            text = argument.toString();
        m_recorder.record(MacroStep::action(name, text));
    });
    m_recorder.setOnStateChange([this]() { stateChanged(); });
    registerCommands();

    m_indicator = new QLabel(tr("● Registrazione macro"));
    m_indicator->setObjectName(QStringLiteral("mirtex.macroIndicator"));
    m_indicator->setToolTip(tr("Ctrl+Maiusc+R ferma la registrazione"));
    m_indicator->setStyleSheet(QStringLiteral("color: #CF222E; padding: 0 6px;"));
    m_window.statusBar()->addWidget(m_indicator);
    m_indicator->hide();
    if (!m_libraryProblem.isEmpty())
        tell(m_libraryProblem);
    connect(this, &MacroCommands::libraryChanged, this, &MacroCommands::rebuildMenu);
}

MacroCommands::~MacroCommands()
{
    MacroInput::setRecorder(nullptr);
    if (m_registryAlive)
        m_registry.removeListener(m_listener);
}

void MacroCommands::registerCommands()
{
    CommandContext *c = &m_context;
    MacroRecorder *r = &m_recorder;
    auto hasDocument = [c](const QVariant &) { return c->hasDocument(); };
    m_registry.add({QStringLiteral("startMacroRecording:"),
                    tr("Avvia la registrazione"),
                    {},
                    [r](const QVariant &) { r->start(); },
                    [r](const QVariant &) { return !r->isRecording(); }});
    m_registry.add({QStringLiteral("stopMacroRecording:"),
                    tr("Ferma la registrazione"),
                    {},
                    [r](const QVariant &) { r->stop(); },
                    [r](const QVariant &) { return r->isRecording(); }});
    m_registry.add({QStringLiteral("toggleMacroRecording:"),
                    tr("Registra la macro"),
                    {QKeySequence(QStringLiteral("Ctrl+Shift+R"))},
                    [r](const QVariant &) { r->toggle(); },
                    {},
                    [r](const QVariant &) { return r->isRecording(); }});
    m_registry.add({QStringLiteral("playMacro:"),
                    tr("Esegui la macro"),
                    {QKeySequence(QStringLiteral("Ctrl+Shift+E"))},
                    [this](const QVariant &) { playAndTell(m_recorder.macro(), 1); },
                    hasDocument});
    m_registry.add({QStringLiteral("runMacroMultipleTimes:"),
                    tr("Esegui la macro più volte…"),
                    {},
                    [this](const QVariant &) {
                        if (m_recorder.macro().isEmpty()) {
                            playAndTell({}, 1); // tells that there is none
                            return;
                        }
                        if (const std::optional<int> count = askCount())
                            playAndTell(m_recorder.macro(), *count);
                    },
                    hasDocument});
    m_registry.add({QStringLiteral("saveMacro:"),
                    tr("Salva la macro…"),
                    {},
                    [this](const QVariant &) { saveMacro(); },
                    [r](const QVariant &) { return !r->macro().isEmpty(); }});
    m_registry.add({QStringLiteral("playSavedMacro:"),
                    tr("Esegui una macro salvata"),
                    {},
                    [this](const QVariant &name) { playSaved(name.toString()); },
                    hasDocument});
    m_registry.add({QStringLiteral("manageMacros:"),
                    tr("Gestisci le macro salvate…"),
                    {},
                    [this](const QVariant &) { MacroLibraryWindow::showFor(*this, &m_window); }});
}

void MacroCommands::addMenu(QMenuBar *menuBar, QMenu *before)
{
    m_menu = new QMenu(tr("Mac&ro"), menuBar);
    m_menu->setObjectName(QStringLiteral("mirtex.menu.macro"));
    if (before)
        menuBar->insertMenu(before->menuAction(), m_menu);
    else
        menuBar->addMenu(m_menu);
    rebuildMenu();
}

void MacroCommands::rebuildMenu()
{
    // Saved macros with a shortcut keep it in the whole window, menu open or not.
    for (const QPointer<QAction> &entry : std::as_const(m_savedEntries))
        delete entry.data();
    m_savedEntries.clear();
    if (!m_menu)
        return;
    m_menu->clear();
    for (const char *name : {"toggleMacroRecording:",
                             "",
                             "playMacro:",
                             "runMacroMultipleTimes:",
                             "",
                             "saveMacro:",
                             "manageMacros:"}) {
        if (*name == 0)
            m_menu->addSeparator();
        else
            m_menu->addAction(m_registry.action(QString::fromLatin1(name)));
    }
    if (!m_libraryProblem.isEmpty()) {
        m_menu->addSeparator();
        QAction *problem = m_menu->addAction(tr("Macro salvate non lette"));
        problem->setToolTip(m_libraryProblem);
        problem->setEnabled(false);
        return;
    }
    if (m_library.macros().isEmpty())
        return;
    m_menu->addSeparator();
    for (const SavedMacro &macro : m_library.macros()) {
        QAction *entry = m_registry.makeAction(
            QStringLiteral("playSavedMacro:"), macro.name, macro.name, m_menu);
        if (!macro.shortcut.isEmpty()) {
            entry->setShortcut(QKeySequence(macro.shortcut, QKeySequence::PortableText));
            m_window.addAction(entry);
        }
        m_menu->addAction(entry);
        m_savedEntries.append(entry);
    }
}

void MacroCommands::stateChanged()
{
    m_registry.refresh();
    if (m_indicator)
        m_indicator->setVisible(m_recorder.isRecording());
}

void MacroCommands::tell(const QString &message)
{
    m_lastMessage = message;
    if (!message.isEmpty())
        m_window.statusBar()->showMessage(message, kMessageMs);
}

MacroPlayer::Result MacroCommands::playAndTell(const Macro &steps, int count)
{
    const MacroPlayer::Result result = m_player.play(steps, count);
    tell(result.message());
    m_registry.refresh();
    return result;
}

MacroPlayer::Result MacroCommands::playSaved(const QString &name)
{
    const SavedMacro *saved = m_library.find(name);
    return playAndTell(saved ? saved->steps : Macro(), 1);
}

void MacroCommands::saveMacro()
{
    if (m_recorder.macro().isEmpty()) {
        tell(MacroLibraryError{MacroLibraryError::Kind::emptyMacro, {}}.description());
        return;
    }
    QString problem;
    for (;;) {
        const std::optional<QString> name = askName(problem);
        if (!name)
            return;
        const auto added = m_library.add({*name, {}, m_recorder.macro()});
        if (added) {
            tell(tr("Macro «%1» salvata.").arg(name->trimmed()));
            Q_EMIT libraryChanged();
            return;
        }
        problem = added.error().description();
        using Kind = MacroLibraryError::Kind;
        if (added.error().kind != Kind::emptyName && added.error().kind != Kind::nameInUse) {
            tell(problem);
            return;
        }
    }
}

QString MacroCommands::renameSaved(const QString &name)
{
    QString problem;
    for (;;) {
        const std::optional<QString> newName = askName(problem);
        if (!newName)
            return {};
        const auto renamed = m_library.rename(name, *newName);
        if (renamed) {
            Q_EMIT libraryChanged();
            return {};
        }
        problem = renamed.error().description();
        using Kind = MacroLibraryError::Kind;
        if (renamed.error().kind != Kind::emptyName && renamed.error().kind != Kind::nameInUse) {
            tell(problem);
            return problem;
        }
    }
}

QString MacroCommands::removeSaved(const QString &name)
{
    const auto removed = m_library.remove(name);
    if (!removed) {
        tell(removed.error().description());
        return m_lastMessage;
    }
    Q_EMIT libraryChanged();
    return {};
}

QString MacroCommands::setSavedShortcut(const QString &name, const QKeySequence &shortcut)
{
    if (!shortcut.isEmpty()) {
        QString owner;
        for (const Command *command : m_registry.commands()) {
            if (command->shortcuts.contains(shortcut))
                owner = command->label;
        }
        for (const SavedMacro &macro : m_library.macros()) {
            if (macro.name.compare(name, Qt::CaseInsensitive) != 0
                && QKeySequence(macro.shortcut, QKeySequence::PortableText) == shortcut)
                owner = macro.name;
        }
        if (!owner.isEmpty()) {
            tell(
                tr("%1 è già il tasto di «%2».")
                    .arg(shortcut.toString(QKeySequence::NativeText), QString(owner).remove(u'&')));
            return m_lastMessage;
        }
    }
    const auto set = m_library.setShortcut(name, shortcut.toString(QKeySequence::PortableText));
    if (!set) {
        tell(set.error().description());
        return m_lastMessage;
    }
    Q_EMIT libraryChanged();
    return {};
}

} // namespace mirtex
