#include "SleepingProcess.h"

#include <atomic>
#include <stdexcept>

namespace {

std::filesystem::path helperProgram()
{
    std::wstring self(MAX_PATH, L'\0');
    self.resize(GetModuleFileNameW(nullptr, self.data(), static_cast<DWORD>(self.size())));
    return std::filesystem::path(self).parent_path() / L"sleeping_helper.exe";
}

std::string uniqueEventName()
{
    static std::atomic<unsigned> counter{0};
    return "SuiteDeployerTests-ready-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(counter++);
}

// Closes the event on every way out of the constructor.
class ReadyEvent
{
public:
    explicit ReadyEvent(const std::string &name)
        : handle_(CreateEventA(nullptr, TRUE, FALSE, name.c_str()))
    {
    }
    ~ReadyEvent() { CloseHandle(handle_); }
    ReadyEvent(const ReadyEvent &) = delete;
    ReadyEvent &operator=(const ReadyEvent &) = delete;

    HANDLE handle() const { return handle_; }

private:
    HANDLE handle_;
};

} // namespace

SleepingProcess::SleepingProcess(const std::filesystem::path &folder, const std::wstring &imageName)
{
    const std::filesystem::path image = folder / imageName;
    if (!std::filesystem::exists(image))
        std::filesystem::copy_file(helperProgram(), image);
    const std::string eventName = uniqueEventName();
    const ReadyEvent ready(eventName);
    std::wstring commandLine = L"\"" + image.wstring() + L"\" " + std::wstring(eventName.begin(), eventName.end()) +
                               L" " + std::to_wstring(GetCurrentProcessId());
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    if (!CreateProcessW(image.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &process_))
        throw std::runtime_error("cannot start the helper program");
    // The helper sets the event once it runs, or ends at once when it can't.
    const HANDLE started[] = {ready.handle(), process_.hProcess};
    WaitForMultipleObjects(2, started, FALSE, INFINITE);
}

SleepingProcess::~SleepingProcess()
{
    TerminateProcess(process_.hProcess, 0);
    WaitForSingleObject(process_.hProcess, INFINITE);
    CloseHandle(process_.hThread);
    CloseHandle(process_.hProcess);
}

bool SleepingProcess::isRunning() const
{
    return WaitForSingleObject(process_.hProcess, 0) == WAIT_TIMEOUT;
}
