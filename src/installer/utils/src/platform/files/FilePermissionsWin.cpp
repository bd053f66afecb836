#include "FilePermissions.h"

#include <windows.h>

#include <aclapi.h>

#include <cstdio>

// The messages go to standard output, in front of the answer, and not to the log.
std::uint32_t grantAccess(const wchar_t *objectName, std::int32_t objectType, const wchar_t *trustee,
                          std::int32_t trusteeForm, std::uint32_t accessRights, std::int32_t accessMode,
                          std::uint32_t inheritance)
{
    if (objectName == nullptr)
        return static_cast<std::uint32_t>(ERROR_INVALID_PARAMETER);

    const LPWSTR name = const_cast<LPWSTR>(objectName);
    const SE_OBJECT_TYPE type = static_cast<SE_OBJECT_TYPE>(objectType);
    PACL currentAcl = nullptr;
    PACL newAcl = nullptr;
    PSECURITY_DESCRIPTOR securityDescriptor = nullptr;

    DWORD result = GetNamedSecurityInfoW(name, type, DACL_SECURITY_INFORMATION, nullptr, nullptr, &currentAcl, nullptr,
                                         &securityDescriptor);
    if (result != ERROR_SUCCESS) {
        std::printf("GetNamedSecurityInfo Error %lu\n", static_cast<unsigned long>(result));
    } else {
        EXPLICIT_ACCESSW access = {};
        access.grfAccessPermissions = accessRights;
        access.grfAccessMode = static_cast<ACCESS_MODE>(accessMode);
        access.grfInheritance = inheritance;
        access.Trustee.pMultipleTrustee = nullptr;
        access.Trustee.MultipleTrusteeOperation = NO_MULTIPLE_TRUSTEE;
        access.Trustee.TrusteeForm = static_cast<TRUSTEE_FORM>(trusteeForm);
        access.Trustee.TrusteeType = TRUSTEE_IS_UNKNOWN;
        access.Trustee.ptstrName = const_cast<LPWSTR>(trustee);

        result = SetEntriesInAclW(1, &access, currentAcl, &newAcl);
        if (result != ERROR_SUCCESS) {
            std::printf("SetEntriesInAcl Error %lu\n", static_cast<unsigned long>(result));
        } else {
            result = SetNamedSecurityInfoW(name, type, DACL_SECURITY_INFORMATION, nullptr, nullptr, newAcl, nullptr);
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
