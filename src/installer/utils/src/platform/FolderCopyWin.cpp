#include "FolderCopy.h"

#include <windows.h>

#include <system_error>

// Not std::filesystem::copy: mingw-w64's library tells files apart by the
// inode number of _wstat64, which is 0 for every file on Windows, so it takes
// any existing target for the source itself and refuses to copy onto it.

namespace fs = std::filesystem;

namespace {

std::error_code lastError()
{
    return std::error_code(static_cast<int>(GetLastError()), std::system_category());
}

// A path that isn't there has a status of its own; that is no error here.
fs::file_status statusOf(const fs::path &path, std::error_code &error)
{
    const fs::file_status status = fs::status(path, error);
    if (status.type() == fs::file_type::not_found)
        error.clear();
    return status;
}

// The volume's serial number and the file's index on it, whichever path leads there.
bool identify(const fs::path &path, BY_HANDLE_FILE_INFORMATION &identity)
{
    const HANDLE handle = CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
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

void copyFile(const fs::path &from, const fs::path &to, std::error_code &error)
{
    const fs::file_status target = statusOf(to, error);
    if (error)
        return;
    if (fs::exists(target) && !fs::is_regular_file(target))
        error = std::make_error_code(std::errc::invalid_argument);
    else if (fs::exists(target) && isSameFile(from, to))
        error = std::make_error_code(std::errc::file_exists);
    else if (!CopyFileW(from.c_str(), to.c_str(), FALSE))
        error = lastError();
}

void copyEntry(const fs::path &from, const fs::path &to, std::error_code &error);

void copyFolder(const fs::path &from, const fs::path &to, fs::file_status target, std::error_code &error)
{
    if (!fs::exists(target) && !fs::create_directory(to, from, error) && error)
        return;
    fs::directory_iterator entry(from, error);
    while (!error && entry != fs::directory_iterator()) {
        copyEntry(entry->path(), to / entry->path().filename(), error);
        if (!error)
            entry.increment(error);
    }
}

void copyEntry(const fs::path &from, const fs::path &to, std::error_code &error)
{
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
