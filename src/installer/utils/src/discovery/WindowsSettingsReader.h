#pragma once

#include "ISettingsReader.h"

namespace orv::photoshop {

// The registry functions themselves: the key is opened for reading, the
// value's size asked first and the value read after.
class WindowsSettingsReader : public ISettingsReader
{
public:
    ~WindowsSettingsReader() override = default;

    std::string readString(std::int32_t hive, const char *keyPath, const char *valueName) const override;
    // Key path and value name are widened byte by byte, without a code page,
    // so only ASCII names are found.
    std::wstring readWideString(std::int32_t hive, const char *keyPath, const char *valueName) const override;
};

} // namespace orv::photoshop
