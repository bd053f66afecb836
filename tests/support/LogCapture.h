#pragma once

#include <spdlog/common.h>

#include <memory>
#include <string>
#include <vector>

namespace spdlog {
class logger;
}

// One record that reached spdlog's default logger.
struct LoggedLine
{
    spdlog::level::level_enum level;
    std::string text;
    std::string function;
};

// Makes a capturing logger spdlog's default logger (level trace) for the
// lifetime of the object, then puts the previous default logger back.
class LogCapture
{
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    std::vector<LoggedLine> lines() const;
    // The texts alone, "level: text" each, for readable assertions.
    std::vector<std::string> texts() const;

private:
    struct Sink;
    std::shared_ptr<Sink> sink_;
    std::shared_ptr<spdlog::logger> previous_;
};
