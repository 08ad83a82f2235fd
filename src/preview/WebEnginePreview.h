// The Markdown preview's web engine: Chromium through Qt WebEngine, with the page's own scripts
// disabled, the program's scripts in a world of their own, navigations decided by the preview,
// and PDF printing with 2 cm margins. Only the program and its own test link this library.
#pragma once

#include <QSize>
#include <QString>
#include <QStringList>

namespace mirtex {

namespace WebEnginePreview {

// Before the application object exists: the settings Chromium needs (no sandbox when run as
// root, shared OpenGL contexts).
void prepareProcess();
// Before the first page: page colours follow a dark desktop (or the program's dark theme).
void setDarkPages(bool dark);
// Installs the engine that the interface's preview and PDF export use.
void install();

// `mirtex --export FILE.md OUT.pdf`: prints the page of a Markdown file. Needs an application
// object; runs its own event loop until done. On failure returns false with an Italian reason.
bool exportPdf(const QString &sourcePath, const QString &outputPath, QString &error);

// `mirtex --markdown-snapshot FILE --out X.png|X.pdf [--size WxH] [--dark]`: the preview of a
// Markdown file, as a picture or as the PDF export. Prints "wrote PATH" and returns 0.
int runSnapshot(const QStringList &arguments, const QString &workingDir);

} // namespace WebEnginePreview

} // namespace mirtex
