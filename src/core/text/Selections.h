// Every selection of a pane and which one is the main one (the one the status bar and
// single-selection commands follow). Never empty.
#pragma once

#include "core/text/Selection.h"

#include <vector>

namespace mirtex {

class Selections
{
public:
    // One caret at the start of the text.
    Selections() = default;

    Selections(Selection only)
        : m_ranges{only}
    {}

    // `ranges` must not be empty; `mainIndex` is clamped into it.
    Selections(std::vector<Selection> ranges, std::size_t mainIndex = 0)
        : m_ranges(std::move(ranges))
        , m_main(std::min(mainIndex, m_ranges.empty() ? 0 : m_ranges.size() - 1))
    {
        if (m_ranges.empty())
            m_ranges.push_back({});
    }

    const std::vector<Selection> &ranges() const { return m_ranges; }

    std::size_t size() const { return m_ranges.size(); }

    std::size_t mainIndex() const { return m_main; }

    const Selection &main() const { return m_ranges[m_main]; }

    const Selection &operator[](std::size_t index) const { return m_ranges[index]; }

    auto begin() const { return m_ranges.begin(); }

    auto end() const { return m_ranges.end(); }

    friend bool operator==(const Selections &, const Selections &) = default;

private:
    std::vector<Selection> m_ranges{Selection{}};
    std::size_t m_main = 0;
};

} // namespace mirtex
