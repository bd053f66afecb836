#include "ProcessLister.h"

#include "ToolhelpListing.h"
#include "WmicCommand.h"

// wmic.exe, where the system still has it, lists the processes as it always
// has; a system without it is listed from a Toolhelp snapshot in the same bytes.
QByteArray processCaptionList()
{
    if (isWmicOnPath())
        return runWmicCommand();
    return QByteArray::fromStdString(toolhelpCaptionList());
}
