#include "ui/document/LineCommands.h"

#include "core/document/Document.h"
#include "core/editor/CommentCommands.h"
#include "core/editor/DocumentSummary.h"
#include "core/editor/LineCommands.h"
#include "core/editor/LineTargets.h"
#include "core/editor/SelectedPath.h"
#include "ui/commands/Beep.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/dialogs/Questions.h"
#include "ui/document/CommandContext.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/EditCommandRunner.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorAnnotations.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"
#include "ui/editor/TextPositions.h"

#include <QApplication>
#include <QClipboard>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QMenu>

namespace mirtex {

namespace {

using Sci = QsciScintillaBase;

QString tr(const char *text)
{
    return QCoreApplication::translate("MainMenu", text);
}

QKeySequence key(const char *text)
{
    return QKeySequence(QString::fromLatin1(text));
}

long caretLine(EditorPane *pane)
{
    return pane->SendScintilla(Sci::SCI_LINEFROMPOSITION,
                               pane->SendScintilla(Sci::SCI_GETCURRENTPOS));
}

// The caret at the start of a line (from 0), one caret only, scrolled into view.
void goToLine(EditorPane *pane, qsizetype lineIndex)
{
    const long position
        = pane->SendScintilla(Sci::SCI_POSITIONFROMLINE, static_cast<unsigned long>(lineIndex));
    pane->SendScintilla(Sci::SCI_ENSUREVISIBLEENFORCEPOLICY, static_cast<unsigned long>(lineIndex));
    pane->SendScintilla(Sci::SCI_GOTOPOS, static_cast<unsigned long>(position));
}

} // namespace

void LineCommands::registerIn(CommandRegistry &registry, CommandContext &context)
{
    CommandContext *c = &context;
    auto hasDocument = [c](const QVariant &) { return c->hasDocument(); };
    // An edit command: read-only texts refuse it (with a beep), so it stays enabled for them.
    auto edit = [&registry, c, hasDocument](const char *name,
                                            const QString &label,
                                            QList<QKeySequence> keys,
                                            EditComputation compute,
                                            const QString &undoLabel = {}) {
        const QString step = undoLabel.isEmpty() ? label : undoLabel;
        registry.add({QString::fromLatin1(name),
                      label,
                      std::move(keys),
                      [c, step, compute](const QVariant &) { runEditCommand(*c, step, compute); },
                      hasDocument});
    };
    auto language = [c]() {
        const DocumentTab *tab = c->currentTab();
        return Language::byId(tab ? tab->document().languageId() : QStringLiteral("text"));
    };

    // Comments: the language's line token, else its block pair, else a beep.
    auto blockComment = [c, language](const QString &label) {
        const auto pair = language()->blockComment();
        if (!pair) {
            beep();
            return;
        }
        runEditCommand(*c, label, [pair](QStringView text, const Selections &selections) {
            return toggleBlockComment(text, selections, pair->first, pair->second);
        });
    };
    const QString lineCommentLabel = tr("Commenta/decommenta le righe");
    registry.add({QStringLiteral("toggleLineComment:"),
                  lineCommentLabel,
                  {key("Ctrl+/")},
                  [c, language, blockComment, lineCommentLabel](const QVariant &) {
                      const LanguagePtr lang = language();
                      if (!lang->lineComment()) {
                          blockComment(lineCommentLabel);
                          return;
                      }
                      const QString token = *lang->lineComment();
                      runEditCommand(
                          *c, lineCommentLabel, [token](QStringView t, const Selections &s) {
                              return toggleLineComment(t, s, token);
                          });
                  },
                  hasDocument});
    const QString blockLabel = tr("Commenta/decommenta il blocco");
    registry.add({QStringLiteral("toggleBlockComment:"),
                  blockLabel,
                  {key("Ctrl+Shift+/")},
                  [blockComment, blockLabel](const QVariant &) { blockComment(blockLabel); },
                  hasDocument});

    edit("duplicateLine:", tr("Duplica riga o selezione"), {key("Ctrl+Shift+D")}, duplicateLines);
    edit("deleteLine:", tr("Elimina riga"), {key("Ctrl+Shift+K")}, deleteLines);
    edit("moveLineUp:",
         tr("Sposta la riga in su"),
         {key("Alt+Up")},
         [](QStringView t, const Selections &s) { return moveLines(t, s, true); });
    edit("moveLineDown:",
         tr("Sposta la riga in giù"),
         {key("Alt+Down")},
         [](QStringView t, const Selections &s) { return moveLines(t, s, false); });
    edit("joinLines:", tr("Unisci le righe"), {key("Ctrl+J")}, joinLines);
    edit(
        "insertBlankLineAbove:",
        tr("Inserisci riga vuota sopra"),
        {key("Ctrl+Shift+Return")},
        [](QStringView t, const Selections &s) { return insertBlankLine(t, s, true); },
        tr("Riga vuota sopra"));
    edit(
        "insertBlankLineBelow:",
        tr("Inserisci riga vuota sotto"),
        {key("Ctrl+Return")},
        [](QStringView t, const Selections &s) { return insertBlankLine(t, s, false); },
        tr("Riga vuota sotto"));

    // Bookmarks.
    auto bookmarked = [c]() {
        EditorView *editor = c->currentEditor();
        return editor ? editor->annotations().bookmarkedLines() : std::vector<qsizetype>();
    };
    registry.add({QStringLiteral("toggleBookmark:"),
                  tr("Segnalibro sì/no"),
                  {key("Ctrl+F2")},
                  [c](const QVariant &) {
                      if (EditorPane *pane = c->activePane())
                          c->currentEditor()->annotations().toggleBookmark(caretLine(pane));
                  },
                  hasDocument});
    auto jump = [c, bookmarked](bool forward) {
        return [c, bookmarked, forward](const QVariant &) {
            EditorPane *pane = c->activePane();
            if (!pane)
                return;
            const auto line = nextBookmarkedLine(bookmarked(), caretLine(pane), forward);
            if (!line) {
                beep();
                return;
            }
            goToLine(pane, *line);
        };
    };
    registry.add({QStringLiteral("nextBookmark:"),
                  tr("Segnalibro successivo"),
                  {key("F2")},
                  jump(true),
                  hasDocument});
    registry.add({QStringLiteral("previousBookmark:"),
                  tr("Segnalibro precedente"),
                  {key("Shift+F2")},
                  jump(false),
                  hasDocument});
    registry.add({QStringLiteral("clearBookmarks:"),
                  tr("Togli tutti i segnalibri"),
                  {key("Ctrl+Shift+F2")},
                  [c](const QVariant &) {
                      if (EditorView *editor = c->currentEditor())
                          editor->annotations().setBookmarkedLines({});
                  },
                  hasDocument});
    auto copyBookmarked = [c, bookmarked]() {
        EditorView *editor = c->currentEditor();
        const std::vector<qsizetype> lines = bookmarked();
        if (!editor || lines.empty()) {
            beep();
            return false;
        }
        QApplication::clipboard()->setText(textOfLines(editor->text(), lines));
        return true;
    };
    auto deleteBookmarked = [c, bookmarked](const QString &label) {
        const std::vector<qsizetype> lines = bookmarked();
        runEditCommand(
            *c,
            label,
            [lines](QStringView t, const Selections &s) { return deleteLineNumbers(t, s, lines); },
            WhenNothingToDo::beep);
    };
    registry.add({QStringLiteral("copyBookmarkedLines:"),
                  tr("Copia le righe con segnalibro"),
                  {},
                  [copyBookmarked](const QVariant &) { copyBookmarked(); },
                  hasDocument});
    registry.add({QStringLiteral("cutBookmarkedLines:"),
                  tr("Taglia le righe con segnalibro"),
                  {},
                  [c, copyBookmarked, deleteBookmarked](const QVariant &) {
                      if (!c->isEditable()) {
                          beep();
                          return;
                      }
                      if (copyBookmarked())
                          deleteBookmarked(tr("Taglia le righe con segnalibro"));
                  },
                  hasDocument});
    registry.add({QStringLiteral("deleteBookmarkedLines:"),
                  tr("Elimina le righe con segnalibro"),
                  {},
                  [deleteBookmarked](const QVariant &) {
                      deleteBookmarked(tr("Elimina righe con segnalibro"));
                  },
                  hasDocument});

    // Navigation.
    registry.add({QStringLiteral("goToMatchingBrace:"),
                  tr("Parentesi corrispondente"),
                  {key("Ctrl+M")},
                  [c](const QVariant &) {
                      EditorView *editor = c->currentEditor();
                      if (!editor)
                          return;
                      const auto caret
                          = matchingBraceCaret(editor->text(), editor->selections().main().caret);
                      if (!caret) {
                          beep();
                          return;
                      }
                      editor->setSelections(Selection::caretAt(*caret));
                      editor->activePane()->SendScintilla(Sci::SCI_SCROLLCARET);
                  },
                  hasDocument});
    registry.add({QStringLiteral("goToLine:"),
                  tr("Vai alla riga…"),
                  {key("Ctrl+L")},
                  [c](const QVariant &) {
                      EditorPane *pane = c->activePane();
                      if (!pane)
                          return;
                      const long count = pane->SendScintilla(Sci::SCI_GETLINECOUNT);
                      const std::optional<QString> answer = c->flows().questions().askForLine(
                          &c->window(), count, caretLine(pane) + 1);
                      if (!answer)
                          return;
                      if (const auto line = lineForAnswer(*answer, count))
                          goToLine(pane, *line);
                  },
                  hasDocument});
    registry.add({QStringLiteral("showSummary:"),
                  tr("Riepilogo del documento"),
                  {},
                  [c](const QVariant &) {
                      DocumentTab *tab = c->currentTab();
                      if (!tab)
                          return;
                      EditorView *editor = tab->editor();
                      c->flows().questions().inform(
                          &c->window(),
                          summaryTitle(tab->document().displayName()),
                          summaryText(editor->text(), editor->selections()));
                  },
                  hasDocument});
    registry.add({QStringLiteral("openSelectedPath:"),
                  tr("Apri il percorso selezionato"),
                  {},
                  [c](const QVariant &) {
                      DocumentTab *tab = c->currentTab();
                      if (!tab)
                          return;
                      const std::optional<QString> &own = tab->document().path();
                      const QString base = own ? QFileInfo(*own).absolutePath() : QDir::homePath();
                      EditorView *editor = tab->editor();
                      const auto path = selectedPath(
                          editor->text(), editor->selections().main(), base, QDir::homePath());
                      if (!path || !QFileInfo(*path).isFile()) {
                          beep();
                          return;
                      }
                      c->flows().openPath(*path);
                  },
                  hasDocument});

    // The text always holds LF; converting sets the ending the file is written with.
    registry.add({QStringLiteral("convertLineEndings:"),
                  tr("Converti i fine riga in"),
                  {},
                  [c](const QVariant &id) {
                      const auto ending = lineEndingFromString(id.toString());
                      DocumentTab *tab = c->currentTab();
                      if (!tab || !ending)
                          return;
                      if (!c->isEditable()) {
                          beep();
                          return;
                      }
                      c->flows().setLineEnding(tab, *ending);
                  },
                  hasDocument,
                  [c](const QVariant &id) {
                      const DocumentTab *tab = c->currentTab();
                      return tab && toString(tab->document().lineEnding()) == id.toString();
                  }});
}

void LineCommands::addToMenu(CommandRegistry &registry, QMenu *edit)
{
    auto place = [&registry](QMenu *menu, std::initializer_list<const char *> names) {
        for (const char *name : names) {
            if (*name == 0)
                menu->addSeparator();
            else if (QAction *action = registry.action(QString::fromLatin1(name)))
                menu->addAction(action);
        }
    };
    edit->addSeparator();
    QMenu *lines = edit->addMenu(tr("Righe"));
    lines->setObjectName(QStringLiteral("mirtex.menu.edit.lines"));
    place(lines,
          {"duplicateLine:",
           "deleteLine:",
           "moveLineUp:",
           "moveLineDown:",
           "joinLines:",
           "",
           "insertBlankLineAbove:",
           "insertBlankLineBelow:"});
    QMenu *endings = lines->addMenu(tr("Converti i fine riga in"));
    const std::pair<const char *, const char *> kEndings[]
        = {{"lf", "LF (Linux, macOS)"}, {"crlf", "CRLF (Windows)"}, {"cr", "CR (Mac classico)"}};
    for (const auto &[id, label] : kEndings)
        endings->addAction(registry.action(
            QStringLiteral("convertLineEndings:"), QString::fromLatin1(id), tr(label)));
    QMenu *comments = edit->addMenu(tr("Commenti"));
    comments->setObjectName(QStringLiteral("mirtex.menu.edit.comments"));
    place(comments, {"toggleLineComment:", "toggleBlockComment:"});
    QMenu *bookmarks = edit->addMenu(tr("Segnalibri"));
    bookmarks->setObjectName(QStringLiteral("mirtex.menu.edit.bookmarks"));
    place(bookmarks,
          {"toggleBookmark:",
           "nextBookmark:",
           "previousBookmark:",
           "clearBookmarks:",
           "",
           "copyBookmarkedLines:",
           "cutBookmarkedLines:",
           "deleteBookmarkedLines:"});
    edit->addSeparator();
    place(edit, {"goToLine:", "goToMatchingBrace:", "openSelectedPath:", "showSummary:"});
}

} // namespace mirtex
