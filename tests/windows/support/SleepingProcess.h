#pragma once

#include <windows.h>

#include <filesystem>
#include <string>

// A running process whose image name the test chooses: a copy of the helper
// program sleeping_helper.exe, which lies beside the test, under that name in
// the given folder. The constructor returns once the process runs and throws
// std::runtime_error when it can't be started; the process is ended when the
// object goes.
class SleepingProcess
{
public:
    SleepingProcess(const std::filesystem::path &folder, const std::wstring &imageName);
    ~SleepingProcess();
    SleepingProcess(const SleepingProcess &) = delete;
    SleepingProcess &operator=(const SleepingProcess &) = delete;

    bool isRunning() const;

private:
    PROCESS_INFORMATION process_ = {};
};
