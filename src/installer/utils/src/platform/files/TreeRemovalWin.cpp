#include "TreeRemovalHook.h"
#include "WindowsPath.h"

#include <windows.h>

#include <string>
#include <vector>

namespace {

bool isGone()
{
    const DWORD code = GetLastError();
    return code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND;
}

// A link to a folder (a junction or a symbolic link) is a folder to the
// system and goes as one, without its content; a read-only file goes too.
bool removeSingle(const std::wstring &path, DWORD attributes)
{
    const std::wstring name = win32Path(path);
    if (attributes & FILE_ATTRIBUTE_DIRECTORY)
        return RemoveDirectoryW(name.c_str()) || isGone();
    if (DeleteFileW(name.c_str()) || isGone())
        return true;
    if (!(attributes & FILE_ATTRIBUTE_READONLY))
        return false;
    SetFileAttributesW(name.c_str(), attributes & ~DWORD(FILE_ATTRIBUTE_READONLY));
    return DeleteFileW(name.c_str()) || isGone();
}

bool removeEntry(const std::wstring &path);

// The folder is opened without following a reparse point and checked on that
// handle, which also keeps it from being renamed or replaced while it is
// emptied by its path.
bool removeFolder(const std::wstring &path)
{
    beforeRemovalDescent(QString::fromStdWString(path));
    const HANDLE folder =
        CreateFileW(win32Path(path).c_str(), FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (folder == INVALID_HANDLE_VALUE)
        return isGone();
    BY_HANDLE_FILE_INFORMATION information = {};
    if (!GetFileInformationByHandle(folder, &information)) {
        CloseHandle(folder);
        return false;
    }
    // Wine opens what a link of the prefix's leads to; its path's attributes tell.
    const DWORD pathAttributes = GetFileAttributesW(win32Path(path).c_str());
    const DWORD attributes =
        information.dwFileAttributes |
        (pathAttributes == INVALID_FILE_ATTRIBUTES ? 0 : pathAttributes & FILE_ATTRIBUTE_REPARSE_POINT);
    if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) || !(attributes & FILE_ATTRIBUTE_DIRECTORY)) {
        CloseHandle(folder);
        return removeSingle(path, attributes);
    }
    bool removed = true;
    std::vector<std::wstring> names;
    namesInFolder(path, names);
    for (const std::wstring &name : names)
        removed = removeEntry(path + L"\\" + name) && removed;
    CloseHandle(folder);
    return removeSingle(path, attributes) && removed;
}

bool removeEntry(const std::wstring &path)
{
    const DWORD attributes = GetFileAttributesW(win32Path(path).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return isGone();
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) && !(attributes & FILE_ATTRIBUTE_REPARSE_POINT))
        return removeFolder(path);
    return removeSingle(path, attributes);
}

} // namespace

bool removeTree(const QString &path)
{
    if (path.isEmpty() || path.contains(QChar::Null))
        return true;
    std::wstring native = path.toStdWString();
    while (native.size() > 3 && (native.back() == L'/' || native.back() == L'\\'))
        native.pop_back();
    return removeEntry(native);
}
