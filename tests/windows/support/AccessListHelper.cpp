#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

#include <cstdio>
#include <string>

// Prints the access list (DACL) of the file named by its one argument, as the
// system reports it: first the list in the security descriptor language, then
// one line per entry with its kind, flags, rights and the account it names.
//
//   AccessListHelper.exe "C:\ProgramData\Tavrin\Orv Collection\OrvCollection.cfg"
//
// The Wine road uses it to see which entry the group Users got on the global
// collection file. The machine's own accounts are written as
// <computer>\name, so that the text is the same on every machine. Exit code
// 0, or 1 when the list cannot be read.
namespace {

std::string utf8(const wchar_t *text)
{
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    if (size <= 1)
        return std::string();
    std::string result(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, result.data(), size, nullptr, nullptr);
    result.resize(static_cast<std::size_t>(size - 1));
    return result;
}

std::string accountOf(PSID sid)
{
    wchar_t name[256] = {};
    wchar_t domain[256] = {};
    DWORD nameSize = 256;
    DWORD domainSize = 256;
    SID_NAME_USE use = SidTypeUnknown;
    std::string account;
    if (LookupAccountSidW(nullptr, sid, name, &nameSize, domain, &domainSize, &use)) {
        wchar_t computer[MAX_COMPUTERNAME_LENGTH + 1] = {};
        DWORD computerSize = MAX_COMPUTERNAME_LENGTH + 1;
        GetComputerNameW(computer, &computerSize);
        const std::string domainName =
            CompareStringOrdinal(domain, -1, computer, -1, TRUE) == CSTR_EQUAL ? "<computer>" : utf8(domain);
        account = domainName.empty() ? utf8(name) : domainName + "\\" + utf8(name);
    }
    LPWSTR text = nullptr;
    if (ConvertSidToStringSidW(sid, &text)) {
        account += (account.empty() ? "" : " ") + std::string("(") + utf8(text) + ")";
        LocalFree(text);
    }
    return account;
}

const char *kindOf(BYTE type)
{
    switch (type) {
    case ACCESS_ALLOWED_ACE_TYPE:
        return "allow";
    case ACCESS_DENIED_ACE_TYPE:
        return "deny";
    default:
        return "other";
    }
}

} // namespace

int wmain(int argc, wchar_t **argv)
{
    if (argc != 2)
        return 2;
    PACL acl = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    const DWORD result = GetNamedSecurityInfoW(argv[1], SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr,
                                               &acl, nullptr, &descriptor);
    if (result != ERROR_SUCCESS) {
        std::printf("GetNamedSecurityInfo error %lu\n", static_cast<unsigned long>(result));
        return 1;
    }
    LPWSTR sddl = nullptr;
    if (ConvertSecurityDescriptorToStringSecurityDescriptorW(descriptor, SDDL_REVISION_1, DACL_SECURITY_INFORMATION,
                                                             &sddl, nullptr)) {
        std::printf("%s\n", utf8(sddl).c_str());
        LocalFree(sddl);
    }
    if (acl == nullptr) {
        std::printf("no access list: everyone has full access\n");
    } else {
        for (DWORD index = 0; index < acl->AceCount; ++index) {
            ACE_HEADER *header = nullptr;
            if (!GetAce(acl, index, reinterpret_cast<void **>(&header)))
                continue;
            if (header->AceType != ACCESS_ALLOWED_ACE_TYPE && header->AceType != ACCESS_DENIED_ACE_TYPE) {
                std::printf("%s type %u\n", kindOf(header->AceType), static_cast<unsigned>(header->AceType));
                continue;
            }
            // Allowed and denied entries share their layout.
            const auto *entry = reinterpret_cast<const ACCESS_ALLOWED_ACE *>(header);
            std::printf("%s flags 0x%02x rights 0x%08lx %s\n", kindOf(header->AceType),
                        static_cast<unsigned>(header->AceFlags), static_cast<unsigned long>(entry->Mask),
                        accountOf(const_cast<DWORD *>(&entry->SidStart)).c_str());
        }
    }
    LocalFree(descriptor);
    return 0;
}
