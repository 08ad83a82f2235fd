#include "ui/editor/ScintillaDocuments.h"

#include <QByteArray>
#include <Qsci/qsciscintillabase.h>

namespace mirtex::ScintillaDocuments {

namespace {
using Sci = QsciScintillaBase;

void *currentDocument(QsciScintillaBase *pane)
{
    return pane->SendScintillaPtrResult(Sci::SCI_GETDOCPOINTER);
}

QByteArray characterSet(QsciScintillaBase *pane, unsigned int message)
{
    QByteArray characters(
        int(pane->SendScintilla(message, 0UL, static_cast<const char *>(nullptr))),
        Qt::Uninitialized);
    pane->SendScintilla(message, 0UL, static_cast<void *>(characters.data()));
    return characters;
}
} // namespace

void replaceWithUnstyled(QsciScintillaBase *pane)
{
    // What belongs to the document rather than to the view, as the pane's setup left it.
    const long codePage = pane->SendScintilla(Sci::SCI_GETCODEPAGE);
    const long eolMode = pane->SendScintilla(Sci::SCI_GETEOLMODE);
    const long tabWidth = pane->SendScintilla(Sci::SCI_GETTABWIDTH);
    const long indent = pane->SendScintilla(Sci::SCI_GETINDENT);
    const long useTabs = pane->SendScintilla(Sci::SCI_GETUSETABS);
    const long tabIndents = pane->SendScintilla(Sci::SCI_GETTABINDENTS);
    const long backspaceUnindents = pane->SendScintilla(Sci::SCI_GETBACKSPACEUNINDENTS);
    const long lineEndTypes = pane->SendScintilla(Sci::SCI_GETLINEENDTYPESALLOWED);
    const long readOnly = pane->SendScintilla(Sci::SCI_GETREADONLY);
    const QByteArray wordCharacters = characterSet(pane, Sci::SCI_GETWORDCHARS);
    const QByteArray whitespace = characterSet(pane, Sci::SCI_GETWHITESPACECHARS);
    const QByteArray punctuation = characterSet(pane, Sci::SCI_GETPUNCTUATIONCHARS);

    void *document = reinterpret_cast<void *>(pane->SendScintilla(
        Sci::SCI_CREATEDOCUMENT, 0UL, long(Sci::SC_DOCUMENTOPTION_STYLES_NONE)));
    pane->SendScintilla(Sci::SCI_SETDOCPOINTER, 0UL, document);
    pane->SendScintilla(Sci::SCI_RELEASEDOCUMENT, 0UL, document); // the pane holds it now

    pane->SendScintilla(Sci::SCI_SETCODEPAGE, codePage);
    pane->SendScintilla(Sci::SCI_SETEOLMODE, eolMode);
    pane->SendScintilla(Sci::SCI_SETTABWIDTH, tabWidth);
    pane->SendScintilla(Sci::SCI_SETINDENT, indent);
    pane->SendScintilla(Sci::SCI_SETUSETABS, useTabs);
    pane->SendScintilla(Sci::SCI_SETTABINDENTS, tabIndents);
    pane->SendScintilla(Sci::SCI_SETBACKSPACEUNINDENTS, backspaceUnindents);
    pane->SendScintilla(Sci::SCI_SETLINEENDTYPESALLOWED, lineEndTypes);
    // Whitespace and punctuation after the word characters, which reset them.
    pane->SendScintilla(Sci::SCI_SETWORDCHARS, 0UL, wordCharacters.constData());
    pane->SendScintilla(Sci::SCI_SETWHITESPACECHARS, 0UL, whitespace.constData());
    pane->SendScintilla(Sci::SCI_SETPUNCTUATIONCHARS, 0UL, punctuation.constData());
    pane->SendScintilla(Sci::SCI_SETREADONLY, readOnly);
}

void share(QsciScintillaBase *from, QsciScintillaBase *to)
{
    to->SendScintilla(Sci::SCI_SETDOCPOINTER, 0UL, currentDocument(from));
}

} // namespace mirtex::ScintillaDocuments
