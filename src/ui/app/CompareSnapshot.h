// `mirtex --compare-snapshot LEFT RIGHT --out PNG [--hunk N] [--size WxH] [--dark]`: renders the
// compare window of two files offscreen, at difference N (from 1) when asked.
#pragma once

#include <QStringList>

namespace mirtex {

class CompareSnapshot
{
public:
    // Prints "wrote PATH" and returns 0, or prints why it failed and returns non-zero.
    static int run(const QStringList &arguments, const QString &workingDir);
};

} // namespace mirtex
