#pragma once

#include <boost/filesystem/path.hpp>

#include <cstdint>
#include <string>

namespace kelp::logging {

// Makes the process's logger on a time-stamped file below the first usable of
// the log roots (…/Tavrin/Orv Collection/logs/<logFileName>), applies the
// level named by the user's "<loggerName>_loglevel" setting (defaultLevel when
// it names none) and makes it spdlog's default logger. Returns the open file
// in generic form, or an empty path when no logger was made or one of that
// name existed already; the reason is logged.
boost::filesystem::path initLogging(const std::string &logFileName, const std::string &loggerName,
                                    std::uint32_t defaultLevel);

} // namespace kelp::logging
