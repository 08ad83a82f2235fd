// Colours reach the panes: after typing, in the second pane of a split, and not at all above the
// no-highlight limit.
#include "core/app/Preferences.h"
#include "core/languages/Language.h"
#include "core/languages/SyntaxHighlighter.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"
#include "ui/editor/PaneHighlightTarget.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace mirtex;

namespace {

constexpr int kCommentStyle = PaneHighlightTarget::kFirstTokenStyle + int(TokenKind::comment);
constexpr int kKeywordStyle = PaneHighlightTarget::kFirstTokenStyle + int(TokenKind::keyword);

int styleAt(EditorPane *pane, long bytePosition)
{
    return int(pane->SendScintilla(QsciScintillaBase::SCI_GETSTYLEAT, bytePosition));
}

void settle(EditorView &view, int ms = 2000)
{
    QElapsedTimer timer;
    timer.start();
    do {
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    } while ((view.highlighter().isPassPending() || timer.elapsed() < 50) && timer.elapsed() < ms);
}

} // namespace

TEST(HighlightPaint, TypingRecoloursBothPanes)
{
    QTemporaryDir dir;
    Preferences prefs(dir.filePath(QStringLiteral("p.conf")));
    EditorView view(prefs);
    view.resize(600, 400);
    view.show();
    view.loadText("int x = 1;\nreturn x;\n");
    view.setLanguage(Language::byId(u"c"));
    view.setSplit(Qt::Horizontal);
    settle(view);
    EXPECT_EQ(styleAt(view.primaryPane(), 0), kKeywordStyle);

    view.primaryPane()->SendScintilla(QsciScintillaBase::SCI_GOTOPOS, 0L);
    view.primaryPane()->SendScintilla(QsciScintillaBase::SCI_REPLACESEL, "// ");
    settle(view);
    for (EditorPane *pane : {view.primaryPane(), view.secondaryPane()})
        EXPECT_EQ(styleAt(pane, 5), kCommentStyle) << "the commented line is coloured after typing";
    EXPECT_EQ(styleAt(view.secondaryPane(), 14), kKeywordStyle) << "the next line keeps its colour";
}

TEST(HighlightPaint, LongTextsAreColouredAfterThePassAndHugeOnesNotAtAll)
{
    QTemporaryDir dir;
    Preferences prefs(dir.filePath(QStringLiteral("p.conf")));
    EditorView view(prefs);
    view.resize(600, 400);
    view.show();
    QByteArray text;
    while (text.size() < 40'000)
        text += "int a; /* note */\n";
    view.loadText(text);
    view.setLanguage(Language::byId(u"c"));
    settle(view);
    EXPECT_EQ(styleAt(view.primaryPane(), 7), kCommentStyle);

    QByteArray huge(SyntaxHighlighter::kNoHighlightLimit + 1, 'a');
    huge.replace(0, 7, "/* x */");
    view.loadText(huge);
    view.highlighter().rehighlight();
    settle(view);
    EXPECT_TRUE(view.highlighter().tokens().isEmpty());
    EXPECT_EQ(styleAt(view.primaryPane(), 2), 0);
}
