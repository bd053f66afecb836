#include "WmicCommand.h"

#include "SystemFolder.h"

#include <QFileInfo>

// The program runs with administrator rights: a wmic.exe started by its name
// could be one that anybody put beside the program, into the working folder
// or into a folder on the search path, which Windows searches first.
QString wmicProgram()
{
    const QString program = QString::fromStdWString(inSystemFolder(L"wbem\\wmic.exe"));
    return QFileInfo(program).isFile() ? program : QString();
}
