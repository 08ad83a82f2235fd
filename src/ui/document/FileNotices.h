// What a tab's page tells the user about its file, in info bars stacked most important first:
// the bytes look binary (the text stays read-only until the user chooses to edit it), another
// encoding is far more likely, the line breaks are mixed, the text is too long to be coloured.
// Sits in the page's info-bar place; F6 in the page moves the focus to the bars and back.
#pragma once

#include "core/document/TextEncoding.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <map>

class QVBoxLayout;

namespace mirtex {

class DocumentTab;
class InfoBar;
struct LoadedFile;

class FileNotices : public QWidget
{
    Q_OBJECT

public:
    // Most important first: the order of the bars on the page.
    enum class Kind {
        binary,
        encodingHint,
        mixedLineEndings,
        coloursOff
    };

    // `tab` outlives the notices (they live in its page).
    explicit FileNotices(DocumentTab &tab, QWidget *parent = nullptr);

    // Replaces what an earlier read said with what `file` says. With `lockBinary` a binary file's
    // text becomes read-only until "Modifica comunque"; otherwise its bar only warns (and only
    // offers to edit when the text is already read-only). `reopen` reopens the file in the
    // encoding a hint names.
    void
    showRead(const LoadedFile &file, bool lockBinary, std::function<void(TextEncoding)> reopen);

    // Whether the text is read-only because the file looks binary: saving it would change bytes
    // the user never chose to change.
    bool locksSaving() const;

    // Shows or removes the bar about colours turned off for long texts: after a change of
    // language at once, after edits a moment later.
    void checkColourLimit();

    InfoBar *bar(Kind kind) const;
    void remove(Kind kind);

private:
    InfoBar *put(Kind kind, InfoBar *bar);
    void followLineEnding();
    void focusBars();
    void focusText();

    DocumentTab &m_tab;
    QVBoxLayout *m_column;
    std::map<Kind, QPointer<InfoBar>> m_bars;
    QString m_mixedCounts; // "CRLF 120, LF 3" while the mixed-endings bar shows
    QTimer m_colourCheck;
};

} // namespace mirtex
