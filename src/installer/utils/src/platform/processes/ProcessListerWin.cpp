#include "ProcessLister.h"

#include "ToolhelpListing.h"
#include "WmicCommand.h"

#include <QString>

// wmic.exe, where the system still has it, lists the processes as it always
// has; a system without it is listed from a Toolhelp snapshot in the same bytes.
QByteArray processCaptionList()
{
    const QString wmic = wmicProgram();
    if (!wmic.isEmpty())
        return runWmicCommand(wmic);
    return QByteArray::fromStdString(toolhelpCaptionList());
}
