#include <windows.h>

#include <string>

// Stands in for wmic.exe on a Wine test machine, wherever a test puts it: it
// records its arguments in fake-wmic\arguments beside itself as UTF-8, one a
// line, and the program name it was started by (argv[0]) in fake-wmic\program;
// reads its standard input to the end, as Windows' wmic does when that input
// is a pipe; then writes the bytes of fake-wmic\stdout and fake-wmic\stderr
// to its standard output and error, unchanged.
namespace {

std::wstring dataFolder()
{
    wchar_t module[32768];
    const DWORD length = GetModuleFileNameW(nullptr, module, 32768);
    std::wstring folder(module, length);
    return folder.substr(0, folder.find_last_of(L'\\') + 1) + L"fake-wmic\\";
}

std::string readAll(const std::wstring &path)
{
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    std::string content;
    if (file == INVALID_HANDLE_VALUE)
        return content;
    char buffer[4096];
    DWORD count = 0;
    while (ReadFile(file, buffer, sizeof(buffer), &count, nullptr) && count > 0)
        content.append(buffer, count);
    CloseHandle(file);
    return content;
}

void readToTheEnd(HANDLE handle)
{
    char buffer[4096];
    DWORD count = 0;
    while (ReadFile(handle, buffer, sizeof(buffer), &count, nullptr) && count > 0) {}
}

void writeAll(HANDLE handle, const std::string &bytes)
{
    DWORD count = 0;
    if (!bytes.empty())
        WriteFile(handle, bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr);
}

void writeFile(const std::wstring &path, const std::string &bytes)
{
    const HANDLE file =
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return;
    writeAll(file, bytes);
    CloseHandle(file);
}

std::string utf8(const wchar_t *text)
{
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::string result(size > 0 ? size - 1 : 0, '\0');
    if (size > 1)
        WideCharToMultiByte(CP_UTF8, 0, text, -1, result.data(), size, nullptr, nullptr);
    return result;
}

} // namespace

int wmain(int argc, wchar_t **argv)
{
    const std::wstring folder = dataFolder();
    std::string arguments;
    for (int i = 1; i < argc; ++i)
        arguments += utf8(argv[i]) + '\n';
    writeFile(folder + L"arguments", arguments);
    writeFile(folder + L"program", utf8(argv[0]));
    readToTheEnd(GetStdHandle(STD_INPUT_HANDLE));
    writeAll(GetStdHandle(STD_OUTPUT_HANDLE), readAll(folder + L"stdout"));
    writeAll(GetStdHandle(STD_ERROR_HANDLE), readAll(folder + L"stderr"));
    return 0;
}
