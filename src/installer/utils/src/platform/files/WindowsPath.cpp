#include "WindowsPath.h"

#include <windows.h>

#include <filesystem>

// Every call that takes it is the system's own: the C runtime under the
// standard library takes no such form.
std::wstring win32Path(const std::wstring &path)
{
    if (path.size() < MAX_PATH || !std::filesystem::path(path).is_absolute() || path.rfind(L"\\\\", 0) == 0)
        return path;
    std::wstring text = path;
    for (wchar_t &character : text) {
        if (character == L'/')
            character = L'\\';
    }
    return L"\\\\?\\" + text;
}

bool namesInFolder(const std::wstring &folder, std::vector<std::wstring> &names)
{
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW(win32Path(folder + L"\\*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return false;
    do {
        const std::wstring name = found.cFileName;
        if (name != L"." && name != L"..")
            names.push_back(name);
    } while (FindNextFileW(search, &found));
    const DWORD code = GetLastError();
    FindClose(search);
    SetLastError(code);
    return code == ERROR_NO_MORE_FILES;
}
