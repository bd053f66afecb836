#include "Uninstaller.h"

#include "FileUtils.h"
#include "GuardedFolder.h"
#include "RegistrySettings.h"
#include "SpecialFolders.h"

#include <QJsonArray>
#include <QList>

namespace {

const QString machinePrefix = QStringLiteral("HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node");
const QString makerName = QStringLiteral("Tavrin");
const QString suiteName = QStringLiteral("Orv Collection");
const QString machineSettingsPath = QStringLiteral("%1\\%2\\%3\\").arg(machinePrefix, makerName, suiteName);
// Appended to a path that already ends in a backslash; the registry reads the
// doubled backslash as one.
const QString locationsTail = QStringLiteral("\\Locations");
const QString applicationsPath =
    QStringLiteral("%1\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\%2\\Applications").arg(machinePrefix, suiteName);
const QString pathMarker = QStringLiteral("Path");
const QString hostItemTemplate = QStringLiteral("%1/%2/%3");
const QString exportPresetsFolder = QStringLiteral("Export Presets");
const QString crashReportsFolder = QStringLiteral("crash_reports");
const QString lastEditFile = QStringLiteral("LastEdit");
const QString lastEditConfigFile = QStringLiteral("LastEdit.cfg");
const QString cacheFolder = QStringLiteral("cache");
const QString keepPreferencesKey = QStringLiteral("keepPreferences");

QString separated(const QString &folder, const QString &name)
{
    return folder + QDir::separator() + name;
}

// What a product leaves beside the user's preferences in its data folder.
void removeNonPreferenceFiles(const QString &localData, const QString &dataFolder, const QString &settingsFile)
{
    fileUtils::removeDir(QDir(separated(dataFolder, crashReportsFolder)), localData);
    if (!settingsFile.isEmpty())
        fileUtils::removeFile(QFile(separated(dataFolder, settingsFile)), localData);
    fileUtils::removeFile(QFile(separated(dataFolder, lastEditFile)), localData);
    fileUtils::removeFile(QFile(separated(dataFolder, lastEditConfigFile)), localData);
}

} // namespace

Uninstaller::Uninstaller(const IPathUtils &pathUtils, const Catalogue &catalogue)
    : pathUtils(pathUtils)
    , catalogue(catalogue)
{
}

void Uninstaller::uninstall(const QJsonObject &request) const
{
    fileUtils::removeDir(pathUtils.startMenuDir());
    const auto locations = openRegistryKey(machineSettingsPath + locationsTail);
    removeHostItems(*locations);

    const QString pictures = pathUtils.commonPicturesPath();
    if (!pictures.isEmpty())
        fileUtils::removeDir(QDir(pictures + QStringLiteral("/") + catalogue.sampleFolder()));

    removeProductData(request);

    // Any user may create folders in ProgramData: nothing is deleted through a link there.
    const QString machineData = programDataPath();
    const QDir programData(separated(machineData, makerName));
    // The current generation's bin/plugins is tried four times; the later tries find nothing.
    for (const QString &folder : catalogue.allFolderNames())
        fileUtils::removeDir(QDir(programData.absoluteFilePath(folder)), machineData);
    fileUtils::removeDir(QDir(programData.absolutePath() + QStringLiteral("/") + suiteName), machineData);
}

// Only products that the config mode recorded are cleaned. Preferences go
// whole only for the JSON string "false"; the cache always goes.
void Uninstaller::removeProductData(const QJsonObject &request) const
{
    const QString localData = pathUtils.localAppDataPath();
    const QDir makerData(separated(localData, makerName));
    if (!makerData.exists())
        return;
    const bool removePreferences = request.value(keepPreferencesKey) == QJsonValue(QStringLiteral("false"));
    const auto applications = openRegistryKey(applicationsPath);
    for (const QString &product : catalogue.productsNotIn(QJsonArray())) {
        if (!applications->contains(product))
            continue;
        const QString data = separated(makerData.absolutePath(), product);
        if (QDir(data).exists()) {
            if (removePreferences)
                fileUtils::removeDir(QDir(data), localData);
            else
                removeNonPreferenceFiles(localData, data, catalogue.settingsFile(product));
        }
        const QDir cache(separated(separated(QDir(localData).absolutePath(), product), cacheFolder));
        if (cache.exists())
            fileUtils::removeDir(QDir(cache.absolutePath()), localData);
    }
    const QString palette = makerData.filePath(catalogue.zonalPaletteName);
    fileUtils::removeDir(QDir(separated(palette, cacheFolder)), localData);
    const GuardedFolder paletteFolder(localData, makerName + QStringLiteral("/") + catalogue.zonalPaletteName,
                                      GuardedFolder::Purpose::Delete);
    if (paletteFolder.isOpen())
        QDir(palette).remove(catalogue.zonalPrefsFile);
}

void Uninstaller::removeHostItems(QSettings &locations) const
{
    for (const QString &key : locations.allKeys()) {
        if (!key.contains(pathMarker, Qt::CaseSensitive))
            continue;
        const QString host = locations.value(key, QString()).toString();
        fileUtils::removeDir(QDir(separated(host, makerName) + QDir::separator()));
        removeLightroomItems(host);
    }
}

void Uninstaller::removeLightroomItems(const QString &hostFolder) const
{
    QList<PluginEntry> entries = catalogue.allPluginEntries();
    entries.append(catalogue.pluginParam());
    for (const PluginEntry &entry : entries) {
        const QString item = hostItemTemplate.arg(hostFolder, entry.lrPluginFolder, entry.templateName);
        // A module is a folder, a preset a file.
        if (QFileInfo(item).isDir())
            fileUtils::removeDir(QDir(item), hostFolder);
        else
            fileUtils::removeFile(QFile(item), hostFolder);
        fileUtils::removeDir(QDir(hostItemTemplate.arg(hostFolder, exportPresetsFolder, suiteName)));
    }
}
