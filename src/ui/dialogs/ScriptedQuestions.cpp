#include "ui/dialogs/ScriptedQuestions.h"

#include "core/document/Document.h"

namespace mirtex {

int ScriptedQuestions::choose(QWidget *, const AskedQuestion &question, int escapeIndex)
{
    m_asked.push_back(question);
    if (m_answers.empty())
        return escapeIndex;
    const QString answer = m_answers.front();
    m_answers.pop_front();
    const int index = int(question.buttons.indexOf(answer));
    return index >= 0 ? index : escapeIndex;
}

void ScriptedQuestions::inform(QWidget *, const QString &message, const QString &informative)
{
    m_asked.push_back({message, informative, {QStringLiteral("OK")}});
}

std::optional<QString> ScriptedQuestions::askForName(QWidget *,
                                                     const QString &title,
                                                     const QString &label,
                                                     const QString &)
{
    m_asked.push_back({title, label, {}});
    if (m_names.empty())
        return std::nullopt;
    auto name = m_names.front();
    m_names.pop_front();
    return name;
}

std::optional<SaveDialogChoice> ScriptedQuestions::chooseSaveLocation(QWidget *,
                                                                      Preferences &,
                                                                      const Document &document,
                                                                      const QString &)
{
    if (m_saveChoices.empty())
        return std::nullopt;
    const auto scripted = m_saveChoices.front();
    m_saveChoices.pop_front();
    if (!scripted)
        return std::nullopt;
    SaveDialogChoice choice{scripted->path, document.encoding(), document.lineEnding()};
    if (auto e = TextEncoding::fromId(scripted->encodingId))
        choice.encoding = *e;
    if (auto l = lineEndingFromString(scripted->lineEndingId))
        choice.lineEnding = *l;
    return choice;
}

} // namespace mirtex

namespace mirtex {

std::optional<QString> ScriptedQuestions::askForText(QWidget *, const AskedQuestion &question)
{
    m_asked.push_back(question);
    if (m_answers.empty())
        return std::nullopt;
    QString answer = m_answers.front();
    m_answers.pop_front();
    return answer;
}

} // namespace mirtex
