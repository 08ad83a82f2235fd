#include "core/editor/MacroRecorder.h"

#include "core/editor/MacroRepeat.h"
#include "support/QStringPrinter.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

#include <vector>

using namespace mirtex;

TEST(MacroRecorder, RecordsOnlyWhileRecordingAndNotPlaying)
{
    MacroRecorder recorder;
    recorder.record(MacroStep::insert(u"lost"_qs));
    recorder.start();
    recorder.record(MacroStep::insert(u"a"_qs));
    recorder.record(MacroStep::insert(u"b"_qs)); // joins the typing before it
    recorder.record(MacroStep::command(u"insertNewline:"_qs));
    {
        const MacroRecorder::Playing playing(recorder);
        recorder.record(MacroStep::insert(u"played"_qs));
    }
    recorder.record(MacroStep::insert(u"c"_qs));
    recorder.record(MacroStep::action(u"applyLineOperation:"_qs, u"sortAscending"_qs));
    recorder.stop();
    const Macro expected{MacroStep::insert(u"ab"_qs),
                         MacroStep::command(u"insertNewline:"_qs),
                         MacroStep::insert(u"c"_qs),
                         MacroStep::action(u"applyLineOperation:"_qs, u"sortAscending"_qs)};
    EXPECT_EQ(recorder.macro(), expected);
    EXPECT_FALSE(recorder.isRecording());
    EXPECT_TRUE(recorder.recording().isEmpty());

    // An empty recording keeps the last macro; a new one replaces it.
    recorder.start();
    recorder.stop();
    EXPECT_EQ(recorder.macro(), expected);
    EXPECT_TRUE(recorder.toggle());
    recorder.record(MacroStep::command(u"moveDown:"_qs));
    EXPECT_FALSE(recorder.toggle());
    EXPECT_EQ(recorder.macro(), Macro{MacroStep::command(u"moveDown:"_qs)});
}

TEST(MacroStep, RecordableActionsAreExactlyTheEditingOnes)
{
    for (const auto *name : {"cut:",
                             "paste:",
                             "applyLineOperation:",
                             "findNext:",
                             "previousBookmark:",
                             "toggleBlockComment:",
                             "insertDateTime:"})
        EXPECT_TRUE(isRecordableAction(QString::fromLatin1(name))) << name;
    for (const auto *name : {"openDocument:",
                             "selectNextTab:",
                             "playMacro:",
                             "undo:",
                             "toggleMacroRecording:",
                             "findNext",
                             ""})
        EXPECT_FALSE(isRecordableAction(QString::fromLatin1(name))) << name;
}

TEST(MacroStep, JsonRoundTripAndRefusals)
{
    for (const MacroStep &step : {MacroStep::insert(u"// \"é\"\n"_qs),
                                  MacroStep::insert({}),
                                  MacroStep::command(u"moveDown:"_qs),
                                  MacroStep::action(u"copy:"_qs),
                                  MacroStep::action(u"convertCase:"_qs, u"upper"_qs)})
        EXPECT_EQ(MacroStep::fromJson(step.toJson()), step);
    const char *refused[] = {R"({"kind":"typing","text":"a"})",
                             R"({"kind":"command"})",
                             R"({"kind":"command","name":""})",
                             R"({"kind":"insert","text":3})",
                             R"({"kind":"action","name":"copy:","argument":7})"};
    for (const char *json : refused)
        EXPECT_FALSE(MacroStep::fromJson(QJsonDocument::fromJson(json).object())) << json;
}

// A fake editor for the repetition rules: a caret and a text length that each run changes.
TEST(MacroRepeat, StopRules)
{
    struct Case
    {
        const char *what;
        int count;
        qsizetype caretStep; // how far each run moves the caret
        qsizetype growth;    // how much each run lengthens the text
        qsizetype length;    // at the start
        int expectedRuns;
    };

    const Case cases[] = {
        {"a number of times", 3, 0, 0, 10, 3},
        {"to the end, commenting 4 lines of 6", 0, 9, 3, 24, 4},
        {"to the end, from the end already", 0, 1, 0, 0, 1},
        {"no progress stops after one run", 0, 0, 0, 10, 1},
        {"growing without moving still counts as progress", 0, 0, 1, 5, 100'000},
        {"to the end, capped", 0, 1, 0, 1'000'000, 100'000},
        {"a negative count plays nothing", -2, 1, 0, 10, 0},
    };
    for (const Case &c : cases) {
        MacroProgress state{0, c.length};
        const int runs = MacroRepeat(c.count).run(
            [&] {
                state.caretOffset += c.caretStep;
                state.textLength += c.growth;
                return true;
            },
            [&] { return state; });
        EXPECT_EQ(runs, c.expectedRuns) << c.what;
    }
}

TEST(MacroRepeat, ARunThatCannotActEndsTheRepetition)
{
    int runs = 0;
    EXPECT_EQ(MacroRepeat(5).run([&] { return ++runs < 2; }, [] { return MacroProgress{}; }), 2);
}
