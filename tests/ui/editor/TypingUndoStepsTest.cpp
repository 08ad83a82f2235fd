// Typing undone in steps, with real key events on a pane: words, lines, pauses, caret moves and
// runs of deletions each end a step, as users of other editors expect.
#include "ui/editor/TypingUndoSteps.h"

#include "core/app/Preferences.h"
#include "support/QStringPrinter.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cctype>

using namespace mirtex;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

void sendKey(QWidget *pane, int key, Qt::KeyboardModifiers modifiers = {}, const QString &text = {})
{
    QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
    QCoreApplication::sendEvent(pane, &press);
    QKeyEvent release(QEvent::KeyRelease, key, modifiers, text);
    QCoreApplication::sendEvent(pane, &release);
}

// Each character as its key: Enter for a new line, Shift pressed first for a capital.
void typeKeys(QWidget *pane, const QString &text)
{
    for (const QChar c : text) {
        if (c == u'\n') {
            sendKey(pane, Qt::Key_Return, {}, u"\r"_s);
        } else if (c == u' ') {
            sendKey(pane, Qt::Key_Space, {}, u" "_s);
        } else if (c.isUpper()) {
            sendKey(pane, Qt::Key_Shift, Qt::ShiftModifier);
            sendKey(pane, Qt::Key_A + (c.unicode() - u'A'), Qt::ShiftModifier, QString(c));
        } else if (c >= u'a' && c <= u'z') {
            sendKey(pane, Qt::Key_A + (c.unicode() - u'a'), {}, QString(c));
        } else {
            sendKey(pane, 0, {}, QString(c));
        }
    }
}

struct Step
{
    enum Kind {
        type,
        pause,
        key
    } kind;

    QString text = {};
    int keyCode = 0;
};

Step typed(const QString &text)
{
    return {Step::type, text};
}

Step pause()
{
    return {Step::pause};
}

Step key(int code)
{
    return {Step::key, {}, code};
}

struct Case
{
    const char *name;
    std::vector<Step> steps;
    QStringList textAfterEachUndo;

    friend void PrintTo(const Case &c, std::ostream *out) { *out << c.name; }
};

const Case kCases[] = {
    {"words and lines", {typed(u"uno due\ntre"_s)}, {u"uno due"_s, u"uno"_s, u""_s}},
    {"a pause inside a word",
     {typed(u"uno d"_s), pause(), typed(u"ue\ntre"_s)},
     {u"uno due"_s, u"uno d"_s, u"uno"_s, u""_s}},
    {"punctuation after a word", {typed(u"a,b;c"_s)}, {u"a,b"_s, u"a"_s, u""_s}},
    {"a capital typed with Shift", {typed(u"uno Due"_s)}, {u"uno"_s, u""_s}},
    {"the caret moved away and back",
     {typed(u"uno"_s), key(Qt::Key_Left), key(Qt::Key_Right), typed(u"due"_s)},
     {u"uno"_s, u""_s}},
    {"a run of deletions, then a pause",
     {typed(u"uno due"_s),
      key(Qt::Key_Backspace),
      key(Qt::Key_Backspace),
      pause(),
      key(Qt::Key_Backspace)},
     {u"uno d"_s, u"uno due"_s, u"uno"_s, u""_s}},
    {"deletions after a caret move",
     {typed(u"unodue"_s),
      key(Qt::Key_Backspace),
      key(Qt::Key_Left),
      key(Qt::Key_Delete),
      key(Qt::Key_Backspace)},
     {u"unodu"_s, u"unodue"_s, u""_s}},
};

class TypingUndoStepsTest : public ::testing::TestWithParam<Case>
{
protected:
    QTemporaryDir dir;
    Preferences prefs{dir.filePath(u"settings.conf"_s)};
};

} // namespace

TEST_P(TypingUndoStepsTest, UndoTakesTypingBackInSteps)
{
    const Case &c = GetParam();
    EditorView view(prefs);
    view.loadText({});
    TypingUndoSteps::Clock::time_point now{};
    view.typingSteps().setClock([&now] { return now; });
    EditorPane *pane = view.primaryPane();
    for (const Step &step : c.steps) {
        switch (step.kind) {
        case Step::type:
            typeKeys(pane, step.text);
            break;
        case Step::pause:
            now += TypingUndoSteps::kDefaultPause + 1ms;
            break;
        case Step::key:
            sendKey(pane, step.keyCode);
            break;
        }
    }
    QStringList trail;
    while (pane->isUndoAvailable() && trail.size() < 10) {
        pane->undo();
        trail.append(view.text());
    }
    EXPECT_EQ(trail, c.textAfterEachUndo);
}

std::string caseName(const ::testing::TestParamInfo<Case> &param)
{
    std::string name;
    for (const char *p = param.param.name; *p; ++p)
        name += std::isalnum(static_cast<unsigned char>(*p)) ? *p : '_';
    return name;
}

INSTANTIATE_TEST_SUITE_P(Typing, TypingUndoStepsTest, ::testing::ValuesIn(kCases), caseName);
