#include "Uninstaller.h"

#include "RegistrySettings.h"

namespace {

const QString machinePrefix = QStringLiteral("HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node");
const QString makerName = QStringLiteral("Tavrin");
const QString suiteName = QStringLiteral("Orv Collection");
const QString machineMakerPath = QStringLiteral("%1\\%2").arg(machinePrefix, makerName);
const QString machineUninstallRoot =
    QStringLiteral("%1\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\").arg(machinePrefix);
const QString userMakerPath = QStringLiteral("HKEY_CURRENT_USER\\SOFTWARE\\") + makerName;
const QString nativeMakerPath = QStringLiteral("HKEY_LOCAL_MACHINE\\SOFTWARE\\%1").arg(makerName);
const QString zonalToolGroup = QStringLiteral("Zonal Tool");

} // namespace

// Without machine rights the machine's keys stay as they are, silently, and
// the user's key is emptied all the same.
void Uninstaller::resetConfig() const
{
    {
        const auto machineMaker = openRegistryKey(machineMakerPath);
        machineMaker->remove(suiteName);
        machineMaker->sync();
    }
    {
        const auto uninstallRoot = openRegistryKey(machineUninstallRoot);
        uninstallRoot->remove(suiteName);
        uninstallRoot->sync();
    }
    openRegistryKey(userMakerPath)->remove(zonalToolGroup);
    // remove("") clears the key itself; clear() on a view would empty the whole hive.
    pathUtils.suiteSettings()->remove(QString());
    {
        const auto maker = pathUtils.makerSettings();
        for (const QString &group :
             {catalogue.zonalToolName, catalogue.zonalPaletteName, catalogue.rectiloProductName}) {
            maker->remove(group);
            maker->sync();
        }
    }
    const auto nativeMaker = openRegistryKey(nativeMakerPath);
    nativeMaker->remove(catalogue.rectiloProductName);
    nativeMaker->sync();
}
