// `mirtex-diff [--unified=N] [--ignore-all-space] [--ignore-case] LEFT RIGHT`: the compare
// window's line diff of two UTF-8 files as a unified diff. It links the core only, so that it
// starts as quickly as the command-line tools it is compared with.
#include "DiffCommand.h"

#include <QString>
#include <QStringList>

int main(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return mirtex::runDiffCommand(arguments);
}
