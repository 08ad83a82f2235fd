// The Markdown preview's commands: show or hide it beside the editor (Ctrl+Shift+V), the page
// alone, "Esporta in PDF…" and "Esporta in HTML…"; and the preview shown when a Markdown file is
// opened while the setting asks for it.
#pragma once

#include <QString>

#include <functional>

class QMenu;
class QWidget;

namespace mirtex {

class CommandContext;
class CommandRegistry;
class DocumentTab;
class MarkdownPreviewPane;

namespace PreviewCommands {

void registerIn(CommandRegistry &registry, CommandContext &context);
// The entries in the File menu (exports) and the View menu (preview).
void layOut(CommandRegistry &registry, QMenu *fileMenu, QMenu *viewMenu);

// The tab's preview, if shown.
MarkdownPreviewPane *previewOf(DocumentTab *tab);
// Shows the preview beside the editor (a non-Markdown document becomes Markdown first); null
// when no web engine is available.
MarkdownPreviewPane *showPreview(CommandContext &context, DocumentTab *tab);
void hidePreview(DocumentTab *tab);

// Where an export goes: asks with a save panel by default; tests answer themselves.
using PathChooser = std::function<QString(
    QWidget *parent, const QString &title, const QString &proposedPath, const QString &filter)>;
void setPathChooser(PathChooser chooser);

// Writes `data` to `path` completely or not at all; an Italian reason on failure.
bool writeWhole(const QString &path, const QByteArray &data, QString &error);

} // namespace PreviewCommands

} // namespace mirtex
