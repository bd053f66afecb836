#include "FolderLock.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace {

struct HeldLock
{
    int descriptor = -1;
    int holders = 0;
};

// Two descriptors of one folder exclude each other even inside one process,
// so each folder is opened and locked once per process.
QHash<QString, HeldLock> &heldLocks()
{
    static QHash<QString, HeldLock> locks;
    return locks;
}

// Close-on-exec, so that a child process started while the lock is held does
// not keep it alive after this one ends.
int lockedDescriptor(const QString &folder)
{
    const int descriptor = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return -1;
    int result = 0;
    do {
        result = ::flock(descriptor, LOCK_EX);
    } while (result != 0 && errno == EINTR);
    if (result != 0) {
        ::close(descriptor);
        return -1;
    }
    return descriptor;
}

} // namespace

FolderLock::FolderLock(const QString &folder)
    : folder_(QFileInfo(folder).canonicalFilePath())
{
    if (folder_.isEmpty())
        return;
    HeldLock &held = heldLocks()[folder_];
    if (held.holders == 0)
        held.descriptor = lockedDescriptor(folder_);
    if (held.descriptor < 0) {
        heldLocks().remove(folder_);
        folder_.clear();
        return;
    }
    ++held.holders;
}

FolderLock::~FolderLock()
{
    if (folder_.isEmpty())
        return;
    const auto held = heldLocks().find(folder_);
    if (--held->holders == 0) {
        ::close(held->descriptor);
        heldLocks().erase(held);
    }
}

bool FolderLock::isHeld() const
{
    return !folder_.isEmpty();
}
