#include "ui/editor/PaneSelections.h"

#include "ui/editor/TextPositions.h"

#include <Qsci/qsciscintillabase.h>

namespace mirtex {

using Sci = QsciScintillaBase;

Selections readSelections(QsciScintillaBase *pane, const TextPositions &positions)
{
    const long count = pane->SendScintilla(Sci::SCI_GETSELECTIONS);
    std::vector<Selection> ranges;
    ranges.reserve(std::size_t(count));
    for (long i = 0; i < count; ++i) {
        const long anchor = pane->SendScintilla(Sci::SCI_GETSELECTIONNANCHOR, i);
        const long caret = pane->SendScintilla(Sci::SCI_GETSELECTIONNCARET, i);
        ranges.push_back({positions.toUtf16(anchor), positions.toUtf16(caret)});
    }
    return Selections(std::move(ranges),
                      std::size_t(pane->SendScintilla(Sci::SCI_GETMAINSELECTION)));
}

void writeSelections(QsciScintillaBase *pane,
                     const TextPositions &positions,
                     const Selections &selections)
{
    if (selections.size() > 1)
        pane->SendScintilla(Sci::SCI_SETMULTIPLESELECTION, 1L);
    // As many selections as the pane has: moved in place, in one pass. Adding them one by one
    // costs Scintilla a pass over all of them each (seconds at 10,000 carets).
    if (selections.size() > 1
        && std::size_t(pane->SendScintilla(Sci::SCI_GETSELECTIONS)) == selections.size()
        && !pane->SendScintilla(Sci::SCI_SELECTIONISRECTANGLE)) {
        for (std::size_t i = 0; i < selections.size(); ++i) {
            pane->SendScintilla(Sci::SCI_SETSELECTIONNANCHOR,
                                static_cast<unsigned long>(i),
                                long(positions.toByte(selections[i].anchor)));
            pane->SendScintilla(Sci::SCI_SETSELECTIONNCARET,
                                static_cast<unsigned long>(i),
                                long(positions.toByte(selections[i].caret)));
        }
        pane->SendScintilla(Sci::SCI_SETMAINSELECTION,
                            static_cast<unsigned long>(selections.mainIndex()));
        pane->SendScintilla(Sci::SCI_CHOOSECARETX);
        return;
    }
    bool first = true;
    for (const Selection &selection : selections) {
        const auto caret = static_cast<unsigned long>(positions.toByte(selection.caret));
        const long anchor = long(positions.toByte(selection.anchor));
        pane->SendScintilla(first ? Sci::SCI_SETSELECTION : Sci::SCI_ADDSELECTION, caret, anchor);
        first = false;
    }
    pane->SendScintilla(Sci::SCI_SETMAINSELECTION,
                        static_cast<unsigned long>(selections.mainIndex()));
    // Up and down (and rectangles grown with them) keep the column of the caret as now set.
    pane->SendScintilla(Sci::SCI_CHOOSECARETX);
}

} // namespace mirtex
