#include "ProcessLister.h"

#include "ProcFsListing.h"
#include "WmicCommand.h"

#include <QString>

// A wmic.exe on the search path stands for the Windows command (tests and
// demonstrations put one there); without it the list comes from /proc.
QByteArray processCaptionList()
{
    if (isWmicOnPath())
        return runWmicCommand();
    return procFsCaptionList(QStringLiteral("/proc"));
}
