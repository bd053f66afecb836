#pragma once

#include <boost/filesystem/path.hpp>

#include <array>

namespace kelp::logging {

// The folders below which a log may live, in the order they are tried: the
// user's roaming application data, the user's local application data, and the
// machine-wide data folder. A folder that can't be looked up is an empty path,
// which leaves the log relative to the working folder.
std::array<boost::filesystem::path, 3> logRoots();

} // namespace kelp::logging
