#include "logging/LogRoots.h"

#include <windows.h>
#include <knownfolders.h>
#include <shlobj.h>

namespace kelp::logging {
namespace {

boost::filesystem::path knownFolder(REFKNOWNFOLDERID id)
{
    PWSTR folder = nullptr;
    boost::filesystem::path result;
    if (SUCCEEDED(SHGetKnownFolderPath(id, KF_FLAG_CREATE, nullptr, &folder)))
        result = folder;
    CoTaskMemFree(folder);
    return result;
}

} // namespace

std::array<boost::filesystem::path, 3> logRoots()
{
    return {knownFolder(FOLDERID_RoamingAppData), knownFolder(FOLDERID_LocalAppData),
            knownFolder(FOLDERID_ProgramData)};
}

} // namespace kelp::logging
