#include "RegistrySettings.h"

#include "RegistryHiveFormat.h"
#include "SpecialFolders.h"

#include <QFileDevice>
#include <QFileInfo>
#include <QHash>
#include <QLockFile>
#include <QRegularExpression>
#include <QStringList>

namespace {

const QString currentUserHive = QStringLiteral("HKEY_CURRENT_USER");
const QString localMachineHive = QStringLiteral("HKEY_LOCAL_MACHINE");
const QString hiveFolder = QStringLiteral("/winreg/");
const QString hiveExtension = QStringLiteral(".reg");
// The lock file that QSettings takes while it writes a file.
const QString lockSuffix = QStringLiteral(".lock");
// A path below a file can never be made, so a hive without a store reads
// nothing and drops its writes, even for root.
const QString noStoreFolder = QStringLiteral("/dev/null/");

QString hiveNameOf(const QIODevice &device)
{
    const auto *file = qobject_cast<const QFileDevice *>(&device);
    return file ? QFileInfo(file->fileName()).completeBaseName() : QString();
}

bool readHive(QIODevice &device, QSettings::SettingsMap &values)
{
    values = registryHive::parse(device.readAll(), hiveNameOf(device));
    return true;
}

bool writeHive(QIODevice &device, const QSettings::SettingsMap &values)
{
    const QByteArray content = registryHive::write(values, hiveNameOf(device));
    return device.write(content) == content.size();
}

QSettings::Format hiveFormat()
{
    static const QSettings::Format format =
        QSettings::registerFormat(QStringLiteral("reg"), readHive, writeHive, Qt::CaseInsensitive);
    return format;
}

QString hiveFilePath(const QString &hiveName)
{
    if (hiveName.compare(currentUserHive, Qt::CaseInsensitive) == 0)
        return roamingAppDataPath() + hiveFolder + currentUserHive + hiveExtension;
    if (hiveName.compare(localMachineHive, Qt::CaseInsensitive) == 0) {
        const QString firstConfigDir =
            qEnvironmentVariable("XDG_CONFIG_DIRS").split(QLatin1Char(':'), Qt::SkipEmptyParts).value(0);
        return (firstConfigDir.isEmpty() ? QStringLiteral("/etc/xdg") : firstConfigDir) + hiveFolder +
               localMachineHive + hiveExtension;
    }
    return noStoreFolder + hiveName + hiveExtension;
}

// The existing spelling of a sub-key, as the registry matches names ignoring case.
QString existingSpelling(const QSettings &settings, const QString &name)
{
    for (const QString &group : settings.childGroups()) {
        if (group.compare(name, Qt::CaseInsensitive) == 0)
            return group;
    }
    return name;
}

// How many views of each hive file are open in this process.
QHash<QString, int> &openViews()
{
    static QHash<QString, int> views;
    return views;
}

} // namespace

// QSettings reads a hive file without the writers' lock and notes its size and
// time only after reading, so a write by another process in between would pass
// for read, and the next write from here would drop it. Holding the lock while
// the view reads keeps the two together. Beside a view of the same file still
// open here, the new one's reading may first write that view's changes, under
// this same lock, so it is read as QSettings does alone.
std::unique_ptr<QSettings> openRegistryKey(const QString &registryPath)
{
    QStringList names = registryPath.split(QRegularExpression(QStringLiteral("[\\\\/]")), Qt::SkipEmptyParts);
    const QString hiveName = names.isEmpty() ? QString() : names.takeFirst();
    const QString filePath = hiveFilePath(hiveName);
    QLockFile writersLock(filePath + lockSuffix);
    if (openViews().value(filePath) == 0)
        writersLock.lock();
    auto settings = std::make_unique<QSettings>(filePath, hiveFormat());
    ++openViews()[filePath];
    QObject::connect(settings.get(), &QObject::destroyed, [filePath] { --openViews()[filePath]; });
    for (const QString &name : names)
        settings->beginGroup(existingSpelling(*settings, name));
    return settings;
}
