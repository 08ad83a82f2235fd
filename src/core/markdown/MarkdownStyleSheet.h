// The style sheet every rendered Markdown page carries inline.
#pragma once

#include <string_view>

namespace mirtex {

std::string_view markdownStyleSheet();

} // namespace mirtex
