#include "FileUtils.h"

#include "logging/Log.h"

#include <QFileInfo>
#include <QTextStream>

namespace {

// A link to a folder is a file on Linux and a folder on Windows; either way
// only the link goes.
bool removeLink(const QString &path)
{
    return QFile::remove(path) || QDir().rmdir(path);
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

void fileUtils::removeDir(QDir dir)
{
    if (!dir.exists())
        return;
    // removeRecursively() on a link to a folder would empty the folder it points to.
    const QFileInfo entry(dir.path());
    const bool removed = entry.isSymLink() ? removeLink(entry.filePath()) : dir.removeRecursively();
    if (!removed)
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
