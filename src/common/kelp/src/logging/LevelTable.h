#pragma once

#include <spdlog/common.h>

#include <string>

namespace kelp::logging {

// The level named by the user's log level setting. The names are compared
// exactly ("warning", not "Warning" or "warn"); any other text, the empty one
// included, gives the fallback.
spdlog::level::level_enum levelFromSetting(const std::string &text, spdlog::level::level_enum fallback);

} // namespace kelp::logging
