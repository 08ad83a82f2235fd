// Lets the thread that started a long search stop it from another thread: while a SearchStopScope
// lives on a thread, every SearchMatcher made on that thread watches the flag and fails with
// SearchError::cancelled soon after it is set.
#pragma once

#include <atomic>

namespace mirtex {

class SearchStopScope
{
public:
    // `stop` must outlive the scope; it may be set from any thread.
    explicit SearchStopScope(const std::atomic<bool> &stop);
    ~SearchStopScope();
    SearchStopScope(const SearchStopScope &) = delete;
    SearchStopScope &operator=(const SearchStopScope &) = delete;

    // The flag of the innermost scope on this thread, or null.
    static const std::atomic<bool> *current();

private:
    const std::atomic<bool> *m_outer;
};

} // namespace mirtex
