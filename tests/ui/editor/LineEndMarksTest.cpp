// "Mostra i fine riga" shows the document's own line ending, although the editor's text always
// holds LF: each ending looks different at the end of a line, and a change of ending shows at once.
#include "core/app/Preferences.h"
#include "ui/document/DocumentTab.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QApplication>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

using namespace mirtex;

namespace {

class LineEndMarksTest : public ::testing::Test
{
protected:
    QTemporaryDir dir;
    Preferences prefs{dir.filePath(QStringLiteral("p.conf"))};

    std::unique_ptr<DocumentTab> tabWith(LineEnding ending)
    {
        auto tab = std::make_unique<DocumentTab>(prefs,
                                                 QByteArray("riga uno\nriga due\n"),
                                                 std::nullopt,
                                                 TextEncoding::utf8(),
                                                 ending,
                                                 QStringLiteral("nuovo 1"));
        tab->page()->resize(500, 200);
        tab->page()->show();
        QApplication::processEvents();
        return tab;
    }

    // What is drawn just after the end of the first line.
    static QImage lineEnd(DocumentTab &tab)
    {
        EditorPane *pane = tab.editor()->primaryPane();
        const long end = pane->SendScintilla(QsciScintillaBase::SCI_GETLINEENDPOSITION, 0L);
        const int x = int(pane->SendScintilla(QsciScintillaBase::SCI_POINTXFROMPOSITION, 0, end));
        const int height = int(pane->SendScintilla(QsciScintillaBase::SCI_TEXTHEIGHT, 0L));
        return pane->viewport()->grab(QRect(x, 0, 80, height)).toImage();
    }
};

} // namespace

TEST_F(LineEndMarksTest, EachEndingIsDrawnAsItselfOnlyWhenShown)
{
    for (const bool shown : {true, false}) {
        SCOPED_TRACE(shown ? "shown" : "hidden");
        prefs.setShowLineEndings(shown);
        auto tab = tabWith(LineEnding::crlf);
        const QImage opened = lineEnd(*tab);
        // Converting the document's ending changes the mark at once.
        QList<QImage> marks;
        for (const LineEnding ending : {LineEnding::lf, LineEnding::crlf, LineEnding::cr}) {
            tab->document().setLineEnding(ending);
            QApplication::processEvents();
            marks.append(lineEnd(*tab));
        }
        EXPECT_EQ(marks[0] != marks[1], shown) << "LF, CRLF";
        EXPECT_EQ(marks[0] != marks[2], shown) << "LF, CR";
        EXPECT_EQ(marks[1] != marks[2], shown) << "CRLF, CR";
        EXPECT_EQ(opened, marks[1]) << "a CRLF file shows CRLF from the start";
    }
}
