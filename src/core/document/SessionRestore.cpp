// Pure parts of restoring a session.
#include "core/document/SessionRestore.h"

#include "core/document/FileNaming.h"

#include <QCoreApplication>

#include <algorithm>

namespace mirtex::SessionRestore {

TextRange clampSelection(TextRange selection, qsizetype textLength)
{
    const qsizetype location = std::clamp<qsizetype>(selection.location, 0, textLength);
    const qsizetype length = std::clamp<qsizetype>(selection.length, 0, textLength - location);
    return {location, length};
}

qsizetype lineCountOf(QStringView text)
{
    qsizetype lines = 1;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == u'\n') {
            ++lines;
        } else if (c == u'\r') {
            ++lines;
            if (i + 1 < text.size() && text[i + 1] == u'\n')
                ++i;
        }
    }
    return lines;
}

QList<qsizetype> bookmarksWithin(const QList<qsizetype> &lineIndexes, qsizetype lineCount)
{
    QList<qsizetype> kept;
    kept.reserve(lineIndexes.size());
    for (qsizetype line : lineIndexes) {
        if (line >= 0 && line < lineCount)
            kept.append(line);
    }
    std::sort(kept.begin(), kept.end());
    kept.erase(std::unique(kept.begin(), kept.end()), kept.end());
    return kept;
}

std::optional<qsizetype> clampSelected(qsizetype selected, qsizetype tabCount)
{
    if (tabCount <= 0)
        return std::nullopt;
    return std::clamp<qsizetype>(selected, 0, tabCount - 1);
}

void nameUntitledEntries(QList<SessionState::Entry> &entries)
{
    QStringList inUse;
    for (const SessionState::Entry &entry : entries) {
        if (!entry.path && entry.untitledName)
            inUse.append(*entry.untitledName);
    }
    for (SessionState::Entry &entry : entries) {
        if (entry.path || entry.untitledName)
            continue;
        entry.untitledName = mirtex::nextUntitledName(inUse);
        inUse.append(*entry.untitledName);
    }
}

} // namespace mirtex::SessionRestore
