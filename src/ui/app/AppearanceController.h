// Keeps the application in the chosen theme: resolves the preference (or "auto" against the
// desktop's palette), paints every editor with it and gives the whole application (secondary
// windows, dialogs, alerts, menus) the theme's palette; follows the desktop's dark/light
// appearance. The theme menu is ThemeCommands'.
#pragma once

#include "core/languages/Theme.h"

#include <QObject>
#include <QPalette>

namespace mirtex {

class MainWindow;
class Preferences;
struct EditorColors;

class AppearanceController : public QObject
{
    Q_OBJECT

public:
    AppearanceController(Preferences &prefs, MainWindow &window);

    const Theme &theme() const { return *m_theme; }

    // The editor colours of a theme; colours with alpha are blended over the page colour.
    static EditorColors editorColors(const Theme &theme);
    // Whether the desktop's palette is dark (also while the application shows a theme's own).
    static bool systemIsDark();
    // The application palette of a dark theme, every role taken from its page and text.
    static QPalette paletteFor(const EditorColors &colors);

Q_SIGNALS:
    void themeChanged(const mirtex::Theme &theme);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void apply();

    Preferences &m_prefs;
    MainWindow &m_window;
    const Theme *m_theme = nullptr;
    bool m_applying = false;
};

} // namespace mirtex
