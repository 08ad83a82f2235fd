#include "ui/editor/LineEndMarks.h"

#include "ui/editor/EditorPane.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace mirtex {

namespace {

QColor fromScintilla(long bgr)
{
    return QColor(int(bgr & 0xFF), int((bgr >> 8) & 0xFF), int((bgr >> 16) & 0xFF));
}

} // namespace

void LineEndMarks::paint(EditorPane &pane, QPainter &painter, const QString &label)
{
    using Sci = QsciScintillaBase;
    const long lineCount = pane.SendScintilla(Sci::SCI_GETLINECOUNT);
    const long firstShown = pane.SendScintilla(Sci::SCI_GETFIRSTVISIBLELINE);
    const long shown = pane.SendScintilla(Sci::SCI_LINESONSCREEN) + 1;
    const long firstLine = pane.SendScintilla(Sci::SCI_DOCLINEFROMVISIBLE, firstShown);
    const long lastLine
        = std::min(lineCount - 2, // the last line has no break after it
                   long(pane.SendScintilla(Sci::SCI_DOCLINEFROMVISIBLE, firstShown + shown)));
    if (lastLine < firstLine)
        return;

    // Scintilla's own mark: the style's text colour as the blob, its page colour as the letters.
    const QColor blob
        = fromScintilla(pane.SendScintilla(Sci::SCI_STYLEGETFORE, Sci::STYLE_DEFAULT));
    const QColor letters
        = fromScintilla(pane.SendScintilla(Sci::SCI_STYLEGETBACK, Sci::STYLE_DEFAULT));
    const int lineHeight = int(pane.SendScintilla(Sci::SCI_TEXTHEIGHT, firstLine));
    QFont font = pane.font();
    font.setPixelSize(std::max(6, lineHeight * 3 / 5));
    const QFontMetrics metrics(font);
    // Wide enough to cover Scintilla's "LF" drawn in the editor's font.
    const QFontMetrics editorMetrics(pane.font());
    const int width = std::max({metrics.horizontalAdvance(label),
                                editorMetrics.horizontalAdvance(QStringLiteral("LF")),
                                lineHeight})
                      + 6;
    const int marginsWidth = [&pane]() {
        int total = 0;
        for (int margin = 0; margin < 5; ++margin)
            total += int(pane.SendScintilla(Sci::SCI_GETMARGINWIDTHN, margin));
        return total;
    }();

    painter.save();
    painter.setFont(font);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRect(
        QRect(marginsWidth, 0, pane.viewport()->width() - marginsWidth, pane.viewport()->height()));
    for (long line = firstLine; line <= lastLine; ++line) {
        if (!pane.SendScintilla(Sci::SCI_GETLINEVISIBLE, line))
            continue;
        const long end = pane.SendScintilla(Sci::SCI_GETLINEENDPOSITION, line);
        const int x = int(pane.SendScintilla(Sci::SCI_POINTXFROMPOSITION, 0, end));
        const int y = int(pane.SendScintilla(Sci::SCI_POINTYFROMPOSITION, 0, end));
        const QRect mark(x, y + 1, width, lineHeight - 2);
        painter.setPen(Qt::NoPen);
        painter.setBrush(blob);
        painter.drawRoundedRect(mark, 2, 2);
        painter.setPen(letters);
        painter.drawText(mark, Qt::AlignCenter, label);
    }
    painter.restore();
}

} // namespace mirtex
