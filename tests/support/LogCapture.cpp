#include "LogCapture.h"

#include <spdlog/sinks/base_sink.h>
#include <spdlog/spdlog.h>

#include <mutex>

struct LogCapture::Sink : spdlog::sinks::base_sink<std::mutex>
{
    std::vector<LoggedLine> lines;

    std::vector<LoggedLine> snapshot()
    {
        std::lock_guard<std::mutex> lock(mutex_);
        return lines;
    }

protected:
    void sink_it_(const spdlog::details::log_msg &message) override
    {
        lines.push_back({message.level, std::string(message.payload.begin(), message.payload.end()),
                         message.source.funcname ? message.source.funcname : ""});
    }
    void flush_() override {}
};

LogCapture::LogCapture()
    : sink_(std::make_shared<Sink>())
    , previous_(spdlog::default_logger())
{
    auto logger = std::make_shared<spdlog::logger>("capture", sink_);
    logger->set_level(spdlog::level::trace);
    spdlog::set_default_logger(logger);
}

LogCapture::~LogCapture()
{
    spdlog::set_default_logger(previous_);
}

std::vector<LoggedLine> LogCapture::lines() const
{
    return sink_->snapshot();
}

std::vector<std::string> LogCapture::texts() const
{
    std::vector<std::string> texts;
    for (const LoggedLine &line : lines())
        texts.push_back(std::string(spdlog::level::to_string_view(line.level).data()) + ": " + line.text);
    return texts;
}
