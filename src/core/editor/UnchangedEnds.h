// How much of the start and of the end of a text is still exactly as in a reference text it was
// once equal to. After any number of edits, the text equals the reference again exactly when the
// lengths match and the part between the two unchanged ends matches: deciding whether a document
// is back to its saved text costs the size of what was edited, not of the text.
#pragma once

#include <QtGlobal>

#include <algorithm>

namespace mirtex {

// Units are whatever the caller counts in (the editor uses bytes). Pure; no thread affinity.
class UnchangedEnds
{
public:
    // The text now equals the reference; `length` is its length.
    void reset(qsizetype length)
    {
        m_head = length;
        m_tail = length;
        m_known = true;
    }

    // Nothing is known any more (a text put in without edits being seen).
    void forget() { m_known = false; }

    bool isKnown() const { return m_known; }

    // One edit: at `position`, `inserted` units went in (after any removed ones went out), and
    // the text is now `lengthAfter` long.
    void edited(qsizetype position, qsizetype inserted, qsizetype lengthAfter)
    {
        m_head = std::min(m_head, position);
        m_tail = std::min(m_tail, std::max<qsizetype>(0, lengthAfter - position - inserted));
    }

    // Units at the start and at the end known equal to the reference's.
    qsizetype head() const { return m_head; }

    qsizetype tail() const { return m_tail; }

private:
    qsizetype m_head = 0;
    qsizetype m_tail = 0;
    bool m_known = false;
};

} // namespace mirtex
