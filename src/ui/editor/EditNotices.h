// Turns Scintilla's modification notices of a document into edits in UTF-16 terms, and keeps the
// text's UTF-16 snapshot in step with them. While deletions are held (during an input event or an
// edit batch), a deletion followed by an insertion at the same place (typing or pasting over a
// selection, a replacement) is reported as one replacement. Large texts are watched in a deferred
// mode: only the notices sent before a change are asked for, and every change is reported just
// after it. Main thread only.
#pragma once

#include "core/editor/UnchangedEnds.h"
#include "core/text/TextRange.h"

#include <QObject>

#include <optional>

class QsciScintillaBase;

namespace mirtex {

class TextPositions;
class TextSnapshotCache;

class EditNotices : public QObject
{
    Q_OBJECT

public:
    // Texts above this size report their edits just after they happen.
    static constexpr qsizetype kDeferredAboveBytes = 2'000'000;

    // Watches the document shown by `scintilla` (the tab's first pane; other panes of the same
    // document must ask for no notices).
    EditNotices(QsciScintillaBase *scintilla,
                const TextPositions &positions,
                TextSnapshotCache &snapshot,
                QObject *parent = nullptr);

    // Stops the notices while a text is put in without being reported.
    void suspend();
    // Resumes them for a text of `byteLength` bytes, choosing the mode.
    void resume(qsizetype byteLength);

    bool isDeferred() const { return m_deferred; }

    // Reports a change that was made but not yet announced; does nothing otherwise.
    void flush();

    bool hasPending() const { return m_pending.has_value(); }

    // The bytes at the start and the end of the text unchanged since markUnchanged(), seen from
    // every change in both modes; forgotten while suspended.
    const UnchangedEnds &unchangedEnds() const { return m_unchanged; }

    void markUnchanged(qsizetype byteLength) { m_unchanged.reset(byteLength); }

    // While held, a deletion is announced with the next change (merged with an insertion at its
    // place) or at flush; releasing announces it.
    void holdDeletions(bool hold);

Q_SIGNALS:
    // One change of the text: the edited range as it stands in the new text, and the change in
    // length (new minus old), both in UTF-16 units.
    void edited(mirtex::TextRange editedInNewText, qsizetype changeInLength);

private:
    void onModified(int position, int type, const char *text, int length);
    void onModifiedDeferred(int position, int type, int length);
    void followUnchangedEnds(int position, int type, int length);
    // Announces one change: `deletedUnits` went at `utf16Location` and `insertedBytes` (at
    // `bytePosition`, their text at `insertedText` when at hand) came in their place.
    void report(qsizetype bytePosition,
                qsizetype insertedBytes,
                const char *insertedText,
                qsizetype utf16Location,
                qsizetype deletedUnits);

    // A change made but not yet announced: a deletion, an insertion, or both at one place.
    struct PendingEdit
    {
        qsizetype bytePosition = 0;
        qsizetype insertedBytes = 0;
        qsizetype utf16Location = -1; // measured before a deletion; -1: measure when announced
        qsizetype deletedUnits = 0;
    };

    QsciScintillaBase *m_sci;
    const TextPositions &m_positions;
    TextSnapshotCache &m_snapshot;
    bool m_deferred = false;
    bool m_holdDeletions = false;
    std::optional<PendingEdit> m_pending;
    qsizetype m_pendingDeleteLocation = 0;
    qsizetype m_pendingDeleteLength = 0;
    UnchangedEnds m_unchanged;
};

} // namespace mirtex
