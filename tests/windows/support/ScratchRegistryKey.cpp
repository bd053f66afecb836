#include "ScratchRegistryKey.h"

#include <atomic>
#include <stdexcept>

namespace {

std::wstring widened(const std::string &ascii)
{
    return std::wstring(ascii.begin(), ascii.end());
}

std::string uniqueProduct()
{
    static std::atomic<unsigned> counter{0};
    return "Scratch-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(counter++);
}

} // namespace

const char *const ScratchRegistryKey::company = "SuiteDeployerTests";

ScratchRegistryKey::ScratchRegistryKey(HKEY hive, const std::string &parent)
    : hive_(hive)
    , companyPath_(parent + "\\" + company)
    , product_(uniqueProduct())
    , path_(companyPath_ + "\\" + product_)
{
    if (RegCreateKeyExW(hive_, widened(path_).c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr,
                        &key_, nullptr) != ERROR_SUCCESS)
        throw std::runtime_error("cannot create the registry key " + path_);
}

ScratchRegistryKey::~ScratchRegistryKey()
{
    RegCloseKey(key_);
    RegDeleteTreeW(hive_, widened(path_).c_str());
    // Fails while another test's key is still there, and that one removes it.
    RegDeleteKeyW(hive_, widened(companyPath_).c_str());
}

const std::string &ScratchRegistryKey::path() const
{
    return path_;
}

const std::string &ScratchRegistryKey::product() const
{
    return product_;
}

void ScratchRegistryKey::setBytes(const std::wstring &valueName, DWORD type, const void *data, std::size_t size)
{
    if (RegSetValueExW(key_, valueName.c_str(), 0, type, static_cast<const BYTE *>(data), static_cast<DWORD>(size)) !=
        ERROR_SUCCESS)
        throw std::runtime_error("cannot write a registry value below " + path_);
}

void ScratchRegistryKey::setNarrow(const std::string &valueName, const std::string &bytes)
{
    if (RegSetValueExA(key_, valueName.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE *>(bytes.data()),
                       static_cast<DWORD>(bytes.size())) != ERROR_SUCCESS)
        throw std::runtime_error("cannot write a registry value below " + path_);
}

void ScratchRegistryKey::setWide(const std::wstring &valueName, const std::wstring &units)
{
    setBytes(valueName, REG_SZ, units.data(), units.size() * sizeof(wchar_t));
}

void ScratchRegistryKey::setNumber(const std::wstring &valueName, DWORD number)
{
    setBytes(valueName, REG_DWORD, &number, sizeof(number));
}
