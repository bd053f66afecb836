#include "StartMenuShell.h"

// Desktop environments watch the applications folder themselves.
StartMenuShell::StartMenuShell() = default;
StartMenuShell::~StartMenuShell() = default;

void StartMenuShell::createShellLinkObject() {}

void StartMenuShell::notifyStartMenusChanged() {}
