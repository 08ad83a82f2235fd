#include "ui/document/DocumentPrinter.h"

#include "ui/editor/EditorPane.h"

#include <QCoreApplication>
#include <QFontMetrics>
#include <QPainter>

namespace mirtex {

namespace {

// Scintilla keeps colours as 0xBBGGRR.
QColor fromScintilla(long bgr)
{
    return QColor(int(bgr & 0xFF), int((bgr >> 8) & 0xFF), int((bgr >> 16) & 0xFF));
}

// Line-end marks and whitespace dots are for the screen: off while the pages are laid out.
class InvisiblesHidden
{
public:
    explicit InvisiblesHidden(EditorPane &pane)
        : m_pane(pane)
        , m_eol(pane.eolVisibility())
        , m_whitespace(pane.whitespaceVisibility())
    {
        m_pane.setEolVisibility(false);
        m_pane.setWhitespaceVisibility(QsciScintilla::WsInvisible);
    }

    ~InvisiblesHidden()
    {
        m_pane.setEolVisibility(m_eol);
        m_pane.setWhitespaceVisibility(m_whitespace);
    }

    InvisiblesHidden(const InvisiblesHidden &) = delete;
    InvisiblesHidden &operator=(const InvisiblesHidden &) = delete;

private:
    EditorPane &m_pane;
    bool m_eol;
    QsciScintilla::WhitespaceVisibility m_whitespace;
};

} // namespace

DocumentPrinter::DocumentPrinter(const QString &title, PrinterMode mode)
    : QsciPrinter(mode)
    , m_title(title)
    , m_page(Qt::white)
    , m_text(Qt::black)
{
    setDocName(title);
}

void DocumentPrinter::takeColours(EditorPane &pane)
{
    m_page = fromScintilla(
        pane.SendScintilla(QsciScintillaBase::SCI_STYLEGETBACK, QsciScintillaBase::STYLE_DEFAULT));
    m_text = fromScintilla(
        pane.SendScintilla(QsciScintillaBase::SCI_STYLEGETFORE, QsciScintillaBase::STYLE_DEFAULT));
    // The screen's colours, the line numbers' included (other modes force a white page).
    pane.SendScintilla(QsciScintillaBase::SCI_SETPRINTCOLOURMODE,
                       QsciScintillaBase::SC_PRINT_SCREENCOLOURS);
}

bool DocumentPrinter::print(EditorPane &pane)
{
    takeColours(pane);
    const InvisiblesHidden hidden(pane);
    return printRange(&pane) != 0;
}

bool DocumentPrinter::print(EditorPane &pane, QPainter &painter)
{
    takeColours(pane);
    const InvisiblesHidden hidden(pane);
    return printRange(&pane, painter) != 0;
}

void DocumentPrinter::formatPage(QPainter &painter, bool drawing, QRect &area, int pageNumber)
{
    const QFontMetrics metrics(painter.font(), painter.device());
    const int headerHeight = metrics.height() * 2;
    if (drawing) {
        painter.fillRect(area, m_page);
        painter.setPen(m_text);
        const QRect header(area.left(), area.top(), area.width(), metrics.height());
        painter.drawText(header, Qt::AlignLeft | Qt::AlignVCenter, m_title);
        painter.drawText(
            header,
            Qt::AlignRight | Qt::AlignVCenter,
            QCoreApplication::translate("DocumentPrinter", "Pagina %1").arg(pageNumber));
    }
    area.setTop(area.top() + headerHeight);
}

} // namespace mirtex
