#include "SystemFolder.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

namespace {

std::wstring environmentVariable(const wchar_t *name)
{
    std::wstring value(32768, L'\0');
    value.resize(GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
    return value;
}

bool sameIgnoringCase(const std::wstring &left, const std::wstring &right)
{
    return CompareStringOrdinal(left.c_str(), static_cast<int>(left.size()), right.c_str(),
                                static_cast<int>(right.size()), TRUE) == CSTR_EQUAL;
}

} // namespace

TEST(SystemFolderTest, WmicLiesInTheWbemFolderOfTheWindowsFoldersSystem32)
{
    const std::wstring systemRoot = environmentVariable(L"SystemRoot");
    ASSERT_FALSE(systemRoot.empty());
    const std::wstring wmic = inSystemFolder(L"wbem\\wmic.exe");
    EXPECT_TRUE(sameIgnoringCase(wmic, systemRoot + L"\\System32\\wbem\\wmic.exe")) << wmic;
}

TEST(SystemFolderTest, TheSystemsOwnLibrariesAreThere)
{
    const DWORD attributes = GetFileAttributesW(inSystemFolder(L"kernel32.dll").c_str());
    ASSERT_NE(attributes, INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(attributes & FILE_ATTRIBUTE_DIRECTORY, 0u);
}
