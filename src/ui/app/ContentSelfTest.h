// The self-test's checks of the line diff and the Markdown page: their results on small cases,
// and the time each takes on a large text.
#pragma once

namespace mirtex {

class SelfTestRunner;

void checkCompare(SelfTestRunner &t);
void checkMarkdown(SelfTestRunner &t);

} // namespace mirtex
