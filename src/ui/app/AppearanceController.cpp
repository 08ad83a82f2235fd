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

QPalette darkPalette()
{
    QPalette p;
    const QColor window(0x2B, 0x2B, 0x2E);
    const QColor base(0x1E, 0x1E, 0x20);
    const QColor text(0xE6, 0xE6, 0xE6);
    p.setColor(QPalette::Window, window);
    p.setColor(QPalette::WindowText, text);
    p.setColor(QPalette::Base, base);
    p.setColor(QPalette::AlternateBase, window);
    p.setColor(QPalette::Text, text);
    p.setColor(QPalette::Button, window);
    p.setColor(QPalette::ButtonText, text);
    p.setColor(QPalette::ToolTipBase, base);
    p.setColor(QPalette::ToolTipText, text);
    p.setColor(QPalette::Highlight, QColor(0x3A, 0x6E, 0xA5));
    p.setColor(QPalette::HighlightedText, Qt::white);
    p.setColor(QPalette::Disabled, QPalette::Text, QColor(0x80, 0x80, 0x80));
    p.setColor(QPalette::Disabled, QPalette::WindowText, QColor(0x80, 0x80, 0x80));
    p.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(0x80, 0x80, 0x80));
    return p;
}

} // namespace

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
    // The application palette is the system's: a dark theme only sets the window's own palette.
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
    m_theme = &Theme::resolve(m_prefs.themeID(), systemIsDark());
    m_window.applyColors(editorColors(*m_theme), m_theme->isDark);
    m_window.setPalette(m_theme->isDark ? darkPalette() : QApplication::style()->standardPalette());
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
