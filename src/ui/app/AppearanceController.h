// Keeps the window in the chosen theme: resolves the preference (or "auto" against the system
// palette), paints every editor with it and follows the dark/light appearance of the shell. The
// theme menu is ThemeCommands'.
#pragma once

#include "core/languages/Theme.h"

#include <QObject>

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
    static bool systemIsDark();

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
