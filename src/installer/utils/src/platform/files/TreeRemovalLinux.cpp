#include "TreeRemovalAt.h"
#include "TreeRemovalHook.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <vector>

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

std::vector<std::string> namesIn(int folder)
{
    std::vector<std::string> names;
    const int listing = ::dup(folder);
    DIR *stream = listing < 0 ? nullptr : ::fdopendir(listing);
    if (stream == nullptr) {
        if (listing >= 0)
            ::close(listing);
        return names;
    }
    while (const dirent *entry = ::readdir(stream)) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..")
            names.push_back(name);
    }
    ::closedir(stream);
    return names;
}

// Empties the folder through its own handle and then removes it from its
// parent. A folder that turned into a link before it could be opened goes as
// a link.
bool removeFolder(int parent, const std::string &name, const QString &path)
{
    beforeRemovalDescent(path);
    const int folder = ::openat(parent, name.c_str(), folderFlags);
    if (folder < 0) {
        if (errno == ELOOP || errno == ENOTDIR)
            return ::unlinkat(parent, name.c_str(), 0) == 0;
        return errno == ENOENT;
    }
    bool removed = true;
    for (const std::string &child : namesIn(folder))
        removed = removeTreeAt(folder, child, path + QLatin1Char('/') + QFile::decodeName(child.c_str())) && removed;
    ::close(folder);
    if (::unlinkat(parent, name.c_str(), AT_REMOVEDIR) != 0 && errno != ENOENT)
        return false;
    return removed;
}

} // namespace

bool removeTreeAt(int parent, const std::string &name, const QString &path)
{
    struct stat status;
    if (::fstatat(parent, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return errno == ENOENT;
    if (S_ISDIR(status.st_mode))
        return removeFolder(parent, name, path);
    return ::unlinkat(parent, name.c_str(), 0) == 0 || errno == ENOENT;
}

bool removeTree(const QString &path)
{
    if (path.isEmpty() || path.contains(QChar::Null))
        return true;
    const QFileInfo entry(path);
    const QByteArray parentPath = QFile::encodeName(entry.absolutePath());
    const std::string name = QFile::encodeName(entry.fileName()).toStdString();
    if (name.empty() || name == "." || name == "..")
        return false;
    const int parent = ::open(parentPath.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (parent < 0)
        return errno == ENOENT;
    const bool removed = removeTreeAt(parent, name, path);
    ::close(parent);
    return removed;
}
