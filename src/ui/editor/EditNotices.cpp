#include "ui/editor/EditNotices.h"

#include "ui/editor/TextPositions.h"
#include "ui/editor/TextSnapshotCache.h"

#include <Qsci/qsciscintillabase.h>

namespace mirtex {

using Sci = QsciScintillaBase;

namespace {
// Container notices carry the undo steps' selections (see EditBatchApplier); they pass in both
// modes.
constexpr long kImmediateMask = Sci::SC_MOD_INSERTTEXT | Sci::SC_MOD_DELETETEXT
                                | Sci::SC_MOD_BEFOREDELETE | Sci::SC_PERFORMED_USER
                                | Sci::SC_PERFORMED_UNDO | Sci::SC_PERFORMED_REDO
                                | Sci::SC_MOD_CONTAINER;
constexpr long kDeferredMask
    = Sci::SC_MOD_BEFOREINSERT | Sci::SC_MOD_BEFOREDELETE | Sci::SC_MOD_CONTAINER;
} // namespace

EditNotices::EditNotices(QsciScintillaBase *scintilla,
                         const TextPositions &positions,
                         TextSnapshotCache &snapshot,
                         QObject *parent)
    : QObject(parent)
    , m_sci(scintilla)
    , m_positions(positions)
    , m_snapshot(snapshot)
{
    m_sci->SendScintilla(Sci::SCI_SETMODEVENTMASK, kImmediateMask);
    connect(
        m_sci,
        &Sci::SCN_MODIFIED,
        this,
        [this](int position, int type, const char *text, int length, int, int, int, int, int, int) {
            onModified(position, type, text, length);
        });
}

void EditNotices::suspend()
{
    flush();
    m_sci->SendScintilla(Sci::SCI_SETMODEVENTMASK, 0L);
    m_snapshot.invalidate();
    m_unchanged.forget();
}

void EditNotices::resume(qsizetype byteLength)
{
    // QScintilla's accessibility notice after each change counts the characters from the start
    // of the text up to it: about 4 ns a byte. Large texts therefore only ask for the notices sent
    // before a change, and report each change right after it (next notice, end of the input
    // event, or the next event-loop turn).
    m_deferred = byteLength > kDeferredAboveBytes;
    m_sci->SendScintilla(Sci::SCI_SETMODEVENTMASK, m_deferred ? kDeferredMask : kImmediateMask);
}

void EditNotices::holdDeletions(bool hold)
{
    m_holdDeletions = hold;
    if (!hold)
        flush();
}

void EditNotices::followUnchangedEnds(int position, int type, int length)
{
    // Immediate notices come after a change, deferred ones before it.
    const auto textLength = qsizetype(m_sci->SendScintilla(Sci::SCI_GETLENGTH));
    if (type & Sci::SC_MOD_INSERTTEXT)
        m_unchanged.edited(position, length, textLength);
    else if (type & Sci::SC_MOD_DELETETEXT)
        m_unchanged.edited(position, 0, textLength);
    else if (type & Sci::SC_MOD_BEFOREINSERT)
        m_unchanged.edited(position, length, textLength + length);
    else if (type & Sci::SC_MOD_BEFOREDELETE && m_deferred)
        m_unchanged.edited(position, 0, textLength - length);
}

void EditNotices::onModified(int position, int type, const char *text, int length)
{
    followUnchangedEnds(position, type, length);
    if (m_deferred) {
        onModifiedDeferred(position, type, length);
        return;
    }
    if (type & Sci::SC_MOD_BEFOREDELETE) {
        flush();
        m_pendingDeleteLocation = m_positions.toUtf16(position);
        m_pendingDeleteLength = m_positions.utf16Count(position, position + length);
        return;
    }
    if (type & Sci::SC_MOD_DELETETEXT) {
        flush();
        if (!m_holdDeletions) {
            report(position, 0, nullptr, m_pendingDeleteLocation, m_pendingDeleteLength);
            return;
        }
        // Typing or pasting over a selection inserts right here next.
        m_pending = PendingEdit{position, 0, m_pendingDeleteLocation, m_pendingDeleteLength};
        QMetaObject::invokeMethod(this, &EditNotices::flush, Qt::QueuedConnection);
        return;
    }
    if (!(type & Sci::SC_MOD_INSERTTEXT))
        return;
    if (m_pending && m_pending->bytePosition == position) {
        const PendingEdit deletion = *m_pending;
        m_pending.reset();
        report(position, length, text, deletion.utf16Location, deletion.deletedUnits);
        return;
    }
    flush();
    report(position, length, text, m_positions.toUtf16(position), 0);
}

void EditNotices::onModifiedDeferred(int position, int type, int length)
{
    // Only the notices sent before a change (and container notices) arrive here: the previous
    // change is complete by now.
    if (type & Sci::SC_MOD_BEFOREINSERT && m_holdDeletions && m_pending
        && m_pending->insertedBytes == 0 && m_pending->bytePosition == position) {
        m_pending->insertedBytes = length; // a deletion replaced by this insertion
        return;
    }
    flush();
    if (type & Sci::SC_MOD_BEFOREINSERT) {
        m_pending = PendingEdit{position, length, -1, 0};
    } else if (type & Sci::SC_MOD_BEFOREDELETE) {
        m_pending = PendingEdit{position,
                                0,
                                m_positions.toUtf16(position),
                                m_positions.utf16Count(position, position + length)};
    } else {
        return;
    }
    QMetaObject::invokeMethod(this, &EditNotices::flush, Qt::QueuedConnection);
}

void EditNotices::flush()
{
    if (!m_pending)
        return;
    const PendingEdit edit = *m_pending;
    m_pending.reset();
    const char *inserted = edit.insertedBytes == 0
                               ? nullptr
                               : reinterpret_cast<const char *>(m_sci->SendScintilla(
                                   Sci::SCI_GETRANGEPOINTER,
                                   static_cast<unsigned long>(edit.bytePosition),
                                   long(edit.insertedBytes)));
    const qsizetype location
        = edit.utf16Location >= 0 ? edit.utf16Location : m_positions.toUtf16(edit.bytePosition);
    report(edit.bytePosition, edit.insertedBytes, inserted, location, edit.deletedUnits);
}

void EditNotices::report(qsizetype bytePosition,
                         qsizetype insertedBytes,
                         const char *insertedText,
                         qsizetype utf16Location,
                         qsizetype deletedUnits)
{
    const qsizetype insertedUnits
        = insertedBytes == 0 ? 0
                             : m_positions.utf16Count(bytePosition, bytePosition + insertedBytes);
    // The UTF-16 snapshot follows the edit instead of being rebuilt from the whole text.
    if (deletedUnits > 0)
        m_snapshot.removed(utf16Location, deletedUnits);
    if (insertedBytes > 0)
        m_snapshot.inserted(utf16Location, insertedText, insertedBytes);
    Q_EMIT edited({utf16Location, insertedUnits}, insertedUnits - deletedUnits);
}

} // namespace mirtex
