// `mirtex-search search …` and `mirtex-search replace …`: the search engine's count and replace all
// on a file, as `mirtex-bench search` and `replace` run them. It links the core only, so that it
// starts as quickly as the command-line tools it is compared with.
#include "SearchCommands.h"

#include <QString>
#include <QStringList>

#include <cstdio>

int main(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    if (const auto status = mirtex::runSearchCommand(arguments))
        return *status;
    std::fprintf(stderr, "usage: mirtex-search search|replace …\n");
    return 2;
}
