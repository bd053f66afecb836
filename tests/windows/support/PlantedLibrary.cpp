#include <windows.h>

#include <string>

// A library that a test puts where a program might find it by its name alone
// (beside the program, in the working folder), under the name the program
// asks for. Loaded, it adds a line with the path of the program that loaded
// it, in UTF-8, to the file planted-library-loaded beside itself; it provides
// nothing, and the program goes on without what it looked for.
namespace {

std::wstring modulePath(HMODULE module)
{
    wchar_t path[32768];
    const DWORD length = GetModuleFileNameW(module, path, 32768);
    return std::wstring(path, length);
}

std::string utf8(const std::wstring &text)
{
    const int length = static_cast<int>(text.size());
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string result(size > 0 ? size : 0, '\0');
    if (size > 0)
        WideCharToMultiByte(CP_UTF8, 0, text.data(), length, result.data(), size, nullptr, nullptr);
    return result;
}

} // namespace

BOOL WINAPI DllMain(HINSTANCE self, DWORD reason, LPVOID)
{
    if (reason != DLL_PROCESS_ATTACH)
        return TRUE;
    const std::wstring library = modulePath(self);
    const std::wstring record = library.substr(0, library.find_last_of(L'\\') + 1) + L"planted-library-loaded";
    const std::string line = utf8(modulePath(nullptr)) + '\n';
    // Appended: more than one program may load it.
    const HANDLE file = CreateFileW(record.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
        DWORD count = 0;
        WriteFile(file, line.data(), static_cast<DWORD>(line.size()), &count, nullptr);
        CloseHandle(file);
    }
    return TRUE;
}
