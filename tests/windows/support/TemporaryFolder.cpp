#include "TemporaryFolder.h"

#include <windows.h>

#include <string>
#include <system_error>

TemporaryFolder::TemporaryFolder()
{
    const std::filesystem::path base = std::filesystem::temp_directory_path();
    const std::wstring stem = L"SuiteDeployerTests-" + std::to_wstring(GetCurrentProcessId()) + L"-";
    for (unsigned number = 0; path_.empty(); ++number) {
        const std::filesystem::path candidate = base / (stem + std::to_wstring(number));
        if (std::filesystem::create_directory(candidate))
            path_ = candidate;
    }
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

const std::filesystem::path &TemporaryFolder::path() const
{
    return path_;
}
