#include "ui/editor/EditorKeys.h"

#include <QCoreApplication>
#include <Qsci/qscicommand.h>
#include <Qsci/qscicommandset.h>
#include <Qsci/qsciscintilla.h>

#include <algorithm>
#include <iterator>

namespace mirtex {

namespace {

struct Kept
{
    QsciCommand::Command command;
    const char *label;
};

// The bindings that stay, with QScintilla's own keys, in the order the shortcuts window lists
// them. Nothing here changes the text beyond typing does (a new line, a tab, deleting a
// character or a word).
constexpr Kept kKept[] = {
    {QsciCommand::CharLeft, QT_TRANSLATE_NOOP("EditorKeys", "Carattere a sinistra")},
    {QsciCommand::CharRight, QT_TRANSLATE_NOOP("EditorKeys", "Carattere a destra")},
    {QsciCommand::LineUp, QT_TRANSLATE_NOOP("EditorKeys", "Riga sopra")},
    {QsciCommand::LineDown, QT_TRANSLATE_NOOP("EditorKeys", "Riga sotto")},
    {QsciCommand::WordLeft, QT_TRANSLATE_NOOP("EditorKeys", "Parola precedente")},
    {QsciCommand::WordRight, QT_TRANSLATE_NOOP("EditorKeys", "Parola successiva")},
    {QsciCommand::VCHome, QT_TRANSLATE_NOOP("EditorKeys", "Inizio della riga")},
    {QsciCommand::Home, QT_TRANSLATE_NOOP("EditorKeys", "Inizio della riga")},
    {QsciCommand::LineEnd, QT_TRANSLATE_NOOP("EditorKeys", "Fine della riga")},
    {QsciCommand::PageUp, QT_TRANSLATE_NOOP("EditorKeys", "Pagina su")},
    {QsciCommand::PageDown, QT_TRANSLATE_NOOP("EditorKeys", "Pagina giù")},
    {QsciCommand::DocumentStart, QT_TRANSLATE_NOOP("EditorKeys", "Inizio del testo")},
    {QsciCommand::DocumentEnd, QT_TRANSLATE_NOOP("EditorKeys", "Fine del testo")},
    {QsciCommand::LineScrollUp, QT_TRANSLATE_NOOP("EditorKeys", "Scorri di una riga in su")},
    {QsciCommand::LineScrollDown, QT_TRANSLATE_NOOP("EditorKeys", "Scorri di una riga in giù")},
    {QsciCommand::CharLeftExtend,
     QT_TRANSLATE_NOOP("EditorKeys", "Seleziona un carattere a sinistra")},
    {QsciCommand::CharRightExtend,
     QT_TRANSLATE_NOOP("EditorKeys", "Seleziona un carattere a destra")},
    {QsciCommand::LineUpExtend, QT_TRANSLATE_NOOP("EditorKeys", "Seleziona fino alla riga sopra")},
    {QsciCommand::LineDownExtend,
     QT_TRANSLATE_NOOP("EditorKeys", "Seleziona fino alla riga sotto")},
    {QsciCommand::WordLeftExtend,
     QT_TRANSLATE_NOOP("EditorKeys", "Seleziona fino alla parola precedente")},
    {QsciCommand::WordRightExtend,
     QT_TRANSLATE_NOOP("EditorKeys", "Seleziona fino alla parola successiva")},
    {QsciCommand::VCHomeExtend,
     QT_TRANSLATE_NOOP("EditorKeys", "Seleziona fino all'inizio della riga")},
    {QsciCommand::HomeExtend,
     QT_TRANSLATE_NOOP("EditorKeys", "Seleziona fino all'inizio della riga")},
    {QsciCommand::LineEndExtend,
     QT_TRANSLATE_NOOP("EditorKeys", "Seleziona fino alla fine della riga")},
    {QsciCommand::PageUpExtend, QT_TRANSLATE_NOOP("EditorKeys", "Seleziona una pagina in su")},
    {QsciCommand::PageDownExtend, QT_TRANSLATE_NOOP("EditorKeys", "Seleziona una pagina in giù")},
    {QsciCommand::DocumentStartExtend,
     QT_TRANSLATE_NOOP("EditorKeys", "Seleziona fino all'inizio del testo")},
    {QsciCommand::DocumentEndExtend,
     QT_TRANSLATE_NOOP("EditorKeys", "Seleziona fino alla fine del testo")},
    {QsciCommand::CharLeftRectExtend,
     QT_TRANSLATE_NOOP("EditorKeys", "Selezione rettangolare a sinistra")},
    {QsciCommand::CharRightRectExtend,
     QT_TRANSLATE_NOOP("EditorKeys", "Selezione rettangolare a destra")},
    {QsciCommand::LineUpRectExtend,
     QT_TRANSLATE_NOOP("EditorKeys", "Selezione rettangolare in su")},
    {QsciCommand::LineDownRectExtend,
     QT_TRANSLATE_NOOP("EditorKeys", "Selezione rettangolare in giù")},
    {QsciCommand::VCHomeRectExtend,
     QT_TRANSLATE_NOOP("EditorKeys", "Selezione rettangolare fino all'inizio della riga")},
    {QsciCommand::HomeRectExtend,
     QT_TRANSLATE_NOOP("EditorKeys", "Selezione rettangolare fino all'inizio della riga")},
    {QsciCommand::LineEndRectExtend,
     QT_TRANSLATE_NOOP("EditorKeys", "Selezione rettangolare fino alla fine della riga")},
    {QsciCommand::PageUpRectExtend,
     QT_TRANSLATE_NOOP("EditorKeys", "Selezione rettangolare di una pagina in su")},
    {QsciCommand::PageDownRectExtend,
     QT_TRANSLATE_NOOP("EditorKeys", "Selezione rettangolare di una pagina in giù")},
    {QsciCommand::Newline, QT_TRANSLATE_NOOP("EditorKeys", "Nuova riga")},
    {QsciCommand::Tab, QT_TRANSLATE_NOOP("EditorKeys", "Tabulazione o rientro delle righe")},
    {QsciCommand::Backtab, QT_TRANSLATE_NOOP("EditorKeys", "Riduci il rientro delle righe")},
    {QsciCommand::DeleteBack, QT_TRANSLATE_NOOP("EditorKeys", "Cancella il carattere precedente")},
    {QsciCommand::Delete, QT_TRANSLATE_NOOP("EditorKeys", "Cancella il carattere successivo")},
    {QsciCommand::DeleteWordLeft,
     QT_TRANSLATE_NOOP("EditorKeys", "Cancella fino all'inizio della parola")},
    {QsciCommand::DeleteWordRight,
     QT_TRANSLATE_NOOP("EditorKeys", "Cancella fino alla fine della parola")},
    {QsciCommand::EditToggleOvertype,
     QT_TRANSLATE_NOOP("EditorKeys", "Inserimento o sovrascrittura")},
    {QsciCommand::Cancel, QT_TRANSLATE_NOOP("EditorKeys", "Torna a un solo cursore")},
};

const Kept *findKept(QsciCommand::Command command)
{
    const auto found = std::find_if(std::begin(kKept), std::end(kKept), [command](const Kept &k) {
        return k.command == command;
    });
    return found == std::end(kKept) ? nullptr : found;
}

} // namespace

void EditorKeys::configure(QsciScintilla &pane)
{
    for (QsciCommand *command : pane.standardCommands()->commands()) {
        if (findKept(command->command()))
            continue;
        command->setKey(0);
        command->setAlternateKey(0);
    }
}

const QList<EditorKeys::Binding> &EditorKeys::bindings()
{
    // QScintilla's keys are read from a pane of its own, once; labels with the same text (two
    // ways to the start of a line) are listed once with both keys.
    static const QList<Binding> list = [] {
        QsciScintilla pane;
        QList<Binding> result;
        for (const Kept &kept : kKept) {
            const QsciCommand *command = pane.standardCommands()->find(kept.command);
            if (!command)
                continue;
            QList<QKeySequence> keys;
            for (const int key : {command->key(), command->alternateKey()}) {
                if (key != 0)
                    keys.append(QKeySequence(key));
            }
            if (keys.isEmpty())
                continue;
            const QString label = QCoreApplication::translate("EditorKeys", kept.label);
            const auto same = std::find_if(
                result.begin(), result.end(), [&](const Binding &b) { return b.label == label; });
            if (same != result.end())
                same->keys.append(keys);
            else
                result.append({label, keys});
        }
        return result;
    }();
    return list;
}

} // namespace mirtex
