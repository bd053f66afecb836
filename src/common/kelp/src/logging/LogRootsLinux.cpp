#include "logging/LogRoots.h"

#include <cstdlib>
#include <string>

namespace kelp::logging {
namespace {

std::string environmentValue(const char *name)
{
    const char *value = std::getenv(name);
    return value ? value : "";
}

// An XDG folder, or its default below HOME; empty when both are unset.
boost::filesystem::path xdgFolder(const char *variable, const char *belowHome)
{
    const std::string folder = environmentValue(variable);
    if (!folder.empty())
        return folder;
    const std::string home = environmentValue("HOME");
    return home.empty() ? boost::filesystem::path() : boost::filesystem::path(home) / belowHome;
}

// Only an unset variable falls back; one that is set and empty stays empty.
boost::filesystem::path programData()
{
    const char *value = std::getenv("ProgramData");
    return value ? value : "/var/lib";
}

} // namespace

std::array<boost::filesystem::path, 3> logRoots()
{
    return {xdgFolder("XDG_CONFIG_HOME", ".config"), xdgFolder("XDG_DATA_HOME", ".local/share"), programData()};
}

} // namespace kelp::logging
