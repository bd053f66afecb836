#include "StartMenuShell.h"

#include <objbase.h>
#include <shlobj.h>

#include <initializer_list>

StartMenuShell::StartMenuShell()
{
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
}

StartMenuShell::~StartMenuShell()
{
    CoUninitialize();
}

// Neither the result nor the object is used, and the object isn't released.
void StartMenuShell::createShellLinkObject()
{
    IShellLinkW *link = nullptr;
    CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW, reinterpret_cast<void **>(&link));
}

void StartMenuShell::notifyStartMenusChanged()
{
    for (const int folder : {CSIDL_STARTMENU, CSIDL_COMMON_STARTMENU}) {
        PIDLIST_ABSOLUTE list = nullptr;
        if (SUCCEEDED(SHGetFolderLocation(nullptr, folder, nullptr, 0, &list))) {
            SHChangeNotify(SHCNE_UPDATEDIR, SHCNF_IDLIST, list, nullptr);
            CoTaskMemFree(list);
        }
    }
}
