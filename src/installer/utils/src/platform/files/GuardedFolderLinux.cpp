#include "GuardedFolder.h"

#include "FileLinks.h"
#include "FilePermissions.h"
#include "GuardedFolderLog.h"
#include "TreeRemovalAt.h"
#include "logging/Log.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

class GuardedFolder::Handles
{
public:
    ~Handles()
    {
        if (folder >= 0)
            ::close(folder);
    }
    int folder = -1;
};

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
constexpr mode_t newFolderMode = 0777;
constexpr mode_t newFileMode = 0666;

// Root writes for the whole machine: a folder that another user owns could
// be that user's way into places only root may write.
QString refusalOf(int parent, const std::string &name, int folder, GuardedFolder::Purpose purpose)
{
    struct stat status;
    if (folder < 0) {
        const bool isLink =
            ::fstatat(parent, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(status.st_mode);
        return isLink ? QStringLiteral("it is a link") : QString();
    }
    if (purpose != GuardedFolder::Purpose::Delete && ::geteuid() == 0 && ::fstat(folder, &status) == 0 &&
        status.st_uid != 0)
        return QStringLiteral("it belongs to another user (uid %1)").arg(status.st_uid);
    return QString();
}

int openBase(const QString &base, GuardedFolder::Purpose purpose)
{
    const QByteArray path = QFile::encodeName(base);
    int folder = ::open(path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0 && errno == ENOENT && purpose == GuardedFolder::Purpose::Write && QDir().mkpath(base))
        folder = ::open(path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    return folder;
}

} // namespace

GuardedFolder::GuardedFolder(const QString &base, const QString &relative, Purpose purpose)
    : handles_(std::make_unique<Handles>())
    , path_(relative.isEmpty() ? base : base + QLatin1Char('/') + relative)
    , outcome_(Outcome::Failed)
{
    const Place place = placeOf(base, relative);
    int folder = base.contains(QChar::Null) ? -1 : openBase(place.base, purpose);
    if (folder < 0) {
        outcome_ = errno == ENOENT && purpose != Purpose::Write ? Outcome::Missing : Outcome::Failed;
        if (outcome_ == Outcome::Failed)
            KELP_LOG_WARN("Failed to create directory {}", path_.toStdString());
        return;
    }
    QString reached = place.base;
    for (const QString &component : place.relative.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        reached += (reached.endsWith(QLatin1Char('/')) ? QString() : QStringLiteral("/")) + component;
        const std::string name = QFile::encodeName(component).toStdString();
        if (purpose == Purpose::Write)
            ::mkdirat(folder, name.c_str(), newFolderMode);
        const int next = ::openat(folder, name.c_str(), folderFlags);
        const int openError = errno;
        const QString refusal = refusalOf(folder, name, next, purpose);
        ::close(folder);
        folder = next;
        if (!refusal.isEmpty()) {
            logRefusal(reached, refusal);
            outcome_ = Outcome::Refused;
            return;
        }
        if (folder < 0) {
            outcome_ = openError == ENOENT && purpose != Purpose::Write ? Outcome::Missing : Outcome::Failed;
            if (outcome_ == Outcome::Failed)
                KELP_LOG_WARN("Failed to create directory {}", path_.toStdString());
            return;
        }
    }
    handles_->folder = folder;
    outcome_ = Outcome::Opened;
}

GuardedFolder::~GuardedFolder() = default;

void GuardedFolder::writeTextFile(const QString &name, const QString &content, Access access) const
{
    if (outcome_ == Outcome::Refused)
        return;
    const std::string target = QFile::encodeName(name).toStdString();
    const std::string temporary = "." + target + "." + std::to_string(::getpid()) + ".new";
    const int folder = handles_->folder;
    const int file = folder < 0 ? -1
                                : ::openat(folder, temporary.c_str(),
                                           O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, newFileMode);
    if (file < 0) {
        KELP_LOG_WARN("Failed to create text file {}", filePath(name).toStdString());
        return;
    }
    // As the file actions do, a short write on a full disk isn't looked at.
    const QByteArray bytes = content.toUtf8();
    for (qsizetype written = 0; written < bytes.size();) {
        const ssize_t step = ::write(file, bytes.constData() + written, static_cast<size_t>(bytes.size() - written));
        if (step <= 0 && errno != EINTR)
            break;
        written += step > 0 ? step : 0;
    }
    if (::renameat(folder, temporary.c_str(), folder, target.c_str()) != 0) {
        ::close(file);
        ::unlinkat(folder, temporary.c_str(), 0);
        KELP_LOG_WARN("Failed to create text file {}", filePath(name).toStdString());
        return;
    }
    // Only what was written is opened to all, through the handles it was written by.
    if (access == Access::OpenToAllUsers)
        grantUsersAccess(file, folder);
    ::close(file);
    KELP_LOG_INFO("Text file created {} with content {}", filePath(name).toStdString(), content.toStdString());
}

bool GuardedFolder::makeLink(const QString &target, const QString &name) const
{
    const std::string link = QFile::encodeName(name).toStdString();
    struct stat status;
    if (handles_->folder < 0 || ::fstatat(handles_->folder, link.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 ||
        !fitsInALink(target, filePath(name)))
        return false;
    return ::symlinkat(QFile::encodeName(target).constData(), handles_->folder, link.c_str()) == 0;
}

bool GuardedFolder::removeEntry(const QString &name) const
{
    return handles_->folder >= 0 &&
           removeTreeAt(handles_->folder, QFile::encodeName(name).toStdString(), filePath(name));
}

bool GuardedFolder::removeFileEntry(const QString &name) const
{
    return handles_->folder >= 0 && ::unlinkat(handles_->folder, QFile::encodeName(name).constData(), 0) == 0;
}
