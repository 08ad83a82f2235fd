// `mirtex --selftest`: behavioural checks that need the real program (documents with scripted
// answers, the codec guards), printed as sections "• …", one line per failure, then
// "N passed, N failed". The exit status is non-zero on any failure.
#pragma once

namespace mirtex {

class SelfTest
{
public:
    static int run();
};

} // namespace mirtex
