#include "FileCopy.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QString>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class Descriptor
{
public:
    explicit Descriptor(int fd)
        : fd_(fd)
    {
    }
    ~Descriptor()
    {
        if (fd_ >= 0)
            ::close(fd_);
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    int get() const { return fd_; }

private:
    int fd_;
};

// The bytes of a regular file, in the kernel where it can, else through a
// buffer; false on any read or write error and on a source that shrinks.
bool copyContent(int from, int to, off_t size)
{
    off_t copied = 0;
    while (copied < size) {
        const ssize_t step = ::copy_file_range(from, nullptr, to, nullptr, static_cast<size_t>(size - copied), 0);
        if (step > 0) {
            copied += step;
            continue;
        }
        if (step == 0)
            return false;
        if (errno == EINTR)
            continue;
        if (errno != EXDEV && errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP)
            return false;
        char block[65536];
        const ssize_t read = ::read(from, block, sizeof block);
        if (read < 0 && errno == EINTR)
            continue;
        if (read <= 0 || ::write(to, block, static_cast<size_t>(read)) != read)
            return false;
        copied += read;
    }
    return true;
}

} // namespace

// The common case, a regular file copied to a free name in a folder that can
// be written, is done here; every other case goes to QFile::copy, so that its
// outcome is Qt's by construction. The copy is made as a file without a name
// in the target's folder and named when it is whole, so that, as with Qt's
// temporary file, a killed run leaves no partial target that a rerun would
// keep.
bool copyFile(const QString &source, const QString &target)
{
    const QByteArray from = QFile::encodeName(source);
    const QByteArray to = QFile::encodeName(target);
    const QByteArray folder = QFile::encodeName(QFileInfo(target).path());
    struct stat status;
    if (from.isEmpty() || to.isEmpty() || source.contains(QChar::Null) || target.contains(QChar::Null) ||
        ::lstat(to.constData(), &status) == 0 || errno != ENOENT)
        return QFile::copy(source, target);
    Descriptor input(::open(from.constData(), O_RDONLY | O_CLOEXEC));
    // An empty regular file may still have content to read (those of /proc),
    // which only Qt's read loop finds.
    if (input.get() < 0 || ::fstat(input.get(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size == 0)
        return QFile::copy(source, target);
    Descriptor output(::open(folder.constData(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600));
    if (output.get() < 0)
        return QFile::copy(source, target);
    const QByteArray unnamed = "/proc/self/fd/" + QByteArray::number(output.get());
    if (!copyContent(input.get(), output.get(), status.st_size) ||
        ::linkat(AT_FDCWD, unnamed.constData(), AT_FDCWD, to.constData(), AT_SYMLINK_FOLLOW) != 0)
        return QFile::copy(source, target);
    // As QFile::copy: the source's permissions as Qt reads them (the user's
    // own bits from access(), so a copy by root is writable), set once the
    // file has its name, and a failure to set them doesn't fail the copy.
    QFile::setPermissions(target, QFile::permissions(source));
    return true;
}
