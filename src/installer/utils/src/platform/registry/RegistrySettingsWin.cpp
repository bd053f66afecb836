#include "RegistrySettings.h"

std::unique_ptr<QSettings> openRegistryKey(const QString &registryPath)
{
    return std::make_unique<QSettings>(registryPath, QSettings::NativeFormat);
}

std::unique_ptr<QSettings> openRegistryKeyForReading(const QString &registryPath)
{
    return openRegistryKey(registryPath);
}
