#include "FolderProbe.h"

#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <stdexcept>

bool isFlockedElsewhere(const QString &path)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        throw std::runtime_error("cannot open " + path.toStdString());
    const bool taken = ::flock(descriptor, LOCK_EX | LOCK_NB) == 0;
    ::close(descriptor);
    return !taken;
}
