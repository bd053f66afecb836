#include "HostAppUtils.h"

#include "RegistrySettings.h"
#include "SpecialFolders.h"

#include <QHash>

namespace {

const QString photoshopKey = QStringLiteral("HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop");
const QString windowsSettingsKey = QStringLiteral("HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion");
const QString commonFilesDirName = QStringLiteral("CommonFilesDir");
const QString sharedFolderTail = nativePathTail(QStringLiteral("\\Adobe\\Plug-Ins\\CC\\"));
const QString pluginPathName = QStringLiteral("PluginPath");
// Compared as text, not as a number: "12.0" and "60.0" are not below it, and
// so every listed version shares the common folder. Kept as the wizard knows it.
const QString versionCutOff = QStringLiteral("100.0");
const QString unlistedVersionName = QStringLiteral("Photoshop CC (v %1) (64-Bit)");

const QHash<QString, QString> photoshopVersionNames = {
    {"12.0", "Photoshop CS5 (64-Bit)"},      {"60.0", "Photoshop CS6 (64-Bit)"},
    {"70.0", "Photoshop CC (64-Bit)"},       {"80.0", "Photoshop CC 2014 (64-Bit)"},
    {"90.0", "Photoshop CC 2015 (64-Bit)"},  {"100.0", "Photoshop CC 2015.5 (64-Bit)"},
    {"110.0", "Photoshop CC 2017 (64-Bit)"}, {"120.0", "Photoshop CC 2018 (64-Bit)"},
    {"130.0", "Photoshop CC 2019 (64-Bit)"},
};

// Nothing is checked: without the value the folder is the tail alone.
QString sharedPluginFolder()
{
    return openRegistryKeyForReading(windowsSettingsKey)->value(commonFilesDirName, QString()).toString() +
           sharedFolderTail;
}

} // namespace

void detectPhotoshopHosts(QJsonArray &hosts)
{
    const QString sharedFolder = sharedPluginFolder();
    const auto photoshop = openRegistryKeyForReading(photoshopKey);
    for (const QString &version : photoshop->childGroups()) {
        QString appName;
        QString pluginPath;
        if (version < versionCutOff) {
            photoshop->beginGroup(version);
            appName = photoshopVersionNames.value(version);
            pluginPath = photoshop->value(pluginPathName, QVariant()).toString();
            photoshop->endGroup();
        } else {
            appName = photoshopVersionNames.value(version, unlistedVersionName.arg(version, 0));
            pluginPath = sharedFolder;
        }
        addHostRecord(hosts, appName, pluginPath, qint32(HostType::Photoshop));
    }
}
