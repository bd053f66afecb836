#include "HiveSettingsReader.h"

#include "RegistrySettings.h"

#include <QStringList>
#include <QVariant>

namespace orv::photoshop {
namespace {

const QString localMachinePath = QStringLiteral("HKEY_LOCAL_MACHINE\\");
const QString currentUserPath = QStringLiteral("HKEY_CURRENT_USER\\");
const QString defaultValueName = QStringLiteral(".");

QString registryPath(std::int32_t hive, const char *keyPath)
{
    return (hive == LocalMachineHive ? localMachinePath : currentUserPath) + QString::fromUtf8(keyPath);
}

// The spelling under which the view holds the value, as names match ignoring
// case in the registry and exactly in QSettings. A separator would reach into
// a sub-key, which a value name never does; such a name finds nothing.
QString storedName(const QSettings &key, const char *valueName)
{
    QString name = valueName == nullptr || *valueName == '\0' ? defaultValueName : QString::fromUtf8(valueName);
    if (name.contains(QLatin1Char('/')) || name.contains(QLatin1Char('\\')))
        return {};
    if (key.contains(name))
        return name;
    for (const QString &childKey : key.childKeys()) {
        if (childKey.compare(name, Qt::CaseInsensitive) == 0)
            return childKey;
    }
    return {};
}

QVariant readValue(std::int32_t hive, const char *keyPath, const char *valueName)
{
    const auto key = openRegistryKeyForReading(registryPath(hive, keyPath));
    const QString name = storedName(*key, valueName);
    return name.isEmpty() ? QVariant() : key->value(name);
}

bool isNumber(const QVariant &value)
{
    return value.userType() == QMetaType::Int || value.userType() == QMetaType::UInt;
}

template <typename Text>
Text upToFirstZero(const Text &text)
{
    return text.substr(0, text.find(typename Text::value_type()));
}

} // namespace

std::string HiveSettingsReader::readString(std::int32_t hive, const char *keyPath, const char *valueName) const
{
    const QVariant value = readValue(hive, keyPath, valueName);
    if (value.userType() == QMetaType::QString)
        return upToFirstZero(value.toString().toStdString());
    if (!isNumber(value))
        return {};
    const quint32 number = value.toUInt();
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>((number >> shift) & 0xFF);
    return upToFirstZero(bytes);
}

std::wstring HiveSettingsReader::readWideString(std::int32_t hive, const char *keyPath, const char *valueName) const
{
    const QVariant value = readValue(hive, keyPath, valueName);
    if (value.userType() == QMetaType::QString)
        return upToFirstZero(value.toString().toStdWString());
    if (!isNumber(value))
        return {};
    const quint32 number = value.toUInt();
    const std::wstring units = {static_cast<wchar_t>(number & 0xFFFF), static_cast<wchar_t>(number >> 16)};
    return upToFirstZero(units);
}

std::unique_ptr<ISettingsReader> makeSettingsReader()
{
    return std::make_unique<HiveSettingsReader>();
}

} // namespace orv::photoshop
