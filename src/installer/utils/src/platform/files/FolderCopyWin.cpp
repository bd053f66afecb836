#include "FolderCopy.h"

#include "TargetRefusal.h"
#include "WindowsPath.h"

#include <windows.h>

#include <string>
#include <vector>
#include <system_error>

// Not std::filesystem::copy: mingw-w64's library tells files apart by the
// inode number of _wstat64, which is 0 for every file on Windows, so it takes
// any existing target for the source itself and refuses to copy onto it.

namespace fs = std::filesystem;

namespace {

std::wstring win32Path(const fs::path &path)
{
    return ::win32Path(path.native());
}

std::error_code lastError()
{
    return std::error_code(static_cast<int>(GetLastError()), std::system_category());
}

// A path that isn't there has a status of its own; that is no error here. A
// link counts as what it leads to, which the copy follows.
fs::file_status statusOf(const fs::path &path, std::error_code &error)
{
    const DWORD attributes = GetFileAttributesW(win32Path(path).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        const DWORD code = GetLastError();
        if (code != ERROR_FILE_NOT_FOUND && code != ERROR_PATH_NOT_FOUND)
            error = std::error_code(static_cast<int>(code), std::system_category());
        return fs::file_status(fs::file_type::not_found);
    }
    return fs::file_status((attributes & FILE_ATTRIBUTE_DIRECTORY) ? fs::file_type::directory : fs::file_type::regular);
}

// The names in a folder, without "." and "..".
std::vector<std::wstring> namesIn(const fs::path &folder, std::error_code &error)
{
    std::vector<std::wstring> names;
    if (!namesInFolder(folder.native(), names))
        error = lastError();
    return names;
}

// The volume's serial number and the file's index on it, whichever path leads there.
bool identify(const fs::path &path, BY_HANDLE_FILE_INFORMATION &identity)
{
    const HANDLE handle =
        CreateFileW(win32Path(path).c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return false;
    const bool known = GetFileInformationByHandle(handle, &identity) != FALSE;
    CloseHandle(handle);
    return known;
}

bool isSameFile(const fs::path &first, const fs::path &second)
{
    BY_HANDLE_FILE_INFORMATION one = {};
    BY_HANDLE_FILE_INFORMATION other = {};
    return identify(first, one) && identify(second, other) && one.dwVolumeSerialNumber == other.dwVolumeSerialNumber &&
           one.nFileIndexHigh == other.nFileIndexHigh && one.nFileIndexLow == other.nFileIndexLow;
}

// What rules the copy out before anything is written, as the standard copy checks it.
std::error_code conflictOf(const fs::path &from, const fs::path &to, fs::file_status source, fs::file_status target)
{
    if (fs::is_other(source) || fs::is_other(target))
        return std::make_error_code(std::errc::invalid_argument);
    if (fs::exists(target) && isSameFile(from, to))
        return std::make_error_code(std::errc::file_exists);
    if (fs::is_directory(source) && fs::is_regular_file(target))
        return std::make_error_code(std::errc::is_a_directory);
    return {};
}

// CopyFileW gives the copy the source's attributes, and refuses to replace a
// read-only file: an earlier copy of a read-only source would block every update.
void allowReplacing(const fs::path &target)
{
    const DWORD attributes = GetFileAttributesW(win32Path(target).c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) &&
        !(attributes & FILE_ATTRIBUTE_REPARSE_POINT))
        SetFileAttributesW(win32Path(target).c_str(), attributes & ~DWORD(FILE_ATTRIBUTE_READONLY));
}

void copyFile(const fs::path &from, const fs::path &to, std::error_code &error)
{
    const fs::file_status target = statusOf(to, error);
    if (error)
        return;
    if (fs::exists(target) && !fs::is_regular_file(target)) {
        error = std::make_error_code(std::errc::invalid_argument);
        return;
    }
    if (fs::exists(target) && isSameFile(from, to)) {
        error = std::make_error_code(std::errc::file_exists);
        return;
    }
    if (fs::exists(target))
        allowReplacing(to);
    // The file that a running host holds is the one to name, not the folders.
    if (!CopyFileW(win32Path(from).c_str(), win32Path(to).c_str(), FALSE))
        throw fs::filesystem_error("cannot copy", from, to, lastError());
}

void copyEntry(const fs::path &from, const fs::path &to, std::error_code &error);

void copyFolder(const fs::path &from, const fs::path &to, fs::file_status target, std::error_code &error)
{
    // The new folder takes the attributes of the source's, as the standard copy does.
    if (!fs::exists(target) && !CreateDirectoryExW(win32Path(from).c_str(), win32Path(to).c_str(), nullptr)) {
        error = lastError();
        return;
    }
    for (const std::wstring &name : namesIn(from, error)) {
        if (error)
            return;
        copyEntry(from / name, to / name, error);
    }
}

// A link or junction in the target is never written through: it is left
// alone with a warning, and the rest is copied.
bool isRefusedTarget(const fs::path &to)
{
    const DWORD attributes = GetFileAttributesW(win32Path(to).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_REPARSE_POINT))
        return false;
    refuseLinkedTarget(to);
    return true;
}

void copyEntry(const fs::path &from, const fs::path &to, std::error_code &error)
{
    if (isRefusedTarget(to))
        return;
    const fs::file_status source = statusOf(from, error);
    if (!error && !fs::exists(source))
        error = std::make_error_code(std::errc::no_such_file_or_directory);
    if (error)
        return;
    const fs::file_status target = statusOf(to, error);
    if (!error)
        error = conflictOf(from, to, source, target);
    if (error)
        return;
    if (fs::is_regular_file(source))
        copyFile(from, fs::is_directory(target) ? to / from.filename() : to, error);
    else if (fs::is_directory(source))
        copyFolder(from, to, target, error);
}

} // namespace

void copyTree(const fs::path &from, const fs::path &to)
{
    std::error_code error;
    copyEntry(from, to, error);
    if (error)
        throw fs::filesystem_error("cannot copy", from, to, error);
}
