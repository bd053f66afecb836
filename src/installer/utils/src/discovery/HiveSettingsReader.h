#pragma once

#include "ISettingsReader.h"

namespace orv::photoshop {

// The reader of the Linux build: the hive files behind openRegistryKey, so that
// what the program writes through QSettings is what this reads. It gives what
// the registry functions would: a text up to its first zero, a 32-bit number
// as its four bytes low byte first (narrow: cut at the first zero byte; wide:
// two 16-bit units, cut at the first zero unit), and the empty text for a
// missing key or value and for values of any other type. Key paths and value
// names are UTF-8 and match ignoring case; an empty value name is the key's
// default value.
class HiveSettingsReader : public ISettingsReader
{
public:
    std::string readString(std::int32_t hive, const char *keyPath, const char *valueName) const override;
    std::wstring readWideString(std::int32_t hive, const char *keyPath, const char *valueName) const override;
};

} // namespace orv::photoshop
