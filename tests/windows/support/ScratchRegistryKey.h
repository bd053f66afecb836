#pragma once

#include <windows.h>

#include <cstddef>
#include <string>

// A key of one test's own, <parent>\SuiteDeployerTests\<product> in a hive
// (by default HKEY_CURRENT_USER\Software\SuiteDeployerTests\<product>),
// deleted with everything in it when the object goes. The constructor throws
// std::runtime_error when the key can't be made, as in the machine's hive
// without administrator rights. Values are written with exactly the bytes
// given, so that texts without an end zero, with an inner zero or of an odd
// size can be stored.
class ScratchRegistryKey
{
public:
    explicit ScratchRegistryKey(HKEY hive = HKEY_CURRENT_USER, const std::string &parent = "Software");
    ~ScratchRegistryKey();
    ScratchRegistryKey(const ScratchRegistryKey &) = delete;
    ScratchRegistryKey &operator=(const ScratchRegistryKey &) = delete;

    static const char *const company;

    // The key's path in its hive.
    const std::string &path() const;
    // The last name of the path.
    const std::string &product() const;

    void setBytes(const std::wstring &valueName, DWORD type, const void *data, std::size_t size);
    // A REG_SZ value of these narrow bytes, as given, through the narrow function.
    void setNarrow(const std::string &valueName, const std::string &bytes);
    // A REG_SZ value of these 16-bit units, as given.
    void setWide(const std::wstring &valueName, const std::wstring &units);
    void setNumber(const std::wstring &valueName, DWORD number);

private:
    HKEY hive_;
    std::string companyPath_;
    std::string product_;
    std::string path_;
    HKEY key_ = nullptr;
};
