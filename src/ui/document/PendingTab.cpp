#include "ui/document/PendingTab.h"

namespace mirtex {

PendingTab::PendingTab(QString title,
                       SessionState::Entry entry,
                       std::function<DocumentTab *(PendingTab *)> load,
                       QWidget *parent)
    : QWidget(parent)
    , m_title(std::move(title))
    , m_entry(std::move(entry))
    , m_load(std::move(load))
{}

DocumentTab *PendingTab::load()
{
    if (m_loading || !m_load)
        return nullptr;
    m_loading = true;
    // A copy: a successful load deletes this tab, and the function with it.
    const auto load = m_load;
    DocumentTab *loaded = load(this);
    if (!loaded)
        m_loading = false;
    return loaded;
}

} // namespace mirtex
