#pragma once

#include <QByteArray>
#include <QMetaType>
#include <QSettings>
#include <QString>
#include <QStringList>

// The text form of one registry hive, as the Windows registry editor exports
// it, and its mapping onto QSettings keys below the hive: the section
// [HKEY_CURRENT_USER\SOFTWARE\Tavrin] with "InstallPath"="x" is the key
// "SOFTWARE/Tavrin/InstallPath"; a key's default value (@) is the name ".".
namespace registryHive {

// A value of a type that the program does not use (hex:, hex(2):, ...): not a
// string or number through QSettings, but written back as it was read, so that
// other programs' data is never lost.
struct RawValue
{
    QString text;

    bool operator==(const RawValue &other) const { return text == other.text; }
};

// Tolerant: comments, lines that cannot be parsed and sections of another hive
// are skipped. Names that differ only in case are merged into the spelling met
// first, and of two values for one name the first one wins.
QSettings::SettingsMap parse(const QByteArray &fileContent, const QString &hiveName);

// UTF-8 without byte-order mark, LF line ends; sections sorted by path and
// values by name, ignoring case, the default value first; no section for a key
// without values.
QByteArray write(const QSettings::SettingsMap &values, const QString &hiveName);

// The names of a key path: QSettings takes both \\ and / as separators, and
// empty names count as nothing ("\\A//B\\" is A, B).
QStringList splitKeyPath(const QString &path);

} // namespace registryHive

Q_DECLARE_METATYPE(registryHive::RawValue)
