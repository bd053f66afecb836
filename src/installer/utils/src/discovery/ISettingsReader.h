#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace orv::photoshop {

// The hive flag of the reads: 0 is the machine's hive, any other value the user's.
enum RegistryHive : std::int32_t {
    LocalMachineHive = 0,
    CurrentUserHive = 1,
};

// Reads one value of a registry key as text, for code that runs before or
// without QSettings. The value's type is never asked: a text comes back up to
// its first zero, a number as its bytes taken as text. A missing key, a missing
// value or one that can't be read gives the empty text; nothing is reported.
class ISettingsReader
{
public:
    virtual ~ISettingsReader() = default;

    virtual std::string readString(std::int32_t hive, const char *keyPath, const char *valueName) const = 0;
    virtual std::wstring readWideString(std::int32_t hive, const char *keyPath, const char *valueName) const = 0;
};

// The reader of this platform: the registry itself on Windows, the hive files on Linux.
std::unique_ptr<ISettingsReader> makeSettingsReader();

} // namespace orv::photoshop
