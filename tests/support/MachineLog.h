#pragma once

#include "Machine.h"

#include <QByteArray>

// Everything the tool has logged on the machine so far: all its log files
// below the roaming folder, oldest first.
QByteArray machineLog(const Machine &machine);
