#include "ui/editor/EditorCommandNames.h"

#include <algorithm>
#include <iterator>

namespace mirtex {

namespace {

struct Named
{
    const char16_t *name;
    QsciCommand::Command command;
};

using C = QsciCommand::Command;

// Every key-bound command the panes keep (see EditorKeys), by the name a macro records.
constexpr Named kNamed[] = {
    {u"moveLeft:", C::CharLeft},
    {u"moveRight:", C::CharRight},
    {u"moveUp:", C::LineUp},
    {u"moveDown:", C::LineDown},
    {u"moveWordLeft:", C::WordLeft},
    {u"moveWordRight:", C::WordRight},
    {u"moveToBeginningOfLine:", C::VCHome},
    {u"moveToLeftEndOfLine:", C::Home},
    {u"moveToEndOfLine:", C::LineEnd},
    {u"pageUp:", C::PageUp},
    {u"pageDown:", C::PageDown},
    {u"moveToBeginningOfDocument:", C::DocumentStart},
    {u"moveToEndOfDocument:", C::DocumentEnd},
    {u"scrollLineUp:", C::LineScrollUp},
    {u"scrollLineDown:", C::LineScrollDown},
    {u"moveLeftAndModifySelection:", C::CharLeftExtend},
    {u"moveRightAndModifySelection:", C::CharRightExtend},
    {u"moveUpAndModifySelection:", C::LineUpExtend},
    {u"moveDownAndModifySelection:", C::LineDownExtend},
    {u"moveWordLeftAndModifySelection:", C::WordLeftExtend},
    {u"moveWordRightAndModifySelection:", C::WordRightExtend},
    {u"moveToBeginningOfLineAndModifySelection:", C::VCHomeExtend},
    {u"moveToLeftEndOfLineAndModifySelection:", C::HomeExtend},
    {u"moveToEndOfLineAndModifySelection:", C::LineEndExtend},
    {u"pageUpAndModifySelection:", C::PageUpExtend},
    {u"pageDownAndModifySelection:", C::PageDownExtend},
    {u"moveToBeginningOfDocumentAndModifySelection:", C::DocumentStartExtend},
    {u"moveToEndOfDocumentAndModifySelection:", C::DocumentEndExtend},
    {u"moveLeftAndModifyRectangle:", C::CharLeftRectExtend},
    {u"moveRightAndModifyRectangle:", C::CharRightRectExtend},
    {u"moveUpAndModifyRectangle:", C::LineUpRectExtend},
    {u"moveDownAndModifyRectangle:", C::LineDownRectExtend},
    {u"moveToBeginningOfLineAndModifyRectangle:", C::VCHomeRectExtend},
    {u"moveToLeftEndOfLineAndModifyRectangle:", C::HomeRectExtend},
    {u"moveToEndOfLineAndModifyRectangle:", C::LineEndRectExtend},
    {u"pageUpAndModifyRectangle:", C::PageUpRectExtend},
    {u"pageDownAndModifyRectangle:", C::PageDownRectExtend},
    {u"insertNewline:", C::Newline},
    {u"insertTab:", C::Tab},
    {u"insertBacktab:", C::Backtab},
    {u"deleteBackward:", C::DeleteBack},
    {u"deleteForward:", C::Delete},
    {u"deleteWordBackward:", C::DeleteWordLeft},
    {u"deleteWordForward:", C::DeleteWordRight},
    {u"toggleOverwriteMode:", C::EditToggleOvertype},
    {u"cancelOperation:", C::Cancel},
};

} // namespace

std::optional<QsciCommand::Command> EditorCommandNames::command(const QString &name)
{
    const auto found = std::find_if(std::begin(kNamed), std::end(kNamed), [&](const Named &n) {
        return name == QStringView(n.name);
    });
    if (found == std::end(kNamed))
        return std::nullopt;
    return found->command;
}

QString EditorCommandNames::name(QsciCommand::Command command)
{
    const auto found = std::find_if(
        std::begin(kNamed), std::end(kNamed), [&](const Named &n) { return n.command == command; });
    return found == std::end(kNamed) ? QString() : QString::fromUtf16(found->name);
}

} // namespace mirtex
