#include "core/app/Preferences.h"
#include "support/TextRangePrinter.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace mirtex;
using Sci = QsciScintillaBase;

namespace {

// A text of about `bytes` bytes with accented letters and an emoji on every line.
QByteArray sampleText(qsizetype bytes)
{
    const QByteArray line = "caff\xC3\xA8 in citt\xC3\xA0 \xF0\x9F\x9A\x80 riga di prova\n";
    QByteArray text;
    text.reserve(bytes + line.size());
    while (text.size() < bytes)
        text += line;
    return text;
}

// Small texts keep the ordinary document; texts past the colouring limit get one without style
// bytes. Either way the pane's settings, the UTF-16 positions and a split must behave the same.
TEST(EditorViewLoad, LargeAndSmallTextsLoadAndSplitAlike)
{
    QTemporaryDir folder;
    ASSERT_TRUE(folder.isValid());
    Preferences prefs(folder.filePath(QStringLiteral("Mirtex++.conf")));
    prefs.setTabWidth(7);

    for (const qsizetype size : {qsizetype(1000), qsizetype(25'000'000)}) {
        SCOPED_TRACE(size);
        const QByteArray text = sampleText(size);
        const bool unstyled = size > 24'000'000;
        auto view = std::make_unique<EditorView>(prefs);
        view->loadText(text);
        EditorPane *pane = view->primaryPane();

        EXPECT_TRUE(view->utf8Equals(text));
        EXPECT_EQ(view->textLength(), QString::fromUtf8(text).size());
        EXPECT_EQ(pane->SendScintilla(Sci::SCI_CANUNDO), 0);
        EXPECT_EQ(pane->SendScintilla(Sci::SCI_GETCODEPAGE), long(Sci::SC_CP_UTF8));
        EXPECT_EQ(pane->SendScintilla(Sci::SCI_GETEOLMODE), long(Sci::SC_EOL_LF));
        EXPECT_EQ(pane->SendScintilla(Sci::SCI_GETTABWIDTH), 7);
        EXPECT_EQ(pane->SendScintilla(Sci::SCI_GETDOCUMENTOPTIONS)
                      & Sci::SC_DOCUMENTOPTION_STYLES_NONE,
                  unstyled ? long(Sci::SC_DOCUMENTOPTION_STYLES_NONE) : 0L);

        // Typing after the emoji of the second line is reported in UTF-16 units.
        QList<TextRange> edits;
        QObject::connect(view.get(), &EditorView::textEdited, [&edits](TextRange range, qsizetype) {
            edits.append(range);
        });
        const qsizetype lineBytes = text.indexOf('\n') + 1;
        const qsizetype emojiEnd = text.indexOf("\xF0\x9F\x9A\x80") + 4;
        pane->SendScintilla(Sci::SCI_GOTOPOS, long(lineBytes + emojiEnd));
        pane->SendScintilla(Sci::SCI_REPLACESEL, "\xC3\xA9");
        ASSERT_EQ(edits.count(), 1);
        const qsizetype lineUnits = QString::fromUtf8(text.first(lineBytes)).size();
        const qsizetype emojiEndUnits = QString::fromUtf8(text.first(emojiEnd)).size();
        EXPECT_EQ(edits.at(0), (TextRange{lineUnits + emojiEndUnits, 1}));
        EXPECT_FALSE(view->utf8Equals(text));

        // The second pane shows the same document: an edit there undoes the one above.
        view->setSplit(Qt::Horizontal);
        EditorPane *second = view->secondaryPane();
        ASSERT_NE(second, nullptr);
        EXPECT_EQ(second->SendScintilla(Sci::SCI_GETLENGTH), text.size() + 2);
        second->SendScintilla(Sci::SCI_UNDO);
        EXPECT_TRUE(view->utf8Equals(text));
        EXPECT_EQ(edits.count(), 2);
        view->setSplit(std::nullopt);
        view.reset();
    }
}

} // namespace
