#include "AbandonedLockFile.h"

#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

bool removeAbandonedLockFile(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    const int descriptor = ::open(name.constData(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    const bool removed = ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 && ::unlink(name.constData()) == 0;
    ::close(descriptor);
    return removed;
}
