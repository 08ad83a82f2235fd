// The application's own commands: quit, the settings, shortcuts and About windows, and F10 for
// the menu bar.
#pragma once

namespace mirtex {

class AppDelegate;
class CommandRegistry;
class MainWindow;
class SecondaryWindows;

class AppCommands
{
public:
    static void registerIn(CommandRegistry &registry,
                           AppDelegate &delegate,
                           MainWindow &window,
                           SecondaryWindows &windows);
};

} // namespace mirtex
