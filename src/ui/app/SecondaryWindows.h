// The one owner of the windows beside the main window (settings, shortcuts, and later the compare
// window): shows the window kept under a key, making it the first time, and forgets it when the
// user closes it (it is deleted then).
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>
#include <map>

namespace mirtex {

class SecondaryWindows : public QObject
{
    Q_OBJECT

public:
    explicit SecondaryWindows(QObject *parent = nullptr);
    ~SecondaryWindows() override;

    // Brings the window under `key` forward; when there is none, `make` builds it (parented to
    // the main window, so that it stays above it) and it is centred on the screen.
    QWidget *show(const QString &key, const std::function<QWidget *()> &make);
    // The open window under `key`, if any.
    QWidget *find(const QString &key) const;

private:
    std::map<QString, QPointer<QWidget>> m_windows;
};

} // namespace mirtex
