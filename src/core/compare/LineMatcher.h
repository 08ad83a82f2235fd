// The matcher under every comparison: a patience diff over integer keys (unique common keys as
// anchors, found by a longest increasing subsequence), with common prefix and suffix trimming at
// every level and Myers' greedy algorithm, bounded at 1500 edits, for stretches without a unique
// common key. Pure; any thread.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace mirtex {

struct LineMatch
{
    int32_t left = 0;
    int32_t right = 0;

    friend constexpr bool operator==(const LineMatch &, const LineMatch &) = default;
};

inline constexpr int kMyersEditBound = 1500;

// Pairs of equal keys, sorted by left index, strictly increasing in both components. Keys must be
// non-negative and below `keyCount` (the number of distinct keys; counting arrays are sized by it).
std::vector<LineMatch>
matchLines(std::span<const int32_t> a, std::span<const int32_t> b, int32_t keyCount);

} // namespace mirtex
