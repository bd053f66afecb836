#include "LibrarySearch.h"

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

// Looked up rather than imported: Windows 7 without update KB2533623 lacks
// the function, and an import that can't be resolved keeps the program from
// starting at all. There the search stays as it was.
void restrictLibrarySearch()
{
    using SetDefaultDllDirectoriesFunction = BOOL(WINAPI *)(DWORD);
    const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
    if (kernel == nullptr)
        return;
    const FARPROC address = GetProcAddress(kernel, "SetDefaultDllDirectories");
    if (address == nullptr)
        return;
    // Through the generic function type, which GCC lets any function pointer become.
    const auto setDefaultDllDirectories =
        reinterpret_cast<SetDefaultDllDirectoriesFunction>(reinterpret_cast<void (*)()>(address));
    setDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
}
