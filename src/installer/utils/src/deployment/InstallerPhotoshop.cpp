#include "Installer.h"

#include "FileCopy.h"
#include "FileUtils.h"
#include "GuardedFolder.h"
#include "RegistrySettings.h"
#include "SpecialFolders.h"
#include "logging/Log.h"

#include <QFile>
#include <QSettings>

#include <memory>

namespace {

const QString makerName = QStringLiteral("Tavrin");
const QString targetTemplate = QStringLiteral("%1/%2/%3");
const QString automationTail = QStringLiteral("/bin/automation");
const QString rectiloKeyTemplate = QStringLiteral("HKEY_LOCAL_MACHINE\\SOFTWARE\\%1\\%2\\");
const QString loggerEnabledName = QStringLiteral("loggerEnabled");
const QString loggerLevelName = QStringLiteral("loggerLevel");
const QString debugLoggerLevel = QStringLiteral("D");
const QString pluginDllDirName = QStringLiteral("TavrinPSQtPlugInDllDir");
const QString pluginDllDirTail = QStringLiteral("\\Rectilo (64-Bit)");

// Where one product comes from in the suite root and where it goes in the host.
struct ProductFolders
{
    QString name;
    QString source;
    QString target;
};

enum class ConfigCopy { NotNeeded, Copied, Failed };

// What deploying one product came to, for the caller to log.
struct ProductOutcome
{
    ConfigCopy configCopy = ConfigCopy::NotNeeded;
    QString configDestination;
    bool targetEmpty = false;
};

QString hostFolder(const QString &pluginPath, const QString &name)
{
    return targetTemplate.arg(pluginPath, makerName, name);
}

ProductFolders productFolders(const Catalogue &catalogue, const QString &name, const QString &rootDir,
                              const QString &pluginPath)
{
    return {name, rootDir + QDir::separator() + catalogue.folderName(name), hostFolder(pluginPath, name)};
}

void linkAll(const IPathUtils &pathUtils, const QString &sourceDir, const QString &targetDir, FileKind kind)
{
    pathUtils.findAndProcess(sourceDir, targetDir, kind, QDir::Files, ProcessAction::Link);
}

// Rectilo's plug-in finds its Qt libraries and its logger settings here. The
// values stay after an uninstallation, and a failed write goes unnoticed.
void writeRectiloSettings(const QString &rectiloName, const QString &sourceDir)
{
    const std::unique_ptr<QSettings> key = openRegistryKey(rectiloKeyTemplate.arg(makerName, rectiloName));
    key->setValue(loggerEnabledName, 1);
    key->setValue(loggerLevelName, debugLoggerLevel);
    key->setValue(pluginDllDirName, sourceDir + nativePathTail(pluginDllDirTail));
    key->sync();
}

// The configuration file is the one real copy: an earlier one is replaced.
ConfigCopy copyConfigFile(const QString &sourceDir, const QString &fileName, const QString &destination)
{
    if (QFile::exists(destination))
        QFile::remove(destination);
    return copyFile(sourceDir + QDir::separator() + fileName, destination) ? ConfigCopy::Copied : ConfigCopy::Failed;
}

// Links the product's plug-ins and copies its configuration file into the
// target, which is made on the way; links of an earlier run stay.
ProductOutcome deployProduct(const IPathUtils &pathUtils, const Catalogue &catalogue, const ProductFolders &product,
                             const QString &pluginPath)
{
    // A host's plug-in folder may be open to its users: nothing goes through a link there.
    const GuardedFolder guard(pluginPath, makerName + QStringLiteral("/") + product.name);
    if (guard.outcome() == GuardedFolder::Outcome::Refused)
        return {};
    linkAll(pathUtils, product.source, product.target, FileKind::Plugin8bf);
    if (product.name == catalogue.rectiloProductName) {
        linkAll(pathUtils, product.source, product.target, FileKind::Plugin8li);
        writeRectiloSettings(catalogue.rectiloProductName, product.source);
    }
    QDir target(product.target);
    fileUtils::createDir(target);

    ProductOutcome outcome;
    const QString configFile = catalogue.configFile(product.name);
    if (!configFile.isEmpty()) {
        outcome.configDestination = target.absoluteFilePath(configFile);
        outcome.configCopy = copyConfigFile(product.source, configFile, outcome.configDestination);
    }
    outcome.targetEmpty = target.isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot);
    return outcome;
}

void removeUnselectedProducts(const Catalogue &catalogue, const QJsonArray &plugins, const QString &pluginPath)
{
    for (const QString &name : catalogue.productsNotIn(plugins))
        fileUtils::removeDir(QDir(hostFolder(pluginPath, name)));
}

void linkZonalTool(const IPathUtils &pathUtils, const QString &automationDir, const QString &zonalToolDir)
{
    if (!pathUtils.findFiles(FileKind::Plugin8li, automationDir).isEmpty())
        linkAll(pathUtils, automationDir, zonalToolDir, FileKind::Plugin8li);
}

} // namespace

// The log lines are written here, between the steps, so that they carry this
// function's name and stand in the order of the work.
void Installer::installPhotoshopPlugins(const QJsonArray &plugins, const QString &rootDir,
                                        const QString &pluginPath) const
{
    for (const QJsonValue &plugin : plugins) {
        const ProductFolders product = productFolders(catalogue, plugin.toString(), rootDir, pluginPath);
        // Being selected isn't enough: a product without its files is taken out of the host.
        if (!QDir(product.source).exists()) {
            KELP_LOG_INFO("Cleaning up PS(E) plugin {} from {}", product.name.toStdString(),
                          product.target.toStdString());
            fileUtils::removeDir(QDir(product.target));
            continue;
        }
        KELP_LOG_INFO("Installing PS(E) plugin {} from {} to {}", product.name.toStdString(),
                      product.source.toStdString(), product.target.toStdString());
        const ProductOutcome outcome = deployProduct(pathUtils, catalogue, product, pluginPath);
        if (outcome.configCopy == ConfigCopy::Copied)
            KELP_LOG_INFO("Copied config file {} for plugin {}", outcome.configDestination.toStdString(),
                          product.name.toStdString());
        else if (outcome.configCopy == ConfigCopy::Failed)
            KELP_LOG_ERROR("Failed to copy config file {} for plugin {}", outcome.configDestination.toStdString(),
                           product.name.toStdString());
        if (outcome.targetEmpty) {
            // Names the source folder, although the target is what was found empty.
            KELP_LOG_ERROR("Plugin folder {} turned out to be empty!", product.source.toStdString());
            fileUtils::removeDir(QDir(product.target));
        }
    }

    removeUnselectedProducts(catalogue, plugins, pluginPath);
    if (plugins.isEmpty())
        return;

    // The Zonal Tool comes along with any selection and is rebuilt from scratch.
    const QString zonalToolDir = hostFolder(pluginPath, catalogue.zonalToolName);
    if (QDir(zonalToolDir).exists()) {
        KELP_LOG_INFO("Cleaning up PS(E) ZonalTool plugin from {}", zonalToolDir.toStdString());
        fileUtils::removeDir(QDir(zonalToolDir));
    }
    const GuardedFolder guard(pluginPath, makerName + QStringLiteral("/") + catalogue.zonalToolName,
                              GuardedFolder::Purpose::CheckForWriting);
    if (guard.outcome() != GuardedFolder::Outcome::Refused)
        linkZonalTool(pathUtils, rootDir + automationTail, zonalToolDir);
}
