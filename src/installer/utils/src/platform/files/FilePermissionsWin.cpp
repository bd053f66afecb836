#include "FilePermissions.h"

#include <windows.h>

#include <aclapi.h>

#include <cstdio>

namespace {

// Merges the entry into an object's present list and sets the new list, with
// the three messages of a failing step on standard output, in front of the
// answer, and not in the log.
template <typename GetList, typename SetList>
std::uint32_t mergeEntry(const EXPLICIT_ACCESSW &access, GetList getList, SetList setList)
{
    PACL currentAcl = nullptr;
    PACL newAcl = nullptr;
    PSECURITY_DESCRIPTOR securityDescriptor = nullptr;
    DWORD result = getList(&currentAcl, &securityDescriptor);
    if (result != ERROR_SUCCESS) {
        std::printf("GetNamedSecurityInfo Error %lu\n", static_cast<unsigned long>(result));
    } else {
        result = SetEntriesInAclW(1, const_cast<EXPLICIT_ACCESSW *>(&access), currentAcl, &newAcl);
        if (result != ERROR_SUCCESS) {
            std::printf("SetEntriesInAcl Error %lu\n", static_cast<unsigned long>(result));
        } else {
            result = setList(newAcl);
            if (result != ERROR_SUCCESS)
                std::printf("SetNamedSecurityInfo Error %lu\n", static_cast<unsigned long>(result));
        }
    }
    // The present list lies inside the descriptor and goes with it.
    if (securityDescriptor != nullptr)
        LocalFree(securityDescriptor);
    if (newAcl != nullptr)
        LocalFree(newAcl);
    return result;
}

EXPLICIT_ACCESSW entryOf(std::uint32_t accessRights, std::int32_t accessMode, std::uint32_t inheritance,
                         std::int32_t trusteeForm, LPWSTR trustee)
{
    EXPLICIT_ACCESSW access = {};
    access.grfAccessPermissions = accessRights;
    access.grfAccessMode = static_cast<ACCESS_MODE>(accessMode);
    access.grfInheritance = inheritance;
    access.Trustee.pMultipleTrustee = nullptr;
    access.Trustee.MultipleTrusteeOperation = NO_MULTIPLE_TRUSTEE;
    access.Trustee.TrusteeForm = static_cast<TRUSTEE_FORM>(trusteeForm);
    access.Trustee.TrusteeType = TRUSTEE_IS_UNKNOWN;
    access.Trustee.ptstrName = trustee;
    return access;
}

} // namespace

std::uint32_t grantAccess(const wchar_t *objectName, std::int32_t objectType, const wchar_t *trustee,
                          std::int32_t trusteeForm, std::uint32_t accessRights, std::int32_t accessMode,
                          std::uint32_t inheritance)
{
    if (objectName == nullptr)
        return static_cast<std::uint32_t>(ERROR_INVALID_PARAMETER);
    const LPWSTR name = const_cast<LPWSTR>(objectName);
    const SE_OBJECT_TYPE type = static_cast<SE_OBJECT_TYPE>(objectType);
    const EXPLICIT_ACCESSW access =
        entryOf(accessRights, accessMode, inheritance, trusteeForm, const_cast<LPWSTR>(trustee));
    return mergeEntry(
        access,
        [&](PACL *current, PSECURITY_DESCRIPTOR *descriptor) {
            return GetNamedSecurityInfoW(name, type, DACL_SECURITY_INFORMATION, nullptr, nullptr, current, nullptr,
                                         descriptor);
        },
        [&](PACL list) {
            return SetNamedSecurityInfoW(name, type, DACL_SECURITY_INFORMATION, nullptr, nullptr, list, nullptr);
        });
}

// Users, by the identifier that no language renames and no domain group can take.
std::uint32_t grantUsersAccess(std::intptr_t file, std::intptr_t /*folder*/)
{
    BYTE users[SECURITY_MAX_SID_SIZE];
    DWORD size = sizeof users;
    if (!CreateWellKnownSid(WinBuiltinUsersSid, nullptr, users, &size))
        return static_cast<std::uint32_t>(GetLastError());
    const HANDLE handle = reinterpret_cast<HANDLE>(file);
    const EXPLICIT_ACCESSW access =
        entryOf(GENERIC_READ | GENERIC_WRITE | DELETE, SET_ACCESS, OBJECT_INHERIT_ACE | CONTAINER_INHERIT_ACE,
                TRUSTEE_IS_SID, static_cast<LPWSTR>(static_cast<void *>(users)));
    return mergeEntry(
        access,
        [&](PACL *current, PSECURITY_DESCRIPTOR *descriptor) {
            return GetSecurityInfo(handle, SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, current,
                                   nullptr, descriptor);
        },
        [&](PACL list) {
            return SetSecurityInfo(handle, SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, list, nullptr);
        });
}
