// Shared by the fuzz targets: a Qt core application for the whole run, made on first use.
#pragma once

#include <QCoreApplication>

namespace mirtex {

inline void ensureApplication()
{
    static int argc = 1;
    static char name[] = "mirtex-fuzz";
    static char *argv[] = {name, nullptr};
    static QCoreApplication *app
        = QCoreApplication::instance() ? nullptr : new QCoreApplication(argc, argv);
    (void)app;
}

} // namespace mirtex
