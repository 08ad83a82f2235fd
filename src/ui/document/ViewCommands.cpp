#include "ui/document/ViewCommands.h"

#include "core/app/Preferences.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/document/CommandContext.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorView.h"

#include <QCoreApplication>

#include <optional>

namespace mirtex {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("MainMenu", text);
}

using Getter = bool (Preferences::*)() const;
using Setter = void (Preferences::*)(bool);

// A setting shown with a check mark; the command flips it.
Command toggle(Preferences &prefs, const char *name, const char *label, Getter get, Setter set)
{
    Preferences *p = &prefs;
    return {QString::fromLatin1(name),
            tr(label),
            {},
            [p, get, set](const QVariant &) { (p->*set)(!(p->*get)()); },
            {},
            [p, get](const QVariant &) { return (p->*get)(); }};
}

} // namespace

void ViewCommands::registerIn(CommandRegistry &registry, CommandContext &context)
{
    CommandContext *c = &context;
    Preferences &prefs = context.preferences();
    auto zoom = [c](int steps) {
        return [c, steps](const QVariant &) {
            Preferences &p = c->preferences();
            p.setZoom(steps == 0 ? 0 : std::clamp(p.zoom() + steps, -10, 20));
        };
    };
    auto split = [c](std::optional<Qt::Orientation> orientation) {
        return [c, orientation](const QVariant &) {
            if (EditorView *editor = c->currentEditor())
                editor->setSplit(orientation);
        };
    };
    auto hasDocument = [c](const QVariant &) { return c->hasDocument(); };

    registry.add({QStringLiteral("zoomIn:"),
                  tr("Ingrandisci"),
                  {QKeySequence(QStringLiteral("Ctrl++")), QKeySequence(QStringLiteral("Ctrl+="))},
                  zoom(1)});
    registry.add({QStringLiteral("zoomOut:"),
                  tr("Riduci"),
                  {QKeySequence(QStringLiteral("Ctrl+-"))},
                  zoom(-1)});
    registry.add({QStringLiteral("zoomReset:"),
                  tr("Dimensione reale"),
                  {QKeySequence(QStringLiteral("Ctrl+0"))},
                  zoom(0)});
    registry.add(toggle(prefs,
                        "toggleWordWrap:",
                        "A capo automatico",
                        &Preferences::wordWrap,
                        &Preferences::setWordWrap));
    registry.add(toggle(prefs,
                        "toggleLineNumbers:",
                        "Numeri di riga",
                        &Preferences::showLineNumbers,
                        &Preferences::setShowLineNumbers));
    registry.add(toggle(prefs,
                        "toggleCurrentLine:",
                        "Evidenzia la riga corrente",
                        &Preferences::highlightCurrentLine,
                        &Preferences::setHighlightCurrentLine));
    registry.add(toggle(prefs,
                        "toggleWhitespace:",
                        "Mostra spazi e tabulazioni",
                        &Preferences::showWhitespace,
                        &Preferences::setShowWhitespace));
    registry.add(toggle(prefs,
                        "toggleLineEndings:",
                        "Mostra i fine riga",
                        &Preferences::showLineEndings,
                        &Preferences::setShowLineEndings));
    registry.add(toggle(prefs,
                        "toggleIndentGuides:",
                        "Mostra le guide di rientro",
                        &Preferences::showIndentGuides,
                        &Preferences::setShowIndentGuides));
    registry.add({QStringLiteral("splitSideBySide:"),
                  tr("Dividi affiancato"),
                  {QKeySequence(QStringLiteral("Ctrl+Alt+\\"))},
                  split(Qt::Horizontal),
                  hasDocument});
    registry.add({QStringLiteral("splitStacked:"),
                  tr("Dividi sopra e sotto"),
                  {QKeySequence(QStringLiteral("Ctrl+Alt+-"))},
                  split(Qt::Vertical),
                  hasDocument});
    registry.add(
        {QStringLiteral("unsplit:"), tr("Un solo riquadro"), {}, split(std::nullopt), hasDocument});
    registry.add({QStringLiteral("toggleSidebar:"),
                  tr("Mostra o nascondi la barra laterale"),
                  {QKeySequence(QStringLiteral("Ctrl+Shift+B"))},
                  [c](const QVariant &) {
                      c->window().setSidebarVisible(!c->window().isSidebarVisible());
                  }});
    registry.add(toggle(prefs,
                        "toggleStatusBar:",
                        "Barra di stato",
                        &Preferences::showStatusBar,
                        &Preferences::setShowStatusBar));
    registry.add(toggle(prefs,
                        "toggleAlwaysOnTop:",
                        "Sempre in primo piano",
                        &Preferences::alwaysOnTop,
                        &Preferences::setAlwaysOnTop));
    // Not a setting: a window starts as it was left by the window manager, not full screen.
    registry.add({QStringLiteral("toggleFullScreen:"),
                  tr("Schermo intero"),
                  {QKeySequence(Qt::Key_F11)},
                  [c](const QVariant &) {
                      MainWindow &w = c->window();
                      w.setWindowState(w.windowState() ^ Qt::WindowFullScreen);
                  },
                  {},
                  [c](const QVariant &) { return c->window().isFullScreen(); }});
}

} // namespace mirtex
