// Each question's typed answer from the button the user picks, and the answer of closing the box.
#include "support/QStringPrinter.h"
#include "ui/dialogs/ScriptedQuestions.h"

#include <gtest/gtest.h>

using namespace mirtex;
using namespace Qt::StringLiterals;

namespace {

// Asks one question with a scripted button (empty: the box is closed) and names the answer.
using Ask = std::function<QString(ScriptedQuestions &)>;

template<typename Answer>
QString named(Answer answer, std::initializer_list<std::pair<Answer, const char *>> names)
{
    for (const auto &[value, name] : names) {
        if (value == answer)
            return QString::fromLatin1(name);
    }
    return u"?"_s;
}

} // namespace

TEST(QuestionsTest, EachButtonGivesItsAnswerAndClosingTheBoxTheSafeOne)
{
    const Ask save = [](ScriptedQuestions &q) {
        return named(q.askToSave(nullptr, u"a.txt"_s),
                     {{SaveQuestionAnswer::save, "save"},
                      {SaveQuestionAnswer::discard, "discard"},
                      {SaveQuestionAnswer::cancel, "cancel"}});
    };
    const Ask large = [](ScriptedQuestions &q) {
        return named(q.askToOpenLargeFile(nullptr, u"a.log"_s, 300'000'000),
                     {{LargeFileAnswer::open, "open"}, {LargeFileAnswer::cancel, "cancel"}});
    };
    const Ask utf8 = [](ScriptedQuestions &q) {
        return named(q.offerUtf8(nullptr, u"Latino 1"_s),
                     {{Utf8OfferAnswer::saveInUtf8, "utf8"}, {Utf8OfferAnswer::cancel, "cancel"}});
    };
    const Ask reopen = [](ScriptedQuestions &q) {
        return named(q.askToReopen(nullptr, u"a.txt"_s, u"UTF-16"_s),
                     {{ReopenAnswer::reopen, "reopen"}, {ReopenAnswer::cancel, "cancel"}});
    };
    const Ask missing = [](ScriptedQuestions &q) {
        return named(q.askAboutMissingFile(nullptr, u"a.txt"_s),
                     {{MissingFileAnswer::keepOpen, "keep"}, {MissingFileAnswer::close, "close"}});
    };
    const Ask changed = [](ScriptedQuestions &q) {
        return named(
            q.askAboutChangedFile(nullptr, u"a.txt"_s, false),
            {{ChangedFileAnswer::reload, "reload"}, {ChangedFileAnswer::ignore, "ignore"}});
    };
    const Ask replaceInFiles = [](ScriptedQuestions &q) {
        return named(
            q.askToReplaceInFiles(nullptr, u"a"_s, u"src"_s),
            {{ReplaceInFilesAnswer::replace, "replace"}, {ReplaceInFilesAnswer::cancel, "cancel"}});
    };

    const struct
    {
        Ask ask;
        QString button;
        QString answer;
    } cases[] = {
        {save, u"Salva"_s, u"save"_s},
        {save, u"Non salvare"_s, u"discard"_s},
        {save, u"Annulla"_s, u"cancel"_s},
        {save, QString(), u"cancel"_s},
        {large, u"Apri comunque"_s, u"open"_s},
        {large, QString(), u"cancel"_s},
        {utf8, u"Salva in UTF-8"_s, u"utf8"_s},
        {utf8, QString(), u"cancel"_s},
        {reopen, u"Riapri"_s, u"reopen"_s},
        {reopen, QString(), u"cancel"_s},
        {missing, u"Chiudi"_s, u"close"_s},
        {missing, QString(), u"keep"_s},
        {changed, u"Ricarica"_s, u"reload"_s},
        {changed, QString(), u"ignore"_s},
        {replaceInFiles, u"Sostituisci"_s, u"replace"_s},
        {replaceInFiles, u"Annulla"_s, u"cancel"_s},
        {replaceInFiles, QString(), u"cancel"_s},
    };

    for (const auto &c : cases) {
        ScriptedQuestions questions;
        if (!c.button.isEmpty())
            questions.pushAnswer(c.button);
        const QString answer = c.ask(questions);
        ASSERT_EQ(questions.asked().size(), 1u);
        SCOPED_TRACE(questions.asked()[0].message.toStdString() + " / " + c.button.toStdString());
        EXPECT_EQ(answer, c.answer);
        if (!c.button.isEmpty()) {
            EXPECT_TRUE(questions.asked()[0].buttons.contains(c.button));
        }
    }
}
