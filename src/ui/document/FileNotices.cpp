#include "ui/document/FileNotices.h"

#include "core/document/Document.h"
#include "core/languages/Language.h"
#include "core/languages/SyntaxHighlighter.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/InfoBar.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"
#include "ui/editor/TextPositions.h"

#include <QApplication>
#include <QLocale>
#include <QShortcut>
#include <QVBoxLayout>

namespace mirtex {

namespace {

// After edits the length is looked at once typing pauses, not on every keystroke.
constexpr int kColourCheckDelayMs = 500;

QString lineEndingName(LineEnding ending)
{
    return toString(ending).toUpper();
}

} // namespace

FileNotices::FileNotices(DocumentTab &tab, QWidget *parent)
    : QWidget(parent)
    , m_tab(tab)
    , m_column(new QVBoxLayout(this))
{
    m_column->setContentsMargins(0, 0, 0, 0);
    m_column->setSpacing(0);
    hide();

    m_colourCheck.setSingleShot(true);
    m_colourCheck.setInterval(kColourCheckDelayMs);
    connect(&m_colourCheck, &QTimer::timeout, this, &FileNotices::checkColourLimit);
    connect(tab.editor(), &EditorView::textEdited, this, [this]() {
        // A text has no more UTF-16 units than UTF-8 bytes, and its byte length costs nothing:
        // the edits of a text under the limit in bytes cannot have taken it over.
        if (bar(Kind::coloursOff)
            || m_tab.editor()->positions().byteLength() > SyntaxHighlighter::kNoHighlightLimit)
            m_colourCheck.start();
    });
    connect(&tab, &DocumentTab::stateChanged, this, &FileNotices::followLineEnding);

    auto *toBars = new QShortcut(QKeySequence(Qt::Key_F6), tab.page());
    toBars->setContext(Qt::WidgetWithChildrenShortcut);
    connect(toBars, &QShortcut::activated, this, &FileNotices::focusBars);
}

InfoBar *FileNotices::bar(Kind kind) const
{
    const auto found = m_bars.find(kind);
    return found == m_bars.end() ? nullptr : found->second.data();
}

InfoBar *FileNotices::put(Kind kind, InfoBar *bar)
{
    remove(kind);
    m_bars[kind] = bar;
    int index = 0;
    for (const auto &[shown, widget] : m_bars) {
        if (shown == kind)
            break;
        if (widget)
            ++index;
    }
    m_column->insertWidget(index, bar);
    connect(bar, &InfoBar::closeRequested, this, [this, kind]() { remove(kind); });
    connect(bar, &InfoBar::leaveRequested, this, [this]() { focusText(); });
    show();
    return bar;
}

void FileNotices::remove(Kind kind)
{
    const auto found = m_bars.find(kind);
    if (found == m_bars.end())
        return;
    InfoBar *gone = found->second.data();
    m_bars.erase(found);
    if (kind == Kind::mixedLineEndings)
        m_mixedCounts.clear();
    if (gone) {
        const bool hadFocus = gone->isAncestorOf(QApplication::focusWidget());
        m_column->removeWidget(gone);
        gone->hide();
        gone->deleteLater(); // a button of the bar may still be on the call stack
        if (hadFocus)
            focusText();
    }
    if (m_bars.empty())
        hide();
}

void FileNotices::showRead(const LoadedFile &file,
                           bool lockBinary,
                           std::function<void(TextEncoding)> reopen)
{
    for (Kind kind : {Kind::binary, Kind::encodingHint, Kind::mixedLineEndings})
        remove(kind);

    if (file.binary) {
        if (lockBinary)
            m_tab.setReadOnly(true);
        if (m_tab.document().isReadOnly()) {
            auto *binary = new InfoBar(tr("Il file sembra binario: è aperto in sola lettura "
                                          "perché salvarlo ne cambierebbe i byte."),
                                       InfoBar::Tone::warning);
            binary->setClosable(false); // its button is the way out of read-only
            binary->addButton(tr("Modifica comunque"), [this]() {
                remove(Kind::binary);
                m_tab.setReadOnly(false);
                focusText();
            });
            put(Kind::binary, binary);
        } else {
            put(Kind::binary,
                new InfoBar(tr("Il file sembra binario: salvarlo ne cambierebbe i byte."),
                            InfoBar::Tone::warning));
        }
    }

    if (file.encodingHint) {
        const TextEncoding hint = *file.encodingHint;
        auto *hintBar = new InfoBar(tr("Il testo sembra in %1.").arg(hint.label()));
        hintBar->addButton(tr("Riapri come %1").arg(hint.label()),
                           [reopen = std::move(reopen), hint]() {
                               if (reopen)
                                   reopen(hint);
                           });
        put(Kind::encodingHint, hintBar);
    }

    if (file.mixedLineEndings) {
        m_mixedCounts = file.mixedLineEndings->summary();
        put(Kind::mixedLineEndings, new InfoBar(QString()));
        followLineEnding();
    }
}

void FileNotices::followLineEnding()
{
    InfoBar *mixed = bar(Kind::mixedLineEndings);
    if (!mixed)
        return;
    // Every edit changes the tab's state; the text is made again only when the ending changed.
    const QString text = tr("Fine riga misti: %1. Al salvataggio tutte le righe useranno %2.")
                             .arg(m_mixedCounts, lineEndingName(m_tab.document().lineEnding()));
    if (mixed->text() != text)
        mixed->setText(text);
}

bool FileNotices::locksSaving() const
{
    return bar(Kind::binary) && m_tab.document().isReadOnly();
}

void FileNotices::checkColourLimit()
{
    EditorView *editor = m_tab.editor();
    const LanguagePtr &language = editor->highlighter().language();
    const bool off = language && language->hasRegex()
                     && editor->textLength() > SyntaxHighlighter::kNoHighlightLimit;
    if (!off) {
        remove(Kind::coloursOff);
        return;
    }
    if (bar(Kind::coloursOff))
        return;
    put(Kind::coloursOff,
        new InfoBar(tr("Colori della sintassi disattivati: il file supera %1 caratteri.")
                        .arg(QLocale().toString(SyntaxHighlighter::kNoHighlightLimit))));
}

void FileNotices::focusText()
{
    m_tab.editor()->activePane()->setFocus(Qt::OtherFocusReason);
}

void FileNotices::focusBars()
{
    const QWidget *focused = QApplication::focusWidget();
    if (focused && isAncestorOf(focused)) {
        focusText();
        return;
    }
    for (const auto &[kind, shown] : m_bars) {
        if (shown) {
            shown->focusFirstControl();
            return;
        }
    }
}

} // namespace mirtex
