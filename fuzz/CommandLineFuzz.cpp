// Any arguments (NUL-separated) and any mirtex: URL: parsing never crashes and says why it refuses.
#include "FuzzMain.h"
#include "core/app/CommandLine.h"
#include "core/app/UrlEvent.h"

#include <cstdlib>

using namespace mirtex;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    ensureApplication();
    const QString input = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    const QStringList arguments = input.split(QChar(0));
    const CommandLine line = CommandLine::parse(arguments, QStringLiteral("/home/u"));
    if (line.mode == CommandLine::Mode::invalid && line.error.isEmpty())
        std::abort();
    for (const QString &file : line.files) {
        if (!file.startsWith(u'/'))
            std::abort();
    }
    (void)UrlEvent::parse(input);
    (void)UrlEvent::parse(QStringLiteral("mirtex:?") + input);
    return 0;
}
