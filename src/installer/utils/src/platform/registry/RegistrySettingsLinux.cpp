#include "RegistrySettings.h"

#include "AbandonedLockFile.h"
#include "FolderLock.h"
#include "RegistryHiveFormat.h"
#include "SpecialFolders.h"

#include <QFileDevice>
#include <QFileInfo>
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

bool refuseWrite(QIODevice & /*device*/, const QSettings::SettingsMap & /*values*/)
{
    return false;
}

QSettings::Format hiveFormat()
{
    static const QSettings::Format format =
        QSettings::registerFormat(QStringLiteral("reg"), readHive, writeHive, Qt::CaseInsensitive);
    return format;
}

// A view without the locks must not write: another process that holds them
// would take its QSettings lock file for a leftover and remove it.
QSettings::Format readOnlyHiveFormat()
{
    static const QSettings::Format format =
        QSettings::registerFormat(QStringLiteral("reg"), readHive, refuseWrite, Qt::CaseInsensitive);
    return format;
}

// The configuration folder that holds a hive's winreg folder.
QString configurationFolder(const QString &hiveName)
{
    if (hiveName.compare(currentUserHive, Qt::CaseInsensitive) == 0)
        return roamingAppDataPath();
    const QString firstConfigDir =
        qEnvironmentVariable("XDG_CONFIG_DIRS").split(QLatin1Char(':'), Qt::SkipEmptyParts).value(0);
    return firstConfigDir.isEmpty() ? QStringLiteral("/etc/xdg") : firstConfigDir;
}

QString hiveFilePath(const QString &hiveName)
{
    for (const QString &hive : {currentUserHive, localMachineHive}) {
        if (hiveName.compare(hive, Qt::CaseInsensitive) == 0)
            return configurationFolder(hive) + hiveFolder + hive + hiveExtension;
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

// The locks of both hives, machine first, held from the opening of a view to
// its end, so that everything QSettings reads or writes through that view
// (when it opens, on sync(), when it is destroyed, and when another view of
// the same file opens) happens under them. A view that had read the hive
// without them could note another process's newer file as read, and its next
// write would drop that process's values. Always both and always in this
// order, so two processes never wait for each other crosswise. The lock is on
// the configuration folder, which stays when a hive or its folder is made.
struct HiveLocks
{
    FolderLock machine{configurationFolder(localMachineHive)};
    FolderLock user{configurationFolder(currentUserHive)};

    // With the lock held no other writer can be in a hive, so a QSettings
    // lock file beside it is the leftover of a killed run.
    void removeAbandonedWritersLocks() const
    {
        if (machine.isHeld())
            removeAbandonedLockFile(hiveFilePath(localMachineHive) + lockSuffix);
        if (user.isHeld())
            removeAbandonedLockFile(hiveFilePath(currentUserHive) + lockSuffix);
    }
};

// The view of a registry path's key in its hive's file, read with the format given.
std::unique_ptr<QSettings> openView(const QString &registryPath, QSettings::Format format)
{
    QStringList names = registryHive::splitKeyPath(registryPath);
    const QString hiveName = names.isEmpty() ? QString() : names.takeFirst();
    auto settings = std::make_unique<QSettings>(hiveFilePath(hiveName), format);
    for (const QString &name : names)
        settings->beginGroup(existingSpelling(*settings, name));
    return settings;
}

} // namespace

std::unique_ptr<QSettings> openRegistryKey(const QString &registryPath)
{
    auto locks = std::make_shared<HiveLocks>();
    locks->removeAbandonedWritersLocks();
    auto settings = openView(registryPath, hiveFormat());
    // QObject emits destroyed after ~QSettings has written what was pending.
    QObject::connect(settings.get(), &QObject::destroyed, [locks]() mutable { locks.reset(); });
    return settings;
}

std::unique_ptr<QSettings> openRegistryKeyForReading(const QString &registryPath)
{
    return openView(registryPath, readOnlyHiveFormat());
}
