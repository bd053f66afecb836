#include "ProcessLister.h"

#include "WmicCommand.h"

QByteArray processCaptionList()
{
    return runWmicCommand();
}
