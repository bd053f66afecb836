#include "ToolhelpListing.h"

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#include <tlhelp32.h>

#include <cstddef>

namespace {

const std::string lineEnd = "\r\r\n";

// Closes the snapshot on every way out.
class SnapshotHandle
{
public:
    explicit SnapshotHandle(HANDLE handle)
        : handle_(handle)
    {
    }
    ~SnapshotHandle() { CloseHandle(handle_); }
    SnapshotHandle(const SnapshotHandle &) = delete;
    SnapshotHandle &operator=(const SnapshotHandle &) = delete;

private:
    HANDLE handle_;
};

std::string utf8(const std::wstring &text)
{
    if (text.empty())
        return std::string();
    const int length = static_cast<int>(text.size());
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, result.data(), size, nullptr, nullptr);
    return result;
}

std::wstring lastPathComponent(const std::wstring &path)
{
    const std::wstring::size_type separator = path.find_last_of(L"\\/");
    return separator == std::wstring::npos ? path : path.substr(separator + 1);
}

std::vector<std::wstring> snapshotImageNames()
{
    std::vector<std::wstring> names;
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (snapshot == INVALID_HANDLE_VALUE)
        return names;
    const SnapshotHandle snapshotHandle(snapshot);
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof(entry);
    for (BOOL found = Process32FirstW(snapshot, &entry); found; found = Process32NextW(snapshot, &entry))
        names.emplace_back(entry.szExeFile);
    return names;
}

} // namespace

std::string toolhelpCaptionList()
{
    return captionListOf(snapshotImageNames());
}

std::string captionListOf(const std::vector<std::wstring> &imageNames)
{
    std::string list = "Caption" + lineEnd;
    for (const std::wstring &imageName : imageNames) {
        const std::string name = utf8(lastPathComponent(imageName));
        if (!name.empty())
            list += name + lineEnd;
    }
    return list;
}
