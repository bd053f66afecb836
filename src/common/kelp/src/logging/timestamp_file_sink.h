#pragma once

#include <boost/filesystem.hpp>
#include <spdlog/details/file_helper.h>
#include <spdlog/details/log_msg.h>
#include <spdlog/sinks/base_sink.h>

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <utility>

namespace kelp::logging {

// One log file per run, named after the start time (SuiteDeployer.log gives
// SuiteDeployer.2024.03.09-14.05.33.log). Making the sink deletes all but the
// newest max_files - 1 files of that name family; it never rotates. When the
// file would reach max_size it writes one last line and closes for good.
template <typename Mutex>
class timestamp_file_sink final : public spdlog::sinks::base_sink<Mutex>
{
public:
    using clock_function = std::function<std::time_t()>;

    // The clock is there for tests; the program uses the system clock.
    timestamp_file_sink(
        std::string base_filename, std::uint64_t max_files, std::uint64_t max_size,
        const clock_function &clock = [] { return std::time(nullptr); })
        : max_size_(max_size)
        , max_files_(max_files)
        , base_filename_(std::move(base_filename))
    {
        clean_old_files();
        file_helper_.open(calc_filename(base_filename_, clock()), false);
        current_size_ = file_helper_.size();
    }

    std::string filename()
    {
        std::lock_guard<Mutex> lock(this->mutex_);
        return file_helper_.filename();
    }

    static std::string calc_filename(const std::string &filename, std::time_t now)
    {
        const auto [stem, extension] = spdlog::details::file_helper::split_by_extension(filename);
        std::tm local{};
#ifdef _WIN32
        localtime_s(&local, &now);
#else
        localtime_r(&now, &local);
#endif
        char stamp[50];
        std::strftime(stamp, sizeof stamp, "%Y.%m.%d-%H.%M.%S", &local);
        return fmt::format("{}.{}{}", stem, stamp, extension);
    }

protected:
    void sink_it_(const spdlog::details::log_msg &msg) override
    {
        if (file_helper_.size() >= max_size_)
            return;
        spdlog::memory_buf_t formatted;
        this->formatter_->format(msg, formatted);
        const std::uint64_t length = formatted.size();
        current_size_ += length;
        // The current line counts twice, so the limit is met one line early
        // and the closing line always fits below it.
        if (!(current_size_ > max_size_ - length)) {
            file_helper_.write(formatted);
            return;
        }
        const spdlog::details::log_msg limit_msg(spdlog::string_view_t("app"), spdlog::level::critical,
                                                 spdlog::string_view_t(limit_message()));
        // The first bytes of the crossing line stay in front of the closing
        // line; a shorter line is padded with blanks rather than with whatever
        // the buffer held.
        const std::size_t kept = formatted.size();
        formatted.resize(limit_message().size());
        std::fill(formatted.begin() + std::min(kept, formatted.size()), formatted.end(), ' ');
        this->formatter_->format(limit_msg, formatted);
        file_helper_.write(formatted);
        file_helper_.close();
    }

    void flush_() override
    {
        file_helper_.flush();
    }

private:
    static const std::string &limit_message()
    {
        static const std::string message = "The log file limit exceeded! Logging is stopped.";
        return message;
    }

    void clean_old_files()
    {
        namespace fs = boost::filesystem;
        const fs::path base(base_filename_);
        std::map<std::string, fs::path, std::greater<std::string>> newest_first;
        for (fs::directory_iterator it(base.parent_path()), end; it != end; ++it) {
            if (fs::is_regular_file(it->status()))
                newest_first.emplace(it->path().filename().generic_string(), it->path());
        }
        const auto [stem, extension] =
            spdlog::details::file_helper::split_by_extension(base.filename().generic_string());
        const std::string prefix = stem + ".";
        std::uint64_t kept = max_files_ - 1;
        for (const auto &[name, path] : newest_first) {
            if (!in_family(name, prefix, extension))
                continue;
            if (kept == 0)
                fs::remove(path);
            else
                --kept;
        }
    }

    static bool in_family(const std::string &name, const std::string &prefix, const std::string &extension)
    {
        return name.compare(0, prefix.size(), prefix) == 0 && name.size() >= extension.size() &&
               name.compare(name.size() - extension.size(), extension.size(), extension) == 0;
    }

    std::uint64_t max_size_;
    std::uint64_t current_size_ = 0;
    std::uint64_t max_files_;
    std::string base_filename_;
    spdlog::details::file_helper file_helper_;
};

} // namespace kelp::logging
