// `mirtex-find [--count|--list] [--regex] [-i] [--hidden] [--gitignore] [--include PATTERNS]
// PATTERN FOLDER`: find in files' engine over a folder, printing "path:N" per file like `rg -c`.
// It links the core only, so that it starts as quickly as the tools it is timed against.
#include "FindInFilesCommand.h"

#include <QString>
#include <QStringList>

#include <clocale>

int main(int argc, char **argv)
{
    std::setlocale(LC_ALL, ""); // name patterns ignore case beyond ASCII
    QStringList arguments{QStringLiteral("find-in-files")};
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return *mirtex::runFindInFilesCommand(arguments);
}
