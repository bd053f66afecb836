#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

// Prints what Windows shows of a program's resources, for a test on Linux to
// compare: the fixed file and product versions, the version texts in US
// English, then the line "manifest:" and the application manifest's bytes.
// Exit code 1 when the program has no version resource, 2 when it has no
// manifest.
namespace {

void printVersion(const char *name, DWORD high, DWORD low)
{
    std::printf("%s=%lu.%lu.%lu.%lu\n", name, static_cast<unsigned long>(HIWORD(high)),
                static_cast<unsigned long>(LOWORD(high)), static_cast<unsigned long>(HIWORD(low)),
                static_cast<unsigned long>(LOWORD(low)));
}

void printText(std::vector<BYTE> &block, const wchar_t *name)
{
    const std::wstring query = std::wstring(L"\\StringFileInfo\\040904B0\\") + name;
    wchar_t *value = nullptr;
    UINT length = 0;
    if (VerQueryValueW(block.data(), query.c_str(), reinterpret_cast<void **>(&value), &length) && length > 0)
        std::printf("%ls=%ls\n", name, value);
}

} // namespace

int wmain(int argc, wchar_t **argv)
{
    if (argc < 2)
        return 3;
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeW(argv[1], &ignored);
    std::vector<BYTE> block(size);
    if (size == 0 || !GetFileVersionInfoW(argv[1], 0, size, block.data()))
        return 1;
    VS_FIXEDFILEINFO *fixed = nullptr;
    UINT length = 0;
    if (VerQueryValueW(block.data(), L"\\", reinterpret_cast<void **>(&fixed), &length) && fixed != nullptr) {
        printVersion("FixedFileVersion", fixed->dwFileVersionMS, fixed->dwFileVersionLS);
        printVersion("FixedProductVersion", fixed->dwProductVersionMS, fixed->dwProductVersionLS);
    }
    for (const wchar_t *name : {L"CompanyName", L"FileDescription", L"FileVersion", L"InternalName", L"LegalCopyright",
                                L"OriginalFilename", L"ProductName", L"ProductVersion"})
        printText(block, name);

    const HMODULE program = LoadLibraryExW(argv[1], nullptr, LOAD_LIBRARY_AS_DATAFILE);
    const HRSRC found =
        program == nullptr ? nullptr : FindResourceW(program, MAKEINTRESOURCEW(1), MAKEINTRESOURCEW(24));
    const HGLOBAL loaded = found == nullptr ? nullptr : LoadResource(program, found);
    if (loaded == nullptr)
        return 2;
    std::printf("manifest:\n");
    std::fwrite(LockResource(loaded), 1, SizeofResource(program, found), stdout);
    std::fflush(stdout);
    return 0;
}
