#pragma once

#include <filesystem>

// A new, empty folder below the system's temporary folder, removed with all
// that is in it when the object goes.
class TemporaryFolder
{
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;

    const std::filesystem::path &path() const;

private:
    std::filesystem::path path_;
};
