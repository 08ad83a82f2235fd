#include "MarkdownCommands.h"

#include "core/markdown/MarkdownRenderer.h"

#include <QFile>
#include <QFileInfo>

#include <cstdio>

namespace mirtex {

std::optional<int> runMarkdownCommand(const QStringList &arguments)
{
    if (arguments.isEmpty() || arguments.first() != QLatin1String("markdown"))
        return std::nullopt;
    MarkdownRenderer renderer;
    QString path;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString &arg = arguments[i];
        if (arg == QLatin1String("--to")) {
            ++i; // html is the only output
        } else if (arg == QLatin1String("--no-colour")) {
            renderer.highlightCode = false;
        } else if (!arg.startsWith(QLatin1String("--"))) {
            path = arg;
        }
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "%s: unreadable\n", qPrintable(path));
        return 1;
    }
    renderer.baseURL = QUrl::fromLocalFile(QFileInfo(path).absolutePath() + u'/');
    const QByteArray bytes = file.readAll();
    const std::string page
        = MarkdownRenderer::page(renderer.renderBody(bytes.toStdString()), false);
    std::fwrite(page.data(), 1, page.size(), stdout);
    return 0;
}

} // namespace mirtex
