#include "PathUtils.h"

#include "FileCopy.h"
#include "FileLinks.h"
#include "FileUtils.h"
#include "RegistrySettings.h"
#include "logging/Log.h"

#include <QDirIterator>
#include <QFile>
#include <QHash>

namespace {

const QString makerName = QStringLiteral("Tavrin");
const QString suiteName = QStringLiteral("Orv Collection");
const QString currentUserSoftwareKey = QStringLiteral("HKEY_CURRENT_USER\\SOFTWARE");
const QString suiteSettingsPath = QStringLiteral("%1\\%2\\%3\\").arg(currentUserSoftwareKey, makerName, suiteName);
const QString makerSettingsPath = QStringLiteral("HKEY_CURRENT_USER\\SOFTWARE\\%1").arg(makerName);
const QString linkExtension = QStringLiteral(".lnk");

const QHash<int, QString> filePatterns = {
    {FileKind::Plugin8bf, QStringLiteral("*.8bf")}, {FileKind::Plugin8li, QStringLiteral("*.8li")},
    {FileKind::ExeFile, QStringLiteral("*.exe")},   {FileKind::ConfigFile, QStringLiteral("*.config")},
    {FileKind::CfgFile, QStringLiteral("*.cfg")},   {FileKind::JpgFile, QStringLiteral("*.jpg")},
    {FileKind::LnkFile, QStringLiteral("*.lnk")},
};

} // namespace

void PathUtils::findAndProcess(const QString &sourceDir, const QString &targetDir, FileKind kind, QDir::Filters filters,
                               ProcessAction action) const
{
    QDir target(targetDir);
    // A target that can't be made is logged there; each entry then fails by itself.
    fileUtils::createDir(target);
    if (!fileUtils::isWalkable(sourceDir))
        return;
    QDirIterator entries(sourceDir, QStringList{filePattern(kind)}, filters, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        entries.next();
        const QString entryPath = entries.filePath();
        switch (action) {
        case ProcessAction::Link: {
            const QString linkPath = target.absoluteFilePath(entries.fileName() + linkExtension);
            if (!makeLink(entryPath, linkPath))
                KELP_LOG_WARN("Failed to create link from {} to {}", entryPath.toStdString(), linkPath.toStdString());
            break;
        }
        case ProcessAction::Copy: {
            const QString copyPath = target.absoluteFilePath(entries.fileName());
            if (!copyFile(entryPath, copyPath))
                KELP_LOG_WARN("Failed to copy file {} to {}", entryPath.toStdString(), copyPath.toStdString());
            break;
        }
        }
    }
}

QString PathUtils::filePattern(FileKind kind) const
{
    return filePatterns.value(kind);
}

QStringList PathUtils::findFiles(FileKind kind, const QString &rootDir) const
{
    QStringList files;
    if (!fileUtils::isWalkable(rootDir))
        return files;
    QDirIterator entries(rootDir, QStringList{filePattern(kind)}, QDir::Files, QDirIterator::Subdirectories);
    while (entries.hasNext())
        files.append(entries.next());
    return files;
}

std::unique_ptr<QSettings> PathUtils::suiteSettings() const
{
    return openRegistryKey(suiteSettingsPath);
}

std::unique_ptr<QSettings> PathUtils::makerSettings() const
{
    return openRegistryKey(makerSettingsPath);
}
