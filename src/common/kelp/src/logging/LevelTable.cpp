#include "logging/LevelTable.h"

#include <map>
#include <stdexcept>

namespace kelp::logging {
namespace {

const std::map<std::string, spdlog::level::level_enum> levelTable = {
    {"trace", spdlog::level::trace},  {"debug", spdlog::level::debug}, {"info", spdlog::level::info},
    {"warning", spdlog::level::warn}, {"error", spdlog::level::err},   {"critical", spdlog::level::critical},
    {"off", spdlog::level::off},
};

} // namespace

spdlog::level::level_enum levelFromSetting(const std::string &text, spdlog::level::level_enum fallback)
{
    try {
        return levelTable.at(text);
    } catch (const std::out_of_range &) {
        return fallback;
    }
}

} // namespace kelp::logging
