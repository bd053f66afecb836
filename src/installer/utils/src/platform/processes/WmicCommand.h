#pragma once

#include <QByteArray>
#include <QString>

// The wmic.exe that lists the processes, by its full path: on Windows the one
// in the system folder's wbem folder (C:\Windows\System32\wbem\wmic.exe),
// never one from the program's folder, the working folder or the search path;
// on Linux the first wmic.exe on PATH. Empty when there is none.
QString wmicProgram();

// Runs that program with "/OUTPUT:STDOUT PROCESS get Caption" and gives what
// it printed on both channels. Its input is closed at the start. It waits up
// to 30 s for the start and 30 s for the end and then takes what is there; a
// program that can't start gives nothing.
QByteArray runWmicCommand(const QString &program);
