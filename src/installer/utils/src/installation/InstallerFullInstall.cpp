#include "Installer.h"

#include "HostAppUtils.h"
#include "LanguageTables.h"
#include "RegistrySettings.h"
#include "logging/Log.h"

#include <QSet>
#include <QSettings>

#include <stdexcept>

namespace {

const QString userUninstallRoot =
    QStringLiteral("HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\");
const QString displayNameKey = QStringLiteral("DisplayName");
const QString suiteName = QStringLiteral("Orv Collection");
const QString isUpdateKey = QStringLiteral("isUpdate");
const QString hostsKey = QStringLiteral("hosts");
const QString pluginsKey = QStringLiteral("plugins");
const QString languageKey = QStringLiteral("language");
const QString rootDirKey = QStringLiteral("rootDir");
const QString localAppDataDirKey = QStringLiteral("localAppDataDir");
const QString versionKey = QStringLiteral("version");
const QString mixpanelEnabledKey = QStringLiteral("mixpanelEnabled");
const QString appNameKey = QStringLiteral("appName");
const QString pluginPathKey = QStringLiteral("pluginPath");
const QString typeKey = QStringLiteral("type");

// The suite's per-user uninstall entries, found by their display name whatever
// the group is called; the machine-wide entry is another one.
void removeUninstallEntries(QSettings &uninstallRoot)
{
    for (const QString &group : uninstallRoot.childGroups()) {
        if (uninstallRoot.value(group + QLatin1Char('/') + displayNameKey).toString() == suiteName)
            uninstallRoot.remove(group);
    }
}

// The request's language number as its tag; a number outside the table,
// negative included, throws.
QString languageTag(int number)
{
    if (number < 0 || number >= languageCodes.size())
        throw std::out_of_range("language number out of range");
    return languageCodes.at(number);
}

} // namespace

void Installer::fullInstall(const QJsonObject &request) const
{
    // Only the JSON string counts: a boolean true is not an update.
    if (request.value(isUpdateKey) == QJsonValue(QStringLiteral("true")))
        removeUninstallEntries(*openRegistryKey(userUninstallRoot));

    const QJsonArray hosts = request.value(hostsKey).toArray();
    const QJsonArray plugins = request.value(pluginsKey).toArray();
    const QString rootDir = request.value(rootDirKey).toString();
    QString language;
    try {
        language = languageTag(request.value(languageKey).toInt(-1));
    } catch (...) {
        KELP_LOG_ERROR("Wrong language ID provided, skip processing");
        return;
    }

    QSet<QString> servedPaths;
    for (const QJsonValue &value : hosts) {
        const QJsonObject host = value.toObject();
        const QString pluginPath = host.value(pluginPathKey).toString();
        if (servedPaths.contains(pluginPath))
            continue;
        servedPaths.insert(pluginPath);
        const int type = host.value(typeKey).toInt(0);
        if (type == int(HostType::Photoshop) || type == int(HostType::PhotoshopElements)) {
            installPhotoshopPlugins(plugins, rootDir, pluginPath);
        } else if (type == int(HostType::Lightroom)) {
            installLightroomPlugins(plugins, rootDir, pluginPath);
        } else {
            KELP_LOG_WARN("Unknown host type requested - app: {}, path: {}, type: {}",
                          host.value(appNameKey).toString().toStdString(), pluginPath.toStdString(), type);
        }
    }

    installCfgFiles(plugins, rootDir, request.value(localAppDataDirKey).toString(), language);
    createGlobalCollectionCfgFile(request.value(mixpanelEnabledKey).toBool(false),
                                  request.value(versionKey).toString());
    createStartMenuLinks(rootDir);
}
