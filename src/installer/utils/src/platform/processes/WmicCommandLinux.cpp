#include "WmicCommand.h"

#include <QStandardPaths>

// A wmic.exe on PATH stands for the Windows command: tests and demonstrations
// put one there.
QString wmicProgram()
{
    return QStandardPaths::findExecutable(QStringLiteral("wmic.exe"));
}
