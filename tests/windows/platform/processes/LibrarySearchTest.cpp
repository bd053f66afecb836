#include "LibrarySearch.h"
#include "TemporaryFolder.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

std::filesystem::path programFolder()
{
    std::wstring self(32768, L'\0');
    self.resize(GetModuleFileNameW(nullptr, self.data(), static_cast<DWORD>(self.size())));
    return std::filesystem::path(self).parent_path();
}

// The working folder of this process for the life of the object.
class WorkingFolder
{
public:
    explicit WorkingFolder(const std::filesystem::path &folder)
        : saved_(std::filesystem::current_path())
    {
        std::filesystem::current_path(folder);
    }
    ~WorkingFolder() { std::filesystem::current_path(saved_); }
    WorkingFolder(const WorkingFolder &) = delete;
    WorkingFolder &operator=(const WorkingFolder &) = delete;

private:
    std::filesystem::path saved_;
};

} // namespace

// The restriction holds for the whole process and can't be lifted, so the one
// test takes the steps in order. Each library has a name of its own: one that
// is loaded already would be found by its name whatever the search.
TEST(LibrarySearchTest, ALibraryInTheWorkingFolderIsFoundByNameOnlyUntilTheSearchIsRestricted)
{
    const TemporaryFolder folder;
    for (const wchar_t *name : {L"PlantedBefore.dll", L"PlantedAfter.dll"})
        std::filesystem::copy_file(programFolder() / L"PlantedLibrary.dll", folder.path() / name);
    const WorkingFolder working(folder.path());

    const HMODULE before = LoadLibraryW(L"PlantedBefore.dll");
    EXPECT_NE(before, nullptr);
    if (before != nullptr)
        FreeLibrary(before);

    restrictLibrarySearch();
    const HMODULE after = LoadLibraryW(L"PlantedAfter.dll");
    EXPECT_EQ(after, nullptr);
    if (after != nullptr)
        FreeLibrary(after);

    // The system folder is still searched, and the planted file loads by its full path.
    EXPECT_NE(LoadLibraryW(L"version.dll"), nullptr);
    const HMODULE byPath = LoadLibraryW((folder.path() / L"PlantedAfter.dll").c_str());
    EXPECT_NE(byPath, nullptr);
    if (byPath != nullptr)
        FreeLibrary(byPath);
}
