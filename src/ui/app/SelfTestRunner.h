// Counting and printing for the self-test: sections "• …", a line per failure, a closing line
// "N passed, N failed".
#pragma once

#include <QString>

#include <cstdio>

namespace mirtex {

class SelfTestRunner
{
public:
    void section(const QString &title)
    {
        m_section = title;
        std::printf("• %s\n", qPrintable(title));
        std::fflush(stdout);
    }

    bool check(bool ok, const QString &failure)
    {
        if (ok) {
            ++m_passed;
        } else {
            ++m_failed;
            std::printf("  %s: %s\n", qPrintable(m_section), qPrintable(failure));
            std::fflush(stdout);
        }
        return ok;
    }

    int finish() const
    {
        std::printf("%d passed, %d failed\n", m_passed, m_failed);
        std::fflush(stdout);
        return m_failed == 0 ? 0 : 1;
    }

private:
    QString m_section;
    int m_passed = 0;
    int m_failed = 0;
};

} // namespace mirtex
