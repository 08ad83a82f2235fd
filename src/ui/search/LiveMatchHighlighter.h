// While the find panel is open, outlines every match of its query in the visible part of the
// current editor and tells which match the selection is ("3 di 12"). Recomputed a moment after the
// query, an option, the text, the selection or the scroll position changes; the matching runs on
// workers (the visible lines as one small copy, the count over a snapshot of the whole text), and
// a generation counter drops results that a newer request superseded, so typing never waits for
// it. Main thread only.
#pragma once

#include "core/search/SearchOptions.h"
#include "core/text/TextRange.h"

#include <QMetaObject>
#include <QObject>
#include <QPointer>
#include <QThreadPool>

#include <atomic>
#include <memory>
#include <vector>

class QTimer;

namespace mirtex {

class CommandContext;
class EditorView;
class FindModel;

class LiveMatchHighlighter : public QObject
{
    Q_OBJECT

public:
    LiveMatchHighlighter(CommandContext &context, FindModel &model, QObject *parent = nullptr);
    ~LiveMatchHighlighter() override;

    // Quiet time after a change before the matches are searched again.
    static constexpr int kDebounceMs = 150;
    // At most this many matches are outlined in one visible stretch of text.
    static constexpr int kVisibleLimit = 5'000;
    // The Scintilla indicator the matches are drawn with (marks use another).
    static constexpr int kIndicator = 11;

    // On while the panel is visible; off clears the outlines.
    void setActive(bool active);

    // The ranges outlined now, ascending (tests).
    const std::vector<TextRange> &shownRanges() const { return m_shown; }

Q_SIGNALS:
    // "N di M", "M occorrenze." or empty.
    void counterChanged(const QString &text);
    // Both the outlines and the counter are up to date with the last request (tests).
    void settled();

private:
    void follow(EditorView *editor);
    void schedule();
    void refresh();
    void paint(EditorView *editor, const std::vector<TextRange> &ranges);
    void setCounter(const QString &text);
    void settleOne(quint64 generation);

    CommandContext &m_context;
    FindModel &m_model;
    QTimer *m_debounce;
    bool m_active = false;
    QPointer<EditorView> m_editor;
    std::vector<QMetaObject::Connection> m_editorConnections;
    SearchOptions m_lastOptions;
    std::vector<TextRange> m_shown;
    quint64 m_generation = 0;
    int m_pending = 0; // jobs of the current generation still running
    std::shared_ptr<std::atomic<bool>> m_stop;
    QString m_counter;
    // Its own threads, so that a slow pattern never holds up other background work.
    QThreadPool m_pool;
};

} // namespace mirtex
