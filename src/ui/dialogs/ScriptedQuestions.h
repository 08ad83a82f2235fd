// Questions answered from a script instead of dialogs, for tests and the built-in self-test:
// answers are button texts taken in order (an unknown or missing answer closes the box), save
// locations come from their own queue, and every question is recorded.
#pragma once

#include "ui/dialogs/Questions.h"

#include <deque>

namespace mirtex {

// A scripted save panel answer; identifiers as stored in settings ("4", "lf").
struct SaveChoice
{
    QString path;
    QString encodingId;
    QString lineEndingId;
};

class ScriptedQuestions : public Questions
{
public:
    explicit ScriptedQuestions(std::deque<QString> answers = {})
        : m_answers(std::move(answers))
    {}

    void pushAnswer(const QString &buttonText) { m_answers.push_back(buttonText); }

    // Nothing: the save panel is cancelled.
    void pushSaveChoice(std::optional<SaveChoice> choice) { m_saveChoices.push_back(choice); }

    const std::deque<AskedQuestion> &asked() const { return m_asked; }

    void clearAsked() { m_asked.clear(); }

    void inform(QWidget *parent, const QString &message, const QString &informative = {}) override;
    std::optional<SaveDialogChoice> chooseSaveLocation(QWidget *parent,
                                                       Preferences &prefs,
                                                       const Document &document,
                                                       const QString &title) override;

    // Cancelled; the folder it was to start in is kept.
    QStringList chooseFilesToOpen(QWidget *, const QString &folder) override
    {
        m_openFolder = folder;
        return {};
    }

    const QString &openFolder() const { return m_openFolder; }

    QString chooseFolderToOpen(QWidget *) override { return {}; }

    // Names typed, in order; nothing (or an empty queue) cancels. The question is recorded with
    // its title as the message, its label as the informative text.
    void pushName(std::optional<QString> name) { m_names.push_back(std::move(name)); }

    std::optional<QString> askForName(QWidget *parent,
                                      const QString &title,
                                      const QString &label,
                                      const QString &initial) override;

protected:
    int choose(QWidget *parent, const AskedQuestion &question, int escapeIndex) override;
    // The next scripted answer is the text typed; none left: cancelled.
    std::optional<QString> askForText(QWidget *parent, const AskedQuestion &question) override;

private:
    std::deque<QString> m_answers;
    std::deque<std::optional<SaveChoice>> m_saveChoices;
    std::deque<AskedQuestion> m_asked;
    std::deque<std::optional<QString>> m_names;
    QString m_openFolder;
};

} // namespace mirtex
