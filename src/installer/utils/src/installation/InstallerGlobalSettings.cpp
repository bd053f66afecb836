#include "Installer.h"

#include "RegistrySettings.h"
#include "logging/Log.h"

#include <QFileInfo>

namespace {

const QString machinePrefix = QStringLiteral("HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node");
const QString makerName = QStringLiteral("Tavrin");
const QString suiteName = QStringLiteral("Orv Collection");
const QString machineSettingsPath = QStringLiteral("%1\\%2\\%3\\").arg(machinePrefix, makerName, suiteName);
const QString uninstallEntryPath =
    QStringLiteral("%1\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\%2").arg(machinePrefix, suiteName);
const QString locationPathKey = QStringLiteral("Locations/%1_Path");
const QString locationNameKey = QStringLiteral("Locations/%1_Name");
const QString displayVersionKey = QStringLiteral("DisplayVersion");
const QString uninstallStringKey = QStringLiteral("UninstallString");
const QString applicationsGroup = QStringLiteral("Applications");
const QString installPathKey = QStringLiteral("InstallPath");
const QString currentLanguageKey = QStringLiteral("currentLanguage");
const QString binFolder = QStringLiteral("bin");
const QString executableSuffix = QStringLiteral(".exe");
const QString pluginsKey = QStringLiteral("plugins");
const QString hostsKey = QStringLiteral("hosts");
const QString rootDirKey = QStringLiteral("rootDir");
const QString languageKey = QStringLiteral("language");
const QString versionKey = QStringLiteral("version");
const QString pluginPathKey = QStringLiteral("pluginPath");
const QString appNameKey = QStringLiteral("appName");
// Without a language in the request, English (United Kingdom) is recorded.
constexpr int defaultLanguage = 1;

// Every host in array order, doubles too; keys of an earlier, longer list stay.
void writeHostLocations(const QJsonArray &hosts, QSettings &settings)
{
    int index = 0;
    for (const QJsonValue &value : hosts) {
        const QJsonObject host = value.toObject();
        settings.setValue(locationPathKey.arg(index), host.value(pluginPathKey).toString());
        settings.setValue(locationNameKey.arg(index), host.value(appNameKey).toString());
        ++index;
    }
}

QString binPath(const QJsonObject &request)
{
    return request.value(rootDirKey).toString() + QDir::separator() + binFolder;
}

} // namespace

void Installer::installGlobalSettings(const QJsonObject &request) const
{
    const QJsonArray plugins = request.value(pluginsKey).toArray();
    const QString rootDir = request.value(rootDirKey).toString();
    const int language = request.value(languageKey).toInt(defaultLanguage);
    {
        const auto machineSettings = openRegistryKey(machineSettingsPath);
        writeHostLocations(request.value(hostsKey).toArray(), *machineSettings);
        writeUninstallInfo(request, *machineSettings);
        machineSettings->setValue(installPathKey, binPath(request));
        machineSettings->setValue(currentLanguageKey, language);
        for (const QJsonValue &plugin : plugins) {
            const QString product = plugin.toString();
            writeOrv4Path(product, rootDir + QDir::separator() + catalogue.execDir(product), *machineSettings);
        }
    }
    writeUninstallInfo(request, *openRegistryKey(uninstallEntryPath));
    if (const auto userSettings = pathUtils.suiteSettings())
        userSettings->setValue(currentLanguageKey, language);
}

void Installer::writeUninstallInfo(const QJsonObject &request, QSettings &settings) const
{
    const QString rootDir = request.value(rootDirKey).toString();
    settings.setValue(displayVersionKey, request.value(versionKey).toString());
    settings.setValue(uninstallStringKey, binPath(request));
    settings.beginGroup(applicationsGroup);
    for (const QJsonValue plugin : request.value(pluginsKey).toArray()) {
        const QString product = plugin.toString();
        const QString execDir = catalogue.execDir(product);
        const QString folder = execDir.isEmpty() ? catalogue.folderName(product) : execDir;
        // Keyed by product: of two executables of one product the last found stays.
        for (const QString &executable : pathUtils.findFiles(FileKind::ExeFile, rootDir + QDir::separator() + folder)) {
            const QFileInfo file(executable);
            if (!catalogue.pluginEntry(product, file.fileName()).lightroomNameWin.isEmpty())
                settings.setValue(product, file.absoluteFilePath());
        }
    }
    settings.endGroup();
    settings.sync();
}

// The path is composed, not checked: an executable named otherwise than its
// product is recorded where it isn't.
void Installer::writeOrv4Path(const QString &productName, const QString &productFolder, QSettings &settings) const
{
    const QString key = catalogue.orv4PathKey(productName);
    if (!key.isEmpty())
        settings.setValue(key, productFolder + QDir::separator() + productName + executableSuffix);
    KELP_LOG_INFO("orv4Path written to local settings {}", key.toStdString());
}
