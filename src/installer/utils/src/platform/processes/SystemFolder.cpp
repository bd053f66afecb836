#include "SystemFolder.h"

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

std::wstring inSystemFolder(const std::wstring &relative)
{
    std::wstring folder(MAX_PATH, L'\0');
    UINT length = GetSystemDirectoryW(folder.data(), static_cast<UINT>(folder.size()));
    // A longer folder: the first call gave the size it needs, end zero included.
    if (length >= folder.size()) {
        folder.resize(length);
        length = GetSystemDirectoryW(folder.data(), static_cast<UINT>(folder.size()));
    }
    if (length == 0 || length >= folder.size())
        return std::wstring();
    folder.resize(length);
    return folder + L'\\' + relative;
}
