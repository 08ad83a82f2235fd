#include "ui/app/Alerts.h"

#include <QMessageBox>
#include <QPushButton>

namespace mirtex {

Alerts &Alerts::instance()
{
    static Alerts alerts;
    return alerts;
}

int Alerts::ask(QWidget *parent,
                const QString &message,
                const QString &informative,
                const QStringList &buttons,
                int escapeIndex)
{
    const int escape = escapeIndex >= 0 ? escapeIndex : int(buttons.size()) - 1;
    if (m_scripted) {
        m_asked.push_back({message, informative, buttons});
        if (m_answers.empty())
            return escape;
        const QString answer = m_answers.front();
        m_answers.pop_front();
        const int index = int(buttons.indexOf(answer));
        return index >= 0 ? index : escape;
    }
    QMessageBox box(parent);
    box.setIcon(QMessageBox::Warning);
    box.setText(message);
    box.setInformativeText(informative);
    QList<QPushButton *> made;
    for (const QString &label : buttons)
        made.append(box.addButton(label, QMessageBox::ActionRole));
    if (!made.isEmpty())
        box.setDefaultButton(made.first());
    if (escape >= 0 && escape < made.size())
        box.setEscapeButton(made[escape]);
    box.exec();
    const int index = int(made.indexOf(static_cast<QPushButton *>(box.clickedButton())));
    return index >= 0 ? index : escape;
}

void Alerts::inform(QWidget *parent, const QString &message, const QString &informative)
{
    if (m_scripted) {
        m_asked.push_back({message, informative, {QStringLiteral("OK")}});
        return;
    }
    QMessageBox box(parent);
    box.setIcon(QMessageBox::Warning);
    box.setText(message);
    box.setInformativeText(informative);
    box.addButton(QMessageBox::Ok);
    box.exec();
}

void Alerts::beginScript(std::deque<QString> answers)
{
    m_scripted = true;
    m_answers = std::move(answers);
    m_saveChoices.clear();
    m_asked.clear();
}

void Alerts::endScript()
{
    m_scripted = false;
    m_answers.clear();
    m_saveChoices.clear();
}

std::optional<SaveChoice> Alerts::takeSaveChoice()
{
    if (m_saveChoices.empty())
        return std::nullopt;
    auto choice = m_saveChoices.front();
    m_saveChoices.pop_front();
    return choice;
}

} // namespace mirtex
