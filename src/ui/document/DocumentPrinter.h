// Prints a tab's text as the editor shows it: the theme's page and token colours on the whole
// page (not only behind the lines), the line numbers when the editor shows them, and a header
// with the document's name and the page number.
#pragma once

#include <QColor>
#include <QString>
#include <Qsci/qsciprinter.h>

namespace mirtex {

class EditorPane;

class DocumentPrinter : public QsciPrinter
{
public:
    // `title` heads every page.
    explicit DocumentPrinter(const QString &title, PrinterMode mode = HighResolution);

    // Prints the whole text of `pane` with its colours; false when printing failed.
    bool print(EditorPane &pane);
    // The same on `painter` (a preview, or an image in tests); the printer gives the page size.
    bool print(EditorPane &pane, QPainter &painter);

    void formatPage(QPainter &painter, bool drawing, QRect &area, int pageNumber) override;

private:
    void takeColours(EditorPane &pane);

    QString m_title;
    QColor m_page;
    QColor m_text;
};

} // namespace mirtex
