#pragma once

// What the Windows shell needs around a rebuild of the start-menu folder: a
// COM apartment for the time of the rebuild, a shell-link object per link
// attempt (made and never used, as the links themselves come from
// QFile::link), and a notice that the start menus changed. Elsewhere these do
// nothing.
class StartMenuShell
{
public:
    StartMenuShell();
    // Ends the COM apartment on Windows, so it is not defaulted here.
    ~StartMenuShell(); // NOLINT(performance-trivially-destructible)
    StartMenuShell(const StartMenuShell &) = delete;
    StartMenuShell &operator=(const StartMenuShell &) = delete;

    void createShellLinkObject();
    void notifyStartMenusChanged();
};
