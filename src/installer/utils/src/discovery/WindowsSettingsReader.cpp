#include "WindowsSettingsReader.h"

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#include <cstddef>

namespace orv::photoshop {
namespace {

HKEY hiveKey(std::int32_t hive)
{
    return hive == LocalMachineHive ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

// Closes a key that was opened, on every way out of a read.
class OpenKey
{
public:
    explicit OpenKey(HKEY key)
        : key_(key)
    {
    }
    ~OpenKey() { RegCloseKey(key_); }
    OpenKey(const OpenKey &) = delete;
    OpenKey &operator=(const OpenKey &) = delete;

private:
    HKEY key_;
};

// Each byte sign-extended to one 16-bit unit, as the wide functions get it.
std::wstring widened(const char *text)
{
    std::wstring result;
    for (; text != nullptr && *text != '\0'; ++text)
        result += static_cast<wchar_t>(static_cast<signed char>(*text));
    return result;
}

template <typename Text>
Text upToFirstZero(const Text &text)
{
    return text.substr(0, text.find(typename Text::value_type()));
}

} // namespace

std::string WindowsSettingsReader::readString(std::int32_t hive, const char *keyPath, const char *valueName) const
{
    std::string result;
    HKEY key = nullptr;
    if (RegOpenKeyExA(hiveKey(hive), keyPath, 0, KEY_READ, &key) != ERROR_SUCCESS)
        return result;
    const OpenKey openKey(key);
    DWORD size = 0;
    if (RegQueryValueExA(key, valueName, nullptr, nullptr, nullptr, &size) != ERROR_SUCCESS)
        return result;
    std::string buffer(std::size_t{size} + 1, '\0');
    if (RegQueryValueExA(key, valueName, nullptr, nullptr, reinterpret_cast<LPBYTE>(buffer.data()), &size) !=
        ERROR_SUCCESS)
        return result;
    buffer.resize(size);
    result = upToFirstZero(buffer);
    return result;
}

std::wstring WindowsSettingsReader::readWideString(std::int32_t hive, const char *keyPath, const char *valueName) const
{
    std::wstring result;
    const std::wstring widePath = widened(keyPath);
    const std::wstring wideName = widened(valueName);
    HKEY key = nullptr;
    if (RegOpenKeyExW(hiveKey(hive), widePath.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS)
        return result;
    const OpenKey openKey(key);
    DWORD size = 0;
    if (RegQueryValueExW(key, wideName.c_str(), nullptr, nullptr, nullptr, &size) != ERROR_SUCCESS)
        return result;
    std::wstring buffer(std::size_t{size} / 2 + 1, L'\0');
    if (RegQueryValueExW(key, wideName.c_str(), nullptr, nullptr, reinterpret_cast<LPBYTE>(buffer.data()), &size) !=
        ERROR_SUCCESS)
        return result;
    buffer.resize(std::size_t{size} / 2);
    result = upToFirstZero(buffer);
    return result;
}

std::unique_ptr<ISettingsReader> makeSettingsReader()
{
    return std::make_unique<WindowsSettingsReader>();
}

} // namespace orv::photoshop
