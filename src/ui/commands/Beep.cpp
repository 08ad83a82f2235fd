#include "ui/commands/Beep.h"

#include <QApplication>

namespace mirtex {

namespace {
bool g_silenced = false;
int g_count = 0;
} // namespace

void beep()
{
    ++g_count;
    if (!g_silenced)
        QApplication::beep();
}

void setBeepSilenced(bool silenced)
{
    g_silenced = silenced;
}

int beepCount()
{
    return g_count;
}

} // namespace mirtex
