#include <windows.h>

#include <string>

// Starts a program as the setup wizard does: with this process's standard
// handles passed on explicitly (STARTF_USESTDHANDLES), so that the program
// writes to the pipes of whoever started the launcher, and ends with the
// program's exit code. Options before "--" change the program's environment:
//
//   WizardLauncher.exe [--set NAME=VALUE | --unset NAME]... -- C:\setup\SuiteDeployer.exe ARGUMENTS...
namespace {

// One argument as the C run-time's parser reads it back.
std::wstring quoted(const std::wstring &argument)
{
    if (!argument.empty() && argument.find_first_of(L" \t\"") == std::wstring::npos)
        return argument;
    std::wstring result = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t letter : argument) {
        if (letter == L'\\') {
            ++backslashes;
            continue;
        }
        result.append(letter == L'"' ? backslashes * 2 + 1 : backslashes, L'\\');
        backslashes = 0;
        result += letter;
    }
    result.append(backslashes * 2, L'\\');
    return result + L"\"";
}

} // namespace

int wmain(int argc, wchar_t **argv)
{
    int next = 1;
    for (; next < argc && std::wstring(argv[next]) != L"--"; next += 2) {
        if (next + 1 >= argc)
            return 120;
        const std::wstring option = argv[next];
        std::wstring value = argv[next + 1];
        if (option == L"--unset") {
            SetEnvironmentVariableW(value.c_str(), nullptr);
        } else if (option == L"--set" && value.find(L'=') != std::wstring::npos) {
            const std::size_t equals = value.find(L'=');
            SetEnvironmentVariableW(value.substr(0, equals).c_str(), value.substr(equals + 1).c_str());
        } else {
            return 120;
        }
    }
    if (next + 1 >= argc)
        return 120;
    std::wstring commandLine;
    for (int i = next + 1; i < argc; ++i)
        commandLine += (i > next + 1 ? L" " : L"") + quoted(argv[i]);

    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    startup.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
    startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(argv[next + 1], commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                        &process))
        return 121;
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD exitCode = 0;
    GetExitCodeProcess(process.hProcess, &exitCode);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return static_cast<int>(exitCode);
}
