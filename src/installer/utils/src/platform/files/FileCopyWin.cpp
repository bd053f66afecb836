#include "FileCopy.h"

#include <QFile>

bool copyFile(const QString &source, const QString &target)
{
    return QFile::copy(source, target);
}
