// The highlighter against a plain target and a real event loop: edits, batches, limits and
// background passes overtaken by newer edits or a new language.
#include "core/languages/SyntaxHighlighter.h"

#include "core/languages/Tokenizer.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

using namespace mirtex;

namespace {

class FakeTarget : public HighlightTarget
{
public:
    explicit FakeTarget(QString text)
        : content(std::move(text))
    {}

    QString text() const override { return content; }

    qsizetype textLength() const override { return content.size(); }

    void paintTokens(const SyntaxHighlighter &highlighter) override
    {
        ++paints;
        painted = highlighter.tokensIn(TextRange{0, content.size()});
    }

    QString content;
    int paints = 0;
    QList<Token> painted;
};

// Replaces [location, location + removed) by inserted and tells the highlighter, as the editor
// does.
void edit(FakeTarget &target,
          SyntaxHighlighter &highlighter,
          qsizetype location,
          qsizetype removed,
          const QString &inserted)
{
    target.content.replace(location, removed, inserted);
    highlighter.textDidChange(TextRange{location, inserted.size()}, inserted.size() - removed);
}

void randomEdit(QRandomGenerator &random, FakeTarget &target, SyntaxHighlighter &highlighter)
{
    static const QString pieces[] = {"x", "\n", "/*", "*/", "\"", "int ", "// c\n", "42", " "};
    const qsizetype size = target.content.size();
    const qsizetype location = random.bounded(size + 1);
    const qsizetype removed = random.bounded(0, 1 + std::min<qsizetype>(size - location, 12));
    const QString inserted = random.bounded(3) == 0 ? QString() : pieces[random.bounded(9)];
    edit(target, highlighter, location, removed, inserted);
}

bool waitUntil(const std::function<bool()> &condition, int timeoutMs = 10000)
{
    const QDeadlineTimer deadline(timeoutMs);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return true;
}

QString cSource(qsizetype atLeast)
{
    const QString lines = QStringLiteral("int main(void) { /* c */ return 0x1F; } // end\n"
                                         "char *s = \"text\"; double d = 1.5e-3;\n");
    QString text;
    while (text.size() < atLeast)
        text += lines;
    return text;
}

const LanguagePtr &cLanguage()
{
    static const LanguagePtr c = Language::byId(u"c");
    return c;
}

} // namespace

TEST(SyntaxHighlighter, SmallTextsAreRetokenizedWholeOnEveryEditAndBatch)
{
    QRandomGenerator random(3);
    FakeTarget target(cSource(2000));
    SyntaxHighlighter highlighter(&target, cLanguage());
    highlighter.rehighlight();
    EXPECT_EQ(target.painted, tokenize(*cLanguage(), target.content));
    for (int step = 0; step < 300; ++step) {
        const bool batched = step % 3 == 0;
        if (batched)
            highlighter.beginBatch();
        for (int i = 0, n = batched ? 4 : 1; i < n; ++i)
            randomEdit(random, target, highlighter);
        if (batched)
            highlighter.endBatch();
        ASSERT_EQ(highlighter.tokens(), tokenize(*cLanguage(), target.content)) << step;
    }
    EXPECT_FALSE(highlighter.isPassPending());
}

TEST(SyntaxHighlighter, LargeTextsStayValidAfterEveryEditAndAgreeAfterThePass)
{
    QRandomGenerator random(5);
    FakeTarget target(cSource(45000));
    SyntaxHighlighter highlighter(&target, cLanguage());
    int installed = 0;
    highlighter.setOnTokensChanged([&] { ++installed; });
    highlighter.rehighlight();
    // The first screen only, then the whole text from the background.
    EXPECT_LT(highlighter.tokens().constLast().end(), 31000);
    ASSERT_TRUE(waitUntil([&] { return !highlighter.isPassPending(); }));
    EXPECT_EQ(installed, 1);
    EXPECT_EQ(target.painted, tokenize(*cLanguage(), target.content));

    for (int round = 0; round < 3; ++round) {
        for (int step = 0; step < 150; ++step) {
            const int kind = random.bounded(4);
            if (kind == 0) {
                // Multi-caret typing: the same insertion at several places, last one first.
                highlighter.beginBatch();
                qsizetype at = target.content.size();
                for (int caret = 0; caret < 5; ++caret) {
                    at = random.bounded(at + 1);
                    edit(target, highlighter, at, 0, QStringLiteral("x"));
                }
                highlighter.endBatch();
            } else if (kind == 1) {
                // Edits in any order inside one batch, nested.
                highlighter.beginBatch();
                highlighter.beginBatch();
                randomEdit(random, target, highlighter);
                highlighter.endBatch();
                randomEdit(random, target, highlighter);
                highlighter.endBatch();
            } else {
                randomEdit(random, target, highlighter);
            }
            ASSERT_TRUE(tokensAreValid(highlighter.tokens(), target.content.size()))
                << "round " << round << " step " << step;
        }
        ASSERT_TRUE(highlighter.isPassPending());
        ASSERT_TRUE(waitUntil([&] { return !highlighter.isPassPending(); }));
        EXPECT_EQ(highlighter.tokens(), tokenize(*cLanguage(), target.content));
    }
}

TEST(SyntaxHighlighter, TypingColoursTheEditedLineAtOnceAndTheRestAfterThePass)
{
    FakeTarget target(QStringLiteral("int a = 1;\n").repeated(4000) + QStringLiteral("x"));
    SyntaxHighlighter highlighter(&target, cLanguage());
    highlighter.rehighlight();
    ASSERT_TRUE(waitUntil([&] { return !highlighter.isPassPending(); }));
    const qsizetype end = target.content.size();
    edit(target, highlighter, end, 0, QStringLiteral(" /* int"));
    const QList<Token> now = highlighter.tokens();
    ASSERT_FALSE(now.isEmpty());
    EXPECT_EQ(now.constLast(), (Token{end + 1, 6, TokenKind::comment}));
    EXPECT_TRUE(highlighter.isPassPending());
    // A block comment opened mid-file is only followed to the end by the full pass.
    edit(target, highlighter, 100, 0, QStringLiteral("/*"));
    // The repair sees the edited line only: the comment stops at its end.
    EXPECT_EQ(highlighter.tokens().at(18), (Token{100, 12, TokenKind::comment}));
    EXPECT_GT(highlighter.tokens().size(), 1000);
    ASSERT_TRUE(waitUntil([&] { return !highlighter.isPassPending(); }));
    EXPECT_EQ(highlighter.tokens().constLast(), (Token{100, end + 9 - 100, TokenKind::comment}));
}

TEST(SyntaxHighlighter, APassOvertakenByAnEditOrALanguageIsDropped)
{
    for (const bool changeLanguage : {false, true}) {
        SCOPED_TRACE(changeLanguage ? "language" : "edit");
        FakeTarget target(cSource(200'000));
        SyntaxHighlighter highlighter(&target, cLanguage());
        int installed = 0;
        highlighter.setOnTokensChanged([&] { ++installed; });
        highlighter.rehighlight();
        // Let the zero-delay timer hand the pass to the queue, then overtake it.
        QCoreApplication::processEvents();
        ASSERT_TRUE(highlighter.isPassRunning());
        const LanguagePtr finalLanguage = changeLanguage ? Language::byId(u"cpp") : cLanguage();
        if (changeLanguage)
            highlighter.setLanguage(finalLanguage);
        else
            edit(target, highlighter, 5, 0, QStringLiteral("/* "));
        ASSERT_TRUE(waitUntil([&] { return !highlighter.isPassPending(); }, 60000));
        EXPECT_EQ(installed, 1);
        EXPECT_EQ(highlighter.tokens(), tokenize(*finalLanguage, target.content));
    }
}

TEST(SyntaxHighlighter, APassLandingInsideABatchIsNotShiftedAgainAtItsEnd)
{
    FakeTarget target(QStringLiteral("int a = 1;\n").repeated(5000));
    SyntaxHighlighter highlighter(&target, cLanguage());
    highlighter.rehighlight();
    highlighter.beginBatch();
    edit(target, highlighter, 22, 0, QStringLiteral("xyz "));
    // The pass queued by the rehighlight starts now, sees the edited text and is installed.
    ASSERT_TRUE(waitUntil([&] { return !highlighter.isPassPending(); }));
    highlighter.endBatch();
    EXPECT_EQ(highlighter.tokens(), tokenize(*cLanguage(), target.content));
}

TEST(SyntaxHighlighter, LimitsPlainTextAndTargetsThatGoAway)
{
    {
        auto target = std::make_unique<FakeTarget>(QString(8'000'001, u'1'));
        target->content[0] = u' ';
        SyntaxHighlighter highlighter(target.get(), cLanguage());
        highlighter.rehighlight();
        EXPECT_TRUE(highlighter.tokens().isEmpty());
        EXPECT_EQ(target->paints, 1); // painted to clear the colours
        target->content.chop(1);
        highlighter.rehighlight();
        EXPECT_FALSE(highlighter.tokens().isEmpty());
        // Once the target is gone the document is not shown: nothing is kept.
        FakeTarget second(target->content);
        highlighter.attach(&second);
        target.reset();
        highlighter.rehighlight();
        EXPECT_FALSE(highlighter.tokens().isEmpty());
        EXPECT_EQ(second.paints, 1);
        highlighter.detach(&second);
        highlighter.textDidChange(TextRange{0, 0}, 0);
        EXPECT_TRUE(highlighter.tokens().isEmpty());
    }
    FakeTarget plain(QStringLiteral("int x = 1; // c"));
    SyntaxHighlighter highlighter(&plain, Language::text());
    highlighter.rehighlight();
    EXPECT_TRUE(highlighter.tokens().isEmpty());
    const quint64 before = highlighter.generation();
    highlighter.setLanguage(cLanguage());
    EXPECT_EQ(highlighter.tokens().size(), 3);
    EXPECT_GT(highlighter.generation(), before);
}

TEST(SyntaxHighlighter, LineRangesIncludeTheirTerminator)
{
    const QString text = QStringLiteral("ab\ncd\n\nef");

    const struct
    {
        TextRange range;
        TextRange lines;
    } cases[] = {
        {{0, 0}, {0, 3}},
        {{4, 0}, {3, 3}},
        {{3, 3}, {3, 3}},
        {{3, 4}, {3, 4}},
        {{6, 0}, {6, 1}},
        {{9, 0}, {7, 2}},
        {{1, 50}, {0, 9}},
        {{-4, 1}, {0, 3}},
    };

    for (const auto &c : cases)
        EXPECT_EQ(lineRangeOf(text, c.range), c.lines) << c.range.location << "+" << c.range.length;
}

TEST(SyntaxHighlighter, AnEditInAMinifiedLineRepairsOnlyAroundItself)
{
    // One 2,000,000-unit line: the repair must not re-read it all, yet the tokens stay valid and
    // the full pass makes them exact.
    QString line;
    while (line.size() < 2'000'000)
        line += QStringLiteral("a=\"s\";/*c*/b=1;");
    FakeTarget target(line);
    SyntaxHighlighter highlighter(&target, Language::byId(u"javascript"));
    highlighter.rehighlight();
    ASSERT_TRUE(waitUntil([&] { return !highlighter.isPassPending(); }));
    const QList<Token> before = highlighter.tokens();

    edit(target, highlighter, 1'000'000, 0, QStringLiteral("\""));
    const QList<Token> after = highlighter.tokens();
    ASSERT_TRUE(tokensAreValid(after, target.content.size()));
    // Far from the edit nothing was re-tokenized: the unterminated quote has not coloured the
    // rest of the line yet.
    EXPECT_EQ(after.first(), before.first());
    EXPECT_EQ(after.last().location, before.last().location + 1);
    EXPECT_EQ(after.last().kind, before.last().kind);
    ASSERT_TRUE(waitUntil([&] { return !highlighter.isPassPending(); }));
    EXPECT_EQ(highlighter.tokens(), tokenize(*Language::byId(u"javascript"), target.content));
}
