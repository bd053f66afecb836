#pragma once

#include <spdlog/spdlog.h>

#include <cstddef>

// The one way the program logs: spdlog's default logger with fmt "{}" templates
// and a source location of file, line and the qualified function name, such as
// "Installer::installPhotoshopPlugins". Texts from Qt go in as UTF-8 through
// QString::toStdString.
//
//   KELP_LOG_WARN("Failed to create directory {}", dir.path().toStdString());

namespace kelp::logging::detail {

template <std::size_t N>
struct FunctionName
{
    char text[N]{};
};

// "void Installer::install(const QJsonObject&)" gives "Installer::install":
// the name runs from the last blank before the parameter list to that list.
template <std::size_t N>
constexpr FunctionName<N> qualifiedFunctionName(const char (&signature)[N])
{
    std::size_t open = 0;
    while (open < N && signature[open] != '\0' && signature[open] != '(')
        ++open;
    std::size_t begin = open;
    while (begin > 0 && signature[begin - 1] != ' ')
        --begin;
    FunctionName<N> name;
    for (std::size_t i = begin; i < open; ++i)
        name.text[i - begin] = signature[i];
    return name;
}

} // namespace kelp::logging::detail

#if defined(_MSC_VER)
#define KELP_LOG(level, ...)                                                                                           \
    ::spdlog::default_logger_raw()->log(::spdlog::source_loc{__FILE__, __LINE__, __FUNCTION__}, level, __VA_ARGS__)
#else
#define KELP_LOG(level, ...)                                                                                           \
    do {                                                                                                               \
        static constexpr auto kelpFunctionName = ::kelp::logging::detail::qualifiedFunctionName(__PRETTY_FUNCTION__);  \
        ::spdlog::default_logger_raw()->log(::spdlog::source_loc{__FILE__, __LINE__, kelpFunctionName.text}, level,    \
                                            __VA_ARGS__);                                                              \
    } while (false)
#endif

#define KELP_LOG_TRACE(...) KELP_LOG(::spdlog::level::trace, __VA_ARGS__)
#define KELP_LOG_DEBUG(...) KELP_LOG(::spdlog::level::debug, __VA_ARGS__)
#define KELP_LOG_INFO(...) KELP_LOG(::spdlog::level::info, __VA_ARGS__)
#define KELP_LOG_WARN(...) KELP_LOG(::spdlog::level::warn, __VA_ARGS__)
#define KELP_LOG_ERROR(...) KELP_LOG(::spdlog::level::err, __VA_ARGS__)
#define KELP_LOG_CRITICAL(...) KELP_LOG(::spdlog::level::critical, __VA_ARGS__)
