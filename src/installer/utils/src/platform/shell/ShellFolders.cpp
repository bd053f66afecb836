#include "ShellFolders.h"

#include <windows.h>

#include <shlobj.h>

std::wstring shellFolderPath(int folder)
{
    wchar_t path[MAX_PATH] = {};
    if (SHGetFolderPathW(nullptr, folder, nullptr, SHGFP_TYPE_CURRENT, path) != S_OK)
        return std::wstring();
    return path;
}
