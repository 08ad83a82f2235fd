#include "LineMatcher.h"

#include <algorithm>

namespace mirtex {

namespace {

struct WorkRange
{
    int32_t aLo, aHi, bLo, bHi;
};

class Matcher
{
public:
    Matcher(std::span<const int32_t> a, std::span<const int32_t> b, int32_t keyCount)
        : m_a(a)
        , m_b(b)
        , m_leftCount(size_t(keyCount), 0)
        , m_rightCount(size_t(keyCount), 0)
        , m_rightLast(size_t(keyCount), 0)
    {}

    std::vector<LineMatch> run()
    {
        std::vector<WorkRange> stack;
        stack.push_back({0, int32_t(m_a.size()), 0, int32_t(m_b.size())});
        while (!stack.empty()) {
            WorkRange range = stack.back();
            stack.pop_back();
            step(range, stack);
        }
        std::sort(m_matches.begin(), m_matches.end(), [](const LineMatch &x, const LineMatch &y) {
            return x.left < y.left;
        });
        return std::move(m_matches);
    }

private:
    void step(WorkRange r, std::vector<WorkRange> &stack)
    {
        while (r.aLo < r.aHi && r.bLo < r.bHi && m_a[r.aLo] == m_b[r.bLo])
            m_matches.push_back({r.aLo++, r.bLo++});
        while (r.aLo < r.aHi && r.bLo < r.bHi && m_a[r.aHi - 1] == m_b[r.bHi - 1])
            m_matches.push_back({--r.aHi, --r.bHi});
        if (r.aLo == r.aHi || r.bLo == r.bHi)
            return;

        const std::vector<LineMatch> &anchors = findAnchors(r);
        if (anchors.empty()) {
            myers(r);
            return;
        }
        // Pushed in reverse so that ranges are taken in text order (the result is sorted anyway;
        // this only keeps the stack's memory access local).
        int32_t aEnd = r.aHi;
        int32_t bEnd = r.bHi;
        for (auto it = anchors.rbegin(); it != anchors.rend(); ++it) {
            stack.push_back({it->left + 1, aEnd, it->right + 1, bEnd});
            m_matches.push_back(*it);
            aEnd = it->left;
            bEnd = it->right;
        }
        stack.push_back({r.aLo, aEnd, r.bLo, bEnd});
    }

    // Keys once on each side of the middle, as (left, right) pairs in left order, reduced to their
    // longest subsequence with increasing right indices.
    const std::vector<LineMatch> &findAnchors(const WorkRange &r)
    {
        for (int32_t i = r.aLo; i < r.aHi; ++i) {
            const int32_t key = m_a[i];
            ++m_leftCount[key];
        }
        for (int32_t j = r.bLo; j < r.bHi; ++j) {
            const int32_t key = m_b[j];
            if (m_leftCount[key] != 0) {
                ++m_rightCount[key];
                m_rightLast[key] = j;
            }
        }
        m_candidates.clear();
        for (int32_t i = r.aLo; i < r.aHi; ++i) {
            const int32_t key = m_a[i];
            if (m_leftCount[key] == 1 && m_rightCount[key] == 1)
                m_candidates.push_back({i, m_rightLast[key]});
        }
        for (int32_t i = r.aLo; i < r.aHi; ++i)
            m_leftCount[m_a[i]] = 0;
        for (int32_t j = r.bLo; j < r.bHi; ++j)
            m_rightCount[m_b[j]] = 0;

        m_anchors.clear();
        if (m_candidates.empty())
            return m_anchors;
        // Patience sorting: pile tops hold candidate indices; each candidate remembers the top of
        // the previous pile.
        m_pileTops.clear();
        m_predecessor.assign(m_candidates.size(), -1);
        for (int32_t c = 0; c < int32_t(m_candidates.size()); ++c) {
            const int32_t right = m_candidates[c].right;
            const auto pile = std::lower_bound(
                m_pileTops.begin(), m_pileTops.end(), right, [this](int32_t top, int32_t value) {
                    return m_candidates[top].right < value;
                });
            if (pile != m_pileTops.begin())
                m_predecessor[c] = *(pile - 1);
            if (pile == m_pileTops.end())
                m_pileTops.push_back(c);
            else
                *pile = c;
        }
        for (int32_t c = m_pileTops.back(); c >= 0; c = m_predecessor[c])
            m_anchors.push_back(m_candidates[c]);
        std::reverse(m_anchors.begin(), m_anchors.end());
        return m_anchors;
    }

    // Greedy O(ND) on the middle; when the edit bound is reached, nothing is matched and the
    // whole middle stays one difference.
    void myers(const WorkRange &r)
    {
        const int32_t n = r.aHi - r.aLo;
        const int32_t m = r.bHi - r.bLo;
        const int32_t dMax = std::min<int32_t>(kMyersEditBound, n + m);
        const int32_t offset = dMax + 1;
        std::vector<int32_t> v(size_t(2 * dMax + 3), 0);
        // What step d reads of V was written by step d - 1 on the diagonals of the other parity,
        // so the trace keeps only what each step wrote: d + 1 values, diagonals -d, -d+2 … d, from
        // position d * (d + 1) / 2.
        m_trace.clear();
        const int32_t *a = m_a.data() + r.aLo;
        const int32_t *b = m_b.data() + r.bLo;
        int32_t found = -1;
        for (int32_t d = 0; d <= dMax && found < 0; ++d) {
            m_trace.resize(m_trace.size() + size_t(d) + 1);
            int32_t *written = m_trace.data() + size_t(d) * size_t(d + 1) / 2;
            for (int32_t k = -d; k <= d; k += 2) {
                int32_t x;
                if (k == -d || (k != d && v[offset + k - 1] < v[offset + k + 1]))
                    x = v[offset + k + 1];
                else
                    x = v[offset + k - 1] + 1;
                int32_t y = x - k;
                while (x < n && y < m && a[x] == b[y]) {
                    ++x;
                    ++y;
                }
                v[offset + k] = x;
                written[(k + d) / 2] = x;
                if (x >= n && y >= m) {
                    found = d;
                    break;
                }
            }
        }
        if (found < 0)
            return;
        int32_t x = n;
        int32_t y = m;
        for (int32_t d = found; d >= 1; --d) {
            // V before step d, on the diagonals step d - 1 wrote.
            const int32_t *before = m_trace.data() + size_t(d - 1) * size_t(d) / 2;
            auto vp = [before, d](int32_t k) { return before[(k + d - 1) / 2]; };
            const int32_t k = x - y;
            const bool down = k == -d || (k != d && vp(k - 1) < vp(k + 1));
            const int32_t prevK = down ? k + 1 : k - 1;
            const int32_t prevX = vp(prevK);
            const int32_t snakeStartX = down ? prevX : prevX + 1;
            while (x > snakeStartX) {
                m_matches.push_back({r.aLo + x - 1, r.bLo + y - 1});
                --x;
                --y;
            }
            x = prevX;
            y = prevX - prevK;
        }
        while (x > 0 && y > 0) {
            m_matches.push_back({r.aLo + x - 1, r.bLo + y - 1});
            --x;
            --y;
        }
    }

    std::span<const int32_t> m_a;
    std::span<const int32_t> m_b;
    std::vector<int32_t> m_leftCount;
    std::vector<int32_t> m_rightCount;
    std::vector<int32_t> m_rightLast;
    std::vector<LineMatch> m_candidates;
    std::vector<LineMatch> m_anchors;
    std::vector<int32_t> m_pileTops;
    std::vector<int32_t> m_predecessor;
    std::vector<LineMatch> m_matches;
    std::vector<int32_t> m_trace;
};

} // namespace

std::vector<LineMatch>
matchLines(std::span<const int32_t> a, std::span<const int32_t> b, int32_t keyCount)
{
    return Matcher(a, b, keyCount).run();
}

} // namespace mirtex
