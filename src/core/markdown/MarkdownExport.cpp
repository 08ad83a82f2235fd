#include "core/markdown/MarkdownExport.h"

#include "core/markdown/MarkdownRenderer.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QSaveFile>
#include <QUrl>

namespace mirtex {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("MarkdownExport", text);
}

// Entities the renderer writes into attribute values, undone to read a file name back.
QString unescapeAttribute(std::string_view value)
{
    std::string text(value);
    for (const auto &[entity, character] : {std::pair<std::string_view, char>{"&quot;", '"'},
                                            {"&lt;", '<'},
                                            {"&gt;", '>'},
                                            {"&amp;", '&'}}) {
        std::size_t at = 0;
        while ((at = text.find(entity, at)) != std::string::npos) {
            text.replace(at, entity.size(), 1, character);
            ++at;
        }
    }
    return QString::fromStdString(text);
}

} // namespace

std::string MarkdownExport::embedLocalImages(std::string html)
{
    static constexpr std::string_view marker = "<img src=\"file:";
    std::size_t at = html.find(marker);
    if (at == std::string::npos)
        return html;
    std::string out;
    out.reserve(html.size());
    std::size_t copied = 0;
    const QMimeDatabase mimeTypes;
    for (; at != std::string::npos; at = html.find(marker, at + 1)) {
        const std::size_t valueBegin = at + marker.size() - 5;
        const std::size_t valueEnd = html.find('"', valueBegin);
        if (valueEnd == std::string::npos)
            break;
        const QUrl url = QUrl::fromEncoded(QByteArray::fromStdString(
            unescapeAttribute(std::string_view(html).substr(valueBegin, valueEnd - valueBegin))
                .toStdString()));
        QFile file(url.toLocalFile());
        if (!url.isLocalFile() || !file.open(QIODevice::ReadOnly))
            continue;
        const QByteArray bytes = file.readAll();
        const QString mime = mimeTypes.mimeTypeForFileNameAndData(file.fileName(), bytes).name();
        out.append(html, copied, valueBegin - copied);
        out += "data:";
        out += mime.toStdString();
        out += ";base64,";
        out += bytes.toBase64().toStdString();
        copied = valueEnd;
    }
    out.append(html, copied);
    return out;
}

std::string MarkdownExport::selfContainedPage(const QString &sourcePath, std::string markdown)
{
    MarkdownRenderer renderer;
    renderer.baseURL = QUrl::fromLocalFile(QFileInfo(sourcePath).absolutePath() + u'/');
    renderer.highlightCode = true;
    return embedLocalImages(
        MarkdownRenderer::page(renderer.renderBody(std::move(markdown)), false));
}

bool MarkdownExport::exportFile(const QString &sourcePath,
                                const QString &outputPath,
                                QString &error)
{
    if (outputPath.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive)) {
        error = tr("L'esportazione in PDF dalla riga di comando non è ancora disponibile.");
        return false;
    }
    QFile source(sourcePath);
    if (!source.open(QIODevice::ReadOnly)) {
        error = tr("Impossibile leggere %1.").arg(sourcePath);
        return false;
    }
    const QByteArray markdown = source.readAll();
    const std::string page = selfContainedPage(sourcePath, markdown.toStdString());
    QSaveFile output(outputPath);
    if (!output.open(QIODevice::WriteOnly)
        || output.write(page.data(), qint64(page.size())) != qint64(page.size())
        || !output.commit()) {
        error = tr("Impossibile esportare l'HTML.");
        return false;
    }
    return true;
}

} // namespace mirtex
