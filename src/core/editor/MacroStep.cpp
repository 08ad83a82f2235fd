#include "core/editor/MacroStep.h"

#include <algorithm>
#include <array>

namespace mirtex {

namespace {

constexpr std::array<QStringView, 26> kRecordableActions = {
    u"cut:",
    u"copy:",
    u"paste:",
    u"delete:",
    u"selectAll:",
    u"duplicateLine:",
    u"deleteLine:",
    u"moveLineUp:",
    u"moveLineDown:",
    u"joinLines:",
    u"convertToUppercase:",
    u"convertToLowercase:",
    u"convertCase:",
    u"applyLineOperation:",
    u"toggleLineComment:",
    u"toggleBlockComment:",
    u"indentLines:",
    u"unindentLines:",
    u"insertDateTime:",
    u"findNext:",
    u"findPrevious:",
    u"insertBlankLineAbove:",
    u"insertBlankLineBelow:",
    u"toggleBookmark:",
    u"nextBookmark:",
    u"previousBookmark:",
};

// Stored names of the kinds, in the enumeration's order.
constexpr std::array<QStringView, 3> kKindNames = {u"insert", u"command", u"action"};

} // namespace

bool isRecordableAction(QStringView name)
{
    return std::ranges::find(kRecordableActions, name) != kRecordableActions.end();
}

QJsonObject MacroStep::toJson() const
{
    QJsonObject object{{QStringLiteral("kind"), kKindNames[std::size_t(kind)].toString()}};
    object.insert(kind == Kind::insert ? QStringLiteral("text") : QStringLiteral("name"), text);
    if (argument)
        object.insert(QStringLiteral("argument"), *argument);
    return object;
}

std::optional<MacroStep> MacroStep::fromJson(const QJsonObject &object)
{
    const QString kindName = object.value(QStringLiteral("kind")).toString();
    const auto found = std::ranges::find(kKindNames, QStringView(kindName));
    if (found == kKindNames.end())
        return std::nullopt;
    MacroStep step;
    step.kind = Kind(found - kKindNames.begin());
    const QJsonValue text
        = object.value(step.kind == Kind::insert ? QStringLiteral("text") : QStringLiteral("name"));
    if (!text.isString())
        return std::nullopt;
    step.text = text.toString();
    if (step.kind != Kind::insert && step.text.isEmpty())
        return std::nullopt;
    if (step.kind == Kind::action) {
        const QJsonValue argument = object.value(QStringLiteral("argument"));
        if (argument.isString())
            step.argument = argument.toString();
        else if (!argument.isUndefined())
            return std::nullopt;
    }
    return step;
}

} // namespace mirtex
