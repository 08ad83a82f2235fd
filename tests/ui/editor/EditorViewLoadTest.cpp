#include "core/app/Preferences.h"
#include "support/TextRangePrinter.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QCoreApplication>
#include <QKeyEvent>
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
        // Large texts announce a change just after it, at the latest on the next event-loop turn.
        EXPECT_EQ(edits.count(), size > EditorView::kDeferredEditsAboveBytes ? 0 : 1);
        view->flushPendingEdit();
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
        QCoreApplication::processEvents();
        EXPECT_EQ(edits.count(), 2);
        view->setSplit(std::nullopt);
        view.reset();
    }
}

} // namespace

// In a large text a typed key is announced as soon as the key is handled, and the UTF-16
// snapshot that follows the edits stays equal to the text.
TEST(EditorViewLoad, KeysInLargeTextsAreAnnouncedWhenHandled)
{
    QTemporaryDir folder;
    Preferences prefs(folder.filePath(QStringLiteral("Mirtex++.conf")));
    EditorView view(prefs);
    const QByteArray text = sampleText(EditorView::kDeferredEditsAboveBytes + 1000);
    view.loadText(text);
    const QString before = view.text(); // the snapshot exists and will follow the edits
    qsizetype reported = 0;
    QObject::connect(&view, &EditorView::textEdited, [&reported](TextRange, qsizetype delta) {
        reported += delta;
    });
    EditorPane *pane = view.primaryPane();
    pane->SendScintilla(Sci::SCI_GOTOPOS, long(text.size() / 2));
    for (const auto &[key, typed] : {std::pair{Qt::Key_X, QStringLiteral("x")},
                                     std::pair{Qt::Key_Eacute, QStringLiteral("é")},
                                     std::pair{Qt::Key_Backspace, QString()}}) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, typed);
        QCoreApplication::sendEvent(pane, &press);
    }
    EXPECT_EQ(reported, 1) << "two characters typed and one deleted, each announced at once";
    EXPECT_EQ(view.text(), QString::fromUtf8(view.utf8Text()));
    EXPECT_NE(view.text(), before);
}
