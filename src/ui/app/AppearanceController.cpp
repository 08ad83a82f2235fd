#include "ui/app/AppearanceController.h"

#include "core/app/Preferences.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorColors.h"

#include <QApplication>
#include <QPalette>
#include <QStyle>

namespace mirtex {

namespace {

QColor blended(Rgba colour, Rgba page)
{
    const double a = colour.alphaF();
    auto mix = [a](int top, int bottom) { return int(top * a + bottom * (1.0 - a) + 0.5); };
    return QColor(mix(colour.r, page.r), mix(colour.g, page.g), mix(colour.b, page.b));
}

QColor mixed(const QColor &from, const QColor &to, double share)
{
    auto mix = [share](int a, int b) { return int(a + (b - a) * share + 0.5); };
    return QColor(
        mix(from.red(), to.red()), mix(from.green(), to.green()), mix(from.blue(), to.blue()));
}

// Whether this controller replaced the desktop's palette, and what the desktop's said: the
// application palette is ours then, and cannot tell.
bool g_ownPalette = false;
bool g_systemIsDark = false;

} // namespace

QPalette AppearanceController::paletteFor(const EditorColors &colors)
{
    // Every role from the theme's page and text, so no light colour of the desktop shows through.
    const QColor page = colors.background;
    const QColor text = colors.text;
    const QColor window = mixed(page, text, 0.07);
    const QColor button = mixed(page, text, 0.12);
    const QColor dimmed = mixed(page, text, 0.45);
    QPalette p;
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        p.setColor(group, QPalette::Window, window);
        p.setColor(group, QPalette::WindowText, text);
        p.setColor(group, QPalette::Base, page);
        p.setColor(group, QPalette::AlternateBase, mixed(page, text, 0.04));
        p.setColor(group, QPalette::Text, text);
        p.setColor(group, QPalette::Button, button);
        p.setColor(group, QPalette::ButtonText, text);
        p.setColor(group, QPalette::BrightText, Qt::white);
        p.setColor(group, QPalette::ToolTipBase, window);
        p.setColor(group, QPalette::ToolTipText, text);
        p.setColor(group, QPalette::PlaceholderText, dimmed);
        p.setColor(group, QPalette::Highlight, mixed(page, QColor(0x3A, 0x8E, 0xE6), 0.6));
        p.setColor(group, QPalette::HighlightedText, Qt::white);
        p.setColor(group, QPalette::Link, QColor(0x6C, 0xB6, 0xFF));
        p.setColor(group, QPalette::LinkVisited, QColor(0xB3, 0x9D, 0xF3));
        p.setColor(group, QPalette::Light, mixed(button, text, 0.25));
        p.setColor(group, QPalette::Midlight, mixed(button, text, 0.12));
        p.setColor(group, QPalette::Mid, mixed(page, text, 0.2));
        p.setColor(group, QPalette::Dark, page.darker(160));
        p.setColor(group, QPalette::Shadow, Qt::black);
    }
    p.setColor(QPalette::Disabled, QPalette::Window, window);
    p.setColor(QPalette::Disabled, QPalette::Base, window);
    p.setColor(QPalette::Disabled, QPalette::Button, button);
    for (const QPalette::ColorRole role : {QPalette::WindowText,
                                           QPalette::Text,
                                           QPalette::ButtonText,
                                           QPalette::PlaceholderText,
                                           QPalette::HighlightedText})
        p.setColor(QPalette::Disabled, role, dimmed);
    p.setColor(QPalette::Disabled, QPalette::Highlight, mixed(page, text, 0.2));
    for (const QPalette::ColorRole role :
         {QPalette::Light, QPalette::Midlight, QPalette::Mid, QPalette::Dark, QPalette::Shadow})
        p.setColor(QPalette::Disabled, role, p.color(QPalette::Active, role));
    return p;
}

AppearanceController::AppearanceController(Preferences &prefs, MainWindow &window)
    : QObject(&window)
    , m_prefs(prefs)
    , m_window(window)
{
    connect(&m_prefs, &Preferences::changed, this, [this](Preferences::Field field) {
        if (field == Preferences::Field::themeID)
            apply();
    });
    qApp->installEventFilter(this);
    apply();
}

bool AppearanceController::systemIsDark()
{
    if (g_ownPalette)
        return g_systemIsDark;
    return QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
}

EditorColors AppearanceController::editorColors(const Theme &theme)
{
    const Rgba page = theme.background;
    EditorColors c;
    c.background = blended(theme.background, page);
    c.text = blended(theme.text, page);
    c.caret = blended(theme.caret, page);
    c.selection = blended(theme.selection, page);
    c.currentLine = blended(theme.currentLine, page);
    c.gutter = blended(theme.gutter, page);
    c.gutterText = blended(theme.gutterText, theme.gutter);
    c.gutterCurrent = blended(theme.gutterCurrent, theme.gutter);
    c.invisibles = blended(theme.invisibles, page);
    c.smartHighlight = blended(theme.smartHighlight, page);
    c.braceMatch = blended(theme.braceMatch, page);
    c.mark = blended(theme.mark, page);
    c.bookmark = blended(theme.bookmark, theme.gutter);
    const auto tokens = theme.tokenColors();
    for (std::size_t k = 0; k < tokens.size(); ++k)
        c.tokens[k] = blended(tokens[k], page);
    c.isDark = theme.isDark;
    return c;
}

void AppearanceController::apply()
{
    if (m_applying)
        return;
    m_applying = true;
    // The desktop's own palette first, to learn whether it is dark (an empty palette sets no
    // role, so the desktop's show again).
    if (g_ownPalette) {
        QApplication::setPalette(QPalette());
        g_ownPalette = false;
    }
    const bool systemDark = systemIsDark();
    m_theme = &Theme::resolve(m_prefs.themeID(), systemDark);
    const EditorColors colors = editorColors(*m_theme);
    m_window.applyColors(colors, m_theme->isDark);
    // The whole application takes the theme's look: secondary windows, dialogs, alerts and
    // menus too. A light theme keeps the desktop's palette unless the desktop is dark.
    if (m_theme->isDark || systemDark) {
        g_systemIsDark = systemDark;
        g_ownPalette = true;
        QApplication::setPalette(m_theme->isDark ? paletteFor(colors)
                                                 : QApplication::style()->standardPalette());
    }
    // Qt tells existing widgets only once its event loop runs; the windows made before it (the
    // main window at start-up, a snapshot) are told here. Each passes it on to its children.
    for (QWidget *window : QApplication::topLevelWidgets()) {
        QEvent changed(QEvent::ApplicationPaletteChange);
        QCoreApplication::sendEvent(window, &changed);
    }
    Q_EMIT themeChanged(*m_theme);
    m_applying = false;
}

bool AppearanceController::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == qApp
        && (event->type() == QEvent::ApplicationPaletteChange
            || event->type() == QEvent::ThemeChange)
        && m_prefs.themeID() == Theme::kAutoId)
        apply();
    return QObject::eventFilter(watched, event);
}

} // namespace mirtex
