#include "logging/Utils.h"

#include "ProductSettings.h"
#include "logging/LevelTable.h"
#include "logging/Log.h"
#include "logging/LogRoots.h"
#include "logging/timestamp_file_sink.h"

#include <boost/filesystem/operations.hpp>
#include <spdlog/details/synchronous_factory.h>

#include <chrono>
#include <optional>
#include <stdexcept>

namespace kelp::logging {
namespace {

using Sink = timestamp_file_sink<std::mutex>;

const std::string makerFolder = "Tavrin";
const std::string suiteFolder = "Orv Collection";
const std::string logFolder = "logs";
const std::string levelSettingSuffix = "_loglevel";
constexpr std::uint64_t maxFiles = 5;
constexpr std::uint64_t maxFileSize = 104857600;

// The first candidate whose folder exists or can be made. The status query may
// throw; a failed creation only moves on, keeping its error number.
std::optional<boost::filesystem::path> logFileCandidate(const std::string &logFileName, int &lastFailedCreation)
{
    namespace fs = boost::filesystem;
    for (const fs::path &root : logRoots()) {
        const fs::path candidate = root / makerFolder / suiteFolder / logFolder / logFileName;
        if (fs::status(candidate.parent_path()).type() != fs::file_not_found)
            return candidate;
        boost::system::error_code error;
        if (fs::create_directories(candidate.parent_path(), error))
            return candidate;
        lastFailedCreation = error.value();
    }
    return std::nullopt;
}

std::shared_ptr<Sink> onlySink(spdlog::logger &logger)
{
    const auto &sinks = logger.sinks();
    auto sink = sinks.size() == 1 ? std::dynamic_pointer_cast<Sink>(sinks.front()) : nullptr;
    if (!sink)
        throw std::runtime_error("failed to get log filename");
    return sink;
}

} // namespace

boost::filesystem::path initLogging(const std::string &logFileName, const std::string &loggerName,
                                    std::uint32_t defaultLevel)
{
    ProductSettings settings(makerFolder, suiteFolder);
    if (spdlog::get(loggerName)) {
        KELP_LOG_DEBUG("Logger '{}' already registered", loggerName);
        return {};
    }
    int lastFailedCreation = 0;
    const std::optional<boost::filesystem::path> candidate = logFileCandidate(logFileName, lastFailedCreation);
    if (!candidate) {
        KELP_LOG_ERROR("Cannot create any folder for logger '{}'", loggerName);
        return {};
    }
    spdlog::flush_every(std::chrono::seconds(1));
    spdlog::flush_on(spdlog::level::warn);
    try {
        const auto logger = spdlog::synchronous_factory::create<Sink>(loggerName, candidate->generic_path().string(),
                                                                      maxFiles, maxFileSize);
        const std::string setting = settings.readUserValue((loggerName + levelSettingSuffix).c_str());
        const auto level = levelFromSetting(setting, static_cast<spdlog::level::level_enum>(defaultLevel));
        logger->set_level(level);
        spdlog::set_default_logger(logger);
        KELP_LOG_INFO("Logger '{}' registered in folder '{}' with {} level. Last failed create directory erc {}",
                      loggerName, candidate->string(), spdlog::level::to_string_view(level), lastFailedCreation);
        return boost::filesystem::path(onlySink(*logger)->filename());
    } catch (const std::exception &error) {
        KELP_LOG_ERROR("Cannot create logger '{}': {}", loggerName, error.what());
        return {};
    }
}

} // namespace kelp::logging
