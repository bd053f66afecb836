#include "FileUtils.h"

#include "GuardedFolder.h"
#include "TreeRemoval.h"
#include "logging/Log.h"

#include <QFileInfo>
#include <QTextStream>

namespace {

// Deletes the entry at path through the folder that holds it, opened from base
// without following links. Missing is silent; a refusal is logged by the guard.
// A file is removed as QFile::remove does, never a folder of its name.
enum class Removal { Done, Refused, Failed };
enum class Entry { Folder, File };

Removal removeBelow(const QString &base, const QString &path, Entry entry)
{
    const QString root = QDir(base).absolutePath();
    const QString absolute = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    if (!absolute.startsWith(root + QLatin1Char('/'))) {
        const bool removed = entry == Entry::Folder ? removeTree(path) : QFile::remove(path);
        return removed ? Removal::Done : Removal::Failed;
    }
    const QFileInfo relative(absolute.mid(root.size() + 1));
    const QString folderBelow = relative.path() == QStringLiteral(".") ? QString() : relative.path();
    const GuardedFolder folder(root, folderBelow, GuardedFolder::Purpose::Delete);
    if (folder.outcome() == GuardedFolder::Outcome::Refused)
        return Removal::Refused;
    if (folder.outcome() == GuardedFolder::Outcome::Missing)
        return Removal::Done;
    const bool removed =
        entry == Entry::Folder ? folder.removeEntry(relative.fileName()) : folder.removeFileEntry(relative.fileName());
    return removed ? Removal::Done : Removal::Failed;
}

} // namespace

void fileUtils::createDir(QDir &dir)
{
    // Windows resolves ".." as text, and so does this: a path that climbs
    // through a missing folder must not make that folder on the way.
    const QDir resolved(dir.absolutePath());
    if (resolved.exists())
        return;
    if (!resolved.mkpath(QStringLiteral(".")))
        KELP_LOG_WARN("Failed to create directory {}", dir.path().toStdString());
}

void fileUtils::createTextFile(QFile &&file, const QString &content)
{
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        KELP_LOG_WARN("Failed to create text file {}", file.fileName().toStdString());
        return;
    }
    {
        QTextStream stream(&file);
        stream.setCodec("UTF-8");
        stream << content;
    }
    file.close();
    KELP_LOG_INFO("Text file created {} with content {}", file.fileName().toStdString(), content.toStdString());
}

void fileUtils::removeDir(const QDir &dir)
{
    if (!dir.exists())
        return;
    // Not removeRecursively(): it walks by path, so a folder swapped for a link
    // while it runs would be followed.
    if (!removeTree(dir.path()))
        KELP_LOG_WARN("Failed to completely delete folder {}", dir.path().toStdString());
}

bool fileUtils::isWalkable(const QString &folder)
{
    return !folder.contains(QChar::Null);
}

void fileUtils::removeFile(QFile &&file)
{
    if (!file.exists())
        return;
    if (!file.remove())
        KELP_LOG_WARN("Failed to remove file {}", file.fileName().toStdString());
}

void fileUtils::removeDir(const QDir &dir, const QString &base)
{
    if (!dir.exists())
        return;
    if (removeBelow(base, dir.path(), Entry::Folder) == Removal::Failed)
        KELP_LOG_WARN("Failed to completely delete folder {}", dir.path().toStdString());
}

void fileUtils::removeFile(QFile &&file, const QString &base)
{
    if (!file.exists())
        return;
    if (removeBelow(base, file.fileName(), Entry::File) == Removal::Failed)
        KELP_LOG_WARN("Failed to remove file {}", file.fileName().toStdString());
}
