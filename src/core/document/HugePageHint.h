// Lets the kernel back a freshly allocated large buffer with huge pages before it is written.
#pragma once

#include <cstddef>

namespace mirtex {

// Advises transparent huge pages for the 2 MB-aligned interior of [data, data + bytes). Filling a
// 200 MB text then costs a hundred page faults instead of fifty thousand, which on virtual
// machines is most of the decoding time. A no-op for small buffers and where unsupported; it never
// changes the contents. Call it before the first write.
void adviseHugePages(void *data, std::size_t bytes);

} // namespace mirtex
