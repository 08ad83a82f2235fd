// `mirtex --snapshot FILE… --out PNG`: renders the main window in a given state, offscreen, for
// pictures of the program (the README's screenshot, visual checks).
#pragma once

namespace mirtex {

struct SnapshotRequest;

class Snapshot
{
public:
    // Prints "wrote PATH" and returns 0, or prints why it failed and returns non-zero.
    static int run(const SnapshotRequest &request);
};

} // namespace mirtex
