#include "HostAppUtils.h"

#include "RegistrySettings.h"

namespace {

const QString elementsKey = QStringLiteral("HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop Elements");
// The default value of the version key's sub-key PluginPath, not a value of that name.
const QString pluginFolderKey = QStringLiteral("PluginPath/.");
const QString elementsName = QStringLiteral("Photoshop Elements %1 (64-Bit)");
// From version 16 on, Elements is named after the year.
constexpr int firstYearVersion = 16;
constexpr int yearOffset = 2002;

QString elementsAppName(const QString &version)
{
    // A name that isn't a whole number ("15.0") converts to 0 and is named so.
    const int number = version.toInt(nullptr, 10);
    return elementsName.arg(number < firstYearVersion ? number : number + yearOffset, 0);
}

} // namespace

void detectPhotoshopElementsHosts(QJsonArray &hosts)
{
    const auto elements = openRegistryKeyForReading(elementsKey);
    for (const QString &version : elements->childGroups()) {
        const QString appName = elementsAppName(version);
        elements->beginGroup(version);
        const QString pluginPath = elements->value(pluginFolderKey, QString()).toString();
        elements->endGroup();
        if (!pluginPath.isEmpty())
            addHostRecord(hosts, appName, pluginPath, qint32(HostType::PhotoshopElements));
    }
}
