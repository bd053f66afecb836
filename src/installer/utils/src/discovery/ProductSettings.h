#pragma once

#include "ISettingsReader.h"

#include <memory>
#include <string>

// One product's registry key, read with plain standard strings: the per-user
// values under Software\<company>\<product>, the per-machine values under the
// 32-bit view's key Software\WOW6432Node\<company>\<product>. A value that
// isn't there reads as the empty text.
class ProductSettings
{
public:
    // Reads through this platform's reader.
    ProductSettings(const std::string &company, const std::string &product);
    // Takes the reader over, leaving the given pointer empty.
    ProductSettings(std::unique_ptr<orv::photoshop::ISettingsReader> &&reader, const std::string &company,
                    const std::string &product);

    std::string readUserValue(const char *valueName) const;
    std::wstring readMachineValue(const char *valueName) const;

    const std::string company;
    const std::string product;

private:
    std::unique_ptr<orv::photoshop::ISettingsReader> reader;
};
