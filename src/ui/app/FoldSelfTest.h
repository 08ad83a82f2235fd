// The self-test's folding checks: the blocks of every fold style, folding in a real editor, and
// the time detection takes over 100,000 lines.
#pragma once

#include <QString>

namespace mirtex {

class SelfTestRunner;

void checkFolding(SelfTestRunner &t, const QString &folder);

} // namespace mirtex
