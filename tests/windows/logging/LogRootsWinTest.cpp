#include "Environment.h"
#include "logging/LogRoots.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

std::filesystem::path asStandardPath(const boost::filesystem::path &path)
{
    return std::filesystem::path(path.wstring());
}

void expectFolderOfVariable(const boost::filesystem::path &root, const wchar_t *variable)
{
    const std::filesystem::path folder = asStandardPath(root);
    const std::wstring expected = environmentVariable(variable);
    ASSERT_FALSE(expected.empty());
    EXPECT_TRUE(folder.is_absolute()) << folder.string();
    EXPECT_TRUE(std::filesystem::is_directory(folder)) << folder.string();
    EXPECT_TRUE(std::filesystem::equivalent(folder, expected)) << folder.string();
}

} // namespace

TEST(LogRootsWinTest, TheFirstRootIsTheUsersRoamingFolder)
{
    expectFolderOfVariable(kelp::logging::logRoots()[0], L"APPDATA");
}

TEST(LogRootsWinTest, TheSecondRootIsTheUsersLocalFolder)
{
    expectFolderOfVariable(kelp::logging::logRoots()[1], L"LOCALAPPDATA");
}

TEST(LogRootsWinTest, TheThirdRootIsTheMachineWideDataFolder)
{
    expectFolderOfVariable(kelp::logging::logRoots()[2], L"ProgramData");
}

TEST(LogRootsWinTest, TheRootsAreThreeDifferentFolders)
{
    const auto roots = kelp::logging::logRoots();
    EXPECT_FALSE(std::filesystem::equivalent(asStandardPath(roots[0]), asStandardPath(roots[1])));
    EXPECT_FALSE(std::filesystem::equivalent(asStandardPath(roots[1]), asStandardPath(roots[2])));
    EXPECT_FALSE(std::filesystem::equivalent(asStandardPath(roots[0]), asStandardPath(roots[2])));
}
