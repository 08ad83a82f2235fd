#include "ui/editor/MacroInput.h"

#include "core/editor/MacroRecorder.h"
#include "ui/editor/EditorCommandNames.h"
#include "ui/editor/EditorPane.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <Qsci/qscicommandset.h>

#include <algorithm>

namespace mirtex {

namespace {

MacroRecorder *g_recorder = nullptr;

// The key as QScintilla binds it: the key code with Qt's modifier bits.
int boundKey(const QKeyEvent &event)
{
    int key = event.key();
    const Qt::KeyboardModifiers modifiers = event.modifiers();
    if (modifiers & Qt::ShiftModifier)
        key |= Qt::SHIFT;
    if (modifiers & Qt::ControlModifier)
        key |= Qt::CTRL;
    if (modifiers & Qt::AltModifier)
        key |= Qt::ALT;
    if (modifiers & Qt::MetaModifier)
        key |= Qt::META;
    return key;
}

bool typesText(const QKeyEvent &event)
{
    const QString text = event.text();
    return !text.isEmpty() && !(event.modifiers() & (Qt::ControlModifier | Qt::AltModifier))
           && std::ranges::all_of(text, [](QChar c) { return c.isPrint() || c.isSurrogate(); });
}

} // namespace

void MacroInput::setRecorder(MacroRecorder *recorder)
{
    g_recorder = recorder;
}

void MacroInput::keyPressed(QsciScintilla &pane, const QKeyEvent &event)
{
    if (!g_recorder || !g_recorder->wantsSteps())
        return;
    if (event.key() != 0) {
        if (const QsciCommand *command = pane.standardCommands()->boundTo(boundKey(event))) {
            const QString name = EditorCommandNames::name(command->command());
            if (!name.isEmpty())
                g_recorder->record(MacroStep::command(name));
            return;
        }
    }
    if (typesText(event))
        g_recorder->record(MacroStep::insert(event.text()));
}

void MacroInput::textCommitted(const QString &text)
{
    if (g_recorder && !text.isEmpty())
        g_recorder->record(MacroStep::insert(text));
}

void MacroInput::type(EditorPane &pane, const QString &text)
{
    for (qsizetype i = 0; i < text.size();) {
        if (text[i] == u'\n') {
            pane.performCommand(QsciCommand::Newline);
            ++i;
            continue;
        }
        const qsizetype length = text[i].isHighSurrogate() && i + 1 < text.size() ? 2 : 1;
        QKeyEvent key(QEvent::KeyPress, 0, Qt::NoModifier, text.mid(i, length));
        QCoreApplication::sendEvent(&pane, &key);
        i += length;
    }
}

bool MacroInput::perform(EditorPane &pane, const QString &name)
{
    const std::optional<QsciCommand::Command> command = EditorCommandNames::command(name);
    if (!command)
        return false;
    pane.performCommand(*command);
    return true;
}

} // namespace mirtex
