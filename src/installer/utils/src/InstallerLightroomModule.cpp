#include "Installer.h"

#include "FileUtils.h"
#include "LuaAssignment.h"
#include "logging/Log.h"

#include <exception>
#include <filesystem>

namespace {

const QString exportPresetsFolder = QStringLiteral("Export Presets");
const QString collectionFolder = QStringLiteral("Orv Collection");

// Merges the tree into the destination: files only there stay, shared ones are replaced.
void copyTree(const QString &from, const QString &to)
{
    std::filesystem::copy(std::filesystem::path(from.toStdU16String()), std::filesystem::path(to.toStdU16String()),
                          std::filesystem::copy_options::recursive |
                              std::filesystem::copy_options::overwrite_existing);
}

} // namespace

QDir Installer::installLightroomModulePlugin(const PluginEntry &entry, const QString &sourceDir, const QString &lrRoot,
                                             const QString &executablePath)
{
    const QDir moduleSource(sourceDir + QDir::separator() + entry.templateName);
    QDir moduleDestination(lrRoot + QDir::separator() + entry.lrPluginFolder + QDir::separator() +
                           entry.templateName);
    QDir presetDestination(lrRoot + QDir::separator() + exportPresetsFolder + QDir::separator() + collectionFolder);
    fileUtils::createDir(moduleDestination);
    fileUtils::createDir(presetDestination);
    try {
        KELP_LOG_INFO("Installing lightroom module plugin {} from {} to {}", entry.lrName.toStdString(),
                      moduleSource.absolutePath().toStdString(), moduleDestination.absolutePath().toStdString());
        copyTree(moduleSource.absolutePath(), moduleDestination.absolutePath());
        if (moduleDestination.exists(collectionFolder)) {
            // The presets stay inside the module as well.
            KELP_LOG_INFO("Installing {} preset from {} to {}", entry.lrName.toStdString(),
                          moduleSource.absolutePath().toStdString(), presetDestination.absolutePath().toStdString());
            copyTree(moduleSource.absolutePath() + QDir::separator() + collectionFolder,
                     presetDestination.absolutePath());
        }
        writeLuaAssignment(moduleDestination.filePath(entry.luaConfigFile), entry.luaVarName, executablePath);
        return moduleDestination;
    } catch (const std::exception &error) {
        // Nothing is undone: what was made or copied by then stays.
        KELP_LOG_ERROR("Failed to install, because of following issue: {}", error.what());
        return QDir(QString());
    }
}
