#include "Environment.h"
#include "ScratchRegistryKey.h"
#include "WindowsSettingsReader.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

using orv::photoshop::CurrentUserHive;
using orv::photoshop::LocalMachineHive;
using orv::photoshop::WindowsSettingsReader;

namespace {

const char *const windowsVersionKey = "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion";

// Whether a call gives back every handle that it takes. Handle slots are
// reused, the last freed first on Windows and the lowest first under Wine, so
// a handle made after the call takes the slot of one closed before it only
// when the call left no handle open.
template <typename Call>
bool leavesNoHandleOpen(Call call)
{
    const HANDLE before = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    CloseHandle(before);
    call();
    const HANDLE after = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    CloseHandle(after);
    return after == before;
}

bool sameTextIgnoringCase(const std::wstring &left, const std::wstring &right)
{
    return CompareStringOrdinal(left.c_str(), -1, right.c_str(), -1, TRUE) == CSTR_EQUAL;
}

class WindowsSettingsReaderTest : public ::testing::Test
{
protected:
    // The system may keep a handle of the user's hive open from its first use on.
    WindowsSettingsReaderTest() { read("app_loglevel"); }

    std::string read(const char *valueName) const
    {
        return reader.readString(CurrentUserHive, key.path().c_str(), valueName);
    }
    std::wstring readWide(const char *valueName) const
    {
        return reader.readWideString(CurrentUserHive, key.path().c_str(), valueName);
    }

    ScratchRegistryKey key;
    const WindowsSettingsReader reader;
};

} // namespace

TEST_F(WindowsSettingsReaderTest, ReadsATextValueInBothForms)
{
    key.setNarrow("app_loglevel", std::string("warning", 8));
    EXPECT_EQ(read("app_loglevel"), "warning");
    EXPECT_EQ(readWide("app_loglevel"), L"warning");
}

TEST_F(WindowsSettingsReaderTest, ReadsAWideTextExactly)
{
    const std::wstring text = L"Gr\u00f6\u00dfe \u65e5\u672c\u8a9e C:\\Orv\\bin";
    key.setWide(L"InstallPath", text + L'\0');
    EXPECT_EQ(readWide("InstallPath"), text);
}

TEST_F(WindowsSettingsReaderTest, AMissingValueGivesAnEmptyTextAndClosesTheKey)
{
    key.setNarrow("present", std::string("here", 5));
    EXPECT_TRUE(leavesNoHandleOpen([this] { EXPECT_EQ(read("absent"), ""); }));
    EXPECT_TRUE(leavesNoHandleOpen([this] { EXPECT_EQ(readWide("absent"), L""); }));
}

TEST_F(WindowsSettingsReaderTest, AReadClosesTheKeyAgain)
{
    key.setNarrow("present", std::string("here", 5));
    EXPECT_TRUE(leavesNoHandleOpen([this] { EXPECT_EQ(read("present"), "here"); }));
    EXPECT_TRUE(leavesNoHandleOpen([this] { EXPECT_EQ(readWide("present"), L"here"); }));
}

TEST_F(WindowsSettingsReaderTest, AMissingKeyGivesAnEmptyText)
{
    const std::string absentKey = key.path() + "\\Absent";
    EXPECT_EQ(reader.readString(CurrentUserHive, absentKey.c_str(), "app_loglevel"), "");
    EXPECT_EQ(reader.readWideString(CurrentUserHive, absentKey.c_str(), "app_loglevel"), L"");
}

TEST_F(WindowsSettingsReaderTest, ATextWithAnInnerZeroYieldsWhatPrecedesIt)
{
    key.setNarrow("narrow", std::string("abc\0def\0", 8));
    key.setWide(L"wide", std::wstring(L"abc\0def\0", 8));
    EXPECT_EQ(read("narrow"), "abc");
    EXPECT_EQ(readWide("wide"), L"abc");
}

TEST_F(WindowsSettingsReaderTest, AnEmptyTextYieldsAnEmptyText)
{
    key.setNarrow("endZeroOnly", std::string(1, '\0'));
    key.setBytes(L"noBytes", REG_SZ, nullptr, 0);
    EXPECT_EQ(read("endZeroOnly"), "");
    EXPECT_EQ(readWide("endZeroOnly"), L"");
    EXPECT_EQ(read("noBytes"), "");
    EXPECT_EQ(readWide("noBytes"), L"");
}

TEST_F(WindowsSettingsReaderTest, ATextWithoutAnEndZeroIsReadWhole)
{
    key.setNarrow("narrow", "abc");
    key.setWide(L"wide", L"abc");
    EXPECT_EQ(read("narrow"), "abc");
    EXPECT_EQ(readWide("wide"), L"abc");
}

TEST_F(WindowsSettingsReaderTest, AWideReadTakesWholeUnitsOfAnOddByteSize)
{
    key.setBytes(L"odd", REG_BINARY, "a\0b\0c", 5);
    EXPECT_EQ(readWide("odd"), L"ab");
    EXPECT_EQ(read("odd"), "a");
}

TEST_F(WindowsSettingsReaderTest, ANumbersBytesAreTakenAsText)
{
    key.setNumber(L"number", 0x00636261);
    EXPECT_EQ(read("number"), "abc");
    EXPECT_EQ(readWide("number"), (std::wstring{static_cast<wchar_t>(0x6261), L'c'}));
}

TEST_F(WindowsSettingsReaderTest, ALongValueIsReadWhole)
{
    const std::string narrow(100000, 'n');
    const std::wstring wide(100000, L'\u00e9');
    key.setNarrow("narrow", narrow + '\0');
    key.setWide(L"wide", wide + L'\0');
    EXPECT_EQ(read("narrow"), narrow);
    EXPECT_EQ(readWide("wide"), wide);
}

TEST_F(WindowsSettingsReaderTest, AnEmptyValueNameReadsTheKeysDefaultValue)
{
    key.setNarrow("", std::string("standard", 9));
    EXPECT_EQ(read(""), "standard");
    EXPECT_EQ(readWide(""), L"standard");
}

TEST_F(WindowsSettingsReaderTest, AWideReadWidensEachByteWithItsSign)
{
    key.setWide(L"Caf\u00e9", std::wstring(L"code page\0", 10));
    key.setWide(L"Caf\uffe9", std::wstring(L"sign-extended\0", 14));
    EXPECT_EQ(readWide("Caf\xe9"), L"sign-extended");
}

TEST_F(WindowsSettingsReaderTest, AnyHiveFlagButZeroSelectsTheUsersHive)
{
    key.setNarrow("app_loglevel", std::string("debug", 6));
    EXPECT_EQ(reader.readString(7, key.path().c_str(), "app_loglevel"), "debug");
    EXPECT_EQ(reader.readWideString(-1, key.path().c_str(), "app_loglevel"), L"debug");
    EXPECT_EQ(reader.readString(LocalMachineHive, key.path().c_str(), "app_loglevel"), "");
    EXPECT_EQ(reader.readWideString(LocalMachineHive, key.path().c_str(), "app_loglevel"), L"");
}

TEST_F(WindowsSettingsReaderTest, HiveFlagZeroSelectsTheMachinesHive)
{
    const std::wstring systemRoot = environmentVariable(L"SystemRoot");
    ASSERT_FALSE(systemRoot.empty());
    const std::string narrow = reader.readString(LocalMachineHive, windowsVersionKey, "SystemRoot");
    EXPECT_TRUE(sameTextIgnoringCase(std::wstring(narrow.begin(), narrow.end()), systemRoot));
    EXPECT_TRUE(
        sameTextIgnoringCase(reader.readWideString(LocalMachineHive, windowsVersionKey, "SystemRoot"), systemRoot));
    EXPECT_EQ(reader.readString(CurrentUserHive, windowsVersionKey, "SystemRoot"), "");
}
