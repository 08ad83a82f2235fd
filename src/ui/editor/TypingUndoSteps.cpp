#include "ui/editor/TypingUndoSteps.h"

#include <QKeyEvent>
#include <Qsci/qsciscintillabase.h>

namespace mirtex {

using Sci = QsciScintillaBase;

namespace {

bool isWordCharacter(QChar c)
{
    return c.isLetterOrNumber() || c == u'_' || c.isMark();
}

} // namespace

TypingUndoSteps::Input TypingUndoSteps::classify(const QKeyEvent &event)
{
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return Input::newLine;
    case Qt::Key_Backspace:
    case Qt::Key_Delete:
        return Input::deletion;
    case Qt::Key_Tab:
        return event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)
                   ? Input::caretKey
                   : Input::typing;
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
    case Qt::Key_ScrollLock:
        return Input::none;
    default:
        break;
    }
    const QString text = event.text();
    const bool typed
        = !text.isEmpty() && text.front().isPrint()
          && !(event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
    return typed ? Input::typing : Input::caretKey;
}

TypingUndoSteps::CaretState TypingUndoSteps::caretState(QsciScintillaBase &pane)
{
    return {long(pane.SendScintilla(Sci::SCI_GETCURRENTPOS)),
            long(pane.SendScintilla(Sci::SCI_GETANCHOR)),
            long(pane.SendScintilla(Sci::SCI_GETSELECTIONS)),
            long(pane.SendScintilla(Sci::SCI_GETLENGTH))};
}

void TypingUndoSteps::beforeInput(QsciScintillaBase &pane, Input input, QStringView text)
{
    m_current = input;
    if (input == Input::none)
        return;
    if (input == Input::caretKey) {
        closeStep();
        return;
    }
    const Clock::time_point now = m_now();
    // Typing joins the new line before it, as it joins the space before it.
    const bool sameKind
        = input == m_lastInput || (input == Input::typing && m_lastInput == Input::newLine);
    bool newStep = m_closed || !sameKind || input == Input::newLine || &pane != m_lastPane
                   || now - m_lastTime >= m_pause || caretState(pane) != m_caretAfter;
    if (input == Input::typing && !text.isEmpty()) {
        // A space or punctuation after a word ends the word's step.
        if (m_lastTypedWord && !isWordCharacter(text.front()))
            newStep = true;
        m_lastTypedWord = isWordCharacter(text.back());
    } else {
        m_lastTypedWord = false;
    }
    if (newStep) {
        // An empty undo action leaves no step of its own, but Scintilla does not merge what comes
        // after it with what came before.
        pane.SendScintilla(Sci::SCI_BEGINUNDOACTION);
        pane.SendScintilla(Sci::SCI_ENDUNDOACTION);
    }
    m_lastInput = input;
    m_lastTime = now;
}

void TypingUndoSteps::afterInput(QsciScintillaBase &pane)
{
    if (m_current != Input::typing && m_current != Input::newLine && m_current != Input::deletion)
        return;
    m_caretAfter = caretState(pane);
    m_lastPane = &pane;
    m_closed = false;
}

} // namespace mirtex
