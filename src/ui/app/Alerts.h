// Every modal question the program asks goes through here, so that tests and the self-test can
// script the answers (and see what was asked) instead of showing dialogs.
#pragma once

#include <QString>
#include <QStringList>

#include <deque>
#include <optional>

class QWidget;

namespace mirtex {

struct AskedQuestion
{
    QString message;
    QString informative;
    QStringList buttons;
};

struct SaveChoice
{
    QString path;
    QString encodingId;
    QString lineEndingId;
};

class Alerts
{
public:
    static Alerts &instance();

    // Shows a modal question; buttons in this order, the first is the default. Returns the index
    // of the button chosen (closing the box counts as the last button that means "cancel", i.e.
    // the index given by `escapeIndex`, or the last button when it is -1).
    int ask(QWidget *parent,
            const QString &message,
            const QString &informative,
            const QStringList &buttons,
            int escapeIndex = -1);

    // A message with a single "OK".
    void inform(QWidget *parent, const QString &message, const QString &informative = {});

    // --- scripting (tests, self-test) ---
    // While scripted, no dialog is shown: answers are taken from the queue by button text
    // (an unknown or missing answer picks the escape button) and every question is recorded.
    void beginScript(std::deque<QString> answers = {});
    void endScript();

    bool isScripted() const { return m_scripted; }

    void pushAnswer(const QString &buttonText) { m_answers.push_back(buttonText); }

    void pushSaveChoice(std::optional<SaveChoice> choice) { m_saveChoices.push_back(choice); }

    std::optional<SaveChoice> takeSaveChoice();

    const std::deque<AskedQuestion> &asked() const { return m_asked; }

    void clearAsked() { m_asked.clear(); }

private:
    bool m_scripted = false;
    std::deque<QString> m_answers;
    std::deque<std::optional<SaveChoice>> m_saveChoices;
    std::deque<AskedQuestion> m_asked;
};

} // namespace mirtex
