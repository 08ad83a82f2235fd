// Any bytes as a Markdown document: the renderer returns, and every heading it writes has an
// anchor.
#include "FuzzMain.h"
#include "core/markdown/MarkdownRenderer.h"

#include <cstdlib>
#include <string>

using namespace mirtex;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    ensureApplication();
    if (size == 0)
        return 0;
    MarkdownRenderer renderer;
    renderer.highlightCode = (data[0] & 1) != 0;
    const std::string text(reinterpret_cast<const char *>(data + 1), size - 1);
    const std::string body = renderer.renderBody(text);
    if (body.empty())
        std::abort();
    for (std::size_t at = body.find("<h"); at != std::string::npos; at = body.find("<h", at + 1)) {
        const char level = at + 2 < body.size() ? body[at + 2] : 0;
        if (level >= '1' && level <= '6' && body.compare(at + 3, 6, " id=\"\"") == 0)
            std::abort();
    }
    return 0;
}
