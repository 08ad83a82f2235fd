// Command-line entries of mirtex-bench that do the editor's work on files given as arguments, so
// that the peer tools and the program can be timed in one hyperfine run.
#pragma once

#include <QStringList>

#include <optional>

namespace mirtex {

// Commands: detect-encoding [--hint] FILE…; highlight --lexer ID FILE; diff [--unified=N] A B;
// convert --from SET --to SET [--stage open|save [--repeat N]] FILE.
// Runs the command named by arguments[0] and gives its exit status; nothing when arguments[0]
// names no command (the benchmarks run instead).
std::optional<int> runBenchCommand(const QStringList &arguments);

} // namespace mirtex
