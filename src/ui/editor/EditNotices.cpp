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

void EditNotices::onModified(int position, int type, const char *text, int length)
{
    if (m_deferred) {
        onModifiedDeferred(position, type, length);
        return;
    }
    if (type & Sci::SC_MOD_BEFOREDELETE) {
        m_pendingDeleteLocation = m_positions.toUtf16(position);
        m_pendingDeleteLength = m_positions.utf16Count(position, position + length);
        return;
    }
    if (!(type & (Sci::SC_MOD_INSERTTEXT | Sci::SC_MOD_DELETETEXT)))
        return;
    if (type & Sci::SC_MOD_INSERTTEXT)
        reportInsertion(position, length, text);
    else
        reportDeletion(m_pendingDeleteLocation, m_pendingDeleteLength);
}

void EditNotices::onModifiedDeferred(int position, int type, int length)
{
    // Only the notices sent before a change (and container notices) arrive here: the previous
    // change is complete by now.
    flush();
    if (type & Sci::SC_MOD_BEFOREINSERT) {
        m_pending = PendingEdit{true, position, length, 0, 0};
    } else if (type & Sci::SC_MOD_BEFOREDELETE) {
        m_pending = PendingEdit{false,
                                position,
                                length,
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
    if (edit.insertion) {
        const char *inserted = reinterpret_cast<const char *>(
            m_sci->SendScintilla(Sci::SCI_GETRANGEPOINTER,
                                 static_cast<unsigned long>(edit.bytePosition),
                                 long(edit.byteLength)));
        reportInsertion(edit.bytePosition, edit.byteLength, inserted);
    } else {
        reportDeletion(edit.utf16Location, edit.utf16Length);
    }
}

void EditNotices::reportInsertion(qsizetype bytePosition, qsizetype byteLength, const char *text)
{
    const TextRange inserted = m_positions.toUtf16Range(bytePosition, bytePosition + byteLength);
    // The UTF-16 snapshot follows the edit instead of being rebuilt from the whole text.
    m_snapshot.inserted(inserted.location, text, byteLength);
    Q_EMIT edited(inserted, inserted.length);
}

void EditNotices::reportDeletion(qsizetype utf16Location, qsizetype utf16Length)
{
    m_snapshot.removed(utf16Location, utf16Length);
    Q_EMIT edited({utf16Location, 0}, -utf16Length);
}

} // namespace mirtex
