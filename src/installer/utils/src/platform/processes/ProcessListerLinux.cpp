#include "ProcessLister.h"

#include "ProcFsListing.h"
#include "WmicCommand.h"

#include <QString>

// Without a wmic.exe on PATH the list comes from /proc.
QByteArray processCaptionList()
{
    const QString wmic = wmicProgram();
    if (!wmic.isEmpty())
        return runWmicCommand(wmic);
    return procFsCaptionList(QStringLiteral("/proc"));
}
