#include "FilePermissions.h"
#include "TemporaryFolder.h"

#include <windows.h>

#include <aclapi.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

using AccessEntry = std::vector<BYTE>;

constexpr std::uint32_t readWriteDelete = GENERIC_READ | GENERIC_WRITE | DELETE;
constexpr std::uint32_t inheritedByAll = OBJECT_INHERIT_ACE | CONTAINER_INHERIT_ACE;

std::uint32_t grantOnFile(const std::wstring &path, const wchar_t *trustee)
{
    return grantAccess(path.c_str(), SE_FILE_OBJECT, trustee, TRUSTEE_IS_NAME, readWriteDelete, SET_ACCESS,
                       inheritedByAll);
}

std::vector<BYTE> usersSid()
{
    std::vector<BYTE> sid(SECURITY_MAX_SID_SIZE);
    DWORD size = static_cast<DWORD>(sid.size());
    CreateWellKnownSid(WinBuiltinUsersSid, nullptr, sid.data(), &size);
    return sid;
}

bool isForUsers(const ACE_HEADER *entry)
{
    if (entry->AceType != ACCESS_ALLOWED_ACE_TYPE)
        return false;
    const auto *allowed = reinterpret_cast<const ACCESS_ALLOWED_ACE *>(entry);
    std::vector<BYTE> users = usersSid();
    return EqualSid(const_cast<DWORD *>(&allowed->SidStart), users.data()) != FALSE;
}

// The entries of a file's access list, each as its bytes; those that allow
// something to the group Users when `forUsers` is true, all others when false.
std::vector<AccessEntry> accessEntries(const std::wstring &path, bool forUsers)
{
    PACL list = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    std::vector<AccessEntry> entries;
    if (GetNamedSecurityInfoW(path.c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, &list, nullptr,
                              &descriptor) != ERROR_SUCCESS)
        return entries;
    for (DWORD index = 0; list != nullptr && index < list->AceCount; ++index) {
        void *entry = nullptr;
        if (GetAce(list, index, &entry) && isForUsers(static_cast<ACE_HEADER *>(entry)) == forUsers) {
            const BYTE *bytes = static_cast<const BYTE *>(entry);
            entries.emplace_back(bytes, bytes + static_cast<ACE_HEADER *>(entry)->AceSize);
        }
    }
    LocalFree(descriptor);
    return entries;
}

std::vector<AccessEntry> allEntries(const std::wstring &path)
{
    std::vector<AccessEntry> entries = accessEntries(path, false);
    const std::vector<AccessEntry> users = accessEntries(path, true);
    entries.insert(entries.end(), users.begin(), users.end());
    return entries;
}

bool isWine()
{
    const HMODULE ntdll = GetModuleHandleW(L"ntdll.dll");
    return ntdll != nullptr && GetProcAddress(ntdll, "wine_get_version") != nullptr;
}

class FilePermissionsWinTest : public ::testing::Test
{
protected:
    FilePermissionsWinTest()
        : file((folder.path() / L"Orv Collection.cfg").wstring())
    {
        std::ofstream(std::filesystem::path(file)) << "<configuration/>\n";
    }

    TemporaryFolder folder;
    const std::wstring file;
};

} // namespace

TEST_F(FilePermissionsWinTest, ANullNameGivesInvalidParameterAndPrintsNothing)
{
    testing::internal::CaptureStdout();
    const std::uint32_t result =
        grantAccess(nullptr, SE_FILE_OBJECT, L"Users", TRUSTEE_IS_NAME, readWriteDelete, SET_ACCESS, inheritedByAll);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(result, 87u);
}

TEST_F(FilePermissionsWinTest, GrantingUsersGivesZeroAndPrintsNothing)
{
    testing::internal::CaptureStdout();
    const std::uint32_t result = grantOnFile(file, L"Users");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(result, 0u);
}

TEST_F(FilePermissionsWinTest, UsersMayDeleteAfterwardsAndTheOtherEntriesStay)
{
    if (isWine())
        GTEST_SKIP() << "Wine keeps no access list of a file beyond its Unix mode bits";
    const std::vector<AccessEntry> othersBefore = accessEntries(file, false);
    ASSERT_EQ(grantOnFile(file, L"Users"), 0u);
    const std::vector<AccessEntry> users = accessEntries(file, true);
    ASSERT_EQ(users.size(), 1u);
    EXPECT_NE(reinterpret_cast<const ACCESS_ALLOWED_ACE *>(users.front().data())->Mask & DELETE, 0u);
    EXPECT_EQ(accessEntries(file, false), othersBefore);
}

TEST_F(FilePermissionsWinTest, ASecondGrantReplacesTheEntryOfTheTrustee)
{
    ASSERT_EQ(grantOnFile(file, L"Users"), 0u);
    const std::vector<AccessEntry> once = allEntries(file);
    ASSERT_EQ(grantOnFile(file, L"Users"), 0u);
    EXPECT_EQ(allEntries(file), once);
}

TEST_F(FilePermissionsWinTest, AnUnknownTrusteePrintsTheSetEntriesInAclErrorAndLeavesTheListAsItWas)
{
    const std::vector<AccessEntry> before = allEntries(file);
    testing::internal::CaptureStdout();
    const std::uint32_t result = grantOnFile(file, L"No Such Group Of Orv Users");
    const std::string printed = testing::internal::GetCapturedStdout();
    EXPECT_NE(result, 0u);
    EXPECT_EQ(printed, "SetEntriesInAcl Error " + std::to_string(result) + "\n");
    EXPECT_EQ(allEntries(file), before);
}

TEST_F(FilePermissionsWinTest, AMissingFilePrintsTheGetNamedSecurityInfoError)
{
    const std::wstring missing = (folder.path() / L"missing.cfg").wstring();
    testing::internal::CaptureStdout();
    const std::uint32_t result = grantOnFile(missing, L"Users");
    const std::string printed = testing::internal::GetCapturedStdout();
    EXPECT_EQ(result, static_cast<std::uint32_t>(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(printed, "GetNamedSecurityInfo Error " + std::to_string(result) + "\n");
}

namespace {

// The collection file's own handle, as the program writes it.
class WrittenFile
{
public:
    explicit WrittenFile(const std::wstring &path)
        : handle_(CreateFileW(path.c_str(), GENERIC_WRITE | READ_CONTROL | WRITE_DAC, 0, nullptr, OPEN_EXISTING,
                              FILE_FLAG_OPEN_REPARSE_POINT, nullptr))
    {
    }
    ~WrittenFile()
    {
        if (handle_ != INVALID_HANDLE_VALUE)
            CloseHandle(handle_);
    }
    WrittenFile(const WrittenFile &) = delete;
    WrittenFile &operator=(const WrittenFile &) = delete;

    std::intptr_t get() const { return reinterpret_cast<std::intptr_t>(handle_); }

private:
    HANDLE handle_;
};

} // namespace

TEST_F(FilePermissionsWinTest, GrantingUsersOnTheHandleGivesZeroAndPrintsNothing)
{
    const WrittenFile written(file);
    testing::internal::CaptureStdout();
    const std::uint32_t result = grantUsersAccess(written.get(), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(result, 0u);
}

// By the identifier, so the entry is the same whatever the group is called
// in the system's language.
TEST_F(FilePermissionsWinTest, TheHandlesGrantIsTheEntryOfUsersByName)
{
    if (isWine())
        GTEST_SKIP() << "Wine keeps no access list of a file beyond its Unix mode bits";
    const std::vector<AccessEntry> othersBefore = accessEntries(file, false);
    {
        const WrittenFile written(file);
        ASSERT_EQ(grantUsersAccess(written.get(), 0), 0u);
    }
    const std::vector<AccessEntry> byIdentifier = allEntries(file);
    ASSERT_EQ(accessEntries(file, true).size(), 1u);
    EXPECT_EQ(accessEntries(file, false), othersBefore);
    ASSERT_EQ(grantOnFile(file, L"Users"), 0u);
    EXPECT_EQ(allEntries(file), byIdentifier);
}

TEST_F(FilePermissionsWinTest, ANullHandlePrintsTheGetNamedSecurityInfoError)
{
    testing::internal::CaptureStdout();
    const std::uint32_t result = grantUsersAccess(0, 0);
    const std::string printed = testing::internal::GetCapturedStdout();
    EXPECT_NE(result, 0u);
    EXPECT_EQ(printed, "GetNamedSecurityInfo Error " + std::to_string(result) + "\n");
}
