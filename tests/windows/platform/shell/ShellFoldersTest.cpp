#include "Environment.h"
#include "ShellFolders.h"

#include <windows.h>

#include <shlobj.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

bool startsWithIgnoringCase(const std::wstring &text, const std::wstring &start)
{
    return text.size() >= start.size() &&
           CompareStringOrdinal(text.c_str(), static_cast<int>(start.size()), start.c_str(),
                                static_cast<int>(start.size()), TRUE) == CSTR_EQUAL;
}

bool isExistingFolderWithBackslashes(const std::wstring &path)
{
    return !path.empty() && path.find(L'/') == std::wstring::npos && std::filesystem::path(path).is_absolute() &&
           std::filesystem::is_directory(path);
}

} // namespace

TEST(ShellFoldersTest, TheCommonProgramsFolderLiesInTheMachineWideDataFolder)
{
    const std::wstring programs = shellFolderPath(CSIDL_COMMON_PROGRAMS);
    EXPECT_TRUE(isExistingFolderWithBackslashes(programs)) << std::filesystem::path(programs).string();
    const std::wstring programData = environmentVariable(L"ProgramData");
    ASSERT_FALSE(programData.empty());
    EXPECT_TRUE(startsWithIgnoringCase(programs, programData + L"\\"));
}

TEST(ShellFoldersTest, TheCommonPicturesFolderLiesInThePublicProfile)
{
    const std::wstring pictures = shellFolderPath(CSIDL_COMMON_PICTURES);
    EXPECT_TRUE(isExistingFolderWithBackslashes(pictures)) << std::filesystem::path(pictures).string();
    const std::wstring publicProfile = environmentVariable(L"PUBLIC");
    ASSERT_FALSE(publicProfile.empty());
    EXPECT_TRUE(startsWithIgnoringCase(pictures, publicProfile + L"\\"));
}

TEST(ShellFoldersTest, TheLocalApplicationDataFolderIsTheUsersOne)
{
    const std::wstring local = shellFolderPath(CSIDL_LOCAL_APPDATA);
    EXPECT_TRUE(isExistingFolderWithBackslashes(local)) << std::filesystem::path(local).string();
    const std::wstring expected = environmentVariable(L"LOCALAPPDATA");
    ASSERT_FALSE(expected.empty());
    EXPECT_TRUE(std::filesystem::equivalent(local, expected));
}

TEST(ShellFoldersTest, TheProgramsNumbersAreTheShellsOwn)
{
    // PathUtils asks by these numbers.
    EXPECT_EQ(shellFolderPath(23), shellFolderPath(CSIDL_COMMON_PROGRAMS));
    EXPECT_EQ(shellFolderPath(54), shellFolderPath(CSIDL_COMMON_PICTURES));
    EXPECT_EQ(shellFolderPath(28), shellFolderPath(CSIDL_LOCAL_APPDATA));
}

TEST(ShellFoldersTest, AFolderNumberThatTheShellDoesNotKnowGivesAnEmptyText)
{
    EXPECT_EQ(shellFolderPath(0xff), L"");
    EXPECT_EQ(shellFolderPath(-1), L"");
}
