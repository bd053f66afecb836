#include "ForeignHive.h"

#include "RegistryHiveFormat.h"

QByteArray foreignMachineHive(int keys, int valuesPerKey)
{
    QSettings::SettingsMap values;
    for (int key = 0; key < keys; ++key) {
        const QString path = QStringLiteral("SOFTWARE/%1 %2/").arg(key % 2 ? "Adobe" : "Zeta").arg(key);
        for (int value = 0; value < valuesPerKey; ++value)
            values.insert(path + QString::number(value),
                          QStringLiteral("foreign text %1 of key %2").arg(value).arg(key));
    }
    return registryHive::write(values, QStringLiteral("HKEY_LOCAL_MACHINE"));
}
