#include "StandardOutput.h"

#include <cstdio>

QTextStream &standardOutput()
{
    static QTextStream stream(stdout, QIODevice::ReadWrite);
    return stream;
}
