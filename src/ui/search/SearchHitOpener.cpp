#include "ui/search/SearchHitOpener.h"

#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/document/PendingTab.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"
#include "ui/editor/TextPositions.h"

#include <Qsci/qsciscintillabase.h>

namespace mirtex {

namespace {

DocumentTab *tabOfDocument(MainWindow &window, const QUuid &id)
{
    const QString pendingId = id.toString(QUuid::WithoutBraces);
    for (QWidget *page : window.pagesInOrder()) {
        if (DocumentTab *tab = window.tabForPage(page)) {
            if (tab->document().id() == id)
                return tab;
        } else if (auto *pending = qobject_cast<PendingTab *>(page)) {
            if (pending->entry().id == pendingId)
                return window.loadedTabForPage(page);
        }
    }
    return nullptr;
}

// The UTF-16 range of the line's text now (without its break); nothing past the last line.
std::optional<TextRange> lineRange(EditorView &editor, qsizetype line)
{
    EditorPane *pane = editor.primaryPane();
    const long lines = pane->SendScintilla(QsciScintillaBase::SCI_GETLINECOUNT);
    if (line < 0 || line >= lines)
        return std::nullopt;
    const qsizetype startByte = pane->SendScintilla(QsciScintillaBase::SCI_POSITIONFROMLINE,
                                                    static_cast<unsigned long>(line));
    const qsizetype endByte = pane->SendScintilla(QsciScintillaBase::SCI_GETLINEENDPOSITION,
                                                  static_cast<unsigned long>(line));
    return editor.positions().toUtf16Range(startByte, endByte);
}

} // namespace

DocumentTab *openSearchHit(DocumentFlows &flows, const SearchFileResult &file, const SearchHit &hit)
{
    MainWindow &window = flows.window();
    DocumentTab *tab = file.documentID ? tabOfDocument(window, *file.documentID) : nullptr;
    if (!tab && file.path)
        tab = flows.openPath(*file.path);
    if (!tab)
        return nullptr;
    window.selectDocument(tab);
    EditorView &editor = *tab->editor();
    if (const auto line = lineRange(editor, hit.line)) {
        const qsizetype from = line->location + std::min(hit.rangeInLine.location, line->length);
        const qsizetype to = std::min(from + hit.rangeInLine.length, line->end());
        // setSelection opens the folds around the range and scrolls it into view.
        editor.setSelection({from, to - from});
    }
    editor.activePane()->setFocus();
    return tab;
}

} // namespace mirtex
