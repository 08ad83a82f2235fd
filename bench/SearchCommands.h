// Command-line entries of mirtex-bench for the search engine: counting and replacing in a file
// read as the editor reads it, so that hyperfine can time them beside rg, grep and sed.
#pragma once

#include <QStringList>

#include <optional>

namespace mirtex {

// search [--count-lines|--count] [--literal|--extended|--regex] [-i|--ignore-case] [-w|--word]
//        [--utf16] PATTERN FILE
//   prints the number of lines on which a match starts (--count-lines, the default) or of matches.
// replace [--literal|--extended|--regex] [-i] [-w] [--utf16] PATTERN REPLACEMENT FILE
//   writes the text with every match replaced (one replace all) to standard output.
// --utf16 runs the UTF-16 commands on a converted copy instead of the UTF-8 entries.
// Nothing when arguments[0] names neither.
std::optional<int> runSearchCommand(const QStringList &arguments);

} // namespace mirtex
