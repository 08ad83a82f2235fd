// Any bytes as session.json: reading never crashes, and what it reads survives writing and
// reading again unchanged.
#include "FuzzMain.h"
#include "core/document/SessionState.h"

#include <cstdlib>

using namespace mirtex;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    ensureApplication();
    const auto state
        = SessionState::fromJson(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    if (!state)
        return 0;
    const auto again = SessionState::fromJson(state->toJsonBytes());
    if (!again || again->toJsonBytes() != state->toJsonBytes())
        std::abort();
    return 0;
}
