#include "Installer.h"

#include "FileUtils.h"
#include "FilesystemPath.h"
#include "FolderCopy.h"
#include "LuaAssignment.h"
#include "logging/Log.h"

#include <exception>

namespace {

const QString exportPresetsFolder = QStringLiteral("Export Presets");
const QString collectionFolder = QStringLiteral("Orv Collection");

} // namespace

QDir Installer::installLightroomModulePlugin(const PluginEntry &entry, const QString &sourceDir, const QString &lrRoot,
                                             const QString &executablePath)
{
    const QDir moduleSource(sourceDir + QDir::separator() + entry.templateName);
    QDir moduleDestination(lrRoot + QDir::separator() + entry.lrPluginFolder + QDir::separator() + entry.templateName);
    QDir presetDestination(lrRoot + QDir::separator() + exportPresetsFolder + QDir::separator() + collectionFolder);
    fileUtils::createDir(moduleDestination);
    fileUtils::createDir(presetDestination);
    try {
        KELP_LOG_INFO("Installing lightroom module plugin {} from {} to {}", entry.lrName.toStdString(),
                      moduleSource.absolutePath().toStdString(), moduleDestination.absolutePath().toStdString());
        copyTree(filesystemPath(moduleSource.absolutePath()), filesystemPath(moduleDestination.absolutePath()));
        if (moduleDestination.exists(collectionFolder)) {
            // The presets stay inside the module as well.
            KELP_LOG_INFO("Installing {} preset from {} to {}", entry.lrName.toStdString(),
                          moduleSource.absolutePath().toStdString(), presetDestination.absolutePath().toStdString());
            copyTree(filesystemPath(moduleSource.absolutePath() + QDir::separator() + collectionFolder),
                     filesystemPath(presetDestination.absolutePath()));
        }
        writeLuaAssignment(moduleDestination.filePath(entry.luaConfigFile), entry.luaVarName, executablePath);
        return moduleDestination;
    } catch (const std::exception &error) {
        // Nothing is undone: what was made or copied by then stays.
        KELP_LOG_ERROR("Failed to install, because of following issue: {}", error.what());
        return QDir(QString());
    }
}
