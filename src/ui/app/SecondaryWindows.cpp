#include "ui/app/SecondaryWindows.h"

#include <QGuiApplication>
#include <QScreen>

namespace mirtex {

namespace {

void centre(QWidget *window)
{
    window->resize(window->size().expandedTo(window->sizeHint())); // its real size, then the place
    if (const QScreen *screen = QGuiApplication::primaryScreen())
        window->move(screen->availableGeometry().center() - window->rect().center());
}

} // namespace

SecondaryWindows::SecondaryWindows(QObject *parent)
    : QObject(parent)
{}

SecondaryWindows::~SecondaryWindows()
{
    for (auto &[key, window] : m_windows)
        delete window.data();
}

QWidget *SecondaryWindows::show(const QString &key, const std::function<QWidget *()> &make)
{
    QPointer<QWidget> &window = m_windows[key];
    if (!window) {
        window = make();
        window->setAttribute(Qt::WA_DeleteOnClose);
        centre(window);
    }
    window->show();
    window->raise();
    window->activateWindow();
    return window;
}

QWidget *SecondaryWindows::find(const QString &key) const
{
    const auto found = m_windows.find(key);
    return found == m_windows.end() ? nullptr : found->second.data();
}

} // namespace mirtex
