// A tab whose document is not loaded yet: a session restores many tabs as these, and each reads
// its text when it is first shown (or closed, or its file is opened again), so that start-up time
// does not grow with the tabs the user will not look at.
#pragma once

#include "core/document/SessionState.h"

#include <QWidget>

#include <functional>
#include <optional>

namespace mirtex {

class DocumentTab;

class PendingTab : public QWidget
{
    Q_OBJECT

public:
    // `load` makes the tab's document and has the window put it in this tab's place, or
    // returns nullptr (the tab then stays as it is, or `load` removed it). `entry` is what the
    // session carries over, unchanged, while the tab is not loaded.
    PendingTab(QString title,
               SessionState::Entry entry,
               std::function<DocumentTab *(PendingTab *)> load,
               QWidget *parent = nullptr);

    const QString &title() const { return m_title; }

    const SessionState::Entry &entry() const { return m_entry; }

    // Runs `load` unless it is running already (a question asked while loading).
    DocumentTab *load();

private:
    QString m_title;
    SessionState::Entry m_entry;
    std::function<DocumentTab *(PendingTab *)> m_load;
    bool m_loading = false;
};

} // namespace mirtex
