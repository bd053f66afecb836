#pragma once

#include <QByteArray>

// Runs "wmic.exe /OUTPUT:STDOUT PROCESS get Caption" and gives what it printed
// on both channels. Its input is closed at the start. It waits up to 30 s for
// the start and 30 s for the end and then takes what is there; a command that
// can't start gives nothing.
QByteArray runWmicCommand();

// Whether the program of that command is found on the search path.
bool isWmicOnPath();
