// Printing keeps the editor's colours: the theme's page covers the whole sheet (not only the
// lines), the text is in the theme's colours, and a light theme prints on its own light page.
#include "ui/document/DocumentPrinter.h"

#include "core/app/Preferences.h"
#include "core/languages/Theme.h"
#include "ui/app/AppearanceController.h"
#include "ui/editor/EditorColors.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QImage>
#include <QPainter>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>

using namespace mirtex;

TEST(DocumentPrinterTest, PagesArePrintedInTheThemesColours)
{
    QTemporaryDir dir;
    Preferences prefs(dir.filePath(QStringLiteral("p.conf")));
    // Marks for the screen stay off the paper.
    prefs.setShowLineEndings(true);
    for (const char *themeId : {"dark", "classic", "solarized-light"}) {
        SCOPED_TRACE(themeId);
        const Theme &theme = Theme::resolve(QString::fromLatin1(themeId), false);
        const EditorColors colors = AppearanceController::editorColors(theme);
        EditorView view(prefs);
        view.applyColors(colors);
        view.loadText("Prima riga del testo\nseconda\n");

        DocumentPrinter printer(QStringLiteral("prova.txt"), QPrinter::ScreenResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(dir.filePath(QStringLiteral("out.pdf")));
        QImage sheet(printer.width(), printer.height(), QImage::Format_RGB32);
        ASSERT_FALSE(sheet.isNull());
        sheet.fill(Qt::magenta);
        {
            QPainter painter(&sheet);
            ASSERT_TRUE(printer.print(*view.primaryPane(), painter));
        }
        const QRgb page = colors.background.rgb();
        // Below the text, at the right of the first line, and in a corner of the printed area.
        EXPECT_EQ(sheet.pixel(sheet.width() / 2, sheet.height() - 3), page);
        EXPECT_EQ(sheet.pixel(sheet.width() - 3, sheet.height() / 3), page);
        // Some of the text is in the theme's text colour.
        int textPixels = 0;
        for (int y = 0; y < sheet.height() / 4; ++y) {
            for (int x = 0; x < sheet.width(); ++x)
                textPixels += sheet.pixel(x, y) == colors.text.rgb();
        }
        EXPECT_GT(textPixels, 20);
        // No line-end mark: its blob would be a block in the text colour at the end of a line.
        const EditorPane *pane = view.primaryPane();
        EXPECT_TRUE(pane->eolVisibility()) << "the screen keeps its marks";
        int longestRun = 0;
        for (int y = 0; y < sheet.height() / 4; ++y) {
            int run = 0;
            for (int x = 0; x < sheet.width(); ++x) {
                run = sheet.pixel(x, y) == colors.text.rgb() ? run + 1 : 0;
                longestRun = std::max(longestRun, run);
            }
        }
        EXPECT_LT(longestRun, 14) << "a filled block of text colour: a line-end mark was printed";
    }
}
