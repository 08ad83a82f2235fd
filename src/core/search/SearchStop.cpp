#include "core/search/SearchStop.h"

namespace mirtex {

namespace {
thread_local const std::atomic<bool> *t_stop = nullptr;
} // namespace

SearchStopScope::SearchStopScope(const std::atomic<bool> &stop)
    : m_outer(t_stop)
{
    t_stop = &stop;
}

SearchStopScope::~SearchStopScope()
{
    t_stop = m_outer;
}

const std::atomic<bool> *SearchStopScope::current()
{
    return t_stop;
}

} // namespace mirtex
