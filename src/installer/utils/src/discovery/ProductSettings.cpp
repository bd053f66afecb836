#include "ProductSettings.h"

#include <sstream>
#include <utility>

ProductSettings::ProductSettings(const std::string &company, const std::string &product)
    : company(company)
    , product(product)
    , reader(orv::photoshop::makeSettingsReader())
{
}

ProductSettings::ProductSettings(std::unique_ptr<orv::photoshop::ISettingsReader> &&reader, const std::string &company,
                                 const std::string &product)
    : company(company)
    , product(product)
    , reader(std::move(reader))
{
}

std::string ProductSettings::readUserValue(const char *valueName) const
{
    if (!reader)
        return {};
    std::ostringstream key;
    key << "Software\\" << company << "\\" << product;
    return reader->readString(orv::photoshop::CurrentUserHive, key.str().c_str(), valueName);
}

std::wstring ProductSettings::readMachineValue(const char *valueName) const
{
    if (!reader)
        return {};
    std::ostringstream key;
    key << "Software\\WOW6432Node\\" << company << "\\" << product;
    return reader->readWideString(orv::photoshop::LocalMachineHive, key.str().c_str(), valueName);
}
